#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder/FromXMLMetaAttributeVisitor.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using Types::Identifiers::kInt32;
using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUTF16String;
using Types::Identifiers::kUUID;
using Types::Identifiers::kWeakReference;

constexpr const char* kSmpteSite = "http://www.smpte-ra.org";

/// Preface with a number and a generation; Other with a text, and with references that point either way.
TestDictionary newDictionary() {
  TestDictionary dictionary;
  dictionary.property("Number", kInt32).property("Second", kInt32).property("Text", kUTF16String);
  dictionary.property("GenerationUID", kUUID, {u"rp210", u"urn:SMPTE:RP210"});
  dictionary.property("Weak", kWeakReference).property("Strong", kStrongReference);
  dictionary.set("Preface", {"Number", "Second", "GenerationUID"}).set("Other", {"Text", "Weak", "Strong"});
  return dictionary;
}

TestPartition newPartition() {
  auto dictionary = newDictionary();
  return TestPartition(dictionary);
}

/// The first set that an import makes.
MetadataSet& imported(const std::string& text, const TestPartition& partition) {
  const auto sets = import(text, partition);
  if (sets.empty()) throw std::logic_error("nothing was imported");
  return *sets.front();
}

bool isSet(MetadataSet& set, const char* symbol) { return property(set, symbol).isPresent(); }

TEST(SetImport, FindsPropertiesByNamespaceAndNameInAnyOrder) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface><p:Second>2</p:Second>text<p:Number>1</p:Number></p:Preface>"), partition);
  EXPECT_TRUE(holds(valueOf(set, "Number"), Types::Int32(1)));
  EXPECT_TRUE(holds(valueOf(set, "Second"), Types::Int32(2)));
}

TEST(SetImport, TakesTheFirstOfTwoElementsOfOneName) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface><p:Number>1</p:Number><p:Number>2</p:Number></p:Preface>"), partition);
  EXPECT_TRUE(holds(valueOf(set, "Number"), Types::Int32(1)));
}

TEST(SetImport, FindsPropertiesAmongTheChildrenOnly) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface><p:Any><p:Number>1</p:Number></p:Any></p:Preface>"), partition);
  EXPECT_FALSE(isSet(set, "Number"));
}

TEST(SetImport, LeavesAPropertyWithoutElementUnset) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface><p:Number>1</p:Number></p:Preface>"), partition);
  EXPECT_FALSE(isSet(set, "Second"));
  EXPECT_EQ(valueOf(set, "Second"), nullptr);
}

TEST(SetImport, FindsNoPropertyWhosePrefixTheDocumentBindsToAnotherNamespace) {
  const auto partition = newPartition();
  auto& set =
      imported(R"(<r><Preface xmlns:p="urn:other" xmlns:q="urn:p"><q:Number>1</q:Number></Preface></r>)", partition);
  EXPECT_FALSE(isSet(set, "Number"));
}

TEST(SetImport, FindsAPropertyByWhatItsPrefixStandsForInTheDocument) {
  const auto partition = newPartition();
  auto& set = imported(R"(<r><Preface xmlns:p="urn:other"><p:Number>1</p:Number><q:Second xmlns:q="urn:other">2
                             </q:Second></Preface></r>)",
                       partition);
  EXPECT_TRUE(holds(valueOf(set, "Number"), Types::Int32(1)));
  EXPECT_TRUE(holds(valueOf(set, "Second"), Types::Int32(2)));
}

TEST(SetImport, TakesPrefixesAsTheyStandAtTheSetAndNotAtTheProperty) {
  const auto partition = newPartition();
  auto& set = imported(R"(<r {p}><Preface xmlns:p="urn:a"><p:Number xmlns:p="urn:p">1</p:Number>
                             <p:Second>2</p:Second></Preface></r>)",
                       partition);
  EXPECT_FALSE(isSet(set, "Number"));
  EXPECT_TRUE(holds(valueOf(set, "Second"), Types::Int32(2)));
}

TEST(SetImport, TakesAPrefixThatIsNotDeclaredForTheSiteOfTheRegistrationAuthority) {
  const auto partition = newPartition();
  auto& set = imported(std::string("<r><Preface><Number xmlns=\"") + kSmpteSite +
                           "\">1</Number><p:Second {p}>2</p:Second></Preface></r>",
                       partition);
  EXPECT_TRUE(holds(valueOf(set, "Number"), Types::Int32(1)));
  EXPECT_FALSE(isSet(set, "Second"));
}

TEST(SetImport, ReadsTheGenerationFromItsAttribute) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface rp210:GenerationUID=\"{7}\"/>"), partition);
  EXPECT_TRUE(holds(valueOf(set, "GenerationUID"), uid(7)));
}

TEST(SetImport, LooksIdentifiersUpByThePrefixRp210WhateverItStandsFor) {
  const auto partition = newPartition();
  auto& set = imported(R"(<r xmlns:x="urn:SMPTE:RP210" xmlns:rp210="urn:any">
                             <Preface x:GenerationUID="{7}"/><Preface rp210:GenerationUID="{8}"/></r>)",
                       partition);
  EXPECT_FALSE(isSet(set, "GenerationUID"));
  EXPECT_TRUE(holds(valueOf(*partition->sets()[1], "GenerationUID"), uid(8)));
}

TEST(SetImport, ReadsNoIdentifierFromAnElement) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface><rp210:GenerationUID>{7}</rp210:GenerationUID></p:Preface>"), partition);
  EXPECT_FALSE(isSet(set, "GenerationUID"));
}

TEST(SetImport, GivesASetAnIdentifierOfItsOwnWhateverTheDocumentSays) {
  const auto partition = newPartition();
  auto& set = imported(document("<p:Preface rp210:InstanceUID=\"{7}\"/>"), partition);
  ASSERT_NE(set.instanceUID(), nullptr);
  EXPECT_NE(*set.instanceUID(), uid(7));
  EXPECT_EQ(partition->findByInstanceUID(*set.instanceUID()), partition->sets());
}

TEST(SetImport, TakesAnyTextForAnIdentifierOfTheDocument) {
  const auto partition = newPartition();
  import(document(R"(<p:Other rp210:InstanceUID="first"/><p:Other rp210:InstanceUID="second">
                       <p:Weak><p:Other_REF types:TargetInstance="first"/></p:Weak></p:Other>)"),
         partition);
  const auto& sets = partition->sets();
  EXPECT_TRUE(holds(valueOf(*sets[1], "Weak"), Types::WeakReference(*sets[0]->instanceUID())));
}

TEST(SetImport, KeepsTheFreshIdentifierOfASetWithoutOneAndEntersItNowhere) {
  const auto partition = newPartition();
  import(document(R"(<p:Other/><p:Other><p:Weak><p:Other_REF types:TargetInstance=""/></p:Weak></p:Other>
                     <p:Other rp210:InstanceUID=""/>)"),
         partition);
  const auto& sets = partition->sets();
  ASSERT_EQ(sets.size(), 3u);
  EXPECT_NE(*sets[0]->instanceUID(), *sets[1]->instanceUID());
  EXPECT_NE(*sets[0]->instanceUID(), *sets[2]->instanceUID());
  const auto& reference = dynamic_cast<const Types::WeakReference&>(*valueOf(*sets[1], "Weak"));
  EXPECT_EQ(reference.target(), *sets[2]->instanceUID());
}

TEST(SetImport, GivesTwoSetsOfOneIdentifierTheIdentifierOfTheFirst) {
  const auto partition = newPartition();
  import(document(R"(<p:Preface rp210:InstanceUID="{7}"/><p:Other rp210:InstanceUID="{7}"/>
                     <p:Other rp210:InstanceUID="{8}"/>)"),
         partition);
  const auto& sets = partition->sets();
  EXPECT_EQ(*sets[1]->instanceUID(), *sets[0]->instanceUID());
  EXPECT_NE(*sets[2]->instanceUID(), *sets[0]->instanceUID());
  EXPECT_EQ(partition->findByInstanceUID(*sets[0]->instanceUID()).size(), 2u);
}

TEST(SetImport, GivesASetTheIdentifierThatAnEarlierReferenceToItReserved) {
  const auto partition = newPartition();
  import(document(R"(<p:Other rp210:InstanceUID="{1}">
                       <p:Weak><p:Other_REF types:TargetInstance="{7}"/></p:Weak>
                       <p:Strong><p:Other_REF types:TargetInstance="{7}"/></p:Strong></p:Other>
                     <p:Other rp210:InstanceUID="{7}"/>)"),
         partition);
  const auto& sets = partition->sets();
  EXPECT_TRUE(holds(valueOf(*sets[0], "Weak"), Types::WeakReference(*sets[1]->instanceUID())));
  EXPECT_TRUE(holds(valueOf(*sets[0], "Strong"), Types::StrongReference(*sets[1]->instanceUID())));
}

TEST(SetImport, RemembersIdentifiersForOneCallOnly) {
  const auto partition = newPartition();
  for (int call = 0; call < 2; ++call) import(document("<p:Other rp210:InstanceUID=\"{7}\"/>"), partition);
  EXPECT_NE(*partition->sets()[0]->instanceUID(), *partition->sets()[1]->instanceUID());
}

constexpr const char* kMisplacedText =
    "<groups:ExtensionElements {groups}><p:Text {p}>t</p:Text></groups:ExtensionElements>";

TEST(SetImport, IgnoresExtensionElementsWhereThePrefixGroupsIsNotDeclared) {
  const auto partition = newPartition();
  auto& set = imported(std::string("<r {p}><Preface>") + kMisplacedText + "</Preface></r>", partition);
  EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
}

TEST(SetImport, IgnoresExtensionElementsThoughAPropertyHasThePrefixGroups) {
  TestDictionary dictionary;
  dictionary.property("Text", kUTF16String).property("Grouped", kInt32, {u"groups", u"urn:g"});
  const TestPartition partition(dictionary.set("Preface", {"Grouped"}));
  auto& set = imported(std::string("<r {p}><Preface><g:ExtensionElements xmlns:g=\"") + kSmpteSite +
                           "\"><p:Text>t</p:Text></g:ExtensionElements></Preface></r>",
                       partition);
  EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
}

TEST(SetImport, ReadsExtensionElementsWhereTheSetDeclaresThePrefixGroups) {
  const auto partition = newPartition();
  auto& set = imported(std::string("<r {p}><Preface {groups}>") + kMisplacedText + "</Preface></r>", partition);
  EXPECT_TRUE(holds(valueOf(set, "Text"), Types::UTF16String(u"t")));
}

TEST(SetImport, FindsExtensionElementsByWhatThePrefixGroupsStandsFor) {
  const auto partition = newPartition();
  auto& set = imported(R"(<r {p} xmlns:groups="urn:any"><Preface>
                            <groups:ExtensionElements {groups}><p:Text>no</p:Text></groups:ExtensionElements>
                            <x:ExtensionElements xmlns:x="urn:any"><p:Text>t</p:Text></x:ExtensionElements>
                            <groups:ExtensionElements><p:Text>no</p:Text></groups:ExtensionElements></Preface></r>)",
                       partition);
  EXPECT_TRUE(holds(valueOf(set, "Text"), Types::UTF16String(u"t")));
  EXPECT_EQ(++set.invalidBegin(), set.invalidEnd());
}

/// The only property that a set has from "groups:ExtensionElements" with a content.
class Extension {
 public:
  /// @param root, set  declarations that stand there.
  explicit Extension(const std::string& content, const std::string& root = "{p} {groups} {rp210}",
                     const std::string& set = "")
      : partition_(newPartition()) {
    import("<r " + root + "><Preface " + set + ">" + "<groups:ExtensionElements>" + content +
               "</groups:ExtensionElements></Preface></r>",
           partition_);
  }

  MetadataSet& set() const { return *partition_->sets().front(); }
  Element& element() const {
    EXPECT_NE(set().invalidBegin(), set().invalidEnd());
    EXPECT_EQ(++set().invalidBegin(), set().invalidEnd());
    return *set().invalidBegin();
  }
  const Types::SimpleDataType* value() const { return element().wireValue(); }
  bool isUnknown() const { return definition() == nullptr; }
  std::string symbol() const { return isUnknown() ? "(unknown)" : definition()->symbol(); }
  /// The tag of an unknown property.
  uint16 localTag() const {
    return dynamic_cast<const MetaMetadata::UnknownAttribute&>(element().metaAttribute()).localTag().value();
  }
  /// Whether the primer does not have that tag, and looking it up throws.
  bool isUnlisted() const {
    return localTag() >= 0x8000 && partition_->partitionDictionary().tryFind(localTag()) == nullptr;
  }
  const TestPartition& partition() const { return partition_; }

 private:
  const MetaMetadata::MetaElement* definition() const { return element().metaAttribute().metaElement(); }

  TestPartition partition_;
};

TEST(ExtensionImport, ReadsThePropertyOfAnotherSetAsMisplaced) {
  const Extension text("<p:Text> t</p:Text>");
  EXPECT_EQ(text.symbol(), "Text");
  EXPECT_TRUE(holds(text.value(), Types::UTF16String(u" t")));
  EXPECT_TRUE(text.element().isPresent());
}

TEST(ExtensionImport, ReadsAPropertyOfTheSetItselfAsMisplacedToo) {
  const Extension number("<p:Number>1</p:Number>");
  EXPECT_EQ(number.symbol(), "Number");
  EXPECT_FALSE(isSet(number.set(), "Number"));
}

TEST(ExtensionImport, ReadsAMisplacedReferenceAndAMisplacedIdentifier) {
  const Extension weak("<p:Weak><p:Other_REF xmlns:t='urn:t' t:TargetInstance='x'/></p:Weak>");
  EXPECT_EQ(weak.symbol(), "Weak");
  ASSERT_NE(weak.value(), nullptr);
  EXPECT_EQ(weak.value()->identifier(), kWeakReference);
  const Extension generation("<rp210:GenerationUID>{7}</rp210:GenerationUID>");
  EXPECT_TRUE(holds(generation.value(), uid(7)));
}

TEST(ExtensionImport, ReadsElementsInDocumentOrder) {
  const auto partition = newPartition();
  auto& set = imported(document(R"(<p:Preface><groups:ExtensionElements><p:Text>a</p:Text>text<p:Unheard
                                     groups:StaticLocalTag="12.34">0A</p:Unheard><!-- --><p:Text>b</p:Text>
                                   </groups:ExtensionElements></p:Preface>)"),
                       partition);
  std::vector<const Types::SimpleDataType*> values;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) values.push_back(at->wireValue());
  ASSERT_EQ(values.size(), 3u);
  EXPECT_TRUE(holds(values[0], Types::UTF16String(u"a")));
  EXPECT_TRUE(holds(values[1], Types::Unknown(Bytes{0x0a})));
  EXPECT_TRUE(holds(values[2], Types::UTF16String(u"b")));
}

TEST(ExtensionImport, KnowsAnElementByTheNamespaceThatTheRootBindsItsPrefixTo) {
  const auto* rebinding = R"(<q:Text xmlns:q="urn:q">74</q:Text>)";
  EXPECT_EQ(Extension(rebinding, R"({groups} xmlns:q="urn:p")").symbol(), "Text");
  EXPECT_EQ(Extension("<p:Text>74</p:Text>", R"({groups} xmlns:p="urn:q")").symbol(), "(unknown)");
}

TEST(ExtensionImport, ReadsAnElementWhosePrefixOnlyTheSetDeclaresAsUnknown) {
  const Extension text("<p:Text>74</p:Text>", "{groups}", "{p}");
  EXPECT_TRUE(text.isUnknown());
  EXPECT_TRUE(holds(text.value(), Types::Unknown(Bytes{0x74})));
  EXPECT_TRUE(text.isUnlisted());
}

TEST(ExtensionImport, FindsAPropertyOfNoNamespaceForAPrefixThatTheRootDoesNotDeclare) {
  TestDictionary dictionary;
  dictionary.property("Bare", kUTF16String, {u"b", u""});
  const TestPartition partition(dictionary.set("Preface").set("Other", {"Bare"}));
  auto& set = imported(R"(<r {groups}><Preface xmlns:any="urn:any"><groups:ExtensionElements><any:Bare>t</any:Bare>
                             </groups:ExtensionElements></Preface></r>)",
                       partition);
  EXPECT_TRUE(holds(valueOf(set, "Bare"), Types::UTF16String(u"t")));
}

TEST(ExtensionImport, TakesANameWithoutColonForItsOwnPrefix) {
  EXPECT_EQ(Extension("<Text>t</Text>", R"({groups} xmlns:Text="urn:p")").symbol(), "Text");
  EXPECT_EQ(Extension("<Text xmlns=\"urn:p\">74</Text>", "{groups} {p}").symbol(), "(unknown)");
}

TEST(ExtensionImport, TakesTheFirstPropertyOfANamespaceAndTag) {
  TestDictionary dictionary;
  dictionary.property("First", kUTF16String, {u"p", u"urn:p", u"Same"});
  dictionary.property("Second", kInt32, {u"p", u"urn:p", u"Same"});
  const TestPartition partition(dictionary.set("Preface").set("Other", {"Second", "First"}));
  auto& set = imported(document("<p:Preface><groups:ExtensionElements><p:Same>1</p:Same></groups:ExtensionElements>"
                                "</p:Preface>"),
                       partition);
  EXPECT_TRUE(holds(valueOf(set, "First"), Types::UTF16String(u"1")));
}

TEST(ExtensionImport, ReadsAnUnknownPropertyUnderItsStaticTag) {
  const Extension dark(R"(<groups:DarkElement groups:StaticLocalTag="12.34">0a0B</groups:DarkElement>)");
  EXPECT_EQ(dark.localTag(), 0x1234);
  EXPECT_TRUE(holds(dark.value(), Types::Unknown(Bytes{0x0a, 0x0b})));
  EXPECT_TRUE(dark.element().isPresent());
}

constexpr const char* kLabel = "06.0E.2B.34.01.01.01.01.7F.11.22.33.44.55.66.77";

TEST(ExtensionImport, PrefersTheStaticTagToTheLabel) {
  const Extension dark(std::string(R"(<groups:DarkElement groups:UniversalLabel=")") + kLabel +
                       R"(" groups:StaticLocalTag="12.34"/>)");
  EXPECT_EQ(dark.localTag(), 0x1234);
  EXPECT_TRUE(dark.partition()->partitionDictionary().primerEntries().empty());
}

TEST(ExtensionImport, GivesAnUnknownLabelATagOfThePartition) {
  const Extension dark(std::string(R"(<groups:DarkElement groups:UniversalLabel=")") + kLabel +
                       R"(">FF</groups:DarkElement>)");
  EXPECT_GE(dark.localTag(), 0x8000);
  const auto* label = dark.partition()->partitionDictionary().tryFind(dark.localTag());
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(*label, Types::UniversalLabel(u"06.0E.2B.34.01.01.01.01.7F.11.22.33.44.55.66.77", kDottedForm));
  EXPECT_TRUE(holds(dark.value(), Types::Unknown(Bytes{0xff})));
}

TEST(ExtensionImport, GivesAKnownLabelTheTagThatItHasInThePartition) {
  const auto partition = newPartition();
  partition.addPrimerEntry(0x9abc, "060e2b34.01010101.7f112233.44556677");
  auto& set = imported(document(std::string(R"(<p:Preface><groups:ExtensionElements><groups:DarkElement
                         groups:UniversalLabel=")") +
                                kLabel + R"("/></groups:ExtensionElements></p:Preface>)"),
                       partition);
  const auto& attribute = dynamic_cast<const MetaMetadata::UnknownAttribute&>(set.invalidBegin()->metaAttribute());
  EXPECT_EQ(attribute.localTag().value(), 0x9abc);
  EXPECT_EQ(partition->partitionDictionary().primerEntries().size(), 1u);
}

TEST(ExtensionImport, ReadsAnUnknownPropertyWithoutTextAsOneWithoutValue) {
  const Extension dark(R"(<groups:DarkElement groups:StaticLocalTag="12.34"/>)");
  EXPECT_EQ(dark.value(), nullptr);
  EXPECT_TRUE(dark.element().isPresent());
}

TEST(ExtensionImport, LooksTagAndLabelUpByThePrefixGroups) {
  const Extension dark(R"(<groups:DarkElement StaticLocalTag="12.34" xmlns:g="urn:SMPTE:Groups:MXF"
                            g:UniversalLabel="no"/>)");
  EXPECT_TRUE(dark.isUnlisted());
}

TEST(ExtensionImport, GivesUnknownPropertiesWithoutMarkTagsThatNothingElseHas) {
  const auto partition = newPartition();
  const auto& set =
      imported(document(R"(<p:Preface><groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag="FF.FF"/>
                             <groups:DarkElement>01</groups:DarkElement><groups:DarkElement>02</groups:DarkElement>
                             </groups:ExtensionElements></p:Preface>)"),
               partition);
  std::vector<uint16> tags;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    tags.push_back(dynamic_cast<const MetaMetadata::UnknownAttribute&>(at->metaAttribute()).localTag().value());
  }
  EXPECT_THAT(tags, testing::ElementsAre(0xffff, 0xfffe, 0xfffd));
  auto& dictionary = partition->partitionDictionary();
  EXPECT_THAT(dictionary.primerEntries(), testing::IsEmpty());
  EXPECT_EQ(dictionary.findOrGenerate(Types::UniversalLabel(Utils::stringToWstring(kLabel), kDottedForm)).value(),
            0xfffc);
}

TEST(ExtensionImport, RefusesWhatIsNoTagNoLabelAndNoHexadecimalText) {
  const auto failure = [](const std::string& content) { return failureOf([&] { Extension{content}; }); };
  EXPECT_EQ(failure(R"(<groups:DarkElement groups:StaticLocalTag="tag"/>)").kind, "InvalidFormat");
  EXPECT_EQ(failure(R"(<groups:DarkElement groups:UniversalLabel="label"/>)").kind, "InvalidFormat");
  EXPECT_EQ(failure(R"(<p:Unheard>text</p:Unheard>)"), invalidFormat("Value contains non Hexadecimal characters", 117));
}

TEST(AttributeKinds, GiveDefinitionAndSchemaIndex) {
  auto dictionary = newDictionary();
  const auto built = dictionary.set("Indexed", {{"Number", u"42"}, {"Second", u""}}).build();
  std::map<std::string, uint32> indices;
  for (const auto& attribute : built->findSetBySymbol("Indexed")->attributes()) {
    const FromXMLMetaAttributeVisitor valid(attribute);
    EXPECT_EQ(valid.metaElement(), attribute.metaElement());
    indices[valid.metaElement()->symbol()] = valid.schemaIndex();
    const FromXMLMetaAttributeVisitor misplaced(MetaMetadata::MisplacedAttribute(attribute.metaElement()));
    EXPECT_EQ(misplaced.metaElement(), attribute.metaElement());
    EXPECT_EQ(misplaced.schemaIndex(), 0u);
  }
  EXPECT_EQ(indices["Number"], 42u);
  EXPECT_EQ(indices["Second"], 0u);
  const FromXMLMetaAttributeVisitor unknown(MetaMetadata::UnknownAttribute(Types::LocalTag(0x1234)));
  EXPECT_EQ(unknown.metaElement(), nullptr);
  EXPECT_EQ(unknown.schemaIndex(), 0u);
}

}  // namespace
}  // namespace Vantor::XML2Partition

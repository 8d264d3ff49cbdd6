#include <gmock/gmock.h>

#include <set>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// Sets of a document that have a name of one's choice, or nothing, in place of an InstanceUID.
namespace Vantor::XML2Partition {
namespace {

using LosslessXML::Diagnostic;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;
using Kind = Diagnostic::Kind;

std::string storage(const std::string& attributes, const std::string& content = "") {
  return "<rp210:ContentStorageObject><s377m:ContentStorage" + attributes + ">" + content +
         "</s377m:ContentStorage></rp210:ContentStorageObject>";
}
std::string named(const std::string& name) { return " rp210:InstanceUID='new:" + name + "'"; }
std::string packages(const std::string& content) { return "<rp210:Packages>" + content + "</rp210:Packages>"; }
std::string pointer(const std::string& set, const std::string& name) {
  return "<s377m:" + set + "_REF types:TargetInstance='new:" + name + "'/>";
}
const std::string kPreface = std::string("<s377m:Preface rp210:InstanceUID='") + kPrefaceUID + "'>\n";
const std::string kEnd = "</s377m:Preface>\n";

/// The sets that references of a property lead to.
std::vector<const MetadataSet*> targetsOf(const PartitionMetadata& partition, const MetadataSet& set,
                                          const std::string& symbol) {
  std::vector<Types::UUID> instanceUIDs;
  set.find(symbol)->appendTargets({true}, instanceUIDs);
  std::vector<const MetadataSet*> targets;
  for (const auto& instanceUID : instanceUIDs) {
    const auto& found = partition.findByInstanceUID(instanceUID);
    targets.push_back(found.size() == 1 ? found.front() : nullptr);
  }
  return targets;
}

std::vector<std::string> namesOf(const std::vector<const MetadataSet*>& sets) {
  std::vector<std::string> names;
  for (const auto* set : sets) names.push_back(set == nullptr ? "nothing" : set->name());
  return names;
}

auto failsWith(const std::string& message) {
  return ThrowsMessage<Exceptions::InvalidFormat>(testing::HasSubstr(message));
}

TEST(LosslessNewSets, NeedNoInstanceUIDWithinAReferenceWhateverTheBaseIs) {
  Imported base(prefaceWith(""));
  Imported document(prefaceWith(storage("", packages("<s377m:MaterialPackage/>"))), base.partition());
  EXPECT_THAT(document.messages(), IsEmpty());
  const auto stored = targetsOf(document.partition(), document.first(), "ContentStorageObject");
  ASSERT_THAT(namesOf(stored), ElementsAre("ContentStorage"));
  EXPECT_THAT(namesOf(targetsOf(document.partition(), *stored.front(), "Packages")), ElementsAre("MaterialPackage"));
}

TEST(LosslessNewSets, NeedARightAttributeIfAny) {
  Imported base(prefaceWith(""));
  Imported document(prefaceWith(storage(std::string(" InstanceUID='") + kStorageUID + "'")), base.partition());
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kMissingInstanceUID, Kind::kUnknownAttribute));
}

TEST(LosslessNewSets, AreFoundByTheirNamesBehindAndBeforeReferences) {
  const std::string material = "<s377m:MaterialPackage" + named("one") + "/>\n";
  const std::string preface =
      kPreface + storage("", packages(pointer("MaterialPackage", "one") + pointer("SourcePackage", " a b\xC3\xA9 "))) +
      kEnd;
  const std::string source = "<s377m:SourcePackage" + named(" a b\xC3\xA9") + "/>\n";
  for (const auto& content : {material + preface + source, source + preface + material, preface + material + source}) {
    Imported base(documentOf(kPreface + kEnd));
    Imported document(documentOf(content), base.partition());
    EXPECT_THAT(document.messages(), IsEmpty());
    const auto stored = targetsOf(document.partition(), *document.partition().preface(), "ContentStorageObject");
    ASSERT_THAT(namesOf(stored), ElementsAre("ContentStorage"));
    EXPECT_THAT(namesOf(targetsOf(document.partition(), *stored.front(), "Packages")),
                ElementsAre("MaterialPackage", "SourcePackage"));
  }
}

TEST(LosslessNewSets, AreFoundByWeakReferences) {
  const std::string content = kPreface + "<rp210:PrimaryPackage>" + pointer("MaterialPackage", "one") +
                              "</rp210:PrimaryPackage>" +
                              storage("", packages("<s377m:MaterialPackage" + named("one") + "/>")) + kEnd;
  Imported document(documentOf(content));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_THAT(namesOf(targetsOf(document.partition(), document.first(), "PrimaryPackage")),
              ElementsAre("MaterialPackage"));
  EXPECT_EQ(document.partition().sets().size(), 3u);
}

TEST(LosslessNewSets, HaveOtherInstanceUIDsInEveryImport) {
  std::set<std::string> instanceUIDs;
  const auto document =
      loaded(documentOf("<s377m:Preface" + named("p") + "/><s377m:Identification" + named("i") + "/>"));
  for (int i = 0; i < 3; ++i) {
    PartitionMetadata partition(builtInDictionary());
    document.import(partition);
    for (const MetadataSet* set : partition.sets()) instanceUIDs.insert(set->instanceUID()->dottedText());
  }
  EXPECT_EQ(instanceUIDs.size(), 6u);
}

TEST(LosslessNewSets, AreNamedInDiagnosticsByTheirKindAlone) {
  Imported document(documentOf("<s377m:Preface" + named("p") + "><rp210:Foo/></s377m:Preface>"));
  ASSERT_EQ(document.result().diagnostics.size(), 1u);
  EXPECT_EQ(document.result().diagnostics.front().place.set, "Preface");
}

TEST(LosslessNewSets, FailWhereAReferenceHasANameOfNoSet) {
  const auto content = packages("\n" + pointer("MaterialPackage", "one") + "\n" + pointer("SourcePackage", "two"));
  EXPECT_THAT([&] { Imported{prefaceWith(storage("", content))}; },
              failsWith("line 4: no set of the document is named 'new:one'"));
  EXPECT_THAT([&] { Imported{prefaceWith(storage("", packages(pointer("Dangling", ""))))}; },
              failsWith("line 3: no set of the document is named 'new:'"));
}

TEST(LosslessNewSets, FailWhereAnElementOfNoSetHasTheName) {
  const std::string content = kPreface + storage("", packages(pointer("MaterialPackage", "one"))) + kEnd;
  const std::string mistyped = "<s377m:MaterialPackge" + named("one") + "/>";
  EXPECT_THAT(
      [&] { Imported{documentOf(content + mistyped)}; },
      failsWith("line 3: no set of the document is named 'new:one'; the MaterialPackge at line 4 is, which is no "
                "known set"));
  Imported unused(documentOf(kPreface + kEnd + mistyped));
  EXPECT_THAT(unused.kinds(), ElementsAre(Kind::kUnknownSet));
}

TEST(LosslessNewSets, FailWhereTwoHaveOneName) {
  for (const std::string second : {"Identification", "ContentStorage"}) {
    const std::string content =
        "<s377m:Identification" + named("one") + "/>\n<s377m:" + second + named("one") + "></s377m:" + second + ">";
    EXPECT_THAT([&] { Imported{documentOf(content)}; },
                failsWith("line 3: the " + second +
                          " is named 'new:one', as is the Identification at line 2; give one "
                          "of them another name"));
  }
}

TEST(LosslessNewSets, FailWhereTheyAreNestedTwiceUnderOneName) {
  const std::string package = "<s377m:MaterialPackage" + named("one") + "/>\n";
  EXPECT_THAT([&] { Imported{prefaceWith(storage("", packages("\n" + package + package)))}; },
              failsWith("line 5: the MaterialPackage is named 'new:one', as is the MaterialPackage at line 4"));
}

TEST(LosslessNewSets, AreReadFromTheCopyOfASetThatAloneHasThem) {
  const std::string id = std::string(" rp210:InstanceUID='") + kStorageUID + "'";
  const std::string content = kPreface + storage(id) + "<rp210:PrimaryPackage>" + pointer("MaterialPackage", "one") +
                              "</rp210:PrimaryPackage>" + kEnd + "<s377m:ContentStorage" + id + ">" +
                              packages("<s377m:MaterialPackage" + named("one") + "/>") + "</s377m:ContentStorage>";
  Imported document(documentOf(content));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kDifferentCopy));
  EXPECT_THAT(namesOf(targetsOf(document.partition(), document.first(), "PrimaryPackage")),
              ElementsAre("MaterialPackage"));
}

TEST(LosslessNewSets, AreNoneInDocumentsThatStartWithAnotherCase) {
  Imported document(documentOf("<s377m:Preface rp210:InstanceUID='New:p'/>"));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kInvalidInstanceUID));
}

}  // namespace
}  // namespace Vantor::XML2Partition

#include "Core/Dictionary/BuiltInDictionary.h"
#include "tests/XMLBuilder/Support.h"

/// The three peculiarities of documents in the namespaces of SMPTE ST 434:2014, and what stays as it is in the others.
namespace Vantor::XMLBuilder {
namespace {

/// A partition of the built-in dictionary in the vocabulary of ST 434:2014.
class SchemaVocabulary : public ::testing::TestWithParam<Flags> {
 protected:
  TestSet add(const char* symbol, uint32 number) {
    const auto& set = *dictionary_->findSetBySymbol(symbol);
    return TestSet(*partition_->createMetadataSet(set.key()), *dictionary_).value("InstanceID", uid(number));
  }
  std::string document() const { return exported(partition_, GetParam()); }

 private:
  SharedPtr<const MetaMetadata::Dictionary> dictionary_ = builtInDictionary(MetaMetadata::Vocabulary::kST434_2014);
  TestPartition partition_{dictionary_};
};

TEST_P(SchemaVocabulary, LeavesTheIdentifiersOfASetAttributesInTheirNamespaceAndForm) {
  add("Preface", 1).value("LinkedGenerationID", uid(2));
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {rp210} {s377m} {st395}>
      <st395:Preface rp210:GenerationUID="{2}" rp210:InstanceUID="{1}"/>
    </s377m:MetadataSets>)");
}

TEST_P(SchemaVocabulary, DeclaresNoTypesButItsOwn) {
  add("Preface", 1).value("FormatVersion", Types::VersionType(1, 3));
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st377Types} {st395}>
      <st395:Preface rp210:InstanceUID="{1}"><st335:FormatVersion>259</st335:FormatVersion></st395:Preface>
    </s377m:MetadataSets>)");
}

TEST_P(SchemaVocabulary, PutsCompoundValuesIntoItsTypes) {
  add("Preface", 1).value("FileLastModified", Types::Timestamp(2026, 11, 21, 1, 2, 3, 999));
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st377Types} {st395}>
      <st395:Preface rp210:InstanceUID="{1}">
        <st335:FileLastModified>
          <st377Types:Year>2026</st377Types:Year>
          <st377Types:Month>11</st377Types:Month>
          <st377Types:Day>21</st377Types:Day>
          <st377Types:Hour>1</st377Types:Hour>
          <st377Types:Minute>2</st377Types:Minute>
          <st377Types:Second>3</st377Types:Second>
          <st377Types:mSec4>249</st377Types:mSec4>
        </st335:FileLastModified>
      </st395:Preface>
    </s377m:MetadataSets>)");
}

/// The children of one component; the first element around them declares the prefix.
std::string component(const char* code, const char* depth) {
  return std::string(
             "<types:RGBAComponent xmlns:types=\"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012\">") +
         "<types:Code>" + code + "</types:Code><types:Depth>" + depth + "</types:Depth></types:RGBAComponent>";
}

TEST_P(SchemaVocabulary, LeavesRGBAComponentsTheirPrefixButNotTheirNamespace) {
  Types::RGBALayout layout;
  layout.set(0, {'R', 10});
  add("Preface", 1);
  add("RGBADescriptor", 2).value("PixelLayout", layout);
  const std::string none = component("0", "0");
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st377Types} {st395}>
      <st395:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata xmlns:groups="urn:SMPTE:Groups:MXF">
        <st395:RGBADescriptor rp210:InstanceUID="{2}">
          <st335:PixelLayout>)" +
                             component("82", "10") + none + none + none + none + R"(</st335:PixelLayout>
        </st395:RGBADescriptor>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

TEST_P(SchemaVocabulary, LeavesJpeg2000ValuesTheirNamespaceThatTheRootDoesNotDeclare) {
  const Bytes style = {0x05};
  const Bytes steps = {0x77, 0x0e};
  add("Preface", 1);
  add("JPEG2000SubDescriptor", 2)
      .item("PictureComponentSizing", Types::J2KPictureComponent(7, 1, 2))
      .value("CodingStyleDefault", Types::J2KCodingStyleDefault(1, 2, style.data(), style.size()))
      .value("QuantizationDefault", Types::J2KQuantisationDefault(32, steps.data(), steps.size()));
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st377Types} {st395}>
      <st395:Preface rp210:InstanceUID="{1}"/>
      <groups:FloatingDarkMetadata xmlns:groups="urn:SMPTE:Groups:MXF">
        <st395:JPEG2000SubDescriptor rp210:InstanceUID="{2}">
          <st335:PictureComponentSizing>
            <st335:Element>
              <s422mTypes:Ssizi {s422mTypes}>7</s422mTypes:Ssizi>
              <s422mTypes:XRSizi {s422mTypes}>1</s422mTypes:XRSizi>
              <s422mTypes:YRSizi {s422mTypes}>2</s422mTypes:YRSizi>
            </st335:Element>
          </st335:PictureComponentSizing>
          <st335:CodingStyleDefault>
            <s422mTypes:Scod {s422mTypes}>1</s422mTypes:Scod>
            <s422mTypes:SGcod {s422mTypes}>2</s422mTypes:SGcod>
            <s422mTypes:Spcod {s422mTypes}>05</s422mTypes:Spcod>
          </st335:CodingStyleDefault>
          <st335:QuantizationDefault>
            <s422mTypes:Sqcd {s422mTypes}>32</s422mTypes:Sqcd>
            <s422mTypes:SPgcd {s422mTypes}>770E</s422mTypes:SPgcd>
          </st335:QuantizationDefault>
        </st395:JPEG2000SubDescriptor>
      </groups:FloatingDarkMetadata>
    </s377m:MetadataSets>)");
}

/// Bytes without definition are written in the legacy form, which brings the legacy prefixes with it.
TEST_P(SchemaVocabulary, DeclaresTheLegacyTypesForUnknownProperties) {
  add("Preface", 1).unknown(0x1234, Types::Unknown(Bytes{0xab}));
  EXPECT_XML(document(), R"(
    <s377m:MetadataSets {groups} {rp210} {s377m} {s422mTypes} {st395} {types}>
      <st395:Preface rp210:InstanceUID="{1}">
        <groups:ExtensionElements>
          <groups:DarkElement groups:StaticLocalTag="12.34">AB</groups:DarkElement>
        </groups:ExtensionElements>
      </st395:Preface>
    </s377m:MetadataSets>)");
}

INSTANTIATE_TEST_SUITE_P(NestedAndFlat, SchemaVocabulary, ::testing::Values(kNested, kFlat),
                         [](const auto& info) { return info.param.nestStrongReferences ? "Nested" : "Flat"; });

TEST(SchemaReferences, NameTheirTargetsInTheGroupsOfSt434) {
  const auto dictionary = builtInDictionary(MetaMetadata::Vocabulary::kST434_2014);
  const TestPartition partition(dictionary);
  const auto add = [&](const char* symbol, uint32 number) {
    return TestSet(*partition->createMetadataSet(dictionary->findSetBySymbol(symbol)->key()), *dictionary)
        .value("InstanceID", uid(number));
  };
  add("Preface", 1).refer("ContentStorageObject", 2).refer("PrimaryPackage", 3);
  add("ContentStorage", 2).refer("Packages", 3);
  add("MaterialPackage", 3);
  EXPECT_XML(exported(partition), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st395} {types}>
      <st395:Preface rp210:InstanceUID="{1}">
        <st335:ContentStorageObject>
          <st395:ContentStorage rp210:InstanceUID="{2}">
            <st335:Packages><st395:MaterialPackage rp210:InstanceUID="{3}"/></st335:Packages>
          </st395:ContentStorage>
        </st335:ContentStorageObject>
        <st335:PrimaryPackage><st395:MaterialPackage_REF types:TargetInstance="{3}"/></st335:PrimaryPackage>
      </st395:Preface>
    </s377m:MetadataSets>)");
  EXPECT_XML(exported(partition, kFlat), R"(
    <s377m:MetadataSets {rp210} {s377m} {st335} {st395} {types}>
      <st395:Preface rp210:InstanceUID="{1}">
        <st335:ContentStorageObject><st395:ContentStorage_REF types:TargetInstance="{2}"/></st335:ContentStorageObject>
        <st335:PrimaryPackage><st395:MaterialPackage_REF types:TargetInstance="{3}"/></st335:PrimaryPackage>
      </st395:Preface>
      <st395:ContentStorage rp210:InstanceUID="{2}">
        <st335:Packages><st395:MaterialPackage_REF types:TargetInstance="{3}"/></st335:Packages>
      </st395:ContentStorage>
      <st395:MaterialPackage rp210:InstanceUID="{3}"/>
    </s377m:MetadataSets>)");
}

}  // namespace
}  // namespace Vantor::XMLBuilder

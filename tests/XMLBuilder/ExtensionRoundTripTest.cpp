#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/KLV/LocalSet.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What a round trip by XML makes of one Preface with the given items, and of a MetaDictionary beside it.
class ExtensionRoundTrip : public testing::TestWithParam<bool> {
 protected:
  void addPreface(const Items& items) { add("060e2b34 02530101 0d010101 01012f00", items); }
  void addMetaDictionary(const Items& items) { add("060e2b34 02530101 0d010101 02250000", items); }
  void addPrimerEntry(uint16 tag, const char* label) {
    original_.partitionDictionary().addPrimerEntry({tag, KLV::Key(hex(label).data())});
  }

  std::vector<std::string> differences() {
    wstring xml;
    XMLBuilder::partition2XML(&original_, GetParam(), false, XMLUtils::EncodingType::kUTF16Indented, xml);
    XML2Partition::getPartitionMetadataFromString(xml, &copy_);
    comparison_ = comparePartitions(original_, copy_);
    std::vector<std::string> texts;
    for (const auto& difference : comparison_.differences) {
      texts.push_back(std::string(name(difference.kind)) + ": " + difference.property + ": " + difference.left +
                      " -> " + difference.right);
    }
    return texts;
  }
  uint64 count(InsignificantDifference kind) const { return comparison_.count(kind); }
  const PartitionMetadata& copy() const { return copy_; }

 private:
  void add(const char* key, const Items& items) {
    original_.addKLV(KLV::Key(hex(key).data()), 4, items.bytes().data(), items.bytes().size(), 0);
  }

  PartitionMetadata original_{builtInDictionary()};
  PartitionMetadata copy_{builtInDictionary()};
  PartitionComparison comparison_;
};

TEST_P(ExtensionRoundTrip, BringsBackAMisplacedPropertyThatIsTheOnlyExtension) {
  addPreface(Items().instanceUID(1).item(0x4b01, "00000019 00000001"));
  EXPECT_THAT(differences(), IsEmpty());
  ASSERT_NE(copy().sets().front()->invalidBegin(), copy().sets().front()->invalidEnd());
  EXPECT_EQ(copy().sets().front()->invalidBegin()->metaAttribute().metaElement()->symbol(), "EditRate");
}

TEST_P(ExtensionRoundTrip, BringsBackIdentifiersOfGenerationsOutOfTheirPlace) {
  addPreface(Items().instanceUID(1));
  addMetaDictionary(Items().instanceUID(4).item(0x0102, hexOf(uid(2))).item(0x0102, hexOf(uid(3))));
  EXPECT_THAT(differences(), IsEmpty());
}

TEST_P(ExtensionRoundTrip, BringsBackUnknownPropertiesOfEveryKindOfTag) {
  addPrimerEntry(0x8001, "060e2b34 01010101 7f112233 44556677");
  addPrimerEntry(0x7f01, "060e2b34 01010101 7f112233 44556678");
  addPreface(Items()
                 .instanceUID(1)
                 .item(0x8001, "01")
                 .item(0x8002, "02")
                 .item(0x7f01, "03")
                 .item(0x7f02, "04")
                 .item(0x8003, "05"));
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(count(InsignificantDifference::kPrimerLabels), 1u) << "of 7F01, which XML tells without its label";
}

TEST_P(ExtensionRoundTrip, IsNotSilentAboutAStaticTagThatThePrimerUsesForSomethingElse) {
  addPrimerEntry(0x4b01, "060e2b34 01010101 7f112233 44556677");
  addPreface(Items().instanceUID(1).item(0x4b01, "00000019 00000001"));
  const std::string label = "06.0E.2B.34.01.01.01.01.7F.11.22.33.44.55.66.77";
  EXPECT_THAT(differences(),
              ElementsAre("missing property: unknown property 4B.01 (" + label + "): 0000001900000001 -> ",
                          "added property: EditRate as octets:  -> 25"));
}

INSTANTIATE_TEST_SUITE_P(NestedAndFlat, ExtensionRoundTrip, testing::Bool());

}  // namespace
}  // namespace Vantor

#include <gmock/gmock.h>

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Types.h"
#include "tests/Edit/CheckSupport.h"

/// Files that would take a rule very long if it looked at each thing once for each other thing: what it keeps instead
/// has to give the same findings. Raise `kMany` to measure.
namespace Vantor::Edit {
namespace {

using M = PartitionMetadata;

constexpr uint16 kMany = 40;

std::ptrdiff_t countOf(const char* rule, const Mutation& mutation) {
  const auto found = newFindingsOf(mutation);
  return std::count_if(found.begin(), found.end(),
                       [&](const std::string& text) { return text.substr(0, text.find(':')) == rule; });
}

Types::UUID doubledUID() { return Types::UUID(std::array<uint8, 16>{1}); }

void addReferences(MetadataSet& set, const char* property, const Types::UUID& target) {
  auto& list = static_cast<ReferenceArrayElement&>(*set.find(property));
  for (uint16 i = 0; i < kMany; ++i) list.appendUnverifiedReference(std::make_unique<Types::StrongReference>(target));
}

TEST(CheckCost, VisitsADescriptorThatManyPackagesShareOnce) {
  const auto share = [](M& m) {
    auto& whole = m.find("MultipleDescriptor");
    addReferences(whole, "FileDescriptors", *m.find("AES3PCMDescriptor").instanceUID());
    for (uint16 i = 0; i < kMany; ++i) {
      addTo(m, "ContentStorage", "Packages", "SourcePackage").set("EssenceDescription", whole);
    }
    m.find("AES3PCMDescriptor").set("LinkedTrackID", 9);
  };
  EXPECT_EQ(countOf("linked-track", {"", share}), 1);
}

TEST(CheckCost, ReachesAllSetsOfOneInstanceUID) {
  const auto repeat = [](M& m) {
    for (uint16 i = 0; i < kMany; ++i) {
      auto& locator = m.createMetadataSet("NetworkLocator");
      static_cast<SimpleElement&>(*locator.find("InstanceID")).set(std::make_unique<Types::UUID>(doubledUID()), true);
    }
    m.find("MPEGVideoDescriptor").append("Locators", m.createMetadataSet("NetworkLocator"));
    addReferences(m.find("MPEGVideoDescriptor"), "Locators", doubledUID());
  };
  EXPECT_EQ(countOf("unreached-set", {"", repeat}), 0);
  EXPECT_EQ(countOf("doubled-instance-uid", {"", repeat}), kMany - 1);
}

wstring schemes() {
  wstring text = u"[";
  for (uint16 i = 0; i < kMany; ++i) {
    text += (i == 0 ? u"" : u", ");
    text += Types::UniversalLabel(KLV::Key({6, 14, 0x2b, 0x34, 4, 1, 1, 1, 13, 0x7f, static_cast<uint8>(i >> 8),
                                            static_cast<uint8>(i), 0, 0, 0, 1}))
                .toString(kDottedForm);
  }
  return text + u"]";
}

TEST(CheckCost, ComparesSchemesWithKindsOfFrameworks) {
  const auto list = [](M& m) {
    m.find("Preface").set("DescriptiveSchemes", schemes().c_str());
    for (uint16 i = 0; i < kMany; ++i) m.createMetadataSet("SceneFramework");
    m.createMetadataSet("ProductionFramework");
  };
  EXPECT_EQ(countOf("missing-scheme", {"", list}), kMany + 1);
  EXPECT_EQ(countOf("unused-scheme", {"", list}), kMany);
}

TEST(CheckCost, ComparesContainersOfEachPackWithThePreface) {
  const auto alternate = [](FileState& state) {
    const auto sound = state.partitions[1];
    auto other = sound;
    other.info.pack.essenceContainers.pop_back();
    for (uint16 i = 0; i < kMany; ++i) state.partitions.insert(state.partitions.begin() + 1, {other, sound});
  };
  const auto found = check(mutated({"", {}, alternate}));
  EXPECT_EQ(std::count_if(found.begin(), found.end(),
                          [](const Finding& finding) { return finding.rule == findRule("pack-containers"); }),
            kMany);
}

TEST(CheckCost, LooksUpStaticTagsOfOddPrimerRows) {
  const auto add = [](M& m) {
    for (uint16 i = 0; i < kMany; ++i) {
      const KLV::Key label({6, 14, 0x2b, 0x34, 1, 1, 1, 1, 15, 14, static_cast<uint8>(i >> 8),
                            static_cast<uint8>(i),  //
                            0, 0, 0, 1});
      m.partitionDictionary().addPrimerEntry({0x1801, label});
    }
  };
  EXPECT_EQ(countOf("static-tag-meaning", {"", add}), 1);
}

}  // namespace
}  // namespace Vantor::Edit

#include "Tree/SetTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"

namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

std::string textOfTree(const PartitionMetadata& metadata, const TreeOptions& options = {}) {
  return treeText(treeOf(metadata, options), {});
}

/// Sequences, each the only component of the one before it.
struct ChainOfSequences {
  explicit ChainOfSequences(std::size_t count) : metadata(builtInDictionary()) {
    for (std::size_t i = 0; i < count; ++i) {
      auto& next = metadata.createMetadataSet("Sequence");
      if (last != nullptr) last->append("ComponentObjects", next);
      last = &next;
    }
  }
  PartitionMetadata metadata;
  MetadataSet* last = nullptr;
};

TEST(SetTree, ShowsTheValuesThatMatterFirstAndNamesOfBothKinds) {
  PartitionMetadata metadata(builtInDictionary());
  auto& preface = metadata.createMetadataSet("Preface");
  auto& writer = metadata.createMetadataSet("Identification");
  writer.set("ToolkitVersion", u"1.2.3.4 release");
  writer.set("ApplicationName", u"bmx");
  preface.append("IdentificationList", writer);
  EXPECT_EQ(textOfTree(metadata), R"(Preface
└─ IdentificationList[1] (Identifications): Identification
     ApplicationName (ProductName): "bmx"
     ToolkitVersion: 1.2.3.4 release
)");
}

TEST(SetTree, NumbersSetsAsTheSetCommandTakesThem) {
  const ChainOfSequences chain(2);
  EXPECT_EQ(textOfTree(chain.metadata), R"(Not reached from the Preface:
Sequence[1]
└─ ComponentObjects[1] (StructuralComponents): Sequence[2]
)");
}

TEST(SetTree, PointsToSetsThatStandAboveAndMarksCircles) {
  ChainOfSequences chain(2);
  chain.last->append("ComponentObjects", chain.metadata.find("Sequence[1]"));
  chain.metadata.find("Sequence[1]").append("ComponentObjects", *chain.last);
  EXPECT_EQ(textOfTree(chain.metadata), R"(Not reached from the Preface:
Sequence[1]
├─ ComponentObjects[1] (StructuralComponents): Sequence[2]
│  └─ ComponentObjects[1] (StructuralComponents): → Sequence[1] (circular,
│         above)
└─ ComponentObjects[2] (StructuralComponents): → Sequence[2] (above)
)");
}

TEST(SetTree, EndsAtTheDepthAskedFor) {
  const ChainOfSequences chain(4);
  TreeOptions options;
  options.depth = 1;
  EXPECT_EQ(textOfTree(chain.metadata, options), R"(Not reached from the Preface:
Sequence[1]
└─ ComponentObjects[1] (StructuralComponents): Sequence[2]
     ComponentObjects (StructuralComponents): 1 set below
)");
}

TEST(SetTree, MayHaveAChainOfTenThousandSets) {
  constexpr std::size_t kSets = 10000;
  const ChainOfSequences chain(kSets);
  const auto lines = treeOf(chain.metadata, {});
  const auto isShown = [](const TreeLine& line) {
    return line.kind == TreeLine::Kind::kSet && line.pieces.back().style == Style::kName;
  };
  EXPECT_EQ(static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), isShown)), kSets);
  EXPECT_LT(treeText(lines, {}).size(), 200 * kSets);
  EXPECT_THAT(textOfTree(chain.metadata), HasSubstr("continued: Sequence[13]\n"));
}

TEST(SetTree, NamesTheTargetsOfWeakReferencesAndThoseThatAreMissing) {
  PartitionMetadata metadata(builtInDictionary());
  auto& preface = metadata.createMetadataSet("Preface");
  auto& package = metadata.createMetadataSet("MaterialPackage");
  package.set("PackageName", u"Programme");
  preface.set("PrimaryPackage", package);
  EXPECT_THAT(textOfTree(metadata), HasSubstr("PrimaryPackage: → MaterialPackage \"Programme\"\n"));
  TreeOptions options;
  options.showsReferences = true;
  EXPECT_THAT(textOfTree(metadata, options), HasSubstr("\"Programme\"\n    " + package.instanceUID()->dottedText()));
  const auto identifier = package.instanceUID()->dottedText();
  metadata.remove(package);
  EXPECT_THAT(textOfTree(metadata), HasSubstr("PrimaryPackage: → no set"));
  EXPECT_THAT(textOfTree(metadata), HasSubstr(identifier));
}

TEST(SetTree, ShowsOnlyWhatWasChosen) {
  const ChainOfSequences chain(3);
  TreeOptions options;
  options.roots = {&chain.metadata.find("Sequence[2]")};
  EXPECT_EQ(textOfTree(chain.metadata, options), R"(Sequence[2]
└─ ComponentObjects[1] (StructuralComponents): Sequence[3]
)");
}

}  // namespace
}  // namespace Vantor::Tool

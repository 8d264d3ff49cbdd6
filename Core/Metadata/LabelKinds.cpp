#include "Core/Metadata/LabelKinds.h"

#include <algorithm>
#include <array>

#include "Core/Platform/Types.h"

namespace Vantor {

/// One row: a property, and the nodes of its labels.
struct LabelKind {
  /// Octets 9 and following of a label; -1 behind the last.
  using Node = std::array<int16, 5>;

  std::string_view property;
  const char* noun;
  const char* examples;
  std::array<Node, 2> nodes;  ///< the second may be empty
};

namespace {

using Node = LabelKind::Node;

constexpr std::size_t kFirstNodeOctet = 8;
constexpr Node kNoNode = {-1, -1, -1, -1, -1};
constexpr Node kPatterns = {0x0d, 0x01, 0x02, -1, -1};
constexpr Node kContainers = {0x0d, 0x01, 0x03, -1, -1};
constexpr Node kOtherContainers = {0x0d, 0x01, 0x13, -1, -1};
constexpr Node kTracks = {0x01, 0x03, 0x02, -1, -1};
constexpr Node kTransfers = {0x04, 0x01, 0x01, 0x01, 0x01};
constexpr Node kEquations = {0x04, 0x01, 0x01, 0x01, 0x02};
constexpr Node kPrimaries = {0x04, 0x01, 0x01, 0x01, 0x03};
constexpr Node kCenterCuts = {0x04, 0x01, 0x01, 0x01, 0x04};
constexpr Node kPlainPictures = {0x04, 0x01, 0x02, 0x01, -1};
constexpr Node kPictureCodings = {0x04, 0x01, 0x02, 0x02, -1};
constexpr Node kPlainSounds = {0x04, 0x02, 0x02, 0x01, -1};
constexpr Node kSoundCodings = {0x04, 0x02, 0x02, 0x02, -1};
constexpr Node kChannels = {0x04, 0x02, 0x02, 0x10, -1};
constexpr Node kEnvironments = {0x04, 0x10, -1, -1, -1};
constexpr Node kCategories = {0x0d, 0x01, 0x01, 0x02, 0x01};

constexpr const char* kContainerExamples = "MXFGCGenericEssenceMultipleMappings";
constexpr const char* kTrackExamples = "Picture, Sound or DataEssenceTrack";
constexpr const char* kTransferExamples = "BT.709 or TransferCharacteristic_ITU709";
constexpr const char* kPrimaryExamples = "BT.709 or ColorPrimaries_ITU709";

constexpr std::array kKinds = {
    LabelKind{"OperationalPattern",
              "an operational pattern",
              "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal or OP1a",
              {kPatterns, kNoNode}},
    LabelKind{"EssenceContainers", "an essence container", kContainerExamples, {kContainers, kOtherContainers}},
    LabelKind{"ContainerFormat", "an essence container", kContainerExamples, {kContainers, kOtherContainers}},
    LabelKind{"SourceContainerFormat", "an essence container", kContainerExamples, {kContainers, kOtherContainers}},
    LabelKind{"ComponentDataDefinition", "a data definition", kTrackExamples, {kTracks, kNoNode}},
    LabelKind{"OperationDataDefinition", "a data definition", kTrackExamples, {kTracks, kNoNode}},
    LabelKind{"CodecDataDefinitions", "a data definition", kTrackExamples, {kTracks, kNoNode}},
    LabelKind{"TransferCharacteristic", "a transfer characteristic", kTransferExamples, {kTransfers, kNoNode}},
    LabelKind{
        "TargetFrameTransferCharacteristic", "a transfer characteristic", kTransferExamples, {kTransfers, kNoNode}},
    LabelKind{
        "CodingEquations", "a set of coding equations", "BT.709 or CodingEquations_ITU709", {kEquations, kNoNode}},
    LabelKind{"ColorPrimaries", "a set of color primaries", kPrimaryExamples, {kPrimaries, kNoNode}},
    LabelKind{"TargetFrameColorPrimaries", "a set of color primaries", kPrimaryExamples, {kPrimaries, kNoNode}},
    LabelKind{"AlternativeCenterCuts", "a center cut", "CenterCut43", {kCenterCuts, kNoNode}},
    LabelKind{"PictureCompression", "a picture coding", "SMPTED1050Mbps625x50I", {kPictureCodings, kPlainPictures}},
    LabelKind{"SoundCompression", "a sound coding", "UndefinedSoundCoding", {kSoundCodings, kPlainSounds}},
    LabelKind{"ChannelAssignment", "a channel assignment", "SMPTE320M8ChannelModeA", {kChannels, kNoNode}},
    LabelKind{"TargetFrameViewingEnvironment",
              "a viewing environment",
              "HDTVReferenceViewingEnvironment",
              {kEnvironments, kNoNode}},
    LabelKind{"OperationCategory", "an operation category", "OperationCategory_Effect", {kCategories, kNoNode}},
};

bool isBelow(const Node& node, const Types::UniversalLabel& label) {
  if (node.front() < 0) return false;
  const uint8* octets = label.rawBuffer() + kFirstNodeOctet;
  return std::all_of(node.begin(), node.end(), [&octets](int16 octet) { return octet < 0 || *octets++ == octet; });
}

bool isBelow(const LabelKind& kind, const Types::UniversalLabel& label) {
  return std::any_of(kind.nodes.begin(), kind.nodes.end(), [&label](const Node& node) { return isBelow(node, label); });
}

}  // namespace

const LabelKind* labelKindOf(std::string_view property) {
  const auto* found = std::find_if(kKinds.begin(), kKinds.end(),
                                   [property](const LabelKind& kind) { return kind.property == property; });
  return found == kKinds.end() ? nullptr : found;
}

bool isOfKind(const LabelKind* kind, const Types::UniversalLabel& label) {
  return kind == nullptr || isBelow(*kind, label);
}

bool mayBeOfKind(const LabelKind* kind, const Types::UniversalLabel& label) {
  return isOfKind(kind, label) ||
         std::none_of(kKinds.begin(), kKinds.end(), [&label](const LabelKind& other) { return isBelow(other, label); });
}

const char* nounOf(const LabelKind* kind) { return kind == nullptr ? "a label or its name" : kind->noun; }

const char* examplesOf(const LabelKind* kind) {
  return kind == nullptr ? "PictureEssenceTrack or 06.0E.2B.34.04.01.01.01.01.03.02.02.01.00.00.00" : kind->examples;
}

}  // namespace Vantor

#include "Core/Metadata/LabelKinds.h"

#include <algorithm>
#include <array>
#include <string>

#include "Core/Platform/HexDigits.h"
#include "Core/Types/Text/TypeText.h"

namespace Vantor {

/// What is written of a kind.
struct LabelKind {
  const char* noun;
  const char* examples;
  std::string_view nodes;  ///< octets 9 and following of labels, with blanks between; empty where there are no labels
};

namespace {

/// One row: a property and the kind of its labels.
struct PropertyKind {
  std::string_view property;
  const LabelKind* kind;
};

constexpr LabelKind kPattern = {"an operational pattern", "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal",
                                "0D0102 0D0112"};
constexpr LabelKind kContainer = {"an essence container", "MXFGCGenericEssenceMultipleMappings",
                                  "0D0103 0D0113 0E090605"};
constexpr LabelKind kTrack = {"a data definition", "Picture, Sound or Data", "010302"};
constexpr LabelKind kTransfer = {"a transfer characteristic", "BT.709 or TransferCharacteristic_ITU709", "0401010101"};
constexpr LabelKind kEquations = {"a set of coding equations", "BT.709 or CodingEquations_ITU709", "0401010102"};
constexpr LabelKind kPrimaries = {"a set of color primaries", "BT.709 or ColorPrimaries_ITU709", "0401010103"};
constexpr LabelKind kCenterCut = {"a center cut", "CenterCut43", "0401010104"};
constexpr LabelKind kPictureCoding = {"a picture coding", "SMPTED1050Mbps625x50I", "04010202 04010201"};
constexpr LabelKind kSoundCoding = {"a sound coding", "UndefinedSoundCoding", "04020202 04020201 0E090604"};
constexpr LabelKind kDataCoding = {"a data essence coding", "EBUT3264STLSubtitleEssence", "0403"};
constexpr LabelKind kAssignment = {"a channel assignment", "SMPTE320M8ChannelModeA", "04020210"};
constexpr LabelKind kChannelLabel = {"a label of an audio channel or soundfield", "chL, sg51 or LeftAudioChannel",
                                     "030201 030202 030203 0D0F03 0E09010104 0E09010105"};
constexpr LabelKind kEnvironment = {"a viewing environment", "HDTVReferenceViewingEnvironment", "0410"};
constexpr LabelKind kCategory = {"an operation category", "OperationCategory_Effect", "0D010102010101"};
constexpr LabelKind kPluginCategory = {"a plugin category", "PluginCategory_Effect",
                                       "0D010102010102 0D010102010103 0D010102010104"};
constexpr LabelKind kUsage = {"a usage of a package", "Usage_SubClip",
                              "0D010102010105 0D010102010106 0D010102010107 0D010102010108 0D010102010109"};
constexpr LabelKind kScheme = {"a scheme of descriptive metadata", "MXFDMS1Version1Constrained",
                               "0D0104 0D0107 0D0C01 0D0401 0D02"};
constexpr LabelKind kEye = {"a track for one eye", "LeftEyePictureTrack", "04010210 04030210"};
constexpr LabelKind kCipher = {"an encryption algorithm", "AES128CBCIdentifier", "02090201"};
constexpr LabelKind kHash = {"a hashing algorithm", "HMACSHA1128", "02090202 0D0E01010704020"};
constexpr LabelKind kAudioLayout = {"an audio layout", "AS_07_AudioLayoutSilence", "0D0E010107020"};
constexpr LabelKind kIdentifier = {"a UUID", Types::kUUIDExamples, ""};

constexpr std::array kKinds = {
    PropertyKind{"OperationalPattern", &kPattern},
    PropertyKind{"EssenceContainers", &kContainer},
    PropertyKind{"ContainerFormat", &kContainer},
    PropertyKind{"SourceContainerFormat", &kContainer},
    PropertyKind{"ComponentDataDefinition", &kTrack},
    PropertyKind{"OperationDataDefinition", &kTrack},
    PropertyKind{"CodecDataDefinitions", &kTrack},
    PropertyKind{"TransferCharacteristic", &kTransfer},
    PropertyKind{"TargetFrameTransferCharacteristic", &kTransfer},
    PropertyKind{"CodingEquations", &kEquations},
    PropertyKind{"ColorPrimaries", &kPrimaries},
    PropertyKind{"TargetFrameColorPrimaries", &kPrimaries},
    PropertyKind{"AlternativeCenterCuts", &kCenterCut},
    PropertyKind{"PictureCompression", &kPictureCoding},
    PropertyKind{"SoundCompression", &kSoundCoding},
    PropertyKind{"DataEssenceCoding", &kDataCoding},
    PropertyKind{"StereoscopicDataEssenceCoding", &kDataCoding},
    PropertyKind{"EventTextKind", &kDataCoding},
    PropertyKind{"ChannelAssignment", &kAssignment},
    PropertyKind{"MPEGAudioChannelAssignment", &kAssignment},
    PropertyKind{"MCALabelDictionaryID", &kChannelLabel},
    PropertyKind{"TargetFrameViewingEnvironment", &kEnvironment},
    PropertyKind{"OperationCategory", &kCategory},
    PropertyKind{"PluginCategory", &kPluginCategory},
    PropertyKind{"PackageUsage", &kUsage},
    PropertyKind{"DescriptiveSchemes", &kScheme},
    PropertyKind{"DescriptiveMetadataScheme", &kScheme},
    PropertyKind{"StereoscopicEyeID", &kEye},
    PropertyKind{"CipherAlgorithm", &kCipher},
    PropertyKind{"MICAlgorithm", &kHash},
    PropertyKind{"AS_07_Core_DMS_AudioTrackLayout", &kAudioLayout},
    PropertyKind{"ApplicationProductID", &kIdentifier},
    PropertyKind{"GenerationID", &kIdentifier},
    PropertyKind{"LinkedGenerationID", &kIdentifier},
    PropertyKind{"ManufacturerID", &kIdentifier},
    PropertyKind{"ExtensionSchemeID", &kIdentifier},
    PropertyKind{"DefinitionObjectIdentification", &kIdentifier},
    PropertyKind{"MetaDefinitionIdentification", &kIdentifier},
    PropertyKind{"OriginalProperty", &kIdentifier},
    PropertyKind{"MemberOf", &kIdentifier},
    PropertyKind{"ElementOf", &kIdentifier},
    PropertyKind{"BaseClass", &kIdentifier},
    PropertyKind{"ParentClass", &kIdentifier},
    PropertyKind{"PropertyType", &kIdentifier},
    PropertyKind{"ElementType", &kIdentifier},
    PropertyKind{"RenamedType", &kIdentifier},
    PropertyKind{"MemberTypes", &kIdentifier},
    PropertyKind{"StringElementType", &kIdentifier},
    PropertyKind{"SetElementType", &kIdentifier},
    PropertyKind{"VariableArrayElementType", &kIdentifier},
    PropertyKind{"FixedArrayElementType", &kIdentifier},
    PropertyKind{"WeakReferencedType", &kIdentifier},
    PropertyKind{"ReferencedType", &kIdentifier},
    PropertyKind{"KLVDataType", &kIdentifier},
    PropertyKind{"ParameterType", &kIdentifier},
    PropertyKind{"ParameterDefinitionReference", &kIdentifier},
    PropertyKind{"FileDescriptorClass", &kIdentifier},
    PropertyKind{"ObjectClass", &kIdentifier},
    PropertyKind{"ImplementedClass", &kIdentifier},
    PropertyKind{"PluginAPI", &kIdentifier},
    PropertyKind{"Engine", &kIdentifier},
};

constexpr std::size_t kFirstNodeOctet = 8;

/// The octets that nodes are made of.
std::string placeOf(const Types::UniversalLabel& label) {
  return Platform::hexText<std::string>(label.rawBuffer() + kFirstNodeOctet,
                                        Types::UniversalLabel::kSize - kFirstNodeOctet);
}

bool isBelow(const LabelKind& kind, std::string_view place) {
  for (std::string_view rest = kind.nodes; !rest.empty();) {
    const auto node = rest.substr(0, rest.find(' '));
    if (place.substr(0, node.size()) == node) return true;
    rest.remove_prefix(std::min(node.size() + 1, rest.size()));
  }
  return false;
}

}  // namespace

const LabelKind* labelKindOf(std::string_view property) {
  const auto* found = std::find_if(kKinds.begin(), kKinds.end(),
                                   [property](const PropertyKind& row) { return row.property == property; });
  return found == kKinds.end() ? nullptr : found->kind;
}

bool hasNoNames(const LabelKind* kind) { return kind != nullptr && kind->nodes.empty(); }

bool isOfKind(const LabelKind* kind, const Types::UniversalLabel& label) {
  return kind == nullptr || isBelow(*kind, placeOf(label));
}

bool mayBeOfKind(const LabelKind* kind, const Types::UniversalLabel& label) {
  if (kind == nullptr) return true;
  const auto place = placeOf(label);
  if (hasNoNames(kind) || isBelow(*kind, place)) return !hasNoNames(kind);
  return std::none_of(kKinds.begin(), kKinds.end(), [&](const PropertyKind& row) { return isBelow(*row.kind, place); });
}

const char* nounOf(const LabelKind* kind) { return kind == nullptr ? "a label or its name" : kind->noun; }

const char* examplesOf(const LabelKind* kind) {
  return kind == nullptr ? "PictureEssenceTrack or 06.0E.2B.34.04.01.01.01.01.03.02.02.01.00.00.00" : kind->examples;
}

}  // namespace Vantor

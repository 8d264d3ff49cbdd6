#include "Core/Metadata/CommonLabelNames.h"

#include <array>

#include "Core/MetaMetadata/NameFolding.h"

namespace Vantor {

namespace {

/// The name is folded.
struct CommonLabelName {
  std::string_view name;
  std::string_view symbol;
};

constexpr std::array kNames = {
    // ffprobe's names of transfer characteristics, then MediaInfo's.
    CommonLabelName{"bt470bg", "TransferCharacteristic_ITU470_PAL"},
    CommonLabelName{"smpte240m", "TransferCharacteristic_SMPTE240M"},
    CommonLabelName{"linear", "TransferCharacteristic_linear"},
    CommonLabelName{"iec6196624", "TransferCharacteristic_IEC6196624_xvYCC"},
    CommonLabelName{"iec6196621", "TransferCharacteristic_sRGB"},
    CommonLabelName{"bt1361e", "TransferCharacteristic_ITU1361"},
    CommonLabelName{"bt202010", "TransferCharacteristic_ITU2020"},
    CommonLabelName{"bt202012", "TransferCharacteristic_ITU2020"},
    CommonLabelName{"bt202010bit", "TransferCharacteristic_ITU2020"},
    CommonLabelName{"bt202012bit", "TransferCharacteristic_ITU2020"},
    CommonLabelName{"smpte2084", "TransferCharacteristic_SMPTEST2084"},
    CommonLabelName{"pq", "TransferCharacteristic_SMPTEST2084"},
    CommonLabelName{"hlg", "TransferCharacteristic_HLG_OETF"},
    CommonLabelName{"aribstdb67", "TransferCharacteristic_HLG_OETF"},
    CommonLabelName{"smpte428", "TransferCharacteristic_SMPTE_DCDM"},
    CommonLabelName{"smpte428m", "TransferCharacteristic_SMPTE_DCDM"},
    CommonLabelName{"srgbsycc", "TransferCharacteristic_sRGB"},
    CommonLabelName{"rec709", "TransferCharacteristic_ITU709"},
    CommonLabelName{"rec2020", "TransferCharacteristic_ITU2020"},
    // Color primaries.
    CommonLabelName{"bt470bg", "ColorPrimaries_ITU470_PAL"},
    CommonLabelName{"bt601pal", "ColorPrimaries_ITU470_PAL"},
    CommonLabelName{"bt601ntsc", "ColorPrimaries_SMPTE170M"},
    CommonLabelName{"smpte428", "ColorPrimaries_SMPTE_DCDM"},
    CommonLabelName{"smpte431", "ColorPrimaries_P3DCI"},
    CommonLabelName{"dcip3", "ColorPrimaries_P3DCI"},
    CommonLabelName{"smpte432", "ColorPrimaries_P3D65"},
    CommonLabelName{"displayp3", "ColorPrimaries_P3D65"},
    CommonLabelName{"rec709", "ColorPrimaries_ITU709"},
    CommonLabelName{"rec2020", "ColorPrimaries_ITU2020"},
    // Coding equations.
    CommonLabelName{"bt470bg", "CodingEquations_ITU601"},
    CommonLabelName{"smpte170m", "CodingEquations_ITU601"},
    CommonLabelName{"bt2020nc", "CodingEquations_ITU2020_NCL"},
    CommonLabelName{"bt2020nonconstant", "CodingEquations_ITU2020_NCL"},
    CommonLabelName{"rgb", "CodingEquations_GBR"},
    CommonLabelName{"rec601", "CodingEquations_ITU601"},
    CommonLabelName{"rec709", "CodingEquations_ITU709"},
    // BT.470 has the systems M and B/G, with other primaries and another gamma.
    CommonLabelName{"bt470", ""},
    CommonLabelName{"itu470", ""},
    CommonLabelName{"iturbt470", ""},
    // Kinds of tracks, as players call them.
    CommonLabelName{"video", "PictureEssenceTrack"},
    CommonLabelName{"audio", "SoundEssenceTrack"},
    CommonLabelName{"data", "DataEssenceTrack"},
    // Tag symbols.
    CommonLabelName{"chl", "LeftAudioChannel"},
    CommonLabelName{"chr", "RightAudioChannel"},
    CommonLabelName{"chc", "CenterAudioChannel"},
    CommonLabelName{"chlfe", "LFEAudioChannel"},
    CommonLabelName{"chls", "LeftSurroundAudioChannel"},
    CommonLabelName{"chrs", "RightSurroundAudioChannel"},
    CommonLabelName{"chlss", "LeftSideSurroundAudioChannel"},
    CommonLabelName{"chrss", "RightSideSurroundAudioChannel"},
    CommonLabelName{"chlrs", "LeftRearSurroundAudioChannel"},
    CommonLabelName{"chrrs", "RightRearSurroundAudioChannel"},
    CommonLabelName{"chlc", "LeftCenterAudioChannel"},
    CommonLabelName{"chrc", "RightCenterAudioChannel"},
    CommonLabelName{"chcs", "CenterSurroundAudioChannel"},
    CommonLabelName{"chhi", "HearingImpairedAudioChannel"},
    CommonLabelName{"chvin", "VisuallyImpairedNarrativeAudioChannel"},
    CommonLabelName{"sg51", "_51SoundfieldGroup"},
    CommonLabelName{"sg71", "_71DSSoundfieldGroup"},
    CommonLabelName{"sgsds", "_71SDSSoundfieldGroup"},
    CommonLabelName{"sg61", "_61SoundfieldGroup"},
    CommonLabelName{"sgm", "_10MonauralSoundfieldGroup"},
    CommonLabelName{"sgst", "SMPTEST20678StandardStereo"},
};

}  // namespace

std::vector<std::string_view> symbolsOfCommonName(std::string_view name) {
  const auto folded = MetaMetadata::foldedName(name);
  std::vector<std::string_view> symbols;
  for (const auto& row : kNames) {
    if (row.name == folded) symbols.push_back(row.symbol);
  }
  return symbols;
}

}  // namespace Vantor

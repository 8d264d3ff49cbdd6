#include <gtest/gtest.h>

#include "Core/Comparison/ValueText.h"
#include "tests/Core/Metadata/PropertySpellings.h"

/// What people write for a property, what is stored, and what is printed of it and read back.
namespace Vantor {
namespace {

struct Spelling {
  const char* set;
  const char* property;
  const char* text;
  const char* octets;   // as stored
  const char* printed;  // by `text`
};

constexpr const char* kOP1a = "060E2B34040101010D01020101010900";
constexpr const char* kOP1aSymbol = "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal";
constexpr const char* kBT709 = "060E2B34040101010401010101020000";
constexpr const char* kBT709Symbol = "TransferCharacteristic_ITU709";
constexpr const char* kPictureTrack = "060E2B34040101010103020201000000";
constexpr const char* kSomeUUID = "00112233445566778899AABBCCDDEEFF";
constexpr const char* kSomeDotted = "00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF";
constexpr const char* kSomeUMID = "060A2B340101010501010D4313000000D3B6D3D7C1A14B4F8C0F0123456789AB";
constexpr const char* kSomeDottedUMID =
    "06.0A.2B.34.01.01.01.05.01.01.0D.43.13.00.00.00.D3.B6.D3.D7.C1.A1.4B.4F.8C.0F.01.23.45.67.89.AB";

const Spelling kSpellings[] = {
    // Timecodes.
    {"Timecode", "StartTimecode", "10:00:00:00", "00000000000DBBA0", "10:00:00:00"},
    {"Timecode", "StartTimecode", "900000", "00000000000DBBA0", "10:00:00:00"},
    {"Timecode", "StartTimecode", "0xDBBA0", "00000000000DBBA0", "10:00:00:00"},
    {"Timecode", "StartTimecode", "9:59:59:24", "00000000000DBB9F", "09:59:59:24"},
    {"Timecode", "StartTimecode", "-1", "FFFFFFFFFFFFFFFF", "-1"},
    {"Timecode", "StartTimecode", "2160000", "000000000020F580", "2160000"},
    {"Timecode/30", "StartTimecode", "10:00:00;00", "0000000000107688", "10:00:00;00"},
    {"Timecode/30", "StartTimecode", "10:00:00.00", "0000000000107688", "10:00:00;00"},
    {"Timecode/30", "StartTimecode", "10:00:00:00", "0000000000107688", "10:00:00;00"},
    {"Timecode/30", "StartTimecode", "00:01:00;02", "0000000000000708", "00:01:00;02"},
    {"Timecode/60", "StartTimecode", "01:00:00;00", "0000000000034AE8", "01:00:00;00"},
    {"Timecode/60", "StartTimecode", "00:01:00;04", "0000000000000E10", "00:01:00;04"},
    // Rates and ratios.
    {"TimelineTrack", "EditRate", "25", "0000001900000001", "25"},
    {"TimelineTrack", "EditRate", "25/1", "0000001900000001", "25"},
    {"TimelineTrack", "EditRate", "29.97", "00007530000003E9", "30000/1001"},
    {"TimelineTrack", "EditRate", "23.976", "00005DC0000003E9", "24000/1001"},
    {"TimelineTrack", "EditRate", "23.98", "00005DC0000003E9", "24000/1001"},
    {"TimelineTrack", "EditRate", "59.94", "0000EA60000003E9", "60000/1001"},
    {"TimelineTrack", "EditRate", "119.88", "0001D4C0000003E9", "120000/1001"},
    {"TimelineTrack", "EditRate", " 30000 / 1001 ", "00007530000003E9", "30000/1001"},
    {"TimelineTrack", "EditRate", "12.5", "0000001900000002", "25/2"},
    {"SoundDescriptor", "AudioSampleRate", "48000", "0000BB8000000001", "48000"},
    {"CDCIDescriptor", "ImageAspectRatio", "16:9", "0000001000000009", "16:9"},
    {"CDCIDescriptor", "ImageAspectRatio", "16/9", "0000001000000009", "16:9"},
    {"CDCIDescriptor", "ImageAspectRatio", "1.85:1", "0000002500000014", "37:20"},
    {"CDCIDescriptor", "ImageAspectRatio", "2.39:1", "000000EF00000064", "239:100"},
    {"CDCIDescriptor", "ImageAspectRatio", "16x9", "0000001000000009", "16:9"},
    {"CDCIDescriptor", "ImageAspectRatio", "1.85", "0000002500000014", "37:20"},
    // Dates and times.
    {"Preface", "FileLastModified", "2024-02-09T03:04:05.008", "07E8020903040502", "2024-02-09T03:04:05.008"},
    {"Preface", "FileLastModified", "2024-02-09T03:04:05Z", "07E8020903040500", "2024-02-09T03:04:05.000"},
    {"Preface", "FileLastModified", "2024-02-09T03:04:05+01:00", "07E8020902040500", "2024-02-09T02:04:05.000"},
    {"Preface", "FileLastModified", "2024-02-09T23:30:00-0130", "07E8020A01000000", "2024-02-10T01:00:00.000"},
    {"Preface", "FileLastModified", "2024-02-09 03:04", "07E8020903040000", "2024-02-09T03:04:00.000"},
    {"Preface", "FileLastModified", "2024-02-09", "07E8020900000000", "2024-02-09T00:00:00.000"},
    {"Preface", "FileLastModified", "20240209T030405,5", "07E802090304057D", "2024-02-09T03:04:05.500"},
    {"Preface", "FileLastModified", "0000-00-00T00:00:00.000", "0000000000000000", "0000-00-00T00:00:00.000"},
    {"Preface", "FileLastModified", "0x07E8000000000000", "07E8000000000000", "0x07E8000000000000"},
    {"Preface", "FileLastModified", "0x07E80209030405FF", "07E80209030405FF", "0x07E80209030405FF"},
    // Versions.
    {"Preface", "FormatVersion", "1.3", "0103", "1.3"},
    {"Preface", "FormatVersion", "259", "0103", "1.3"},
    {"Identification", "ApplicationVersion", "1.2.3.4 release", "00010002000300040001", "1.2.3.4 release"},
    {"Identification", "ApplicationVersion", "1.2.3.4.1", "00010002000300040001", "1.2.3.4 release"},
    {"Identification", "ApplicationVersion", "1.2 beta", "00010002000000000004", "1.2.0.0 beta"},
    {"Identification", "ApplicationVersion", "4.1.2", "00040001000200000000", "4.1.2.0 unknown"},
    {"Identification", "ApplicationVersion", "1.2.3.4.99", "00010002000300040063", "1.2.3.4.99"},
    // Names of numbers.
    {"CDCIDescriptor", "FrameLayout", "FullFrame", "00", "FullFrame"},
    {"CDCIDescriptor", "FrameLayout", "separatefields", "01", "SeparateFields"},
    {"CDCIDescriptor", "FrameLayout", "Separate Fields", "01", "SeparateFields"},
    {"CDCIDescriptor", "FrameLayout", "1", "01", "SeparateFields"},
    {"CDCIDescriptor", "FrameLayout", "200", "C8", "200"},
    {"CDCIDescriptor", "ActiveFormatDescriptor", "68", "44", "68"},
    {"AES3PCMDescriptor", "ChannelStatusMode", "[ChannelStatusMode_Minimum, 3]", "000000020000000101 03",
     "[ChannelStatusMode_Minimum, ChannelStatusMode_Fixed]"},
    // Labels.
    {"Preface", "OperationalPattern", kOP1aSymbol, kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "OP1a SingleItem SinglePackage MultiTrack Stream Internal", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "060e2b34.04010101.0d010201.01010900", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "urn:smpte:ul:060e2b34.04010101.0d010201.01010900", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "urn:uuid:0d010201-0101-0900-060e-2b3404010101", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "0x060E2B34040101010D01020101010900", kOP1a, kOP1aSymbol},
    {"Preface", "OperationalPattern", "060e2b34040101020d01020101010900", "060E2B34040101020D01020101010900",
     "06.0E.2B.34.04.01.01.02.0D.01.02.01.01.01.09.00"},
    {"Preface", "EssenceContainers", "[MXFGCGenericEssenceMultipleMappings]",
     "0000000100000010060E2B34040101030D010301027F0100", "[MXFGCGenericEssenceMultipleMappings]"},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.709", kBT709, kBT709Symbol},
    {"CDCIDescriptor", "TransferCharacteristic", "Rec.709", kBT709, kBT709Symbol},
    {"CDCIDescriptor", "TransferCharacteristic", "PQ", "060E2B340401010D04010101010A0000",
     "TransferCharacteristic_SMPTEST2084"},
    {"CDCIDescriptor", "TransferCharacteristic", "smpte2084", "060E2B340401010D04010101010A0000",
     "TransferCharacteristic_SMPTEST2084"},
    {"CDCIDescriptor", "TransferCharacteristic", "arib-std-b67", "060E2B340401010D04010101010B0000",
     "TransferCharacteristic_HLG_OETF"},
    {"CDCIDescriptor", "ColorPrimaries", "bt470bg", "060E2B34040101060401010103020000", "ColorPrimaries_ITU470_PAL"},
    {"CDCIDescriptor", "CodingEquations", "BT.601", "060E2B34040101010401010102010000", "CodingEquations_ITU601"},
    {"AudioChannelLabelSubDescriptor", "MCALabelDictionaryID", "chL", "060E2B340401010D0302010100000000",
     "LeftAudioChannel"},
    {"AudioChannelLabelSubDescriptor", "MCALabelDictionaryID", "chLFE", "060E2B340401010D0302010400000000",
     "LFEAudioChannel"},
    {"SoundfieldGroupLabelSubDescriptor", "MCALabelDictionaryID", "sg51", "060E2B340401010D0302020100000000",
     "_51SoundfieldGroup"},
    {"SoundfieldGroupLabelSubDescriptor", "MCALabelDictionaryID", "sg71", "060E2B340401010D0302020200000000",
     "_71DSSoundfieldGroup"},
    {"SoundfieldGroupLabelSubDescriptor", "MCALabelDictionaryID", "sg514", "060E2B34040101050E09010105020000",
     "ST37742sg514"},
    {"CDCIDescriptor", "TransferCharacteristic", "itu709", kBT709, kBT709Symbol},
    {"CDCIDescriptor", "TransferCharacteristic", "ITU-R BT.709 Transfer Characteristic", kBT709, kBT709Symbol},
    {"CDCIDescriptor", "TransferCharacteristic", kBT709Symbol, kBT709, kBT709Symbol},
    {"CDCIDescriptor", "ColorPrimaries", "BT.709", "060E2B34040101060401010103030000", "ColorPrimaries_ITU709"},
    {"CDCIDescriptor", "CodingEquations", "BT.709", "060E2B34040101010401010102020000", "CodingEquations_ITU709"},
    {"Sequence", "ComponentDataDefinition", "Picture", kPictureTrack, "PictureEssenceTrack"},
    {"Sequence", "ComponentDataDefinition", "Video", kPictureTrack, "PictureEssenceTrack"},
    {"Sequence", "ComponentDataDefinition", "Audio", "060E2B34040101010103020202000000", "SoundEssenceTrack"},
    {"Sequence", "ComponentDataDefinition", "Data", "060E2B34040101010103020203000000", "DataEssenceTrack"},
    {"Sequence", "ComponentDataDefinition", "{01030202-0100-0000-060e-2b3404010101}", kPictureTrack,
     "PictureEssenceTrack"},
    // Booleans.
    {"Timecode", "DropFrame", "yes", "01", "true"},
    {"Timecode", "DropFrame", "Off", "00", "false"},
    {"Timecode", "DropFrame", "TRUE", "01", "true"},
    {"Timecode", "DropFrame", "0", "00", "false"},
    // Numbers.
    {"TimelineTrack", "EssenceTrackNumber", "0x15010500", "15010500", "352388352"},
    {"CDCIDescriptor", "VideoLineMap", "[21, 584]", "00000002000000040000001500000248", "[21, 584]"},
    // Identifiers.
    {"Identification", "GenerationID", "urn:uuid:00112233-4455-6677-8899-aabbccddeeff", kSomeUUID, kSomeDotted},
    {"Identification", "GenerationID", "{00112233-4455-6677-8899-AABBCCDDEEFF}", kSomeUUID, kSomeDotted},
    {"Identification", "GenerationID", "00112233445566778899aabbccddeeff", kSomeUUID, kSomeDotted},
    {"MaterialPackage", "PackageID", kSomeUMID, kSomeUMID, kSomeDottedUMID},
    {"MaterialPackage", "PackageID", "0x060A2B340101010501010D4313000000D3B6D3D7C1A14B4F8C0F0123456789AB", kSomeUMID,
     kSomeDottedUMID},
    {"MaterialPackage", "PackageID",
     "urn:smpte:umid:060a2b34.01010105.01010d43.13000000.d3b6d3d7.c1a14b4f.8c0f0123.456789ab", kSomeUMID,
     kSomeDottedUMID},
    {"MaterialPackage", "PackageID", "060A2B34 01010105 01010D43 13000000 D3B6D3D7 C1A14B4F 8C0F0123 456789AB",
     kSomeUMID, kSomeDottedUMID},
    {"Sequence", "ComponentObjects", "[00112233-4455-6677-8899-aabbccddeeff]",
     "000000010000001000112233445566778899AABBCCDDEEFF", "[00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF]"},
    // Texts.
    {"TimelineTrack", "TrackName", "V1", "00560031", "V1"},
    {"TimelineTrack", "TrackName", "\"V1\"", "00560031", "V1"},
    {"TimelineTrack", "TrackName", R"("\"V\"\u000A")", "002200560022000A", "\"V\"\n"},
    {"TimelineTrack", "TrackName", R"(say "V")", "007300610079002000220056 0022", "say \"V\""},
    {"TimelineTrack", "TrackName", "", "", ""},
    // Language tags.
    {"AudioChannelLabelSubDescriptor", "RFC5646SpokenLanguage", "en-US", "656E2D5553", "en-US"},
    {"AudioChannelLabelSubDescriptor", "RFC5646SpokenLanguage", "zh-Hant-TW", "7A682D48616E742D5457", "zh-Hant-TW"},
    {"AudioChannelLabelSubDescriptor", "RFC5646AdditionalSpokenLanguages", "en, de", "656E2C206465", "en, de"},
    {"AudioChannelLabelSubDescriptor", "RFC5646AdditionalSpokenLanguages", "en\tde", "656E096465", "en\tde"},
    // Values of indirect types.
    {"TaggedValue", "IndirectValue", "Zoe", "42 0110020000000000060E2B3401040101 005A006F0065", "\"Zoe\""},
    {"TaggedValue", "IndirectValue", "0x4200", "4200", "0x4200"},
    {"TaggedValue", "IndirectValue", "\"0x4200\"", "42 0110020000000000060E2B3401040101 003000780034003200300030",
     "\"0x4200\""},
    // Octets that do not decode.
    {"CDCIDescriptor", "VideoLineMap", "0x[00000001 00000004 00000015]", "00000001 00000004 00000015", "[21]"},
    // Runs of octets.
    {"RGBADescriptor", "Palette", "0a1b", "0A1B", "0A1B"},
    {"RGBADescriptor", "Palette", "0x0A 0x1B", "0A1B", "0A1B"},
    {"RGBADescriptor", "PixelLayout", "5208 4708 4208 0000 0000 0000 0000 0000", "52084708420800000000000000000000",
     "52084708420800000000000000000000"},
};

std::string withoutBlanks(const std::string& text) { return hexOf(hex(text)); }

class Spellings : public testing::TestWithParam<Spelling> {};

TEST_P(Spellings, AreStoredPrintedAndReadBack) {
  const auto& row = GetParam();
  SpelledSet written(row.set);
  ASSERT_EQ(written.refusal(row.property, row.text), "none");
  EXPECT_EQ(written.octets(row.property), withoutBlanks(row.octets));
  EXPECT_EQ(written.text(row.property), row.printed);
  SpelledSet pasted(row.set);
  ASSERT_EQ(pasted.refusal(row.property, written.text(row.property)), "none");
  EXPECT_EQ(pasted.octets(row.property), written.octets(row.property));
  SpelledSet fromMessage(row.set);
  ASSERT_EQ(fromMessage.refusal(row.property, valueText(written.set(), *written.set().find(row.property))), "none");
  EXPECT_EQ(fromMessage.octets(row.property), written.octets(row.property));
}

INSTANTIATE_TEST_SUITE_P(OfValues, Spellings, testing::ValuesIn(kSpellings), [](const auto& info) {
  return std::string(info.param.property) + "_" + std::to_string(info.index);
});

}  // namespace
}  // namespace Vantor

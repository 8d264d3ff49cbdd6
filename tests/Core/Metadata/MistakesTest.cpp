#include <gtest/gtest.h>

#include "tests/Core/Metadata/PropertySpellings.h"

/// What people write by mistake, and the messages.
namespace Vantor {
namespace {

struct Mistake {
  const char* set;
  const char* property;
  const char* text;
  const char* message;
};

#define REFUSED_TIMECODE " is not a timecode or a number of frames"
#define REFUSED_RATE " is not a rate or ratio; for example 25, 30000/1001, 29.97 or 16:9"
#define REFUSED_RATIO " is not an aspect ratio; for example 16:9, 4/3, 1.85 or 2.39:1"
#define REFUSED_DATE "; for example 2024-02-09T03:04:05.008Z or 2024-02-09"
#define REFUSED_LAYOUT                                                                            \
  " is not a value of LayoutType; for example FullFrame, SeparateFields, OneField, MixedFields, " \
  "SegmentedFrame"
#define REFUSED_TRANSFER "; for example BT.709 or TransferCharacteristic_ITU709"
#define REFUSED_UMID                                                                     \
  "; for example 0x060A2B340101010501010D4313000000D3B6D3D7C1A14B4F8C0F0123456789AB or " \
  "urn:smpte:umid:060a2b34.01010105.01010d43.13000000.d3b6d3d7.c1a14b4f.8c0f0123.456789ab"
#define REFUSED_LANGUAGE " is not a language tag of RFC 5646; for example en, de-CH or zh-Hant-TW"

const Mistake kMistakes[] = {
    {"Timecode", "StartTimecode", "10:00:00;00",
     "'10:00:00;00'" REFUSED_TIMECODE
     " (';' is for drop frame, and DropFrame of the set is false); for example 10:00:00:00 or 900000"},
    {"Timecode", "StartTimecode", "10:00:00:25",
     "'10:00:00:25'" REFUSED_TIMECODE " (the frames end at 24); for example 10:00:00:00 or 900000"},
    {"Timecode", "StartTimecode", "24:00:00:00",
     "'24:00:00:00'" REFUSED_TIMECODE " (the hours end at 23); for example 10:00:00:00 or 900000"},
    {"Timecode", "StartTimecode", "10:60:00:00",
     "'10:60:00:00'" REFUSED_TIMECODE " (the minutes end at 59); for example 10:00:00:00 or 900000"},
    {"Timecode", "StartTimecode", "10:00:00", "'10:00:00'" REFUSED_TIMECODE "; for example 10:00:00:00 or 900000"},
    {"Timecode", "StartTimecode", "10 o'clock", "'10 o'clock'" REFUSED_TIMECODE "; for example 10:00:00:00 or 900000"},
    {"Timecode/30", "StartTimecode", "00:01:00;00",
     "'00:01:00;00'" REFUSED_TIMECODE " (drop frame skips it); for example 10:00:00;00 or 1078920"},
    {"Timecode/60", "StartTimecode", "00:01:00;03",
     "'00:01:00;03'" REFUSED_TIMECODE " (drop frame skips it); for example 10:00:00;00 or 1078920"},
    {"Timecode/25", "StartTimecode", "10:00:00;00",
     "'10:00:00;00'" REFUSED_TIMECODE " (drop frame is for 30 frames a second and multiples); for example 900000"},
    {"TimelineTrack", "EditRate", "fast", "'fast'" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "", "''" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "25fps", "'25fps'" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "25/1/1", "'25/1/1'" REFUSED_RATE},
    {"CDCIDescriptor", "ImageAspectRatio", "wide", "'wide'" REFUSED_RATIO},
    {"CDCIDescriptor", "ImageAspectRatio", "1.85:0", "'1.85:0'" REFUSED_RATIO},
    {"CDCIDescriptor", "ActiveFormatDescriptor", "10",
     "'10' is not an active format descriptor (the value is 8 times the AFD code, plus 4 for 16:9; other bits are 0); "
     "for example 68 for code 8 in 16:9, 64 for code 8 in 4:3"},
    {"Preface", "FileLastModified", "2023-02-29",
     "'2023-02-29' is not a date and time (that month has no day 29)" REFUSED_DATE},
    {"Preface", "FileLastModified", "2024-00-00",
     "'2024-00-00' is not a date and time (there is no month 0)" REFUSED_DATE},
    {"Preface", "FileLastModified", "9999-00-00T23:00",
     "'9999-00-00T23:00' is not a date and time (there is no month 0)" REFUSED_DATE},
    {"Preface", "FileLastModified", "2023-13-01",
     "'2023-13-01' is not a date and time (there is no month 13)" REFUSED_DATE},
    {"Preface", "FileLastModified", "09/02/2024", "'09/02/2024' is not a date and time" REFUSED_DATE},
    {"Preface", "FileLastModified", "2024-02-09T25:00:00",
     "'2024-02-09T25:00:00' is not a date and time (there is no hour 25)" REFUSED_DATE},
    {"Preface", "FileLastModified", "yesterday", "'yesterday' is not a date and time" REFUSED_DATE},
    {"Preface", "FormatVersion", "one", "'one' is not a version; for example 1.3"},
    {"Preface", "FormatVersion", "1.3.5", "'1.3.5' is not a version; for example 1.3"},
    {"Identification", "ApplicationVersion", "1.2.3.4 final",
     "'1.2.3.4 final' is not a version (the words for releases are unknown, release, debug, patch, beta and private); "
     "for example 1.2.3.4 release or 1.2 beta"},
    {"Identification", "ApplicationVersion", "1.2.3.4.5.6",
     "'1.2.3.4.5.6' is not a version; for example 1.2.3.4 release or 1.2 beta"},
    {"CDCIDescriptor", "FrameLayout", "Progressive",
     "'Progressive' is not a value of LayoutType (progressive pictures have FullFrame); for example FullFrame, "
     "SeparateFields, OneField, MixedFields, SegmentedFrame"},
    {"CDCIDescriptor", "FrameLayout", "256", "'256'" REFUSED_LAYOUT},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.2001",
     "'BT.2001' is not a transfer characteristic (no label has that name)" REFUSED_TRANSFER},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.70",
     "'BT.70' is not a transfer characteristic (no label has that name; one has it in its name: "
     "TransferCharacteristic_ITU709)"},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.202",
     "'BT.202' is not a transfer characteristic (no label has that name; one has it in its name: "
     "TransferCharacteristic_ITU2020)"},
    {"CDCIDescriptor", "TransferCharacteristic", "ST 20",
     "'ST 20' is not a transfer characteristic (no label has that name; one has it in its name: "
     "TransferCharacteristic_SMPTEST2084)"},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.470",
     "'BT.470' is not a transfer characteristic (it has several systems: TransferCharacteristic_ITU470_PAL)"},
    {"AudioChannelLabelSubDescriptor", "MCALabelDictionaryID", "quad",
     "'quad' is not a label of an audio channel or soundfield (no label has that name); for example chL, sg51 or "
     "LeftAudioChannel"},
    {"CDCIDescriptor", "TransferCharacteristic", "CodingEquations_ITU709",
     "'CodingEquations_ITU709' is not a transfer characteristic (that is the label "
     "06.0E.2B.34.04.01.01.01.04.01.01.01.02.02.00.00)" REFUSED_TRANSFER},
    {"CDCIDescriptor", "TransferCharacteristic", "BBC",
     "'BBC' is not a transfer characteristic (no label has that name)" REFUSED_TRANSFER},
    {"AudioChannelLabelSubDescriptor", "MCALabelDictionaryID", "PictureEssenceTrack",
     "'PictureEssenceTrack' is not a label of an audio channel or soundfield (that is the label "
     "06.0E.2B.34.04.01.01.01.01.03.02.02.01.00.00.00); for example chL, sg51 or LeftAudioChannel"},
    {"Identification", "ApplicationProductID", "CodingEquations_ITU601",
     "'CodingEquations_ITU601' is not a UUID; for example urn:uuid:5a1fbd9c-3a52-4cd2-9e3f-0123456789ab or "
     "5A.1F.BD.9C.3A.52.4C.D2.9E.3F.01.23.45.67.89.AB"},
    {"Preface", "EssenceContainers", "[BT.709]",
     "'BT.709' is not an essence container (no label has that name); for example "
     "MXFGCGenericEssenceMultipleMappings"},
    {"CDCIDescriptor", "TransferCharacteristic", "060e2b34.04010101.04010101.010200",
     "'060e2b34.04010101.04010101.010200' is not a transfer characteristic (it has 15 octets, not "
     "16)" REFUSED_TRANSFER},
    {"Preface", "OperationalPattern", "OP1a",
     "'OP1a' is not an operational pattern (8 labels have it in their names: "
     "MXFOP1aSingleItemSinglePackageUniTrackStreamInternal, MXFOP1aSingleItemSinglePackageUniTrackStreamExternal, "
     "MXFOP1aSingleItemSinglePackageUniTrackNonStreamInternal, "
     "MXFOP1aSingleItemSinglePackageUniTrackNonStreamExternal, "
     "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal, MXFOP1aSingleItemSinglePackageMultiTrackStreamExternal, "
     "MXFOP1aSingleItemSinglePackageMultiTrackNonStreamInternal, "
     "MXFOP1aSingleItemSinglePackageMultiTrackNonStreamExternal)"},
    {"Sequence", "ComponentDataDefinition", "Film",
     "'Film' is not a data definition (no label has that name); for example Picture, Sound or Data"},
    {"MaterialPackage", "PackageUsage", "nothing",
     "'nothing' is not a usage of a package (no label has that name); for example Usage_SubClip"},
    {"Timecode", "DropFrame", "maybe",
     "'maybe' is not true or false; for example true, false, yes, no, on, off, 1 or 0"},
    {"Timecode", "FramesPerSecond", "29.97", "'29.97' is not a whole number from 0 to 65535; for example 25 or 0x19"},
    {"TimelineTrack", "TrackID", "-1", "'-1' is not a whole number from 0 to 4294967295; for example 25 or 0x19"},
    {"MaterialPackage", "PackageID", "urn:uuid:00112233-4455-6677-8899-aabbccddeeff",
     "'urn:uuid:00112233-4455-6677-8899-aabbccd...' is not a UMID of 32 octets (that is a UUID)" REFUSED_UMID},
    {"MaterialPackage", "PackageID", "060A2B34",
     "'060A2B34' is not a UMID of 32 octets (it has 4 octets, not 32)" REFUSED_UMID},
    {"MaterialPackage", "PackageID", "060A2B3",
     "'060A2B3' is not a UMID of 32 octets (an octet lacks its second digit)" REFUSED_UMID},
    {"AudioChannelLabelSubDescriptor", "RFC5646SpokenLanguage", "en_US", "'en_US'" REFUSED_LANGUAGE},
    {"AudioChannelLabelSubDescriptor", "RFC5646SpokenLanguage", "American English",
     "'American English'" REFUSED_LANGUAGE},
    {"AudioChannelLabelSubDescriptor", "RFC5646SpokenLanguage", "", "''" REFUSED_LANGUAGE},
    {"AudioChannelLabelSubDescriptor", "RFC5646AdditionalSpokenLanguages", "en,",
     "'en,' is not a list of language tags of RFC 5646; for example en, de-CH"},
    {"TimelineTrack", "TrackName", R"("xyyy"... (91 code units))",
     R"('"xyyy"... (91 code units)' is a value that was cut when it was printed; give all of it)"},
    {"CDCIDescriptor", "VideoLineMap", "[21, 584, 1, 2... (5 items)]",
     "'[21, 584, 1, 2... (5 items)]' is a value that was cut when it was printed; give all of it"},
    {"RGBADescriptor", "Palette", "0A1B... (33 octets)",
     "'0A1B... (33 octets)' is a value that was cut when it was printed; give all of it"},
    {"RGBADescriptor", "Palette", "0a1",
     "'0a1' is not a run of octets (an octet lacks its second digit); for example 0A1B or 0x0A1B"},
    {"RGBADescriptor", "Palette", "red", "'red' is not a run of octets; for example 0A1B or 0x0A1B"},
    {"RGBADescriptor", "Palette", "@file", "'@file': files are not read here"},
    {"RGBADescriptor", "PixelLayout", "5208",
     "'5208' is not a pixel layout of 16 octets (it has 2 octets, not 16); for example "
     "52084708420800000000000000000000"},
    {"CDCIDescriptor", "VideoLineMap", "21, 584", "'21, 584' is not a list; for example [25]"},
    {"CDCIDescriptor", "VideoLineMap", "[21, half]",
     "'half' is not a whole number from -2147483648 to 2147483647; for example 25 or 0x19"},
};

#undef REFUSED_TIMECODE
#undef REFUSED_RATE
#undef REFUSED_RATIO
#undef REFUSED_DATE
#undef REFUSED_LAYOUT
#undef REFUSED_TRANSFER
#undef REFUSED_UMID
#undef REFUSED_LANGUAGE

class Mistakes : public testing::TestWithParam<Mistake> {};

TEST_P(Mistakes, AreRefusedWithAnExampleAndChangeNothing) {
  const auto& row = GetParam();
  SpelledSet set(row.set);
  const bool hadIt = set.set().has(row.property);
  EXPECT_EQ(set.refusal(row.property, row.text), row.message);
  EXPECT_EQ(set.set().has(row.property), hadIt);
}

INSTANTIATE_TEST_SUITE_P(OfValues, Mistakes, testing::ValuesIn(kMistakes), [](const auto& info) {
  return std::string(info.param.property) + "_" + std::to_string(info.index);
});

}  // namespace
}  // namespace Vantor

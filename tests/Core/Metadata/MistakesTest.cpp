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
#define REFUSED_DATE "; for example 2024-02-09T03:04:05.008Z or 2024-02-09"
#define REFUSED_LAYOUT " is not a value of LayoutType; for example FullFrame, SeparateFields, OneField, MixedFields"
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
     "'10:00:00;00'" REFUSED_TIMECODE
     " (drop frame is for 30 frames a second and multiples); for example 10:00:00;00 or 1078920"},
    {"TimelineTrack", "EditRate", "fast", "'fast'" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "", "''" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "25fps", "'25fps'" REFUSED_RATE},
    {"TimelineTrack", "EditRate", "25/1/1", "'25/1/1'" REFUSED_RATE},
    {"CDCIDescriptor", "ImageAspectRatio", "16x9", "'16x9' is not an aspect ratio; for example 16:9, 4/3 or 1.85"},
    {"Preface", "FileLastModified", "2023-02-29",
     "'2023-02-29' is not a date and time (that month has no day 29)" REFUSED_DATE},
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
    {"CDCIDescriptor", "FrameLayout", "Progressive", "'Progressive'" REFUSED_LAYOUT},
    {"CDCIDescriptor", "FrameLayout", "256", "'256'" REFUSED_LAYOUT},
    {"CDCIDescriptor", "TransferCharacteristic", "BT.2001",
     "'BT.2001' is not a transfer characteristic" REFUSED_TRANSFER},
    {"CDCIDescriptor", "TransferCharacteristic", "CodingEquations_ITU709",
     "'CodingEquations_ITU709' is not a transfer characteristic (that is the label "
     "06.0E.2B.34.04.01.01.01.04.01.01.01.02.02.00.00)" REFUSED_TRANSFER},
    {"CDCIDescriptor", "TransferCharacteristic", "BT", "'BT' is not a transfer characteristic" REFUSED_TRANSFER},
    {"CDCIDescriptor", "TransferCharacteristic", "060e2b34.04010101.04010101.010200",
     "'060e2b34.04010101.04010101.010200' is not a transfer characteristic (it has 15 octets, not "
     "16)" REFUSED_TRANSFER},
    {"Preface", "OperationalPattern", "OP1a",
     "'OP1a' is not an operational pattern (8 labels have that name: "
     "MXFOP1aSingleItemSinglePackageUniTrackStreamInternal, MXFOP1aSingleItemSinglePackageUniTrackStreamExternal, "
     "MXFOP1aSingleItemSinglePackageUniTrackNonStreamInternal, "
     "MXFOP1aSingleItemSinglePackageUniTrackNonStreamExternal and more); for example "
     "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal or OP1a"},
    {"Sequence", "ComponentDataDefinition", "Video",
     "'Video' is not a data definition; for example Picture, Sound or DataEssenceTrack"},
    {"MaterialPackage", "PackageUsage", "nothing",
     "'nothing' is not a label or its name; for example "
     "PictureEssenceTrack or 06.0E.2B.34.04.01.01.01.01.03.02.02.01.00.00.00"},
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

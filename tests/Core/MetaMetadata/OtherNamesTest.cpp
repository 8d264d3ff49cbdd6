#include "Core/MetaMetadata/OtherNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"

namespace Vantor::MetaMetadata {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(OtherNames, StandForSymbolsWhateverTheirPunctuation) {
  EXPECT_THAT(symbolsMeantBy("product_version"), ElementsAre("ApplicationVersionString", "ApplicationVersion"));
  EXPECT_THAT(symbolsMeantBy("Frame rate"), ElementsAre("SampleRate", "EditRate"));
  EXPECT_THAT(symbolsMeantBy("AFD"), ElementsAre("ActiveFormatDescriptor"));
  EXPECT_THAT(symbolsMeantBy("Preface"), IsEmpty());
  EXPECT_THAT(symbolsMeantBy(""), IsEmpty());
}

TEST(OtherNames, StandForWhatTheDictionaryHas) {
  const auto definitions = builtInDefinitions();
  for (const auto* name : {"company_name",
                           "product_name",
                           "product_version",
                           "product_uid",
                           "toolkit_version",
                           "modification_date",
                           "application_platform",
                           "uid",
                           "generation_uid",
                           "operational_pattern_ul",
                           "material_package_umid",
                           "material_package_name",
                           "file_package_umid",
                           "reel_name",
                           "track_name",
                           "timecode",
                           "r_frame_rate",
                           "field_order",
                           "display_aspect_ratio",
                           "color_transfer",
                           "color_primaries",
                           "color_space",
                           "color_range",
                           "sample_rate",
                           "bits_per_sample",
                           "bits_per_raw_sample",
                           "channels",
                           "codec_name",
                           "pix_fmt",
                           "FrameRate",
                           "ScanType",
                           "ScanOrder",
                           "BitDepth",
                           "SamplingRate",
                           "ChromaSubsampling",
                           "TimeCode_FirstFrame",
                           "UMID",
                           "FilePackage",
                           "StartTC",
                           "AFD",
                           "DAR",
                           "fps",
                           "ProgrammeTitle",
                           "SeriesTitle",
                           "EpisodeTitle",
                           "title",
                           "Language",
                           "Format_Settings_WrappingMode"}) {
    const auto symbols = symbolsMeantBy(name);
    EXPECT_FALSE(symbols.empty()) << name;
    for (const auto symbol : symbols) {
      const auto isIt = [symbol](const auto& definition) { return definition.symbol == symbol; };
      const bool isKnown = std::any_of(definitions.sets().begin(), definitions.sets().end(), isIt) ||
                           std::any_of(definitions.properties().begin(), definitions.properties().end(), isIt);
      EXPECT_TRUE(isKnown) << name << ": " << symbol;
    }
  }
}

}  // namespace
}  // namespace Vantor::MetaMetadata

#include "Core/MetaMetadata/OtherNames.h"

#include "Core/MetaMetadata/NameFolding.h"

namespace Vantor::MetaMetadata {

namespace {

struct OtherName {
  std::string_view name;  // folded
  std::string_view symbol;
};

// Several rows of a name stand together.
constexpr OtherName kOtherNames[] = {
    // ffprobe: tags of an MXF file, and fields of its streams.
    {"companyname", "ApplicationSupplierName"},
    {"productname", "ApplicationName"},
    {"productversion", "ApplicationVersionString"},
    {"productversion", "ApplicationVersion"},
    {"productuid", "ApplicationProductID"},
    {"toolkitversion", "ToolkitVersion"},
    {"modificationdate", "FileModificationDate"},
    {"applicationplatform", "ApplicationPlatform"},
    {"uid", "InstanceID"},
    {"generationuid", "GenerationID"},
    {"operationalpatternul", "OperationalPattern"},
    {"materialpackageumid", "PackageID"},
    {"materialpackagename", "PackageName"},
    {"filepackageumid", "PackageID"},
    {"filepackagename", "PackageName"},
    {"reelumid", "PackageID"},
    {"reelname", "PackageName"},
    {"trackname", "TrackName"},
    {"timecode", "StartTimecode"},
    {"rframerate", "SampleRate"},
    {"avgframerate", "SampleRate"},
    {"fieldorder", "FrameLayout"},
    {"fieldorder", "FieldDominance"},
    {"displayaspectratio", "ImageAspectRatio"},
    {"sampleaspectratio", "ImageAspectRatio"},
    {"colortransfer", "TransferCharacteristic"},
    {"colorprimaries", "ColorPrimaries"},
    {"colorspace", "CodingEquations"},
    {"colorrange", "BlackRefLevel"},
    {"colorrange", "WhiteRefLevel"},
    {"samplerate", "AudioSampleRate"},
    {"bitspersample", "QuantizationBits"},
    {"bitsperrawsample", "ComponentDepth"},
    {"channels", "ChannelCount"},
    {"codecname", "PictureCompression"},
    {"codecname", "SoundCompression"},
    {"pixfmt", "HorizontalSubsampling"},
    // mediainfo
    {"framerate", "SampleRate"},
    {"framerate", "EditRate"},
    {"scantype", "FrameLayout"},
    {"scanorder", "FieldDominance"},
    {"bitdepth", "QuantizationBits"},
    {"bitdepth", "ComponentDepth"},
    {"channelcount", "ChannelCount"},
    {"samplingrate", "AudioSampleRate"},
    {"transfercharacteristics", "TransferCharacteristic"},
    {"colourprimaries", "ColorPrimaries"},
    {"matrixcoefficients", "CodingEquations"},
    {"colourspace", "CodingEquations"},
    {"chromasubsampling", "HorizontalSubsampling"},
    {"chromasubsampling", "VerticalSubsampling"},
    {"activeformatdescription", "ActiveFormatDescriptor"},
    {"timecodefirstframe", "StartTimecode"},
    {"writingapplication", "ApplicationName"},
    {"writinglibrary", "ToolkitVersion"},
    {"encodeddate", "FileModificationDate"},
    {"language", "RFC5646SpokenLanguage"},
    {"formatsettingswrappingmode", "ContainerFormat"},
    // Delivery specifications and everyday speech.
    {"umid", "PackageID"},
    {"umid", "SourcePackageID"},
    {"filepackage", "SourcePackage"},
    {"starttc", "StartTimecode"},
    {"tcstart", "StartTimecode"},
    {"tc", "StartTimecode"},
    {"afd", "ActiveFormatDescriptor"},
    {"aspect", "ImageAspectRatio"},
    {"dar", "ImageAspectRatio"},
    {"fps", "SampleRate"},
    {"fps", "EditRate"},
    {"gamma", "TransferCharacteristic"},
    {"programmetitle", "AS_11_Programme_Title"},
    {"seriestitle", "AS_11_Series_Title"},
    {"episodetitle", "AS_11_Episode_Title_Number"},
    {"title", "PackageName"},
    {"title", "AS_11_Programme_Title"},
    {"clipname", "PackageName"},
    {"resolution", "StoredWidth"},
    {"resolution", "StoredHeight"},
    {"reel", "PackageName"},
    {"vendor", "ApplicationSupplierName"},
    {"manufacturer", "ApplicationSupplierName"},
};

}  // namespace

std::vector<std::string_view> symbolsMeantBy(std::string_view name) {
  const auto folded = foldedName(name);
  std::vector<std::string_view> symbols;
  for (const auto& row : kOtherNames) {
    if (!folded.empty() && row.name == folded) symbols.push_back(row.symbol);
  }
  return symbols;
}

}  // namespace Vantor::MetaMetadata

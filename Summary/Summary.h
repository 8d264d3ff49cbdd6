#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/TrackKind.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Timestamp.h"
#include "Core/Types/UMID32.h"
#include "Core/Types/UniversalLabel.h"

/// What people ask of a file first: its title, its times, its tracks, who wrote it.
///
///     const auto metadata = MXF::readHeaderMetadata("programme.mxf", builtInDictionary());
///     const auto summary = Summary::summaryOf(*metadata);
///     if (summary.title) std::puts(summary.title->c_str());
///
/// All of it are values of the header metadata, named here by their properties (SMPTE ST 377-1, ST 335). A field is
/// empty where the metadata do not have it, or have no value that means anything: an empty text, a date of zeros, an
/// unknown duration. Texts are UTF-8, as the file has them: they may hold control characters, NULs too.
namespace Vantor::Summary {

/// Numerator and denominator as in the file, not reduced; neither is 0, except in `Essence::aspectRatio`.
struct Ratio {
  int32 numerator = 1;
  int32 denominator = 1;

  bool isPositive() const { return numerator > 0 && denominator > 0; }
  /// @pre the denominator is not 0.
  double value() const { return static_cast<double>(numerator) / denominator; }
};

/// A universal label with its names in the dictionary (ST 400); both are empty for one that is not registered.
struct Label {
  Types::UniversalLabel key;
  std::string symbol;
  std::string name;
};

/// Where timecode starts: a Timecode set (TimecodeComponent).
struct Timecode {
  int64 frames = 0;            ///< StartTimecode: frames since midnight
  uint16 framesPerSecond = 0;  ///< FramesPerSecond (RoundedTimecodeBase)
  bool dropFrame = false;      ///< DropFrame
  std::string text;            ///< "10:00:00:00", with drop frame "10:00:00;00"; a number where that is no time of day
};

/// A length in edit units.
struct Duration {
  int64 editUnits = 0;  ///< ComponentLength (Duration)
  Ratio editRate;       ///< EditRate of the track: edit units per second

  double seconds() const { return static_cast<double>(editUnits) / editRate.value(); }
};

struct Package {
  enum class Kind : uint8 {
    kMaterial,  ///< what is played
    kFile,      ///< essence in files: a SourcePackage with a FileDescriptor
    kSource     ///< any other, such as a tape
  };

  Kind kind = Kind::kSource;
  std::optional<std::string> name;           ///< PackageName (Name)
  std::optional<Types::UMID32> id;           ///< PackageID (PackageUID)
  std::optional<Types::Timestamp> created;   ///< CreationTime (PackageCreationDate), UTC
  std::optional<Types::Timestamp> modified;  ///< PackageLastModified (PackageModifiedDate), UTC
  std::optional<Timecode> start;             ///< of its first timecode track
  std::optional<Label> usage;                ///< PackageUsage
};

/// A soundfield group or a group of these: a MCALabelSubDescriptor (ST 377-4).
struct SoundGroup {
  std::optional<std::string> tagSymbol;    ///< MCATagSymbol, such as "sg51"
  std::optional<std::string> tagName;      ///< MCATagName, such as "5.1"
  std::optional<std::string> language;     ///< RFC5646SpokenLanguage
  std::optional<std::string> title;        ///< MCATitle
  std::optional<std::string> contentKind;  ///< MCAAudioContentKind
  std::optional<std::string> elementKind;  ///< MCAAudioElementKind
};

/// One channel of a sound track: an AudioChannelLabelSubDescriptor (ST 377-4).
struct Channel {
  std::optional<uint32> number;          ///< MCAChannelID, from 1
  std::optional<std::string> tagSymbol;  ///< MCATagSymbol, such as "chL"
  std::optional<std::string> tagName;    ///< MCATagName, such as "Left"
  std::optional<std::string> language;   ///< RFC5646SpokenLanguage of the channel itself
  std::optional<std::size_t> group;      ///< by SoundfieldGroupLinkID, in `Essence::groups`
};

/// How lines of pictures are scanned (ST 377-1, FrameLayout).
enum class Scan : uint8 {
  kProgressive,  ///< FullFrame
  kInterlaced,   ///< SeparateFields, OneField, MixedFields
  kSegmented     ///< SegmentedFrame: a progressive frame in two segments
};

/// Which field of interlaced pictures comes first in time.
enum class FieldOrder : uint8 {
  kTopFirst,    ///< the one with the topmost line
  kBottomFirst  ///< the other
};

/// What a file descriptor has about essence.
struct Essence {
  std::string descriptor;       ///< the symbol of the set, such as "CDCIDescriptor"
  std::optional<Label> coding;  ///< PictureCompression, SoundCompression or DataEssenceCoding
  /// What people call it, such as "AVC-Intra 100": by the label, or by the kind of the descriptor where that decides.
  std::optional<std::string> codingName;
  std::optional<Label> container;   ///< ContainerFormat (EssenceContainer)
  std::optional<Ratio> sampleRate;  ///< SampleRate: frames per second of pictures; of sound, as the container wraps it
  std::optional<int64> length;      ///< EssenceLength (ContainerDuration), in units of `sampleRate`

  /// Of a whole frame, in pixels: DisplayWidth and DisplayHeight, else SampledWidth and SampledHeight, else StoredWidth
  /// and StoredHeight; the height twice that where FrameLayout is SeparateFields, whose heights are of a field.
  std::optional<uint32> width, height;
  std::optional<uint32> storedWidth, storedHeight;  ///< StoredWidth, StoredHeight as they are
  /// ImageAspectRatio (AspectRatio), of the whole picture, as it is: some writers put 0:1 for one that they do not
  /// know.
  std::optional<Ratio> aspectRatio;
  std::optional<std::string> frameLayout;     ///< FrameLayout by name, such as "SeparateFields"
  std::optional<Scan> scan;                   ///< what that layout means
  std::optional<std::string> fieldDominance;  ///< FieldDominance by name: which field comes first
  /// By FieldDominance and VideoLineMap, whose lines show which field is on top; none unless the file has both.
  std::optional<FieldOrder> fieldOrder;
  /// By HorizontalSubsampling and VerticalSubsampling: "4:2:2", "4:2:0", "4:1:1" or "4:4:4".
  std::optional<std::string> subsampling;
  /// ComponentDepth, or the depth that all colours of PixelLayout have, of RGB, YCbCr or XYZ; of sound
  /// QuantizationBits.
  std::optional<uint32> bitDepth;
  std::optional<Label> colorPrimaries;          ///< ColorPrimaries
  std::optional<Label> transferCharacteristic;  ///< TransferCharacteristic (CaptureGamma)
  std::optional<Label> codingEquations;         ///< CodingEquations

  std::optional<Ratio> samplingRate;     ///< AudioSampleRate (AudioSamplingRate): samples per second
  std::optional<uint32> channelCount;    ///< ChannelCount
  std::optional<bool> locked;            ///< Locked: to the video
  std::vector<Channel> channels;         ///< with labels; by number, those without one last
  std::vector<SoundGroup> groups;        ///< in file order
  std::optional<std::string> languages;  ///< of text: RFC5646LanguageTagList or EventTextLanguageCode
};

struct Track {
  /// By the ComponentDataDefinition of its segment.
  using Kind = MXF::TrackKind;

  std::size_t package = 0;  ///< in `MetadataSummary::packages`
  Kind kind = Kind::kOther;
  std::optional<uint32> id;          ///< TrackID
  std::optional<uint32> number;      ///< EssenceTrackNumber (TrackNumber), unless 0
  std::optional<std::string> name;   ///< TrackName
  std::optional<Ratio> editRate;     ///< EditRate: edit units per second
  std::optional<Duration> duration;  ///< of its segment
  std::optional<Timecode> start;     ///< of a timecode track
  /// Of the essence that its first SourceClip leads to, through packages in the file; null for none. Tracks of the
  /// same essence share it.
  std::shared_ptr<const Essence> essence;
};

/// Who wrote a version of the file: an Identification.
struct Writer {
  std::optional<std::string> company;         ///< ApplicationSupplierName (CompanyName)
  std::optional<std::string> product;         ///< ApplicationName (ProductName)
  std::optional<std::string> version;         ///< ApplicationVersionString (VersionString)
  std::optional<std::string> productVersion;  ///< ApplicationVersion (ProductVersion), such as "1.6.2.0 release"
  std::optional<std::string> toolkitVersion;  ///< ToolkitVersion
  std::optional<std::string> platform;        ///< ApplicationPlatform (Platform)
  std::optional<Types::Timestamp> date;       ///< FileModificationDate (ModificationDate), UTC
};

/// A value of a descriptive scheme.
struct DescriptiveValue {
  std::string set;       ///< the symbol of its set: the framework, or one that it refers to
  std::string property;  ///< the symbol
  std::string value;     ///< as people write it (Core/Metadata/PropertyText.h)
};

/// A descriptive framework: a set that inherits from DescriptiveFramework.
struct Framework {
  std::string set;                   ///< the symbol, such as "DM_AS_11_Core_Framework"
  std::optional<std::string> track;  ///< TrackName of the track that it is on
  /// All of the framework but identifiers, references and runs of octets; of the sets that it refers to, their texts.
  /// In order of definition, sets in the order of references. Sets that several frameworks refer to are the first
  /// one's.
  std::vector<DescriptiveValue> values;
};

struct Partition {
  std::size_t number = 0;  ///< in file order, from 0
  KLV::PartitionKind kind = KLV::PartitionKind::kHeader;
  KLV::PartitionStatus status = KLV::PartitionStatus::kOpenIncomplete;
  bool hasMetadata = false;  ///< the partition pack counts bytes of header metadata
};

/// What the header metadata of one partition have.
struct MetadataSummary {
  /// PackageName of the material package that PrimaryPackage means, else of the first material package.
  std::optional<std::string> title;
  std::optional<Label> operationalPattern;            ///< OperationalPattern
  std::optional<std::string> operationalPatternName;  ///< such as "OP1a"
  std::vector<Label> essenceContainers;               ///< EssenceContainers
  std::vector<Label> descriptiveSchemes;              ///< DescriptiveSchemes (DMSchemes)
  std::optional<Types::Timestamp> modified;           ///< FileLastModified (LastModifiedDate), UTC
  std::vector<Package> packages;                      ///< material packages first, the primary one foremost
  /// Those of the material packages; without one, those of packages with a FileDescriptor. In their order in the file.
  std::vector<Track> tracks;
  std::optional<Timecode> start;  ///< of the first material package
  /// Of the nearest package with timecode that the first picture track, else the first sound track, leads to, where
  /// that differs from `start`.
  std::optional<Timecode> sourceStart;
  std::optional<Duration> duration;   ///< of the first picture track, else of the first sound track, else of any
  std::optional<Ratio> frameRate;     ///< EditRate of the first picture track
  std::vector<Writer> writers;        ///< in the order of IdentificationList: the last one wrote the file as it is
  std::vector<Framework> frameworks;  ///< in file order
};

/// The summary of a partition's metadata. Takes time in proportion to them; any number of threads may read one
/// partition. Does not throw for metadata of any kind.
MetadataSummary summaryOf(const PartitionMetadata& metadata);

/// The partitions of a file, in file order.
std::vector<Partition> partitionsOf(const MXF::FileStructure& structure);

/// "10:00:00:00" and the like; the number of frames where that is no time of day.
std::string timecodeText(int64 frames, uint16 framesPerSecond, bool dropFrame);

}  // namespace Vantor::Summary

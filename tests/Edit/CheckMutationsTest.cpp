#include <gmock/gmock.h>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/Edit/CheckSupport.h"

/// Each of these changes one sound file so that it breaks one rule; no other rule finds anything.
namespace Vantor::Edit {
namespace {

using Types::Rational;
using Types::Timestamp;
using Metadata = PartitionMetadata;

constexpr const char16_t* kOtherPackage =
    u"06.0A.2B.34.01.01.01.05.01.01.0D.00.13.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07";
constexpr const char16_t* kOtherSet = u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07";

constexpr const char16_t* kNoPackage =
    u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00";
constexpr const char16_t* kNoLabel = u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00";

/// An essence container that the sample does not have.
Types::UniversalLabel otherContainer() {
  return Types::UniversalLabel(wstring(u"06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.01.00"), kDottedForm);
}

/// Adds a package without tracks.
MetadataSet& addPackage(Metadata& m, const char* kind) {
  auto& package = addTo(m, "ContentStorage", "Packages", kind);
  package.set("PackageID", kOtherPackage);
  package.set("PackageTracks", u"[]");
  for (const char* date : {"CreationTime", "PackageLastModified"}) package.set(date, Timestamp());
  return package;
}

/// Has the sound of the material package come from a file package of its own, with a track of the same kind.
void splitSound(Metadata& m) {
  auto& clip = m.find("SourceClip[2]");
  auto& segment = m.createMetadataSet("Filler");
  for (const char* property : {"ComponentDataDefinition", "ComponentLength"})
    segment.set(property, clip.text(property));
  auto& track = m.createMetadataSet("TimelineTrack");
  track.set("TrackID", 3);
  track.set("EssenceTrackNumber", 1);
  track.set("EditRate", Rational(25, 1));
  track.set("Origin", 0);
  track.set("TrackSegment", segment);
  addPackage(m, "SourcePackage").append("PackageTracks", track);
  clip.set("SourcePackageID", kOtherPackage);
  clip.set("SourceTrackID", 3);
}

class CheckMutation : public testing::TestWithParam<Mutation> {};

TEST_P(CheckMutation, IsFoundByItsRuleAlone) {
  EXPECT_THAT(newCodesOf(GetParam()), testing::ElementsAre(GetParam().rule))
      << testing::PrintToString(newFindingsOf(GetParam()));
}

const std::vector<Mutation> kValues = {
    {"enumeration-value", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("FrameLayout", 9); }},
    {"edit-rate", [](Metadata& m) { m.find("TimelineTrack[1]").set("EditRate", Rational(0, 0)); }},
    {"sample-rate", [](Metadata& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(48000, 0)); }},
    {"aspect-ratio", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ImageAspectRatio", Rational(0, 1)); }},
    {"aspect-ratio", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ImageAspectRatio", Rational(0, 0)); }},
    {"aspect-ratio", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ImageAspectRatio", Rational(16, 1)); }},
    {"audio-rate",
     [](Metadata& m) {
       m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(48, 1));
       m.find("AES3PCMDescriptor").set("AverageBytesPerSecond", 96);
     }},
    {"picture-rate", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("SampleRate", Rational(30, 1)); }},
    {"sampled-size", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("SampledWidth", 0); }},
    {"sampled-size", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("DisplayHeight", 0); }},
    {"picture-rectangle", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("DisplayYOffset", -1); }},
    {"picture-sampling", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("HorizontalSubsampling", 3); }},
    {"picture-sampling", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ComponentDepth", 65); }},
    {"reference-levels",
     [](Metadata& m) {
       m.find("MPEGVideoDescriptor").set("BlackRefLevel", 235);
       m.find("MPEGVideoDescriptor").set("WhiteRefLevel", 16);
     }},
    {"sound-size", [](Metadata& m) { m.find("AES3PCMDescriptor").set("QuantizationBits", 0); }},
    {"sound-size", [](Metadata& m) { m.find("AES3PCMDescriptor").set("QuantizationBits", 65); }},
    {"sound-block", [](Metadata& m) { m.find("AES3PCMDescriptor").set("BlockAlign", 7); }},
    {"sound-octets", [](Metadata& m) { m.find("AES3PCMDescriptor").set("AverageBytesPerSecond", 7); }},
    {"long-values", [](Metadata& m) { m.find("MaterialPackage").set("PackageName", wstring(33000, u'x').c_str()); }},
    {"unknown-rate", [](Metadata& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(0, 0)); }},
    {"picture-size", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("StoredWidth", 0); }},
    {"picture-rectangle", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("DisplayYOffset", 1); }},
    {"picture-sampling", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("VerticalSubsampling", 0); }},
    {"sound-size", [](Metadata& m) { m.find("AES3PCMDescriptor").set("ChannelCount", 0); }},
    {"length-value", [](Metadata& m) { m.find("AES3PCMDescriptor").set("EssenceLength", -2); }},
    {"timecode-base", [](Metadata& m) { m.find("Timecode[1]").set("FramesPerSecond", 0); }},
    {"drop-frame", [](Metadata& m) { m.find("Timecode[1]").set("DropFrame", true); }},
    {"active-format", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ActiveFormatDescriptor", 8); }},
    {"active-format",
     [](Metadata& m) { m.find("MPEGVideoDescriptor").set("ActiveFormatDescriptor", Types::UInt8(0x45)); }},
    {"date-value", [](Metadata& m) { m.find("Preface").set("FileLastModified", Timestamp(2023, 2, 29, 0, 0, 0, 0)); }},
    {"doubled-property",
     [](Metadata& m) {
       addUnknown(m.find("MPEGVideoDescriptor"), 0x3203, Bytes{0, 0, 0, 64});
     }},
    {"unreadable-value",
     [](Metadata& m) {
       m.find("MPEGVideoDescriptor").remove("ColorSiting");
       addUnknown(m.find("MPEGVideoDescriptor"), 0x3303, Bytes{0, 1, 2});
     }},
    {"misplaced-property",
     [](Metadata& m) {
       const auto& dictionary = *m.partitionDictionary().dictionary();
       const auto* definition = dictionary.findSetBySymbol("Track")->findAttribute("TrackID")->metaElement();
       auto& element =
           m.find("Preface").createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(definition));
       static_cast<SimpleElement&>(element).set(std::make_unique<Types::UInt32>(1u), true);
     }},
    {"needed-property", [](Metadata& m) { m.find("SourceClip[1]").remove("StartPosition"); }},
    {"needed-property", [](Metadata& m) { m.find("MaterialPackage").remove("PackageID"); }},
    {"required-property", [](Metadata& m) { m.find("Identification").remove("ApplicationName"); }},
    {"required-property", [](Metadata& m) { m.find("Preface").remove("DescriptiveSchemes"); }},
    {"required-property", [](Metadata& m) { m.find("MPEGVideoDescriptor").remove("FrameLayout"); }},
    {"required-property", [](Metadata& m) { m.find("MPEGVideoDescriptor").remove("StoredWidth"); }},
    {"required-property", [](Metadata& m) { m.find("AES3PCMDescriptor").remove("ChannelCount"); }},
    {"needed-property",
     [](Metadata& m) {
       auto& descriptor = m.createMetadataSet("MultipleDescriptor");
       addPackage(m, "SourcePackage").set("EssenceDescription", descriptor);
       descriptor.set("FileDescriptors", u"[]");
       descriptor.set("SampleRate", Rational(25, 1));
       descriptor.set("ContainerFormat", m.find("AES3PCMDescriptor").text("ContainerFormat"));
     }},
    {"often-missing-property",
     [](Metadata& m) {
       auto& descriptor = m.createMetadataSet("DCTimedTextDescriptor");
       addPackage(m, "SourcePackage").set("EssenceDescription", descriptor);
       for (const char* text : {"UCSEncoding", "NamespaceURI"}) descriptor.set(text, u"x");
       descriptor.set("SampleRate", Rational(25, 1));
       descriptor.set("ContainerFormat", m.find("AES3PCMDescriptor").text("ContainerFormat"));
       descriptor.set("DataEssenceCoding", u"EBUT3264STLSubtitleEssence");
     }},
};

const std::vector<Mutation> kReferences = {
    {"dangling-reference",
     [](Metadata& m) {
       auto& list = static_cast<ReferenceArrayElement&>(*m.find("Preface").find("IdentificationList"));
       list.appendUnverifiedReference(
           std::make_unique<Types::StrongReference>(Types::UUID(wstring(kOtherSet), kDottedForm)));
     }},
    {"dangling-weak-reference", [](Metadata& m) { m.find("Preface").set("PrimaryPackage", kOtherSet); }},
    {"reference-kind", [](Metadata& m) { m.find("Preface").set("PrimaryPackage", m.find("Identification")); }},
    {"doubled-instance-uid",
     [](Metadata& m) {
       auto& locator = m.createMetadataSet("NetworkLocator");
       locator.set("URL", u"file");
       auto& identifier = static_cast<SimpleElement&>(*locator.find("InstanceID"));
       identifier.set(std::make_unique<Types::UUID>(*m.find("Identification").instanceUID()), true);
     }},
    {"unreached-set", [](Metadata& m) { m.createMetadataSet("NetworkLocator").set("URL", u"file"); }},
    {"shared-set",
     [](Metadata& m) {
       auto& locator = addTo(m, "MPEGVideoDescriptor", "Locators", "NetworkLocator");
       locator.set("URL", u"file");
       m.find("AES3PCMDescriptor").append("Locators", locator);
     }},
    {"preface-count",
     [](Metadata& m) {
       const auto& dictionary = *m.partitionDictionary().dictionary();
       const auto& other = *dictionary.findSetBySymbol("Preface");
       auto& first = m.find("Preface");
       auto& second = *m.createMetadataSet(other.key());
       for (const char* property :
            {"FileLastModified", "FormatVersion", "OperationalPattern", "EssenceContainers", "DescriptiveSchemes"}) {
         second.set(property, first.text(property));
       }
       second.set("IdentificationList", u"[]");
       addPackage(m, "MaterialPackage");
       second.set("ContentStorageObject", m.createMetadataSet("ContentStorage"));
       m.find("ContentStorage[2]").append("Packages", m.find("MaterialPackage[2]"));
       static_cast<ReferenceBatchElement&>(*m.find("ContentStorage[1]").find("Packages")).removeAt(2);
     }},
};

const std::vector<Mutation> kTracks = {
    {"track-id", [](Metadata& m) { m.find("TimelineTrack[2]").set("TrackID", 1); }},
    {"zero-track-id", [](Metadata& m) { m.find("TimelineTrack[1]").set("TrackID", 0); }},
    {"zero-track-number", [](Metadata& m) { m.find("TimelineTrack[5]").set("EssenceTrackNumber", 0); }},
    {"start-timecode", [](Metadata& m) { m.find("Timecode[1]").set("StartTimecode", -1); }},
    {"start-timecode", [](Metadata& m) { m.find("Timecode[1]").set("StartTimecode", 25 * 86400); }},
    {"unlinked-descriptor", [](Metadata& m) { m.find("AES3PCMDescriptor").remove("LinkedTrackID"); }},
    {"unlinked-descriptor", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("LinkedTrackID", 0); }},
    {"linked-kind",
     [](Metadata& m) {
       m.find("MPEGVideoDescriptor").set("LinkedTrackID", 3);
       m.find("AES3PCMDescriptor").set("LinkedTrackID", 2);
     }},
    {"doubled-link",
     [](Metadata& m) {
       m.find("AES3PCMDescriptor[2]").set("LinkedTrackID", m.find("AES3PCMDescriptor[1]").text("LinkedTrackID"));
     },
     {},
     "bmx-rdd9-embedxml.header.mxf"},
    {"unknown-length", [](Metadata& m) { m.find("Sequence[1]").set("ComponentLength", -1); }},
    {"unknown-length", [](Metadata& m) { m.find("Timecode[1]").remove("ComponentLength"); }},
    {"track-number",
     [](Metadata& m) {
       m.find("TimelineTrack[6]").set("EssenceTrackNumber", m.find("TimelineTrack[5]").text("EssenceTrackNumber"));
     }},
    {"sequence-length", [](Metadata& m) { m.find("Sequence[1]").set("ComponentLength", 4); }},
    {"data-definition",
     [](Metadata& m) {
       m.find("Timecode[1]").set("ComponentDataDefinition", u"06.0E.2B.34.04.01.01.01.01.03.02.01.10.00.00.00");
     }},
    {"unequal-tracks",
     [](Metadata& m) {
       m.find("Sequence[3]").set("ComponentLength", 1);
       m.find("SourceClip[2]").set("ComponentLength", 1);
     }},
    {"timecode-rate", [](Metadata& m) { m.find("Timecode[1]").set("FramesPerSecond", 75); }},
    {"timecode-rate", [](Metadata& m) { m.find("Timecode[1]").set("FramesPerSecond", 30); }},
    {"described-track", [](Metadata& m) { addMarker(m).set("DescribedTrackIDs", u"[2, 7]"); }},
    {"linked-track", [](Metadata& m) { m.find("AES3PCMDescriptor").set("LinkedTrackID", 9); }},
    {"essence-length", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("EssenceLength", 7); }},
};

const std::vector<Mutation> kPackages = {
    {"doubled-package",
     [](Metadata& m) {
       const auto id = m.find("SourcePackage").text("PackageID");
       addPackage(m, "SourcePackage").set("PackageID", id);
     }},
    {"package-id",
     [](Metadata& m) {
       m.find("MaterialPackage").set("PackageID", Types::UMID32(std::array<uint8, 32>{1, 2, 3}));
     }},
    {"material-package",
     [](Metadata& m) {
       static_cast<ReferenceBatchElement&>(*m.find("ContentStorage").find("Packages")).removeAt(0);
       removeTree(m, m.find("MaterialPackage"));
     }},
    {"source-package", [](Metadata& m) { m.find("SourceClip[1]").set("SourcePackageID", kOtherPackage); }},
    {"source-package", [](Metadata& m) { m.find("SourceClip[1]").set("SourcePackageID", kNoPackage); }},
    {"lower-source-package", [](Metadata& m) { m.find("SourceClip[3]").set("SourcePackageID", kOtherPackage); }},
    {"source-track", [](Metadata& m) { m.find("SourceClip[1]").set("SourceTrackID", 9); }},
    {"source-length", [](Metadata& m) { m.find("SourceClip[1]").set("StartPosition", 1); }},
    {"source-duration", [](Metadata& m) { m.find("TimelineTrack[5]").set("EditRate", Rational(50, 1)); }},
    {"start-position", [](Metadata& m) { m.find("SourceClip[1]").set("StartPosition", -1); }},
    {"source-kind", [](Metadata& m) { m.find("SourceClip[1]").set("SourceTrackID", 3); }},
};

Mutation withPattern(const char* rule, const char16_t* pattern) {
  const Types::UniversalLabel label{wstring(pattern), kDottedForm};
  return {rule, [=](Metadata& m) { m.find("Preface").set("OperationalPattern", pattern); },
          [=](FileState& state) {
            for (auto& partition : state.partitions) partition.info.pack.operationalPattern = label;
          }};
}

const std::vector<Mutation> kPatterns = {
    withPattern("operational-pattern", u"06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.01.00"),
    withPattern("unknown-pattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.04.01.09.00"),
    withPattern("unknown-pattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.04.09.00"),
    withPattern("pattern-tracks", u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.00.00.00"),
    {"pattern-material", [](Metadata& m) { addPackage(m, "MaterialPackage"); }},
    {"pattern-files", splitSound},
};

const std::vector<Mutation> kEssence = {
    {"essence-stream",
     [](Metadata& m) {
       auto& data = addTo(m, "ContentStorage", "EssenceDataObjects", "EssenceData");
       data.set("LinkedPackageID", m.find("SourcePackage").text("PackageID"));
       data.set("EssenceStreamID", 7);
     }},
    {"index-stream", [](Metadata& m) { m.find("EssenceData").set("IndexStreamID", 7); },
     [](FileState& state) { state.partitions[2].info.pack.indexSID = 0; }},
    {"partition-stream",
     {},
     [](FileState& state) {
       state.partitions[2].info.pack.bodySID = 9;
       state.randomIndex->back().bodySID = 9;
     }},
    {"partition-index", {}, [](FileState& state) { state.partitions[1].info.pack.indexSID = 9; }},
    {"stream-number", [](Metadata& m) { m.find("EssenceData").set("IndexStreamID", 1); },
     [](FileState& state) { state.partitions[2].info.pack.indexSID = 1; }},
    {"linked-package", [](Metadata& m) { m.find("EssenceData").set("LinkedPackageID", kOtherPackage); }},
    {"essence-description",
     [](Metadata& m) {
       auto& descriptor = m.find("MultipleDescriptor");
       m.find("SourcePackage").remove("EssenceDescription");
       removeTree(m, descriptor);
     }},
    {"no-container",
     [](Metadata& m) { m.find("AES3PCMDescriptor[1]").set("ContainerFormat", kNoLabel); },
     {},
     "bmx-rdd9-embedxml.header.mxf"},
    {"unlisted-container",
     [](Metadata& m) { static_cast<BatchElement&>(*m.find("Preface").find("EssenceContainers")).removeAt(1); },
     [](FileState& state) {
       for (auto& partition : state.partitions) {
         auto& containers = partition.info.pack.essenceContainers;
         containers.erase(containers.begin() + 1);
       }
     }},
    {"unused-container",
     [](Metadata& m) {
       auto& containers = static_cast<BatchElement&>(*m.find("Preface").find("EssenceContainers"));
       containers.append(std::make_unique<Types::AUID>(otherContainer().rawBuffer()));
     },
     [](FileState& state) {
       for (auto& partition : state.partitions) partition.info.pack.essenceContainers.push_back(otherContainer());
     }},
};

INSTANTIATE_TEST_SUITE_P(Values, CheckMutation, testing::ValuesIn(kValues), nameOf);
INSTANTIATE_TEST_SUITE_P(References, CheckMutation, testing::ValuesIn(kReferences), nameOf);
INSTANTIATE_TEST_SUITE_P(Tracks, CheckMutation, testing::ValuesIn(kTracks), nameOf);
INSTANTIATE_TEST_SUITE_P(Packages, CheckMutation, testing::ValuesIn(kPackages), nameOf);
INSTANTIATE_TEST_SUITE_P(Patterns, CheckMutation, testing::ValuesIn(kPatterns), nameOf);
INSTANTIATE_TEST_SUITE_P(Essence, CheckMutation, testing::ValuesIn(kEssence), nameOf);

}  // namespace
}  // namespace Vantor::Edit

#include <gmock/gmock.h>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Types/Types.h"
#include "tests/Core/Metadata/TestPartition.h"
#include "tests/Edit/CheckSupport.h"

/// Each of these is close to what a rule finds, and legal: the rule does not find it.
namespace Vantor::Edit {
namespace {

using Types::Rational;
using Types::Timestamp;

constexpr const char* kRepeated = "gst-audio-ac3.mxf";  // with its metadata in partitions 0 and 2
constexpr const char16_t* kZeroPackage =
    u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00";
constexpr const char16_t* kAbsentPackage =
    u"06.0A.2B.34.01.01.01.05.01.01.0D.00.13.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07";
constexpr const char16_t* kAC3 = u"06.0E.2B.34.04.01.01.01.04.02.02.02.03.02.01.00";
constexpr const char16_t* kAtom = u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.00.00.00";
constexpr const char16_t* kExternalEssence = u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.0B.00";
constexpr const char16_t* kLaterPattern = u"06.0E.2B.34.04.01.01.0D.0D.01.02.01.01.01.09.00";
constexpr const char16_t* kLaterPicture = u"06.0E.2B.34.04.01.01.0D.01.03.02.02.01.00.00.00";
constexpr const char16_t* kLaterTimecode = u"06.0E.2B.34.04.01.01.0D.01.03.02.01.01.00.00.00";
constexpr const char16_t* kLaterSound = u"06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.06.03.00";
constexpr uint16 kPrivateTag = 0x7ff0;

using M = PartitionMetadata;

class CheckNeighbour : public testing::TestWithParam<Mutation> {};

TEST_P(CheckNeighbour, IsNotFoundByTheRule) {
  EXPECT_THAT(newCodesOf(GetParam()), testing::Not(testing::Contains(GetParam().rule)))
      << testing::PrintToString(newFindingsOf(GetParam()));
}

void setIdentification(M& m, uint16 year) {
  m.find("Identification[1]").set("FileModificationDate", Timestamp(year, 1, 1, 0, 0, 0, 0));
}

const std::vector<Mutation> kLegalValues = {
    {"enumeration-value", [](M& m) { m.find("MPEGVideoDescriptor").set("FrameLayout", 4); }},
    {"enumeration-value", [](M& m) { m.find("MPEGVideoDescriptor").set("ColorSiting", 6); }},
    {"edit-rate", [](M& m) { m.find("TimelineTrack[1]").set("EditRate", Rational(24000, 1001)); }},
    {"sample-rate", [](M& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(0, 0)); }},
    {"sample-rate", [](M& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(48000000, 1001)); }},
    {"unknown-rate", [](M& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(0, 1)); }},
    {"picture-size", [](M& m) { m.find("MPEGVideoDescriptor").set("DisplayWidth", 0); }},
    {"picture-rectangle",
     [](M& m) {
       m.find("MPEGVideoDescriptor").set("DisplayHeight", 1);
       m.find("MPEGVideoDescriptor").set("DisplayYOffset", 1);
     }},
    {"audio-rate", [](M& m) { m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(8000, 1)); }},
    {"aspect-ratio", [](M& m) { m.find("MPEGVideoDescriptor").set("ImageAspectRatio", Rational(9, 32)); }},
    {"picture-rate", [](M& m) { m.find("MPEGVideoDescriptor").set("SampleRate", Rational(50, 1)); }},
    {"sampled-size", [](M& m) { m.find("MPEGVideoDescriptor").remove("SampledWidth"); }},
    {"reference-levels", [](M& m) { m.find("MPEGVideoDescriptor").remove("WhiteRefLevel"); }},
    {"picture-sampling", [](M& m) { m.find("MPEGVideoDescriptor").set("HorizontalSubsampling", 4); }},
    {"picture-sampling", [](M& m) { m.find("MPEGVideoDescriptor").set("ComponentDepth", 254); }},
    {"sound-block", [](M& m) { m.find("AES3PCMDescriptor").set("SoundCompression", kAC3); }},
    {"sound-block",
     [](M& m) {
       m.find("AES3PCMDescriptor").set("QuantizationBits", 20);
       m.find("AES3PCMDescriptor").set("BlockAlign", 3);
     }},
    {"sound-octets",
     [](M& m) {
       m.find("AES3PCMDescriptor").set("AudioSampleRate", Rational(48000000, 1001));
       m.find("AES3PCMDescriptor").set("AverageBytesPerSecond", 95904);
     }},
    {"long-values", [](M& m) { m.find("MaterialPackage").set("PackageName", wstring(32000, u'x').c_str()); }},
    {"picture-rectangle", [](M& m) { m.find("MPEGVideoDescriptor").remove("SampledWidth"); }},
    {"picture-sampling", [](M& m) { m.find("MPEGVideoDescriptor").remove("VerticalSubsampling"); }},
    {"sound-size",
     [](M& m) {
       m.find("AES3PCMDescriptor").set("SoundCompression", kAC3);
       m.find("AES3PCMDescriptor").set("QuantizationBits", 0);
     }},
    {"length-value", [](M& m) { m.find("AES3PCMDescriptor").set("EssenceLength", -1); }},
    {"timecode-base", [](M& m) { m.find("Timecode[1]").set("FramesPerSecond", 1); }},
    {"drop-frame",
     [](M& m) {
       m.find("Timecode[1]").set("FramesPerSecond", 60);
       m.find("Timecode[1]").set("DropFrame", true);
     }},
    {"active-format", [](M& m) { m.find("MPEGVideoDescriptor").set("ActiveFormatDescriptor", 0x44); }},
    {"active-format", [](M& m) { m.find("MPEGVideoDescriptor").set("ActiveFormatDescriptor", 4); }},
    {"date-value", [](M& m) { m.find("Preface").set("FileLastModified", Timestamp(2024, 2, 29, 23, 59, 59, 996)); }},
    {"doubled-property", [](M& m) { addUnknown(m.find("Identification"), kPrivateTag, Bytes{1}); }},
    {"unreadable-value", [](M& m) { addUnknown(m.find("Identification"), kPrivateTag, Bytes{1}); }},
    {"misplaced-property", [](M& m) { addUnknown(m.find("Identification"), kPrivateTag, Bytes{1}); }},
    {"needed-property", [](M& m) { m.find("MaterialPackage").set("PackageTracks", u"[]"); }},
    {"needed-property", [](M& m) { m.find("AES3PCMDescriptor").remove("LinkedTrackID"); }},
    {"required-property", [](M& m) { m.find("Identification").remove("ApplicationPlatform"); }},
    {"often-missing-property", [](M& m) { m.find("MPEGVideoDescriptor").remove("SampledWidth"); }},
};

const std::vector<Mutation> kLegalReferences = {
    {"dangling-reference",
     [](M& m) { m.find("Preface").set("PrimaryPackage", u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"); }},
    {"dangling-weak-reference",
     [](M& m) { m.find("Preface").set("PrimaryPackage", u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00"); }},
    {"reference-kind", [](M& m) { m.find("Preface").set("PrimaryPackage", m.find("MaterialPackage")); }},
    {"doubled-instance-uid", [](M& m) { m.createMetadataSet("NetworkLocator"); }},
    {"unreached-set",
     [](M& m) {
       const auto& identifier = *m.createMetadataSet("NetworkLocator").instanceUID();
       Bytes octets = {0xff};  // in front of the reference, whose place nobody knows
       octets.insert(octets.end(), identifier.rawBuffer(), identifier.rawBuffer() + Types::UUID::kSize);
       addUnknown(m.find("Identification"), kPrivateTag, octets);
     }},
    {"shared-set", [](M& m) { m.find("Preface").set("PrimaryPackage", m.find("MaterialPackage")); }},
    {"preface-count", [](M& m) { m.createMetadataSet("ContentStorage"); }},
};

const std::vector<Mutation> kLegalTracks = {
    {"track-id", [](M& m) { m.find("TimelineTrack[1]").set("TrackID", 7); }},
    {"zero-track-id", [](M& m) { m.find("TimelineTrack[1]").remove("TrackID"); }},
    {"zero-track-number", [](M& m) { m.find("TimelineTrack[4]").set("EssenceTrackNumber", 0); }},
    {"zero-track-number",
     [](M& m) {
       m.find("EssenceData").set("EssenceStreamID", 0);
       m.find("TimelineTrack[5]").set("EssenceTrackNumber", 0);
     }},
    {"start-timecode", [](M& m) { m.find("Timecode[1]").set("StartTimecode", 25 * 86400 - 1); }},
    {"unlinked-descriptor", [](M& m) { m.find("MultipleDescriptor").set("LinkedTrackID", 0); }},
    {"linked-kind", [](M& m) { m.find("MultipleDescriptor").set("LinkedTrackID", 3); }},
    {"doubled-link", [](M& m) { m.find("MultipleDescriptor").set("LinkedTrackID", 2); }},
    {"unknown-length", [](M& m) { addMarker(m).remove("ComponentLength"); }},
    {"unknown-length", [](M& m) { m.find("Sequence[1]").set("ComponentLength", -1); },
     [](FileState& state) { state.partitions[0].info.pack.status = KLV::PartitionStatus::kOpenIncomplete; }},
    {"track-number",
     [](M& m) {
       for (const char* track : {"TimelineTrack[1]", "TimelineTrack[2]"}) m.find(track).set("EssenceTrackNumber", 1);
     }},
    {"sequence-length", [](M& m) { m.find("Sequence[1]").set("ComponentLength", -1); }},
    {"sequence-length", [](M& m) { m.find("Timecode[1]").set("ComponentLength", -1); }},
    {"sequence-length",
     [](M& m) {
       for (const char* kind : {"Transition", "Filler"}) {
         addTo(m, "Sequence[1]", "ComponentObjects", kind).set("ComponentLength", 1);
       }
     }},
    {"sequence-length",
     [](M& m) {
       addMarker(m);
       m.find("Sequence[7]").set("ComponentLength", 90);
     }},
    {"data-definition", [](M& m) { m.find("Timecode[1]").set("ComponentDataDefinition", kLaterTimecode); }},
    {"unequal-tracks", [](M& m) { m.find("Sequence[3]").set("ComponentLength", -1); }},
    {"unequal-tracks", [](M& m) { m.find("Sequence[1]").set("ComponentLength", 90); }},
    {"unequal-tracks",
     [](M& m) {
       m.find("TimelineTrack[3]").set("EditRate", Rational(48000, 1));
       m.find("Sequence[3]").set("ComponentLength", 5000);  // 3 pictures take 5,760 samples
     }},
    {"timecode-rate", [](M& m) { m.find("Timecode[1]").set("FramesPerSecond", 50); }},
    {"timecode-rate",
     [](M& m) {
       m.find("TimelineTrack[1]").set("EditRate", Rational(30000, 1001));
       m.find("Timecode[1]").set("FramesPerSecond", 30);
     }},
    {"timecode-rate", [](M& m) { m.find("TimelineTrack[1]").set("EditRate", Rational(48000, 1)); }},
    {"described-track", [](M& m) { addMarker(m).set("DescribedTrackIDs", u"[2, 3]"); }},
    {"described-track", [](M& m) { addMarker(m).set("DescribedTrackIDs", u"[]"); }},
    {"linked-track", [](M& m) { m.find("AES3PCMDescriptor").set("LinkedTrackID", 0); }},
    {"essence-length", [](M& m) { m.find("MPEGVideoDescriptor").set("EssenceLength", -1); }},
    {"essence-length", [](M& m) { m.find("AES3PCMDescriptor").set("EssenceLength", 5760); }},
};

const std::vector<Mutation> kLegalPackages = {
    {"doubled-package",
     [](M& m) { addTo(m, "ContentStorage", "Packages", "MaterialPackage").set("PackageID", kAbsentPackage); }},
    {"package-id", [](M& m) { m.find("MaterialPackage").set("PackageID", kAbsentPackage); }},
    {"material-package", [](M& m) { addTo(m, "ContentStorage", "Packages", "MaterialPackage"); }},
    {"source-package",
     [](M& m) {
       m.find("Preface").set("OperationalPattern", kAtom);
       m.find("SourceClip[1]").set("SourcePackageID", kAbsentPackage);
     }},
    {"source-package",
     [](M& m) {
       m.find("Preface").set("OperationalPattern", kExternalEssence);
       m.find("SourceClip[1]").set("SourcePackageID", kAbsentPackage);
     }},
    {"source-package",
     [](M& m) {  // in a track without essence
       addMarker(m);
       auto& clip = addTo(m, "Sequence[7]", "ComponentObjects", "SourceClip");
       clip.set("SourcePackageID", kZeroPackage);
     }},
    {"start-position", [](M& m) { m.find("SourceClip[3]").set("StartPosition", -1); }},
    {"source-package", [](M& m) { m.find("SourceClip[3]").set("SourcePackageID", kAbsentPackage); }},
    {"lower-source-package", [](M& m) { m.find("SourceClip[3]").set("SourcePackageID", kZeroPackage); }},
    {"source-track", [](M& m) { m.find("SourceClip[3]").set("SourceTrackID", 9); }},
    {"source-length", [](M& m) { m.find("SourceClip[1]").set("ComponentLength", -1); }},
    {"source-length", [](M& m) { m.find("Sequence[5]").set("ComponentLength", -1); }},
    {"source-duration",
     [](M& m) {
       m.find("TimelineTrack[2]").set("EditRate", Rational(50, 1));
       m.find("SourceClip[1]").set("ComponentLength", 6);
     }},
    {"source-kind", [](M& m) { m.find("SourceClip[1]").set("ComponentDataDefinition", kLaterPicture); }},
};

const std::vector<Mutation> kLegalEssence = {
    {"essence-stream", [](M& m) { m.find("EssenceData").set("EssenceStreamID", 7); },
     [](FileState& state) { state.fileSize = 6000; }},
    {"essence-stream", [](M& m) { m.find("EssenceData").set("EssenceStreamID", 0); }},
    {"index-stream", [](M& m) { m.find("EssenceData").remove("IndexStreamID"); }},
    {"partition-stream",
     {},
     [](FileState& state) {
       state.partitions[1].info.pack.bodySID = 9;
       state.partitions[1].info.pack.status = KLV::PartitionStatus::kGenericStream;
     }},
    {"partition-index", {}, [](FileState& state) { state.partitions[1].info.pack.indexSID = 2; }},
    {"stream-number", [](M& m) { m.find("EssenceData").set("IndexStreamID", 0); }},
    {"linked-package",
     [](M& m) {
       auto& data = addTo(m, "ContentStorage", "EssenceDataObjects", "EssenceData");
       data.set("LinkedPackageID", m.find("SourcePackage").text("PackageID"));
     }},
    {"essence-description",
     [](M& m) { addTo(m, "ContentStorage", "Packages", "SourcePackage").set("PackageID", kAbsentPackage); }},
    {"no-container", [](M& m) { m.find("AES3PCMDescriptor").set("ContainerFormat", kLaterSound); }},
    {"unlisted-container", [](M& m) { m.find("AES3PCMDescriptor").set("ContainerFormat", kLaterSound); }},
    {"unused-container", [](M& m) { m.find("AES3PCMDescriptor").set("ContainerFormat", kLaterSound); }},
    {"unused-container", [](M& m) { m.find("MultipleDescriptor").remove("ContainerFormat"); }},
};

MXF::PartitionPack& pack(FileState& state, std::size_t partition) { return state.partitions[partition].info.pack; }

void addRunIn(FileState& state) {
  state.runIn = 8;
  state.fileSize += state.runIn;
  for (auto& partition : state.partitions) partition.info.offset += state.runIn;
}

void open(FileState& state, std::size_t partition) {
  pack(state, partition).status = KLV::PartitionStatus::kOpenIncomplete;
}

const std::vector<Mutation> kLegalPartitions = {
    {"damaged-pack", {}, [](FileState& state) { pack(state, 1).kagSize = 0; }},
    {"unreadable-metadata", {}, [](FileState& state) { pack(state, 2).headerByteCount = 0; }},
    {"header-byte-count", {}, [](FileState& state) { pack(state, 0).headerByteCount = 0; }},
    {"object-directory", {}, [](FileState& state) { state.partitions[0].problem = "no primer pack"; }},
    {"partition-kind", {}, [](FileState& state) { pack(state, 2).kind = KLV::PartitionKind::kBody; }},
    {"footer-kind", {}, [](FileState& state) { pack(state, 1).footerPartition = 0; }},
    {"random-index", {}, [](FileState& state) { state.randomIndex.reset(); }},
    {"random-index-count", {}, [](FileState& state) { state.randomIndex.reset(); }},
    {"random-index-entry", {}, addRunIn},
    {"essence-stream", [](M& m) { m.find("EssenceData").set("EssenceStreamID", 7); },
     [](FileState& state) {
       state.randomIndex->push_back({7, 4000});
     }},
    {"format-version", {}, [](FileState& state) { pack(state, 1).minorVersion = 9; }},
    {"format-version", [](M& m) { m.find("Preface").remove("FormatVersion"); }},
    {"cut-file", {}, [](FileState& state) { pack(state, 0).footerPartition = 0; }},
    {"unfinished-file", {}, [](FileState& state) { open(state, 0); }, kRepeated},
    {"header-status", {}, [](FileState& state) { open(state, 0); }},
    {"footer-status", {}, [](FileState& state) { pack(state, 2).status = KLV::PartitionStatus::kClosedIncomplete; }},
    {"partition-offset", {}, addRunIn},
    {"previous-partition", {}, addRunIn},
    {"footer-partition", {}, addRunIn},
    {"footer-partition", {}, [](FileState& state) { pack(state, 1).footerPartition = 0; }},
    {"unknown-footer",
     {},
     [](FileState& state) {
       open(state, 1);
       pack(state, 1).footerPartition = 0;
     }},
    {"pack-pattern", [](M& m) { m.find("Preface").set("OperationalPattern", kLaterPattern); }},
    {"pack-containers",
     {},
     [](FileState& state) {
       auto& containers = pack(state, 1).essenceContainers;
       std::swap(containers.front(), containers.back());
     }},
    {"pack-containers",
     {},
     [](FileState& state) {
       open(state, 1);
       pack(state, 1).essenceContainers.clear();
     }},
    {"repeated-metadata",
     {},
     [](FileState& state) {
       pack(state, 0).status = KLV::PartitionStatus::kClosedIncomplete;
       state.partitions[0].metadata =
           edited(kRepeated, [](M& m) { m.find("Identification").set("ApplicationName", u"Ed"); });
     },
     kRepeated},
};

const std::vector<Mutation> kLegalLabels = {
    {"unknown-label", [](M& m) { m.find("MPEGVideoDescriptor").set("ContainerFormat", kLaterSound); }},
    {"unknown-label",
     [](M& m) { m.find("MPEGVideoDescriptor").set("Codec", u"80.7D.00.60.08.14.3E.6F.6F.3C.8C.E1.6C.EF.11.D2"); }},
    {"unknown-label",
     [](M& m) {  // a node of the registers
       m.find("MPEGVideoDescriptor").set("PictureCompression", u"06.0E.2B.34.04.01.01.07.04.01.02.02.03.01.01.00");
     }},
    {"essence-label",
     [](M& m) {
       m.find("MPEGVideoDescriptor").set("PictureCompression", u"06.0E.2B.34.01.01.01.FF.4B.46.41.41.00.0D.4D.4F");
     }},
    {"label-kind",
     [](M& m) {
       m.find("MPEGVideoDescriptor").set("PictureCompression", u"06.0E.2B.34.04.01.01.0A.04.01.02.02.03.01.01.01");
     }},
    {"unknown-data-definition",
     [](M& m) {
       m.find("Sequence[2]").set("ComponentDataDefinition", u"80.7D.00.60.08.14.3E.6F.6F.3C.8C.E1.6C.EF.11.D2");
     }},
    {"unknown-pattern", [](M& m) { m.find("Preface").set("OperationalPattern", kLaterPattern); }},
    {"pattern-material",
     [](M& m) {
       addTo(m, "ContentStorage", "Packages", "MaterialPackage").set("PackageID", kAbsentPackage);
       m.find("Preface").set("OperationalPattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.03.09.00");
     }},
    {"pattern-files",
     [](M& m) {
       addTo(m, "ContentStorage", "Packages", "SourcePackage").set("PackageID", kAbsentPackage);
       m.find("SourceClip[2]").set("SourcePackageID", kAbsentPackage);
       m.find("Preface").set("OperationalPattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.02.09.00");
     }},
    {"pattern-tracks",
     [](M& m) {
       m.find("Preface").set("OperationalPattern", kAtom);
       m.find("EssenceData").set("LinkedPackageID", m.find("SourcePackage").text("PackageID"));
       static_cast<ReferenceArrayElement&>(*m.find("SourcePackage").find("PackageTracks")).removeAt(2);
     }},
    {"operational-pattern", [](M& m) { m.find("Preface").set("OperationalPattern", kAtom); }},
    {"missing-scheme",
     [](M& m) {  // whose scheme has another item designator
       addMarker(m).set("DescriptiveFrameworkObject", m.createMetadataSet("AS_07_Core_DMS_Framework"));
       m.find("Preface").set("DescriptiveSchemes", u"[06.0E.2B.34.04.01.01.01.0D.01.07.01.07.01.00.00]");
     }},
    {"missing-scheme",
     [](M& m) {
       addMarker(m).set("DescriptiveFrameworkObject", m.createMetadataSet("SceneFramework"));
       m.find("Preface").set("DescriptiveSchemes", u"[06.0E.2B.34.04.01.01.04.0D.01.04.01.01.02.03.01]");
     }},
    {"unused-scheme",
     [](M& m) {  // whose scheme has another item designator
       addMarker(m).set("DescriptiveFrameworkObject", m.createMetadataSet("AS_07_Core_DMS_Framework"));
       m.find("Preface").set("DescriptiveSchemes", u"[06.0E.2B.34.04.01.01.01.0D.01.07.01.07.01.00.00]");
     }},
    {"unused-scheme",
     [](M& m) {
       addMarker(m).set("DescriptiveFrameworkObject", m.createMetadataSet("SceneFramework"));
       m.find("Preface").set("DescriptiveSchemes", u"[06.0E.2B.34.04.01.01.04.0D.01.04.01.01.02.03.01]");
     }},
};

constexpr KLV::Key kTransitionOperationLabel({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x0d,  // of a later register
                                              0x06, 0x01, 0x01, 0x04, 0x02, 0x05, 0x00, 0x00});
constexpr KLV::Key kAcmeLabel({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,  //
                               0x0f, 0x0e, 0x0d, 0x0c, 0x00, 0x00, 0x00, 0x01});

Mutation withNewRow(const char* rule, uint16 tag, const KLV::Key& label) {
  return {rule, [=](M& m) { m.partitionDictionary().addPrimerEntry({tag, label}); }};
}

const std::vector<Mutation> kLegalPrimers = {
    {"unlisted-dynamic-tag", [](M& m) { m.find("MPEGVideoDescriptor").set("SingleSequence", true); }},
    {"unlisted-static-tag", [](M& m) { m.find("MaterialPackage").set("PackageUsage", kAtom); }},
    withNewRow("doubled-primer-row", 0xfff0, kAcmeLabel),
    withNewRow("contradicting-primer-row", 0xfff0, kAcmeLabel),
    withNewRow("doubled-primer-label", 0xfff0, kAcmeLabel),
    withNewRow("static-tag-meaning", 0x1801, kTransitionOperationLabel),
    withNewRow("static-tag-meaning", kPrivateTag, kAcmeLabel),
};

const std::vector<Mutation> kLegalHistory = {
    {"identification-list", [](M& m) { addIdentification(m, 0); }},
    {"identification-order",
     [](M& m) {
       setIdentification(m, 2024);
       addIdentification(m, 2024);
     }},
    {"identification-order",
     [](M& m) {
       setIdentification(m, 2024);
       addIdentification(m, 0);
     }},
    {"modification-date",
     [](M& m) {
       setIdentification(m, 2024);
       m.find("Preface").set("FileLastModified", Timestamp(2024, 1, 1, 0, 0, 0, 0));
     }},
    {"modification-date", [](M& m) { setIdentification(m, 2024); }},
    {"package-date",
     [](M& m) {
       const Timestamp date(2024, 1, 1, 0, 0, 0, 0);
       for (const char* property : {"CreationTime", "PackageLastModified"})
         m.find("MaterialPackage").set(property, date);
     }},
    {"unknown-generation",
     [](M& m) { m.find("Preface").set("LinkedGenerationID", m.find("Identification").text("GenerationID")); }},
    {"doubled-generation", [](M& m) { addIdentification(m, 0); }},
};

INSTANTIATE_TEST_SUITE_P(Values, CheckNeighbour, testing::ValuesIn(kLegalValues), nameOf);
INSTANTIATE_TEST_SUITE_P(References, CheckNeighbour, testing::ValuesIn(kLegalReferences), nameOf);
INSTANTIATE_TEST_SUITE_P(Tracks, CheckNeighbour, testing::ValuesIn(kLegalTracks), nameOf);
INSTANTIATE_TEST_SUITE_P(Packages, CheckNeighbour, testing::ValuesIn(kLegalPackages), nameOf);
INSTANTIATE_TEST_SUITE_P(Essence, CheckNeighbour, testing::ValuesIn(kLegalEssence), nameOf);
INSTANTIATE_TEST_SUITE_P(Partitions, CheckNeighbour, testing::ValuesIn(kLegalPartitions), nameOf);
INSTANTIATE_TEST_SUITE_P(Labels, CheckNeighbour, testing::ValuesIn(kLegalLabels), nameOf);
INSTANTIATE_TEST_SUITE_P(Primers, CheckNeighbour, testing::ValuesIn(kLegalPrimers), nameOf);
INSTANTIATE_TEST_SUITE_P(History, CheckNeighbour, testing::ValuesIn(kLegalHistory), nameOf);

}  // namespace
}  // namespace Vantor::Edit

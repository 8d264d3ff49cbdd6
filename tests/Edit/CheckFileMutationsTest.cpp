#include <gmock/gmock.h>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Types/Types.h"
#include "tests/Edit/CheckSupport.h"

/// Each of these changes what a sound file states about itself so that it breaks one rule; no other rule finds
/// anything.
namespace Vantor::Edit {
namespace {

using KLV::PartitionStatus;
using Types::Timestamp;
using Metadata = PartitionMetadata;

constexpr const char* kRepeatingSample = "gst-audio-ac3.mxf";  // with its metadata in partitions 0 and 2
constexpr const char16_t* kOtherPattern = u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.02.09.00";
constexpr const char16_t* kUnregisteredLabel = u"06.0E.2B.34.04.01.01.01.7F.7F.7F.7F.7F.7F.7F.7F";

Types::UniversalLabel labelFrom(const char16_t* text) { return {wstring(text), kDottedForm}; }

class CheckFileMutation : public testing::TestWithParam<Mutation> {};

TEST_P(CheckFileMutation, IsFoundByItsRuleAlone) {
  EXPECT_THAT(newCodesOf(GetParam()), testing::ElementsAre(GetParam().rule))
      << testing::PrintToString(newFindingsOf(GetParam()));
}

MXF::PartitionPack& packOf(FileState& state, std::size_t partition) { return state.partitions[partition].info.pack; }

const std::vector<Mutation> kPartitions = {
    {"damaged-pack", {}, [](FileState& state) { state.partitions[1].info.damaged = true; }},
    {"unreadable-metadata", {}, [](FileState& state) { state.partitions[2].problem = "cut short"; }},
    {"header-byte-count", {}, [](FileState& state) { state.partitions[0].countProblem = "too short"; }},
    {"object-directory", {}, [](FileState& state) { state.partitions[0].directoryProblem = "cut short"; }},
    {"partition-kind", {}, [](FileState& state) { packOf(state, 1).kind = KLV::PartitionKind::kFooter; }},
    {"partition-kind", {}, [](FileState& state) { packOf(state, 1).kind = KLV::PartitionKind::kHeader; }},
    {"footer-kind", {}, [](FileState& state) { packOf(state, 2).kind = KLV::PartitionKind::kBody; }},
    {"index-rate",
     {},
     [](FileState& state) {
       state.partitions[2].index->editRate = {30000, 1001};
     }},
    {"random-index", {}, [](FileState& state) { state.randomIndexProblem = "cut short"; }},
    {"random-index-count", {}, [](FileState& state) { state.randomIndex->pop_back(); }},
    {"random-index-entry", {}, [](FileState& state) { ++state.randomIndex->back().offset; }},
    {"random-index-entry", {}, [](FileState& state) { ++state.randomIndex->front().bodySID; }},
    {"format-version", {}, [](FileState& state) { packOf(state, 0).minorVersion = 9; }},
    {"cut-file", {}, [](FileState& state) { state.fileSize = packOf(state, 0).footerPartition; }},
    {"unfinished-file", {}, [](FileState& state) { packOf(state, 0).status = PartitionStatus::kOpenIncomplete; }},
    {"unfinished-file", {}, [](FileState& state) { packOf(state, 0).status = PartitionStatus::kClosedIncomplete; }},
    {"header-status",
     {},
     [](FileState& state) { packOf(state, 0).status = PartitionStatus::kOpenIncomplete; },
     kRepeatingSample},
    {"footer-status", {}, [](FileState& state) { packOf(state, 2).status = PartitionStatus::kOpenComplete; }},
    {"partition-offset", {}, [](FileState& state) { packOf(state, 1).thisPartition += 1; }},
    {"previous-partition", {}, [](FileState& state) { packOf(state, 2).previousPartition = 0; }},
    {"footer-partition", {}, [](FileState& state) { packOf(state, 1).footerPartition -= 1; }},
    {"unknown-footer", {}, [](FileState& state) { packOf(state, 1).footerPartition = 0; }},
    {"pack-pattern", {}, [](FileState& state) { packOf(state, 1).operationalPattern = labelFrom(kOtherPattern); }},
    {"pack-pattern", [](Metadata& m) { m.find("Preface").set("OperationalPattern", kOtherPattern); }},
    {"pack-containers", {}, [](FileState& state) { packOf(state, 0).essenceContainers.pop_back(); }},
    {"repeated-metadata",
     {},
     [](FileState& state) {
       state.partitions[0].metadata =
           edited(kRepeatingSample, [](Metadata& m) { m.find("Identification").set("ApplicationName", u"Ed"); });
     },
     kRepeatingSample},
};

TEST(CheckedIndexTable, DoesNotFollowTheRateOfItsTracks) {
  const Mutation faster = {"index-rate", [](Metadata& m) {
                             for (auto* set : m.sets()) {
                               if (set->name() == "TimelineTrack") set->set("EditRate", Types::Rational(50, 1));
                             }
                           }};
  EXPECT_THAT(newFindingsOf(faster), testing::Contains(testing::HasSubstr("the index table counts 25")));
}

const std::vector<Mutation> kLabels = {
    {"unknown-label", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("PictureCompression", kUnregisteredLabel); }},
    {"unknown-label",
     [](Metadata& m) {  // below a node of the registers
       m.find("MPEGVideoDescriptor").set("PictureCompression", u"06.0E.2B.34.04.01.01.01.04.01.02.02.01.01.7E.00");
     }},
    {"unknown-label",
     [](Metadata& m) {
       m.find("MPEGVideoDescriptor").set("CodingEquations", u"80.7D.00.60.08.14.3E.6F.6F.3C.8C.E1.6C.EF.11.D2");
     }},
    {"essence-label",
     [](Metadata& m) {
       m.find("MPEGVideoDescriptor").set("PictureCompression", u"06.00.00.00.0E.00.00.00.2B.00.00.00.34.00.00.00");
     }},
    {"label-kind", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("PictureCompression", kOtherPattern); }},
    {"label-kind", [](Metadata& m) { m.find("MPEGVideoDescriptor").set("CodingEquations", kOtherPattern); }},
    {"unknown-data-definition",
     [](Metadata& m) {
       addMarker(m).set("ComponentDataDefinition", kUnregisteredLabel);
       m.find("Sequence[7]").set("ComponentDataDefinition", kUnregisteredLabel);
     }},
    {"missing-scheme",
     [](Metadata& m) {
       auto& marker = addMarker(m);
       marker.set("DescriptiveFrameworkObject", m.createMetadataSet("SceneFramework"));
     }},
    {"unused-scheme",
     [](Metadata& m) {
       m.find("Preface").set("DescriptiveSchemes", u"[06.0E.2B.34.04.01.01.01.0D.01.04.01.01.01.01.00]");
     }},
};

/// @param tag  with a row in the sample's primer pack.
Mutation withTag(const char* rule, uint16 tag, uint16 other) {
  return {rule, {}, [=](FileState& state) { state.partitions[0].metadata = withPrimerTag("op1a.mxf", tag, other); }};
}
Mutation withRow(const char* rule, uint16 tag, const KLV::Key& label) {
  return {rule, [=](Metadata& m) { m.partitionDictionary().addPrimerEntry({tag, label}); }};
}

constexpr uint16 kApplicationPlatform = 0x3c08;
constexpr uint16 kTransitionOperation = 0x1801;  // not in the sample's primer pack
constexpr uint16 kBitRate = 0x8000;
constexpr KLV::Key kBitRateLabel({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05,  //
                                  0x04, 0x01, 0x06, 0x02, 0x01, 0x0b, 0x00, 0x00});
constexpr KLV::Key kPrivateLabel({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01,  //
                                  0x0f, 0x0e, 0x0d, 0x0c, 0x00, 0x00, 0x00, 0x01});

const std::vector<Mutation> kPrimers = {
    withTag("unlisted-dynamic-tag", kBitRate, 0xfff0),
    withTag("unlisted-static-tag", kApplicationPlatform, 0xfff0),
    withRow("doubled-primer-row", kBitRate, kBitRateLabel),
    withRow("contradicting-primer-row", kBitRate, kPrivateLabel),
    withRow("doubled-primer-label", 0xfff0, kBitRateLabel),
    withRow("static-tag-meaning", kTransitionOperation, kPrivateLabel),
};

void setDates(MetadataSet& set, const char* first, uint16 year, const char* second, uint16 otherYear) {
  set.set(first, Timestamp(year, 1, 1, 0, 0, 0, 0));
  set.set(second, Timestamp(otherYear, 1, 1, 0, 0, 0, 0));
}

const std::vector<Mutation> kHistory = {
    {"identification-list",
     [](Metadata& m) {
       m.find("Preface").set("IdentificationList", u"[]");
       m.remove(m.find("Identification"));
     }},
    {"identification-order",
     [](Metadata& m) {
       m.find("Identification").set("FileModificationDate", Timestamp(2024, 1, 1, 0, 0, 0, 0));
       addIdentification(m, 2023);
     }},
    {"modification-date",
     [](Metadata& m) {
       m.find("Preface").set("FileLastModified", Timestamp(2024, 1, 1, 0, 0, 0, 0));
       m.find("Identification").set("FileModificationDate", Timestamp(2024, 1, 1, 0, 0, 0, 4));
     }},
    {"package-date",
     [](Metadata& m) { setDates(m.find("MaterialPackage"), "CreationTime", 2024, "PackageLastModified", 2023); }},
    {"unknown-generation",
     [](Metadata& m) {
       m.find("Preface").set("LinkedGenerationID", u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07");
     }},
    {"doubled-generation",
     [](Metadata& m) {
       addIdentification(m, 0).set("GenerationID", m.find("Identification[1]").text("GenerationID"));
     }},
};

INSTANTIATE_TEST_SUITE_P(Partitions, CheckFileMutation, testing::ValuesIn(kPartitions), nameOf);
INSTANTIATE_TEST_SUITE_P(Labels, CheckFileMutation, testing::ValuesIn(kLabels), nameOf);
INSTANTIATE_TEST_SUITE_P(Primers, CheckFileMutation, testing::ValuesIn(kPrimers), nameOf);
INSTANTIATE_TEST_SUITE_P(History, CheckFileMutation, testing::ValuesIn(kHistory), nameOf);

}  // namespace
}  // namespace Vantor::Edit

#include "tests/Edit/CheckSupport.h"

#include <algorithm>

#include "Core/DataIO/File.h"
#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Timestamp.h"

namespace Vantor::Edit {

namespace {

Path pathOf(const char* sample) { return Path(VANTOR_TEST_DATA_DIR) / sample; }

Bytes writtenBytes(PartitionMetadata& metadata) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(metadata, MXF::SetOrder::kFile, sink);
  return sink.take();
}

}  // namespace

std::string nameOf(const testing::TestParamInfo<Mutation>& info) {
  std::string name = std::to_string(info.index) + "_" + info.param.rule;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

FileState stateOf(const Path& file) {
  DataIO::File::FileDataSource source(file);
  return readState(source, builtInDictionary());
}
FileState stateOf(const char* sample) { return stateOf(pathOf(sample)); }

SharedPtr<const PartitionMetadata> edited(const char* sample, const std::function<void(PartitionMetadata&)>& edit) {
  const auto metadata = MXF::readHeaderMetadata(pathOf(sample), builtInDictionary());
  edit(*metadata);
  return readMetadata(writtenBytes(*metadata), builtInDictionary());
}

SharedPtr<const PartitionMetadata> withPrimerTag(const char* sample, uint16 tag, uint16 other) {
  const auto metadata = MXF::readHeaderMetadata(pathOf(sample), builtInDictionary());
  auto bytes = writtenBytes(*metadata);
  const auto* label = metadata->partitionDictionary().tryFind(tag)->rawBuffer();
  Bytes row = {static_cast<uint8>(tag >> 8), static_cast<uint8>(tag)};
  row.insert(row.end(), label, label + KLV::Key::kSize);
  const auto at = std::search(bytes.begin(), bytes.end(), row.begin(), row.end());
  at[0] = static_cast<uint8>(other >> 8);
  at[1] = static_cast<uint8>(other);
  return readMetadata(bytes, builtInDictionary());
}

FileState mutated(const Mutation& mutation) {
  auto state = stateOf(mutation.sample);
  if (mutation.edit) {
    const auto before = state.partitions.front().metadata;
    const auto after = edited(mutation.sample, mutation.edit);
    for (auto& partition : state.partitions) {
      if (partition.metadata == before) partition.metadata = after;
    }
  }
  if (mutation.change) mutation.change(state);
  return state;
}

std::vector<std::string> newFindingsOf(const Mutation& mutation) {
  std::vector<std::string> texts;
  for (const auto& finding : newFindings(check(stateOf(mutation.sample)), check(mutated(mutation)))) {
    texts.push_back(finding.rule->code + (": " + finding.set) + ": " + finding.property + ": " + describe(finding));
  }
  return texts;
}

std::vector<std::string> newCodesOf(const Mutation& mutation) {
  std::vector<std::string> codes;
  for (const auto& text : newFindingsOf(mutation)) codes.push_back(text.substr(0, text.find(':')));
  std::sort(codes.begin(), codes.end());
  codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
  return codes;
}

MetadataSet& addTo(PartitionMetadata& metadata, const char* owner, const char* collection, const char* kind) {
  auto& set = metadata.createMetadataSet(kind);
  metadata.find(owner).append(collection, set);
  return set;
}

MetadataSet& addMarker(PartitionMetadata& metadata) {
  constexpr const char16_t* kDescriptive = u"06.0E.2B.34.04.01.01.01.01.03.02.01.10.00.00.00";
  auto& track = addTo(metadata, "MaterialPackage", "PackageTracks", "EventTrack");
  track.set("TrackID", 9);
  track.set("EssenceTrackNumber", 0);
  track.set("EventTrackEditRate", Types::Rational(25, 1));
  auto& sequence = metadata.createMetadataSet("Sequence");
  auto& marker = metadata.createMetadataSet("DescriptiveMarker");
  track.set("TrackSegment", sequence);
  sequence.append("ComponentObjects", marker);
  for (auto* component : {&sequence, &marker}) component->set("ComponentDataDefinition", kDescriptive);
  for (auto* component : {&sequence, &marker}) component->set("ComponentLength", 3);
  return marker;
}

MetadataSet& addIdentification(PartitionMetadata& metadata, uint16 year) {
  auto& set = addTo(metadata, "Preface", "IdentificationList", "Identification");
  for (const char* text : {"ApplicationSupplierName", "ApplicationName", "ApplicationVersionString"})
    set.set(text, u"x");
  set.set("ApplicationProductID", u"01.02.03.04.05.06.07.08.09.0A.0B.0C.0D.0E.0F.10");
  set.set("GenerationID", u"11.12.13.14.15.16.17.18.19.1A.1B.1C.1D.1E.1F.20");
  set.set("FileModificationDate", Types::Timestamp(year, 1, 1, 0, 0, 0, 0));
  return set;
}

void removeTree(PartitionMetadata& metadata, MetadataSet& set) {
  std::vector<Types::UUID> owned;
  for (const auto& element : set) element.appendTargets({false}, owned);
  metadata.remove(set);
  for (const auto& identifier : owned) {
    const auto found = metadata.findByInstanceUID(identifier);
    for (auto* target : found) removeTree(metadata, *target);
  }
}

}  // namespace Vantor::Edit

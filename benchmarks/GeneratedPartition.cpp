#include "GeneratedPartition.h"

#include <stdexcept>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Types.h"

namespace Vantor::Benchmarks {

namespace {

MetadataSet* createSet(PartitionMetadata& partition, const char* symbol) {
  const auto* definition = builtInDictionary()->findSetBySymbol(symbol);
  if (definition == nullptr) throw std::logic_error(std::string("no set ") + symbol);
  return partition.createMetadataSet(definition->key());
}

template <class Kind>
Kind& property(MetadataSet* set, const char* symbol) {
  for (const auto& attribute : set->definition()->attributes()) {
    if (attribute.metaElement()->symbol() != symbol) continue;
    return dynamic_cast<Kind&>(*set->find(attribute.metaElement()->key()));
  }
  throw std::logic_error(std::string("no property ") + symbol);
}

template <class Value, class... Arguments>
void setValue(MetadataSet* set, const char* symbol, Arguments&&... arguments) {
  property<SimpleElement>(set, symbol).set(std::make_unique<Value>(std::forward<Arguments>(arguments)...), true);
}

Types::AUID dataDefinition() { return Types::AUID(u"06.0E.2B.34.04.01.01.01.01.03.02.01.01.00.00.00", kDottedForm); }

void addSegment(PartitionMetadata& partition, MetadataSet* track, std::size_t number) {
  auto* sequence = createSet(partition, "Sequence");
  property<ReferenceElement>(track, "TrackSegment").set(sequence);
  setValue<Types::AUID>(sequence, "ComponentDataDefinition", dataDefinition());
  setValue<Types::Length>(sequence, "ComponentLength", 250);

  auto* timecode = createSet(partition, "Timecode");
  setValue<Types::AUID>(timecode, "ComponentDataDefinition", dataDefinition());
  setValue<Types::Length>(timecode, "ComponentLength", 250);
  setValue<Types::Position>(timecode, "StartTimecode", static_cast<int64>(number));
  setValue<Types::UInt16>(timecode, "FramesPerSecond", uint16{25});
  setValue<Types::Boolean>(timecode, "DropFrame", false);

  auto* clip = createSet(partition, "SourceClip");
  setValue<Types::AUID>(clip, "ComponentDataDefinition", dataDefinition());
  setValue<Types::Length>(clip, "ComponentLength", 250);
  setValue<Types::UMID32>(clip, "SourcePackageID", Types::UMID32());
  setValue<Types::UInt32>(clip, "SourceTrackID", 1u);

  auto& components = property<ReferenceArrayElement>(sequence, "ComponentObjects");
  components.append(timecode);
  components.append(clip);
}

MetadataSet* addPackage(PartitionMetadata& partition, std::size_t number) {
  auto* package = createSet(partition, "MaterialPackage");
  setValue<Types::UMID32>(package, "PackageID", Types::UMID32());
  setValue<Types::UTF16String>(package, "PackageName", wstring(u"A package of the archive"));
  setValue<Types::Timestamp>(package, "CreationTime", uint16{2024}, uint8{2}, uint8{29}, uint8{12}, uint8{34},
                             uint8{56}, uint16{0});
  auto* track = createSet(partition, "TimelineTrack");
  property<ReferenceArrayElement>(package, "PackageTracks").append(track);
  setValue<Types::UInt32>(track, "TrackID", static_cast<uint32>(number));
  setValue<Types::Rational>(track, "EditRate", 25, 1);
  setValue<Types::Position>(track, "Origin", 0);
  addSegment(partition, track, number);
  return package;
}

}  // namespace

std::unique_ptr<PartitionMetadata> makePartition(std::size_t packages) {
  auto partition = std::make_unique<PartitionMetadata>(builtInDictionary());
  auto* preface = createSet(*partition, "Preface");
  setValue<Types::VersionType>(preface, "FormatVersion", uint8{1}, uint8{3});
  auto* storage = createSet(*partition, "ContentStorage");
  property<ReferenceElement>(preface, "ContentStorageObject").set(storage);
  auto& packageList = property<ReferenceBatchElement>(storage, "Packages");
  for (std::size_t i = 0; i < packages; ++i) packageList.append(addPackage(*partition, i));
  return partition;
}

}  // namespace Vantor::Benchmarks

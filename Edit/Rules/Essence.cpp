#include <algorithm>
#include <set>

#include "Core/Comparison/ValueText.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about the essence: its streams in partitions, the containers that they are in, and what describes them.
namespace Vantor::Edit {

namespace {

using Streams = std::set<int64>;

/// The streams that partition packs or EssenceData name; 0 stands for none.
struct NamedStreams {
  Streams body;
  Streams index;
};

NamedStreams ofPartitions(const CheckedFile& file) {
  NamedStreams streams;
  for (const auto& partition : file.state().partitions) {
    streams.body.insert(partition.info.pack.bodySID);
    streams.index.insert(partition.info.pack.indexSID);
  }
  return streams;
}

NamedStreams ofEssenceData(const Model& model) {
  NamedStreams streams{{0}, {0}};
  for (const auto* data : model.all("EssenceData")) {
    streams.body.insert(integerOf(*data, "EssenceStreamID").value_or(0));
    streams.index.insert(integerOf(*data, "IndexStreamID").value_or(0));
  }
  return streams;
}

/// Whether the file has partitions that were not found: the random index pack lists more of them.
bool missesPartitions(const FileState& file) {
  return file.randomIndex && file.randomIndex->size() > file.partitions.size();
}

/// Reports the streams of EssenceData that are in no partition of a whole file.
void checkStreams(const CheckedFile& file, const char* property, Streams NamedStreams::*kind, Report& report) {
  if (file.best() == nullptr || file.isCut() || missesPartitions(file.state())) return;
  const auto streams = ofPartitions(file);
  Report ofMetadata = report.about(file.best()->partitions());
  for (const auto* data : file.best()->all("EssenceData")) {
    const auto stream = integerOf(*data, property).value_or(0);
    if (stream != 0 && (streams.*kind).count(stream) == 0) ofMetadata.add(*data, property, {std::to_string(stream)});
  }
}

void checkBodyStreams(const CheckedFile& file, Report& report) {
  checkStreams(file, "EssenceStreamID", &NamedStreams::body, report);
}
void checkIndexStreams(const CheckedFile& file, Report& report) {
  checkStreams(file, "IndexStreamID", &NamedStreams::index, report);
}

bool isGeneric(const MXF::PartitionInfo& partition) {
  return partition.pack.status == KLV::PartitionStatus::kGenericStream;
}

/// Generic streams (ST 410) are named by other sets.
void checkPartitionBodies(const CheckedFile& file, Report& report) {
  if (file.best() == nullptr) return;
  const auto streams = ofEssenceData(*file.best());
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const auto& partition = file.state().partitions[i].info;
    const int64 stream = partition.pack.bodySID;
    if (!isGeneric(partition) && streams.body.count(stream) == 0) report.add(i, "BodySID", {std::to_string(stream)});
  }
}

void checkPartitionIndexes(const CheckedFile& file, Report& report) {
  if (file.best() == nullptr) return;
  const auto streams = ofEssenceData(*file.best());
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const int64 stream = file.state().partitions[i].info.pack.indexSID;
    if (streams.index.count(stream) == 0) report.add(i, "IndexSID", {std::to_string(stream)});
  }
}

/// The package whose essence an index stream is about; null where none is named.
const Package* packageOfIndex(const Model& model, int64 stream) {
  for (const auto* data : model.all("EssenceData")) {
    if (integerOf(*data, "IndexStreamID").value_or(0) == stream) return model.package(*data, "LinkedPackageID");
  }
  return nullptr;
}

/// The rates of the tracks of essence.
std::vector<Types::Rational> editRatesOf(const Model& model, const Package& package) {
  std::vector<Types::Rational> rates;
  for (const auto* track : package.tracks) {
    const auto* rate = valueOf<Types::Rational>(*track, "EditRate");
    if (rate != nullptr && isPositive(*rate) && isEssenceTrack(model, *track)) rates.push_back(*rate);
  }
  return rates;
}

/// A table counts in edit units of its essence.
void checkIndexRates(const CheckedFile& file, Report& report) {
  if (file.best() == nullptr) return;
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const auto& index = file.state().partitions[i].index;
    const auto* package =
        index && isPositive(index->editRate) ? packageOfIndex(*file.best(), index->indexSID) : nullptr;
    if (package == nullptr) continue;
    const auto rates = editRatesOf(*file.best(), *package);
    const auto isSame = [&](const Types::Rational& rate) { return areEqual(rate, index->editRate); };
    if (rates.empty() || std::any_of(rates.begin(), rates.end(), isSame)) continue;
    report.add(i, "IndexEditRate", {valueText(index->editRate), valueText(rates.front())});
  }
}

void checkStreamNumbers(const Model& model, Report& report) {
  Streams numbers;
  for (const auto* data : model.all("EssenceData")) {
    for (const char* property : {"EssenceStreamID", "IndexStreamID"}) {
      const auto number = integerOf(*data, property).value_or(0);
      if (number != 0 && !numbers.insert(number).second) report.add(*data, property, {std::to_string(number)});
    }
  }
}

void checkLinkedPackages(const Model& model, Report& report) {
  for (const auto* data : model.all("EssenceData")) {
    const auto* id = valueOf<Types::UMID32>(*data, "LinkedPackageID");
    const auto* package = id == nullptr ? nullptr : model.findPackage(*id);
    if (id == nullptr || (package != nullptr && model.is(*package->set, "SourcePackage"))) continue;
    report.add(*data, "LinkedPackageID", {id->dottedText()});
  }
}

void checkDescriptions(const Model& model, Report& report) {
  for (const auto* package : model.packagesWithEssence()) {
    if (!model.is(*package->set, "SourcePackage") || model.target(*package->set, "EssenceDescription") != nullptr)
      continue;
    report.add(*package->set, "EssenceDescription");
  }
}

/// Calls `visit(descriptor, container)` for the descriptors of essence in the file.
template <class Visit>
void forEachContainer(const Model& model, Visit&& visit) {
  for (const auto& descriptor : model.descriptors()) {
    const auto container = labelOf(*descriptor.set, "ContainerFormat");
    if (container && descriptor.package->isNamed) visit(*descriptor.set, *container);
  }
}

/// Zeros stand for no label.
void checkNoContainers(const Model& model, Report& report) {
  forEachContainer(model, [&](const MetadataSet& descriptor, const Types::UniversalLabel& container) {
    if (container == Types::UniversalLabel()) report.add(descriptor, "ContainerFormat");
  });
}

void checkUnlistedContainers(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  const auto listed = withoutVersions(labelsOf(*model.preface(), "EssenceContainers"));
  forEachContainer(model, [&](const MetadataSet& descriptor, const Types::UniversalLabel& container) {
    if (container == Types::UniversalLabel() || listed.count(withoutVersion(container)) != 0) return;
    report.add(descriptor, "ContainerFormat", {textOf(container)});
  });
}

/// Files with several containers may also list the label for several mappings (ST 379-1), which no descriptor has.
constexpr KLV::Key kSeveralMappings({0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x03,  //
                                     0x0d, 0x01, 0x03, 0x01, 0x02, 0x7f, 0x01, 0x00});

void checkUnusedContainers(const Model& model, Report& report) {
  const auto descriptors = model.all("FileDescriptor");
  if (model.preface() == nullptr || descriptors.empty()) return;
  Labels used = {withoutVersion(Types::UniversalLabel(kSeveralMappings))};
  for (const auto* descriptor : descriptors) {
    if (const auto container = labelOf(*descriptor, "ContainerFormat")) used.insert(withoutVersion(*container));
  }
  for (const auto& label : labelsOf(*model.preface(), "EssenceContainers")) {
    if (used.count(withoutVersion(label)) == 0) report.add(*model.preface(), "EssenceContainers", {textOf(label)});
  }
}

}  // namespace

const RuleTable& essenceRules() {
  static const RuleTable table = {
      {{"essence-stream", Severity::kError, "no partition holds the stream {number}",
        "ST 377-1, Essence Container Data"},
       checkBodyStreams},
      {{"index-stream", Severity::kWarning, "no partition holds the index stream {number}",
        "ST 377-1, Essence Container Data"},
       checkIndexStreams},
      {{"partition-stream", Severity::kError, "no EssenceData names the stream {number} of the partition",
        "ST 377-1, Partition Pack"},
       checkPartitionBodies},
      {{"partition-index", Severity::kWarning, "no EssenceData names the index stream {number} of the partition",
        "ST 377-1, Partition Pack"},
       checkPartitionIndexes},
      {{"index-rate", Severity::kError,
        "the index table counts {rate} edit units a second, the tracks of its essence {rate}",
        "ST 377-1, Index Table Segment"},
       checkIndexRates},
      {{"stream-number", Severity::kError, "the number {number} belongs to another stream already",
        "ST 377-1, Essence Container Data"},
       checkStreamNumbers},
      {{"linked-package", Severity::kError, "the file has no source package {identifier}",
        "ST 377-1, Essence Container Data"},
       checkLinkedPackages},
      {{"essence-description", Severity::kError, "the package has essence in the file and no descriptor of it",
        "ST 377-1, File Package"},
       checkDescriptions},
      {{"no-container", Severity::kWarning, "the descriptor has no essence container, only zeros",
        "ST 377-1, File Descriptor"},
       checkNoContainers},
      {{"unlisted-container", Severity::kWarning, "the Preface does not list the essence container {label}",
        "ST 377-1, Preface"},
       checkUnlistedContainers},
      {{"unused-container", Severity::kNote, "no descriptor has the essence container {label}", "ST 377-1, Preface"},
       checkUnusedContainers}};
  return table;
}

}  // namespace Vantor::Edit

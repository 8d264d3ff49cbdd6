#include "Command.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

#include "CommonOptions.h"
#include "Core/MXF/FileStructure.h"
#include "Core/Platform/Strings.h"
#include "DictionaryOptions.h"
#include "DictionaryText.h"
#include "OperationalPattern.h"
#include "SetList.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "TextTable.h"
#include "UnreadText.h"

namespace Vantor::Tool {

namespace {

using Align = TextTable::Align;

std::string nameOf(KLV::PartitionKind kind) {
  switch (kind) {
    case KLV::PartitionKind::kHeader:
      return "header";
    case KLV::PartitionKind::kBody:
      return "body";
    case KLV::PartitionKind::kFooter:
      return "footer";
  }
  return "?";
}

std::string nameOf(KLV::PartitionStatus status) {
  switch (status) {
    case KLV::PartitionStatus::kOpenIncomplete:
      return "open incomplete";
    case KLV::PartitionStatus::kClosedIncomplete:
      return "closed incomplete";
    case KLV::PartitionStatus::kOpenComplete:
      return "open complete";
    case KLV::PartitionStatus::kClosedComplete:
      return "closed complete";
    case KLV::PartitionStatus::kGenericStream:
      return "generic stream";
  }
  return "?";
}

std::string nameOf(MXF::StructureSource source) {
  switch (source) {
    case MXF::StructureSource::kRandomIndexPack:
      return "as the random index pack lists them";
    case MXF::StructureSource::kPreviousPartitions:
      return "as each names the one before it";
    case MXF::StructureSource::kWalk:
      return "as a walk through the file met them";
  }
  return "?";
}

std::string textOf(const Types::UniversalLabel& label) { return Utils::wstringToString(label.toString(kDottedForm)); }

/// The label and its name in the registers.
std::string textOf(const Definitions& definitions, const Types::UniversalLabel& label) {
  const std::string name = labelName(definitions, label);
  return textOf(label) + (name.empty() ? "" : "  " + name);
}

std::string describeFile(const MXF::FileStructure& structure, const Definitions& definitions) {
  const MXF::PartitionPack& header = structure.partitions.front().pack;
  TextTable table(2);
  table.addRow({"size", std::to_string(structure.fileSize) + " bytes"});
  if (structure.runIn != 0) table.addRow({"run-in", std::to_string(structure.runIn) + " bytes"});
  if (structure.end != structure.fileSize) table.addRow({"sound up to", "offset " + std::to_string(structure.end)});
  table.addRow({"MXF version", std::to_string(header.majorVersion) + "." + std::to_string(header.minorVersion)});
  table.addRow({"operational pattern", operationalPatternName(header.operationalPattern) + "  " +
                                           textOf(definitions, header.operationalPattern)});
  for (const auto& container : header.essenceContainers) {
    table.addRow({"essence container", textOf(definitions, container)});
  }
  return table.text();
}

TextTable::Row partitionRow(std::size_t number, const MXF::PartitionInfo& partition) {
  const MXF::PartitionPack& pack = partition.pack;
  TextTable::Row row = {std::to_string(number), nameOf(pack.kind), nameOf(pack.status),
                        std::to_string(partition.offset)};
  if (partition.damaged) {
    row.emplace_back("damaged");
  } else {
    for (const uint64 value :
         {pack.headerByteCount, pack.indexByteCount, uint64{pack.indexSID}, uint64{pack.bodySID}, pack.bodyOffset}) {
      row.push_back(std::to_string(value));
    }
  }
  return row;
}

std::string describePartitions(const MXF::FileStructure& structure) {
  TextTable table({Align::kRight, Align::kLeft, Align::kLeft, Align::kRight, Align::kRight, Align::kRight,
                   Align::kRight, Align::kRight, Align::kRight});
  table.addRow(
      {"no", "kind", "status", "offset", "header bytes", "index bytes", "index SID", "body SID", "body offset"});
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) table.addRow(partitionRow(i, structure.partitions[i]));
  return "\npartitions: " + std::to_string(structure.partitions.size()) + ", " + nameOf(structure.source) + "\n" +
         table.text();
}

/// How many sets and properties of which kind a partition has.
struct Counts {
  explicit Counts(const PartitionMetadata& metadata) {
    for (const MetadataSet* set : metadata.sets()) count(*set);
    for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) ++dark[textOf((*at)->key())];
  }

  void count(const MetadataSet& set) {
    ++(set.definition() != nullptr ? known : dark)[set.name()];
    for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
      ++((*at).metaAttribute().metaElement() == nullptr ? unknownProperties : misplacedProperties);
    }
  }

  static std::string textOf(const KLV::Key& key) { return Utils::wstringToString(key.toString()); }

  std::map<std::string, std::size_t> known;  // by symbol
  std::map<std::string, std::size_t> dark;   // by key
  std::size_t unknownProperties = 0;
  std::size_t misplacedProperties = 0;
};

std::size_t total(const std::map<std::string, std::size_t>& counts) {
  std::size_t sum = 0;
  for (const auto& entry : counts) sum += entry.second;
  return sum;
}

std::string list(const std::map<std::string, std::size_t>& counts) {
  TextTable table({Align::kRight, Align::kLeft});
  for (const auto& [name, count] : counts) table.addRow({std::to_string(count), name});
  return table.text();
}

std::string countLine(const char* what, std::size_t count) {
  return count == 0 ? "" : std::string(what) + ": " + std::to_string(count) + "\n";
}

/// @param setList  what stands for the sets that the dictionary knows.
std::string describeMetadata(const PartitionMetadata& metadata, const Counts& counts,
                             const MXF::PartitionChoice& choice, const std::string& setList) {
  const std::string text = "sets in " + describe(choice) + ": " + std::to_string(total(counts.known)) + "\n" + setList;
  const std::string others = countLine("dark sets", total(counts.dark)) + list(counts.dark) +
                             countLine("unknown properties", counts.unknownProperties) + listOfUnread(metadata) +
                             countLine("misplaced properties", counts.misplacedProperties);
  return others.empty() ? text : text + "\n" + others;
}

class InfoCommand final : public Command {
 public:
  explicit InfoCommand(CLI::App& program)
      : Command(program, "info", "Print the partitions of a file and the sets in the metadata of one of them") {
    addInput("MXF file");
    addPartition(app(), partition_);
    app().add_flag(
        "--sets", sets_,
        "List the sets instead, each as mxfxml set takes it, with what\nsets it apart from others of its kind");
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    addExamples({"info in.mxf", "info in.mxf --sets"});
  }

  ExitCode run() const override {
    refuseStoppedChange(input());
    const auto structure = MXF::readStructure(input());
    const auto definitions = dictionary_.definitions();
    const auto metadata = dictionary_.read(DictionaryOptions::partitionOf(input(), partition_));
    const Counts counts(*metadata);
    if (sets_) {
      writeStandardOutput(describeMetadata(*metadata, counts, partition_, listOfSets(*metadata, definitions)));
    } else {
      writeStandardOutput(describeFile(structure, definitions) + describePartitions(structure) + "\n" +
                          describeMetadata(*metadata, counts, partition_, list(counts.known)));
    }
    return kSuccess;
  }

 private:
  MXF::PartitionChoice partition_;
  bool sets_ = false;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> infoCommand(CLI::App& program) { return std::make_unique<InfoCommand>(program); }

}  // namespace Vantor::Tool

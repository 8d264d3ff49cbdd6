#include "Look/PartitionText.h"

#include "Core/MXF/OperationalPattern.h"
#include "Core/Platform/Strings.h"
#include "Definitions/DictionaryText.h"
#include "Terminal/StandardInput.h"
#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

using Align = TextTable::Align;

std::string orderText(const MXF::FileStructure& structure) {
  if (isOfPipe(structure)) return "the first; others of a pipe are not read";
  switch (structure.source) {
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

}  // namespace

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

std::string describeFile(const MXF::FileStructure& structure, const Definitions& definitions) {
  const MXF::PartitionPack& header = structure.partitions.front().pack;
  TextTable table(2);
  if (!isOfPipe(structure)) table.addRow({"size", std::to_string(structure.fileSize) + " bytes"});
  if (structure.runIn != 0) table.addRow({"run-in", std::to_string(structure.runIn) + " bytes"});
  if (structure.end != structure.fileSize) table.addRow({"sound up to", "offset " + std::to_string(structure.end)});
  table.addRow({"MXF version", std::to_string(header.majorVersion) + "." + std::to_string(header.minorVersion)});
  table.addRow({"operational pattern", MXF::operationalPatternName(header.operationalPattern) + "  " +
                                           textOf(definitions, header.operationalPattern)});
  for (const auto& container : header.essenceContainers) {
    table.addRow({"essence container", textOf(definitions, container)});
  }
  return table.text();
}

std::string describePartitions(const MXF::FileStructure& structure) {
  TextTable table({Align::kRight, Align::kLeft, Align::kLeft, Align::kRight, Align::kRight, Align::kRight,
                   Align::kRight, Align::kRight, Align::kRight});
  table.addRow(
      {"no", "kind", "status", "offset", "header bytes", "index bytes", "index SID", "body SID", "body offset"});
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) table.addRow(partitionRow(i, structure.partitions[i]));
  return "\npartitions: " + std::to_string(structure.partitions.size()) + ", " + orderText(structure) + "\n" +
         table.text();
}

}  // namespace Vantor::Tool

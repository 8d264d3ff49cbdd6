#include "Look/MetadataText.h"

#include "CommandLine/CommonOptions.h"
#include "Core/MetaMetadata/CommonNames.h"
#include "Core/Platform/Strings.h"
#include "Report/UnreadText.h"
#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

std::string textOf(const KLV::Key& key) { return Utils::wstringToString(key.toString()); }

std::string countLine(const char* what, std::size_t count) {
  return count == 0 ? "" : std::string(what) + ": " + std::to_string(count) + "\n";
}

}  // namespace

Counts::Counts(const PartitionMetadata& metadata) {
  for (const MetadataSet* set : metadata.sets()) count(*set);
  for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) ++dark[textOf((*at)->key())];
}

void Counts::count(const MetadataSet& set) {
  if (set.definition() != nullptr) {
    ++known[MetaMetadata::namesOf(*set.definition())];
  } else {
    ++dark[set.name()];
  }
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    ++countFor(set, *at);
  }
}

std::size_t& Counts::countFor(const MetadataSet& set, const Element& element) {
  if (element.metaAttribute().metaElement() != nullptr) return misplacedProperties;
  return set.definitionOf(element) == nullptr ? unknownProperties : unreadableValues;
}

std::size_t total(const std::map<std::string, std::size_t>& counts) {
  std::size_t sum = 0;
  for (const auto& entry : counts) sum += entry.second;
  return sum;
}

std::string list(const std::map<std::string, std::size_t>& counts) {
  TextTable table({TextTable::Align::kRight, TextTable::Align::kLeft});
  for (const auto& [name, count] : counts) table.addRow({std::to_string(count), name});
  return table.text();
}

std::string describeMetadata(const PartitionMetadata& metadata, const Counts& counts,
                             const MXF::PartitionChoice& choice, const std::string& setList) {
  const std::string text = "sets in " + describe(choice) + ": " + std::to_string(total(counts.known)) + "\n" + setList;
  const std::string others =
      countLine("dark sets", total(counts.dark)) + list(counts.dark) +
      countLine("unknown properties", counts.unknownProperties) + listOfUnread(metadata, Unread::kUnknown) +
      countLine(kUnreadableText, counts.unreadableValues) + listOfUnread(metadata, Unread::kUnreadable) +
      countLine("misplaced properties", counts.misplacedProperties);
  return others.empty() ? text : text + "\n" + others;
}

}  // namespace Vantor::Tool

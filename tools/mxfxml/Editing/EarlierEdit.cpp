#include "Editing/EarlierEdit.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "CommandLine/EditOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/Comparison/PartitionComparison.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Types/AUID.h"

namespace Vantor::Tool {

namespace {

bool isOurs(const MetadataSet& identification) {
  const auto* product = identification.tryGet<Types::AUID>("ApplicationProductID");
  return product != nullptr && product->equals(Types::AUID(EditOptions::productUID().rawBuffer()));
}

/// The signatures of this program that the edited metadata do not have.
std::set<const MetadataSet*> signaturesIn(const PartitionMetadata& metadata, const PartitionMetadata& edited) {
  std::set<const MetadataSet*> found;
  for (const auto& set : metadata.findAll("Identification")) {
    const auto* instanceUID = set.instanceUID();
    const bool isNew = instanceUID != nullptr && edited.findByInstanceUID(*instanceUID).empty();
    if (isNew && isOurs(set)) found.insert(&set);
  }
  return found;
}

/// Whether signing made the difference.
bool isOfSignature(const PartitionDifference& difference, const std::set<const MetadataSet*>& signatures) {
  if (difference.property.empty()) return signatures.count(difference.place) != 0;
  const auto name = difference.property.substr(0, difference.property.find('['));
  return name == "LinkedGenerationID" || name == "FileLastModified" || name == "IdentificationList";
}

}  // namespace

MetadataSet* lastSignature(const PartitionMetadata& metadata) {
  const auto* preface = metadata.preface();
  const auto* list = preface == nullptr ? nullptr : preface->find("IdentificationList");
  std::vector<Types::UUID> targets;
  if (list != nullptr) list->appendTargets({}, targets);
  if (targets.empty()) return nullptr;
  const auto& last = metadata.findByInstanceUID(targets.back());
  const bool isSignature = last.size() == 1 && last.front()->name() == "Identification" && isOurs(*last.front());
  return isSignature ? last.front() : nullptr;
}

bool isEditThere(const Path& file, const std::optional<MXF::PartitionChoice>& choice, const PartitionMetadata& edited,
                 Pairing pairing) {
  DataIO::File::FileDataSource source(file);
  const auto partition = MXF::findPartition(source, choice.value_or(MXF::PartitionChoice()));
  const auto metadata = MXF::readHeaderMetadata(source, edited.partitionDictionary().dictionary(), partition, limits());
  const auto comparison = comparePartitions(*metadata, edited, pairing);
  if (comparison.isEqual()) return true;
  const auto signatures = signaturesIn(*metadata, edited);
  const auto& all = comparison.differences;
  return !signatures.empty() && std::all_of(all.begin(), all.end(), [&](const PartitionDifference& difference) {
    return isOfSignature(difference, signatures);
  });
}

}  // namespace Vantor::Tool

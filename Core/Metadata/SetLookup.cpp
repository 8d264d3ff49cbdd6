#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SetChoice.h"
#include "Core/Metadata/SetPath.h"

namespace Vantor {

FoundSets PartitionMetadata::findAll(std::string_view text) const {
  const SetPath path(text);
  return FoundSets(SetChoice(*this, path).sets());
}

MetadataSet* PartitionMetadata::tryFind(std::string_view text) const {
  const SetPath path(text);
  const SetChoice choice(*this, path);
  if (choice.sets().size() > 1) choice.raiseAmbiguous(SetChoice::Taken::kOne);
  return choice.sets().empty() ? nullptr : choice.sets().front();
}

MetadataSet& PartitionMetadata::find(std::string_view text) const {
  const SetPath path(text);
  const SetChoice choice(*this, path);
  if (choice.sets().empty()) choice.raiseNotFound();
  if (choice.sets().size() > 1) choice.raiseAmbiguous(SetChoice::Taken::kOne);
  return *choice.sets().front();
}

FoundSets PartitionMetadata::choose(std::string_view text, std::string_view property) const {
  const SetPath path(text);
  const SetChoice choice(*this, path, property);
  if (choice.sets().empty()) choice.raiseNotFound();
  if (choice.sets().size() > 1 && !path.isForAll()) choice.raiseAmbiguous(SetChoice::Taken::kSeveral);
  return FoundSets(choice.sets());
}

}  // namespace Vantor

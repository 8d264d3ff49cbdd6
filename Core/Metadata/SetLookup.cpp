#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SetChoice.h"
#include "Core/Metadata/SetPath.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

[[noreturn]] void raiseAmbiguous(std::string_view text, std::size_t count) {
  Exceptions::raise<Exceptions::InvalidFormat>("{0} is ambiguous: {1} sets; use {0}[1] {2} {0}[{1}]", text, count,
                                               count == 2 ? "or" : "to");
}

}  // namespace

FoundSets PartitionMetadata::findAll(std::string_view text) const {
  const SetPath path(text);
  return FoundSets(SetChoice(*this, path).sets());
}

MetadataSet* PartitionMetadata::tryFind(std::string_view text) const {
  const auto found = findAll(text);
  if (found.size() > 1) raiseAmbiguous(text, found.size());
  return found.empty() ? nullptr : &found[0];
}

MetadataSet& PartitionMetadata::find(std::string_view text) const {
  const SetPath path(text);
  const SetChoice choice(*this, path);
  if (choice.sets().empty()) choice.raiseNotFound();
  if (choice.sets().size() > 1) raiseAmbiguous(text, choice.sets().size());
  return *choice.sets().front();
}

FoundSets PartitionMetadata::choose(std::string_view text) const {
  const SetPath path(text);
  if (!path.isForAll()) return FoundSets({&find(text)});
  const SetChoice choice(*this, path);
  if (choice.sets().empty()) choice.raiseNotFound();
  return FoundSets(choice.sets());
}

}  // namespace Vantor

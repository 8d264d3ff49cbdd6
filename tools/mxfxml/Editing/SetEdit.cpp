#include "Editing/SetEdit.h"

#include <algorithm>
#include <map>
#include <utility>

#include "CommandLine/LimitOptions.h"
#include "Core/Platform/Strings.h"
#include "Editing/Uneditable.h"
#include "Input/OwnNames.h"
#include "Input/StoppedChange.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

/// A change, and one of the sets that it changes.
struct SetEdit::Place {
  const Change* change;
  MetadataSet* set;

  const MetaMetadata::MetaAttribute* attribute() const {
    const auto* definition = set->definition();
    return definition == nullptr ? nullptr : definition->findAttribute(change->property);
  }
};

namespace {

/// The second value would replace the first.
template <class Places>
void requireGivenOnce(const Places& places) {
  std::map<std::pair<const MetadataSet*, const MetaMetadata::MetaAttribute*>, const Change*> given;
  for (const auto& place : places) {
    const auto* attribute = place.attribute();
    if (attribute == nullptr) continue;
    const auto [at, isNew] = given.emplace(std::pair(place.set, attribute), place.change);
    if (!isNew) throw GivenTwice(*at->second, *place.change);
  }
}

std::optional<std::string> textOf(const MetadataSet& set, const std::string& property) {
  const auto* element = set.find(property);
  const bool hasValue = element != nullptr && element->isPresent() && element->wireValue() != nullptr;
  if (!hasValue) return std::nullopt;
  return Utils::wstringToString(set.text(property));
}

/// @return a remark when there is nothing to remove; else an empty text.
std::string make(const Change& change, MetadataSet& set) {
  if (change.given != nullptr) {
    change.given->assignTo(set);
  } else if (change.value) {
    set.set(change.property, Utils::stringToWstring(*change.value), TextFiles::kRead);
  } else if (!set.remove(change.property)) {
    return "the " + set.fullName() + " has no " + set.namesOf(change.property) + " to remove";
  }
  return "";
}

}  // namespace

std::unique_ptr<Edit::File> openForSetting(const EditTarget& target, bool isInPlace) {
  const auto dictionary = target.dictionary.load();
  if (isInPlace) {
    undoStoppedChange(target.file);
  } else {
    refuseStoppedChange(target.file);
  }
  const auto own = DictionaryOptions::partitionOf(target.file, target.partition.value_or(MXF::PartitionChoice()));
  refuseUneditable(target.file, target.isForced);
  return std::make_unique<Edit::File>(target.file,
                                      target.dictionary.usesOwn() ? target.dictionary.loadFor(own) : dictionary,
                                      target.partition, limits());
}

SetEdit::Result SetEdit::run(PartitionMetadata& metadata, const std::vector<Change>& changes) const {
  Result result;
  const auto places = placesOf(metadata, changes, result.failures);
  requireGivenOnce(places);
  const Change* failed = nullptr;
  for (const auto& place : places) {
    if (place.change == failed && !keepsGoing_) continue;  // one message will do
    Made made{place.change, textOf(*place.set, place.change->property), {}};
    const bool isMade = attempt(*place.change, result.failures, metadata, [&] {
      auto remark = make(*place.change, *place.set);
      if (!remark.empty()) result.remarks.push_back(std::move(remark));
    });
    if (!isMade) {
      failed = place.change;
      continue;
    }
    made.after = textOf(*place.set, place.change->property);
    result.made.push_back(std::move(made));
  }
  if (result.failures.empty()) checkGiven(places, result, metadata);
  return result;
}

/// What a property means may depend on another one, as a timecode does on its rate: so this runs after all changes.
void SetEdit::checkGiven(const std::vector<Place>& places, Result& result, const PartitionMetadata& metadata) const {
  for (const auto& place : places) {
    const auto* given = place.change->given.get();
    if (given == nullptr) continue;
    attempt(*place.change, result.failures, metadata, [&] {
      for (auto& warning : given->requireAgreement(*place.set)) result.warnings.insert(std::move(warning));
    });
  }
}

std::vector<SetEdit::Place> SetEdit::placesOf(const PartitionMetadata& metadata, const std::vector<Change>& changes,
                                              std::vector<Failure>& failures) const {
  std::vector<Place> places;
  for (const auto& change : changes) {
    attempt(change, failures, metadata, [&] {
      for (auto& set : find(metadata, change)) places.push_back({&change, &set});
    });
  }
  // A start timecode is read in the frame rate of its set, which may change with it: it comes last.
  std::stable_partition(places.begin(), places.end(), [](const Place& place) {
    const auto* attribute = place.attribute();
    return attribute == nullptr || !place.change->isAssignment() ||
           attribute->metaElement()->symbol() != "StartTimecode";
  });
  return places;
}

/// @return false when the action fails, which the failures keep.
template <class Action>
bool SetEdit::attempt(const Change& change, std::vector<Failure>& failures, const PartitionMetadata& metadata,
                      Action action) const {
  try {
    action();
    return true;
  } catch (const Exceptions::InvalidFormat& error) {
    const auto hint = hintOn(change, metadata);
    failures.push_back({&change, hint.empty() ? std::current_exception()
                                              : std::make_exception_ptr(CommandError(error.message() + hint))});
  } catch (const Exceptions::BaseException&) {
    failures.push_back({&change, std::current_exception()});
  } catch (const CommandError&) {
    failures.push_back({&change, std::current_exception()});
  } catch (const OtherFileError&) {
    failures.push_back({&change, std::current_exception()});
  }
  return false;
}

std::string SetEdit::hintOn(const Change& change, const PartitionMetadata& metadata) const {
  if (target_.dictionary.usesOwn()) return "";
  try {
    return ownNameHint(*metadata.partitionDictionary().dictionary(), ownDictionary(), change.set, change.property);
  } catch (const Exceptions::InvalidFormat&) {
    return "";  // no path; the message is about that
  }
}

/// Null where the file defines nothing. Read for the first change that cannot be made, and kept for the others.
const MetaMetadata::Dictionary* SetEdit::ownDictionary() const {
  const auto choice = target_.partition.value_or(MXF::PartitionChoice());
  if (!ownDictionary_) {
    ownDictionary_ = target_.dictionary.tryLoadOwn(DictionaryOptions::partitionOf(target_.file, choice));
  }
  return ownDictionary_->get();
}

FoundSets SetEdit::find(const PartitionMetadata& metadata, const Change& change) const {
  if (!start_) return metadata.choose(change.set, change.property);
  auto& chosen = metadata.find(*start_);
  for (auto& set : metadata.findAll(change.set)) {
    if (&set == &chosen) return FoundSets({&set});
  }
  throw CommandError("the set '" + *start_ + "' is no " + change.set);
}

}  // namespace Vantor::Tool

#include "Edit/MovedTimecodes.h"

#include "Core/Metadata/PropertyText.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "Edit/Differences.h"
#include "Edit/EditedSets.h"

namespace Vantor::Edit {

namespace {

constexpr const char* kProperty = "StartTimecode";

/// Empty where there is no such timecode.
std::string textInBase(const MetadataSet& set, const Element& element, const wstring& text) {
  const PropertyPlace place{&set, set.definitionOf(element)};
  try {
    return Utils::wstringToString(printProperty(place, *parseProperty(place, text)));
  } catch (const Exceptions::InvalidFormat&) {
    return "";
  }
}

bool hasValue(const Element* element) {
  return element != nullptr && element->isPresent() && element->wireValue() != nullptr;
}

}  // namespace

std::vector<MovedTimecode> movedTimecodesOf(const PartitionMetadata& before, PartitionMetadata& after) {
  std::vector<MovedTimecode> moved;
  for (const auto& set : editedSets(before, after)) {
    const MetadataSet& now = *set.after;
    const auto *old = set.before->find(kProperty), *element = now.find(kProperty);
    if (!hasValue(old) || !hasValue(element) || !areSame(old, element)) continue;
    const auto was = set.before->text(kProperty), is = now.text(kProperty);
    if (was == is) continue;
    moved.push_back({now.fullName(), kProperty, Utils::wstringToString(was), Utils::wstringToString(is),
                     textInBase(now, *element, was)});
  }
  return moved;
}

}  // namespace Vantor::Edit

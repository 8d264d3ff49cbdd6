#include "Core/Metadata/UnknownTags.h"

#include "Core/MetaMetadata/Dictionary.h"

namespace Vantor {

namespace {

/// Whether a static tag stands for a label without the primer of the file.
bool meansLabel(uint16 tag, const Types::UniversalLabel& label, const MetaMetadata::Dictionary& dictionary) {
  const auto* definition = dictionary.findElementByStaticTag(tag);
  return definition != nullptr && definition == dictionary.findElement(label);
}

}  // namespace

UnknownMark markOf(const Types::LocalTag& tag, const Types::UniversalLabel* label,
                   const MetaMetadata::Dictionary& dictionary) {
  UnknownMark mark;
  if (tag.isStaticLocalTag()) mark.tag = tag;
  const bool isImplied = mark.tag && label != nullptr && meansLabel(tag.value(), *label, dictionary);
  if (label != nullptr && !isImplied) mark.label = *label;
  return mark;
}

/// The file may have given a static tag another label than the registers. The label counts where the tag is taken.
Types::LocalTag UnknownTags::labelled(const Types::LocalTag& tag, const Types::UniversalLabel& label) {
  const auto* present = tags_.tryFind(tag.value());
  if (present == nullptr) tags_.addPrimerEntry({tag.value(), label.key()});
  return present == nullptr || *present == label ? tag : tags_.findOrGenerate(label);
}

Types::LocalTag UnknownTags::tagFor(const UnknownMark& mark) {
  if (mark.tag) return mark.label ? labelled(*mark.tag, *mark.label) : *mark.tag;
  if (!mark.label) return tags_.unlistedTag(unmarked_++);
  const auto* own = set_.findAttribute(*mark.label);
  return tags_.findOrGenerate(*mark.label, own == nullptr ? uint16{0} : own->staticLocalTag());
}

}  // namespace Vantor

#include "Core/Metadata/UnknownTags.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

namespace {

/// Whether a static tag stands for a label without the primer of the file.
bool meansLabel(uint16 tag, const Types::UniversalLabel& label, const MetaMetadata::Dictionary& dictionary) {
  const auto* definition = dictionary.findElementByStaticTag(tag);
  return definition != nullptr && definition == dictionary.findElement(label);
}

/// The file may have given a static tag another label than the registers. The label counts where the tag is taken.
Types::LocalTag labelledTag(const Types::LocalTag& tag, const Types::UniversalLabel& label, PartitionDictionary& tags) {
  const auto* present = tags.tryFind(tag.value());
  if (present == nullptr) tags.addPrimerEntry({tag.value(), label.key()});
  return present == nullptr || *present == label ? tag : tags.findOrGenerate(label);
}

/// The static tags of properties, of which the dictionary has a list for each set only.
class StaticTags {
 public:
  explicit StaticTags(const MetaMetadata::Dictionary& dictionary) : dictionary_(dictionary) {}

  /// 0 for none.
  uint16 of(const Types::UniversalLabel& label) {
    const auto* definition = dictionary_.findElement(label);
    if (definition == nullptr) return 0;
    if (tags_.empty()) readAll();
    const auto found = tags_.find(definition);
    return found == tags_.end() ? uint16{0} : found->second;
  }

 private:
  void readAll() {
    for (auto set = dictionary_.metaMetadataSetBegin(); set != dictionary_.metaMetadataSetEnd(); ++set) {
      for (const auto& attribute : (*set)->attributes()) {
        if (attribute.staticLocalTag() != 0) tags_.emplace(attribute.metaElement(), attribute.staticLocalTag());
      }
    }
  }

  const MetaMetadata::Dictionary& dictionary_;
  std::unordered_map<const MetaMetadata::MetaElement*, uint16> tags_;
};

void enterLabel(const UnknownMark& mark, StaticTags& staticTags, PartitionDictionary& tags) {
  if (mark.tag) {
    labelledTag(*mark.tag, *mark.label, tags);
  } else {
    tags.findOrGenerate(*mark.label, staticTags.of(*mark.label));
  }
}

/// Static tags first: they are the only ones that their properties may have.
bool comesBefore(const UnknownMark& left, const UnknownMark& right) {
  const auto rankOf = [](const UnknownMark& mark) {
    constexpr uint32 kNoTag = 0x10000;
    return std::pair(mark.tag ? uint32{mark.tag->value()} : kNoTag, mark.label->key());
  };
  return rankOf(left) < rankOf(right);
}

}  // namespace

void enterLabels(std::vector<UnknownMark> marks, PartitionDictionary& tags) {
  const auto hasNone = [](const UnknownMark& mark) { return !mark.label; };
  marks.erase(std::remove_if(marks.begin(), marks.end(), hasNone), marks.end());
  std::sort(marks.begin(), marks.end(), comesBefore);
  StaticTags staticTags(*tags.dictionary());
  try {
    for (const auto& mark : marks) enterLabel(mark, staticTags, tags);
  } catch (const Exceptions::InvalidLength&) {
    // Whoever reads the property that gets no tag refuses it.
  }
}

UnknownMark markOf(const Types::LocalTag& tag, const Types::UniversalLabel* label,
                   const MetaMetadata::Dictionary& dictionary) {
  UnknownMark mark;
  if (tag.isStaticLocalTag()) mark.tag = tag;
  const bool isImplied = mark.tag && label != nullptr && meansLabel(tag.value(), *label, dictionary);
  if (label != nullptr && !isImplied) mark.label = *label;
  return mark;
}

Types::LocalTag UnknownTags::tagFor(const UnknownMark& mark) {
  if (mark.tag) return mark.label ? labelledTag(*mark.tag, *mark.label, tags_) : *mark.tag;
  if (!mark.label) return tags_.unlistedTag(unmarked_++);
  const auto* own = set_.findAttribute(*mark.label);
  return tags_.findOrGenerate(*mark.label, own == nullptr ? uint16{0} : own->staticLocalTag());
}

}  // namespace Vantor

#include <map>
#include <set>
#include <unordered_map>

#include "Core/KLV/LocalSet.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/LocalTag.h"
#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about primer packs.
namespace Vantor::Edit {

namespace {

constexpr uint16 kFirstDynamicTag = 0x8000;

std::string tagText(uint16 tag) { return Utils::wstringToString(Types::LocalTag(tag).toString()); }
std::string labelText(const KLV::Key& key) { return textOf(Types::UniversalLabel(key)); }

const Templates::vector<KLV::PrimerEntry>& rowsOf(const Model& model) {
  return model.metadata().partitionDictionary().primerEntries();
}

/// Calls `visit(property, tag)` for the items of a set.
template <class Visit>
void forEachTag(const MetadataSet& set, Visit&& visit) {
  for (const auto* element : set.inWritingOrder()) {
    if (element->localTag() != 0) visit(symbolOf(*element), element->localTag());
  }
  const auto* dark = dynamic_cast<const DarkParsedGroup*>(&set);
  if (dark == nullptr) return;
  try {
    for (const auto& item :
         KLV::readLocalSet(KLV::localSetCoding(set.key()), dark->value().data(), dark->value().size())) {
      visit(tagText(item.tag), item.tag);
    }
  } catch (const Exceptions::BaseException&) {
    // What is no local set has no local tags.
  }
}

/// Reports the first property of each local tag that has no row. @param isDynamic  which tags to look at.
void checkTags(const Model& model, bool isDynamic, Report& report) {
  const auto& tags = model.metadata().partitionDictionary();
  std::set<uint16> missing;
  for (const auto* set : model.metadata().sets()) {
    forEachTag(*set, [&](const std::string& property, uint16 tag) {
      if ((tag >= kFirstDynamicTag) != isDynamic || tags.tryFind(tag) != nullptr) return;
      if (missing.insert(tag).second) report.add(*set, property, {tagText(tag)});
    });
  }
}

void checkDynamicTags(const Model& model, Report& report) { checkTags(model, true, report); }
void checkStaticTags(const Model& model, Report& report) { checkTags(model, false, report); }

/// Calls `visit(tag, label, first label)` for every row whose tag has a row before it.
template <class Visit>
void forEachSecondRow(const Model& model, Visit&& visit) {
  std::map<uint16, KLV::Key> labels;
  for (const auto& row : rowsOf(model)) {
    const auto [first, isFirst] = labels.emplace(row.tag, row.label);
    if (!isFirst) visit(row.tag, row.label, first->second);
  }
}

void checkDoubledRows(const Model& model, Report& report) {
  forEachSecondRow(model, [&](uint16 tag, const KLV::Key& label, const KLV::Key& first) {
    if (label == first) report.add({tagText(tag)});
  });
}

void checkContradictions(const Model& model, Report& report) {
  forEachSecondRow(model, [&](uint16 tag, const KLV::Key& label, const KLV::Key& first) {
    if (label != first) report.add({tagText(tag), labelText(first), labelText(label)});
  });
}

void checkDoubledLabels(const Model& model, Report& report) {
  std::map<KLV::Key, uint16> tags;
  for (const auto& row : rowsOf(model)) {
    const auto [first, isFirst] = tags.emplace(row.label, row.tag);
    if (!isFirst && first->second != row.tag)
      report.add({labelText(row.label), tagText(first->second), tagText(row.tag)});
  }
}

/// The properties that sets have under static tags.
class StaticTags {
 public:
  explicit StaticTags(const MetaMetadata::Dictionary& dictionary) {
    for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd(); ++set) {
      for (const auto& attribute : (*set)->attributes()) {
        labels_[attribute.staticLocalTag()].insert(withoutVersion(attribute.metaElement()->key()));
      }
    }
  }

  bool has(uint16 tag, const Types::UniversalLabel& label) const {
    const auto found = labels_.find(tag);
    return found != labels_.end() && found->second.count(withoutVersion(label)) != 0;
  }

 private:
  std::unordered_map<uint16, Labels> labels_;
};

/// Several properties may have one static tag, each in its own sets; few files have rows that get as far as these.
void checkMappings(const Model& model, Report& report) {
  std::set<uint16> reported;
  std::optional<StaticTags> tags;
  for (const auto& row : rowsOf(model)) {
    const auto* registered = model.dictionary().findElementByStaticTag(row.tag);
    const Types::UniversalLabel label(row.label);
    if (registered == nullptr || areSame(registered->key(), label)) continue;
    if (!tags) tags.emplace(model.dictionary());
    if (tags->has(row.tag, label) || !reported.insert(row.tag).second) continue;
    report.add({tagText(row.tag), textOf(label), registered->symbol()});
  }
}

}  // namespace

const RuleTable& primerRules() {
  static const RuleTable table = {
      {{"unlisted-dynamic-tag", Severity::kError, "the primer pack does not explain the local tag {tag}",
        "ST 377-1, Primer Pack"},
       checkDynamicTags},
      {{"unlisted-static-tag", Severity::kWarning, "the primer pack does not list the local tag {tag}",
        "ST 377-1, Primer Pack"},
       checkStaticTags},
      {{"doubled-primer-row", Severity::kWarning, "the primer pack lists the local tag {tag} twice",
        "ST 377-1, Primer Pack"},
       checkDoubledRows},
      {{"contradicting-primer-row", Severity::kError,
        "the primer pack gives the local tag {tag} to {label} and {label}", "ST 377-1, Primer Pack"},
       checkContradictions},
      {{"doubled-primer-label", Severity::kNote, "the primer pack gives {label} the local tags {tag} and {tag}",
        "ST 377-1, Primer Pack"},
       checkDoubledLabels},
      {{"static-tag-meaning", Severity::kError,
        "the primer pack gives the static local tag {tag} to {label}, the registers to {property}",
        "ST 377-1, Primer Pack; ST 395"},
       checkMappings}};
  return table;
}

}  // namespace Vantor::Edit

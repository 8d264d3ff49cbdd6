#include "Core/MetaMetadata/LabelIndex.h"

#include <algorithm>

#include "Core/MetaMetadata/LabelHash.h"
#include "Core/MetaMetadata/NameFolding.h"

namespace Vantor::MetaMetadata {

namespace {

/// A shorter part of a name is more likely a mistake.
constexpr std::size_t kFewestCharacters = 3;

uint32 hashOfLabel(const Types::UniversalLabel& key) {
  return hashOf(DataIO::readBigEndian<uint64>(key.rawBuffer()) * 31 +
                DataIO::readBigEndian<uint64>(key.rawBuffer() + 8));
}

/// Whether a word begins at a place: behind punctuation, at a capital behind a small letter or before one, and where
/// letters and digits meet.
bool beginsWord(std::string_view name, std::size_t at) {
  if (!isNameCharacter(name[at])) return false;
  if (at == 0 || !isNameCharacter(name[at - 1]) || isDigit(name[at]) != isDigit(name[at - 1])) return true;
  if (!isUpperCaseLetter(name[at])) return false;
  return !isUpperCaseLetter(name[at - 1]) || (at + 1 < name.size() && isLowerCaseLetter(name[at + 1]));
}

}  // namespace

LabelIndex::LabelIndex(const Labels& labels) {
  labels_.reserve(labels.size());
  byKey_.reserve(labels.size());
  bySymbol_.reserve(labels.size());
  for (const auto& label : labels) {
    if (find(label.key) != nullptr) continue;
    const auto place = static_cast<uint32>(labels_.size());
    byKey_.insert(hashOfLabel(label.key), place);
    bySymbol_.insert(hashOfText(label.symbol), place);
    labels_.push_back(label);
  }
}

const LabelNames* LabelIndex::find(const Types::UniversalLabel& key) const {
  const auto place = byKey_.find(hashOfLabel(key), [&](uint32 candidate) { return labels_[candidate].key == key; });
  return place == HashIndex::kNotFound ? nullptr : &labels_[place];
}

const LabelNames* LabelIndex::findSymbol(std::string_view symbol) const {
  const auto place =
      bySymbol_.find(hashOfText(symbol), [&](uint32 candidate) { return labels_[candidate].symbol == symbol; });
  return place == HashIndex::kNotFound ? nullptr : &labels_[place];
}

std::string_view LabelIndex::textAt(uint32 start) const {
  return std::string_view(folded_).substr(start, folded_.find('\n', start) - start);
}

void LabelIndex::addParts(std::string_view name, uint32 label) const {
  wholes_.push_back({static_cast<uint32>(folded_.size()), label});
  const auto folded = foldedName(name);
  uint32 at = wholes_.back().start;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (beginsWord(name, i)) parts_.push_back({at, label});
    at += isNameCharacter(name[i]) ? 1 : 0;
  }
  folded_ += folded + '\n';
}

void LabelIndex::indexParts() const {
  std::call_once(partsIndexed_, [this] {
    for (uint32 place = 0; place < labels_.size(); ++place) {
      addParts(labels_[place].symbol, place);
      addParts(labels_[place].name, place);
    }
    std::sort(parts_.begin(), parts_.end(),
              [this](const Part& left, const Part& right) { return textAt(left.start) < textAt(right.start); });
  });
}

LabelIndex::Places LabelIndex::placesBeginningWith(const std::string& folded) const {
  Places places;
  auto at = std::lower_bound(parts_.begin(), parts_.end(), folded, [this](const Part& part, const std::string& wanted) {
    return textAt(part.start) < wanted;
  });
  for (; at != parts_.end() && textAt(at->start).substr(0, folded.size()) == folded; ++at) places.push_back(at->label);
  return places;
}

LabelIndex::Places LabelIndex::placesWith(const std::string& folded) const {
  Places places;
  for (const auto& whole : wholes_) {
    if (textAt(whole.start).find(folded) != std::string_view::npos) places.push_back(whole.label);
  }
  return places;
}

std::vector<const LabelNames*> LabelIndex::findNamed(std::string_view text, const Filter& mayBe) const {
  const auto folded = foldedName(text);
  if (folded.empty()) return {};
  indexParts();
  const auto chosen = [&](Places places, auto&& matches) {
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    std::vector<const LabelNames*> labels;
    for (const uint32 place : places) {
      const auto& label = labels_[place];
      if (mayBe(label.key) && matches(label)) labels.push_back(&label);
    }
    return labels;
  };
  const auto begun = placesBeginningWith(folded);
  auto found = chosen(begun, [&](const LabelNames& label) { return foldedName(label.symbol) == folded; });
  if (found.empty()) found = chosen(begun, [&](const LabelNames& label) { return foldedName(label.name) == folded; });
  if (!found.empty() || folded.size() < kFewestCharacters) return found;
  found = chosen(begun, [](const LabelNames&) { return true; });
  if (found.empty()) found = chosen(placesWith(folded), [](const LabelNames&) { return true; });
  return found;
}

}  // namespace Vantor::MetaMetadata

#include "Core/MetaMetadata/LabelIndex.h"

#include <algorithm>
#include <iterator>

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
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!isNameCharacter(name[i])) continue;
    const bool begins = beginsWord(name, i);
    if (begins) parts_.push_back({static_cast<uint32>(folded_.size()), label});
    wordBegins_.push_back(begins);
    folded_ += foldedName(name.substr(i, 1));
  }
  wordBegins_.push_back(true);
  folded_ += '\n';
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

LabelIndex::Places LabelIndex::placesOfWords(const std::string& folded) const {
  Places places;
  auto at = std::lower_bound(parts_.begin(), parts_.end(), folded, [this](const Part& part, const std::string& wanted) {
    return textAt(part.start) < wanted;
  });
  for (; at != parts_.end() && textAt(at->start).substr(0, folded.size()) == folded; ++at) {
    if (wordBegins_[at->start + folded.size()]) places.push_back(at->label);
  }
  return places;
}

std::vector<const LabelNames*> LabelIndex::labelsAt(Places places, const Filter& mayBe) const {
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  std::vector<const LabelNames*> labels;
  for (const uint32 place : places) {
    if (mayBe(labels_[place].key)) labels.push_back(&labels_[place]);
  }
  return labels;
}

std::vector<const LabelNames*> LabelIndex::findContaining(std::string_view text, const Filter& mayBe) const {
  const auto folded = foldedName(text);
  if (folded.empty()) return {};
  indexParts();
  Places places;
  for (const auto& whole : wholes_) {
    if (textAt(whole.start).find(folded) != std::string_view::npos) places.push_back(whole.label);
  }
  return labelsAt(std::move(places), mayBe);
}

std::vector<const LabelNames*> LabelIndex::findNamed(std::string_view text, const Filter& mayBe) const {
  const auto folded = foldedName(text);
  if (folded.empty()) return {};
  indexParts();
  const auto parts = labelsAt(placesOfWords(folded), mayBe);
  const auto whole = [&](std::string_view LabelNames::*name) {
    std::vector<const LabelNames*> found;
    std::copy_if(parts.begin(), parts.end(), std::back_inserter(found),
                 [&](const LabelNames* label) { return foldedName(label->*name) == folded; });
    return found;
  };
  if (auto found = whole(&LabelNames::symbol); !found.empty()) return found;
  if (auto found = whole(&LabelNames::name); !found.empty()) return found;
  return folded.size() < kFewestCharacters ? std::vector<const LabelNames*>() : parts;
}

}  // namespace Vantor::MetaMetadata

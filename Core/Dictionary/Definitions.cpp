#include "Core/Dictionary/Definitions.h"

#include <utf8.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/Dictionary/DefinitionCheck.h"
#include "Core/Dictionary/DefinitionIndex.h"
#include "Core/Dictionary/DefinitionReader.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

namespace {

using MetaMetadata::DictionaryBuilder;
using MetaMetadata::ExtensionAttributes;

/// The registers of SMPTE, labels included, take one megabyte.
constexpr uint64 kLargestFile = uint64{64} << 20;

std::string textOfFile(const Path& path) {
  DataIO::File::FileDataSource file(path);
  if (file.size() > kLargestFile) {
    Exceptions::raise<Exceptions::InvalidFormat>(
        "{}: a dictionary file has {} octets at most; this is another file, or one to be split", path.u8string(),
        kLargestFile);
  }
  std::string text(file.size(), '\0');
  file.read(reinterpret_cast<uint8*>(text.data()), text.size());
  return text;
}

template <class Definition>
const Definition* at(const Templates::vector<Definition>& list, uint32 place) {
  return place == MetaMetadata::HashIndex::kNotFound ? nullptr : &list[place];
}

wstring wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

template <class Definition>
ExtensionAttributes extensionsOf(const Definition& definition, const ChosenNamespace& chosen) {
  ExtensionAttributes extensions;
  if (definition.xmlName != definition.symbol) extensions.set(MetaMetadata::kXMLTagName, wide(definition.xmlName));
  if (definition.chosenNamespace != 0) {
    extensions.set(MetaMetadata::kXMLNamespaceURI, wide(chosen.uri));
    extensions.set(MetaMetadata::kXMLDefaultPrefix, wide(chosen.prefix));
  }
  return extensions;
}

}  // namespace

Definitions::Definitions() : namespaces_(1), index_(std::make_unique<Index>()) {}
Definitions::~Definitions() = default;
Definitions::Definitions(Definitions&&) noexcept = default;
Definitions& Definitions::operator=(Definitions&&) noexcept = default;

void Definitions::readFile(const Path& path) { readText(textOfFile(path), path.u8string()); }

void Definitions::readText(std::string text, std::string name, Overlay overlay) {
  const uint32 source = addSource(std::move(name));
  std::string_view kept = keep(std::move(text));
  const auto invalid = utf8::find_invalid(kept.begin(), kept.end());
  const auto nul = kept.find('\0');
  const auto bad = std::min(nul, static_cast<std::size_t>(invalid - kept.begin()));
  if (bad < kept.size()) {
    const auto line = static_cast<uint32>(1 + std::count(kept.begin(), kept.begin() + bad, '\n'));
    refuse({source, line}, "this is no text in UTF-8", "save the file in that encoding");
  }
  if (utf8::starts_with_bom(kept.begin(), kept.end())) kept.remove_prefix(3);
  DefinitionReader(*this, overlay, source).read(kept);
}

void Definitions::readTrusted(std::string_view text, std::string name) {
  const bool wasChecked = isChecked_;
  reserve(text.size());
  DefinitionReader(*this, Overlay::kRefuse, addSource(std::move(name))).read(text);
  isChecked_ = wasChecked;
}

void Definitions::reserve(std::size_t textSize) {
  constexpr std::size_t kTypicalRow = 90;  // octets, in files whose columns are aligned
  const std::size_t rows = textSize / kTypicalRow;
  properties_.reserve(properties_.size() + rows);
  sets_.reserve(sets_.size() + rows / 6);  // a set has six properties of its own, more or less
  index_->reserve(properties_.capacity(), sets_.capacity());
}

uint32 Definitions::addSource(std::string name) {
  sources_.push_back(std::move(name));
  registerSources_.push_back(false);
  return static_cast<uint32>(sources_.size() - 1);
}

uint32 Definitions::addRegister(std::string name) {
  const uint32 place = addSource(std::move(name));
  registerSources_[place] = true;
  return place;
}

void Definitions::check() {
  if (isChecked_) return;
  DefinitionCheck(*this).run();
  isChecked_ = true;
}

SharedPtr<const MetaMetadata::Dictionary> Definitions::makeDictionary(MetaMetadata::Vocabulary vocabulary) {
  check();
  DictionaryBuilder builder(vocabulary);
  builder.reserve(properties_.size(), sets_.size());
  for (const auto& property : properties_) {
    builder.addElement(property.key, property.symbol, property.type.dataType(),
                       extensionsOf(property, namespaces_[property.chosenNamespace]));
  }
  for (const auto& set : sets_) {
    builder.addSet(set.key, set.symbol, set.parent, set.isConcrete,
                   extensionsOf(set, namespaces_[set.chosenNamespace]));
    for (const auto& use : set.properties) {
      builder.addAttribute(properties_[use.property].key, use.staticLocalTag, use.requiredStatus);
    }
  }
  return builder.build();
}

const SetDefinition* Definitions::findSet(const KLV::Key& key) const { return at(sets_, index_->findSet(*this, key)); }
const SetDefinition* Definitions::findSet(std::string_view symbol) const {
  return at(sets_, index_->findSet(*this, symbol));
}
const PropertyDefinition* Definitions::findProperty(const Types::UniversalLabel& key) const {
  return at(properties_, index_->findProperty(*this, key));
}
const EnumerationDefinition* Definitions::findEnumeration(std::string_view name) const {
  return at(enumerations_, index_->findEnumeration(*this, name));
}
const LabelDefinition* Definitions::findLabel(const Types::UniversalLabel& key) const {
  return at(labels_, index_->findLabel(*this, key));
}
const LabelDefinition* Definitions::findLabel(std::string_view symbol) const {
  return at(labels_, index_->findLabel(*this, symbol));
}

std::string_view Definitions::keep(std::string text) {
  texts_.push_back(std::make_unique<const std::string>(std::move(text)));
  return *texts_.back();
}

// Hosts add definitions with origins of their own making, too.
std::string Definitions::sourceOf(const Origin& origin) const {
  return origin.source < sources_.size() ? sources_[origin.source] : "unknown source";
}

std::string Definitions::where(const Origin& origin) const {
  return sourceOf(origin) + ":" + std::to_string(origin.line);
}

std::string Definitions::adviceFor(const Origin& origin, const char* advice) const {
  const bool isRegister = origin.source < registerSources_.size() && registerSources_[origin.source];
  if (isRegister) return "; the register cannot be used as it is, take another edition";
  return advice == nullptr ? std::string() : std::string("; ") + advice;
}

}  // namespace Vantor

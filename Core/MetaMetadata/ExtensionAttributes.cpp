#include "Core/MetaMetadata/ExtensionAttributes.h"

#include <utility>

#include "Core/Platform/Strings.h"

namespace Vantor::MetaMetadata {

const wstring& ExtensionAttributes::get(std::u16string_view name) const {
  static const wstring none;
  const wstring* value = find(name);
  return value == nullptr ? none : *value;
}

const wstring* ExtensionAttributes::find(std::u16string_view name) const {
  if (tagName_ && name == kTagName) return &*tagName_;
  for (const auto& entry : entries_) {
    if (std::u16string_view(entry.name) == name) return &entry.value;
  }
  return shared_ == nullptr ? nullptr : shared_->find(name);
}

bool ExtensionAttributes::isTagName(std::string_view name) const {
  const wstring& tagName = get(kTagName);
  return !tagName.empty() && Utils::wstringToString(tagName) == name;
}

ExtensionAttributes& ExtensionAttributes::set(std::u16string_view name, wstring value) {
  if (name == kTagName) {
    tagName_ = std::move(value);
    return *this;
  }
  for (auto& entry : entries_) {
    if (std::u16string_view(entry.name) == name) {
      entry.value = std::move(value);
      return *this;
    }
  }
  entries_.push_back({wstring(name), std::move(value)});
  return *this;
}

void ExtensionAttributes::setAll(const ExtensionAttributes& others) {
  if (others.tagName_) tagName_ = others.tagName_;
  for (const auto& entry : others.entries_) set(entry.name, entry.value);
}

}  // namespace Vantor::MetaMetadata

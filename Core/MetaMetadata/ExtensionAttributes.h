#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::MetaMetadata {

/// The extension attributes that hold the vocabulary of a dictionary.
inline constexpr std::u16string_view kTagName = u"XMLTagName";
inline constexpr std::u16string_view kNamespaceURI = u"XMLNamespaceURI";
inline constexpr std::u16string_view kDefaultPrefix = u"XMLDefaultPrefix";
/// The decimal place of a property among the properties of its set.
inline constexpr std::u16string_view kSchemaIndex = u"SchemaIndex";

/// Named texts that a definition carries beyond its row in the registers, such as its tag name.
/// Names are compared code unit by code unit. Names that are not set here are looked up in the shared base, if any.
/// A value: copies are independent. Reading from several threads is safe, setting is not.
class ExtensionAttributes {
 public:
  ExtensionAttributes() = default;
  /// @param shared  what many definitions have in common; kept alive by this object.
  explicit ExtensionAttributes(SharedPtr<const ExtensionAttributes> shared) : shared_(std::move(shared)) {}

  /// The value, or an empty text when the name is set nowhere; valid until the next `set` and as long as this object.
  const wstring& get(std::u16string_view name) const;
  /// Whether the name is set, even to an empty text.
  bool has(std::u16string_view name) const { return find(name) != nullptr; }
  /// Whether the tag name is this name; false when it is empty.
  bool isTagName(std::string_view name) const;
  bool isEmpty() const { return !tagName_ && entries_.empty() && shared_ == nullptr; }

  /// Sets or replaces a value; hides the shared base's value of that name. Returns this object, for chains.
  ExtensionAttributes& set(std::u16string_view name, wstring value);
  /// Sets every name that `others` sets itself.
  void setAll(const ExtensionAttributes& others);

 private:
  struct Entry {
    wstring name;
    wstring value;
  };
  const wstring* find(std::u16string_view name) const;

  // Kept apart: thousands of definitions have a tag name and no other entry.
  std::optional<wstring> tagName_;
  Templates::vector<Entry> entries_;
  SharedPtr<const ExtensionAttributes> shared_;
};

}  // namespace Vantor::MetaMetadata

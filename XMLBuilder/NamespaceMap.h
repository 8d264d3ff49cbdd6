#pragma once

#include <functional>
#include <map>
#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::XMLBuilder {

/// The namespaces that the elements of one document use, each with the prefix that the root declares for it.
/// Ordered by URI, code unit by code unit. A URI keeps the first prefix that it is entered with.
class NamespaceMap {
 public:
  using Entries = std::map<wstring, wstring, std::less<>>;

  /// Starts with "urn:SMPTE:S377M", the namespace of the root.
  NamespaceMap();

  /// Enters a namespace unless its URI is there already, whatever the prefix.
  void insert(std::u16string_view uri, std::u16string_view prefix);
  /// Enters a namespace unless its prefix is taken, even by another URI.
  void insertIfUnbound(std::u16string_view uri, std::u16string_view prefix);

  /// The URI of the first entry with a prefix, in the order of the URIs; an empty text when no entry has it.
  const wstring& uriOf(std::u16string_view prefix) const;

  Entries::const_iterator begin() const { return entries_.begin(); }
  Entries::const_iterator end() const { return entries_.end(); }
  std::size_t size() const { return entries_.size(); }

 private:
  Entries::const_iterator find(std::u16string_view prefix) const;

  Entries entries_;
};

}  // namespace Vantor::XMLBuilder

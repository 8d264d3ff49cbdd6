#include "XMLBuilder/NamespaceMap.h"

#include <algorithm>

#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

NamespaceMap::NamespaceMap() { insert(Vocabulary::kRootURI, Vocabulary::kRootPrefix); }

void NamespaceMap::insert(std::u16string_view uri, std::u16string_view prefix) {
  if (entries_.find(uri) == entries_.end()) entries_.emplace(uri, prefix);
}

void NamespaceMap::insertIfUnbound(std::u16string_view uri, std::u16string_view prefix) {
  if (find(prefix) == end()) insert(uri, prefix);
}

const wstring& NamespaceMap::uriOf(std::u16string_view prefix) const {
  static const wstring none;
  const auto found = find(prefix);
  return found == end() ? none : found->first;
}

NamespaceMap::Entries::const_iterator NamespaceMap::find(std::u16string_view prefix) const {
  return std::find_if(begin(), end(), [prefix](const auto& entry) { return entry.second == prefix; });
}

}  // namespace Vantor::XMLBuilder

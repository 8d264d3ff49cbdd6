#include "XMLUtils/NamespaceScopes.h"

namespace Vantor::XMLUtils {

NamespaceScopes::NamespaceScopes() {
  bind(u"xml", u"http://www.w3.org/XML/1998/namespace");
  bind(u"xmlns", u"http://www.w3.org/2000/xmlns/");
}

void NamespaceScopes::leave(std::size_t place) {
  for (; bindings_.size() > place; bindings_.pop_back()) {
    innermost_[bindings_.back().prefix] = bindings_.back().hidden;
  }
}

void NamespaceScopes::bind(std::u16string_view prefix, std::u16string_view uri) {
  auto& index = innermost_[prefix];
  bindings_.push_back({prefix, uri, index});
  index = bindings_.size();
}

std::u16string_view NamespaceScopes::uri(std::u16string_view prefix) const {
  const auto index = innermost(prefix);
  return index == 0 ? std::u16string_view() : bindings_[index - 1].uri;
}

bool NamespaceScopes::isBoundSince(std::size_t place, std::u16string_view prefix) const {
  return innermost(prefix) > place;
}

std::u16string_view NamespaceScopes::prefixFor(std::u16string_view uri) const {
  for (std::size_t i = bindings_.size(); i > 0; --i) {
    const auto& binding = bindings_[i - 1];
    if (binding.uri == uri && !binding.prefix.empty() && innermost(binding.prefix) == i) return binding.prefix;
  }
  return {};
}

std::size_t NamespaceScopes::innermost(std::u16string_view prefix) const {
  const auto found = innermost_.find(prefix);
  return found == innermost_.end() ? 0 : found->second;
}

}  // namespace Vantor::XMLUtils

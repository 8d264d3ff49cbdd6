#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// Which prefix stands for which namespace at the place where a writer is.
///
/// A stack of declarations, with the innermost one of each prefix found in constant time however many are in scope.
/// Prefixes and URIs are views of NUL-terminated text that outlives the object; the empty prefix is the default
/// namespace, the empty URI no namespace.
class NamespaceScopes {
 public:
  /// Knows `xml` and `xmlns`, as Namespaces in XML 1.0 fixes them.
  NamespaceScopes();

  /// The place to return to with `leave`.
  std::size_t enter() const noexcept { return bindings_.size(); }
  void leave(std::size_t place);

  /// Declares a prefix, over any declaration that it already has.
  void bind(std::u16string_view prefix, std::u16string_view uri);

  /// The namespace of a prefix; empty when it has none.
  std::u16string_view uri(std::u16string_view prefix) const;
  /// Whether the prefix was declared after `place`.
  bool isBoundSince(std::size_t place, std::u16string_view prefix) const;
  /// A prefix, not the empty one, that stands for the namespace; empty when there is none. Searches all declarations.
  std::u16string_view prefixFor(std::u16string_view uri) const;

 private:
  struct Binding {
    std::u16string_view prefix;
    std::u16string_view uri;
    std::size_t hidden;  // as in innermost_
  };

  std::size_t innermost(std::u16string_view prefix) const;

  std::vector<Binding> bindings_;
  std::unordered_map<std::u16string_view, std::size_t> innermost_;  // index into bindings_ + 1; 0: none
};

}  // namespace Vantor::XMLUtils

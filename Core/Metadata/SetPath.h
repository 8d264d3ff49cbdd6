#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Platform/Types.h"

namespace Vantor {

/// A text that chooses sets of a partition, taken apart:
///
///     path      = step *( "/" step )
///     step      = name *( "[" selector "]" )
///     selector  = index / "*" / property "=" value
///
/// An index counts from 1, or from -1 for the last. A value ends at the bracket that closes its selector, and may have
/// pairs of brackets itself; one in double quotes may have anything, as `Types::quotedText` writes it. Blanks around
/// names, indexes, properties and values do not matter; neither does a name in parentheses behind a name or a selector,
/// as messages have it: "Timecode[1] (TimecodeComponent)".
class SetPath {
 public:
  struct Selector {
    enum class Kind : uint8 { kIndex, kAll, kCondition };
    Kind kind = Kind::kAll;
    int64 index = 0;       ///< of kIndex; never 0
    std::string property;  ///< of kCondition
    std::string value;     ///< of kCondition; UTF-8, in the quotes that it has
    std::size_t end = 0;   ///< where the selector ends in the text of the path
  };
  struct Step {
    std::string name;
    std::vector<Selector> selectors;
    std::size_t begin = 0, nameEnd = 0;  ///< where the step begins in the text of the path, and where its name ends
  };

  /// @throws InvalidFormat naming what is no index, no step or not closed.
  explicit SetPath(std::string_view text);

  const std::string& text() const { return text_; }
  const std::vector<Step>& steps() const { return steps_; }  ///< one at least
  /// Whether the path ends in "[*]": all sets are meant.
  bool isForAll() const;

 private:
  Step readStep(std::size_t& at) const;
  Selector readSelector(std::size_t open, std::size_t close) const;
  Selector readCondition(std::size_t open, std::size_t close) const;

  std::string text_;
  std::vector<Step> steps_;
};

/// "Set.Property=VALUE" or "Set.Property" taken apart: points and equals signs in the brackets of a path are its own,
/// and an identifier may have points, too.
struct PropertyPath {
  /// @throws InvalidFormat for a bracket that is not closed.
  explicit PropertyPath(std::string_view text);

  std::string choice;    ///< everything before the value
  std::string set;       ///< as `SetPath` takes it; empty where there is none
  std::string property;  ///< without a name in parentheses behind it; empty where there is none
  std::optional<std::string> value;
};

}  // namespace Vantor

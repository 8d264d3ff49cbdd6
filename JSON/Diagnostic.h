#pragma once

#include <string>
#include <vector>

#include "JSON/Place.h"
#include "JSON/Value.h"

namespace Vantor::JSON {

/// Content of a document that was read, but may not be what its author means; `describe` renders it in English.
struct Diagnostic {
  /// The comment of each kind lists its arguments.
  enum class Kind {
    kUnknownLabel,           ///< label, value: the dictionary knows no such label; the value beside it is used
    kMissingInstanceUID,     ///< no argument: no reference can lead to the set
    kMoreWithoutInstanceUID  ///< number, number in the file: of sets of one kind without InstanceUID; which of them the
                             ///< file lacks is not known
  };
  Kind kind;
  std::vector<std::string> arguments = {};
  Place place = {};
  std::string set = {};  ///< the symbol, with the InstanceUID when it has one
};
using Diagnostics = std::vector<Diagnostic>;

/// One line, with the place in front.
std::string describe(const Diagnostic& diagnostic);
/// The place as messages have it: "line 12: /sets/3: Preface AD.AB...: ". @param set  may be empty.
std::string describe(const Place& place, const std::string& set);

}  // namespace Vantor::JSON

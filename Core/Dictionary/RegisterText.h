#pragma once

#include <string>

#include "Core/Dictionary/Registers.h"
#include "Core/Platform/Containers.h"

namespace Vantor {

/// A text of the dictionary format and where its lines came from.
struct DictionaryText {
  std::string text;
  /// [n] is of the text's line n + 1; `source` is the number of a `RegisterKind`. Lines that no entry made have line 0.
  Templates::vector<Origin> origins;
};

/// The sets of header metadata, their properties and the enumerations that these use.
///
/// A set is taken when its KLV syntax allows 2-byte tags and lengths, unless it lives elsewhere than in header
/// metadata, and so are the sets that it inherits from. What no set uses is not looked at: elements and types may be
/// wrong then.
/// @throws Exceptions::InvalidFormat when one of Groups, Elements and Types was not read, or when their entries do not
///         fit together; the message begins with the file and, where an entry is at fault, its line.
DictionaryText definitionsText(const Registers& registers);

/// The labels, by key. A label without a name has its symbol for one.
/// @throws Exceptions::InvalidFormat when Labels was not read, or an entry is not what it should be.
DictionaryText labelsText(const Registers& registers);

}  // namespace Vantor

#pragma once

#include <map>
#include <string>
#include <string_view>

#include "Core/Platform/Strings.h"
#include "Core/Types/UUID.h"

namespace Vantor::XML2Partition {

/// The sets of a document that have a name, "new:" and any text, in place of an InstanceUID. Each name gets a random
/// InstanceUID, wherever the document has it. Lives for one import.
class NewSets {
 public:
  /// Whether the text of an InstanceUID, or of a reference, is such a name.
  static bool isName(std::u16string_view text);

  /// The InstanceUID of the set that a line names. @param kind  the symbol of the set.
  /// @throws Clash naming both sets and lines when another set has the name.
  const Types::UUID& define(std::u16string_view name, uint64 line, const std::string& kind);
  /// The InstanceUID of the set that a line refers to, which may come later.
  const Types::UUID& refer(std::u16string_view name, uint64 line);
  /// Notes a name of an element that stands for no set, so that references to it get the better reason.
  void noteUnknown(std::u16string_view name, uint64 line, const std::string& element);

  /// @throws InvalidFormat for the first line with a reference to a name that no set has.
  void requireAllDefined() const;

 private:
  struct Named {
    Types::UUID instanceUID;
    bool isSet = false;
    std::string kind = {};  // of the set, or of the element that is none; empty for neither
    uint64 line = 0;        // of this
    uint64 reference = 0;   // the first line that refers to it; 0 for none
  };
  using Names = std::map<wstring, Named>;

  Names::value_type& at(std::u16string_view name);

  Names names_;
};

}  // namespace Vantor::XML2Partition

#include "CommandLine/PropertyPaths.h"

#include "Core/Platform/Strings.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

PropertyPath parsePropertyPath(const std::string& text, bool hasValue) {
  const auto valid = Utils::wstringToString(Utils::stringToWstring(text));
  if (valid != text) throw UsageError("'" + valid + "' is no text in UTF-8");
  PropertyPath path(text);
  if (path.set.empty() || path.property.empty() || hasValue != path.value.has_value()) {
    const std::string value = hasValue ? "=VALUE" : "";
    throw UsageError("'" + text + "' is no " + (hasValue ? "assignment" : "property") + "; write Set.Property" + value +
                     ", or Set[2].Property" + value + " for the second set of a name");
  }
  return path;
}

}  // namespace Vantor::Tool

#include "Editing/EditedText.h"

#include <algorithm>
#include <charconv>

#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

/// As parsers of XML and JSON begin their messages. No structure beside the text has it.
constexpr std::string_view kLine = "line ";

uint64 lineIn(std::string_view text) {
  const auto at = text.find(kLine);
  if (at == text.npos) return 0;
  uint64 line = 0;
  std::from_chars(text.data() + at + kLine.size(), text.data() + text.size(), line);
  return line;
}

/// Where the text gives a set its InstanceUID, in XML or JSON.
std::size_t offsetOf(const std::string& instanceUID, const std::string& text) {
  return std::min(text.find("nstanceUID=\"" + instanceUID), text.find("nstanceUID\": \"" + instanceUID));
}

}  // namespace

void EditedText::open() {
  try {
    editor_.edit(path(), line_);
  } catch (...) {
    if (hasChanged()) keep();
    throw;
  }
}

void EditedText::keep() {
  file_.keep();
  printMessage("the edited document is kept: " + Platform::pathToUTF8(path()));
}

uint64 EditedText::lineOf(const Edit::Finding& finding) const {
  const auto space = finding.set.rfind(' ');
  if (space == std::string::npos) return 0;
  const auto text = file_.bytes();
  const auto set = offsetOf(finding.set.substr(space + 1), text);
  if (set == std::string::npos) return 0;
  const auto property = finding.property.empty() ? set : std::min(text.find(finding.property, set), text.size());
  const auto place = property == text.size() ? set : property;
  return 1 + static_cast<uint64>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

uint64 EditedText::lineOfCurrentException() const {
  const auto text = currentExceptionText(), start = Platform::pathToUTF8(path()) + ": ";
  const bool isNamed = text.compare(0, start.size(), start) == 0;
  return lineIn(std::string_view(text).substr(isNamed ? start.size() : 0));
}

}  // namespace Vantor::Tool

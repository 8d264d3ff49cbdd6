#include "Editing/EditedText.h"

#include <algorithm>

#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

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
  if (finding.instanceUID.empty()) return 0;
  const auto text = file_.bytes();
  const auto set = offsetOf(finding.instanceUID, text);
  if (set == std::string::npos) return 0;
  const auto property = finding.property.empty() ? set : std::min(text.find(finding.property, set), text.size());
  const auto place = property == text.size() ? set : property;
  return 1 + static_cast<uint64>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n'));
}

}  // namespace Vantor::Tool

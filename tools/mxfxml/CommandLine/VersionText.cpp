#include "CommandLine/VersionText.h"

#include <xercesc/util/XercesVersion.hpp>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

std::string versionText() {
  const std::string year = std::to_string(kRegistersYear);
  std::string text = std::string(kProgramName) + " " + VANTOR_VERSION;
  text += std::string("\nSMPTE metadata registers ") + kRegistersEdition + " of " + year;
  text += std::string("\nXerces-C++ ") + XERCES_FULLVERSIONDOT;
  const std::string xqilla = VANTOR_XQILLA;  // its version, or "without"
  text += xqilla == "without" ? "\nwithout XQilla" : "\nXQilla, library version " + xqilla;
  return text;
}

}  // namespace Vantor::Tool

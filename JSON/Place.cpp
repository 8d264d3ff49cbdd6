#include "JSON/Place.h"

namespace Vantor::JSON {

namespace {

std::string escaped(std::string_view step) {
  std::string text;
  for (const char character : step) {
    if (character == '~') {
      text += "~0";
    } else if (character == '/') {
      text += "~1";
    } else {
      text += character;
    }
  }
  return text;
}

}  // namespace

void Place::isWithin(std::string_view step, uint32 partLine) {
  pointer = "/" + escaped(step) + pointer;
  if (line == 0) line = partLine;
}

}  // namespace Vantor::JSON

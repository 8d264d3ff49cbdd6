#include "JSON/Diagnostic.h"

namespace Vantor::JSON {

namespace {

std::string sentenceOf(const Diagnostic& diagnostic) {
  const auto& arguments = diagnostic.arguments;
  switch (diagnostic.kind) {
    case Diagnostic::Kind::kUnknownLabel:
      return "unknown label '" + arguments[0] + "'; using the value, " + arguments[1];
    case Diagnostic::Kind::kMissingInstanceUID:
      return "the set has no \"instanceUID\", so that no reference can lead to it";
    case Diagnostic::Kind::kMoreWithoutInstanceUID:
      return arguments[0] + " sets have no \"instanceUID\", in the file only " + arguments[1] +
             "; no reference can lead to such sets";
  }
  return "";
}

}  // namespace

std::string describe(const Place& place, const std::string& set) {
  const auto line = place.line == 0 ? "" : "line " + std::to_string(place.line) + ": ";
  return line + place.pointer + ": " + (set.empty() ? "" : set + ": ");
}

std::string describe(const Diagnostic& diagnostic) {
  return describe(diagnostic.place, diagnostic.set) + sentenceOf(diagnostic);
}

}  // namespace Vantor::JSON

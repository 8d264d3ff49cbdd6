#include "XMLBuilder/DiagnosticText.h"

#include "Core/Platform/Raise.h"

namespace Vantor::LosslessXML {

namespace {

using Kind = Diagnostic::Kind;

/// The format of a kind's arguments.
struct Sentence {
  const char* format = "";
  int namespaceAt = -1;  ///< which argument is a namespace, from 0
};

Sentence sentenceOf(Kind kind) {
  switch (kind) {
    case Kind::kUnknownRoot:
      return {"the root element is {} in {}, not MetadataSets in the namespace urn:SMPTE:S377M", 1};
    case Kind::kUnknownSet:
    case Kind::kSetOfOtherNamespace:
      return {"there is no set {} in {}", 1};
    case Kind::kUnknownProperty:
      return {"the set has no property {} in {}; the element is not read", 1};
    case Kind::kUnknownExtension:
      return {"there is no property {} in {}", 1};
    case Kind::kUnknownAttribute:
      return {"the set has no attribute {} in {}; it is not read", 1};
    case Kind::kStrayAttribute:
      return {"{} has no attribute {} in {}; it is not read", 2};
    case Kind::kStrayText:
      return {"{} is text where only elements are expected; it is not read"};
    case Kind::kSecondElement:
      return {"{} stands here a second time; only the first is read"};
    case Kind::kSecondProperty:
      return {"the set already has the property {}; this one is not read"};
    case Kind::kSecondUnknownProperty:
      return {"the set already has a property with this tag; this one is not read"};
    case Kind::kSecondReference:
      return {"the property refers to one set, and has that already; this one is not read"};
    case Kind::kSecondPreface:
      return {"a partition has one Preface; this is another one"};
    case Kind::kDifferentCopy:
      return {"differs from the first copy of the set{}, which counts"};
    case Kind::kInvalidValue:
      return {"{}"};
    case Kind::kInvalidDarkSet:
      return {"dark metadata: {}"};
    case Kind::kInvalidDarkLength:
      return {"dark metadata: {}; the writer is free to choose"};
    case Kind::kDarkSetIsNoLocalSet:
      return {"dark metadata: the key {} is that of a local set; the octets are not one"};
    case Kind::kMissingTarget:
      return {"no set of the document has the InstanceUID {}"};
    case Kind::kEmptyReference:
      return {"the reference is empty"};
    case Kind::kPointerWithoutTarget:
      return {
          "the reference {} names no set: it lacks the attribute TargetInstance in the namespace "
          "urn:SMPTE:Types:MXF"};
    case Kind::kContentInPointer:
      return {"the reference {} holds content, which is not read; give it a set's name, or take out the content"};
    case Kind::kTargetOfSet:
      return {
          "{} is a set with an attribute TargetInstance, and is read as a reference to that set; take out the "
          "attribute, or add _REF to the name"};
    case Kind::kInvalidInstanceUID:
      return {"'{}' is not an InstanceUID; the set gets a new one, to which nothing refers"};
    case Kind::kMissingInstanceUID:
      return {"the set has no rp210:InstanceUID; restore it, or give a new set a new one"};
  }
  return {""};
}

}  // namespace

std::string textOf(const Diagnostic& diagnostic) {
  auto arguments = diagnostic.arguments;
  const auto sentence = sentenceOf(diagnostic.kind);
  if (sentence.namespaceAt >= 0) {
    auto& uri = arguments.at(static_cast<std::size_t>(sentence.namespaceAt));
    uri = uri.empty() ? "no namespace" : "the namespace " + uri;
  }
  if (diagnostic.kind == Kind::kDifferentCopy && !arguments.front().empty()) {
    arguments.front() = ", at line " + arguments.front();
  }
  return Exceptions::formatted(sentence.format, arguments);
}

std::string describe(const Diagnostic& diagnostic) {
  const auto& place = diagnostic.place;
  std::string text = place.line == 0 ? "" : "line " + std::to_string(place.line) + ": ";
  if (!place.set.empty()) text += place.set + ": ";
  if (!place.property.empty()) text += place.property + ": ";
  return text + textOf(diagnostic);
}

}  // namespace Vantor::LosslessXML

#include <cstddef>

#include "Core/Platform/Raise.h"
#include "LosslessXML.h"

namespace Vantor::LosslessXML {

namespace {

using Kind = Diagnostic::Kind;

/// The English of a kind: a format of its arguments.
struct Sentence {
  Kind kind;
  const char* format;
  int namespaceAt = -1;  ///< which argument is a namespace, from 0
};

/// In the order of the kinds.
constexpr Sentence kSentences[] = {
    {Kind::kUnknownRoot, "the root element is {} in {}, not MetadataSets in the namespace urn:SMPTE:S377M", 1},
    {Kind::kUnknownSet, "there is no set {} in {}", 1},
    {Kind::kSetOfOtherNamespace, "there is no set {} in {}", 1},
    {Kind::kUnknownProperty, "the set has no property {} in {}; the element is not read", 1},
    {Kind::kUnknownExtension, "there is no property {} in {}", 1},
    {Kind::kUnknownAttribute, "the set has no attribute {} in {}; it is not read", 1},
    {Kind::kStrayAttribute, "{} has no attribute {} in {}; it is not read", 2},
    {Kind::kStrayText, "{} is text between the elements of {}; it is not read"},
    {Kind::kSecondElement, "{} stands here a second time; only the first is read"},
    {Kind::kSecondProperty, "the set already has the property {}; this one is not read"},
    {Kind::kSecondUnknownProperty, "the set already has a property with this tag; this one is not read"},
    {Kind::kSecondReference, "the property refers to one set, and has that already; this one is not read"},
    {Kind::kSecondPreface, "a partition has one Preface; this further one is read, but the first one counts"},
    {Kind::kDifferentCopy, "differs from the first copy of the set{}, which counts"},
    {Kind::kInvalidValue, "{}"},
    {Kind::kInvalidDarkSet, "dark metadata: {}"},
    {Kind::kInvalidDarkLength, "dark metadata: {}; the writer is free to choose"},
    {Kind::kDarkSetIsNoLocalSet, "dark metadata: the key {} is that of a local set; the octets are not one"},
    {Kind::kMissingTarget, "no set of the document has the InstanceUID {}"},
    {Kind::kEmptyReference, "the reference is empty"},
    {Kind::kPointerWithoutTarget,
     "the reference {} names no set: it lacks the attribute TargetInstance in the namespace urn:SMPTE:Types:MXF"},
    {Kind::kContentInPointer,
     "the reference {} holds content, which is not read; give it a set's name, or take out the content"},
    {Kind::kTargetOfSet,
     "{} is a set with an attribute TargetInstance, and is read as a reference to that set; take out the attribute, or "
     "add _REF to the name"},
    {Kind::kInvalidInstanceUID, "'{}' is not an InstanceUID; the set gets a new one, to which nothing refers"},
    {Kind::kMissingInstanceUID,
     "the set has no rp210:InstanceUID; restore it, or name a new set: rp210:InstanceUID=\"new:...\""}};

constexpr bool isInOrder() {
  std::size_t next = 0;
  for (const auto& sentence : kSentences) {
    if (static_cast<std::size_t>(sentence.kind) != next++) return false;
  }
  return next == static_cast<std::size_t>(Kind::kMissingInstanceUID) + 1;
}
static_assert(isInOrder());

}  // namespace

std::string describe(const Diagnostic& diagnostic) {
  const auto& place = diagnostic.place;
  std::string text = place.line == 0 ? "" : "line " + std::to_string(place.line) + ": ";
  if (!place.set.empty()) text += place.set + ": ";
  if (!place.property.empty()) text += place.property + ": ";
  auto arguments = diagnostic.arguments;
  const auto& sentence = kSentences[static_cast<std::size_t>(diagnostic.kind)];
  if (sentence.namespaceAt >= 0) {
    auto& uri = arguments.at(static_cast<std::size_t>(sentence.namespaceAt));
    uri = uri.empty() ? "no namespace" : "the namespace " + uri;
  }
  if (diagnostic.kind == Kind::kDifferentCopy && !arguments.front().empty()) {
    arguments.front() = ", at line " + arguments.front();
  }
  return text + Exceptions::formatted(sentence.format, arguments);
}

}  // namespace Vantor::LosslessXML

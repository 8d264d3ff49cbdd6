#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/SetPath.h"
#include "Core/Platform/Path.h"
#include "JSON/Diagnostic.h"
#include "JSON/Value.h"

/// Values of properties that a JSON document gives: docs/json.md.
namespace Vantor::Tool {

/// One of them. What it throws names the document and the place in it.
class GivenValue {
 public:
  /// What the document has for it, and where.
  struct Part {
    std::string document;              ///< its name
    std::string pointer;               ///< of the object that has the member, as a JSON pointer
    std::string member;                ///< with the value
    std::optional<JSON::Value> value;  ///< as exports have it, or a text as `MetadataSet::set` takes it
    std::optional<std::string> text;   ///< for people, but where there is no value
    uint32 line = 0;                   ///< of the object
  };
  GivenValue(PropertyPath path, Part part) : path_(std::move(path)), part_(std::move(part)) {}

  const PropertyPath& path() const { return path_; }
  /// Sets the property. Files are not read for a value. @throws OtherFileError.
  void assignTo(MetadataSet& set) const;
  /// Compares what the document has for people with the value of the set, once all properties have theirs.
  /// @return warnings about labels that the dictionary does not know, which name the document.
  /// @throws OtherFileError for a contradiction.
  std::vector<std::string> requireAgreement(const MetadataSet& set) const;

 private:
  template <class Action>
  void within(const std::string& member, const JSON::Value* json, Action action) const;
  wstring textFor(const MetadataSet& set) const;
  void requireText(const MetadataSet& set) const;
  std::vector<std::string> messagesOf(JSON::Diagnostics diagnostics) const;

  PropertyPath path_;
  Part part_;
};

/// The values in a document: what `mxfxml get --json` prints of one file, or an object {"Set.Property": value, ...}.
/// @param document  a file, a pipe or standard input.
/// @throws OtherFileError naming the document, and what is wrong with line and column or JSON pointer.
std::vector<std::shared_ptr<const GivenValue>> readGivenValues(const Path& document);

}  // namespace Vantor::Tool

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Core/Dictionary/Definitions.h"

namespace Vantor::Tool {

/// What definitions and built-in labels have a text in a symbol, a name in XML, a common name, the name of a label or
/// that of an enumeration's value, or begin their key with it, and what people mean by it
/// (`MetaMetadata::symbolsMeantBy`). Case, punctuation and blanks do not count.
class DictionarySearch {
 public:
  struct Match {
    std::string kind;  ///< "set", "property", "enumeration" or "label"
    std::string name;
    std::string key;       ///< 32 digits; for an enumeration its name
    std::string remark;    ///< the common name, the name of a label, or values of an enumeration; may be empty
    bool isWhole = false;  ///< the text is a whole name, or another word for this
  };

  /// @param wanted  shorter ones than three letters and digits match nothing but another word.
  DictionarySearch(const Definitions& definitions, const std::string& wanted);

  /// Those with the whole name first.
  const std::vector<Match>& matches() const { return matches_; }
  /// " (did you mean 'Preface'?)"; empty where no name is near.
  std::string suggestion() const;

 private:
  void takeCommonNames();
  void takeEnumeration(const EnumerationDefinition& enumeration);
  void takeLabels(const Definitions& definitions);
  void take(const char* kind, std::string_view symbol, std::string_view tagName, std::string key, std::string remark);
  bool isIn(std::string_view name, Match& match) const;
  bool beginsKey(const std::string& keyDigits, bool isOfSet) const;

  const Definitions& definitions_;
  std::string wanted_, digits_;
  std::vector<std::string> folded_;  // what names are to have, any of these
  std::vector<std::string_view> meant_;
  std::vector<std::string> setNames_, propertyNames_;  // common names, beside the definitions
  std::vector<std::string> names_;
  std::vector<Match> matches_;
};

/// A row for each.
std::string listOf(const std::vector<DictionarySearch::Match>& matches);

}  // namespace Vantor::Tool

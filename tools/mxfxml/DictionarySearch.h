#pragma once

#include <string>
#include <vector>

#include "Core/Dictionary/Definitions.h"

namespace Vantor::Tool {

/// What definitions and built-in labels have a text in a symbol, a name in XML, a common name or the name of a label,
/// whatever the case, or begin their key with it.
class DictionarySearch {
 public:
  struct Match {
    std::string kind;  ///< "set", "property", "enumeration" or "label"
    std::string name;
    std::string key;         ///< 32 digits; for an enumeration its name
    std::string commonName;  ///< for a label its name; empty where there is none
  };

  /// @param wanted  shorter ones than three characters match nothing.
  DictionarySearch(const Definitions& definitions, const std::string& wanted);

  const std::vector<Match>& matches() const { return matches_; }
  /// " (did you mean 'Preface'?)"; empty where no name is near.
  std::string suggestion() const;

 private:
  void takeCommonNames();
  void take(std::string kind, std::string_view symbol, std::string_view tagName, std::string key,
            std::string_view commonName);
  void takeLabels(const Definitions& definitions);

  const Definitions& definitions_;
  std::string wanted_, digits_;
  std::vector<std::string> setNames_, propertyNames_;  // common names, beside the definitions
  std::vector<std::string> names_;
  std::vector<Match> matches_;
};

/// A row for each.
std::string listOf(const std::vector<DictionarySearch::Match>& matches);

}  // namespace Vantor::Tool

#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Edit/Check.h"

namespace Vantor::Edit {

class CheckedFile;
class Model;

/// A finding and the set that it is about, whose place decides its order.
struct Found {
  Finding finding;
  const MetadataSet* set = nullptr;
};

/// Takes what one rule finds.
class Report {
 public:
  /// @param partitions  those that share the metadata; empty for a rule about the file.
  Report(const Rule& rule, std::vector<std::size_t> partitions, std::vector<Found>& found)
      : rule_(rule), partitions_(std::move(partitions)), found_(found) {}

  /// The same for a set of other metadata. @param partitions  those that share them.
  Report about(std::vector<std::size_t> partitions) const { return {rule_, std::move(partitions), found_}; }

  /// Something is wrong with a set.
  void add(const MetadataSet& set, std::vector<std::string> arguments = {}) { add(set, "", std::move(arguments)); }
  /// Something is wrong with a property of a set. @param property  its symbol.
  void add(const MetadataSet& set, const std::string& property, std::vector<std::string> arguments = {}) {
    const std::string other(set.otherNameOf(property)), id = set.instanceUID() ? set.instanceUID()->dottedText() : "";
    found_.push_back(
        {{&rule_, partitions_, set.fullName(), property, std::move(arguments), other, set.name(), id}, &set});
  }
  void add(const MetadataSet& set, const char* property, std::vector<std::string> arguments = {}) {
    add(set, std::string(property), std::move(arguments));
  }
  /// Something is wrong with the metadata, or the file, as a whole.
  void add(std::vector<std::string> arguments = {}) {
    found_.push_back({{&rule_, partitions_, "", "", std::move(arguments)}});
  }
  /// Something is wrong with a partition. @param property  what of its pack; may be empty.
  void add(std::size_t partition, const std::string& property, std::vector<std::string> arguments = {}) {
    found_.push_back({{&rule_, {partition}, "", property, std::move(arguments)}});
  }

 private:
  const Rule& rule_;
  std::vector<std::size_t> partitions_;
  std::vector<Found>& found_;
};

/// A rule and the function that looks for what breaks it: in one state of header metadata, or in the file.
struct RuleRow {
  using MetadataCheck = void (*)(const Model&, Report&);
  using FileCheck = void (*)(const CheckedFile&, Report&);

  RuleRow(const Rule& rule, MetadataCheck check) : rule(rule), onMetadata(check) {}
  RuleRow(const Rule& rule, FileCheck check) : rule(rule), onFile(check) {}

  Rule rule;
  MetadataCheck onMetadata = nullptr;
  FileCheck onFile = nullptr;
};
using RuleTable = std::vector<RuleRow>;

/// The tables of the themes, each in the file of its name; a new theme is one more line here, in `kThemes` of Check.cpp
/// and in CMakeLists.txt.
const RuleTable& valueRules();
const RuleTable& descriptorRules();
const RuleTable& requiredRules();
const RuleTable& referenceRules();
const RuleTable& trackRules();
const RuleTable& packageRules();
const RuleTable& essenceRules();
const RuleTable& partitionRules();
const RuleTable& labelRules();
const RuleTable& patternRules();
const RuleTable& primerRules();
const RuleTable& historyRules();

}  // namespace Vantor::Edit

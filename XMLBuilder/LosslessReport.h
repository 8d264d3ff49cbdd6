#pragma once

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/UUID.h"
#include "LosslessXML.h"
#include "XMLBuilder/BaseFacts.h"
#include "XMLBuilder/NewSets.h"
#include "XMLBuilder/SetChildren.h"
#include "XMLUtils/ElementLines.h"

namespace Vantor::XML2Partition {

using LosslessXML::Diagnostic;

/// Collects what a lossless import finds in the document: which set stands where, and what could not be read.
class LosslessReport {
 public:
  using Kind = Diagnostic::Kind;
  /// What is being read.
  struct Current {
    MetadataSet* set = nullptr;
    bool isNamed = false;
    const MetaMetadata::MetaElement* property = nullptr;
  };

  /// @param limit  number of diagnostics that the result lists.
  LosslessReport(LosslessXML::Import& result, const XMLUtils::ElementLines& lines, BaseFacts& base, uint64 limit)
      : result_(result), lines_(lines), base_(base), limit_(limit) {}
  LosslessReport(const LosslessReport&) = delete;
  LosslessReport& operator=(const LosslessReport&) = delete;

  /// While it lives, diagnostics name this set or property as their place.
  class Reading {
   public:
    /// @param isNamed  whether the set's InstanceUID stands in the document.
    Reading(LosslessReport& report, MetadataSet& set, bool isNamed) : report_(report), previous_(report.current_) {
      report.current_ = {&set, isNamed, nullptr};
    }
    Reading(LosslessReport& report, const MetaMetadata::MetaElement* property)
        : report_(report), previous_(report.current_) {
      report.current_.property = property;
    }
    ~Reading() { report_.current_ = previous_; }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    LosslessReport& report_;
    Current previous_;
  };

  /// @param node  gives the line.
  void add(Kind kind, const xercesc::DOMNode& node, std::vector<std::string> arguments = {});
  /// The same for a problem that leaves the current property unread.
  void addUnread(Kind kind, const xercesc::DOMNode& node, std::vector<std::string> arguments = {});

  /// A set of the document and the element that it was made from.
  struct Source {
    MetadataSet* set;
    const xercesc::DOMElement* element;
    std::optional<SetChildren> children = std::nullopt;  ///< of the element; listed when a copy of it is met
  };
  /// Null when no set of the document has the InstanceUID so far.
  Source* find(const Types::UUID& instanceUID);
  void enter(const Types::UUID& instanceUID, Source source) { sources_.emplace(instanceUID, std::move(source)); }

  /// A dark set: its key and octets.
  using DarkContent = std::pair<KLV::Key, Bytes>;
  /// Whether the document has this dark set already, with an InstanceUID.
  bool hasDark(const DarkContent& content) const { return dark_.count(content) != 0; }
  void enterDark(DarkContent content) { dark_.insert(std::move(content)); }

  /// Notes a reference, whose target may come later. @param isDangling  whether the document marks it as one without
  /// target.
  ///
  /// Two strong references to one set are not reported, although each claims to own the set. Files have them (one
  /// writer's floating root set refers strongly to the Preface), and even unedited documents of these would have a
  /// diagnostic.
  void refer(const Types::UUID& target, const xercesc::DOMNode& node, bool isDangling);
  /// Sorts the diagnostics, and adds one for each reference whose target never came.
  /// @throws InvalidFormat for a reference to a new set of a name that no set has.
  void finish(const PartitionMetadata& partition);

  BaseFacts& base() { return base_; }
  NewSets& newSets() { return newSets_; }
  uint64 lineOf(const xercesc::DOMNode& node) const { return lines_.lineOf(node); }

 private:
  struct Pointer {
    Types::UUID target;
    bool isDangling;
    LosslessXML::Place place;
  };
  LosslessXML::Place placeOf(const xercesc::DOMNode& node) const;
  /// Whether the result lists a further diagnostic, which is counted otherwise.
  bool lists(Kind kind);

  LosslessXML::Import& result_;
  const XMLUtils::ElementLines& lines_;
  BaseFacts& base_;
  uint64 limit_;
  NewSets newSets_;
  Current current_;
  std::unordered_map<Types::UUID, Source> sources_;
  std::set<DarkContent> dark_;
  std::vector<Pointer> pointers_;
  uint64 listedKinds_ = 0;             // a bit each
  std::set<std::string> unknownSets_;  // dotted InstanceUIDs of sets that are in the document, and were reported
};

}  // namespace Vantor::XML2Partition

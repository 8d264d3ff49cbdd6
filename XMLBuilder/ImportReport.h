#pragma once

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/UUID.h"
#include "XML2Partition.h"
#include "XMLBuilder/SetChildren.h"
#include "XMLUtils/ElementLines.h"

namespace Vantor::XML2Partition {

/// What a lossless import learns on its way through the document: which set stands where, and what could not be read.
class ImportReport {
 public:
  using Kind = ImportDiagnostic::Kind;

  ImportReport(LosslessImport& result, const XMLUtils::ElementLines& lines) : result_(result), lines_(lines) {}
  ImportReport(const ImportReport&) = delete;
  ImportReport& operator=(const ImportReport&) = delete;

  /// What is read until the object goes; diagnostics name it.
  class Reading {
   public:
    Reading(ImportReport& report, MetadataSet& set) : Reading(report, &set, nullptr) {}
    Reading(ImportReport& report, const MetaMetadata::MetaElement* property) : Reading(report, report.set_, property) {}
    ~Reading() {
      report_.set_ = set_;
      report_.property_ = property_;
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    Reading(ImportReport& report, MetadataSet* set, const MetaMetadata::MetaElement* property)
        : report_(report), set_(report.set_), property_(report.property_) {
      report_.set_ = set;
      report_.property_ = property;
    }

    ImportReport& report_;
    MetadataSet* set_;
    const MetaMetadata::MetaElement* property_;
  };

  void add(Kind kind, const xercesc::DOMNode& node, const std::string& message);
  /// The same for something that leaves the property that is being read without what the document has for it.
  void addUnread(Kind kind, const xercesc::DOMNode& node, const std::string& message);
  /// The same for an element or attribute that its namespace does not have.
  void addUnknown(const xercesc::DOMNode& node, const std::string& message);
  /// The same where a set is expected.
  void addUnknownUnread(const xercesc::DOMNode& node, const std::string& message, bool isNewSet);

  /// A set of the document and the element that it was made from.
  struct Source {
    MetadataSet* set;
    const xercesc::DOMElement* element;
    std::optional<SetChildren> children = std::nullopt;  ///< of the element; listed when a copy of it is met
  };
  /// Null when no set of the document has the InstanceUID so far.
  Source* find(const Types::UUID& instanceUID);
  void enter(const Types::UUID& instanceUID, Source source) { sources_.emplace(instanceUID, std::move(source)); }

  /// The key and octets of a set of which no more is known than these.
  using DarkContent = std::pair<KLV::Key, Bytes>;
  /// Whether the document had such a set with an InstanceUID.
  bool hasDark(const DarkContent& content) const { return dark_.count(content) != 0; }
  void enterDark(DarkContent content) { dark_.insert(std::move(content)); }

  /// Notes something that only the file can tell to be right or wrong, in the set that is being read.
  /// @param property  of that set; null when it is about something else.
  void addUnconfirmed(Kind kind, const xercesc::DOMNode& node, const std::string& message,
                      const Element* property = nullptr);
  /// Notes a set that the dictionary does not have.
  void enterUnknown(const Types::UUID& instanceUID) {
    result_.unknownSets.push_back(instanceUID.toString(kDottedForm));
  }

  /// Notes a reference, whose target may come later. @param isDangling  the document says itself that there is none.
  ///
  /// Two strong references to one set are no diagnostic, although each says that it owns the set: files have them, such
  /// as those of a writer whose floating root set refers strongly to the Preface, and an unedited document would never
  /// be without one then.
  void refer(const Types::UUID& target, const xercesc::DOMNode& node, bool isDangling);
  /// Counts a set within the property that refers to it, or a strong reference to one elsewhere.
  void countNested() { ++result_.references.nested; }
  void countPointer() { ++result_.references.pointers; }
  /// Notes a set whose element has no InstanceUID.
  void enterUnnamed(MetadataSet& set, const xercesc::DOMElement& element) {
    result_.unnamed.push_back({&set, lineOf(element)});
    unnamed_.insert(&set);
  }
  /// Tells of the references whose targets never came.
  void finish(const PartitionMetadata& partition);

  uint64 lineOf(const xercesc::DOMNode& node) const { return lines_.lineOf(node); }

 private:
  struct Pointer {
    Types::UUID target;
    bool isDangling;
    ImportDiagnostic place;
  };
  std::string setName() const;
  ImportDiagnostic diagnostic(Kind kind, const xercesc::DOMNode& node, const std::string& message) const;

  LosslessImport& result_;
  const XMLUtils::ElementLines& lines_;
  MetadataSet* set_ = nullptr;
  const MetaMetadata::MetaElement* property_ = nullptr;
  std::unordered_map<Types::UUID, Source> sources_;
  std::set<DarkContent> dark_;
  std::vector<Pointer> pointers_;
  std::unordered_set<const MetadataSet*> unnamed_;
};

}  // namespace Vantor::XML2Partition

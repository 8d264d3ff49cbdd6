#pragma once

#include <list>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Collection.h"
#include "Core/Types/References.h"
#include "XMLUtils/Holder.h"

namespace Vantor::XMLBuilder {

/// The export in its plainest form, to compare the library's with: every look-up walks a list or the document, and
/// nothing is remembered to save a walk. Shares no code with the library. Knows the values UInt32, UUID, Unknown and
/// references only, and no limit of depth. One object serves one export.
class NaiveExporter {
 public:
  using Document = XMLUtils::Holder<xercesc::DOMDocument>;

  NaiveExporter(PartitionMetadata& partition, bool nestStrongReferences, bool excludeNonStructural)
      : partition_(partition), nest_(nestStrongReferences), exclude_(excludeNonStructural) {}

  Document write(const MetadataSet& start);

 private:
  friend class NaiveElementVisitor;
  using Register = std::vector<const MetadataSet*>;
  struct Entry {
    wstring uri;
    wstring prefix;
  };
  struct Name {
    wstring qualified;
    wstring uri;
    wstring prefix;
  };

  void bind(const wstring& uri, const wstring& prefix);
  void bindUnlessBound(const wstring& uri, const wstring& prefix);
  wstring lookUp(const wstring& prefix) const;

  xercesc::DOMElement* create(const wstring& uri, const wstring& qualifiedName);
  xercesc::DOMElement* getOrCreateFloatingContainer();
  void appendText(xercesc::DOMElement* to, const wstring& text);

  void writeSet(const MetadataSet& set, xercesc::DOMNode* parent, Register& written);
  void writeDarkSets();
  void writeFloatingSets();
  void writeDarkElement(xercesc::DOMElement* parent, const KLV::Key& key, unsigned berOctets, const Bytes& value);
  void writeDarkGroup(xercesc::DOMElement* parent, const MetadataSet& set);

  Name nameOf(const MetaMetadata::MetaElement* definition);
  void writeValue(xercesc::DOMElement* to, const Types::SimpleDataType& value);
  void writeSimple(const Element& property, const Types::SimpleDataType* value, xercesc::DOMElement* set);
  void writeExtension(const Element& property, const Types::SimpleDataType* value, xercesc::DOMElement* element,
                      xercesc::DOMElement* set);
  /// Where the property belongs: among the set's children, or in the container of those that it does not define.
  void place(const Element& property, xercesc::DOMElement* element, xercesc::DOMElement* set);
  void writeCollection(const Element& property, const Types::Collection* items, xercesc::DOMElement* set);
  bool writeReference(const Types::Reference& reference, xercesc::DOMElement* property, xercesc::DOMElement* set,
                      Register& written);
  void writePointer(xercesc::DOMElement* property, const wstring& uri, const wstring& name,
                    const Types::Reference& reference);
  void declareNamespaces();

  PartitionMetadata& partition_;
  bool nest_;
  bool exclude_;
  Document document_;
  xercesc::DOMElement* root_ = nullptr;
  std::list<Entry> namespaces_;
};

}  // namespace Vantor::XMLBuilder

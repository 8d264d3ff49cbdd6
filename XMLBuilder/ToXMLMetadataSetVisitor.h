#pragma once

#include <vector>

#include "Core/Metadata/Visitors.h"
#include "XMLBuilder/ExportPass.h"

namespace Vantor::XMLBuilder {

/// Writes one set as a child element of a parent, with its properties and what they refer to, unless the set was
/// written before in this pass. A dark group goes into the document's floating container instead.
///
/// Where strong references nest, every target has a visitor of its own. Where they do not, this one writes all that
/// the set leads to, each set behind the one that refers to it first, and a chain of any length costs heap instead of
/// stack.
class ToXMLMetadataSetVisitor : public Metadata::Visitors::MetadataSetVisitor {
 public:
  /// How many references may lead from the set that a pass starts with to a set that is written inside it.
  static constexpr unsigned kMaximumDepth = 1000;

  ToXMLMetadataSetVisitor(xercesc::DOMNode& parent, const ExportPass& pass) : parent_(parent), pass_(pass) {}

  /// @throws NestingTooDeep naming the set.
  void visit(const MetadataSet& set) override;

 private:
  /// A set whose properties are being written.
  struct Frame {
    xercesc::DOMElement* element;
    std::vector<const Element*> properties;   // left to write, the next one last
    std::vector<const MetadataSet*> targets;  // left to write before the next property, the next one last
  };

  void open(const MetadataSet& set);
  void writeNext();
  void writeDarkGroup(const MetadataSet& set);

  xercesc::DOMNode& parent_;
  ExportPass pass_;
  std::vector<Frame> frames_;
};

}  // namespace Vantor::XMLBuilder

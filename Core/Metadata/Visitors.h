#pragma once

namespace Vantor {

class MetadataSet;
class SimpleElement;
class ReferenceElement;
class ArrayElement;
class BatchElement;
class ReferenceArrayElement;
class ReferenceBatchElement;

namespace Metadata::Visitors {

/// Receives a set that is only read.
class MetadataSetVisitor {
 public:
  virtual ~MetadataSetVisitor() = default;
  virtual void visit(const MetadataSet& set) = 0;
};

/// Receives a set that may be changed.
class NonConstMetadataSetVisitor {
 public:
  virtual ~NonConstMetadataSetVisitor() = default;
  virtual void visit(MetadataSet& set) = 0;
};

/// Receives one property of a set by its kind, to read it.
///
/// A collection of references arrives as itself and then member by member as a `ReferenceElement`, in order; one
/// without members arrives as a plain collection instead. See `Element::accept`.
class ElementVisitor {
 public:
  virtual ~ElementVisitor() = default;
  virtual void visit(const ReferenceBatchElement& element) = 0;
  virtual void visit(const ReferenceArrayElement& element) = 0;
  virtual void visit(const ReferenceElement& element) = 0;
  virtual void visit(const BatchElement& element) = 0;
  virtual void visit(const ArrayElement& element) = 0;
  virtual void visit(const SimpleElement& element) = 0;
};

/// Receives one property of a set by its kind, to fill it. Every kind arrives once, as itself.
class NonConstElementVisitor {
 public:
  virtual ~NonConstElementVisitor() = default;
  virtual void visit(ReferenceBatchElement& element) = 0;
  virtual void visit(ReferenceArrayElement& element) = 0;
  virtual void visit(ReferenceElement& element) = 0;
  virtual void visit(BatchElement& element) = 0;
  virtual void visit(ArrayElement& element) = 0;
  virtual void visit(SimpleElement& element) = 0;
};

}  // namespace Metadata::Visitors

}  // namespace Vantor

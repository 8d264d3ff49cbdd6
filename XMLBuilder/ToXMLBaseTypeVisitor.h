#pragma once

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Types/Collection.h"
#include "Core/Types/Visitors.h"
#include "XMLBuilder/NamespaceMap.h"

namespace Vantor::XMLBuilder {

struct ValueVocabulary;

/// Writes one value into one target: text or child elements appended to an element, or the text of an attribute.
///
/// The target's namespace decides the form. A property in the elements namespace of SMPTE ST 434:2014 has its compound
/// values in that standard's types namespace and its labels, UMIDs and UUIDs as URNs; every other target, and every
/// attribute, has the legacy namespaces and the dotted form. Nothing that the target holds already is removed.
/// Nodes belong to the target's document. One thread at a time.
class ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
 public:
  /// @param namespaces  gets the namespaces of the form, each unless its prefix is bound already.
  ToXMLBaseTypeVisitor(xercesc::DOMElement& target, NamespaceMap& namespaces);
  /// For a UUID or a reference; another value with a text form becomes the attribute's text as well, and one that is
  /// made of child elements writes nothing.
  explicit ToXMLBaseTypeVisitor(xercesc::DOMAttr& target);

  void visit(const Types::J2KQuantisationDefault& value) override;
  void visit(const Types::J2KCodingStyleDefault& value) override;
  void visit(const Types::J2KPictureComponent& value) override;
  void visit(const Types::DataValue& value) override;
  void visit(const Types::StrongReference& value) override;
  void visit(const Types::WeakReference& value) override;
  void visit(const Types::Unknown& value) override;
  void visit(const Types::VersionType& value) override;
  void visit(const Types::UUID& value) override;
  void visit(const Types::UTF8String& value) override;
  void visit(const Types::UTF16String& value) override;
  void visit(const Types::UTF16& value) override;
  void visit(const Types::UniversalLabel& value) override;
  void visit(const Types::UMID64& value) override;
  void visit(const Types::UMID32& value) override;
  void visit(const Types::UInt8& value) override;
  void visit(const Types::UInt64& value) override;
  void visit(const Types::UInt32& value) override;
  void visit(const Types::UInt16& value) override;
  void visit(const Types::Timestamp& value) override;
  void visit(const Types::SignalStandard& value) override;
  void visit(const Types::RGBALayout& value) override;
  void visit(const Types::Rational& value) override;
  void visit(const Types::ProductVersion& value) override;
  void visit(const Types::Position& value) override;
  void visit(const Types::Orientation& value) override;
  void visit(const Types::LocalTag& value) override;
  void visit(const Types::Length& value) override;
  void visit(const Types::ISO8String& value) override;
  void visit(const Types::ISO7String& value) override;
  void visit(const Types::Int8& value) override;
  void visit(const Types::Int64& value) override;
  void visit(const Types::Int32& value) override;
  void visit(const Types::Int16& value) override;
  void visit(const Types::DataStream& value) override;
  void visit(const Types::Boolean& value) override;
  void visit(const Types::Batch& value) override;
  void visit(const Types::AUID& value) override;
  void visit(const Types::Array& value) override;

 private:
  void writeText(const char16_t* text);
  template <class Integer>
  void writeNumber(Integer number);
  template <class Identifier>
  void writeIdentifier(const Identifier& value);
  void writeHex(const Types::SimpleDataType& value);
  void writeItems(const Types::Collection& value);

  const ValueVocabulary* vocabulary_;
  xercesc::DOMElement* targetElement_ = nullptr;
  xercesc::DOMAttr* targetAttribute_ = nullptr;
};

}  // namespace Vantor::XMLBuilder

#pragma once

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/StringForm.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Visitors.h"
#include "XMLBuilder/NamespaceMap.h"

namespace Vantor::XMLBuilder {

/// Writes one value into one target: text or child elements appended to an element, or the text of an attribute.
///
/// The target's namespace decides the form. A property in the elements namespace of SMPTE ST 434:2014 has its compound
/// values in that standard's types namespace and its labels, UMIDs and UUIDs as URNs; every other target, and every
/// attribute, has the legacy namespaces and the dotted form. Nothing that the target holds already is removed.
/// Nodes belong to the target's document. One thread at a time.
///
/// Two peculiarities are part of the form: the components of an RGBA layout keep the prefix "types" though their
/// namespace changes, and the JPEG 2000 names are the same for either kind of target.
class ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
 public:
  /// How many components of an RGBA layout are written.
  static constexpr uint32 kRGBAComponents = 5;

  /// @param namespaces  gets the namespaces of the form, each unless its prefix is bound already.
  ToXMLBaseTypeVisitor(xercesc::DOMElement& target, NamespaceMap& namespaces);
  /// For a UUID or a reference; another value with a text form becomes the attribute's text as well, and one that is
  /// made of child elements writes nothing.
  explicit ToXMLBaseTypeVisitor(xercesc::DOMAttr& target);

#define VANTOR_DECLARE_VISIT(Type, number, octets) void visit(const Types::Type& value) override;
  VANTOR_FOR_EACH_TYPE(VANTOR_DECLARE_VISIT)
#undef VANTOR_DECLARE_VISIT

 private:
  void writeText(const wstring& text);

  void write(const Types::SimpleDataType& value);
  void write(const Types::UUID& value);
  void write(const Types::UniversalLabel& value);
  void write(const Types::UMID32& value);
  void write(const Types::VersionType& value);
  void write(const Types::Rational& value);
  void write(const Types::ProductVersion& value);
  void write(const Types::Timestamp& value);
  void write(const Types::RGBALayout& value);
  void write(const Types::J2KPictureComponent& value);
  void write(const Types::J2KCodingStyleDefault& value);
  void write(const Types::J2KQuantisationDefault& value);
  void write(const Types::Collection& value);

  MetaMetadata::Namespace types_;  // of the children of compound values
  StringRepresentationEncodingType identifierForm_;
  xercesc::DOMElement* targetElement_ = nullptr;
  xercesc::DOMAttr* targetAttribute_ = nullptr;
};

}  // namespace Vantor::XMLBuilder

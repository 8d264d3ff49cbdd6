#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "Core/Platform/Numbers.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLBuilder {

namespace {

using MetaMetadata::Namespace;
using xercesc::DOMElement;

constexpr Namespace kLegacyTypes{Vocabulary::kTypesPrefix, Vocabulary::kTypesURI};
constexpr Namespace kJ2KTypes{Vocabulary::kS422MTypesPrefix, Vocabulary::kS422MTypesURI};

void appendText(DOMElement& element, const wstring& text) {
  element.appendChild(element.getOwnerDocument()->createTextNode(text.c_str()));
}

/// Appends the fields of a compound value to its target, one child element each.
class FieldWriter {
 public:
  /// @param target  null writes nothing.
  FieldWriter(DOMElement* target, const Namespace& types) : target_(target), types_(types) {}

  DOMElement* element(std::u16string_view name) {
    if (target_ == nullptr) return nullptr;
    auto* child = target_->getOwnerDocument()->createElementNS(types_.uri.data(), qualify(types_.prefix, name).c_str());
    target_->appendChild(child);
    return child;
  }
  template <class Integer>
  FieldWriter& number(std::u16string_view name, Integer number) {
    if (DOMElement* child = element(name)) appendText(*child, Platform::toDecimal(number));
    return *this;
  }
  FieldWriter& hex(std::u16string_view name, const Types::SimpleDataType& bytes) {
    if (DOMElement* child = element(name)) appendText(*child, Types::textOfValue(bytes));
    return *this;
  }

 private:
  DOMElement* target_;
  Namespace types_;
};

}  // namespace

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(DOMElement& target, NamespaceMap& namespaces)
    : types_(kLegacyTypes), identifierForm_(kDottedForm), targetElement_(&target) {
  if (XMLUtils::viewOf(target.getNamespaceURI()) == MetaMetadata::kST434Elements.uri) {
    types_ = MetaMetadata::kST434Types;
    identifierForm_ = kUrnForm;
  } else {
    namespaces.insertIfUnbound(kJ2KTypes.uri, kJ2KTypes.prefix);
  }
  namespaces.insertIfUnbound(types_.uri, types_.prefix);
}

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(xercesc::DOMAttr& target)
    : types_(kLegacyTypes), identifierForm_(kDottedForm), targetAttribute_(&target) {}

#define VANTOR_WRITE_VALUE(Type, number, octets) \
  void ToXMLBaseTypeVisitor::visit(const Types::Type& value) { write(value); }
VANTOR_FOR_EACH_TYPE(VANTOR_WRITE_VALUE)
#undef VANTOR_WRITE_VALUE

void ToXMLBaseTypeVisitor::writeText(const wstring& text) {
  if (targetElement_ != nullptr) {
    appendText(*targetElement_, text);
  } else {
    targetAttribute_->setValue(text.c_str());
  }
}

void ToXMLBaseTypeVisitor::write(const Types::SimpleDataType& value) { writeText(Types::textOfValue(value)); }
void ToXMLBaseTypeVisitor::write(const Types::UUID& value) { writeText(value.toString(identifierForm_)); }
void ToXMLBaseTypeVisitor::write(const Types::UniversalLabel& value) { writeText(value.toString(identifierForm_)); }
void ToXMLBaseTypeVisitor::write(const Types::UMID32& value) { writeText(value.toString(identifierForm_)); }
void ToXMLBaseTypeVisitor::write(const Types::VersionType& value) {
  writeText(Platform::toDecimal(value.major() * 256 + value.minor()));
}

void ToXMLBaseTypeVisitor::write(const Types::Rational& value) {
  FieldWriter(targetElement_, types_)
      .number(u"Numerator", value.numerator())
      .number(u"Denominator", value.denominator());
}

void ToXMLBaseTypeVisitor::write(const Types::ProductVersion& value) {
  FieldWriter(targetElement_, types_)
      .number(u"Major", value.major())
      .number(u"Minor", value.minor())
      .number(u"Patch", value.patch())
      .number(u"Build", value.build())
      .number(u"Release", static_cast<int>(value.releaseVersion()));
}

void ToXMLBaseTypeVisitor::write(const Types::Timestamp& value) {
  FieldWriter(targetElement_, types_)
      .number(u"Year", value.year())
      .number(u"Month", value.month())
      .number(u"Day", value.day())
      .number(u"Hour", value.hour())
      .number(u"Minute", value.minute())
      .number(u"Second", value.second())
      .number(u"mSec4", value.milliSecond() / 4);
}

void ToXMLBaseTypeVisitor::write(const Types::RGBALayout& value) {
  const Namespace types{kLegacyTypes.prefix, types_.uri};
  FieldWriter components(targetElement_, types);
  for (uint32 i = 0; i < kRGBAComponents; ++i) {
    const auto component = value.get(i);
    FieldWriter(components.element(u"RGBAComponent"), types)
        .number(u"Code", component.code)
        .number(u"Depth", component.depth);
  }
}

void ToXMLBaseTypeVisitor::write(const Types::J2KPictureComponent& value) {
  FieldWriter(targetElement_, kJ2KTypes)
      .number(u"Ssizi", value.sSizi())
      .number(u"XRSizi", value.xRSizi())
      .number(u"YRSizi", value.yRSizi());
}

void ToXMLBaseTypeVisitor::write(const Types::J2KCodingStyleDefault& value) {
  FieldWriter(targetElement_, kJ2KTypes)
      .number(u"Scod", value.scod())
      .number(u"SGcod", value.sGcod())
      .hex(u"Spcod", value.spcod());
}

void ToXMLBaseTypeVisitor::write(const Types::J2KQuantisationDefault& value) {
  FieldWriter(targetElement_, kJ2KTypes).number(u"Sqcd", value.sqcd()).hex(u"SPgcd", value.sPgcd());
}

void ToXMLBaseTypeVisitor::write(const Types::Collection& value) {
  for (uint32 i = 0; i < value.size(); ++i) value.at(i).accept(*this);
}

}  // namespace Vantor::XMLBuilder

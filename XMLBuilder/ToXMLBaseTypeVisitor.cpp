#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include <array>
#include <charconv>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "XMLBuilder/ValueVocabulary.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::XMLBuilder {

namespace {

using xercesc::DOMElement;

/// The decimal digits of a number, on the stack: a document holds hundreds of thousands of them.
class Decimal {
 public:
  template <class Integer>
  explicit Decimal(Integer number) {
    std::array<char, kSize> digits{};
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    std::copy(static_cast<const char*>(digits.data()), end, text_.begin());
  }
  const char16_t* text() const { return text_.data(); }

 private:
  static constexpr std::size_t kSize = 24;  // "-9223372036854775808" and some
  std::array<char16_t, kSize> text_{};
};

void appendText(DOMElement& element, const char16_t* text) {
  element.appendChild(element.getOwnerDocument()->createTextNode(text));
}

/// Appends the fields of a compound value to its target, one child element each.
class FieldWriter {
 public:
  /// @param target  null writes nothing.
  FieldWriter(DOMElement* target, const char16_t* uri) : target_(target), uri_(uri) {}

  DOMElement* element(const char16_t* qualifiedName) {
    if (target_ == nullptr) return nullptr;
    DOMElement* child = target_->getOwnerDocument()->createElementNS(uri_, qualifiedName);
    target_->appendChild(child);
    return child;
  }
  FieldWriter& text(const char16_t* qualifiedName, const char16_t* text) {
    if (DOMElement* child = element(qualifiedName)) appendText(*child, text);
    return *this;
  }
  template <class Integer>
  FieldWriter& number(const char16_t* qualifiedName, Integer number) {
    return text(qualifiedName, Decimal(number).text());
  }
  FieldWriter& hex(const char16_t* qualifiedName, const Types::SimpleDataType& bytes) {
    return text(qualifiedName, Platform::hexText<wstring>(bytes.rawBuffer(), bytes.encodedSize()).c_str());
  }

 private:
  DOMElement* target_;
  const char16_t* uri_;
};

bool isSt434(const DOMElement& target) {
  const XMLCh* uri = target.getNamespaceURI();
  return uri != nullptr && uri == Vocabulary::kSt434ElementsURI;
}

}  // namespace

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(DOMElement& target, NamespaceMap& namespaces)
    : vocabulary_(isSt434(target) ? &kSt434Values : &kLegacyValues), targetElement_(&target) {
  if (vocabulary_ == &kSt434Values) {
    namespaces.insertIfUnbound(Vocabulary::kSt434TypesURI, Vocabulary::kSt377TypesPrefix);
  } else {
    namespaces.insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
    namespaces.insertIfUnbound(Vocabulary::kS422MTypesURI, Vocabulary::kS422MTypesPrefix);
  }
}

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(xercesc::DOMAttr& target)
    : vocabulary_(&kLegacyValues), targetAttribute_(&target) {}

void ToXMLBaseTypeVisitor::writeText(const char16_t* text) {
  if (targetElement_ != nullptr) {
    appendText(*targetElement_, text);
  } else if (targetAttribute_ != nullptr) {
    targetAttribute_->setValue(text);
  }
}

template <class Integer>
void ToXMLBaseTypeVisitor::writeNumber(Integer number) {
  writeText(Decimal(number).text());
}

template <class Identifier>
void ToXMLBaseTypeVisitor::writeIdentifier(const Identifier& value) {
  writeText(value.toString(vocabulary_->identifierForm).c_str());
}

void ToXMLBaseTypeVisitor::writeHex(const Types::SimpleDataType& value) {
  writeText(Platform::hexText<wstring>(value.rawBuffer(), value.encodedSize()).c_str());
}

void ToXMLBaseTypeVisitor::writeItems(const Types::Collection& value) {
  for (uint32 i = 0; i < value.size(); ++i) value.at(i).accept(*this);
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KQuantisationDefault& value) {
  FieldWriter(targetElement_, Vocabulary::kS422MTypesURI.data())
      .number(ValueNames::kSqcd, value.sqcd())
      .hex(ValueNames::kSPgcd, value.sPgcd());
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KCodingStyleDefault& value) {
  FieldWriter(targetElement_, Vocabulary::kS422MTypesURI.data())
      .number(ValueNames::kScod, value.scod())
      .number(ValueNames::kSGcod, value.sGcod())
      .hex(ValueNames::kSpcod, value.spcod());
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KPictureComponent& value) {
  FieldWriter(targetElement_, Vocabulary::kS422MTypesURI.data())
      .number(ValueNames::kSsizi, value.sSizi())
      .number(ValueNames::kXRSizi, value.xRSizi())
      .number(ValueNames::kYRSizi, value.yRSizi());
}

void ToXMLBaseTypeVisitor::visit(const Types::RGBALayout& value) {
  FieldWriter components(targetElement_, vocabulary_->typesURI);
  for (uint32 i = 0; i < kRGBAComponentsWritten; ++i) {
    const auto component = value.get(i);
    FieldWriter(components.element(ValueNames::kRGBAComponent), vocabulary_->typesURI)
        .number(ValueNames::kCode, component.code)
        .number(ValueNames::kDepth, component.depth);
  }
}

void ToXMLBaseTypeVisitor::visit(const Types::Rational& value) {
  FieldWriter(targetElement_, vocabulary_->typesURI)
      .number(vocabulary_->numerator, value.numerator())
      .number(vocabulary_->denominator, value.denominator());
}

void ToXMLBaseTypeVisitor::visit(const Types::ProductVersion& value) {
  FieldWriter(targetElement_, vocabulary_->typesURI)
      .number(vocabulary_->major, value.major())
      .number(vocabulary_->minor, value.minor())
      .number(vocabulary_->patch, value.patch())
      .number(vocabulary_->build, value.build())
      .number(vocabulary_->release, static_cast<int>(value.releaseVersion()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Timestamp& value) {
  FieldWriter(targetElement_, vocabulary_->typesURI)
      .number(vocabulary_->year, value.year())
      .number(vocabulary_->month, value.month())
      .number(vocabulary_->day, value.day())
      .number(vocabulary_->hour, value.hour())
      .number(vocabulary_->minute, value.minute())
      .number(vocabulary_->second, value.second())
      .number(vocabulary_->mSec4, value.milliSecond() / 4);
}

void ToXMLBaseTypeVisitor::visit(const Types::VersionType& value) { writeNumber(value.major() * 256 + value.minor()); }

void ToXMLBaseTypeVisitor::visit(const Types::UTF16& value) {
  const char16_t text[] = {static_cast<char16_t>(value.value()), u'\0'};
  writeText(text);
}

void ToXMLBaseTypeVisitor::visit(const Types::UTF16String& value) {
  writeText(Platform::utf16ToWstring(value.value()).c_str());
}
void ToXMLBaseTypeVisitor::visit(const Types::UTF8String& value) {
  writeText(Platform::utf16ToWstring(value.value()).c_str());
}
void ToXMLBaseTypeVisitor::visit(const Types::ISO8String& value) {
  writeText(XMLUtils::UnicodeString(value.value()).wchar());
}
void ToXMLBaseTypeVisitor::visit(const Types::ISO7String& value) {
  writeText(XMLUtils::UnicodeString(value.value()).wchar());
}

void ToXMLBaseTypeVisitor::visit(const Types::UUID& value) { writeIdentifier(value); }
void ToXMLBaseTypeVisitor::visit(const Types::UniversalLabel& value) { writeIdentifier(value); }
void ToXMLBaseTypeVisitor::visit(const Types::UMID32& value) { writeIdentifier(value); }
void ToXMLBaseTypeVisitor::visit(const Types::UMID64& value) { writeText(value.toString(kDottedForm).c_str()); }
void ToXMLBaseTypeVisitor::visit(const Types::AUID& value) { writeText(value.toString(kDottedForm).c_str()); }
void ToXMLBaseTypeVisitor::visit(const Types::LocalTag& value) { writeText(value.toString(kDottedForm).c_str()); }
void ToXMLBaseTypeVisitor::visit(const Types::StrongReference& value) { writeText(value.toString().c_str()); }
void ToXMLBaseTypeVisitor::visit(const Types::WeakReference& value) { writeText(value.toString().c_str()); }

void ToXMLBaseTypeVisitor::visit(const Types::DataValue& value) { writeHex(value); }
void ToXMLBaseTypeVisitor::visit(const Types::Unknown& value) { writeHex(value); }
void ToXMLBaseTypeVisitor::visit(const Types::DataStream& value) { writeHex(value); }

void ToXMLBaseTypeVisitor::visit(const Types::Boolean& value) { writeText(value.value() ? u"1" : u"0"); }
void ToXMLBaseTypeVisitor::visit(const Types::UInt8& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::UInt16& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::UInt32& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::UInt64& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Int8& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Int16& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Int32& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Int64& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Length& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Position& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::Orientation& value) { writeNumber(value.value()); }
void ToXMLBaseTypeVisitor::visit(const Types::SignalStandard& value) { writeNumber(value.value()); }

void ToXMLBaseTypeVisitor::visit(const Types::Batch& value) { writeItems(value); }
void ToXMLBaseTypeVisitor::visit(const Types::Array& value) { writeItems(value); }

}  // namespace Vantor::XMLBuilder

#include "XMLBuilder/CompoundValueFromXML.h"

#include <limits>
#include <vector>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/J2KCodingStyleDefault.h"
#include "Core/Types/J2KPictureComponent.h"
#include "Core/Types/J2KQuantisationDefault.h"
#include "Core/Types/ProductVersion.h"
#include "Core/Types/RGBALayout.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Timestamp.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLBuilder::Vocabulary::kS422MTypesPrefix;
using XMLBuilder::Vocabulary::kTypesPrefix;

namespace {

/// Throws unless a condition holds; the message names the condition and the line is part of it.
void require(bool holds, const std::string& condition, const std::string& explanation, int line) {
  if (!holds) throw Exceptions::InvalidFormat(condition + ": " + explanation, kValueSource, line);
}

/// What a lossless import says of a part that is not there, or holds nothing.
[[noreturn]] void throwMissing(const char16_t* name, int line) {
  throw Exceptions::InvalidFormat(
      Utils::wstringToString(wstring(name)) + " is missing or empty, and the value needs it", kValueSource, line);
}

/// All children of a compound value with a name.
std::vector<const DOMElement*> childrenNamed(const DOMNode& node, std::u16string_view prefix, const char16_t* name,
                                             ImportDocument& document) {
  if (document.isLossless()) return LosslessForms::fieldsNamed(node, prefix, name);
  const auto found = document.rootScope().all(node, wstring(prefix), name);
  return {found.begin(), found.end()};
}

/// The first of them; null when there is none.
const DOMElement* childNamed(const DOMNode& node, std::u16string_view prefix, const char16_t* name,
                             ImportDocument& document) {
  if (!document.isLossless()) return document.rootScope().first(node, wstring(prefix), name);
  const auto found = childrenNamed(node, prefix, name, document);
  return found.empty() ? nullptr : found.front();
}

/// The children of one compound value.
class Fields {
 public:
  /// @param names  all that the value may have; a lossless import takes no other and none twice.
  Fields(const DOMNode& node, std::u16string_view prefix, LosslessForms::FieldNames names, ImportDocument& document)
      : node_(node), prefix_(prefix), document_(document) {
    if (document.isLossless()) LosslessForms::checkFields(node, prefix, names);
  }

  /// The text of the first child with a name; empty when there is none.
  wstring text(const char16_t* name) const {
    const DOMElement* child = childNamed(node_, prefix_, name, document_);
    if (child == nullptr) return {};
    return document_.isLossless() ? LosslessForms::plainText(*child) : nodeText(*child, document_.blankText());
  }
  /// The same for a child that must be there.
  wstring text(const char16_t* name, const std::string& variable, int line) const {
    wstring found = text(name);
    if (document_.isLossless() && found.empty()) throwMissing(name, line);
    require(!found.empty(), "!" + variable + ".empty ()",
            "No '" + Utils::wstringToString(name) + "' element in XML metadata", line);
    return found;
  }
  /// A number as unsigned 32 bits, of which the low ones are kept.
  template <class Integer>
  Integer number(const char16_t* name) const {
    return parse<Integer>(text(name), name);
  }
  template <class Integer>
  Integer number(const char16_t* name, const std::string& variable, int line) const {
    return parse<Integer>(text(name, variable, line), name);
  }
  /// Bytes in hexadecimal digits.
  Bytes hex(const char16_t* name, const std::string& variable, int line) const {
    const bool isThere = document_.isLossless() && childNamed(node_, prefix_, name, document_) != nullptr;
    return isThere ? LosslessForms::bytes(text(name)) : parseHexString(text(name, variable, line));
  }

 private:
  template <class Integer>
  Integer parse(const wstring& text, const char16_t* name) const {
    using Limits = std::numeric_limits<Integer>;
    if (!document_.isLossless()) return static_cast<Integer>(Platform::readDecimal<uint32>(text));
    if (text.empty()) throwMissing(name, __LINE__);
    return static_cast<Integer>(LosslessForms::number(text, Limits::min(), Limits::max(), name));
  }

  const DOMNode& node_;
  std::u16string_view prefix_;
  ImportDocument& document_;
};

wstring retrieveNodeName(const DOMNode& node) { return XMLUtils::utf16ToWstring(node.getLocalName()); }

/// The element around a JPEG 2000 value.
const DOMNode& findComponent(const DOMNode& node, const char16_t* name, const std::string& property, int line,
                             ImportDocument& document) {
  const auto* element = childNamed(node, kS422MTypesPrefix, name, document);
  if (document.isLossless()) {
    if (element == nullptr) return node;  // the export writes none
    LosslessForms::checkFields(node, kS422MTypesPrefix, {name});
  }
  const auto symbol = Utils::wstringToString(name);
  const auto explanation = "No '" + symbol + "' element from '" + property + "' in XML metadata";
  require(element != nullptr, "domComponentElement != 0", explanation, line);
  require(retrieveNodeName(*element) == name, "retrieveNodeName (domComponentElement) == L\"" + symbol + "\"",
          explanation, line + 1);
  return *element;
}

}  // namespace

auto_ptr<Types::SimpleDataType> readRational(const DOMNode& node, ImportDocument& document) {
  const Fields fields(node, kTypesPrefix, {u"Numerator", u"Denominator"}, document);
  const auto numerator = fields.number<int32>(u"Numerator");
  return std::make_unique<Types::Rational>(numerator, fields.number<int32>(u"Denominator"));
}

auto_ptr<Types::SimpleDataType> readProductVersion(const DOMNode& node, ImportDocument& document) {
  const Fields fields(node, kTypesPrefix, {u"Major", u"Minor", u"Patch", u"Build", u"Release"}, document);
  const auto major = fields.number<uint16>(u"Major");
  const auto minor = fields.number<uint16>(u"Minor");
  const auto patch = fields.number<uint16>(u"Patch");
  const auto build = fields.number<uint16>(u"Build");
  const auto release = static_cast<Types::ReleaseVersion>(fields.number<uint16>(u"Release"));
  return std::make_unique<Types::ProductVersion>(major, minor, patch, build, release);
}

auto_ptr<Types::SimpleDataType> readRGBALayout(const DOMNode& node, ImportDocument& document) {
  if (document.isLossless()) LosslessForms::checkRepeatedFields(node, kTypesPrefix, {u"RGBAComponent"});
  auto layout = std::make_unique<Types::RGBALayout>();
  uint32 index = 0;
  for (const auto* component : childrenNamed(node, kTypesPrefix, u"RGBAComponent", document)) {
    const Fields fields(*component, kTypesPrefix, {u"Code", u"Depth"}, document);
    const auto code = fields.number<uint8>(u"Code");
    layout->set(index++, {code, fields.number<uint8>(u"Depth")});
  }
  return layout;
}

auto_ptr<Types::SimpleDataType> readTimestamp(const DOMNode& node, ImportDocument& document) {
  const Fields fields(node, kTypesPrefix, {u"Year", u"Month", u"Day", u"Hour", u"Minute", u"Second", u"mSec4"},
                      document);
  const auto second = fields.number<uint8>(u"Second", "secondsValue", 374);
  const auto milliSecond = document.isLossless()
                               ? LosslessForms::milliSeconds(fields.number<uint8>(u"mSec4", "milliValue", 377))
                               : fields.number<uint16>(u"mSec4", "milliValue", 377);
  const auto year = fields.number<uint16>(u"Year", "yearValue", 380);
  const auto month = fields.number<uint8>(u"Month", "monthValue", 383);
  const auto day = fields.number<uint8>(u"Day", "dayValue", 386);
  const auto hour = fields.number<uint8>(u"Hour", "hourValue", 389);
  const auto minute = fields.number<uint8>(u"Minute", "minutesValue", 392);
  return std::make_unique<Types::Timestamp>(year, month, day, hour, minute, second, milliSecond);
}

auto_ptr<Types::SimpleDataType> readJ2KPictureComponent(const DOMNode& node, ImportDocument& document) {
  const Fields fields(findComponent(node, u"J2KPictureComponent", "PictureComponentSizing", 255, document),
                      kS422MTypesPrefix, {u"Ssizi", u"XRSizi", u"YRSizi"}, document);
  const auto sSizi = fields.number<uint8>(u"Ssizi", "sSiziValue", 259);
  const auto xRSizi = fields.number<uint8>(u"XRSizi", "xRSiziValue", 262);
  return std::make_unique<Types::J2KPictureComponent>(sSizi, xRSizi,
                                                      fields.number<uint8>(u"YRSizi", "yRSiziValue", 265));
}

auto_ptr<Types::SimpleDataType> readJ2KCodingStyleDefault(const DOMNode& node, ImportDocument& document) {
  const Fields fields(findComponent(node, u"J2KCodingStyleDefault", "CodingStyleDefault", 296, document),
                      kS422MTypesPrefix, {u"Scod", u"SGcod", u"Spcod"}, document);
  const auto scod = fields.number<uint8>(u"Scod", "scodValue", 300);
  const auto sGcod = fields.number<uint32>(u"SGcod", "sGcodValue", 303);
  const auto spcod = fields.hex(u"Spcod", "spcodValue", 306);
  return std::make_unique<Types::J2KCodingStyleDefault>(scod, sGcod, spcod.data(), spcod.size());
}

auto_ptr<Types::SimpleDataType> readJ2KQuantisationDefault(const DOMNode& node, ImportDocument& document) {
  const Fields fields(findComponent(node, u"J2KQuantisationDefault", "QuantisationDefault", 337, document),
                      kS422MTypesPrefix, {u"Sqcd", u"SPgcd"}, document);
  const auto sqcd = fields.number<uint8>(u"Sqcd", "sqcdValue", 341);
  const auto sPgcd = fields.hex(u"SPgcd", "sPgcdValue", 344);
  return std::make_unique<Types::J2KQuantisationDefault>(sqcd, sPgcd.data(), sPgcd.size());
}

}  // namespace Vantor::XML2Partition

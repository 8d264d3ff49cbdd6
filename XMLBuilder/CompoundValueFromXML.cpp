#include "XMLBuilder/CompoundValueFromXML.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "Core/Types/J2KCodingStyleDefault.h"
#include "Core/Types/J2KPictureComponent.h"
#include "Core/Types/J2KQuantisationDefault.h"
#include "Core/Types/ProductVersion.h"
#include "Core/Types/RGBALayout.h"
#include "Core/Types/Rational.h"
#include "Core/Types/Timestamp.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XML2Partition {

using xercesc::DOMNode;
using XMLBuilder::Vocabulary::kS422MTypesPrefix;
using XMLBuilder::Vocabulary::kTypesPrefix;

namespace {

/// The children of one compound value.
class Fields {
 public:
  /// @param names  all children that the value may have.
  Fields(const DOMNode& node, std::u16string_view prefix, FieldNames names, ReadingRules& rules)
      : node_(node), prefix_(prefix), rules_(rules) {
    rules.checkFields(node, prefix, names, false);
  }

  /// The text of the first child with a name; empty when there is none.
  wstring text(const Field& field) const {
    const auto* child = find(field);
    const wstring found = child == nullptr ? wstring() : rules_.fieldText(*child);
    if (found.empty() && field.variable != nullptr) rules_.refuseMissing(field);
    return found;
  }
  template <class Integer>
  Integer number(const Field& field) const {
    using Limits = std::numeric_limits<Integer>;
    return static_cast<Integer>(rules_.fieldNumber(text(field), Limits::min(), Limits::max(), field.name));
  }
  Bytes octets(const Field& field) const {
    const auto* child = find(field);
    if (child == nullptr) rules_.refuseMissing(field);
    return rules_.fieldOctets(rules_.fieldText(*child), field);
  }

 private:
  const xercesc::DOMElement* find(const Field& field) const {
    const auto found = rules_.fields(node_, prefix_, field.name);
    return found.empty() ? nullptr : found.front();
  }

  const DOMNode& node_;
  std::u16string_view prefix_;
  ReadingRules& rules_;
};

auto_ptr<Types::SimpleDataType> readRational(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(node, kTypesPrefix, {u"Numerator", u"Denominator"}, rules);
  const auto numerator = fields.number<int32>({u"Numerator"});
  return std::make_unique<Types::Rational>(numerator, fields.number<int32>({u"Denominator"}));
}

auto_ptr<Types::SimpleDataType> readProductVersion(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(node, kTypesPrefix, {u"Major", u"Minor", u"Patch", u"Build", u"Release"}, rules);
  const auto major = fields.number<uint16>({u"Major"});
  const auto minor = fields.number<uint16>({u"Minor"});
  const auto patch = fields.number<uint16>({u"Patch"});
  const auto build = fields.number<uint16>({u"Build"});
  const auto release = static_cast<Types::ReleaseVersion>(fields.number<uint16>({u"Release"}));
  return std::make_unique<Types::ProductVersion>(major, minor, patch, build, release);
}

auto_ptr<Types::SimpleDataType> readRGBALayout(const DOMNode& node, ReadingRules& rules) {
  rules.checkFields(node, kTypesPrefix, {u"RGBAComponent"}, true);
  auto layout = std::make_unique<Types::RGBALayout>();
  uint32 index = 0;
  for (const auto* component : rules.fields(node, kTypesPrefix, u"RGBAComponent")) {
    const Fields fields(*component, kTypesPrefix, {u"Code", u"Depth"}, rules);
    const auto code = fields.number<uint8>({u"Code"});
    layout->set(index++, {code, fields.number<uint8>({u"Depth"})});
  }
  return layout;
}

auto_ptr<Types::SimpleDataType> readTimestamp(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(node, kTypesPrefix, {u"Year", u"Month", u"Day", u"Hour", u"Minute", u"Second", u"mSec4"}, rules);
  const auto second = fields.number<uint8>({u"Second", "secondsValue", 374});
  const auto milliSecond = rules.milliseconds(fields.text({u"mSec4", "milliValue", 377}), u"mSec4");
  const auto year = fields.number<uint16>({u"Year", "yearValue", 380});
  const auto month = fields.number<uint8>({u"Month", "monthValue", 383});
  const auto day = fields.number<uint8>({u"Day", "dayValue", 386});
  const auto hour = fields.number<uint8>({u"Hour", "hourValue", 389});
  const auto minute = fields.number<uint8>({u"Minute", "minutesValue", 392});
  return std::make_unique<Types::Timestamp>(year, month, day, hour, minute, second, milliSecond);
}

auto_ptr<Types::SimpleDataType> readJ2KPictureComponent(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(rules.component(node, u"J2KPictureComponent", "PictureComponentSizing", 255), kS422MTypesPrefix,
                      {u"Ssizi", u"XRSizi", u"YRSizi"}, rules);
  const auto sSizi = fields.number<uint8>({u"Ssizi", "sSiziValue", 259});
  const auto xRSizi = fields.number<uint8>({u"XRSizi", "xRSiziValue", 262});
  return std::make_unique<Types::J2KPictureComponent>(sSizi, xRSizi,
                                                      fields.number<uint8>({u"YRSizi", "yRSiziValue", 265}));
}

auto_ptr<Types::SimpleDataType> readJ2KCodingStyleDefault(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(rules.component(node, u"J2KCodingStyleDefault", "CodingStyleDefault", 296), kS422MTypesPrefix,
                      {u"Scod", u"SGcod", u"Spcod"}, rules);
  const auto scod = fields.number<uint8>({u"Scod", "scodValue", 300});
  const auto sGcod = fields.number<uint32>({u"SGcod", "sGcodValue", 303});
  const auto spcod = fields.octets({u"Spcod", "spcodValue", 306});
  return std::make_unique<Types::J2KCodingStyleDefault>(scod, sGcod, spcod.data(), spcod.size());
}

auto_ptr<Types::SimpleDataType> readJ2KQuantisationDefault(const DOMNode& node, ReadingRules& rules) {
  const Fields fields(rules.component(node, u"J2KQuantisationDefault", "QuantisationDefault", 337), kS422MTypesPrefix,
                      {u"Sqcd", u"SPgcd"}, rules);
  const auto sqcd = fields.number<uint8>({u"Sqcd", "sqcdValue", 341});
  const auto sPgcd = fields.octets({u"SPgcd", "sPgcdValue", 344});
  return std::make_unique<Types::J2KQuantisationDefault>(sqcd, sPgcd.data(), sPgcd.size());
}

constexpr std::pair<Types::Identifiers::Identifier, CompoundReader> kCompoundReaders[] = {
    {Types::Identifiers::kRational, readRational},
    {Types::Identifiers::kProductVersion, readProductVersion},
    {Types::Identifiers::kRGBALayout, readRGBALayout},
    {Types::Identifiers::kTimestamp, readTimestamp},
    {Types::Identifiers::kJ2KPictureComponent, readJ2KPictureComponent},
    {Types::Identifiers::kJ2KCodingStyleDefault, readJ2KCodingStyleDefault},
    {Types::Identifiers::kJ2KQuantisationDefault, readJ2KQuantisationDefault}};

}  // namespace

CompoundReader compoundReader(Types::Identifiers::Identifier type) {
  const auto found = std::find_if(std::begin(kCompoundReaders), std::end(kCompoundReaders),
                                  [type](const auto& one) { return one.first == type; });
  return found == std::end(kCompoundReaders) ? nullptr : found->second;
}

}  // namespace Vantor::XML2Partition

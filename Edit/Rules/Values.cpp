#include <algorithm>
#include <array>
#include <unordered_set>

#include "Core/Comparison/ValueText.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Types/Collection.h"
#include "Core/Types/Timestamp.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about single values.
namespace Vantor::Edit {

namespace {

using Types::Rational;

template <class Visit>
void forEachNumber(const Types::SimpleDataType& value, Visit&& visit) {
  if (const auto number = integerOf(value)) return visit(*number);
  const auto type = value.identifier();
  if (type != Types::Identifiers::kArray && type != Types::Identifiers::kBatch) return;
  const auto& collection = static_cast<const Types::Collection&>(value);
  for (uint32 i = 0; i < collection.size(); ++i) {
    if (const auto number = integerOf(collection.at(i))) visit(*number);
  }
}

void checkEnumeration(const MetadataSet& set, const Element& element, Report& report) {
  const auto* definition = definitionOf(element);
  if (definition == nullptr || definition->enumeration() == nullptr || element.wireValue() == nullptr) return;
  const auto& enumeration = *definition->enumeration();
  forEachNumber(*element.wireValue(), [&](int64 number) {
    if (!enumeration.has(number)) {
      report.add(set, definition->symbol(), {std::to_string(number), enumeration.name()});
    }
  });
}

void checkEnumerations(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    for (const auto* element : set->inDefinitionOrder()) checkEnumeration(*set, *element, report);
  }
}

void checkEditRates(const Model& model, Report& report) {
  constexpr std::array kProperties = {"EditRate", "EventTrackEditRate"};
  forEachRate(model, kProperties, [&](const MetadataSet& set, const char* property, const Rational& rate) {
    if (!isPositive(rate)) report.add(set, property, {valueText(rate)});
  });
}

void checkLengths(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    for (const char* property : {"ComponentLength", "EssenceLength"}) {
      const auto length = integerOf(*set, property);
      if (length.value_or(0) < -1) report.add(*set, property, {std::to_string(*length)});
    }
  }
}

/// Values of more than 65,535 octets do not fit the 2-octet lengths of local sets.
void checkLongValues(const Model& model, Report& report) {
  for (const auto* set : model.metadata().sets()) {
    if (KLV::isLocalSet(set->key()) && KLV::hasBERLengths(set->key())) report.add(*set);
  }
}

void checkTimecodeBase(const Model& model, Report& report) {
  for (const auto* set : model.all("Timecode")) {
    if (integerOf(*set, "FramesPerSecond") == 0) report.add(*set, "FramesPerSecond");
  }
}

void checkDropFrame(const Model& model, Report& report) {
  for (const auto* set : model.all("Timecode")) {
    const auto base = integerOf(*set, "FramesPerSecond");
    const bool drops = integerOf(*set, "DropFrame").value_or(0) != 0;
    if (drops && base && *base != 30 && *base != 60 && *base != 120)
      report.add(*set, "DropFrame", {std::to_string(*base)});
  }
}

/// The octet has a code of 4 bits in the bits 6 to 3, and the shape of the coded frame in bit 2 (ST 377-1).
bool isActiveFormat(int64 octet) {
  constexpr int64 kOtherBits = 0x83;
  constexpr std::array kReservedCodes = {1, 5, 6, 7, 12};  // ST 2016-1
  const auto code = octet >> 3 & 0x0F;
  return (octet & kOtherBits) == 0 &&
         std::find(kReservedCodes.begin(), kReservedCodes.end(), code) == kReservedCodes.end();
}

void checkActiveFormats(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    const auto octet = integerOf(*set, "ActiveFormatDescriptor");
    if (octet && !isActiveFormat(*octet)) report.add(*set, "ActiveFormatDescriptor", {std::to_string(*octet)});
  }
}

int daysIn(int year, int month) {
  constexpr std::array kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[static_cast<std::size_t>(month - 1)] + (isLeap && month == 2 ? 1 : 0);
}

/// Zeros stand for an unknown part (ST 377-1): of the date, or of everything.
bool isDate(const Types::Timestamp& time) {
  if (time.month() > 12 || time.hour() > 23 || time.minute() > 59 || time.second() > 60) return false;
  const int days = time.month() == 0 ? 31 : daysIn(time.year(), time.month());
  return time.day() <= days && time.milliSecond() < 1000;
}

void checkDates(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    for (const auto& element : *set) {
      const auto* value = element.wireValue();
      if (value == nullptr || value->identifier() != Types::Identifiers::kTimestamp) continue;
      const auto& time = static_cast<const Types::Timestamp&>(*value);
      if (!isDate(time)) report.add(*set, symbolOf(element), {valueText(time)});
    }
  }
}

/// Calls `visit(element, definition)` for the properties of known sets that the dictionary knows by their tags and that
/// still were not read as such.
template <class Visit>
void forEachUnread(const Model& model, const MetadataSet& set, Visit&& visit) {
  const auto& tags = model.metadata().partitionDictionary();
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    const auto* unknown = (*at).metaAttribute().asUnknown();
    const auto* definition = unknown == nullptr ? nullptr : tags.findElement((*at).localTag());
    if (definition != nullptr) visit(*at, *definition);
  }
}

bool isDoubled(const MetadataSet& set, const MetaMetadata::MetaElement& definition) {
  const auto* present = set.find(definition.key());
  return present != nullptr && present->isPresent();
}

void checkDoubledProperties(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    forEachUnread(model, *set, [&](const Element&, const MetaMetadata::MetaElement& definition) {
      if (isDoubled(*set, definition)) report.add(*set, definition.symbol());
    });
  }
}

/// Registers and standards differ on the size of some types, such as versions of programs; files have both, and one of
/// them is decoded.
void checkUnreadable(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    forEachUnread(model, *set, [&](const Element& element, const MetaMetadata::MetaElement& definition) {
      if (isDoubled(*set, definition) || element.wireValue() == nullptr) return;
      report.add(*set, definition.symbol(), {valueText(*set, element), unreadValueOf(*set, element).reason});
    });
  }
}

void checkMisplaced(const Model& model, Report& report) {
  for (const auto* set : model.sets()) {
    for (auto at = set->invalidBegin(); at != set->invalidEnd(); ++at) {
      if (definitionOf(*at) != nullptr) report.add(*set, symbolOf(*at));
    }
  }
}

}  // namespace

const RuleTable& valueRules() {
  static const RuleTable table = {
      {{"enumeration-value", Severity::kWarning, "{number} is no value of {enumeration}", "ST 2003"},
       checkEnumerations},
      {{"edit-rate", Severity::kError, "{rate} is no rate: both numbers have to be above 0", "ST 377-1, Track"},
       checkEditRates},
      {{"length-value", Severity::kError, "{length} is no length: it is 0 or more, or -1 for an unknown one",
        "ST 377-1, Structural Component"},
       checkLengths},
      {{"long-values", Severity::kWarning,
        "the lengths of the set's values are BER-coded instead of 2 octets, which few programs read",
        "ST 377-1, Local Set Coding; ST 336"},
       checkLongValues},
      {{"timecode-base", Severity::kError, "a timecode cannot have 0 frames per second",
        "ST 377-1, Timecode Component"},
       checkTimecodeBase},
      {{"drop-frame", Severity::kWarning, "frames are dropped at 30, 60 and 120 frames per second only, not at {base}",
        "ST 12-1, ST 12-3"},
       checkDropFrame},
      {{"active-format", Severity::kWarning,
        "{octet} is no active format descriptor: it is 8 times a code of ST 2016-1, plus 4 for a coded frame of 16:9",
        "ST 377-1, Generic Picture Essence Descriptor; ST 2016-1"},
       checkActiveFormats},
      {{"date-value", Severity::kWarning, "{date} is no date", "ST 377-1, Timestamp"}, checkDates},
      {{"doubled-property", Severity::kError, "the set has the property twice", "ST 336"}, checkDoubledProperties},
      {{"unreadable-value", Severity::kNote, "the value {value} cannot be decoded as the property's type: {reason}",
        "ST 335, ST 2003"},
       checkUnreadable},
      {{"misplaced-property", Severity::kNote, "the set's definition does not list the property", "ST 395"},
       checkMisplaced}};
  return table;
}

}  // namespace Vantor::Edit

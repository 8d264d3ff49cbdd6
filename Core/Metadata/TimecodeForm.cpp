#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Boolean.h"
#include "Core/Types/Position.h"
#include "Core/Types/Text/Timecode.h"
#include "Core/Types/UInt16.h"

/// Start timecodes, by the base in their set.
namespace Vantor {

namespace {

template <class Value>
const Value* ownValue(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  const auto* value = element == nullptr ? nullptr : element->wireValue();
  const bool isOfType = value != nullptr && value->identifier() == Value::kIdentifier;
  return isOfType ? static_cast<const Value*>(value) : nullptr;
}

Types::TimecodeBase baseOf(const MetadataSet& set) {
  const auto* frames = ownValue<Types::UInt16>(set, "FramesPerSecond");
  const auto* drops = ownValue<Types::Boolean>(set, "DropFrame");
  return {frames == nullptr ? uint16{0} : frames->value(), drops != nullptr && drops->value()};
}

bool isStartTimecode(const PropertyPlace& place, Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kPosition && place.set != nullptr && place.definition->symbol() == "StartTimecode";
}

TextNoun nounOfTimecode(const PropertyPlace& place) {
  constexpr const char* kNoun = "a timecode or a number of frames";
  const auto base = baseOf(*place.set);
  if (!base.isValid()) return {kNoun, "900000"};
  return {kNoun, base.drops ? "10:00:00;00 or 1078920" : "10:00:00:00 or 900000"};
}

std::optional<wstring> printStart(const PropertyPlace& place, const Types::SimpleDataType& item) {
  return Types::printTimecode(static_cast<const Types::Position&>(item).value(), baseOf(*place.set));
}

std::optional<Types::ParsedValue> parseStart(const PropertyPlace& place, Types::Identifiers::Identifier,
                                             std::u16string_view text) {
  auto timecode = Types::parseTimecode(text, baseOf(*place.set));
  if (!timecode.isTimecode) return std::nullopt;
  if (!timecode.reason.empty()) return Types::ParsedValue(std::move(timecode.reason));
  return std::make_unique<Types::Position>(timecode.frames);
}

}  // namespace

const PropertyForm kTimecodeForm = {isStartTimecode, nounOfTimecode, printStart, parseStart};

}  // namespace Vantor

#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Text/NumberText.h"
#include "Core/Types/UInt8.h"

/// Active format descriptors: the code of ST 2016-1 in the bits 6 to 3, and bit 2 for a coded frame of 16:9 (ST 377-1).
namespace Vantor {

namespace {

constexpr unsigned kReservedBits = 0x83;

bool isActiveFormat(const PropertyPlace& place, Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kUInt8 && place.definition->symbol() == "ActiveFormatDescriptor";
}

TextNoun nounOfFormat(const PropertyPlace&) {
  return {"an active format descriptor", "68 for code 8 in 16:9, 64 for code 8 in 4:3"};
}

std::optional<wstring> printFormat(const PropertyPlace&, const Types::SimpleDataType&) { return std::nullopt; }

/// A code alone is an easy mistake.
std::optional<Types::ParsedValue> parseFormat(const PropertyPlace&, Types::Identifiers::Identifier,
                                              std::u16string_view text) {
  auto parsed = Types::typeText(Types::Identifiers::kUInt8)->parse(text);
  if (parsed.value == nullptr) return parsed;
  const unsigned number = static_cast<const Types::UInt8&>(*parsed.value).value();
  if ((number & kReservedBits) == 0) return parsed;
  return Types::ParsedValue("the value is 8 times the AFD code, plus 4 for 16:9; other bits are 0");
}

}  // namespace

const PropertyForm kActiveFormatForm = {isActiveFormat, nounOfFormat, printFormat, parseFormat};

}  // namespace Vantor

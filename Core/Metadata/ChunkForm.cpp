#include <algorithm>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/DataStream.h"
#include "Core/Types/Text/TypeText.h"

/// The identifiers of RIFF chunks: four octets, which are characters as a rule.
namespace Vantor {

namespace {

constexpr std::size_t kOctets = 4;

bool isChunkID(const PropertyPlace& place, Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kDataStream && place.definition->symbol() == "RIFFChunkID";
}

TextNoun nounOfChunk(const PropertyPlace&) { return {"the ID of a RIFF chunk, of four octets", "axml or 61786D6C"}; }

bool isPrintable(char16_t character) { return character >= u' ' && character <= u'~'; }

std::optional<wstring> printChunk(const PropertyPlace&, const Types::SimpleDataType& item) {
  const wstring text(item.rawBuffer(), item.rawBuffer() + item.encodedSize());
  const bool isText = text.size() == kOctets && std::all_of(text.begin(), text.end(), isPrintable);
  return isText ? std::optional(text) : std::nullopt;
}

/// Four digits are four characters, as no ID has two octets.
std::optional<Types::ParsedValue> parseChunk(const PropertyPlace&, Types::Identifiers::Identifier type,
                                             std::u16string_view text) {
  if (text.size() == kOctets && std::all_of(text.begin(), text.end(), isPrintable)) {
    const Bytes octets(text.begin(), text.end());
    return Types::ParsedValue(std::make_unique<Types::DataStream>(octets));
  }
  auto parsed = Types::typeText(type)->parse(text);
  const bool hasSize = parsed.value != nullptr && parsed.value->encodedSize() == kOctets;
  return hasSize ? std::move(parsed) : Types::ParsedValue();
}

}  // namespace

const PropertyForm kChunkForm = {isChunkID, nounOfChunk, printChunk, parseChunk};

}  // namespace Vantor

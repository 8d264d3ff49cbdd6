#include "Core/Comparison/ValueText.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostOctets = 32;
constexpr std::size_t kMostUnits = 80;
constexpr uint32 kMostItems = 4;

std::string sizeText(std::size_t size, const char* unit) { return "... (" + std::to_string(size) + " " + unit + ")"; }

std::string quoted(const wstring& text) {
  std::size_t units = std::min(text.size(), kMostUnits);
  if (units < text.size() && text[units] >= 0xdc00 && text[units] < 0xe000) --units;  // no half of a character
  const std::string shown = Utils::wstringToString(Types::quotedText({text.data(), units}));
  return units == text.size() ? shown : shown + sizeText(text.size(), "code units");
}

// Texts that read better on one line than those of Types::textOfValue, by overload.

std::string textOf(const Types::SimpleDataType& value) { return Utils::wstringToString(Types::textOfValue(value)); }
std::string textOf(const Types::Boolean& value) { return value.value() ? "true" : "false"; }
std::string textOf(const Types::UTF16& value) { return std::to_string(value.value()); }
std::string textOf(const Types::NarrowString& value) { return quoted(Platform::stringToWstring(value.value())); }
std::string textOf(const Types::WideString& value) { return quoted(Platform::utf16ToWstring(value.value())); }
std::string textOf(const Types::ByteStringBase& value) { return octetsText(value.rawBuffer(), value.encodedSize()); }

std::string textOf(const Types::Collection& value) {
  const uint32 shown = std::min(value.size(), kMostItems);
  std::string text;
  for (uint32 i = 0; i < shown; ++i) text += (i == 0 ? "" : ", ") + valueText(value.at(i));
  if (shown < value.size()) text += sizeText(value.size(), "items");
  return "[" + text + "]";
}

class TextVisitor : public Types::Visitors::Visitor {
 public:
#define VANTOR_VISIT_TEXT(Type, number, octets) \
  void visit(const Types::Type& value) override { text = textOf(value); }
  VANTOR_FOR_EACH_TYPE(VANTOR_VISIT_TEXT)
#undef VANTOR_VISIT_TEXT
  std::string text;
};

}  // namespace

std::string valueText(const Types::SimpleDataType& value) {
  TextVisitor visitor;
  value.accept(visitor);
  return std::move(visitor.text);
}

std::string octetsText(const uint8* octets, std::size_t size) {
  if (size == 0) return "no octets";
  const auto text = Platform::hexText<std::string>(octets, std::min(size, kMostOctets));
  return size <= kMostOctets ? text : text + sizeText(size, "octets");
}

}  // namespace Vantor

#include "Core/MetaMetadata/RegisterKey.h"

#include <array>

#include "Core/Platform/Raise.h"

namespace Vantor::MetaMetadata {

namespace {

constexpr std::string_view kURN = "urn:smpte:ul:";

// A table: branches on digits mispredict, and start-up reads thousands of keys.
constexpr std::array<int8, 256> digitValues() {
  std::array<int8, 256> values{};
  for (auto& value : values) value = -1;
  for (int8 i = 0; i < 10; ++i) values['0' + i] = i;
  for (int8 i = 0; i < 6; ++i) values['a' + i] = values['A' + i] = static_cast<int8>(10 + i);
  return values;
}
constexpr auto kDigitValues = digitValues();

}  // namespace

std::optional<KLV::Key> parseRegisterKey(std::string_view text) {
  if (text.substr(0, kURN.size()) == kURN) text.remove_prefix(kURN.size());
  std::array<uint8, KLV::Key::kSize> octets{};
  std::size_t at = 0;
  for (auto& octet : octets) {
    if (at < text.size() && text[at] == '.') ++at;
    if (at + 2 > text.size()) return std::nullopt;
    const int value = kDigitValues[static_cast<uint8>(text[at])] * 16 | kDigitValues[static_cast<uint8>(text[at + 1])];
    if (value < 0) return std::nullopt;
    octet = static_cast<uint8>(value);
    at += 2;
  }
  if (at != text.size()) return std::nullopt;
  return KLV::Key(octets);
}

KLV::Key registerKey(std::string_view text) {
  if (const auto key = parseRegisterKey(text)) return *key;
  Exceptions::raise<Exceptions::InvalidFormat>("not a register key: {}", text);
}

std::string registerText(const KLV::Key& key) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * KLV::Key::kSize + 3);
  for (std::size_t n = 1; n <= KLV::Key::kSize; ++n) {
    text += kDigits[key.octet(n) >> 4];
    text += kDigits[key.octet(n) & 0x0f];
    if (n % 4 == 0 && n != KLV::Key::kSize) text += '.';
  }
  return text;
}

}  // namespace Vantor::MetaMetadata

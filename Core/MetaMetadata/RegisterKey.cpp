#include "Core/MetaMetadata/RegisterKey.h"

#include <array>

#include "Core/DataIO/BigEndian.h"
#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MetaMetadata {

namespace {

constexpr std::string_view kURN = "urn:smpte:ul:";

}  // namespace

std::optional<KLV::Key> parseRegisterKey(std::string_view text) {
  if (text.substr(0, kURN.size()) == kURN) text.remove_prefix(kURN.size());
  std::array<uint8, KLV::Key::kSize> octets{};
  std::size_t at = 0;
  for (auto& octet : octets) {
    if (at < text.size() && text[at] == '.') ++at;
    if (at + 2 > text.size()) return std::nullopt;
    const int value = Platform::hexOctet(static_cast<uint8>(text[at]), static_cast<uint8>(text[at + 1]));
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

KLV::Key comparableKey(const KLV::Key& key) {
  const auto identity = elementIdentity(key.rawBuffer());
  std::array<uint8, KLV::Key::kSize> octets{};
  DataIO::writeBigEndian(octets.data(), identity.head);
  DataIO::writeBigEndian(octets.data() + sizeof identity.head, identity.tail);
  return KLV::Key(octets);
}

std::string registerText(const KLV::Key& key) {
  std::string text;
  text.reserve(2 * KLV::Key::kSize + 3);
  for (std::size_t n = 1; n <= KLV::Key::kSize; ++n) {
    Platform::appendHex(text, key.octet(n), Platform::DigitCase::kLower);
    if (n % 4 == 0 && n != KLV::Key::kSize) text += '.';
  }
  return text;
}

}  // namespace Vantor::MetaMetadata

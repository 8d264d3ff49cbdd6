#include "Registers/RegisterFields.h"

#include <algorithm>
#include <array>

#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"

namespace Vantor::Registers {

namespace {

using std::u16string_view;

constexpr u16string_view kWhiteSpace = u" \t\r\n";

wstring collapsed(u16string_view text) {
  wstring words;
  for (;;) {
    const auto start = text.find_first_not_of(kWhiteSpace);
    if (start == u16string_view::npos) return words;
    if (!words.empty()) words += u' ';
    const auto end = std::min(text.find_first_of(kWhiteSpace, start), text.size());
    words.append(text.substr(start, end - start));
    text.remove_prefix(end);
  }
}

}  // namespace

void RegisterFields::begin(const Origin& origin) {
  origin_ = origin;
  for (auto& [name, text] : texts_) text.clear();
}

wstring* RegisterFields::textOf(u16string_view name) {
  const auto found = texts_.find(name);
  return found == texts_.end() ? nullptr : &found->second;
}

std::string RegisterFields::text(u16string_view name) const {
  return Utils::wstringToString(collapsed(texts_.at(name)));
}

std::optional<KLV::Key> RegisterFields::key(u16string_view name) const {
  const auto urn = collapsed(texts_.at(name));
  if (urn.empty()) return std::nullopt;
  std::array<uint8, KLV::Key::kSize> octets{};
  if (KLV::parseUlUrn(urn, octets.data())) return KLV::Key(octets);
  entries_.refuse(origin_,
                  "'{}' is no UL; write urn:smpte:ul: and four groups of eight hexadecimal digits, dots between them",
                  urn);
}

bool RegisterFields::flag(u16string_view name, bool byDefault) const {
  const auto word = text(name);
  if (word.empty()) return byDefault;
  if (word == "true" || word == "1") return true;
  if (word == "false" || word == "0") return false;
  entries_.refuse(origin_, "'{}' is no {}; write true or false", word, wstring(name));
}

uint16 RegisterFields::localTag() const {
  constexpr std::size_t kDigits = 4;
  const auto digits = text(u"LocalTag");
  const auto zeros = kDigits - std::min(kDigits, digits.size());
  if (const auto tag = Platform::numberFromHex<uint16>(std::string(zeros, '0') + digits)) return *tag;
  entries_.refuse(origin_, "'{}' is no local tag; write it with four hexadecimal digits", digits);
}

}  // namespace Vantor::Registers

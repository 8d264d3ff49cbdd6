#include "Registers/RegisterFields.h"

#include <algorithm>

#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"

namespace Vantor::Registers {

namespace {

using std::u16string_view;

/// In the order of `RegisterField`.
constexpr std::array<u16string_view, kRegisterFields> kNames = {
    u"UL",       u"Symbol",   u"Name",           u"Kind",     u"Parent",   u"IsConcrete", u"KLVSyntax", u"Type",
    u"TypeKind", u"TypeSize", u"TypeQualifiers", u"BaseType", u"LocalTag", u"IsOptional", u"Value"};

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
  for (auto& text : texts_) text.clear();
}

wstring* RegisterFields::textOf(u16string_view name) {
  for (std::size_t i = 0; i < kRegisterFields; ++i) {
    if (kNames[i] == name) return &texts_[i];
  }
  return nullptr;
}

std::string RegisterFields::text(RegisterField field) const {
  return Utils::wstringToString(collapsed(texts_[static_cast<std::size_t>(field)]));
}

std::optional<KLV::Key> RegisterFields::key(RegisterField field) const {
  const auto urn = collapsed(texts_[static_cast<std::size_t>(field)]);
  if (urn.empty()) return std::nullopt;
  std::array<uint8, KLV::Key::kSize> octets{};
  if (KLV::parseUlUrn(urn, octets.data())) return KLV::Key(octets);
  entries_.refuse(origin_,
                  "'{}' is no UL; write urn:smpte:ul: and four groups of eight hexadecimal digits, dots between them",
                  urn);
}

bool RegisterFields::flag(RegisterField field, bool byDefault) const {
  const auto word = text(field);
  if (word.empty()) return byDefault;
  if (word == "true" || word == "1") return true;
  if (word == "false" || word == "0") return false;
  entries_.refuse(origin_, "'{}' is no {}; write true or false", word,
                  wstring(kNames[static_cast<std::size_t>(field)]));
}

uint16 RegisterFields::localTag() const {
  constexpr std::size_t kDigits = 4;
  const auto digits = text(RegisterField::kLocalTag);
  const auto zeros = kDigits - std::min(kDigits, digits.size());
  if (const auto tag = Platform::numberFromHex<uint16>(std::string(zeros, '0') + digits)) return *tag;
  entries_.refuse(origin_, "'{}' is no local tag; write it with four hexadecimal digits", digits);
}

}  // namespace Vantor::Registers

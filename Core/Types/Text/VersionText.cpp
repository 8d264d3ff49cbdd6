#include "Core/Types/Text/VersionText.h"

#include <algorithm>
#include <array>
#include <optional>

#include "Core/Platform/Numbers.h"
#include "Core/Types/ProductVersion.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/ValueText.h"
#include "Core/Types/VersionType.h"

namespace Vantor::Types {

namespace {

/// The first word of a release is printed.
struct ReleaseWord {
  std::u16string_view word;
  ReleaseVersion release;
};
constexpr std::array kReleaseWords = {ReleaseWord{u"unknown", ReleaseVersion::kUnknown},
                                      ReleaseWord{u"release", ReleaseVersion::kReleased},
                                      ReleaseWord{u"released", ReleaseVersion::kReleased},
                                      ReleaseWord{u"debug", ReleaseVersion::kDebug},
                                      ReleaseWord{u"development", ReleaseVersion::kDebug},
                                      ReleaseWord{u"patch", ReleaseVersion::kPatched},
                                      ReleaseWord{u"patched", ReleaseVersion::kPatched},
                                      ReleaseWord{u"beta", ReleaseVersion::kBeta},
                                      ReleaseWord{u"private", ReleaseVersion::kPrivateBuild},
                                      ReleaseWord{u"private build", ReleaseVersion::kPrivateBuild},
                                      ReleaseWord{u"privatebuild", ReleaseVersion::kPrivateBuild}};

wstring releaseSuffix(ReleaseVersion release) {
  const auto* found = std::find_if(kReleaseWords.begin(), kReleaseWords.end(),
                                   [release](const ReleaseWord& row) { return row.release == release; });
  if (found == kReleaseWords.end()) return u"." + Platform::toDecimal(static_cast<uint16>(release));
  return u" " + wstring(found->word);
}

std::optional<ReleaseVersion> releaseNamed(std::u16string_view text) {
  const wstring word = lowerCaseOf(text);
  const auto* found = std::find_if(kReleaseWords.begin(), kReleaseWords.end(),
                                   [&word](const ReleaseWord& row) { return row.word == word; });
  return found == kReleaseWords.end() ? std::nullopt : std::optional(found->release);
}

}  // namespace

wstring printVersionType(const SimpleDataType& value) {
  const auto& version = static_cast<const VersionType&>(value);
  return Platform::toDecimal(version.major()) + u"." + Platform::toDecimal(version.minor());
}

ParsedValue parseVersionType(std::u16string_view text) {
  TextScanner scanner(trimmed(text));
  uint16 major = 0;
  uint8 minor = 0;
  if (!scanner.number(major)) return ParsedValue();
  if (scanner.isAtEnd() && major > 0xff) {
    return std::make_unique<VersionType>(static_cast<uint8>(major >> 8), static_cast<uint8>(major));
  }
  if (!scanner.isAtEnd() && (scanner.mark(u".") == 0 || !scanner.number(minor))) return ParsedValue();
  if (!scanner.isAtEnd() || major > 0xff) return ParsedValue();
  return std::make_unique<VersionType>(static_cast<uint8>(major), minor);
}

wstring printProductVersion(const SimpleDataType& value) {
  const auto& version = static_cast<const ProductVersion&>(value);
  wstring text = Platform::toDecimal(version.major());
  for (const uint16 part : {version.minor(), version.patch(), version.build()}) {
    text += u"." + Platform::toDecimal(part);
  }
  return text + releaseSuffix(version.releaseVersion());
}

ParsedValue parseProductVersion(std::u16string_view text) {
  TextScanner scanner(trimmed(text));
  std::array<uint16, 5> parts{};
  std::size_t count = 0;
  do {
    if (count == parts.size() || !scanner.number(parts[count++])) return ParsedValue();
  } while (scanner.mark(u".") != 0);
  auto release = static_cast<ReleaseVersion>(parts[4]);
  if (!scanner.isAtEnd()) {
    scanner.skipSpaces();
    const auto named = releaseNamed(scanner.rest());
    if (!named) return ParsedValue("the words for releases are unknown, release, debug, patch, beta and private");
    if (count == parts.size()) return ParsedValue("it has a word and a number for the release");
    release = *named;
  }
  return std::make_unique<ProductVersion>(parts[0], parts[1], parts[2], parts[3], release);
}

}  // namespace Vantor::Types

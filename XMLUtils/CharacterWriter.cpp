#include "XMLUtils/CharacterWriter.h"

#include <string_view>
#include <utility>

#include "XMLUtils/Escape.h"

namespace Vantor::XMLUtils {

namespace {

/// A set of code units below 64: everything that XML treats specially is one of them.
constexpr uint64 setOf(std::u16string_view units) {
  uint64 set = 0;
  for (const char16_t unit : units) set |= uint64{1} << unit;
  return set;
}

constexpr uint64 kControls = 0xFFFFFFFF;
constexpr uint64 kForbiddenControls = kControls & ~setOf(u"\t\n\r");

/// Characters that cannot be copied; the terminating NUL is in every set.
constexpr uint64 specialUnits(Place place) {
  switch (place) {
    case Place::kText:
      return kForbiddenControls | setOf(u"\r$&<>");
    case Place::kAttribute:
      return kControls | setOf(u"$&<\"");
    case Place::kCDATA:
      return kForbiddenControls | setOf(u"\r$>");
    case Place::kComment:
      return kForbiddenControls | setOf(u"$-");
    case Place::kInstruction:
      return kForbiddenControls | setOf(u"$?");
  }
  return kControls;
}

constexpr bool isPlain(char16_t unit, uint64 special) {
  if (unit < 64) return ((special >> unit) & 1) == 0;
  return unit < 0xD800 || (unit > 0xDFFF && unit < 0xFFFE);
}

constexpr std::pair<char16_t, std::u16string_view> kReferences[] = {
    {u'&', u"&amp;"},  {u'<', u"&lt;"},   {u'>', u"&gt;"},  {u'"', u"&quot;"},
    {u'\t', u"&#x9;"}, {u'\n', u"&#xA;"}, {u'\r', u"&#xD;"}};

std::u16string_view reference(char16_t unit) {
  for (const auto& [character, text] : kReferences) {
    if (character == unit) return text;
  }
  return {};
}

/// What to write for `at[0]`; empty where it may stand as it is. `start` is where the text starts.
std::u16string_view replacement(const XMLCh* start, const XMLCh* at, Place place) {
  switch (place) {
    case Place::kText:
    case Place::kAttribute:
      return reference(*at);
    case Place::kCDATA:
      if (*at == u'\r') return u"]]>&#xD;<![CDATA[";
      return *at == u'>' && at - start >= 2 && at[-1] == u']' && at[-2] == u']' ? u"]]><![CDATA[>" : u"";
    case Place::kComment:
      return *at == u'-' && (at[1] == u'-' || at[1] == u'\0') ? u"- " : u"";
    case Place::kInstruction:
      return *at == u'?' && at[1] == u'>' ? u"? " : u"";
  }
  return {};
}

}  // namespace

void writeCharacters(wstring& out, const XMLCh* text, Place place) {
  const auto special = specialUnits(place);
  const auto* copied = text;  // up to here it is written
  const auto* at = text;
  for (;; ++at) {
    if (isPlain(*at, special)) continue;
    if (*at == u'\0') break;
    if (isSurrogatePair(at[0], at[1])) {
      ++at;
      continue;
    }
    const bool escaped = isForbidden(*at) || startsEscape(at);
    const auto instead = escaped ? std::u16string_view() : replacement(text, at, place);
    if (!escaped && instead.empty()) continue;
    out.append(copied, at).append(instead);
    if (escaped) appendEscape(out, *at);
    copied = at + 1;
  }
  out.append(copied, at);
}

}  // namespace Vantor::XMLUtils

#include "Core/Types/Text/LanguageTag.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Core/Types/Text/TextScanner.h"

namespace Vantor::Types {

namespace {

constexpr std::u16string_view kBlanks = u" \t\n\r";

using Subtags = std::vector<std::u16string_view>;

bool isLetter(char16_t unit) { return lowerCaseOf(unit) >= u'a' && lowerCaseOf(unit) <= u'z'; }
bool isLetterOrDigit(char16_t unit) { return isLetter(unit) || isDecimalDigit(unit); }

bool isOf(std::u16string_view subtag, std::size_t fewest, std::size_t most, bool (*isAllowed)(char16_t)) {
  return subtag.size() >= fewest && subtag.size() <= most && std::all_of(subtag.begin(), subtag.end(), isAllowed);
}

bool isVariant(std::u16string_view subtag) {
  return isOf(subtag, 5, 8, isLetterOrDigit) || (isOf(subtag, 4, 4, isLetterOrDigit) && isDecimalDigit(subtag.front()));
}
bool isRegion(std::u16string_view subtag) { return isOf(subtag, 2, 2, isLetter) || isOf(subtag, 3, 3, isDecimalDigit); }

Subtags splitAt(std::u16string_view text, std::u16string_view marks) {
  Subtags parts;
  for (std::size_t at = 0; at <= text.size();) {
    const auto end = std::min(text.find_first_of(marks, at), text.size());
    parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

/// Those that the grammar does not make: registered before RFC 4646.
bool isIrregular(std::u16string_view text) {
  constexpr std::array<std::u16string_view, 17> kTags = {
      u"en-gb-oed", u"i-ami", u"i-bnn",     u"i-default", u"i-enochian", u"i-hak",
      u"i-klingon", u"i-lux", u"i-mingo",   u"i-navajo",  u"i-pwn",      u"i-tao",
      u"i-tay",     u"i-tsu", u"sgn-be-fr", u"sgn-be-nl", u"sgn-ch-de"};
  return std::find(kTags.begin(), kTags.end(), lowerCaseOf(text)) != kTags.end();
}

/// Walks over the subtags in the order of the grammar.
class TagGrammar {
 public:
  explicit TagGrammar(const Subtags& subtags) : subtags_(subtags) {}

  bool matches() {
    if (isPrivate()) return takePrivateUse() && isAtEnd();
    if (!takeLanguage()) return false;
    take([](auto subtag) { return isOf(subtag, 4, 4, isLetter); });  // script
    take(isRegion);
    while (take(isVariant)) {
    }
    while (takeExtension()) {
    }
    return (!isPrivate() || takePrivateUse()) && isAtEnd();
  }

 private:
  bool isAtEnd() const { return at_ == subtags_.size(); }
  bool isPrivate() const { return !isAtEnd() && lowerCaseOf(subtags_[at_]) == u"x"; }
  template <class Matches>
  bool take(Matches&& matches) {
    if (isAtEnd() || !matches(subtags_[at_])) return false;
    ++at_;
    return true;
  }
  bool takeLanguage() {
    if (take([](auto subtag) { return isOf(subtag, 4, 8, isLetter); })) return true;
    if (!take([](auto subtag) { return isOf(subtag, 2, 3, isLetter); })) return false;
    for (int i = 0; i < 3 && take([](auto subtag) { return isOf(subtag, 3, 3, isLetter); }); ++i) {
    }
    return true;
  }
  bool takeExtension() {
    if (isPrivate() || !take([](auto subtag) { return isOf(subtag, 1, 1, isLetterOrDigit); })) return false;
    const auto first = at_;
    while (take([](auto subtag) { return isOf(subtag, 2, 8, isLetterOrDigit); })) {
    }
    if (at_ == first) --at_;
    return at_ > first;
  }
  bool takePrivateUse() {
    const auto first = ++at_;
    while (take([](auto subtag) { return isOf(subtag, 1, 8, isLetterOrDigit); })) {
    }
    return at_ > first;
  }

  const Subtags& subtags_;
  std::size_t at_ = 0;
};

}  // namespace

bool isLanguageTag(std::u16string_view text) {
  const auto subtags = splitAt(text, u"-");
  return isIrregular(text) || TagGrammar(subtags).matches();
}

bool isLanguageTagList(std::u16string_view text) {
  const auto isListOfTags = [](std::u16string_view part) {
    auto tags = splitAt(part, kBlanks);
    tags.erase(std::remove(tags.begin(), tags.end(), std::u16string_view()), tags.end());
    return !tags.empty() && std::all_of(tags.begin(), tags.end(), isLanguageTag);
  };
  const auto parts = splitAt(text, u",");
  return std::all_of(parts.begin(), parts.end(), isListOfTags);
}

bool isLanguageCode(std::u16string_view text) { return isOf(text, 2, 3, isLetter); }

}  // namespace Vantor::Types

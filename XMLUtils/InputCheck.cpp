#include "XMLUtils/InputCheck.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>

#include "Core/Platform/Numbers.h"
#include "Core/Platform/SeededHash.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/LoadDocument.h"

namespace Vantor::XMLUtils {

namespace {

using std::u16string_view;

constexpr wstring::size_type kNone = wstring::npos;

/// Code units of text: of one byte each, or of two with the low one at `kLow`.
template <std::size_t kWidth, std::size_t kLow = 0>
struct Units {
  const uint8* bytes;
  std::size_t count;
  char16_t operator[](std::size_t i) const {
    if constexpr (kWidth == 1) return bytes[i];
    return static_cast<char16_t>(bytes[2 * i + kLow] | bytes[2 * i + 1 - kLow] << 8);
  }
};
using Octets = Units<1>;

xercesc::SAXParseException refusalAt(uint64 line, uint64 column, const wstring& message) {
  return {message.c_str(), u"", u"", line, column};
}

struct LineAndColumn {
  uint64 line;
  uint64 column;
};

template <class Text>
LineAndColumn placeIn(const Text& text, std::size_t at) {
  uint64 line = 1;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < at; ++i) {
    const bool isLineEnd = text[i] == u'\n' || (text[i] == u'\r' && text[i + 1] != u'\n');
    if (!isLineEnd) continue;
    ++line;
    lineStart = i + 1;
  }
  return {line, at - lineStart + 1};
}

template <class Text>
xercesc::SAXParseException refusal(const Text& text, std::size_t at, const wstring& message) {
  const auto place = placeIn(text, at);
  return refusalAt(place.line, place.column, message);
}

bool isWhiteSpace(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n'; }

/// Steps from one piece of markup to the next, as Xerces' WFXMLScanner does.
template <class Text>
class LimitCheck {
 public:
  LimitCheck(const Text& text, const Limits& limits) : text_(text), limits_(limits) {}

  void run() {
    while (skipPast(u"<")) {
      if (skip(u"!--")) {
        skipPast(u"-->");
      } else if (skip(u"![CDATA[")) {
        skipPast(u"]]>");
      } else if (skip(u"?")) {
        skipPast(u"?>");
      } else if (skip(u"!")) {
        skipDoctype();
      } else if (skip(u"/")) {
        leaveElement();
      } else {
        skipStartTag();
      }
    }
  }

 private:
  bool skip(u16string_view expected) {
    if (text_.count - at_ < expected.size()) return false;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      if (text_[at_ + i] != expected[i]) return false;
    }
    at_ += expected.size();
    return true;
  }

  bool skipPast(u16string_view expected) {
    for (; at_ < text_.count; ++at_) {
      if (text_[at_] == expected[0] && skip(expected)) return true;
    }
    return false;
  }

  /// The scanner ends the internal subset at its first bracket, wherever that stands. Where the document type
  /// declaration goes on, it would take the rest for the document.
  void skipDoctype() {
    const auto start = at_;
    while (at_ < text_.count && text_[at_] != u'[' && text_[at_] != u'>') ++at_;
    if (skip(u"[")) skipPast(u"]");
    skipPast(u">");
    const auto scannersEnd = at_;
    at_ = start;
    skipWholeDoctype();
    if (at_ != scannersEnd) {
      throw refusal(text_, start - 2, u"a document type declaration with ']', '[' or '>' in it is not supported");
    }
  }

  /// Past the bracket that ends the declaration; those in comments, instructions and literals do not.
  void skipWholeDoctype() {
    bool isInSubset = false;
    bool isInDeclaration = true;  // this one, or one of the subset
    while (at_ < text_.count) {
      if (!isInDeclaration && skip(u"<!--")) {
        skipPast(u"-->");
      } else if (!isInDeclaration && skip(u"<?")) {
        skipPast(u"?>");
      } else if (!isInDeclaration && skip(u"<!")) {
        isInDeclaration = true;
      } else {
        const char16_t unit = text_[at_++];
        if (!isInDeclaration) {
          isInSubset = unit != u']';
          isInDeclaration = !isInSubset;
        } else if (unit == u'>') {
          if (!isInSubset) return;
          isInDeclaration = false;
        } else if (unit == u'[' && !isInSubset) {
          isInSubset = true;
          isInDeclaration = false;
        } else if (unit == u'"' || unit == u'\'') {
          while (at_ < text_.count && text_[at_++] != unit) {
          }
        }
      }
    }
  }

  void skipStartTag() {
    const auto start = at_ - 1;
    attributes_.push_back(0);
    if (attributes_.size() > limits_.nesting) refuse(start, &Limits::nesting);
    while (at_ < text_.count && !endsName(text_[at_]) && text_[at_] != u'=') ++at_;
    noteName(start + 1, at_, start);
    skipAttributes(start);
  }

  /// Names end where '=' or a blank follows; the parser refuses anything else.
  void skipAttributes(std::size_t start) {
    char16_t quote = 0;
    bool isNamespace = false;
    std::size_t from = at_;
    for (; at_ < text_.count; ++at_) {
      const char16_t unit = text_[at_];
      if (quote != 0) {
        if (unit != quote) continue;
        if (isNamespace) noteName(from, at_, start);
        quote = 0;
        from = at_ + 1;
      } else if (unit == u'"' || unit == u'\'') {
        quote = unit;
        from = at_ + 1;
      } else if (unit == u'=') {
        countAttribute(start);
        isNamespace = noteAttribute(from, start);
      } else if (unit == u'>') {
        if (text_[at_ - 1] == u'/') leaveElement();
        return;
      }
    }
  }

  static bool endsName(char16_t unit) { return isWhiteSpace(unit) || unit == u'/' || unit == u'>'; }

  /// The name that ends here. @return whether it declares a namespace, which is a name itself.
  bool noteAttribute(std::size_t from, std::size_t start) {
    std::size_t to = at_;
    while (from < to && isWhiteSpace(text_[from])) ++from;
    while (from < to && isWhiteSpace(text_[to - 1])) --to;
    noteName(from, to, start);
    constexpr u16string_view kDeclaration = u"xmlns";
    if (to - from < kDeclaration.size()) return false;
    for (std::size_t i = 0; i < kDeclaration.size(); ++i) {
      if (text_[from + i] != kDeclaration[i]) return false;
    }
    return true;
  }

  /// Two names count as one where their hashes of 64 bits meet, which nobody can bring about without the seed.
  void noteName(std::size_t from, std::size_t to, std::size_t start) {
    constexpr std::size_t kUnitsOfWord = 4;
    constexpr unsigned kBitsOfUnit = 16;
    uint64 hash = to - from;
    while (from < to) {
      uint64 word = 0;
      for (std::size_t i = 0; i < kUnitsOfWord && from < to; ++i) word = word << kBitsOfUnit | text_[from++];
      hash = Platform::seededHash(hash, word);
    }
    if (names_.insert(hash).second && names_.size() > limits_.names) refuse(start, &Limits::names);
  }

  void countAttribute(std::size_t start) {
    if (++attributes_.back() > kMaximumAttributes) {
      refuse(start, u"an element has more than ", kMaximumAttributes, u" attributes");
    }
    if (++attributesInScope_ > kMaximumAttributesInScope) {
      refuse(start, u"an element and those around it have more than ", kMaximumAttributesInScope, u" attributes");
    }
  }

  void leaveElement() {
    if (attributes_.empty()) return;
    attributesInScope_ -= attributes_.back();
    attributes_.pop_back();
  }

  [[noreturn]] void refuse(std::size_t at, u16string_view before, std::size_t limit, u16string_view after) const {
    throw refusal(text_, at, wstring(before).append(Platform::toDecimal(limit)).append(after));
  }
  [[noreturn]] void refuse(std::size_t at, uint64 Limits::*limit) const {
    const auto place = placeIn(text_, at);
    refuseBeyondAt(place.line, place.column, limit, limits_.*limit);
  }

  Text text_;
  const Limits& limits_;
  std::size_t at_ = 0;
  std::unordered_set<uint64> names_;     // their hashes
  std::vector<std::size_t> attributes_;  // of each open element
  std::size_t attributesInScope_ = 0;
};

template <class Text>
void checkText(const Text& text, const Limits& limits) {
  // Behind the root, the parser would take a NUL for the end of the document.
  for (std::size_t i = 0; i < text.count; ++i) {
    if (text[i] == 0) throw refusal(text, i, u"XML has no NUL character; remove it");
  }
  LimitCheck<Text>(text, limits).run();
}

/// The parser decodes ahead of its place, so that the line of its own message can be thousands off.
void checkUTF8(const Octets& text) {
  const uint8* const invalid = utf8::find_invalid(text.bytes, text.bytes + text.count);
  const auto at = static_cast<std::size_t>(invalid - text.bytes);
  if (at == text.count) return;
  throw refusal(text, at,
                u"a character is not in UTF-8; save the text as UTF-8, or name its encoding in the XML declaration");
}

bool startsText(uint8 octet) { return octet == '<' || octet == ' ' || octet == '\t' || octet == '\r' || octet == '\n'; }

/// The first two bytes are a byte order mark, or the first code unit of a document, which is a bracket or white space.
bool isLittleEndian(const uint8* bytes) {
  return (bytes[0] == 0xFF && bytes[1] == 0xFE) || (startsText(bytes[0]) && bytes[1] == 0);
}
bool isBigEndian(const uint8* bytes) {
  return (bytes[0] == 0xFE && bytes[1] == 0xFF) || (bytes[0] == 0 && startsText(bytes[1]));
}

/// Xerces ignores half a code unit at the end, which a truncated document leaves.
Input utf16(const uint8* bytes, std::size_t size, bool isMarked, u16string_view encoding) {
  if (size % 2 != 0) throw refusalAt(1, 1, u"UTF-16 text ends within a code unit");
  const std::size_t mark = isMarked ? 2 : 0;
  return {bytes + mark, size - mark, wstring(encoding)};
}

/// The encoding that an XML declaration names; empty for none.
wstring declaredEncoding(const uint8* bytes, std::size_t size) {
  constexpr std::size_t kLongestDeclaration = 256;
  const wstring text(bytes, bytes + std::min(size, kLongestDeclaration));
  const auto end = text.find(u"?>");
  const auto name = text.find(u"encoding");
  if (text.compare(0, 5, u"<?xml") != 0 || end == kNone || name > end) return {};
  const auto open = text.find_first_of(u"\"'", name);
  const auto close = text.find_first_of(u"\"'", open == kNone ? open : open + 1);
  if (close == kNone || close > end) return {};
  return text.substr(open + 1, close - open - 1);
}

/// The name in upper case without punctuation, since encodings are spelt in many ways: "ISO_8859-1" is "ISO88591".
wstring comparable(const wstring& name) {
  wstring text;
  for (const char16_t unit : name) {
    if (unit >= u'a' && unit <= u'z') {
      text += static_cast<char16_t>(unit - u'a' + u'A');
    } else if (unit != u'-' && unit != u'_' && unit != u' ') {
      text += unit;
    }
  }
  return text;
}

/// The name by which the parser knows the encoding; empty when `checkLimits` cannot read such text.
wstring encodingNamed(const wstring& declared) {
  constexpr std::pair<u16string_view, u16string_view> kFamilies[] = {
      {u"ISO8859", u"ISO-8859-"}, {u"WINDOWS125", u"WINDOWS-125"}, {u"CP125", u"WINDOWS-125"}};
  // The parts of ISO 8859 that are the Latin alphabets 1 to 10.
  constexpr u16string_view kLatin[] = {u"1", u"2", u"3", u"4", u"9", u"10", u"13", u"14", u"15", u"16"};
  const wstring name = comparable(declared);
  if (name == u"ASCII" || name == u"USASCII") return u"US-ASCII";
  for (const auto& [start, known] : kFamilies) {
    if (name.compare(0, start.size(), start) == 0) return wstring(known) + name.substr(start.size());
  }
  for (std::size_t i = 0; i < std::size(kLatin); ++i) {
    const auto number = Platform::toDecimal(i + 1);
    if (name == u"LATIN" + number || name == u"L" + number) return u"ISO-8859-" + wstring(kLatin[i]);
  }
  return {};
}

bool hasTranscoder(const wstring& encoding) {
  constexpr XMLSize_t kBlock = 1024;
  Initializer::instance();
  xercesc::XMLTransService::Codes ignored;
  const std::unique_ptr<xercesc::XMLTranscoder> transcoder(
      xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encoding.c_str(), ignored, kBlock));
  return transcoder != nullptr;
}

/// 8-bit text that declares UTF-16 was converted later, and to UTF-8.
wstring octetEncoding(const uint8* bytes, std::size_t size) {
  const auto declared = declaredEncoding(bytes, size);
  const auto name = comparable(declared);
  if (name.empty() || name == u"UTF8" || name.compare(0, 5, u"UTF16") == 0) return u"UTF-8";
  auto encoding = encodingNamed(declared);
  if (!encoding.empty() && hasTranscoder(encoding)) return encoding;
  throw refusalAt(1, 1, u"encoding '" + declared + u"' is not supported");
}

}  // namespace

Input recognise(const uint8* bytes, std::size_t size) {
  static constexpr uint8 kNothing = 0;
  if (bytes == nullptr) return {&kNothing, 0, u"UTF-8"};
  if (size >= 2 && isLittleEndian(bytes)) return utf16(bytes, size, bytes[0] == 0xFF, u"UTF-16LE");
  if (size >= 2 && isBigEndian(bytes)) return utf16(bytes, size, bytes[0] == 0xFE, u"UTF-16BE");
  const bool isMarked = size >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF;
  const std::size_t mark = isMarked ? 3 : 0;
  return {bytes + mark, size - mark, isMarked ? wstring(u"UTF-8") : octetEncoding(bytes, size)};
}

void checkLimits(const Input& input, const Limits& limits) {
  if (input.encoding == u"UTF-16LE") return checkText(Units<2, 0>{input.bytes, input.size / 2}, limits);
  if (input.encoding == u"UTF-16BE") return checkText(Units<2, 1>{input.bytes, input.size / 2}, limits);
  const Octets text{input.bytes, input.size};
  if (input.encoding == u"UTF-8") checkUTF8(text);
  checkText(text, limits);
}

}  // namespace Vantor::XMLUtils

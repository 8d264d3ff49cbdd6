#include "tests/XMLBuilder/Mutator.h"

#include <algorithm>
#include <vector>

namespace Vantor {

namespace {

constexpr std::size_t kLongestSpan = 200;

/// Where the parts of an element stand: `<a>|content|</a>|`.
struct Tagged {
  std::size_t start = 0;
  std::size_t content = 0;
  std::size_t contentEnd = 0;
  std::size_t end = 0;

  std::size_t size() const { return end - start; }
};

/// The elements of a text that starts and ends as it should, in the order of their ends. The root is not among them.
std::vector<Tagged> elementsOf(const std::string& text) {
  std::vector<Tagged> elements;
  std::vector<Tagged> open;
  for (auto at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
    const auto close = text.find('>', at);
    if (close == std::string::npos) break;
    if (text[at + 1] == '?' || text[at + 1] == '!') continue;
    if (text[at + 1] != '/') open.push_back({at, close + 1, close + 1, close + 1});
    if (open.empty() || (text[at + 1] != '/' && text[close - 1] != '/')) continue;
    if (text[at + 1] == '/') {
      open.back().contentEnd = at;
      open.back().end = close + 1;
    }
    if (open.size() > 1) elements.push_back(open.back());
    open.pop_back();
  }
  return elements;
}

std::size_t nameEnd(const std::string& text, std::size_t start) {
  return std::min(text.find_first_of(" />", start), text.size());
}

std::string nameOf(const std::string& text, const Tagged& element) {
  return text.substr(element.start + 1, nameEnd(text, element.start) - element.start - 1);
}

constexpr std::size_t kKeySize = 16;

/// Where the parts of a KLV stand.
struct KLVPlace {
  std::size_t start = 0;
  std::size_t value = 0;
  std::size_t end = 0;
};

std::size_t octetAt(const std::string& bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

std::size_t numberAt(const std::string& bytes, std::size_t at, std::size_t octets) {
  std::size_t number = 0;
  for (std::size_t i = 0; i < octets; ++i) number = number << 8 | octetAt(bytes, at + i);
  return number;
}

/// The KLVs up to the first that is not whole.
std::vector<KLVPlace> klvsOf(const std::string& bytes) {
  std::vector<KLVPlace> klvs;
  std::size_t at = 0;
  while (at + kKeySize < bytes.size()) {
    const std::size_t first = octetAt(bytes, at + kKeySize);
    const std::size_t following = first < 0x80 ? 0 : first - 0x80;
    const std::size_t value = at + kKeySize + 1 + following;
    if (following > 8 || value > bytes.size()) break;
    const std::size_t length = following == 0 ? first : numberAt(bytes, at + kKeySize + 1, following);
    if (length > bytes.size() - value) break;
    klvs.push_back({at, value, value + length});
    at = value + length;
  }
  return klvs;
}

/// The items of local sets with tags and lengths of two octets, as far as something reads as such.
std::vector<KLVPlace> itemsOf(const std::string& bytes) {
  constexpr std::size_t kHeader = 4;
  std::vector<KLVPlace> items;
  for (const auto& klv : klvsOf(bytes)) {
    for (std::size_t at = klv.value; at + kHeader <= klv.end;) {
      const std::size_t end = at + kHeader + numberAt(bytes, at + 2, 2);
      if (end > klv.end) break;
      items.push_back({at, at + kHeader, end});
      at = end;
    }
  }
  return items;
}

}  // namespace

void Mutator::mutateDocument(std::string& text) {
  constexpr Operation kOfMarkup[] = {&Mutator::duplicateElement, &Mutator::deleteElement,    &Mutator::moveElement,
                                     &Mutator::swapElements,     &Mutator::renameElement,    &Mutator::replaceText,
                                     &Mutator::replaceText,      &Mutator::replaceAttribute, &Mutator::replaceNumber};
  constexpr Operation kOfOctets[] = {&Mutator::flipBit, &Mutator::cut, &Mutator::duplicateSpan, &Mutator::deleteSpan,
                                     &Mutator::swapSpans};
  for (auto left = 1 + below(4); left > 0; --left) (this->*kOfMarkup[below(std::size(kOfMarkup))])(text);
  if (below(4) == 0) (this->*kOfOctets[below(std::size(kOfOctets))])(text);
}

void Mutator::mutateKLVs(std::string& bytes, std::size_t start) {
  constexpr Operation kOperations[] = {&Mutator::flipBit,           &Mutator::flipBit,       &Mutator::replaceOctets,
                                       &Mutator::replaceOctets,     &Mutator::copyItem,      &Mutator::copyItem,
                                       &Mutator::replaceItemLength, &Mutator::replaceLength, &Mutator::deleteKLV,
                                       &Mutator::swapKLVs,          &Mutator::duplicateKLV,  &Mutator::cut,
                                       &Mutator::swapSpans,         &Mutator::deleteSpan,    &Mutator::duplicateSpan};
  std::string klvs = bytes.substr(start);
  for (auto left = 1 + below(4); left > 0; --left) (this->*kOperations[below(std::size(kOperations))])(klvs);
  bytes.replace(start, std::string::npos, klvs);
}

Mutator::Span Mutator::spanOf(const std::string& text) {
  const std::size_t start = below(text.size() + 1);
  return {start, start + below(std::min(kLongestSpan, text.size() - start) + 1)};
}

void Mutator::swap(std::string& text, Span one, Span other) {
  if (other.start < one.start) std::swap(one, other);
  if (one.end > other.start) return;
  const std::string first = text.substr(one.start, one.end - one.start);
  const std::string second = text.substr(other.start, other.end - other.start);
  text.replace(other.start, second.size(), first);
  text.replace(one.start, first.size(), second);
}

void Mutator::flipBit(std::string& text) {
  if (!text.empty()) text[below(text.size())] ^= static_cast<char>(1U << below(8));
}

void Mutator::cut(std::string& text) { text.resize(below(text.size() + 1)); }

void Mutator::duplicateSpan(std::string& text) {
  const Span span = spanOf(text);
  text.insert(below(text.size() + 1), text.substr(span.start, span.end - span.start));
}

void Mutator::deleteSpan(std::string& text) {
  const Span span = spanOf(text);
  text.erase(span.start, span.end - span.start);
}

void Mutator::swapSpans(std::string& text) {
  const Span one = spanOf(text);
  swap(text, one, spanOf(text));
}

void Mutator::duplicateElement(std::string& text) {
  const auto elements = elementsOf(text);
  if (elements.empty()) return;
  const auto& copied = elements[below(elements.size())];
  text.insert(elements[below(elements.size())].start, text.substr(copied.start, copied.size()));
}

void Mutator::deleteElement(std::string& text) {
  const auto elements = elementsOf(text);
  if (elements.empty()) return;
  const auto& element = elements[below(elements.size())];
  text.erase(element.start, element.size());
}

void Mutator::moveElement(std::string& text) {
  const auto elements = elementsOf(text);
  if (elements.empty()) return;
  const auto& element = elements[below(elements.size())];
  const std::size_t to = elements[below(elements.size())].start;
  if (to > element.start && to < element.end) return;
  const std::string moved = text.substr(element.start, element.size());
  text.erase(element.start, element.size());
  text.insert(to > element.start ? to - element.size() : to, moved);
}

void Mutator::swapElements(std::string& text) {
  const auto elements = elementsOf(text);
  if (elements.empty()) return;
  const auto& one = elements[below(elements.size())];
  const auto& other = elements[below(elements.size())];
  swap(text, {one.start, one.end}, {other.start, other.end});
}

void Mutator::renameElement(std::string& text) {
  const auto elements = elementsOf(text);
  if (elements.empty()) return;
  const auto& element = elements[below(elements.size())];
  const std::string old = nameOf(text, element);
  const std::string given = nameOf(text, elements[below(elements.size())]);
  if (element.end != element.content) text.replace(element.contentEnd + 2, old.size(), given);
  text.replace(element.start + 1, old.size(), given);
}

/// Of an element without children, so that mostly one value changes.
void Mutator::replaceText(std::string& text) {
  auto elements = elementsOf(text);
  const auto hasChildren = [&text](const Tagged& element) {
    return element.end == element.content || text.find('<', element.content) != element.contentEnd;
  };
  elements.erase(std::remove_if(elements.begin(), elements.end(), hasChildren), elements.end());
  if (elements.empty()) return;
  const auto& element = elements[below(elements.size())];
  const auto& other = elements[below(elements.size())];
  const std::string given =
      below(3) == 0 ? text.substr(other.content, other.contentEnd - other.content) : hostileText();
  text.replace(element.content, element.contentEnd - element.content, given);
}

void Mutator::replaceAttribute(std::string& text) {
  const auto start = text.find("=\"", below(text.size() + 1));
  if (start == std::string::npos) return;
  const auto end = text.find('"', start + 2);
  if (end != std::string::npos) text.replace(start + 2, end - start - 2, hostileText());
}

void Mutator::replaceNumber(std::string& text) {
  constexpr const char* kNumbers[] = {"4294967295",
                                      "4294967296",
                                      "2147483648",
                                      "-1",
                                      "18446744073709551616",
                                      "1073741824",
                                      "99999999999999999999999999999999999999",
                                      "0",
                                      "256"};
  const auto start = text.find_first_of("0123456789", below(text.size() + 1));
  if (start == std::string::npos) return;
  const auto end = std::min(text.find_first_not_of("0123456789", start), text.size());
  text.replace(start, end - start, kNumbers[below(std::size(kNumbers))]);
}

std::string Mutator::hostileText() {
  static const std::string kTexts[] = {"",
                                       " \t\n",
                                       "-1",
                                       "-9223372036854775809",
                                       "99999999999999999999999999999999",
                                       "0x10",
                                       "1e9",
                                       "0a1",
                                       "zz",
                                       "40000000000000104000000000000010",
                                       "$#x0;$#xFFFFFFFFFFFFFFFF;$#xD800;",
                                       "&#x10FFFF;&#xFFFD;",
                                       "<!-- --> ",
                                       "<![CDATA[<]]>",
                                       "<a/>",
                                       "\xf0\x9f\x98\x80",
                                       "\xff",
                                       "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00",
                                       "FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF.FF",
                                       "urn:uuid:00000000-0000-0000-0000-000000000000",
                                       std::string(70000, 'A'),
                                       std::string(1001, '7')};
  return kTexts[below(std::size(kTexts))];
}

void Mutator::duplicateKLV(std::string& bytes) {
  const auto klvs = klvsOf(bytes);
  if (klvs.empty()) return;
  const auto& copied = klvs[below(klvs.size())];
  bytes.insert(klvs[below(klvs.size())].start, bytes.substr(copied.start, copied.end - copied.start));
}

void Mutator::deleteKLV(std::string& bytes) {
  const auto klvs = klvsOf(bytes);
  if (klvs.empty()) return;
  const auto& klv = klvs[below(klvs.size())];
  bytes.erase(klv.start, klv.end - klv.start);
}

void Mutator::swapKLVs(std::string& bytes) {
  const auto klvs = klvsOf(bytes);
  if (klvs.empty()) return;
  const auto& one = klvs[below(klvs.size())];
  const auto& other = klvs[below(klvs.size())];
  swap(bytes, {one.start, one.end}, {other.start, other.end});
}

/// Gives an item the value of another one of its length: identifiers meet then, and references lead in circles.
void Mutator::copyItem(std::string& bytes) {
  const auto items = itemsOf(bytes);
  if (items.empty()) return;
  const auto& to = items[below(items.size())];
  std::vector<KLVPlace> candidates;
  for (const auto& item : items) {
    if (item.end - item.value == to.end - to.value) candidates.push_back(item);
  }
  const auto& from = candidates[below(candidates.size())];
  bytes.replace(to.value, to.end - to.value, bytes.substr(from.value, from.end - from.value));
}

void Mutator::replaceItemLength(std::string& bytes) {
  const auto items = itemsOf(bytes);
  if (items.empty()) return;
  const auto& item = items[below(items.size())];
  for (const std::size_t at : {item.start + 2, item.start + 3}) bytes[at] = static_cast<char>(random_());
}

/// Keeps how many octets the length has.
void Mutator::replaceLength(std::string& bytes) {
  const auto klvs = klvsOf(bytes);
  if (klvs.empty()) return;
  const auto& klv = klvs[below(klvs.size())];
  const std::size_t first = klv.start + kKeySize;
  if (klv.value == first + 1) {
    bytes[first] = static_cast<char>(random_());
  } else {
    const auto octet = static_cast<char>(below(2) == 0 ? 0xff : random_());
    bytes.replace(first + 1, klv.value - first - 1, klv.value - first - 1, octet);
  }
}

void Mutator::replaceOctets(std::string& bytes) {
  if (bytes.empty()) return;
  const std::size_t at = below(bytes.size());
  const std::size_t count = std::min<std::size_t>(1 + below(8), bytes.size() - at);
  bytes.replace(at, count, count, static_cast<char>(below(2) == 0 ? 0xff : random_()));
}

}  // namespace Vantor

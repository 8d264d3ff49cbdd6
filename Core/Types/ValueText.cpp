#include "Core/Types/ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string>

#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Types.h"

namespace Vantor::Types {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

constexpr std::size_t kShownUnits = 40;
constexpr std::u16string_view kWhiteSpace = u" \t\n\r";

bool isWhiteSpace(char16_t unit) { return kWhiteSpace.find(unit) != std::u16string_view::npos; }

/// Reads a text that is a number as a whole; false for any other text, and for a number that the type cannot hold.
template <class Integer>
bool readNumber(std::u16string_view text, Integer& number) {
  const std::string digits = Platform::wstringToString(wstring(text));
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

[[noreturn]] void raiseNoText(std::u16string_view text, const char* type, std::u16string_view example) {
  raise<InvalidFormat>("{} is not the text of {}{}, such as {}", excerpt(text), *type == 'A' ? "an " : "a ", type,
                       wstring(example));
}

wstring hexText(const SimpleDataType& value) {
  return Platform::hexText<wstring>(value.rawBuffer(), value.encodedSize());
}

/// @param digits  as `checkedText` gives them.
Bytes octetsOf(const wstring& digits) { return Platform::bytesFromHex(digits).value_or(Bytes()); }

// The text of a value, by overload, so that a type that is added to the list has one.

wstring textOf(const SimpleDataType& value) { return hexText(value); }
template <class Derived, class Number>
wstring textOf(const ScalarType<Derived, Number>& value) {
  return Platform::toDecimal(value.value());
}
template <class Derived>
wstring textOf(const IdentifierType<Derived>& value) {
  return value.toString(kDottedForm);
}
wstring textOf(const Boolean& value) { return value.value() ? u"1" : u"0"; }
wstring textOf(const UTF16& value) { return wstring(value.value() == 0 ? 0 : 1, static_cast<char16_t>(value.value())); }
wstring textOf(const NarrowString& value) { return Platform::stringToWstring(value.value()); }
wstring textOf(const WideString& value) { return Platform::utf16ToWstring(value.value()); }
wstring textOf(const Reference& value) { return value.toString(); }

wstring joined(std::initializer_list<int64> numbers, char16_t separator) {
  wstring text;
  for (const int64 number : numbers) {
    if (!text.empty()) text += separator;
    text += Platform::toDecimal(number);
  }
  return text;
}

wstring textOf(const Rational& value) { return joined({value.numerator(), value.denominator()}, u'/'); }
wstring textOf(const VersionType& value) { return joined({value.major(), value.minor()}, u'.'); }
wstring textOf(const ProductVersion& value) {
  const auto release = static_cast<uint16>(value.releaseVersion());
  return joined({value.major(), value.minor(), value.patch(), value.build(), release}, u'.');
}

wstring textOf(const Timestamp& value) {
  const unsigned milliSecond = static_cast<uint8>(value.milliSecond() / 4) * 4u;  // as on the wire
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u.%03u", unsigned{value.year()},
                unsigned{value.month()}, unsigned{value.day()}, unsigned{value.hour()}, unsigned{value.minute()},
                unsigned{value.second()}, milliSecond);
  return Platform::stringToWstring(text.data());
}

bool isText(Identifiers::Identifier type) {
  return type == Identifiers::kUTF16 || type == Identifiers::kUTF16String || type == Identifiers::kUTF8String ||
         type == Identifiers::kISO7String || type == Identifiers::kISO8String;
}

wstring textOf(const Collection& value) {
  wstring text;
  for (uint32 i = 0; i < value.size(); ++i) {
    const wstring item = textOfValue(value.at(i));
    text += i == 0 ? u"" : u", ";
    text += isText(value.at(i).identifier()) ? quotedText(item) : item;
  }
  return u"[" + text + u"]";
}

class TextVisitor : public Visitors::Visitor {
 public:
#define VANTOR_VISIT_TEXT(Type, number, octets) \
  void visit(const Type& value) override { text = textOf(value); }
  VANTOR_FOR_EACH_TYPE(VANTOR_VISIT_TEXT)
#undef VANTOR_VISIT_TEXT
  wstring text;
};

// What `checkedText` does, by overload on a null pointer to the type.

template <class Number>
wstring checkedNumber(std::u16string_view text) {
  using Limits = std::numeric_limits<Number>;
  const auto word = trimmed(text);
  Number number{};
  if (readNumber(word, number)) return wstring(word);
  raise<InvalidFormat>("{} is no whole number from {} to {}", excerpt(text), Limits::min(), Limits::max());
}

wstring checkedHex(std::u16string_view text) {
  wstring digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits), [](char16_t unit) { return !isWhiteSpace(unit); });
  if (!std::all_of(digits.begin(), digits.end(), [](char16_t unit) { return Platform::hexDigit(unit) >= 0; })) {
    raise<InvalidFormat>("{} is no run of octets: these are hexadecimal digits, two to an octet", excerpt(text));
  }
  if (digits.size() % 2 == 0) return digits;
  raise<InvalidFormat>("{} is no run of octets: the last of them lacks its second digit", excerpt(text));
}

wstring checked(const SimpleDataType*, std::u16string_view text) { return wstring(text); }
template <class Derived, class Number>
wstring checked(const ScalarType<Derived, Number>*, std::u16string_view text) {
  return checkedNumber<Number>(text);
}
wstring checked(const VersionType*, std::u16string_view text) { return checkedNumber<uint16>(text); }
template <class Derived>
wstring checked(const ByteString<Derived>*, std::u16string_view text) {
  return checkedHex(text);
}

template <class Derived>
wstring checked(const IdentifierType<Derived>*, std::u16string_view text) {
  const auto word = trimmed(text);
  if (std::none_of(word.begin(), word.end(), isWhiteSpace)) return wstring(word);
  raise<InvalidFormat>("{} is more than one identifier", excerpt(text));
}

wstring checked(const Boolean*, std::u16string_view text) {
  const auto word = trimmed(text);
  if (word == u"0" || word == u"false") return u"0";
  if (word == u"1" || word == u"true") return u"1";
  raise<InvalidFormat>("{} is neither 0 nor 1, neither false nor true", excerpt(text));
}

wstring checked(const UTF16*, std::u16string_view text) {
  if (text.size() > 1) raise<InvalidFormat>("{} is not one UTF-16 code unit", excerpt(text));
  return wstring(text);
}

template <class Derived>
wstring checked(const NarrowStringType<Derived>*, std::u16string_view text) {
  if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= Derived::kHighest; })) {
    return wstring(text);
  }
  raise<InvalidFormat>("{} is no ISO {}-bit text: it has characters that this encoding lacks", excerpt(text),
                       Derived::kHighest == 0x7f ? 7 : 8);
}

// What `valueFromText` does, by overload likewise.

template <class Type>
const Type* kindOf() {
  return nullptr;
}

/// Takes numbers and separators off the front of a text.
class Fields {
 public:
  explicit Fields(std::u16string_view text) : rest_(trimmed(text)) {}

  template <class Integer>
  Fields& number(Integer& number, std::size_t fewestDigits = 1) {
    const auto end = std::min(rest_.find_first_not_of(u"-0123456789", 1), rest_.size());
    const auto digits = rest_.substr(0, end);
    // A date has dashes between its numbers.
    const auto dash = std::is_signed_v<Integer> ? std::u16string_view::npos : digits.find(u'-');
    const auto taken = digits.substr(0, dash);
    matches_ = matches_ && taken.size() >= fewestDigits && readNumber(taken, number);
    rest_.remove_prefix(taken.size());
    return *this;
  }
  Fields& mark(char16_t separator) {
    matches_ = matches_ && isNext(separator);
    if (!rest_.empty()) rest_.remove_prefix(1);
    return *this;
  }
  bool isNext(char16_t unit) const { return !rest_.empty() && rest_.front() == unit; }
  bool matched() const { return matches_ && rest_.empty(); }

 private:
  std::u16string_view rest_;
  bool matches_ = true;
};

/// The octets of types that have no other form.
template <class Type>
auto_ptr<SimpleDataType> read(const Type*, std::u16string_view text) {
  const auto octets = octetsOf(checkedHex(text));
  if (auto value = Type::decode(octets.data(), octets.size())) return value;
  raiseNoText(text, Identifiers::name(Type::kIdentifier), hexText(Type()));
}

template <class Derived, class Number>
auto_ptr<SimpleDataType> readAs(const ScalarType<Derived, Number>* kind, std::u16string_view text) {
  return std::make_unique<Derived>(Platform::readDecimal<Number>(checked(kind, text)));
}

template <class Derived>
auto_ptr<SimpleDataType> readAs(const IdentifierType<Derived>* kind, std::u16string_view text) {
  std::array<uint8, Derived::kSize> octets{};
  if (Derived::parseText(checked(kind, text), octets.data())) return std::make_unique<Derived>(octets);
  for (std::size_t i = 0; i < octets.size(); ++i) octets[i] = static_cast<uint8>(i % 16 * 0x11);
  raiseNoText(text, Identifiers::name(Derived::kIdentifier), Derived(octets).toString(kDottedForm));
}

template <class Derived>
auto_ptr<SimpleDataType> readAs(const ReferenceType<Derived>*, std::u16string_view text) {
  const auto target = readAs(kindOf<UUID>(), text);
  return std::make_unique<Derived>(static_cast<const UUID&>(*target));
}

/// Values end at a NUL; anything behind it would be lost.
void requireNoNul(std::u16string_view text) {
  if (text.find(u'\0') != std::u16string_view::npos) raise<InvalidFormat>("{} holds a NUL", quotedText(text));
}

template <class Derived>
auto_ptr<SimpleDataType> readAs(const NarrowStringType<Derived>* kind, std::u16string_view text) {
  requireNoNul(text);
  return std::make_unique<Derived>(Platform::wstringToString(checked(kind, text)));
}

template <class Derived>
auto_ptr<SimpleDataType> readAs(const WideStringType<Derived>*, std::u16string_view text) {
  requireNoNul(text);
  return std::make_unique<Derived>(wstring(text));
}

auto_ptr<SimpleDataType> readAs(const Boolean* kind, std::u16string_view text) {
  return std::make_unique<Boolean>(checked(kind, text) == u"1");
}

auto_ptr<SimpleDataType> readAs(const UTF16* kind, std::u16string_view text) {
  const auto unit = checked(kind, text);
  return std::make_unique<UTF16>(unit.empty() ? uint16{0} : static_cast<uint16>(unit.front()));
}

auto_ptr<SimpleDataType> readAs(const Rational*, std::u16string_view text) {
  int32 numerator = 0;
  int32 denominator = 0;
  if (!Fields(text).number(numerator).mark(u'/').number(denominator).matched()) raiseNoText(text, "Rational", u"25/1");
  return std::make_unique<Rational>(numerator, denominator);
}

auto_ptr<SimpleDataType> readAs(const VersionType*, std::u16string_view text) {
  uint16 both = 0;
  if (Fields(text).number(both).matched()) {
    return std::make_unique<VersionType>(static_cast<uint8>(both >> 8), static_cast<uint8>(both));
  }
  uint8 major = 0;
  uint8 minor = 0;
  if (!Fields(text).number(major).mark(u'.').number(minor).matched()) raiseNoText(text, "VersionType", u"1.3");
  return std::make_unique<VersionType>(major, minor);
}

auto_ptr<SimpleDataType> readAs(const ProductVersion*, std::u16string_view text) {
  std::array<uint16, 5> part{};
  Fields fields(text);
  fields.number(part[0]);
  for (std::size_t i = 1; i < part.size(); ++i) fields.mark(u'.').number(part[i]);
  if (!fields.matched()) raiseNoText(text, "ProductVersion", u"1.2.3.4.1");
  return std::make_unique<ProductVersion>(part[0], part[1], part[2], part[3], static_cast<ReleaseVersion>(part[4]));
}

auto_ptr<SimpleDataType> readAs(const Timestamp*, std::u16string_view text) {
  constexpr uint16 kMostMilliSeconds = 255 * 4;
  uint16 year = 0;
  std::array<uint8, 5> part{};
  uint16 milliSecond = 0;
  Fields fields(text);
  fields.number(year, 4).mark(u'-').number(part[0], 2).mark(u'-').number(part[1], 2).mark(u'T');
  fields.number(part[2], 2).mark(u':').number(part[3], 2).mark(u':').number(part[4], 2);
  if (fields.isNext(u'.')) fields.mark(u'.').number(milliSecond, 3);
  if (!fields.matched()) raiseNoText(text, "Timestamp", u"2024-02-09T03:04:05.008");
  if (milliSecond % 4 != 0 || milliSecond > kMostMilliSeconds) {
    raise<InvalidFormat>("the milliseconds of {} are no multiple of 4 up to {}", excerpt(text), kMostMilliSeconds);
  }
  return std::make_unique<Timestamp>(year, part[0], part[1], part[2], part[3], part[4], milliSecond);
}

[[noreturn]] auto_ptr<SimpleDataType> readAs(const Collection*, std::u16string_view text) {
  raise<InvalidFormat>("{} is text for a collection, the type of whose items is not given", excerpt(text));
}

/// What has no overload of its own is read as octets.
template <class Type>
auto readAny(const Type* kind, std::u16string_view text, int) -> decltype(readAs(kind, text)) {
  return readAs(kind, text);
}
template <class Type>
auto_ptr<SimpleDataType> readAny(const Type* kind, std::u16string_view text, long) {
  return read(kind, text);
}

/// Items of a collection, as they stand between the brackets.
class ItemReader {
 public:
  explicit ItemReader(std::u16string_view text) : text_(text), rest_(trimmed(text)) {
    if (rest_.size() < 2 || rest_.front() != u'[' || rest_.back() != u']') refuse();
    rest_ = trimmed(rest_.substr(1, rest_.size() - 2));
  }

  bool hasMore() const { return !rest_.empty(); }
  wstring next() {
    wstring item = rest_.front() == u'"' ? nextQuoted() : nextBare();
    if (rest_.empty()) return item;
    if (rest_.front() != u',') refuse();
    rest_ = trimmed(rest_.substr(1));
    if (rest_.empty()) refuse();
    return item;
  }

 private:
  [[noreturn]] void refuse() const {
    raise<InvalidFormat>("{} is no collection, such as [1, 2] or [\"a\", \"b\"]", excerpt(text_));
  }
  wstring nextBare() {
    const auto item = rest_.substr(0, rest_.find(u','));
    rest_.remove_prefix(item.size());
    return wstring(trimmed(item));
  }
  wstring nextQuoted() {
    wstring item;
    for (take(); peek() != u'"';) item += peek() == u'\\' ? escaped() : take();
    take();
    rest_ = trimmed(rest_);
    return item;
  }
  char16_t escaped() {
    take();
    if (peek() == u'"' || peek() == u'\\') return take();
    int unit = take() == u'u' ? 0 : -1;
    for (int i = 0; i < 4 && unit >= 0; ++i) {
      const int digit = Platform::hexDigit(take());
      unit = digit < 0 ? -1 : unit << 4 | digit;
    }
    if (unit < 0) refuse();
    return static_cast<char16_t>(unit);
  }
  char16_t peek() const {
    if (rest_.empty()) refuse();
    return rest_.front();
  }
  char16_t take() {
    const char16_t unit = peek();
    rest_.remove_prefix(1);
    return unit;
  }

  std::u16string_view text_;
  std::u16string_view rest_;
};

/// The same value with NULs up to a size behind it; null when there is none.
auto_ptr<SimpleDataType> padded(const SimpleDataType& value, uint32 size) {
  Bytes octets(value.rawBuffer(), value.rawBuffer() + value.encodedSize());
  octets.resize(size);
  auto longer = Factories::fromBytes(value.identifier(), octets.data(), octets.size());
  return longer != nullptr && longer->equals(value) ? std::move(longer) : nullptr;
}

}  // namespace

wstring textOfValue(const SimpleDataType& value) {
  TextVisitor visitor;
  value.accept(visitor);
  return std::move(visitor.text);
}

auto_ptr<SimpleDataType> valueFromText(Identifiers::Identifier type, std::u16string_view text) {
  switch (type) {
#define VANTOR_READ_CASE(Type, number, octets) \
  case Identifiers::k##Type:                   \
    return readAny(kindOf<Type>(), text, 0);
    VANTOR_FOR_EACH_TYPE(VANTOR_READ_CASE)
#undef VANTOR_READ_CASE
    case Identifiers::kNone:
      break;
  }
  raise<InvalidFormat>("{} is text for a value of no type", excerpt(text));
}

auto_ptr<SimpleDataType> collectionFromText(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                            std::u16string_view text) {
  Templates::vector<auto_ptr<SimpleDataType>> items;
  uint32 itemSize = Identifiers::typeSize(itemType);
  for (ItemReader reader(text); reader.hasMore();) {
    items.push_back(valueFromText(itemType, reader.next()));
    itemSize = std::max(itemSize, items.back()->encodedSize());
  }
  auto_ptr<Collection> collection;
  if (arrayOrBatch == Identifiers::kArray) collection = std::make_unique<Array>(static_cast<int>(itemSize));
  if (arrayOrBatch == Identifiers::kBatch) collection = std::make_unique<Batch>(static_cast<int>(itemSize));
  if (collection == nullptr) raise<InvalidFormat>("{} is text for something else than a collection", excerpt(text));
  for (auto& item : items) {
    if (item->encodedSize() != itemSize) item = padded(*item, itemSize);
    if (item == nullptr) raise<InvalidFormat>("the items of {} are not of one size", excerpt(text));
    collection->append(std::move(item));
  }
  return collection;
}

bool hasEmptyText(Identifiers::Identifier type) {
  return isText(type) || type == Identifiers::kDataStream || type == Identifiers::kDataValue ||
         type == Identifiers::kUnknown;
}

std::u16string_view trimmed(std::u16string_view text) {
  const auto begin = text.find_first_not_of(kWhiteSpace);
  if (begin == std::u16string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kWhiteSpace) - begin + 1);
}

wstring excerpt(std::u16string_view text) {
  const wstring shown(text.substr(0, kShownUnits));
  return u"'" + shown + (text.size() > kShownUnits ? u"...'" : u"'");
}

wstring checkedText(Identifiers::Identifier type, std::u16string_view text) {
  switch (type) {
#define VANTOR_CHECK_CASE(Type, number, octets) \
  case Identifiers::k##Type:                    \
    return checked(kindOf<Type>(), text);
    VANTOR_FOR_EACH_TYPE(VANTOR_CHECK_CASE)
#undef VANTOR_CHECK_CASE
    case Identifiers::kNone:
      break;
  }
  return wstring(text);
}

wstring quotedText(std::u16string_view text) {
  const auto isControl = [](char16_t unit) {
    return unit < 0x20 || (unit >= 0x7f && unit < 0xa0) || unit == 0x2028 || unit == 0x2029;
  };
  wstring result = u"\"";
  for (const char16_t unit : text) {
    if (isControl(unit)) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04X", unsigned{unit});
      result += Platform::stringToWstring(escape.data());
    } else {
      if (unit == u'"' || unit == u'\\') result += u'\\';
      result += unit;
    }
  }
  return result + u'"';
}

}  // namespace Vantor::Types

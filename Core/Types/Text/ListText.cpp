#include "Core/Types/Text/ListText.h"

#include <algorithm>

#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

using Exceptions::InvalidFormat;

wstring printItem(const SimpleDataType& item, const ItemPrinter& print) {
  if (item.identifier() == Identifiers::kUTF16) {
    const wstring unit = printValue(item);
    return unit.front() == u'"' ? unit : quotedText(unit);
  }
  if (isTextType(item.identifier())) return quotedText(textOfValue(item));
  return print ? print(item) : printValue(item);
}

/// Items as they stand between the brackets.
class ItemScanner {
 public:
  ItemScanner(std::u16string_view text, Identifiers::Identifier itemType, std::string_view examples)
      : text_(text), itemType_(itemType), examples_(examples), rest_(trimmed(text)) {
    if (rest_.size() < 2 || rest_.front() != u'[' || rest_.back() != u']') refuse();
    rest_ = trimmed(rest_.substr(1, rest_.size() - 2));
  }

  bool hasMore() const { return !rest_.empty(); }
  wstring next() {
    wstring item = isTextType(itemType_) && rest_.front() == u'"' ? nextQuoted() : nextBare();
    if (rest_.empty()) return item;
    if (rest_.front() != u',') refuse();
    rest_ = trimmed(rest_.substr(1));
    if (rest_.empty()) refuse();
    return item;
  }

 private:
  [[noreturn]] void refuse() const {
    const auto* item = typeText(itemType_);
    const std::string_view examples = examples_.empty() && item != nullptr ? item->examples : examples_;
    const std::string one(examples.substr(0, std::min(examples.find(", "), examples.find(" or "))));
    refuseText(text_, "a list", "", isTextType(itemType_) ? R"(["a", "b"])" : "[" + one + "]");
  }
  wstring nextBare() {
    const bool isBraced = rest_.front() == u'{';
    const auto brace = isBraced ? rest_.find(u'}') : 0;
    const auto item = rest_.substr(0, rest_.find(u',', std::min(brace, rest_.size())));
    rest_.remove_prefix(item.size());
    return wstring(trimmed(item));
  }
  /// Unquoted items that need quotes would be unquoted once more.
  wstring nextQuoted() {
    wstring item;
    if (!takeQuoted(rest_, item)) refuse();
    rest_ = trimmed(rest_);
    return quotedText(item);
  }

  std::u16string_view text_;
  Identifiers::Identifier itemType_;
  std::string_view examples_;
  std::u16string_view rest_;
};

/// The same value with NULs up to a size behind it; null when there is none.
auto_ptr<SimpleDataType> padded(const SimpleDataType& value, uint32 size) {
  Bytes octets(value.rawBuffer(), value.rawBuffer() + value.encodedSize());
  octets.resize(size);
  auto longer = Factories::fromBytes(value.identifier(), octets.data(), octets.size());
  return longer != nullptr && longer->equals(value) ? std::move(longer) : nullptr;
}

auto_ptr<Collection> emptyList(Identifiers::Identifier arrayOrBatch, uint32 itemSize) {
  if (arrayOrBatch == Identifiers::kArray) return std::make_unique<Array>(static_cast<int>(itemSize));
  return std::make_unique<Batch>(static_cast<int>(itemSize));
}

/// Null when the items are not of one size, and NULs do not make them so.
auto_ptr<Collection> tryList(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                             Templates::vector<auto_ptr<SimpleDataType>> items) {
  uint32 itemSize = Identifiers::typeSize(itemType);
  for (const auto& item : items) itemSize = std::max(itemSize, item->encodedSize());
  auto list = emptyList(arrayOrBatch, itemSize);
  for (auto& item : items) {
    if (item->encodedSize() != itemSize) item = padded(*item, itemSize);
    if (item == nullptr) return nullptr;
    list->append(std::move(item));
  }
  return list;
}

}  // namespace

wstring printList(const Collection& list, const ItemPrinter& print) {
  wstring text;
  for (uint32 i = 0; i < list.size(); ++i) text += (i == 0 ? u"" : u", ") + printItem(list.at(i), print);
  return u"[" + text + u"]";
}

auto_ptr<SimpleDataType> parseList(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                   std::u16string_view text, const ItemParser& parse, std::string_view examples) {
  Templates::vector<auto_ptr<SimpleDataType>> items;
  for (ItemScanner scanner(text, itemType, examples); scanner.hasMore();) {
    const wstring item = scanner.next();
    items.push_back(parse ? parse(item) : parseValue(itemType, item));
  }
  auto list = tryList(arrayOrBatch, itemType, std::move(items));
  if (list == nullptr) Exceptions::raise<InvalidFormat>("the items of {} are not of one size", excerpt(text));
  return list;
}

auto_ptr<SimpleDataType> listOf(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                Templates::vector<auto_ptr<SimpleDataType>> items) {
  auto list = tryList(arrayOrBatch, itemType, std::move(items));
  if (list == nullptr) Exceptions::raise<InvalidFormat>("the items are not of one size");
  return list;
}

}  // namespace Vantor::Types

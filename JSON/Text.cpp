#include "JSON/Text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Core/Platform/DocumentLine.h"

namespace Vantor::JSON {

namespace {

using Exceptions::ParseError;
using Exceptions::raiseAt;
using Tree = nlohmann::ordered_json;

constexpr int kIndent = 2;
constexpr uint8 kFirstPrintable = 0x20;
constexpr uint8 kBeyondASCII = 0x80;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

Tree treeOf(const Value& value);

Tree treeOf(const Value::Items& items) {
  Tree tree = Tree::array();
  for (const auto& item : items) tree.push_back(treeOf(item));
  return tree;
}

Tree treeOf(const Value::Members& members) {
  auto object = Tree::object_t();
  // The container looks for the name before it adds a member; these differ already.
  for (const auto& [name, value] : members) object.Container::emplace_back(name, treeOf(value));
  return object;
}

Tree treeOf(const Value& value) {
  if (const auto* boolean = value.boolean()) return *boolean;
  if (const auto* number = value.integer()) return *number;
  if (const auto* number = value.largeInteger()) return *number;
  if (const auto* number = value.real()) return *number;
  if (const auto* text = value.text()) return *text;
  if (const auto* items = value.items()) return treeOf(*items);
  if (const auto* members = value.members()) return treeOf(*members);
  return nullptr;
}

/// Line and column of a byte, both from 1.
struct Position {
  std::size_t line;
  std::size_t column;
};

Position positionOf(std::string_view text, std::size_t byte) {
  const auto before = text.substr(0, std::min(byte, text.size()));
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const auto start = before.rfind('\n');
  return {static_cast<std::size_t>(lines) + 1, before.size() - (start == before.npos ? 0 : start + 1) + 1};
}

bool isASCII(char byte) { return static_cast<uint8>(byte) < kBeyondASCII; }
/// Whether a byte goes on with a character of UTF-8.
bool isTrail(char byte) { return (static_cast<uint8>(byte) & 0xC0) == 0x80; }

/// @param text  without quotes, backslashes and control characters.
bool isUTF8(std::string_view text) { return Tree::accept('"' + std::string(text) + '"'); }

/// Steps through a text and leaves word how far it was read.
class Cursor {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Cursor(const char* at, const char** seen) : at_(at), seen_(seen) {}
  reference operator*() const { return *at_; }
  Cursor& operator++() {
    *seen_ = ++at_;
    return *this;
  }
  bool operator==(const Cursor& other) const { return at_ == other.at_; }
  bool operator!=(const Cursor& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** seen_;
};

/// An array or object that is being read.
struct Open {
  Value value;
  std::string name = {};                       // of the member that is next
  std::unordered_set<std::string> names = {};  // of the members so far
  std::size_t count = 0;                       // of the items so far
};

/// Builds values from the events of the parser, and hands over the parts of a document as soon as they are complete.
class Builder : public nlohmann::json_sax<nlohmann::json> {
 public:
  /// @param take  null for a document that is read as a whole.
  Builder(std::string_view text, const std::function<void(Part)>* take)
      : text_(text), counted_(text.data()), seen_(text.data()), take_(take) {}

  const char** seen() { return &seen_; }
  Value& whole() { return whole_; }

  bool null() override { return add({}); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t number) override { return add(static_cast<int64>(number)); }
  bool number_unsigned(number_unsigned_t number) override { return add(static_cast<uint64>(number)); }
  bool number_float(number_float_t number, const string_t&) override { return add(number); }
  bool string(string_t& text) override { return add(std::move(text)); }
  bool binary(binary_t&) override { return false; }  // JSON text has none
  bool start_object(std::size_t) override { return open(Value::object()); }
  bool end_object() override { return close(); }
  bool start_array(std::size_t) override { return open(Value::array()); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    auto& object = open_.back();
    if (!object.names.insert(name).second) refuse("the member \"" + name + "\" is there twice");
    object.name = name;
    countLines();
    return true;
  }

  /// @param position  how many bytes were read. @param token  of a number, its text.
  bool parse_error(std::size_t position, const std::string& token, const nlohmann::json::exception& error) override {
    const auto byte = position == 0 ? 0 : position - 1;
    const bool isTooLarge = dynamic_cast<const nlohmann::json::out_of_range*>(&error) != nullptr;
    refuse(isTooLarge ? "the number " + token + " is too large" : reasonAt(byte), byte);
  }

 private:
  /// Why the document is no JSON. @param byte  the last one that was read.
  std::string reasonAt(std::size_t byte) const {
    const auto open = openTextAt(byte);
    const bool isInText = open != text_.npos;
    if (byte >= text_.size()) return isInText ? "a text has no end" : "the document ends too early";
    if (isNoUTF8(byte)) return "it is not UTF-8";
    const bool isControl = static_cast<uint8>(text_[byte]) < kFirstPrintable;
    if (!isInText && isControl) return "a control character cannot stand here";
    const bool isWhole = text_[byte] == '"' && !endsInEscape(byte);
    if (!isInText || isWhole) {
      return "'" + wordBetween(isInText ? open : wordAt(byte), lastOfCharacter(byte)) + "' cannot stand here";
    }
    if (isControl) return "a text has a control character; a line feed is \\n";
    return "a text has an escape that stands for no character; a backslash is \\\\";
  }

  /// Shortened.
  std::string wordBetween(std::size_t first, std::size_t last) const {
    constexpr std::size_t kMost = 40;
    std::string word(text_.substr(first, std::min(last + 1 - first, kMost)));
    if (last + 1 - first <= kMost) return word;
    while (!isASCII(word.back())) word.pop_back();
    return word + "...";
  }

  /// Where the quoted text begins that a byte is in, its last quote included; npos for none.
  std::size_t openTextAt(std::size_t byte) const {
    std::size_t open = text_.npos;
    for (std::size_t at = 0; at < std::min(byte, text_.size()); ++at) {
      if (open != text_.npos && text_[at] == '\\') {
        ++at;
      } else if (text_[at] == '"') {
        open = open == text_.npos ? at : text_.npos;
      }
    }
    return open;
  }

  /// The last byte of the character that a byte is in.
  std::size_t lastOfCharacter(std::size_t byte) const {
    if (isASCII(text_[byte])) return byte;
    while (byte + 1 < text_.size() && isTrail(text_[byte + 1])) ++byte;
    return byte;
  }

  /// Where the word begins that a byte ends, or the character beyond ASCII that it is in.
  std::size_t wordAt(std::size_t byte) const {
    while (byte != 0 && isTrail(text_[byte])) --byte;
    const auto isInWord = [](char character) { return std::isalnum(static_cast<uint8>(character)) != 0; };
    if (!isInWord(text_[byte])) return byte;
    while (byte != 0 && isInWord(text_[byte - 1])) --byte;
    return byte;
  }

  /// Whether the bytes beyond ASCII around one that was refused, or before it, are no characters.
  bool isNoUTF8(std::size_t byte) const {
    std::size_t begin = byte, end = byte;
    while (begin != 0 && !isASCII(text_[begin - 1])) --begin;
    while (end < text_.size() && !isASCII(text_[end])) ++end;
    return !isUTF8(text_.substr(begin, end - begin));
  }

  /// Whether a backslash is not the second of two, which are an escape themselves.
  bool isEscape(std::size_t backslash) const {
    std::size_t first = backslash;
    while (first != 0 && text_[first - 1] == '\\') --first;
    return (backslash - first) % 2 == 0;
  }

  /// Whether a quote stands behind an escape with too few digits, or behind one half of a character ("\ud800").
  bool endsInEscape(std::size_t quote) const {
    constexpr std::size_t kSize = 6;
    const auto last = text_.substr(quote - std::min(quote, kSize), std::min(quote, kSize));
    const auto escape = last.rfind("\\u");
    if (escape == last.npos || !isEscape(quote - last.size() + escape)) return false;
    const bool isHalf = escape == 0 && (last[2] == 'd' || last[2] == 'D') && last.find_first_of("89abAB", 3) == 3;
    return escape != 0 || isHalf;
  }

  [[noreturn]] void refuse(const std::string& reason) {
    refuse(reason, static_cast<std::size_t>(seen_ - text_.data()));
  }
  [[noreturn]] void refuse(const std::string& reason, std::size_t byte) {
    const auto [line, column] = positionOf(text_, byte);
    raiseAt<ParseError>(line, "line {}, column {}: {}{}", line, column, reason, placeText());
  }

  /// The part that is being read, for messages.
  std::string placeText() const {
    if (open_.size() < 2 || take_ == nullptr) return "";
    const auto& list = open_[1];
    if (list.value.items() == nullptr) return " (in \"" + open_[0].name + "\")";
    const auto set = open_.size() > 2 ? nameOfSet(open_[2].value) : "";
    return " (in /" + open_[0].name + "/" + std::to_string(list.count) + (set.empty() ? "" : ", " + set) + ")";
  }

  void countLines() {
    line_ += static_cast<uint32>(std::count(counted_, seen_, '\n'));
    counted_ = seen_;
  }

  bool open(Value value) {
    if (open_.empty() && value.members() == nullptr) refuse("the document is no object");
    if (open_.size() == kMaximumDepth) refuse("it nests deeper than " + std::to_string(kMaximumDepth) + " levels");
    countLines();
    value.setLine(line_);
    open_.push_back({std::move(value)});
    return true;
  }

  bool close() {
    Value value = std::move(open_.back().value);
    const bool isEmpty = open_.back().count == 0;
    open_.pop_back();
    if (open_.empty()) {
      whole_ = std::move(value);
      return true;
    }
    // The items of a part were handed over one by one.
    if (take_ != nullptr && open_.size() == 1 && value.items() != nullptr && !isEmpty) return true;
    return put(std::move(value));
  }

  bool add(Value value) {
    if (open_.empty()) refuse("the document is no object");
    value.setLine(line_);
    return put(std::move(value));
  }

  bool put(Value value) {
    auto& in = open_.back();
    const bool isItem = in.value.items() != nullptr;
    if (take_ != nullptr && open_.size() == 1) {
      (*take_)({in.name, std::nullopt, std::move(value)});
    } else if (take_ != nullptr && open_.size() == 2 && isItem) {
      (*take_)({open_[0].name, in.count, std::move(value)});
    } else if (isItem) {
      in.value.append(std::move(value));
    } else {
      in.value.add(std::move(in.name), std::move(value));
    }
    ++in.count;
    return true;
  }

  std::string_view text_;
  const char* counted_;  // up to here, line feeds are counted
  const char* seen_;
  uint32 line_ = 1;
  const std::function<void(Part)>* take_;
  std::vector<Open> open_;
  Value whole_;
};

void read(std::string_view text, Builder& builder) {
  const Cursor begin(text.data(), builder.seen()), end(text.data() + text.size(), builder.seen());
  nlohmann::json::sax_parse(begin, end, &builder);
}

/// @param indent  -1 for a single line.
std::string written(const Value& value, int indent) {
  return treeOf(value).dump(indent, ' ', false, Tree::error_handler_t::replace);
}

}  // namespace

std::string toLine(const Value& value) { return written(value, -1); }

std::string toText(const Value& value, std::size_t level) {
  const std::string text = written(value, kIndent);
  if (level == 0) return text;
  // No text has a line feed of its own: these are escaped.
  const std::string indent(level * kIndent, ' ');
  std::string indented;
  for (const char character : text) {
    indented += character;
    if (character == '\n') indented += indent;
  }
  return indented;
}

void readParts(std::string_view text, const std::function<void(Part part)>& take) {
  Builder builder(text, &take);
  read(text, builder);
}

Value fromText(std::string_view text) {
  Builder builder(text, nullptr);
  read(text, builder);
  return std::move(builder.whole());
}

std::string nameOfSet(const Value& set) {
  std::string name;
  for (const char* member : {"set", "instanceUID"}) {
    const auto* value = set.find(member);
    const auto* text = value == nullptr ? nullptr : value->text();
    if (text != nullptr) name += (name.empty() ? "" : " ") + *text;
  }
  return name;
}

bool looksLikeJSON(std::string_view text) {
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());
  const auto first = text.find_first_not_of(" \t\r\n");
  const bool isUTF16 = first != text.npos && first + 1 < text.size() && text[first + 1] == '\0';
  return first != text.npos && !isUTF16 && (text[first] == '{' || text[first] == '[');
}

}  // namespace Vantor::JSON

#include "Core/Metadata/SetPath.h"

#include <algorithm>
#include <charconv>

#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

constexpr auto kNowhere = std::string_view::npos;

/// Behind the quote that ends a quoted text; `kNowhere` when none does.
std::size_t endOfQuoted(std::string_view text, std::size_t open) {
  for (std::size_t at = open + 1; at < text.size(); ++at) {
    if (text[at] == '\\') {
      ++at;
    } else if (text[at] == '"') {
      return at + 1;
    }
  }
  return kNowhere;
}

/// Whether a quote begins a value: nothing but blanks stands behind the equals sign.
bool beginsValue(std::string_view text, std::size_t equals, std::size_t quote) {
  return equals < quote && text.find_first_not_of(' ', equals + 1) == quote;
}

/// The bracket that closes one. Quotes count at the start of a value and within lists.
/// @throws InvalidFormat when there is none.
std::size_t closingBracket(std::string_view text, std::size_t open) {
  const std::size_t equals = text.find('=', open);
  std::size_t depth = 1;
  for (std::size_t at = open + 1; at < text.size(); ++at) {
    if (text[at] == '[') ++depth;
    if (text[at] == ']' && --depth == 0) return at;
    if (text[at] != '"' || (depth == 1 && !beginsValue(text, equals, at))) continue;
    at = endOfQuoted(text, at);
    if (at == kNowhere) raise<InvalidFormat>("the quoted text in '{}' has no end", text.substr(open));
    --at;
  }
  raise<InvalidFormat>("the bracket in '{}' is not closed", text);
}

std::string_view withoutBlanks(std::string_view text) {
  const auto first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::optional<int64> numberOf(std::string_view text) {
  int64 number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber ? std::optional(number) : std::nullopt;
}

/// Skips blanks and a name in parentheses, which messages add: "Timecode (TimecodeComponent)".
std::size_t behindOtherName(std::string_view text, std::size_t at) {
  const std::size_t open = std::min(text.find_first_not_of(' ', at), text.size());
  if (open == text.size() || text[open] != '(') return at;
  const std::size_t close = text.find(')', open);
  return close == kNowhere ? at : std::min(text.find_first_not_of(' ', close + 1), text.size());
}

std::string_view withoutOtherName(std::string_view text) {
  const std::size_t open = text.find('(');
  return open == kNowhere || behindOtherName(text, open) != text.size() ? text : withoutBlanks(text.substr(0, open));
}

[[noreturn]] void raiseNoKind(const std::string& path) {
  raise<InvalidFormat>(
      "'*'{} is no kind of sets; write InterchangeObject[*] for sets of all kinds, or a kind, such as TimelineTrack[*]",
      path == "*" ? "" : " in '" + path + "'");
}

}  // namespace

SetPath::SetPath(std::string_view text) : text_(text) {
  std::size_t at = 0;
  for (;;) {
    steps_.push_back(readStep(at));
    if (at == text_.size()) return;
    ++at;  // a slash
  }
}

bool SetPath::isForAll() const {
  const auto& selectors = steps_.back().selectors;
  return !selectors.empty() && selectors.back().kind == Selector::Kind::kAll;
}

SetPath::Step SetPath::readStep(std::size_t& at) const {
  Step step;
  step.begin = at;
  step.nameEnd = at = std::min(text_.find_first_of("[]/(", at), text_.size());
  step.name = withoutBlanks(std::string_view(text_).substr(step.begin, at - step.begin));
  if (step.name == "*") raiseNoKind(text_);
  at = behindOtherName(text_, at);
  while (at < text_.size() && text_[at] == '[') {
    if (step.name.empty()) raise<InvalidFormat>("there is no name before '{}'", text_.substr(at));
    const auto close = closingBracket(text_, at);
    step.selectors.push_back(readSelector(at, close));
    at = behindOtherName(text_, close + 1);
  }
  const bool hasSlash = at < text_.size() && text_[at] == '/';
  if (at < text_.size() && !hasSlash) raise<InvalidFormat>("'{}' in '{}' cannot stand there", text_.substr(at), text_);
  const bool isOnly = steps_.empty() && !hasSlash;
  if (step.name.empty() && !isOnly) raise<InvalidFormat>("'{}' has an empty step beside a '/'", text_);
  return step;
}

SetPath::Selector SetPath::readSelector(std::size_t open, std::size_t close) const {
  const auto inside = withoutBlanks(std::string_view(text_).substr(open + 1, close - open - 1));
  Selector selector;
  selector.end = close + 1;
  if (inside == "*") return selector;
  if (inside.find('=') != kNowhere) return readCondition(open, close);
  const auto index = numberOf(inside);
  if (!index) {
    raise<InvalidFormat>(
        "'[{}]' in '{}' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]", inside,
        text_);
  }
  if (*index == 0) raise<InvalidFormat>("'[{}]' in '{}': the first is [1], the last [-1]", inside, text_);
  selector.kind = Selector::Kind::kIndex;
  selector.index = *index;
  return selector;
}

SetPath::Selector SetPath::readCondition(std::size_t open, std::size_t close) const {
  const auto inside = std::string_view(text_).substr(open + 1, close - open - 1);
  const auto equals = inside.find('=');
  const auto value = withoutBlanks(inside.substr(equals + 1));
  Selector selector;
  selector.kind = Selector::Kind::kCondition;
  selector.property = withoutOtherName(withoutBlanks(inside.substr(0, equals)));
  selector.end = close + 1;
  if (selector.property.empty()) raise<InvalidFormat>("the condition '[{}]' in '{}' names no property", inside, text_);
  const bool isQuoted = !value.empty() && value.front() == '"';
  if (isQuoted && endOfQuoted(value, 0) != value.size()) {
    raise<InvalidFormat>("the condition '[{}]' in '{}' goes on behind its quoted text", inside, text_);
  }
  selector.value = value;
  return selector;
}

PropertyPath::PropertyPath(std::string_view text) {
  std::size_t at = 0, point = kNowhere;
  for (; at < text.size() && text[at] != '='; ++at) {
    if (text[at] == '.') point = at;
    if (text[at] == '[') at = closingBracket(text, at);
  }
  choice = text.substr(0, at);
  if (at < text.size()) value = text.substr(at + 1);
  set = choice.substr(0, std::min(point, choice.size()));
  if (point != kNowhere) property = withoutOtherName(std::string_view(choice).substr(point + 1));
}

}  // namespace Vantor

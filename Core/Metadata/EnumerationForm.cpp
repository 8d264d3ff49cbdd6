#include "Core/DataIO/BigEndian.h"
#include "Core/MetaMetadata/Enumeration.h"
#include "Core/MetaMetadata/NameFolding.h"
#include "Core/Metadata/PropertyForm.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/NumberText.h"

/// Numbers by the names that their enumeration gives them.
namespace Vantor {

namespace {

constexpr std::size_t kMostNames = 12;

bool hasEnumeration(const PropertyPlace& place, Types::Identifiers::Identifier) {
  return place.definition->enumeration() != nullptr;
}

TextNoun nounOfEnumeration(const PropertyPlace& place) {
  const auto& enumeration = *place.definition->enumeration();
  std::string examples;
  for (const auto name : enumeration.firstNames(kMostNames)) {
    examples += (examples.empty() ? "" : ", ") + std::string(name);
  }
  return {"a value of " + enumeration.name(), examples};
}

/// The number's name where it is read as that number.
std::optional<wstring> printName(const PropertyPlace& place, const Types::SimpleDataType& item) {
  int64 number = 0;
  const auto digits = Platform::wstringToString(Types::printValue(item));
  if (!Types::readWholeNumber(Platform::stringToWstring(digits), number)) return std::nullopt;
  const auto& enumeration = *place.definition->enumeration();
  const auto name = enumeration.nameOf(number);
  if (name.empty() || enumeration.numbersNamed(name) != Templates::vector<int64>{number}) return std::nullopt;
  return Utils::stringToWstring(std::string(name));
}

/// What other programs call a value of an enumeration.
struct OtherWord {
  std::string_view enumeration;
  std::string_view word;  // folded
  const char* meant;
};
constexpr OtherWord kOtherWords[] = {
    {"LayoutType", "progressive", "progressive pictures have FullFrame"},
    {"LayoutType", "progressivescan", "progressive pictures have FullFrame"},
    {"LayoutType", "psf", "segmented progressive pictures have SegmentedFrame"},
    {"LayoutType", "progressivesegmentedframe", "segmented progressive pictures have SegmentedFrame"},
    {"LayoutType", "interlaced", "interlaced pictures have SeparateFields, or MixedFields with both fields in one"}};

/// Names the value that a word of another program stands for; none for other texts.
std::optional<Types::ParsedValue> refusalOfWord(const MetaMetadata::Enumeration& enumeration, std::string_view text) {
  const auto word = MetaMetadata::foldedName(text);
  for (const auto& other : kOtherWords) {
    if (other.enumeration == enumeration.name() && other.word == word) return Types::ParsedValue(other.meant);
  }
  return std::nullopt;
}

/// Lists the names that a text may mean.
Types::ParsedValue refusalOf(const PropertyPlace& place, const Templates::vector<int64>& numbers) {
  std::string names;
  for (const auto number : numbers) {
    names += (names.empty() ? "" : ", ") + std::string(place.definition->enumeration()->nameOf(number));
  }
  return Types::ParsedValue("several have that name: " + names);
}

std::optional<Types::ParsedValue> parseName(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                            std::u16string_view text) {
  const auto name = Utils::wstringToString(wstring(Types::trimmed(text)));
  int64 number = 0;
  if (Types::readWholeNumber(Types::trimmed(text), number)) return std::nullopt;
  const auto numbers = place.definition->enumeration()->numbersNamed(name);
  if (numbers.empty()) return refusalOfWord(*place.definition->enumeration(), name);
  if (numbers.size() > 1) return refusalOf(place, numbers);
  const bool isBoolean = type == Types::Identifiers::kBoolean;
  return Types::typeText(type)->parse(isBoolean && numbers[0] != 0 ? wstring(u"1") : Platform::toDecimal(numbers[0]));
}

}  // namespace

const PropertyForm kEnumerationForm = {hasEnumeration, nounOfEnumeration, printName, parseName};

}  // namespace Vantor

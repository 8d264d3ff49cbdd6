#include <utf8.h>

#include <algorithm>
#include <utility>

#include "Core/Dictionary/DefinitionAdder.h"
#include "Core/Dictionary/Definitions.h"
#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor {

namespace {

constexpr std::string_view kNameOption = "name=";

constexpr const char* kSetShape = "a set is: key, symbol, parent or '-', and 'abstract' or name=X where that holds";
constexpr const char* kPropertyShape =
    "a property is: local tag or '-', key, symbol, type, status, and name=X where XML has another name";
constexpr const char* kEnumerationShape = "an enumeration is: enum, name, integer type";
constexpr const char* kValueShape = "a value of an enumeration is: number, name";
constexpr const char* kLabelShape = "a label is: label, key, symbol, name";
constexpr const char* kExtensionShape = "an extension is: extend, symbol of the set";
constexpr const char* kNamespaceShape = "a namespace is: namespace, 'sets' or 'properties', prefix, URI";
constexpr const char* kNamesShape = "common names are: names, key of the set, and its common name if it has one";
constexpr const char* kCommonNameShape = "a common name of a property is: key, name";
constexpr const char* kFormatShape = "the first row of a dictionary file has to be: dictionary 1";

}  // namespace

/// Reads one text of the dictionary format into `Definitions`; one object per text.
class DefinitionReader {
 public:
  /// @param source  the place of the text's name among the sources.
  DefinitionReader(Definitions& definitions, Definitions::Overlay overlay, uint32 source)
      : to_(definitions), adder_(definitions, overlay), source_(source) {}

  /// @param text  stays where it is for as long as the definitions live.
  void read(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      ++line_;
      readRow(DictionaryRow(text.substr(0, end)));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (!hasFormat_) {
      line_ = 1;
      refuse(kFormatShape);
    }
    adder_.finish();
  }

 private:
  /// What the indented rows under a heading are.
  enum class Section : uint8 { kNone, kSet, kEnumeration, kNames };

  void readRow(const DictionaryRow& row) {
    if (row.isBlank()) return;
    if (!hasFormat_) return readFormat(row);
    if (!row.isIndented()) return readHeading(row);
    switch (section_) {
      case Section::kSet:
        return readProperty(row);
      case Section::kEnumeration:
        return readEnumerationValue(row);
      case Section::kNames:
        return readCommonName(row);
      case Section::kNone:
        refuse(
            "an indented row belongs to the set or enumeration above it, and there is none; put it under one, or take "
            "the white space from its start");
    }
  }

  void readHeading(const DictionaryRow& row) {
    section_ = Section::kNone;
    const std::string_view word = row[0];
    if (word.front() >= '0' && word.front() <= '9') return readSet(row);
    if (word == "label") return readLabel(row);
    if (word == "enum") return readEnumeration(row);
    if (word == "extend") return readExtension(row);
    if (word == "namespace") return readNamespace(row);
    if (word == "names") return readNames(row);
    if (word.substr(0, 4) == "urn:" || MetaMetadata::parseRegisterKey(word)) return readSet(row);
    refuse(
        "{} begins no row; a row that is not indented begins with a set's key, or with extend, enum, label, "
        "names or namespace",
        quotedWord(word));
  }

  void readFormat(const DictionaryRow& row) {
    if (row.isIndented()) refuse("there is white space before the row; {}", kFormatShape);
    if (row.size() != 2 || row[0] != "dictionary") refuse(kFormatShape);
    if (row[1] != "1") refuse("the format {} is not known; this version reads format 1", quotedWord(row[1]));
    hasFormat_ = true;
  }

  void readNamespace(const DictionaryRow& row) {
    expectWords(row, 4, 4, kNamespaceShape);
    const bool forSets = row[1] == "sets";
    if (!forSets && row[1] != "properties") {
      refuse("{} is neither 'sets' nor 'properties'; {}", quotedWord(row[1]), kNamespaceShape);
    }
    adder_.checkName(row[2], "a prefix", here());
    (forSets ? setNamespace_ : elementNamespace_) = adder_.addNamespace(row[2], row[3], here());
  }

  void readSet(const DictionaryRow& row) {
    expectWords(row, 3, 5, kSetShape);
    SetDefinition set;
    set.key = keyOf(row[0]);
    set.symbol = row[1];
    if (row[2] != "-") set.parent = row[2];
    set.isConcrete = row[3] != "abstract";
    const std::size_t option = set.isConcrete ? 3 : 4;
    if (row.size() > option + 1) refuse("there are too many words; {}", kSetShape);
    set.tagName = xmlNameOf(row[option], set.symbol, kSetShape);
    set.chosenNamespace = setNamespace_;
    set.origin = here();
    set_ = adder_.addSet(std::move(set));
    section_ = Section::kSet;
  }

  void readExtension(const DictionaryRow& row) {
    expectWords(row, 2, 2, kExtensionShape);
    set_ = to_.placeOfSet(row[1]);
    if (set_ == Definitions::kNotFound) {
      refuse("there is no set {} to extend; define it before, or give the file that does so first", quotedWord(row[1]));
    }
    section_ = Section::kSet;
  }

  void readNames(const DictionaryRow& row) {
    expectWords(row, 2, 3, kNamesShape);
    set_ = to_.placeOfSet(keyOf(row[1]));
    if (set_ == Definitions::kNotFound) {
      refuse("there is no set {}; define it before, or give the file that does so first", quotedWord(row[1]));
    }
    section_ = Section::kNames;
    if (row.size() == 3) adder_.addCommonName({set_, std::nullopt, row[2], here()});
  }

  void readCommonName(const DictionaryRow& row) {
    expectWords(row, 2, 2, kCommonNameShape);
    const uint32 property = to_.placeOfProperty(Types::UniversalLabel(keyOf(row[0])));
    if (property == Definitions::kNotFound) {
      refuse("there is no property {}; define it before, or give the file that does so first", quotedWord(row[0]));
    }
    adder_.addCommonName({set_, property, row[1], here()});
  }

  void readEnumeration(const DictionaryRow& row) {
    expectWords(row, 3, 3, kEnumerationShape);
    EnumerationDefinition enumeration;
    enumeration.name = row[1];
    enumeration.base = propertyTypeNamed(row[2]);
    if (!isEnumerable(enumeration.base)) {
      refuse("an enumeration cannot be over {}; take one of Int8 to Int64 and UInt8 to UInt64", quotedWord(row[2]));
    }
    enumeration.origin = here();
    set_ = adder_.addEnumeration(std::move(enumeration));
    section_ = Section::kEnumeration;
  }

  void readEnumerationValue(const DictionaryRow& row) {
    expectWords(row, 2, 2, kValueShape);
    adder_.addValue(set_, row[0], row[1], here());
  }

  void readLabel(const DictionaryRow& row) {
    if (row.size() < 4) refuse("a word is missing; {}", kLabelShape);
    LabelDefinition label;
    label.key = Types::UniversalLabel(keyOf(row[1]));
    label.symbol = row[2];
    label.name = row.from(3);
    label.origin = here();
    adder_.addLabel(label);
  }

  void readProperty(const DictionaryRow& row) {
    expectWords(row, 5, 6, kPropertyShape);
    PropertyUse use;
    use.staticLocalTag = tagOf(row[0]);
    PropertyDefinition property;
    property.key = Types::UniversalLabel(keyOf(row[1]));
    property.symbol = row[2];
    property.type = typeOf(row[3]);
    use.requiredStatus = statusOf(row[4]);
    property.tagName = xmlNameOf(row[5], property.symbol, kPropertyShape);
    property.chosenNamespace = elementNamespace_;
    property.origin = use.origin = here();
    adder_.addProperty(set_, std::move(property), use);
  }

  KLV::Key keyOf(std::string_view word) const {
    if (const auto key = MetaMetadata::parseRegisterKey(word)) return *key;
    refuse("{} is no key; write 32 hexadecimal digits, dots between octets allowed", quotedWord(word));
  }

  PropertyType typeOf(std::string_view word) const {
    std::string whyNot;
    auto type = parsePropertyType(word, whyNot);
    if (!type) refuse("{}", whyNot);
    if (!type->enumeration.empty()) {
      const uint32 place = to_.placeOfEnumeration(type->enumeration);
      if (place != Definitions::kNotFound) type->value = to_.enumerations_[place].base;
    }
    return *type;
  }

  uint16 tagOf(std::string_view word) const {
    if (word == "-") return 0;
    const auto tag = Platform::numberFromHex<uint16>(word).value_or(0);
    if (tag != 0) return tag;
    refuse("{} is no local tag; write four hexadecimal digits, or '-' when there is no static one", quotedWord(word));
  }

  uint32 statusOf(std::string_view word) const {
    const auto* const found = std::find(kRequiredStatuses.begin(), kRequiredStatuses.end(), word);
    if (found != kRequiredStatuses.end()) return static_cast<uint32>(found - kRequiredStatuses.begin());
    refuse("{} is no status; write required, encoder-required, decoder-required, best-effort or optional",
           quotedWord(word));
  }

  std::string_view xmlNameOf(std::string_view option, std::string_view symbol, const char* shape) const {
    if (option.empty()) return symbol;
    if (option.substr(0, kNameOption.size()) == kNameOption) return option.substr(kNameOption.size());
    refuse("{} is not expected here; {}", quotedWord(option), shape);
  }

  void expectWords(const DictionaryRow& row, std::size_t least, std::size_t most, const char* shape) const {
    if (row.size() < least) refuse("a word is missing; {}", shape);
    if (row.size() > most) refuse("there are too many words; {}", shape);
  }

  Origin here() const { return {source_, line_}; }
  template <class... Arguments>
  [[noreturn]] void refuse(const Exceptions::Format& what, const Arguments&... arguments) const {
    to_.refuse(here(), what, nullptr, arguments...);
  }

  Definitions& to_;
  DefinitionAdder adder_;
  uint32 source_;
  uint32 line_ = 0;
  bool hasFormat_ = false;
  Section section_ = Section::kNone;
  uint32 set_ = 0;  // or the enumeration; of common names, too
  uint32 setNamespace_ = 0;
  uint32 elementNamespace_ = 0;
};

void Definitions::readText(std::string text, std::string name, Overlay overlay) {
  const uint32 source = addSource(std::move(name));
  std::string_view kept = keep(std::move(text));
  const auto invalid = utf8::find_invalid(kept.begin(), kept.end());
  const auto nul = kept.find('\0');
  const auto bad = std::min(nul, static_cast<std::size_t>(invalid - kept.begin()));
  if (bad < kept.size()) {
    const auto line = static_cast<uint32>(1 + std::count(kept.begin(), kept.begin() + bad, '\n'));
    refuse({source, line}, "this is no text in UTF-8", "save the file in that encoding");
  }
  if (utf8::starts_with_bom(kept.begin(), kept.end())) kept.remove_prefix(3);
  DefinitionReader(*this, overlay, source).read(kept);
}

void Definitions::readTrusted(std::string_view text, std::string name, bool givesWay) {
  const bool wasChecked = isChecked_;
  reserve(text.size());
  const uint32 source = addSource(std::move(name));
  DefinitionReader(*this, Overlay::kRefuse, source).read(text);
  if (givesWay) yieldingSources_.insert(source);
  isChecked_ = wasChecked;
}

}  // namespace Vantor

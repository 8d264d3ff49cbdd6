#include "Core/Dictionary/BuiltInDictionary.h"

#include <string_view>

#include "Core/MetaMetadata/DictionaryBuilder.h"

namespace Vantor {

namespace {

using MetaMetadata::DataType;
using MetaMetadata::DictionaryBuilder;

/// One row of the data file; a set has no type, a property no parent.
struct Row {
  const char* key;
  const char* symbol;
  const char* parent;
  DataType type;
  uint16 staticLocalTag;
  uint8 kindOrStatus;
  const char* xmlName;  // null where it is the symbol
};

/// The words of the data file that are not names.
namespace Columns {

// NOLINTBEGIN(readability-identifier-naming): they are spelled as the file spells them
constexpr uint8 abstract = 0;
constexpr uint8 concrete = 1;
constexpr uint8 required = DictionaryBuilder::kRequired;
constexpr uint8 optional = DictionaryBuilder::kOptional;
constexpr DataType ArrayOf(DataType item) { return MetaMetadata::arrayOf(item); }
constexpr DataType BatchOf(DataType item) { return MetaMetadata::batchOf(item); }
#define VANTOR_TYPE_COLUMN(Type, number, octets) [[maybe_unused]] constexpr DataType Type(Types::Identifiers::k##Type);
VANTOR_FOR_EACH_TYPE(VANTOR_TYPE_COLUMN)
#undef VANTOR_TYPE_COLUMN
// NOLINTEND(readability-identifier-naming)

constexpr DataType kNoType(Types::Identifiers::kNone);

// The keys are taken as text: they have the shape of numbers for the preprocessor, not for the compiler.
#define VANTOR_SET(key, symbol, parent, kind) {#key, #symbol, #parent, kNoType, 0, kind, nullptr},
#define VANTOR_PROPERTY(tag, key, symbol, type, status) {#key, #symbol, nullptr, type, 0x##tag, status, nullptr},
#define VANTOR_PROPERTY_AS(tag, key, symbol, type, status, name) {#key, #symbol, nullptr, type, 0x##tag, status, #name},
constexpr Row kRows[] = {
#include "Core/Dictionary/SmpteRegisters.inc"
};

}  // namespace Columns

void addSet(DictionaryBuilder& builder, const Row& row) {
  const std::string_view parent = row.parent;
  builder.addSet(row.key, row.symbol, parent == "-" ? std::string_view() : parent,
                 row.kindOrStatus == Columns::concrete);
}

void addProperty(DictionaryBuilder& builder, const Row& row) {
  MetaMetadata::ExtensionAttributes extensions;
  if (row.xmlName != nullptr) {
    const std::string_view name = row.xmlName;
    extensions.set(MetaMetadata::kXMLTagName, wstring(name.begin(), name.end()));
  }
  const Types::UniversalLabel label(MetaMetadata::registerKey(row.key));
  builder.addElement(label, row.symbol, row.type, extensions);
  builder.addAttribute(label, row.staticLocalTag, row.kindOrStatus);
}

}  // namespace

SharedPtr<const MetaMetadata::Dictionary> makeBuiltInDictionary() {
  DictionaryBuilder builder;
  for (const Row& row : Columns::kRows) {
    if (row.parent != nullptr) {
      addSet(builder, row);
    } else {
      addProperty(builder, row);
    }
  }
  return builder.build();
}

SharedPtr<const MetaMetadata::Dictionary> builtInDictionary() {
  static const auto dictionary = makeBuiltInDictionary();
  return dictionary;
}

}  // namespace Vantor

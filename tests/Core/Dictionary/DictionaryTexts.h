#pragma once

#include <string>
#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Exceptions.h"

/// Shared by the tests of dictionary texts.
namespace Vantor {

/// A whole text with these rows.
inline std::string dictionaryText(const std::string& rows) { return "dictionary 1\n" + rows; }

/// Definitions of nothing but some rows; those of a second text are read after the first.
inline Definitions readRows(const std::string& rows) {
  Definitions definitions;
  definitions.readText(dictionaryText(rows), "first.dictionary");
  return definitions;
}
inline Definitions readRows(const std::string& rows, const std::string& later) {
  Definitions definitions = readRows(rows);
  definitions.readText(dictionaryText(later), "second.dictionary");
  return definitions;
}
/// The same, added to the built-in ones.
inline Definitions extendBuiltIn(const std::string& rows) {
  Definitions definitions = builtInDefinitions();
  definitions.readText(dictionaryText(rows), "mine.dictionary");
  return definitions;
}

/// The message of an operation that refuses; "nothing" when it does not.
template <class Operation>
std::string refusalOf(Operation&& operation) {
  try {
    operation();
  } catch (const Exceptions::InvalidFormat& error) {
    return error.what();
  }
  return "nothing";
}

/// A key of a set or a property whose last four octets are a number.
inline std::string numberedKey(const char* start, uint32 number) {
  std::string digits(8, '0');
  for (std::size_t i = digits.size(); i-- > 0; number /= 16) digits[i] = "0123456789abcdef"[number % 16];
  return start + digits;
}
inline std::string setKey(uint32 number) { return numberedKey("060e2b34.02530101.0f0e0d0c.", number); }
inline std::string propertyKey(uint32 number) { return numberedKey("060e2b34.01010101.0f0e0d0c.", number); }

/// The symbols of a set's properties, inherited ones first.
inline std::vector<std::string> propertySymbols(const MetaMetadata::MetaMetadataSet& set) {
  std::vector<std::string> found;
  for (const auto& attribute : set.attributes()) found.push_back(attribute.metaElement()->symbol());
  return found;
}

}  // namespace Vantor

#pragma once

#include <string>
#include <string_view>

#include "Core/Dictionary/DefinitionAdder.h"
#include "Core/Dictionary/Definitions.h"
#include "Core/Dictionary/DictionaryRow.h"

namespace Vantor {

/// Reads one text of the dictionary format into `Definitions`; one object per text.
class DefinitionReader {
 public:
  /// @param source  the place of the text's name in the list of sources.
  DefinitionReader(Definitions& definitions, Definitions::Overlay overlay, uint32 source);

  /// @param text  stays where it is for as long as the definitions live.
  void read(std::string_view text);

 private:
  /// What the indented rows under a heading are.
  enum class Section : uint8 { kNone, kSet, kEnumeration };

  void readRow(const DictionaryRow& row);
  void readHeading(const DictionaryRow& row);
  void readFormat(const DictionaryRow& row);
  void readNamespace(const DictionaryRow& row);
  void readSet(const DictionaryRow& row);
  void readExtension(const DictionaryRow& row);
  void readEnumeration(const DictionaryRow& row);
  void readEnumerationValue(const DictionaryRow& row);
  void readLabel(const DictionaryRow& row);
  void readProperty(const DictionaryRow& row);

  uint32 addNamespace(std::string_view prefix, std::string_view uri);

  KLV::Key keyOf(std::string_view word) const;
  PropertyType typeOf(std::string_view word) const;
  uint16 tagOf(std::string_view word) const;
  uint32 statusOf(std::string_view word) const;
  /// The word after `name=`, or the symbol when there is no such word.
  std::string_view xmlNameOf(std::string_view option, std::string_view symbol, const char* shape) const;
  void expectWords(const DictionaryRow& row, std::size_t least, std::size_t most, const char* shape) const;

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
  uint32 set_ = 0;
  uint32 setNamespace_ = 0;
  uint32 elementNamespace_ = 0;
};

}  // namespace Vantor

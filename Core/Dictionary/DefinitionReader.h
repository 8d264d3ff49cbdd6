#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Core/Dictionary/Definitions.h"
#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Platform/Containers.h"

namespace Vantor {

/// Reads one text of the dictionary format into `Definitions`; made for one text and gone after it.
class DefinitionReader {
 public:
  /// @param source   the place of the text's name in the list of sources, for lines that `origins` tells nothing of.
  /// @param origins  where each line came from; null for a text that is its own source.
  DefinitionReader(Definitions& definitions, Definitions::Overlay overlay, uint32 source,
                   const Templates::vector<Origin>* origins);

  /// @param text  stays where it is for as long as the definitions live.
  void read(std::string_view text);

 private:
  /// What the indented rows under a heading are.
  enum class Section : uint8 { kNone, kSet, kEnumeration };

  void readRow(const DictionaryRow& row);
  /// What has to wait until all of a text that replaces others is read.
  void completeOverlay();
  void replaceRenewedProperties();
  void readHeading(const DictionaryRow& row);
  void readFormat(const DictionaryRow& row);
  void readNamespace(const DictionaryRow& row);
  void readSet(const DictionaryRow& row);
  void readExtension(const DictionaryRow& row);
  void readEnumeration(const DictionaryRow& row);
  void readEnumerationValue(const DictionaryRow& row);
  void readLabel(const DictionaryRow& row);
  void readProperty(const DictionaryRow& row);

  uint32 addSet(SetDefinition definition);
  uint32 addProperty(PropertyDefinition definition);
  void addLabel(const LabelDefinition& definition);
  void checkAgreement(const PropertyDefinition& known, const PropertyDefinition& here) const;
  uint32 addNamespace(std::string_view prefix, std::string_view uri);

  KLV::Key keyOf(std::string_view word) const;
  KLV::Key setKeyOf(std::string_view word) const;
  Types::UniversalLabel propertyKeyOf(std::string_view word) const;
  std::string_view nameOf(std::string_view word, const char* what) const;
  PropertyType typeOf(std::string_view word) const;
  uint16 tagOf(std::string_view word) const;
  uint32 statusOf(std::string_view word) const;
  /// The word after `name=`, or the symbol when there is no such word.
  std::string_view xmlNameOf(std::string_view option, std::string_view symbol, const char* shape) const;
  void expectWords(const DictionaryRow& row, std::size_t least, std::size_t most, const char* shape) const;

  /// Whether a definition is of an earlier text and may give way to one of this text; it may once.
  bool mayReplace(Templates::vector<bool>& earlier, uint32 place) const;
  [[noreturn]] void refuse(const std::string& what, int line) const;
  Origin here() const;

  Definitions& to_;
  Definitions::Overlay overlay_;
  uint32 source_;
  const Templates::vector<Origin>* origins_;
  uint32 line_ = 0;
  bool hasFormat_ = false;
  Section section_ = Section::kNone;
  uint32 set_ = 0;
  uint32 setNamespace_ = 0;
  uint32 elementNamespace_ = 0;
  Templates::vector<bool> earlierSets_;
  Templates::vector<bool> earlierProperties_;
  Templates::vector<bool> earlierEnumerations_;
  Templates::vector<bool> earlierLabels_;
};

}  // namespace Vantor

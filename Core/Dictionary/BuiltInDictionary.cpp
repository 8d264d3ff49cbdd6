#include "Core/Dictionary/BuiltInDictionary.h"

#include "Core/Dictionary/EmbeddedText.h"

namespace Vantor {

using MetaMetadata::Vocabulary;

Definitions builtInDefinitions() {
  Definitions definitions;
  definitions.readTrusted(Embedded::smpteRegisters(), "SmpteRegisters.dictionary");
  definitions.readTrusted(Embedded::commonNames(), "CommonNames.dictionary");
  return definitions;
}

const Definitions& builtInLabels() {
  static const auto labels = [] {
    Definitions definitions;
    definitions.readTrusted(Embedded::smpteLabels(), "SmpteLabels.dictionary");
    return definitions;
  }();
  return labels;
}

SharedPtr<const MetaMetadata::Dictionary> builtInDictionary(Vocabulary vocabulary) {
  if (vocabulary == Vocabulary::kLegacy) {
    static const auto legacy = builtInDefinitions().makeDictionary(Vocabulary::kLegacy);
    return legacy;
  }
  static const auto schemas = builtInDefinitions().makeDictionary(Vocabulary::kST434_2014);
  return schemas;
}

}  // namespace Vantor

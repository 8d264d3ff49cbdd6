#include "Core/Dictionary/BuiltInDictionary.h"

#include "Core/Dictionary/EmbeddedText.h"

namespace Vantor {

using MetaMetadata::Vocabulary;

Definitions builtInDefinitions() {
  Definitions definitions;
  definitions.readTrusted(Embedded::smpteRegisters(), "SmpteRegisters.dictionary");
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

SharedPtr<const MetaMetadata::Dictionary> makeBuiltInDictionary(Vocabulary vocabulary) {
  return builtInDefinitions().makeDictionary(vocabulary);
}

SharedPtr<const MetaMetadata::Dictionary> builtInDictionary(Vocabulary vocabulary) {
  if (vocabulary == Vocabulary::kLegacy) {
    static const auto legacy = makeBuiltInDictionary(Vocabulary::kLegacy);
    return legacy;
  }
  static const auto schemas = makeBuiltInDictionary(Vocabulary::kST434_2014);
  return schemas;
}

}  // namespace Vantor

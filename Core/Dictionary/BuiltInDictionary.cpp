#include "Core/Dictionary/BuiltInDictionary.h"

#include "Core/Dictionary/EmbeddedText.h"

namespace Vantor {

using MetaMetadata::Vocabulary;

Definitions registerDefinitions() {
  Definitions definitions;
  definitions.readTrusted(Embedded::smpteRegisters(), "SmpteRegisters.dictionary");
  return definitions;
}

Definitions builtInDefinitions() {
  auto definitions = registerDefinitions();
  definitions.readTrusted(Embedded::smpteSupplement(), "SmpteSupplement.dictionary", true);
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

void appendBuiltInLabels(MetaMetadata::LabelIndex::Labels& labels) {
  for (const auto& label : builtInLabels().labels()) labels.push_back({label.key, label.symbol, label.name});
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

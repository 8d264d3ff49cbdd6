#include "Registers/LabelNames.h"

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/NameFolding.h"

namespace Vantor::Registers {

LabelNames::LabelNames(const Definitions& definitions) {
  for (const auto* known : {&builtInLabels(), &definitions}) {
    for (const auto& label : known->labels()) {
      names_.add(label.symbol);
      add(label.symbol);
      add(label.name);
    }
  }
  for (const auto& common : definitions.commonNames()) add(common.name);
}

void LabelNames::add(std::string_view name) { folded_.insert(MetaMetadata::foldedName(name)); }

void LabelNames::want(std::string_view name, const KLV::Key& key) {
  names_.want(name, "Label", key, folded_.count(MetaMetadata::foldedName(name)) != 0);
}

}  // namespace Vantor::Registers

#include "Core/MetaMetadata/MetaElement.h"

#include <utility>

#include "Core/MetaMetadata/Vocabulary.h"

namespace Vantor::MetaMetadata {

MetaElement::MetaElement(const Types::UniversalLabel& key, std::string symbol, Types::Identifiers::Identifier dataType,
                         ExtensionAttributes extensionAttributes)
    : key_(key),
      symbol_(std::move(symbol)),
      dataType_(dataType),
      extensionAttributes_(std::move(extensionAttributes)) {}

MetaElement::~MetaElement() = default;

bool MetaElement::isNamed(std::string_view name) const {
  return symbol_ == name || extensionAttributes_.isTagName(name);
}

bool MetaElement::isInChosenNamespace() const {
  const auto& uri = extensionAttribute(kNamespaceURI);
  return !uri.empty() && uri != kLegacyElements.uri && uri != kST434Elements.uri;
}

MetaCollectionElement::MetaCollectionElement(const Types::UniversalLabel& key, std::string symbol,
                                             Types::Identifiers::Identifier dataType,
                                             Types::Identifiers::Identifier dataSubType,
                                             ExtensionAttributes extensionAttributes)
    : MetaElement(key, std::move(symbol), dataType, std::move(extensionAttributes)), dataSubType_(dataSubType) {}

}  // namespace Vantor::MetaMetadata

#include "Core/Metadata/NameSuggestions.h"

#include <vector>

#include "Core/Platform/NearestName.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

template <class Definition>
void addNames(const Definition& definition, std::string_view commonName, std::vector<std::string>& names) {
  names.push_back(definition.symbol());
  names.push_back(Utils::wstringToString(definition.extensionAttribute(MetaMetadata::kTagName)));
  names.emplace_back(commonName);
}

}  // namespace

std::string suggestSet(const MetaMetadata::Dictionary& dictionary, std::string_view name) {
  std::vector<std::string> names;
  for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd(); ++set) {
    addNames(**set, (*set)->commonName(), names);
  }
  return Platform::suggestion(name, names);
}

std::string suggestProperty(const MetaMetadata::MetaMetadataSet& set, std::string_view name) {
  std::vector<std::string> names;
  for (const auto& attribute : set.attributes()) {
    addNames(*attribute.metaElement(), set.commonNameOf(*attribute.metaElement()), names);
  }
  return Platform::suggestion(name, names);
}

}  // namespace Vantor

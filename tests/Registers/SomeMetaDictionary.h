#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/AUID.h"
#include "Core/Types/Boolean.h"
#include "Core/Types/DataStream.h"
#include "Core/Types/Int64.h"
#include "Core/Types/UInt16.h"
#include "Core/Types/UInt8.h"

namespace Vantor::Registers {

/// Header metadata with a MetaDictionary made by hand. Keys are texts as the registers print them.
class SomeMetaDictionary {
 public:
  explicit SomeMetaDictionary(SharedPtr<const MetaMetadata::Dictionary> dictionary = builtInDictionary())
      : metadata_(std::move(dictionary)) {}

  PartitionMetadata& metadata() { return metadata_; }

  MetadataSet& addClass(const std::string& key, const wstring& name, const std::string& parent) {
    auto& set = define("ClassDefinition", key, name);
    if (!parent.empty()) set.set("ParentClass", auid(parent));
    set.set("IsConcrete", Types::Boolean(true));
    return set;
  }
  /// @param tag  its local identification; 0 for none.
  MetadataSet& addProperty(MetadataSet& toClass, const std::string& key, const wstring& name, const std::string& type,
                           uint16 tag = 0) {
    auto& set = define("PropertyDefinition", key, name);
    set.set("PropertyType", auid(type));
    set.set("IsOptional", Types::Boolean(true));
    if (tag != 0) set.set("LocalIdentification", Types::UInt16(tag));
    toClass.append("Properties", set);
    return set;
  }
  /// A type made of another, such as a "TypeDefinitionRename" with its "RenamedType".
  MetadataSet& addType(const std::string& kind, const std::string& key, const wstring& name,
                       const std::string& baseProperty = {}, const std::string& base = {}) {
    auto& set = define(kind, key, name);
    if (!base.empty()) set.set(baseProperty, auid(base));
    return set;
  }
  MetadataSet& addInteger(const std::string& key, const wstring& name, uint8 size, bool isSigned) {
    auto& set = define("TypeDefinitionInteger", key, name);
    set.set("Size", Types::UInt8(size));
    set.set("IsSigned", Types::Boolean(isSigned));
    return set;
  }
  MetadataSet& addEnumeration(const std::string& key, const wstring& name, const std::string& base,
                              const std::vector<std::pair<int64, wstring>>& values) {
    auto& set = addType("TypeDefinitionEnumeration", key, name, "ElementType", base);
    Bytes names;
    for (const auto& [number, value] : values) {
      set.append("ElementValues", Types::Int64(number));
      appendText(names, value);
    }
    set.set("ElementNames", Types::DataStream(names));
    return set;
  }

  static Types::AUID auid(const std::string& text) { return Types::AUID(MetaMetadata::registerKey(text).rawBuffer()); }
  /// With a NUL behind it.
  static void appendText(Bytes& octets, const wstring& text) {
    for (const auto unit : text + u'\0') {
      octets.push_back(static_cast<uint8>(unit >> 8));
      octets.push_back(static_cast<uint8>(unit));
    }
  }

 private:
  MetadataSet& define(const std::string& kind, const std::string& key, const wstring& name) {
    auto& set = metadata_.createMetadataSet(kind);
    if (!key.empty()) set.set("MetaDefinitionIdentification", auid(key));
    if (!name.empty()) set.set("MetaDefinitionName", name);
    return set;
  }

  PartitionMetadata metadata_;
};

}  // namespace Vantor::Registers

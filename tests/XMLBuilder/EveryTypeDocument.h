#pragma once

#include <string>
#include <vector>

#include "tests/XMLBuilder/GoldenValues.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {

/// Makes a document with everything that an import reads: a property of every type, an array and a batch of each type,
/// references, extension elements, dark sets and floating sets; and the dictionary for it.
class EveryTypeDocument {
 public:
  /// @param name  prefix and namespace of the properties.
  explicit EveryTypeDocument(const XMLName& name) : name_(name) {
#define VANTOR_ADD_TYPE(Type, number, octets) add<Types::Type>(Types::Identifiers::k##Type);
    VANTOR_FOR_EACH_TYPE(VANTOR_ADD_TYPE)
#undef VANTOR_ADD_TYPE
    dictionary_.property("Misplaced", Types::Identifiers::kUTF16String);
    dictionary_.set("Preface", listed_).set("Leaf");
  }

  SharedPtr<const MetaMetadata::Dictionary> dictionary() { return dictionary_.build(); }

  std::string text() const {
    return XMLBuilder::xml(
        document(R"(<p:Preface rp210:InstanceUID="{1}">)" + properties_ + kExtensions + R"(</p:Preface>
           <p:Leaf rp210:InstanceUID="{2}"/>
           <groups:FloatingDarkMetadata>
             <groups:DarkMetadata groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00"
                                  groups:BEROctetCount="4">0017</groups:DarkMetadata>
             <p:Leaf rp210:InstanceUID="{3}"/>
           </groups:FloatingDarkMetadata>)"));
  }

 private:
  static constexpr const char* kExtensions = R"(
    <groups:ExtensionElements>
      <groups:DarkElement groups:StaticLocalTag="00.01">00FF</groups:DarkElement>
      <groups:DarkElement groups:UniversalLabel="06.0E.2B.34.01.01.01.01.7F.7F.00.00.00.00.00.00">1F</groups:DarkElement>
      <p:Misplaced>text</p:Misplaced>
    </groups:ExtensionElements>)";

  template <class T>
  void add(Types::Identifiers::Identifier type) {
    using namespace Types::Identifiers;
    const std::string symbol = name(type);
    const std::string value = content<T>(type);
    if (type == kArray || type == kBatch) return define(symbol, {type, kUInt16}, value);
    define(symbol, type, value);
    const std::string items = type == kDataValue ? "" : item(value) + item(value);  // has no reader
    define(symbol + "Array", MetaMetadata::arrayOf(type), items);
    define(symbol + "Batch", MetaMetadata::batchOf(type), items);
  }

  void define(const std::string& symbol, MetaMetadata::DataType type, const std::string& content) {
    dictionary_.property(symbol, type, name_);
    listed_.emplace_back(symbol.c_str(), std::u16string_view(u"1"));
    properties_ += element(symbol, content);
  }

  std::string element(const std::string& symbol, const std::string& content) const {
    const std::string qualified = std::string(name_.prefix.begin(), name_.prefix.end()) + ":" + symbol;
    return "<" + qualified + ">" + content + "</" + qualified + ">";
  }

  /// A reference is an item itself.
  std::string item(const std::string& value) const {
    return value.find("_REF") != std::string::npos ? value : element("Element", value);
  }

  /// What a property element holds for the first value of a type that is not empty.
  template <class T>
  std::string content(Types::Identifiers::Identifier type) const {
    using namespace Types::Identifiers;
    if (type == kStrongReference || type == kWeakReference) return R"(<p:Leaf_REF types:TargetInstance="{2}"/>)";
    if (type == kArray || type == kBatch) return item("1") + item("2");
    for (const auto& golden : XMLBuilder::Golden<T>::values()) {
      if (!golden.legacy.empty()) return readable(golden, name(type));
    }
    return {};
  }

  /// JPEG 2000 values are read from an element around them, and child elements in the legacy namespaces only.
  std::string readable(const XMLBuilder::GoldenValue& golden, const std::string& symbol) const {
    const std::string wrapper = "s422mTypes:" + symbol;
    if (symbol.rfind("J2K", 0) == 0) return "<" + wrapper + ">" + golden.legacy + "</" + wrapper + ">";
    const bool isText = golden.legacy.find('<') == std::string::npos;
    return isText && name_.uri == XMLBuilder::kSt434Elements ? golden.st434 : golden.legacy;
  }

  XMLName name_;
  TestDictionary dictionary_;
  std::vector<Listed> listed_;
  std::string properties_;
};

}  // namespace Vantor::XML2Partition

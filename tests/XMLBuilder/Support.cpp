#include "tests/XMLBuilder/Support.h"

#include <algorithm>
#include <stdexcept>
#include <xercesc/dom/DOMImplementation.hpp>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/Initializer.h"

namespace Vantor::XMLBuilder {

namespace {

using MetaMetadata::registerKey;

constexpr const char* kInstanceUIDKey = "060e2b34.01010101.01011502.00000000";
constexpr const char* kPrefaceKey = "060e2b34.02530101.0d010101.01012f00";
constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

std::string hexDigits(unsigned number, unsigned digits) {
  std::string text(digits, '0');
  for (unsigned i = digits; i-- > 0; number /= 16) text[i] = "0123456789abcdef"[number % 16];
  return text;
}

const MetaMetadata::MetaElement& elementNamed(const MetaMetadata::Dictionary& dictionary, const std::string& symbol) {
  for (auto at = dictionary.metaElementBegin(); at != dictionary.metaElementEnd(); ++at) {
    if ((*at)->symbol() == symbol) return **at;
  }
  throw std::logic_error("the test dictionary has no property " + symbol);
}

auto_ptr<Types::Reference> referenceTo(const MetaMetadata::MetaElement& definition, uint32 number) {
  const auto* collection = dynamic_cast<const MetaMetadata::MetaCollectionElement*>(&definition);
  const auto kind = collection == nullptr ? definition.dataType() : collection->dataSubType();
  if (kind == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(uid(number));
  return std::make_unique<Types::StrongReference>(uid(number));
}

std::string withoutDeclaration(const wstring& text) {
  const std::string narrow = Utils::wstringToString(text);
  if (narrow.rfind(kDeclaration, 0) == 0) return narrow.substr(std::string(kDeclaration).size());
  EXPECT_EQ(narrow, "") << "the text starts with no XML declaration";
  return narrow;
}

/// Joins the lines of a text as `xml` promises.
std::string joined(const std::string& text) {
  std::string line;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\n') {
      line += text[at];
      continue;
    }
    at = std::min(text.find_first_not_of(" \n", at), text.size()) - 1;
    if (!line.empty() && line.back() != '>' && at + 1 < text.size() && text[at + 1] != '<') line += ' ';
  }
  return line;
}

std::string declarationOf(const std::string& prefix) {
  static const std::map<std::string, std::string> uris = {
      {"p", "urn:p"},
      {"rp210", "urn:SMPTE:RP210"},
      {"s377m", "urn:SMPTE:S377M"},
      {"types", "urn:SMPTE:Types:MXF"},
      {"s422mTypes", "urn:SMPTE:S422MTypes:MXF"},
      {"st377Types", "http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012"},
      {"st434", "http://www.smpte-ra.org/schemas/434/2014/elements/335/2012"},
      {"st335", "http://www.smpte-ra.org/schemas/434/2014/elements/335/2012"},
      {"st395", "http://www.smpte-ra.org/schemas/434/2014/groups/395/2012"},
      {"groups", "urn:SMPTE:Groups:MXF"}};
  return "xmlns:" + prefix + "=\"" + uris.at(prefix) + "\"";
}

std::string meaningOf(const std::string& placeholder) {
  if (placeholder.find_first_not_of("0123456789") != std::string::npos) return declarationOf(placeholder);
  return Utils::wstringToString(uid(static_cast<uint32>(std::stoul(placeholder))).toString(kDottedForm));
}

}  // namespace

Types::UUID uid(uint32 number) {
  std::array<uint8, Types::UUID::kSize> octets{};
  DataIO::writeBigEndian<uint32>(octets.data() + 12, number);
  return Types::UUID(octets);
}

MetaMetadata::ExtensionAttributes XMLName::extensions() const {
  MetaMetadata::ExtensionAttributes extensions;
  extensions.set(MetaMetadata::kDefaultPrefix, wstring(prefix)).set(MetaMetadata::kNamespaceURI, wstring(uri));
  if (!tag.empty()) extensions.set(MetaMetadata::kTagName, wstring(tag));
  return extensions;
}

TestDictionary::TestDictionary(const XMLName& instanceUID) {
  builder_.addElement(kInstanceUIDKey, "InstanceUID", Types::Identifiers::kUUID, instanceUID.extensions());
  propertyKeys_["InstanceUID"] = kInstanceUIDKey;
}

TestDictionary& TestDictionary::property(const std::string& symbol, MetaMetadata::DataType type, const XMLName& name) {
  const auto number = static_cast<unsigned>(propertyKeys_.size());
  const std::string key = "060e2b34.01010101.7f00" + hexDigits(number, 4) + ".00000000";
  builder_.addElement(key, symbol, type, name.extensions());
  propertyKeys_[symbol] = key;
  return *this;
}

TestDictionary& TestDictionary::set(const std::string& symbol, const std::vector<Listed>& properties,
                                    const XMLName& name, Kind kind) {
  builder_.addSet(setKey(symbol, kind), symbol, {}, true, name.extensions());
  builder_.addAttribute(kInstanceUIDKey, 0x3c0a, MetaMetadata::DictionaryBuilder::kRequired);
  for (const auto& listed : properties) {
    builder_.addAttribute(propertyKeys_.at(listed.property), 0, listed.requiredStatus, listed.extensions);
  }
  return *this;
}

TestDictionary& TestDictionary::descriptive(const std::string& symbol, const std::vector<Listed>& properties) {
  return set(symbol, properties, {}, Kind::kDescriptive);
}

std::string TestDictionary::setKey(const std::string& symbol, Kind kind) {
  if (symbol == "Preface") return kPrefaceKey;
  const std::string number = hexDigits(0x80 + sets_++, 2);
  return kind == Kind::kStructural ? "060e2b34.02530101.0d010101.0101" + number + "00"
                                   : "060e2b34.02530101.0d010401.01" + number + "0000";
}

TestSet& TestSet::value(const char* property, const Types::SimpleDataType& value) {
  dynamic_cast<SimpleElement&>(element(property)).set(value.clone(), false);
  return *this;
}

TestSet& TestSet::item(const char* property, const Types::SimpleDataType& item) {
  dynamic_cast<CollectionElement&>(element(property)).append(item.clone());
  return *this;
}

TestSet& TestSet::refer(const char* property, uint32 number) {
  Element& referring = element(property);
  auto reference = referenceTo(*referring.metaAttribute().metaElement(), number);
  if (auto* single = dynamic_cast<ReferenceElement*>(&referring)) {
    single->setUnverifiedReference(std::move(reference));
  } else {
    dynamic_cast<CollectionElement&>(referring).append(std::move(reference));
  }
  return *this;
}

TestSet& TestSet::present(const char* property) {
  element(property);
  return *this;
}

TestSet& TestSet::emptied(const char* property) {
  dynamic_cast<CollectionElement&>(element(property)).append(nullptr);
  return *this;
}

TestSet& TestSet::unknown(uint16 tag, const Types::SimpleDataType* value) {
  Element& added = set_.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(tag)));
  if (value != nullptr) setDecodedValue(added, value->clone());
  return *this;
}

Element& TestSet::misplaced(const char* property) {
  return set_.createInvalidElement(
      std::make_unique<MetaMetadata::MisplacedAttribute>(&elementNamed(dictionary_, property)));
}

Element& TestSet::element(const char* property) {
  for (const auto& attribute : set_.definition()->attributes()) {
    if (attribute.metaElement()->symbol() == property) return set_.createElement(attribute);
  }
  throw std::logic_error(set_.name() + " has no property " + property);
}

TestSet TestPartition::add(const char* symbol, uint32 number) const {
  const auto& dictionary = *partition_->partitionDictionary().dictionary();
  const auto* definition = dictionary.findSetBySymbol(symbol);
  if (definition == nullptr) throw std::logic_error(std::string("the test dictionary has no set ") + symbol);
  TestSet set(*partition_->createMetadataSet(definition->key()), dictionary);
  set.value("InstanceUID", uid(number));
  return set;
}

MetadataSet& TestPartition::addDarkGroup(uint32 number, uint8 berOctets) const {
  Bytes value = {0x3c, 0x0a, 0x00, 0x10};
  const auto instanceUID = uid(number);
  value.insert(value.end(), instanceUID.rawBuffer(), instanceUID.rawBuffer() + Types::UUID::kSize);
  partition_->addKLV(registerKey(kDarkGroupKey), berOctets, value.data(), value.size(), 0);
  return *partition_->sets().back();
}

void TestPartition::addDarkSet(const Bytes& value, uint8 berOctets) const {
  partition_->addDarkMetadataSet(
      std::make_unique<DarkMetadataSet>(registerKey(kDarkSetKey), berOctets, KLV::Value(value)));
}

void TestPartition::addPrimerEntry(uint16 tag, std::string_view label) const {
  partition_->partitionDictionary().addPrimerEntry({tag, registerKey(label)});
}

std::string exported(PartitionMetadata& partition, Flags flags) {
  wstring text;
  partition2XML(&partition, flags.nestStrongReferences, flags.excludeNonStructural, XMLUtils::EncodingType::kUTF8,
                text);
  return withoutDeclaration(text);
}

std::string exported(PartitionMetadata& partition, const MetadataSet* start, Flags flags) {
  wstring text;
  partition2XML(&partition, start, flags.nestStrongReferences, flags.excludeNonStructural,
                XMLUtils::EncodingType::kUTF8, text);
  return withoutDeclaration(text);
}

std::string exported(const TestPartition& partition, Flags flags) { return exported(*partition, flags); }

std::string exported(const TestPartition& partition, const TestSet& start, Flags flags) {
  return exported(*partition, &*start, flags);
}

std::string textOf(const xercesc::DOMNode& node) {
  wstring text;
  XMLUtils::domToBuffer(&node, text, XMLUtils::EncodingType::kUTF8);
  return Utils::wstringToString(text);
}

std::string xml(const std::string& text) {
  std::string result;
  const std::string line = joined(text);
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] != '{') {
      result += line[at];
      continue;
    }
    const auto end = line.find('}', at);
    result += meaningOf(line.substr(at + 1, end - at - 1));
    at = end;
  }
  return result;
}

std::string inLines(const std::string& text) {
  std::string lines;
  for (const char character : text) {
    if (character == '<' && !lines.empty() && lines.back() == '>') lines += '\n';
    lines += character;
  }
  return lines;
}

TestDocument::TestDocument(std::u16string_view uri, std::u16string_view qualifiedName)
    : document_(XMLUtils::Initializer::instance().domImplementation().createDocument(
          std::u16string(uri).c_str(), std::u16string(qualifiedName).c_str(), nullptr)) {}

}  // namespace Vantor::XMLBuilder

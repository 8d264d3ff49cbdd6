#include "tests/XMLBuilder/ImportSupport.h"

#include <fstream>
#include <ostream>
#include <random>
#include <stdexcept>

#include "Core/Comparison/ValueText.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Platform/Strings.h"
#include "tests/XMLUtils/LoadedXQilla.h"

namespace Vantor::XML2Partition {

namespace {

TestDictionary& dictionaryOf(TestDictionary& dictionary, MetaMetadata::DataType type, const XMLName& name) {
  return dictionary.property("Prop", type, name).set("Preface", {"Prop"});
}

std::string described(const Types::SimpleDataType& value) {
  return std::string(Types::Identifiers::name(value.identifier())) + " " + valueText(value);
}

const MetaMetadata::MetaElement* definitionOf(const Element& element) { return element.metaAttribute().metaElement(); }

}  // namespace

TestPartition emptyPartition(MetaMetadata::DataType type, const XMLName& name) {
  TestDictionary dictionary;
  return TestPartition(dictionaryOf(dictionary, type, name));
}

std::string withProperty(const std::string& content, const XMLName& name) {
  const std::string qualified = Utils::wstringToString(wstring(name.prefix) + u":Prop");
  return document("<p:Preface><" + qualified + ">" + content + "</" + qualified + "></p:Preface>");
}

TemporaryFile::TemporaryFile(const std::string& bytes)
    : path_(std::filesystem::temp_directory_path() /
            ("vantor-import-" + std::to_string(std::random_device()()) + ".xml")) {
  std::ofstream file(path_, std::ios::binary | std::ios::trunc);
  file << bytes;
  if (!file.flush()) throw std::runtime_error("cannot write " + path_.string());
}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

SetList importRaw(const std::string& text, PartitionMetadata& partition, Entry entry) {
  if (entry == Entry::kString) return getPartitionMetadataFromString(Utils::stringToWstring(text), &partition);
  if (entry == Entry::kFile) {
    const TemporaryFile file(text);
    return getPartitionMetadataFromFile(file.unicodePath().utf16(), &partition);
  }
  return getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(text.data()), static_cast<uint32>(text.size()),
                                        &partition);
}

SetList import(const std::string& text, PartitionMetadata& partition, Entry entry) {
  return importRaw(XMLBuilder::xml(text), partition, entry);
}

SetList import(const std::string& text, const TestPartition& partition, Entry entry) {
  return import(text, *partition, entry);
}

std::string document(const std::string& content) {
  return "<s377m:MetadataSets {p} {rp210} {s377m} {types} {s422mTypes} {st377Types} {st434} {groups}>" + content +
         "</s377m:MetadataSets>";
}

std::ostream& operator<<(std::ostream& stream, const Failure& failure) {
  return stream << failure.kind << " \"" << failure.message << "\" from " << failure.file << ":" << failure.line;
}

Failure invalidFormat(const std::string& message, int line) {
  return {"InvalidFormat", message, "XMLBuilder\\FromXMLElementVisitor", line};
}

Failure invalidLength(const std::string& message, int line) {
  return {"InvalidLength", message, "XMLBuilder\\FromXMLElementVisitor", line};
}

Failure converted(const std::string& message) { return {"ParseError", message, "XMLUtils/Utils", 207}; }

Failure pathFailure(const std::string& message) {
  return converted(XMLUtils::hasXQilla() ? "XQillaException:: " + message : "DOMException:: " + message + "(51)");
}

Element& property(MetadataSet& set, const std::string& symbol) {
  for (Element& element : set) {
    if (definitionOf(element)->symbol() == symbol) return element;
  }
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    if (definitionOf(*at) != nullptr && definitionOf(*at)->symbol() == symbol) return *at;
  }
  throw std::logic_error(set.name() + " has no property " + symbol);
}

const Types::SimpleDataType* valueOf(MetadataSet& set, const std::string& symbol) {
  return property(set, symbol).wireValue();
}

::testing::AssertionResult holds(const Types::SimpleDataType* actual, const Types::SimpleDataType& expected) {
  if (actual == nullptr) return ::testing::AssertionFailure() << "no value instead of " << described(expected);
  if (actual->equals(expected)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << described(*actual) << " instead of " << described(expected);
}

ImportedProperty::ImportedProperty(MetaMetadata::DataType type, const std::string& content, Entry entry,
                                   const XMLName& name)
    : partition_(emptyPartition(type, name)) {
  import(withProperty(content, name), partition_, entry);
}

Failure failureOf(MetaMetadata::DataType type, const std::string& content, Entry entry) {
  return failureOf([&] { ImportedProperty(type, content, entry); });
}

std::string renumbered(const std::string& text) {
  std::string result;
  std::map<std::string, uint32> numbers;
  std::size_t copied = 0;
  const std::size_t length = Utils::wstringToString(uid(0).toString(kDottedForm)).size();
  for (std::size_t at = 0; (at = text.find("=\"", at)) != std::string::npos;) {
    at += 2;
    const bool names = (at >= 20 && text.compare(at - 20, 18, " rp210:InstanceUID") == 0) ||
                       (at >= 23 && text.compare(at - 23, 21, " types:TargetInstance") == 0);
    if (!names || text.compare(at + length, 1, "\"") != 0) continue;
    const auto number = numbers.emplace(text.substr(at, length), static_cast<uint32>(numbers.size() + 1)).first->second;
    result.append(text, copied, at - copied);
    result += Utils::wstringToString(uid(number).toString(kDottedForm));
    copied = at += length;
  }
  return result.append(text, copied);
}

}  // namespace Vantor::XML2Partition

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "XMLBuilder.h"
#include "tests/SampleFiles.h"
#include "tests/XMLBuilder/Support.h"
#include "tests/XMLUtils/Documents.h"

/// The header metadata of files in both vocabularies: documents that are alike but for namespaces, prefixes and the
/// spelling of identifiers.
namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::Vocabulary;
using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLUtils::Document;
using XMLUtils::EncodingType;

std::string narrow(const XMLCh* text) {
  return text == nullptr ? std::string() : Utils::wstringToString(XMLUtils::utf16ToWstring(text));
}

/// "prefix:name in URI".
std::string nameOf(const DOMNode& node) { return narrow(node.getNodeName()) + " in " + narrow(node.getNamespaceURI()); }

constexpr const char* kLegacyTypes = "urn:SMPTE:Types:MXF";
constexpr const char* kSchemaTypes = "http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012";

/// What an element is called in the vocabulary of ST 434:2014.
std::string schemaName(const DOMElement& legacy) {
  const std::string local = narrow(legacy.getLocalName());
  const std::string uri = narrow(legacy.getNamespaceURI());
  const bool isOfTheDocument = local == "MetadataSets" || local == "Dangling_REF";
  if (uri == "urn:SMPTE:S377M" && !isOfTheDocument) {
    return "st395:" + local + " in http://www.smpte-ra.org/schemas/434/2014/groups/395/2012";
  }
  if (uri == "urn:SMPTE:RP210") {
    return "st335:" + local + " in http://www.smpte-ra.org/schemas/434/2014/elements/335/2012";
  }
  if (uri != kLegacyTypes) return nameOf(legacy);
  const bool isOfALayout = local == "RGBAComponent" || local == "Code" || local == "Depth";
  return (isOfALayout ? "types:" : "st377Types:") + local + " in " + kSchemaTypes;
}

/// The digits of an identifier in one of its URN forms; none for any other text.
std::optional<std::string> digitsOfURN(const std::string& text) {
  for (const std::string start : {"urn:smpte:ul:", "urn:uuid:", "urn:smpte:umid:"}) {
    if (text.rfind(start, 0) != 0) continue;
    std::string digits;
    for (const char character : text.substr(start.size())) {
      if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
        digits += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
      }
    }
    return digits;
  }
  return std::nullopt;
}

std::string withoutPoints(std::string dotted) {
  dotted.erase(std::remove(dotted.begin(), dotted.end(), '.'), dotted.end());
  return dotted;
}

/// Goes through two documents side by side.
class SideBySide {
 public:
  void compare(const DOMElement& legacy, const DOMElement& schema) {
    ++elements_;
    ASSERT_EQ(nameOf(schema), schemaName(legacy));
    compareAttributes(legacy, schema);
    const auto* one = legacy.getFirstChild();
    const auto* other = schema.getFirstChild();
    for (; one != nullptr && other != nullptr; one = one->getNextSibling(), other = other->getNextSibling()) {
      ASSERT_EQ(one->getNodeType(), other->getNodeType()) << nameOf(schema);
      if (one->getNodeType() == DOMNode::ELEMENT_NODE) {
        compare(static_cast<const DOMElement&>(*one), static_cast<const DOMElement&>(*other));
      } else {
        compareText(narrow(one->getNodeValue()), narrow(other->getNodeValue()), nameOf(schema));
      }
      if (::testing::Test::HasFatalFailure()) return;
    }
    ASSERT_TRUE(one == nullptr && other == nullptr) << nameOf(schema) << " has more or fewer children";
  }

  std::size_t elements() const { return elements_; }
  std::size_t identifiers() const { return identifiers_; }

 private:
  using Attributes = std::map<std::string, std::string>;

  /// Attributes are the same in both vocabularies, but for declarations.
  static Attributes attributesOf(const DOMElement& element) {
    Attributes attributes;
    const auto& all = *element.getAttributes();
    for (XMLSize_t i = 0; i < all.getLength(); ++i) {
      const auto& attribute = *all.item(i);
      if (narrow(attribute.getNamespaceURI()) == "http://www.w3.org/2000/xmlns/") continue;
      attributes[nameOf(attribute)] = narrow(attribute.getNodeValue());
    }
    return attributes;
  }
  static void compareAttributes(const DOMElement& legacy, const DOMElement& schema) {
    EXPECT_EQ(attributesOf(legacy), attributesOf(schema)) << nameOf(schema);
  }

  void compareText(const std::string& legacy, const std::string& schema, const std::string& where) {
    if (legacy == schema) return;
    ++identifiers_;
    const auto digits = digitsOfURN(schema);
    ASSERT_TRUE(digits) << where << ": " << legacy << " became " << schema;
    ASSERT_EQ(*digits, withoutPoints(legacy)) << where;
  }

  std::size_t elements_ = 0;
  std::size_t identifiers_ = 0;
};

struct Sample {
  Path file;
  const char* mode;
  Flags flags;
};

void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.file << " " << sample.mode; }

/// Written and parsed again, so that it is well-formed and every prefix declared.
Document parsedExport(const Sample& sample, Vocabulary vocabulary) {
  const auto partition = MXF::readHeaderMetadata(sample.file, builtInDictionary(vocabulary));
  wstring text;
  partition2XML(partition.get(), sample.flags.nestStrongReferences, sample.flags.excludeNonStructural,
                EncodingType::kUTF16, text);
  return XMLUtils::parsed(text);
}

std::string declared(const Document& document, const std::string& prefix) {
  return narrow(document.root().lookupNamespaceURI(Utils::stringToWstring(prefix).c_str()));
}

class SampleVocabulary : public ::testing::TestWithParam<Sample> {};

TEST_P(SampleVocabulary, ChangesNamespacesAndIdentifiersAlone) {
  const auto legacy = parsedExport(GetParam(), Vocabulary::kLegacy);
  const auto schema = parsedExport(GetParam(), Vocabulary::kST434_2014);
  SideBySide sides;
  sides.compare(legacy.root(), schema.root());
  EXPECT_GT(sides.elements(), 50u);
  EXPECT_GT(sides.identifiers(), 0u) << "such as the identifiers of packages";
}

TEST_P(SampleVocabulary, DeclaresItsNamespacesAtTheRoot) {
  const auto legacy = parsedExport(GetParam(), Vocabulary::kLegacy);
  EXPECT_EQ(declared(legacy, "s377m"), "urn:SMPTE:S377M");
  EXPECT_EQ(declared(legacy, "rp210"), "urn:SMPTE:RP210");
  EXPECT_EQ(declared(legacy, "types"), kLegacyTypes);
  for (const char* prefix : {"st335", "st395", "st377Types"}) EXPECT_EQ(declared(legacy, prefix), "") << prefix;
  const auto schema = parsedExport(GetParam(), Vocabulary::kST434_2014);
  EXPECT_EQ(declared(schema, "s377m"), "urn:SMPTE:S377M");
  EXPECT_EQ(declared(schema, "rp210"), "urn:SMPTE:RP210");
  EXPECT_EQ(declared(schema, "st335"), "http://www.smpte-ra.org/schemas/434/2014/elements/335/2012");
  EXPECT_EQ(declared(schema, "st395"), "http://www.smpte-ra.org/schemas/434/2014/groups/395/2012");
  EXPECT_EQ(declared(schema, "st377Types"), kSchemaTypes);
}

std::vector<Sample> samples() {
  std::vector<Sample> all;
  for (const auto& file : sampleFiles()) {
    all.push_back({file, "nested", kNested});
    all.push_back({file, "flat", kFlat});
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleVocabulary, ::testing::ValuesIn(samples()),
                         [](const auto& info) { return testNameOf(info.param.file) + "_" + info.param.mode; });

}  // namespace
}  // namespace Vantor::XMLBuilder

#include <gtest/gtest.h>

#include <random>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>

#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/LoadDocument.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using namespace Types::Identifiers;
using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using XMLBuilder::exported;

const std::pair<const char*, MetaMetadata::DataType> kProperties[] = {{"Number", kInt32},
                                                                      {"Flag", kBoolean},
                                                                      {"Text", kUTF16String},
                                                                      {"Data", kDataStream},
                                                                      {"Ratio", kRational},
                                                                      {"Layout", kRGBALayout},
                                                                      {"Time", kTimestamp},
                                                                      {"Component", kJ2KPictureComponent},
                                                                      {"Label", kUniversalLabel},
                                                                      {"Numbers", arrayOf(kUInt16)},
                                                                      {"Texts", batchOf(kISO7String)},
                                                                      {"Strong", kStrongReference},
                                                                      {"Weak", kWeakReference},
                                                                      {"Strongs", arrayOf(kStrongReference)},
                                                                      {"Weaks", batchOf(kWeakReference)}};

SharedPtr<const MetaMetadata::Dictionary> everyKind() {
  TestDictionary dictionary;
  std::vector<Listed> all;
  for (const auto& [symbol, type] : kProperties) {
    dictionary.property(symbol, type);
    all.emplace_back(symbol);
  }
  dictionary.property("Misplaced", kUTF16String);
  return dictionary.set("Preface", all).set("Other", all).build();
}

/// Documents of the sets of that dictionary, with white space, comments, CDATA and elements in unexpected places.
class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : random_(seed) {
    text_ = XMLBuilder::xml(document(set("p:Preface", 0) + sets() + "<groups:FloatingDarkMetadata>" + darkSet() +
                                     set("p:Other", 2) + darkSet() + "</groups:FloatingDarkMetadata>"));
  }
  const std::string& text() const { return text_; }

 private:
  unsigned below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
  template <std::size_t kCount>
  std::string oneOf(const char* const (&choice)[kCount]) {
    return choice[below(kCount)];
  }

  std::string blank() {
    static constexpr const char* kBlanks[] = {"", "", " ", "&#10;  ", "\t", "&#13;", "&#32;"};
    return oneOf(kBlanks);
  }

  std::string noise() {
    static constexpr const char* kNoises[] = {"",
                                              "",
                                              "",
                                              "<!-- -->",
                                              "<!---->",
                                              "<!--0A-->",
                                              "<?pi?>",
                                              "<![CDATA[ ]]>",
                                              "<![CDATA[]]>",
                                              "<![CDATA[0A]]>",
                                              "<u> </u>",
                                              "<u/>",
                                              "<u> 1<v> 2 </v> <!--3--><![CDATA[4]]> </u>",
                                              "\u00a0",
                                              "1"};
    return blank() + oneOf(kNoises) + blank();
  }

  std::string element(const std::string& name, const std::string& content, const std::string& attributes = "") {
    const bool isText = !content.empty() && content.find('<') == std::string::npos;
    const std::string before = below(40) == 0 ? noise() : isText ? "" : blank();
    const std::string after = below(8) == 0 ? noise() : isText ? "" : blank();
    return blank() + "<" + name + attributes + ">" + before + content + after + "</" + name + ">" + blank();
  }

  std::string number() {
    static constexpr const char* kNumbers[] = {"1", "23", " 4 ", "-5", " 6"};
    if (below(40) == 0) return blank();
    return oneOf(kNumbers);
  }
  std::string hex() {
    static constexpr const char* kBytes[] = {"0A", "0B0C", "", " ", "0A0B0C"};
    return below(40) == 0 ? "0" : oneOf(kBytes);
  }
  std::string identifier() { return "identifier" + std::to_string(below(6)); }

  std::string fields(const std::string& prefix, const std::vector<const char*>& names) {
    std::string text;
    for (const auto* name : names) {
      if (below(40) != 0) text += element(prefix + name, number());
    }
    return text;
  }

  std::string items(const std::vector<std::string>& contents) {
    std::string text = blank();
    for (auto left = below(4); left > 0; --left) text += element("p:Element", contents[below(contents.size())]);
    return text;
  }

  std::string target(int depth) {
    const std::string pointer = " types:TargetInstance=\"" + identifier() + "\"";
    return below(2) == 0 && depth < 3 ? set("p:Other", depth + 1) : element("p:Other_REF", "", pointer);
  }

  std::string targets(int depth) {
    std::string text = blank();
    for (auto left = below(3); left > 0; --left) text += target(depth);
    return text;
  }

  std::string content(const std::string& symbol, int depth) {
    if (symbol == "Data") return hex();
    if (symbol == "Ratio") return fields("types:", {"Numerator", "Denominator"});
    if (symbol == "Layout") return element("types:RGBAComponent", fields("types:", {"Code", "Depth"}));
    if (symbol == "Time") return fields("types:", {"Second", "mSec4", "Year", "Month", "Day", "Hour", "Minute"});
    if (symbol == "Component") {
      return element("s422mTypes:J2KPictureComponent", fields("s422mTypes:", {"Ssizi", "XRSizi", "YRSizi"}));
    }
    if (symbol == "Label") return "{" + std::to_string(below(9)) + "}";
    if (symbol == "Numbers") return items({"1", " 2", "", " "});
    if (symbol == "Texts") return items({"ab", "c ", " d", "ef"});
    if (symbol == "Strong" || symbol == "Weak") return target(depth);
    if (symbol == "Strongs" || symbol == "Weaks") return targets(depth);
    return number();
  }

  std::string set(const std::string& name, int depth) {
    std::string properties;
    for (const auto& [symbol, type] : kProperties) {
      if (below(6) == 0) properties += element(std::string("p:") + symbol, content(symbol, depth));
    }
    if (below(3) == 0) {
      properties += element("groups:ExtensionElements", element("p:Misplaced", number()) +
                                                            element("p:Any", hex(), " groups:StaticLocalTag='12.34'"));
    }
    return element(name, properties, below(2) == 0 ? "" : " rp210:InstanceUID=\"" + identifier() + "\"");
  }

  std::string sets() {
    std::string text;
    for (auto left = below(3); left > 0; --left) text += set("p:Other", 1);
    return text;
  }

  std::string darkSet() {
    return element("groups:DarkMetadata", hex(),
                   " groups:BEROctetCount=\"4\" groups:Key=\"06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00\"");
  }

  std::mt19937 random_;
  std::string text_;
};

/// The document as it is after its blank text was removed.
std::string cleaned(const std::string& text) {
  const auto parser = XMLUtils::createParser();
  auto* document = XMLUtils::loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser);
  XMLUtils::cleanEmptyTextNodes(*document);
  std::string bytes;
  XMLUtils::domToBytes(document, bytes, XMLUtils::EncodingType::kUTF8);
  return bytes;
}

/// What an import leaves in an empty partition, and what it throws.
std::string outcome(const std::string& text, Entry entry, const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  const TestPartition partition(dictionary);
  const auto failure = failureOf([&] { importRaw(text, *partition, entry); });
  std::ostringstream result;
  result << failure << "\n" << renumbered(exported(partition, XMLBuilder::kFlat));
  return result.str();
}

TEST(BlankText, IsPassedOverAsIfItHadBeenRemovedBeforehand) {
  const auto dictionary = everyKind();
  std::map<std::string, int> endings;
  for (unsigned seed = 0; seed < 300; ++seed) {
    const RandomDocument document(seed);
    const auto expected = outcome(cleaned(document.text()), Entry::kFile, dictionary);
    ASSERT_EQ(outcome(document.text(), Entry::kBuffer, dictionary), expected) << document.text();
    ++endings[expected.substr(0, expected.find(' '))];
  }
  EXPECT_GT(endings["nothing"], 50);
  EXPECT_GT(endings["InvalidFormat"], 50);
  EXPECT_GT(endings["InvalidLength"], 5);
}

}  // namespace
}  // namespace Vantor::XML2Partition

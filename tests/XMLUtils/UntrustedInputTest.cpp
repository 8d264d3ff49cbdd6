#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "Documents.h"
#include "tests/Sanitized.h"

namespace Vantor::XMLUtils {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

const std::size_t kDeepest = Limits().nesting;

/// The message of parsing, which has to come at once.
std::string quickRefusal(const std::string& text) {
  const auto start = std::chrono::steady_clock::now();
  auto message = refusal(text);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(isSanitized() ? 5 : 1));
  return message;
}

TEST(UntrustedInput, MayNestToTheLimit) {
  const auto text = repeated("<a>", kDeepest - 1) + "<b/><b/>" + repeated("</a>", kDeepest - 1);
  EXPECT_EQ(textOf(parsed(text)), text);
}

TEST(UntrustedInput, IsRefusedWhenItNestsDeeper) {
  const auto text = repeated("<a>", kDeepest) + "\n<b/>" + repeated("</a>", kDeepest);
  EXPECT_EQ(quickRefusal(text), "line 2, column 1: elements nest deeper than 1000 levels (limit 'nesting')");
  EXPECT_THAT(quickRefusal(repeated("<a b='>'>", 100000) + repeated("</a>", 100000)), HasSubstr("nest deeper"));
}

TEST(UntrustedInput, IsMeasuredInUtf16AsWell) {
  wstring text;
  for (std::size_t i = 0; i <= kDeepest; ++i) text += u"<a>";
  EXPECT_THAT(refusal(text), HasSubstr("nest deeper"));
}

/// Elements with as many different names as given, in lines of their own.
std::string differentNames(std::size_t count) {
  std::string text = "<r>";
  for (std::size_t i = 1; i < count; ++i) text += "\n<e" + std::to_string(i) + "/>";
  return text + "</r>";
}

TEST(UntrustedInput, MayHaveAsManyNamesAsTheLimit) {
  const auto names = static_cast<std::size_t>(Limits().names);
  EXPECT_EQ(quickRefusal(differentNames(names)), "");
  EXPECT_EQ(quickRefusal(differentNames(names + 1)),
            "line " + std::to_string(names + 1) + ", column 1: more than 20000 different names (limit 'names')");
}

TEST(UntrustedInput, CountsEachNameOnceAndNoText) {
  std::string text = "<r>";
  for (int i = 0; i < 30000; ++i) text += "<a b='value " + std::to_string(i) + "'>text" + std::to_string(i) + "</a>\n";
  EXPECT_EQ(quickRefusal(text + "</r>"), "");
}

TEST(UntrustedInput, CountsNamesOfAttributesAndNamespaces) {
  for (const auto& [before, behind] : std::vector<std::pair<std::string, std::string>>{
           {"<a b", "=''/>"}, {"<a c='' b", " = \"\"/>"}, {"<a xmlns='urn:", "'/>"}, {"<a xmlns:p", "='urn:a'/>"}}) {
    std::string text = "<r>";
    for (int i = 0; i < 20001; ++i) text += before + std::to_string(i) + behind;
    EXPECT_THAT(quickRefusal(text + "</r>"), HasSubstr("more than 20000 different names")) << before;
  }
}

TEST(UntrustedInput, IsRefusedBeyondTheSizeThatIsAsked) {
  const auto parser = createParser();
  Limits limits;
  limits.documentSize = 3;
  const std::string text = "<a/>";
  const auto load = [&] {
    loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser, limits);
  };
  EXPECT_THAT(load,
              testing::ThrowsMessage<Exceptions::LimitExceeded>("a document of more than 3 bytes (limit 'document')"));
  limits.documentSize = 4;
  EXPECT_NO_THROW(load());
}

TEST(UntrustedInput, CountsNoTagsInsideOtherMarkup) {
  const auto tags = repeated("<a>", kDeepest + 1);
  const auto text = "<!--" + tags + "--><a><![CDATA[" + tags + "]]><?p " + tags + "?><b/></a>";
  EXPECT_EQ(textOf(parsed(text)), text);
  EXPECT_EQ(textOf(parsed("<!DOCTYPE a [" + tags + "]>" + "<a/>")), "<a/>");
}

TEST(UntrustedInput, CannotHideTagsFromTheCount) {
  const auto tags = repeated("<a>", kDeepest + 1);
  for (const auto* before : {"<!---->", "<!--->-->", "<?p ?>", "<!DOCTYPE a>", "<!DOCTYPE a []>", "<!DOCTYPE a ['>'] >",
                             "<!DOCTYPE a '[' ]>"}) {
    EXPECT_NE(refusal(before + tags), "") << before;
    EXPECT_THAT(refusal(before + tags), HasSubstr("nest deeper")) << before;
  }
  EXPECT_THAT(refusal("<a><![CDATA[]]]]>" + tags), HasSubstr("nest deeper"));
}

TEST(UntrustedInput, MayHaveADocumentTypeWithAnInternalSubset) {
  for (const auto* doctype :
       {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a b CDATA 'c'><!-- > --><?p > ?>]>",
        "<!DOCTYPE a PUBLIC 'p' \"s\" [ ] >", "<!DOCTYPE a [<!ENTITY e '>'><!ENTITY f \"'>\">]>",
        "<!DOCTYPE a [<?a?><!-- was: <!ENTITY owner's -->]>", "<!DOCTYPE a[<!----><!----><?p?><?p?>]>"}) {
    EXPECT_EQ(textOf(parsed(std::string(doctype) + "<a/>")), "<a/>") << doctype;
  }
}

TEST(UntrustedInput, IsToldToEndTooEarlyWithinItsDocumentType) {
  for (const auto* text : {"<!DOCTYPE a SYSTEM \"x", "<!DOCTYPE a [<!--", "<!DOCTYPE a [<?p",
                           "<!DOCTYPE a [<!ENTITY e '", "<!DOCTYPE a [<!ENTITY", "<!DOCTYPE a [", "<!DOCTYPE", "<!"}) {
    EXPECT_NE(refusal(text), "") << text;
    EXPECT_THAT(refusal(text), Not(HasSubstr("is not supported"))) << text;
  }
}

TEST(UntrustedInput, CannotPassPartOfItsDocumentTypeOffAsTheDocument) {
  for (const auto* doctype :
       {"<!DOCTYPE r [<!ENTITY e ']><evil/><?p '>]>", "<!DOCTYPE r [<!-- ]><evil/> -->]>",
        "<!DOCTYPE r [<?p ]><evil/>?>]>", "<!DOCTYPE r SYSTEM '>'>", "<!DOCTYPE r [<!-- see [1] -->]>",
        "<!DOCTYPE r [<!-- ] -->", "<!DOCTYPE r [<!ENTITY e ']>", "<!DOCTYPE r [<!--x--><!-- ]><evil/><?p -->]>",
        "<!DOCTYPE r [<?x?><?p ]><evil/>?>]>", "<!DOCTYPE r [<?x?><!-- ]><evil/> -->]>",
        "<!DOCTYPE r [<!ENTITY a 'b'><!ENTITY e ']><evil/><?p '>]>"}) {
    EXPECT_EQ(refusal(std::string("\n ") + doctype + "<r/><?q ?>"),
              "line 2, column 2: a document type declaration with ']', '[' or '>' in it is not supported")
        << doctype;
  }
}

TEST(UntrustedInput, MayHaveAttributesToTheLimit) {
  const auto element = [](std::size_t attributes) {
    std::string text = "<a";
    for (std::size_t i = 0; i < attributes; ++i) text += " b" + std::to_string(i) + "='='";
    return text + "/>";
  };
  EXPECT_EQ(parsed(element(kMaximumAttributes)).root().getAttributes()->getLength(), kMaximumAttributes);
  EXPECT_EQ(quickRefusal(element(100000)), "line 1, column 1: an element has more than 1000 attributes");
}

TEST(UntrustedInput, IsRefusedWithTooManyAttributesAroundAnElement) {
  std::string attributes;
  for (std::size_t i = 0; i < kMaximumAttributes; ++i) attributes += " a" + std::to_string(i) + "=''";
  const auto full = "<a" + attributes + ">";
  EXPECT_EQ(refusal(full + full + "<b/></a></a>"), "");
  EXPECT_EQ(refusal(full + full + "<b c=''/></a></a>"),
            "line 1, column " + std::to_string(2 * full.size() + 1) +
                ": an element and those around it have more than 2000 attributes");
  EXPECT_EQ(refusal("<r>" + repeated(full + "</a>", 3) + "</r>"), "");
}

TEST(UntrustedInput, MayHaveAnyNumberOfCharacterReferences) {
  const auto document = parsed("<a>" + repeated("&amp;&#x41;", 100000) + "</a>");
  EXPECT_EQ(wstring(document.root().getTextContent()).size(), 200000u);
}

TEST(UntrustedInput, CannotExpandEntities) {
  std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'xxxxxxxxxx'>";
  for (int i = 1; i < 12; ++i) {
    bomb += "<!ENTITY e" + std::to_string(i) + " '" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  EXPECT_THAT(quickRefusal(bomb + "]><a>&e11;</a>"),
              HasSubstr("entity 'e11' not found; document type declarations, which define entities, are not read"));
  EXPECT_THAT(quickRefusal(bomb + "]><a b='&e11;'/>"), HasSubstr("entity 'e11' not found"));
}

TEST(UntrustedInput, CannotExpandParameterEntities) {
  std::string bomb = "<!DOCTYPE a [<!ENTITY % e0 '<!-- -->'>";
  for (int i = 1; i < 12; ++i) {
    bomb += "<!ENTITY % e" + std::to_string(i) + " '" + repeated("&#37;e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  EXPECT_EQ(quickRefusal(bomb + "%e11;]><a/>"), "");
}

/// A file that only the tests may read.
class Secret {
 public:
  Secret() : path_(std::filesystem::path(::testing::TempDir()) / "XMLUtilsSecret.txt") {
    std::ofstream(path_) << "secret";
  }
  ~Secret() { std::filesystem::remove(path_); }
  std::string uri() const { return "file://" + path_.generic_string(); }

 private:
  std::filesystem::path path_;
};

TEST(UntrustedInput, CannotNameFilesToRead) {
  const Secret secret;
  const auto message = refusal("<!DOCTYPE a [<!ENTITY e SYSTEM '" + secret.uri() + "'>]><a>&e;</a>");
  EXPECT_THAT(message, StartsWith("line 1, column "));
  EXPECT_THAT(message, HasSubstr("entity 'e' not found"));
}

TEST(UntrustedInput, CannotNameADocumentTypeOrASchemaToRead) {
  const Secret secret;  // read as either, it would be an error
  EXPECT_EQ(textOf(parsed("<!DOCTYPE a SYSTEM '" + secret.uri() + "'><a/>")), "<a/>");
  const auto schema = R"(<a xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:noNamespaceSchemaLocation=")" +
                      secret.uri() + "\"/>";
  EXPECT_EQ(parsed(schema).root().getAttributes()->getLength(), 2u);
  const auto include =
      R"(<a><i:include xmlns:i="http://www.w3.org/2001/XInclude" href=")" + secret.uri() + R"(" parse="text"/></a>)";
  EXPECT_EQ(utf16ToWstring(parsed(include).root().getFirstChild()->getLocalName()), u"include");
}

}  // namespace
}  // namespace Vantor::XMLUtils

#include "XMLUtils/LoadDocument.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Core/Platform/Path.h"
#include "Documents.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::XMLUtils {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string bigEndian(const wstring& text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit >> 8);
    bytes += static_cast<char>(unit & 0xFF);
  }
  return bytes;
}

std::string littleEndian(const wstring& text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

TEST(LoadDocument, TakesWhatUnicodeStringGives) {
  const UnicodeString text(u"<a>\u00E9</a>");
  const auto parser = createParser();
  auto* document = loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.utf16()), text.utf16Size(), *parser);
  EXPECT_EQ(textOf(*document), "<a>\u00E9</a>");
}

TEST(LoadDocument, RecognisesUtf16WithAndWithoutByteOrderMarkWhateverIsDeclared) {
  for (const auto* start :
       {u"", u"<?xml version='1.0'?>", u"<?xml version='1.0' encoding='UTF-8'?>",
        u"<?xml version='1.0' encoding='ISO-8859-1'?>", u"<?xml version='1.0' encoding='UTF-16'?>", u"\n", u" \t"}) {
    const wstring text = start + wstring(u"<a>\u00E9\u20AC\U0001F600</a>");
    for (const auto& bytes :
         {littleEndian(text), bigEndian(text), littleEndian(u"\uFEFF" + text), bigEndian(u"\uFEFF" + text)}) {
      EXPECT_EQ(textOf(parsed(bytes)), "<a>\u00E9\u20AC\U0001F600</a>");
    }
  }
}

TEST(LoadDocument, ReadsOctetsInTheDeclaredEncoding) {
  EXPECT_EQ(textOf(parsed("<a>\xC3\xA9</a>")), "<a>\u00E9</a>");
  EXPECT_EQ(textOf(parsed("\xEF\xBB\xBF<a>\xC3\xA9</a>")), "<a>\u00E9</a>");
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding='utf-8'?><a>\xC3\xA9</a>")), "<a>\u00E9</a>");
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding='iso-8859-1'?><a>\xE9</a>")), "<a>\u00E9</a>");
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding=\"windows-1252\"?><a>\x80</a>")), "<a>\u20AC</a>");
}

/// Whether the converter behind Xerces knows an encoding. ICU and iconv know all that we accept; Windows' own depends
/// on what is installed, and Wine's has no ISO-8859-15.
bool hasConverter(const char16_t* encoding) {
  constexpr XMLSize_t kBlock = 1024;
  Initializer::instance();
  xercesc::XMLTransService::Codes ignored;
  const std::unique_ptr<xercesc::XMLTranscoder> transcoder(
      xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encoding, ignored, kBlock));
  return transcoder != nullptr;
}

TEST(LoadDocument, TakesTheNamesOfEncodingsThatPeopleWrite) {
  struct Name {
    const char* written;
    const char16_t* encoding;
    const char* e9;  // what the octet E9 is in it
  };
  const Name names[] = {{"latin1", u"ISO-8859-1", "\u00E9"},
                        {"Latin-1", u"ISO-8859-1", "\u00E9"},
                        {"L1", u"ISO-8859-1", "\u00E9"},
                        {"ISO8859-1", u"ISO-8859-1", "\u00E9"},
                        {"iso_8859-1", u"ISO-8859-1", "\u00E9"},
                        {"latin9", u"ISO-8859-15", "\u00E9"},
                        {"ISO-8859-15", u"ISO-8859-15", "\u00E9"},
                        {"cp1252", u"WINDOWS-1252", "\u00E9"},
                        {"CP-1252", u"WINDOWS-1252", "\u00E9"},
                        {"windows1252", u"WINDOWS-1252", "\u00E9"},
                        {"Windows-1252", u"WINDOWS-1252", "\u00E9"},
                        {"latin5", u"ISO-8859-9", "\u00E9"},
                        {"cp1251", u"WINDOWS-1251", "\u0439"},
                        {"ISO8859-5", u"ISO-8859-5", "\u0449"}};
  int leftOut = 0;
  for (const auto& [written, encoding, e9] : names) {
    const std::string name = written, text = "<?xml version='1.0' encoding='" + name + "'?><a>\xE9</a>";
    if (hasConverter(encoding)) {
      EXPECT_EQ(textOf(parsed(text)), std::string("<a>") + e9 + "</a>") << name;
    } else {
      std::cout << "left out, because the system does not convert it: " << name << "\n";
      EXPECT_EQ(refusal(text), "line 1, column 1: encoding '" + name + "' is not supported");
      ++leftOut;
    }
  }
#ifndef _WIN32
  EXPECT_EQ(leftOut, 0);
#endif
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding='utf8'?><a>\xC3\xA9</a>")), "<a>\u00E9</a>");
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding='ascii'?><a>b</a>")), "<a>b</a>");
}

TEST(LoadDocument, NamesAnEncodingThatItDoesNotKnowInTheFirstLine) {
  for (const std::string name : {"ISO-8859-12", "ISO-8859-99", "windows-1259", "cp125", "latin11", "utf-9", "IBM037",
                                 "UTF-32", "Shift_JIS", "us-ascii-7"}) {
    EXPECT_EQ(refusal("<?xml version='1.0' encoding='" + name + "'?>\n<a/>"),
              "line 1, column 1: encoding '" + name + "' is not supported");
  }
}

TEST(LoadDocument, TakesOctetsThatCallThemselvesUtf16ForUtf8) {
  EXPECT_EQ(textOf(parsed("<?xml version='1.0' encoding='UTF-16'?><a>\xC3\xA9</a>")), "<a>\u00E9</a>");
}

TEST(LoadDocument, RefusesEncodingsThatItCannotCheck) {
  EXPECT_EQ(refusal(std::string("<?xml version='1.0' encoding='UTF-7'?><a/>")),
            "line 1, column 1: encoding 'UTF-7' is not supported");
  EXPECT_THAT(refusal(std::string("\x4C\x6F\xA7\x94\x93")),
              StartsWith("line 1, column 3: a character is not in UTF-8;"));
  EXPECT_THAT(refusal(std::string("<\0\0\0a\0\0\0/\0\0\0>\0\0\0", 16)), StartsWith("line 1, column "));
}

TEST(LoadDocument, NamesLineAndColumnOfAnError) {
  EXPECT_EQ(refusal(std::string("<a>\n  <b>\n  </c>\n</a>")), "line 3, column 5: expected end of tag 'b'");
  EXPECT_THAT(refusal(std::string("<a>\n<q:b/></a>")), StartsWith("line 2, column 7: prefix 'q'"));
  EXPECT_THAT(refusal(std::string("<a>\n<b c='' c=''/></a>")), StartsWith("line 2, column "));
  EXPECT_THAT(refusal(std::string("<a>\xFF</a>")), StartsWith("line 1, column "));
}

TEST(LoadDocument, HelpsWithAnEntityThatIsNotDefined) {
  const std::string missing = "entity 'nbsp' not found";
  const std::string help = "; document type declarations, which define entities, are not read";
  EXPECT_EQ(refusal(std::string("<a>&nbsp;</a>")), "line 1, column 10: " + missing + help);
  EXPECT_EQ(refusal(std::string("<a b='&nbsp;'/>")), "line 1, column 13: " + missing + help);
  EXPECT_THAT(refusal(std::string("<a>&lt;</b>")), Not(HasSubstr(help)));
  const Holder<xercesc::DOMLSParser> foreign(Initializer::instance().domImplementationLS().createLSParser(
      xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr));
  const std::string text = "<a>&nbsp;</a>";
  try {
    loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *foreign);
    FAIL();
  } catch (const xercesc::SAXParseException& error) {
    EXPECT_EQ(utf16ToWstring(error.getMessage()), u"line 1, column 10: entity 'nbsp' not found");
  }
}

TEST(LoadDocument, RefusesWhatIsCutOrFollowedByMore) {
  for (const auto* text : {"", " ", "<", "<a", "<a>", "<a><b>text", "<a/>text", "<a/><b/>", "<!--", "<a>&amp</a>",
                           "<a>&#x1;</a>", "<a b='<'/>", "<a>]]></a>", "<?xml version='1.0'?>"}) {
    EXPECT_THAT(refusal(std::string(text)), StartsWith("line 1, column ")) << text;
  }
  EXPECT_THAT(refusal(littleEndian(u"<a/>") + "x"), HasSubstr("ends within a code unit"));
}

TEST(LoadDocument, NamesThePlaceOfACharacterThatIsNotInUtf8) {
  const std::string message =
      ": a character is not in UTF-8; save the text as UTF-8, or name its encoding in the XML declaration";
  EXPECT_EQ(refusal("<a>\n<b>\xc3\xbc f\xfcr</b></a>"), "line 2, column 8" + message);
  EXPECT_EQ(refusal("<a>\x80</a>"), "line 1, column 4" + message);
  EXPECT_EQ(refusal("<a>\xf8\x88\x80\x80\x80</a>"), "line 1, column 4" + message);
}

TEST(LoadDocument, NamesTheLineOfOverLongUtf8AndOfSurrogatesInALongDocument) {
  std::string lines = "<a>";
  for (int i = 0; i < 20000; ++i) lines += "\n";
  for (const auto* character : {"\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf",  // over-long
                                "\xed\xa0\x80", "\xed\xbf\xbf",                              // surrogates
                                "\xf4\x90\x80\x80", "\xf5\x80\x80\x80"}) {                   // beyond U+10FFFF
    EXPECT_THAT(refusal(lines + "<b/> " + character + lines.substr(3) + "</a>"),
                StartsWith("line 20001, column 6: a character is not in UTF-8;"));
  }
  EXPECT_EQ(textOf(parsed("<a>\xc2\x80\xed\x9f\xbf\xee\x80\x80\xf4\x8f\xbf\xbd</a>")),
            "<a>\xc2\x80\xed\x9f\xbf\xee\x80\x80\xf4\x8f\xbf\xbd</a>");
}

TEST(LoadDocument, RefusesNulWhereverItStands) {
  const auto withNul = [](std::string text) {
    text[text.find('0')] = '\0';
    return text;
  };
  for (const auto* text : {"<a/>\n0", "<a/>\n0<b/>", "<a>\n0</a>", "<!--\n0--><a/>", "<!DOCTYPE a [\n0]><a/>"}) {
    const auto bytes = withNul(text);
    EXPECT_EQ(refusal(bytes), "line 2, column 1: XML has no NUL character; remove it") << text;
    const auto utf16 = Vantor::Utils::stringToWstring(bytes);
    EXPECT_EQ(refusal(littleEndian(utf16)), "line 2, column 1: XML has no NUL character; remove it") << text;
    EXPECT_EQ(refusal(bigEndian(utf16)), "line 2, column 1: XML has no NUL character; remove it") << text;
  }
}

TEST(LoadDocument, TakesNullForAnEmptyBuffer) {
  const auto parser = createParser();
  EXPECT_THROW(loadDocumentFromBuffer(nullptr, 0, *parser), xercesc::SAXParseException);
}

TEST(LoadDocument, LeavesTheParserUsableAndItsDocumentsAlive) {
  const auto parser = createParser();
  const auto load = [&](const std::string& text) {
    return loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser);
  };
  auto* first = load("<a/>");
  EXPECT_THROW(load("<b>"), xercesc::SAXParseException);
  auto* second = load("<c/>");
  EXPECT_EQ(textOf(*first), "<a/>");
  EXPECT_EQ(textOf(*second), "<c/>");
}

class CountingHandler : public xercesc::DOMErrorHandler {
 public:
  bool handleError(const xercesc::DOMError&) override { return ++errors > 0; }
  int errors = 0;
};

TEST(LoadDocument, GivesTheParserItsErrorHandlerBack) {
  CountingHandler handler;
  const auto parser = createParser();
  parser->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMErrorHandler, &handler);
  const uint8 text[] = {'<'};
  EXPECT_THROW(loadDocumentFromBuffer(text, sizeof text, *parser), xercesc::SAXParseException);
  EXPECT_EQ(handler.errors, 0);
  EXPECT_EQ(parser->getDomConfig()->getParameter(xercesc::XMLUni::fgDOMErrorHandler), &handler);
}

TEST(LoadDocument, UndoesEscapesInTextAndAttributes) {
  const auto document = parsed("<a b='$#x1;$#x24;#x'>x$#xFFFE;$#x41;<![CDATA[$#x2;]]></a>");
  EXPECT_EQ(utf16ToWstring(document.root().getAttribute(u"b")), u"\x01$#x");
  EXPECT_EQ(utf16ToWstring(document.root().getTextContent()), u"x\xFFFE$#x41;\x02");
}

TEST(LoadDocument, KeepsTheEscapeOfNulBecauseADomStringEndsThere) {
  EXPECT_EQ(utf16ToWstring(parsed("<a>x$#x0;y$#x1;</a>").root().getTextContent()), u"x$#x0;y\x01");
}

TEST(CleanEmptyTextNodes, RemovesWhiteSpaceAndNothingElse) {
  const auto document = parsed("<a> <b>\t\n&#xD;</b><c> x </c><d><![CDATA[ ]]></d>\u00A0<!-- --> </a>");
  cleanEmptyTextNodes(*document.dom);
  EXPECT_EQ(textOf(document), "<a><b/><c> x </c><d><![CDATA[ ]]></d>\u00A0<!-- --></a>");
}

TEST(CleanEmptyTextNodes, StaysBelowTheNode) {
  const auto document = parsed("<a> <b> <c> </c></b> </a>");
  auto* b = document.root().getFirstChild()->getNextSibling();
  cleanEmptyTextNodes(*b);
  EXPECT_EQ(textOf(document), "<a> <b><c/></b> </a>");
  cleanEmptyTextNodes(*document.root().getFirstChild());
  EXPECT_EQ(textOf(document), "<a> <b><c/></b> </a>");
}

TEST(CleanEmptyTextNodes, ReachesDepthsThatNoStackWouldHold) {
  const auto document = newDocument(nullptr, u"a");
  xercesc::DOMNode* node = &document.root();
  for (int i = 0; i < 100000; ++i) {
    appendText(*node, u" ");
    node = &appendElement(*node, nullptr, u"a");
  }
  cleanEmptyTextNodes(*document.dom);
  EXPECT_EQ(textOf(document).find(' '), std::string::npos);
}

/// A file that is gone with the object.
class TemporaryFile {
 public:
  TemporaryFile(const char* name, const std::string& content)
      : path_(std::filesystem::path(::testing::TempDir()) / Platform::pathFromUTF8(name)) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }

  UnicodeString path() const { return wstring(path_.u16string().c_str()); }

 private:
  std::filesystem::path path_;
};

std::string fileRefusal(const UnicodeString& path) {
  const auto parser = createParser();
  try {
    loadDocumentFromFile(path.utf16(), *parser);
    return "";
  } catch (const xercesc::SAXException& exception) {
    return Vantor::Utils::wstringToString(exception.getMessage());
  }
}

TEST(LoadDocumentFromFile, ReadsFilesOfAnyName) {
  const TemporaryFile file("XMLUtils \u00E9\u20AC %41#.xml", "<a> <b/> </a>");
  const auto parser = createParser();
  auto* document = loadDocumentFromFile(file.path().utf16(), *parser);
  EXPECT_EQ(textOf(*document), "<a> <b/> </a>");
}

TEST(LoadDocumentFromFile, ReadsWhatDomToBytesWrites) {
  const auto original = parsed("<a>\u00E9$#x1;</a>");
  for (const auto encoding : {EncodingType::kUTF8, EncodingType::kUTF16}) {
    std::string bytes;
    domToBytes(original.dom, bytes, encoding);
    const TemporaryFile file("XMLUtilsBytes.xml", bytes);
    const auto parser = createParser();
    EXPECT_TRUE(loadDocumentFromFile(file.path().utf16(), *parser)->isEqualNode(original.dom));
  }
}

TEST(LoadDocumentFromFile, ReadsFilesLongerThanOneReadCall) {
  const std::string text(3'000'001, 'x');
  const TemporaryFile file("XMLUtilsLong.xml", "<a>" + text + "</a>");
  const auto parser = createParser();
  auto* document = loadDocumentFromFile(file.path().utf16(), *parser);
  EXPECT_EQ(textOf(*document), "<a>" + text + "</a>");
}

TEST(LoadDocumentFromFile, NamesPathAndReasonWhenItCannotRead) {
  const UnicodeString missing(u"/nonexistent/\u00E9.xml");
  EXPECT_EQ(fileRefusal(missing), "cannot read /nonexistent/\u00E9.xml: No such file or directory");
  EXPECT_THAT(fileRefusal(UnicodeString(::testing::TempDir())), StartsWith("cannot read "));
  EXPECT_THAT(fileRefusal(UnicodeString(static_cast<const char*>(nullptr))), StartsWith("cannot read "));
}

TEST(LoadDocumentFromFile, NamesLineAndColumnOfAnError) {
  const TemporaryFile file("XMLUtilsError.xml", "<a>\n</b>");
  EXPECT_EQ(fileRefusal(file.path()), "line 2, column 3: expected end of tag 'a'");
}

}  // namespace
}  // namespace Vantor::XMLUtils

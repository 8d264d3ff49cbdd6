#include <gtest/gtest.h>

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/exceptions/XQillaException.hpp>
#endif

#include <fstream>
#include <iostream>
#include <typeinfo>

#include "Core/Platform/Strings.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/Strings.h"
#include "tests/Sanitized.h"
#include "tests/XMLBuilder/ImportSupport.h"
#include "tests/XMLUtils/LoadedXQilla.h"

#ifdef __linux__
#include <sys/resource.h>
#endif

namespace Vantor::XML2Partition {
namespace {

using XMLUtils::utf16ToWstring;

/// A dictionary with the sets Preface and Other, each with a text.
TestPartition newPartition() {
  TestDictionary dictionary;
  dictionary.property("Text", Types::Identifiers::kUTF16String).property("Data", Types::Identifiers::kDataStream);
  return TestPartition(dictionary.set("Preface", {"Text", "Data"}).set("Other", {"Text"}));
}

std::string names(const SetList& sets) {
  std::string names;
  for (const MetadataSet* set : sets) names += (names.empty() ? "" : " ") + set->name();
  return names;
}

TEST(Import, ReadsNoSetFromARootWithoutElements) {
  for (const auto entry : kEntries) {
    for (const auto* text :
         {"<r/>", "<r></r>", "<r>  text <!-- <p:Preface/> --><?pi <p:Preface/>?><![CDATA[<p/>]]></r>",
          "<?xml version='1.0'?>\n<!-- --><r>\n</r><?end?>"}) {
      const auto partition = newPartition();
      EXPECT_EQ(import(text, partition, entry).size(), 0u) << text;
      EXPECT_TRUE(partition->entries().empty()) << text;
      EXPECT_TRUE(partition->partitionDictionary().primerEntries().empty()) << text;
    }
  }
}

TEST(Import, ReadsNoSetFromARootThatHasTheNameOfOne) {
  const auto partition = newPartition();
  EXPECT_EQ(import("<p:Preface {p}/>", partition).size(), 0u);
  EXPECT_EQ(names(import("<p:Preface {p}><p:Other/></p:Preface>", partition)), "Other");
}

TEST(Import, SkipsAnElementOfAnUnknownNameAndReadsTheSetsAroundIt) {
  const auto partition = newPartition();
  const auto sets = import(document("<p:Preface/><p:Unheard><p:Other/></p:Unheard><p:preface/><p:Other/>"), partition);
  EXPECT_EQ(names(sets), "Preface Other");
  EXPECT_EQ(partition->sets().size(), 2u);
}

TEST(Import, SkipsAFloatingContainerOfAnotherPrefix) {
  const auto partition = newPartition();
  const auto sets = import(document(R"(
    <g:FloatingDarkMetadata xmlns:g="urn:SMPTE:Groups:MXF"><p:Other/></g:FloatingDarkMetadata>
    <FloatingDarkMetadata xmlns="urn:SMPTE:Groups:MXF"><p:Other/></FloatingDarkMetadata>
    <groups:floatingDarkMetadata><p:Other/></groups:floatingDarkMetadata>
    <p:FloatingDarkMetadata><p:Other/></p:FloatingDarkMetadata>)"),
                           partition);
  EXPECT_EQ(sets.size(), 0u);
  EXPECT_TRUE(partition->entries().empty());
}

TEST(Import, ReadsAFloatingContainerWhateverItsPrefixStandsFor) {
  const auto partition = newPartition();
  const auto sets = import(R"(<r><groups:FloatingDarkMetadata xmlns:groups="urn:any"><Other/>
                                 </groups:FloatingDarkMetadata></r>)",
                           partition);
  EXPECT_EQ(names(sets), "Other");
}

TEST(Import, ReadsASetOfAKnownNameInWhateverNamespace) {
  const auto partition = newPartition();
  const auto sets = import(R"(<r><Preface/><Other xmlns="urn:a"/><x:Preface xmlns:x="urn:b"/></r>)", partition);
  EXPECT_EQ(names(sets), "Preface Other Preface");
}

TEST(Import, ListsTheSetsInDocumentOrderAndThePartitionOwnsThem) {
  for (const auto entry : kEntries) {
    const auto partition = newPartition();
    const auto sets = import(document("<p:Other/><p:Preface/><p:Other/>"), partition, entry);
    EXPECT_EQ(names(sets), "Other Preface Other");
    EXPECT_EQ(std::vector<MetadataSet*>(sets.begin(), sets.end()), partition->sets());
  }
}

TEST(Import, TakesTheFirstOfTwoSetsWithOneTagName) {
  TestDictionary dictionary;
  dictionary.set("Preface").set("First", {}, {u"p", u"urn:p", u"Same"}).set("Second", {}, {u"p", u"urn:q", u"Same"});
  const TestPartition partition(dictionary);
  EXPECT_EQ(names(import(R"(<r><q:Same xmlns:q="urn:q"/></r>)", partition)), "First");
}

TEST(Import, KnowsNoSetByItsSymbolWhenItsTagNameIsAnother) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.set("Symbol", {}, {u"p", u"urn:p", u"Tag\u00e9"}));
  EXPECT_EQ(names(import("<r><Symbol/><Tag\u00e9/></r>", partition)), "Symbol");
}

TEST(Import, GivesAnEmptyListWithoutAPartition) {
  EXPECT_EQ(getPartitionMetadataFromString(u"<r/>", nullptr).size(), 0u);
  EXPECT_EQ(getPartitionMetadataFromBuffer(nullptr, 0, nullptr).size(), 0u);
  EXPECT_EQ(getPartitionMetadataFromFile(nullptr, nullptr).size(), 0u);
}

TEST(Import, KeepsTheSetsThatWereMadeBeforeAFailure) {
  for (const auto entry : kEntries) {
    const auto partition = newPartition();
    const auto text = document("<p:Other/><p:Preface><p:Text>t</p:Text><p:Data>0</p:Data></p:Preface><p:Other/>");
    EXPECT_EQ(failureOf([&] { import(text, partition, entry); }).kind, "InvalidFormat");
    ASSERT_EQ(partition->sets().size(), 2u);
    EXPECT_EQ(partition->sets()[0]->name(), "Other");
    EXPECT_TRUE(holds(valueOf(*partition->sets()[1], "Text"), Types::UTF16String(u"t")));
    EXPECT_FALSE(property(*partition->sets()[1], "Data").isPresent());
  }
}

TEST(Import, PassesAFailureOfAValueOnUnchanged) {
  for (const auto entry : kEntries) {
    const auto partition = newPartition();
    EXPECT_EQ(failureOf([&] { import(document("<p:Preface><p:Data>0a1</p:Data></p:Preface>"), partition, entry); }),
              invalidFormat("Value has invalid Length", 110));
  }
}

TEST(Import, AddsToWhatAPartitionHasAlready) {
  const auto partition = newPartition();
  partition.add("Preface", 1);
  EXPECT_EQ(names(import("<r><Other/></r>", partition)), "Other");
  EXPECT_EQ(names(import("<r><Other/></r>", partition)), "Other");
  EXPECT_EQ(partition->sets().size(), 3u);
}

std::string imported(const std::string& content, Entry entry) {
  const auto partition = newPartition();
  import(document("<p:Preface><p:Text>" + content + "</p:Text></p:Preface>"), partition, entry);
  const auto* text = valueOf(*partition->sets().front(), "Text");
  return text == nullptr
             ? "(nothing)"
             : Utils::wstringToString(utf16ToWstring(dynamic_cast<const Types::UTF16String&>(*text).value()));
}

TEST(Import, DropsTextThatIsNothingButWhiteSpaceUnlessItReadsAFile) {
  for (const std::string blank : {" ", "\t", "  \t", "&#10;", "&#32;", "&#xD;"}) {
    EXPECT_EQ(imported(blank, Entry::kBuffer), "(nothing)");
    EXPECT_EQ(imported(blank, Entry::kString), "(nothing)");
    EXPECT_NE(imported(blank, Entry::kFile), "(nothing)");
  }
  EXPECT_EQ(imported(" \t", Entry::kFile), " \t");
}

TEST(Import, KeepsWhiteSpaceAroundText) {
  for (const auto entry : kEntries) {
    EXPECT_EQ(imported(" a b\t", entry), " a b\t");
    EXPECT_EQ(imported("<![CDATA[ ]]>", entry), " ");
    EXPECT_EQ(imported("\u00a0", entry), "\u00a0");
  }
}

TEST(Import, ReadsABufferInAnyEncodingThatXmlCanTell) {
  const auto text = [](const std::string& bytes) {
    const auto partition = newPartition();
    getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(bytes.data()), static_cast<uint32>(bytes.size()),
                                   &*partition);
    return utf16ToWstring(
        dynamic_cast<const Types::UTF16String&>(*valueOf(*partition->sets().front(), "Text")).value());
  };
  const std::string body = "<r xmlns:p='urn:p'><Preface><p:Text>\xe9</p:Text></Preface></r>";
  EXPECT_EQ(text("<?xml version='1.0' encoding='ISO-8859-1'?>" + body), u"\u00e9");
  EXPECT_EQ(text("\xef\xbb\xbf<r xmlns:p='urn:p'><Preface><p:Text>\xc3\xa9</p:Text></Preface></r>"), u"\u00e9");
}

TEST(Import, ReadsAStringAsUtf16WhateverItDeclares) {
  for (const wstring declaration :
       {u"", u"<?xml version='1.0' encoding='UTF-8'?>", u"<?xml version='1.0' encoding='ISO-8859-1'?>", u"\ufeff"}) {
    const auto partition = newPartition();
    getPartitionMetadataFromString(
        declaration + u"<r xmlns:p='urn:p'><Preface><p:Text>\u00e9\u20ac\U0001F600</p:Text></Preface></r>",
        &*partition);
    EXPECT_TRUE(holds(valueOf(*partition->sets().front(), "Text"), Types::UTF16String(u"\u00e9\u20ac\U0001F600")));
  }
}

/// The class name of an exception as messages have it.
template <class Exception>
std::string className() {
  return typeid(Exception).name();
}

TEST(Import, TellsWhatIsNotWellFormedAsAParseError) {
  const auto expected = [](const std::string& message) {
    return converted(className<xercesc::SAXParseException>() + ": " + message);
  };
  for (const auto entry : kEntries) {
    const auto partition = newPartition();
    const auto failure = [&](const std::string& text) { return failureOf([&] { import(text, partition, entry); }); };
    EXPECT_EQ(failure("<r><Preface></r>"), expected("line 1, column 15: expected end of tag 'Preface'"));
    EXPECT_EQ(failure("<r><x:Preface/></r>"),
              expected("line 1, column 16: prefix 'x' can not be resolved to namespace URI"));
    EXPECT_EQ(failure(std::string("<r/>\0<x/>", 9)), expected("line 1, column 5: XML has no NUL character; remove it"));
    EXPECT_TRUE(partition->entries().empty());
  }
}

TEST(Import, TellsAFileThatCannotBeReadAsAParseError) {
  const auto partition = newPartition();
  const XMLUtils::UnicodeString missing(u"/nonexistent/\u00e9.xml");
  const auto expected = converted(className<xercesc::SAXException>() +
                                  ": cannot read /nonexistent/\u00e9.xml: No such file or directory");
  EXPECT_EQ(failureOf([&] { getPartitionMetadataFromFile(missing.utf16(), &*partition); }), expected);
  EXPECT_EQ(failureOf([&] { getPartitionMetadataFromFile(nullptr, &*partition); }).kind, "ParseError");
}

TEST(Import, TellsAnEmptyBufferAsAParseError) {
  const auto partition = newPartition();
  EXPECT_EQ(failureOf([&] { getPartitionMetadataFromBuffer(nullptr, 0, &*partition); }).kind, "ParseError");
  EXPECT_EQ(failureOf([&] { getPartitionMetadataFromString(u"", &*partition); }).kind, "ParseError");
}

TEST(Import, TellsAPrefixThatTheRootDoesNotDeclareAsAParseError) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Ratio", Types::Identifiers::kRational).set("Preface", {"Ratio"}));
  const auto text = R"(<r {p}><Preface><p:Ratio><t:Numerator {types} xmlns:t="urn:SMPTE:Types:MXF">1</t:Numerator>
                           </p:Ratio></Preface></r>)";
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOf([&] { import(text, partition, entry); }),
              pathFailure("No namespace for prefix 'types' [err:XPST0081] at :1:3"));
  }
}

TEST(Import, TellsAPropertyWithoutPrefixAsAParseError) {
  TestDictionary dictionary;
  const TestPartition partition(
      dictionary.property("Text", Types::Identifiers::kUTF16String, {u"", u"urn:p"}).set("Preface", {"Text"}));
  const auto failure = failureOf([&] { import("<r xmlns='urn:p'><Preface><Text>t</Text></Preface></r>", partition); });
  EXPECT_EQ(failure,
            converted(XMLUtils::hasXQilla() ? "XQillaException:: Unrecognized character ':' (58) [err:XPST0003] at :1:4"
                                            : "DOMException:: './:Text' names no child [err:XPST0003] at :1:3(51)"));
}

/// Makes the next allocation of Xerces throw; the first one of an import is its parser's.
template <class Exception>
class ThrowingMemory : public xercesc::MemoryManager {
 public:
  explicit ThrowingMemory(const Exception& exception)
      : exception_(exception), previous_((XMLUtils::Initializer::instance(), current())) {
    current() = this;
  }
  ~ThrowingMemory() override { current() = previous_; }

  xercesc::MemoryManager* getExceptionMemoryManager() override { return previous_; }
  void* allocate(XMLSize_t) override {
    current() = previous_;
    throw exception_;
  }
  void deallocate(void* memory) override { previous_->deallocate(memory); }

 private:
  static xercesc::MemoryManager*& current() { return xercesc::XMLPlatformUtils::fgMemoryManager; }

  Exception exception_;
  xercesc::MemoryManager* previous_;
};

template <class Exception>
Failure failureOfImport(Entry entry, const Exception& exception) {
  const auto partition = newPartition();
  return failureOf([&] {
    const TemporaryFile file("<r/>");
    const auto path = file.unicodePath();
    const uint8 buffer[] = {'<', 'r', '/', '>'};
    const ThrowingMemory<Exception> memory(exception);
    if (entry == Entry::kBuffer) getPartitionMetadataFromBuffer(buffer, sizeof buffer, &*partition);
    if (entry == Entry::kString) getPartitionMetadataFromString(u"<r/>", &*partition);
    if (entry == Entry::kFile) getPartitionMetadataFromFile(path.utf16(), &*partition);
  });
}

std::string narrow(const XMLCh* text) { return Utils::wstringToString(utf16ToWstring(text)); }

/// The exceptions of Xerces are made before any import has started it.
class ImportFailures : public ::testing::Test {
 protected:
  void SetUp() override { XMLUtils::Initializer::instance(); }
};

TEST_F(ImportFailures, OfTheDomAreToldWithTheirCode) {
  const xercesc::DOMException exception(xercesc::DOMException::NOT_FOUND_ERR);
  ASSERT_NE(narrow(exception.getMessage()), "");
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOfImport(entry, exception), converted("DOMException:: " + narrow(exception.getMessage()) + "(8)"));
  }
}

TEST_F(ImportFailures, OfSaxAreToldWithTheirClass) {
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOfImport(entry, xercesc::SAXException(u"no \u00e9")),
              converted(className<xercesc::SAXException>() + ": no \u00e9"));
    EXPECT_EQ(failureOfImport(entry, xercesc::SAXParseException(u"no b", u"", u"", 1, 2)),
              converted(className<xercesc::SAXParseException>() + ": no b"));
  }
}

TEST_F(ImportFailures, OfXercesAreToldWithTheirClass) {
  const xercesc::UTFDataFormatException format("", 1, xercesc::XMLExcepts::UTF8_Invalid_3BytesSeq, u"x", u"y");
  const xercesc::RuntimeException runtime("", 1, xercesc::XMLExcepts::CPtr_PointerIsZero);
  ASSERT_NE(narrow(format.getMessage()), "");
  ASSERT_NE(narrow(runtime.getMessage()), "");
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOfImport(entry, format),
              converted(className<xercesc::UTFDataFormatException>() + ": " + narrow(format.getMessage())));
    EXPECT_EQ(failureOfImport(entry, runtime),
              converted(className<xercesc::RuntimeException>() + ": " + narrow(runtime.getMessage())));
  }
}

#if VANTOR_WITH_XQILLA
TEST_F(ImportFailures, OfXQillaAreToldWithTheirKind) {
  if (!XMLUtils::hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOfImport(entry, XQillaException(51, u"no \u00e9")), converted("XQillaException:: no \u00e9"));
    EXPECT_EQ(failureOfImport(entry, XQException(u"no b", u"", 1, 2, "", 3)), converted("XQException:: no b"));
  }
}
#endif

TEST_F(ImportFailures, OfTheCoreLibraryPassUnchanged) {
  const auto text = [](const char* message) { return std::string(message); };
  for (const auto entry : kEntries) {
    EXPECT_EQ(failureOfImport(entry, Exceptions::BaseException(text("a"), "Some/File", 7)),
              (Failure{"BaseException", "a", "Some/File", 7}));
    EXPECT_EQ(failureOfImport(entry, Exceptions::ParseError(text("b"), "Some/File", 8)),
              (Failure{"ParseError", "b", "Some/File", 8}));
    EXPECT_EQ(failureOfImport(entry, Exceptions::InvalidFormat(text("c"), "Some/File", 9)),
              (Failure{"InvalidFormat", "c", "Some/File", 9}));
    EXPECT_EQ(failureOfImport(entry, Exceptions::InvalidLength(text("d"), "Some/File", 10)),
              (Failure{"InvalidLength", "d", "Some/File", 10}));
  }
}

Failure unknown(int line) {
  return {"ParseError", "Unknown error in Xerces or XQilla", "XMLBuilder\\XML2Partition", line};
}

TEST_F(ImportFailures, OfAnotherKindAreToldAsUnknownWithTheLineOfTheFunction) {
  // Errors of a string are those of a buffer, since a string is read as one.
  const std::pair<Entry, int> lines[] = {{Entry::kBuffer, 282}, {Entry::kString, 282}, {Entry::kFile, 313}};
  for (const auto& [entry, line] : lines) {
    EXPECT_EQ(failureOfImport(entry, 42), unknown(line));
    EXPECT_EQ(failureOfImport(entry, std::bad_alloc()), unknown(line));
    EXPECT_EQ(failureOfImport(entry, std::runtime_error("any")), unknown(line));
    EXPECT_EQ(failureOfImport(entry, xercesc::OutOfMemoryException()), unknown(line));
  }
}

#ifdef __linux__
/// Imports a text of 64 MiB with room for half of it. For a process of its own.
[[noreturn]] void importWithoutMemory() {
  const auto partition = newPartition();
  const wstring text(std::size_t{32} << 20, u' ');
  XMLUtils::Initializer::instance();
  std::ifstream statistics("/proc/self/statm");
  rlim_t pages = 0;
  statistics >> pages;
  const rlim_t limit = pages * 4096 + (rlim_t{32} << 20);
  const rlimit memory{limit, limit};
  if (setrlimit(RLIMIT_AS, &memory) != 0) std::exit(1);
  const auto failure = failureOf([&] { getPartitionMetadataFromString(text, &*partition); });
  std::cerr << failure;
  std::exit(0);
}

TEST_F(ImportFailures, OfAStringBeforeItIsReadHaveTheLineOfItsOwnFunction) {
  if (isSanitized()) GTEST_SKIP() << "a sanitizer needs more memory than the test allows";
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // not in a copy of this process, with what other tests have left
  EXPECT_EXIT(importWithoutMemory(), ::testing::ExitedWithCode(0),
              "ParseError \"Unknown error in Xerces or XQilla\" from XMLBuilder.XML2Partition:298[^0-9]*$");
}
#endif

}  // namespace
}  // namespace Vantor::XML2Partition

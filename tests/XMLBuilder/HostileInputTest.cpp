#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>
#include <tuple>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "LosslessXML.h"
#include "XMLUtils/Initializer.h"
#include "tests/Sanitized.h"
#include "tests/XMLBuilder/ImportSupport.h"

/// Documents that demand more than they are worth. Each is imported in a process of its own, with a second of computing
/// time and 256 MiB, and is refused for the right reason or imported as it is.
namespace Vantor::XML2Partition {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Matcher;
using ::testing::Not;
using ::testing::StartsWith;
using Types::Identifiers::kDataStream;
using Types::Identifiers::kStrongReference;
using Types::Identifiers::kUInt32;
using Types::Identifiers::kUnknown;
using Types::Identifiers::kUTF16String;
using XMLBuilder::exported;

const rlim_t kSeconds = isSanitized() ? 20 : 1;
constexpr rlim_t kOctets = rlim_t{256} << 20;

constexpr const char* kSecret = "what nobody but the tests should read";

TestPartition newPartition() {
  TestDictionary dictionary;
  dictionary.property("Text", kUTF16String).property("Number", kUInt32).property("Data", kDataStream);
  dictionary.property("Any", kUnknown).property("Parts", MetaMetadata::arrayOf(kDataStream));
  dictionary.property("Inner", kStrongReference);
  return TestPartition(dictionary.set("Preface", {"Text", "Number", "Data", "Any", "Parts", "Inner"}));
}

void limit(decltype(RLIMIT_AS) resource, rlim_t value) {
  const rlimit both{value, value};
  if (setrlimit(resource, &both) != 0) std::_Exit(1);
}

rlim_t addressSpace() {
  std::ifstream statistics("/proc/self/statm");
  rlim_t pages = 0;
  statistics >> pages;
  return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

/// Of this process, from now on.
void limitProcess() {
  XMLUtils::Initializer::instance();
  limit(RLIMIT_CPU, kSeconds);
  if (!isSanitized()) limit(RLIMIT_AS, addressSpace() + kOctets);
}

/// Prints what became of a document: the failure or the number of sets, the export, and its length as KLV.
[[noreturn]] void importWithinLimits(const std::string& text, Entry entry) {
  const auto partition = newPartition();
  limitProcess();
  SetList sets;
  const auto failure = failureOf([&] { sets = importRaw(text, *partition, entry); });
  if (failure.kind == "nothing") {
    DataIO::Memory::MemoryDataSink sink;
    MXF::writeHeaderMetadata(*partition, MXF::SetOrder::kFile, sink);
    std::cerr << sets.size() << " sets, " << (sink.serializedSize() < 65536 ? "short" : "long") << ": "
              << exported(partition);
  } else {
    std::cerr << failure;
  }
  std::_Exit(0);
}

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

/// A Preface with a content. `{secret}` stands for the URI of a file.
std::string preface(const std::string& content, const std::string& doctype = {}) {
  return doctype + XMLBuilder::xml("<r {p} {types} {groups}><p:Preface>") + content + "</p:Preface></r>";
}

std::string entityBomb(const std::string& kind, const std::string& reference) {
  std::string bomb = "<!DOCTYPE r [<!ENTITY " + kind + "e0 'xxxxxxxxxx'>";
  for (int i = 1; i < 12; ++i) {
    bomb += "<!ENTITY " + kind + "e" + std::to_string(i) + " '" +
            repeated(reference + "e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  return bomb;
}

std::string darkSet(const std::string& octetCount, const std::string& value) {
  return XMLBuilder::xml(R"(<r {groups}><Preface/><groups:FloatingDarkMetadata>
      <groups:DarkMetadata groups:Key="06.0E.2B.34.02.05.01.01.0E.7F.7F.7F.00.00.02.00")") +
         " groups:BEROctetCount=\"" + octetCount + "\">" + value +
         "</groups:DarkMetadata></groups:FloatingDarkMetadata></r>";
}

std::string extension(const std::string& attribute) {
  return preface("<groups:ExtensionElements><groups:DarkElement " + attribute +
                 ">00</groups:DarkElement></groups:ExtensionElements>");
}

/// Key and length of a KLV that claims 1 GiB.
constexpr const char* kLongKLV = "060E2B34025301010D0101010101370084400000000000";
/// The header of a batch that claims 2^30 items of 16 octets.
constexpr const char* kLongBatch = "4000000000000010";
constexpr const char* kGibibyte = "1073741824";

struct HostileDocument {
  const char* name;
  std::string text;
  Matcher<const std::string&> outcome;
};

void PrintTo(const HostileDocument& document, std::ostream* out) { *out << document.name; }

Matcher<const std::string&> isRefused(const std::string& kind, const std::string& reason) {
  return AllOf(StartsWith(kind + " \""), HasSubstr(reason));
}

/// The exported document holds a part.
Matcher<const std::string&> isImported(const std::string& part) {
  return AllOf(StartsWith("1 sets, short: <s377m:MetadataSets "), HasSubstr(part));
}

std::vector<HostileDocument> entities() {
  const std::string notFound = "entity 'e11' not found";
  const std::string text = "<p:Text>text</p:Text>";
  return {
      {"EntityBombInText", preface("<p:Text>&e11;</p:Text>", entityBomb("", "&") + "]>"),
       isRefused("ParseError", notFound)},
      {"EntityBombInAnAttribute", preface("<p:Text a='&e11;'/>", entityBomb("", "&") + "]>"),
       isRefused("ParseError", notFound)},
      {"ParameterEntityBomb", preface(text, entityBomb("% ", "&#37;") + "%e11;]>"), isImported(text)},
      {"ExternalEntity", preface("<p:Text>&e;</p:Text>", "<!DOCTYPE r [<!ENTITY e SYSTEM '{secret}'>]>"),
       isRefused("ParseError", "entity 'e' not found")},
      {"ExternalParameterEntity", preface(text, "<!DOCTYPE r [<!ENTITY % e SYSTEM '{secret}'>%e;]>"), isImported(text)},
      {"ExternalDocumentType", preface(text, "<!DOCTYPE r SYSTEM '{secret}'>"), isImported(text)},
      {"Schema",
       preface("<p:Text xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:schemaLocation='urn:p {secret}'>text"
               "</p:Text>"),
       isImported(text)},
      {"Inclusion",
       preface("<p:Text><i:include xmlns:i='http://www.w3.org/2001/XInclude' href='{secret}' parse='text'/>"
               "</p:Text><p:Number>7</p:Number>"),
       isImported("<p:Number>7</p:Number>")},
  };
}

std::vector<HostileDocument> nestings() {
  const auto nested = [](std::size_t sets) {
    return preface(repeated("<p:Inner><p:Preface>", sets) + repeated("</p:Preface></p:Inner>", sets));
  };
  return {
      {"HundredThousandNestedElements", repeated("<a>", 100000) + repeated("</a>", 100000),
       isRefused("ParseError", "elements nest deeper than 1000 levels")},
      {"HundredThousandOpenElements", repeated("<a>", 100000),
       isRefused("ParseError", "elements nest deeper than 1000 levels")},
      {"HundredThousandNestedSets", nested(50000), isRefused("ParseError", "elements nest deeper than 1000 levels")},
      {"SetsNestedToTheLimit", nested(499), isImported(repeated("</p:Inner></p:Preface>", 499))},
      {"HundredThousandAttributes", preface("<p:Text" + repeated(" a='='", 100000) + "/>"),
       isRefused("ParseError", "an element has more than 1000 attributes")},
  };
}

/// Documents of no more than 1 KiB that claim a gibibyte, in every place that could be taken for a size.
std::vector<HostileDocument> claims() {
  const std::string klv = std::string(kLongKLV) + kLongBatch;
  return {
      {"OctetCountOfADarkSet", darkSet(kGibibyte, "0017"),
       AllOf(isImported(" groups:BEROctetCount=\"0\""), HasSubstr(">0017<"))},
      {"OctetCountThatNoLengthHas", darkSet("200", "0017"),
       AllOf(isImported(" groups:BEROctetCount=\"200\""), HasSubstr(">0017<"))},
      {"OctetCountBeyondAllNumbers", darkSet(repeated("9", 500), "0017"), isImported(">0017<")},
      {"LengthInADarkSet", darkSet("4", klv), isImported(">" + klv + "<")},
      {"LengthInAnUnknownValue", preface("<p:Any>" + klv + "</p:Any>"), isImported("<p:Any>" + klv + "<")},
      {"CountInAStream", preface(std::string("<p:Data>") + kLongBatch + "</p:Data>"), isImported(kLongBatch)},
      {"LengthInAnExtension",
       preface("<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag=\"00.01\">" + klv +
               "</groups:DarkElement></groups:ExtensionElements>"),
       isImported("groups:StaticLocalTag=\"00.01\">" + klv + "<")},
      {"LongTag", extension("groups:StaticLocalTag=\"" + repeated("F", 500) + "\""),
       isRefused("InvalidFormat", "FFFF")},
      {"LongLabel", extension("groups:UniversalLabel=\"" + repeated("FF.", 200) + "\""),
       isRefused("InvalidFormat", "FF.FF")},
      {"LongNumber", preface("<p:Number>" + repeated("9", 500) + "</p:Number>"), isImported("<p:Number>4294967295<")},
      {"HugeCharacterReference", preface("<p:Text>&#x40000000;</p:Text>"), isRefused("ParseError", "character")},
      {"HugeEscape", preface("<p:Text>$#x40000000;</p:Text>"), isImported("$#x24;#x40000000;")},
  };
}

/// Not short, but far from what they demand.
std::vector<HostileDocument> paddings() {
  const std::string item = "<a>" + repeated("00", 65536) + "</a>";
  return {
      {"EmptyItemsToPad", preface("<p:Parts>" + repeated("<a><b/></a>", 65536) + item + "</p:Parts>"),
       isRefused("InvalidLength", "257 items without octets cannot be padded to 65536 octets each")},
  };
}

std::vector<HostileDocument> all() {
  std::vector<HostileDocument> all;
  for (const auto& some : {entities(), nestings(), claims(), paddings()})
    all.insert(all.end(), some.begin(), some.end());
  return all;
}

class HostileDocuments : public ::testing::TestWithParam<std::tuple<HostileDocument, Entry>> {};

TEST_P(HostileDocuments, AreRefusedOrImportedWithinLimits) {
  const auto& [document, entry] = GetParam();
  const TemporaryFile secret(kSecret);
  const std::string placeholder = "{secret}";
  std::string text = document.text;
  const auto at = text.find(placeholder);
  if (at != std::string::npos) text.replace(at, placeholder.size(), "file://" + secret.path().generic_string());
  EXPECT_EXIT(importWithinLimits(text, entry), ::testing::ExitedWithCode(0),
              AllOf(document.outcome, Not(HasSubstr(kSecret))));
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<HostileDocument, Entry>>& info) {
  constexpr const char* kNames[] = {"Buffer", "String", "File"};
  return std::string(std::get<0>(info.param).name) + "_" + kNames[static_cast<int>(std::get<1>(info.param))];
}

INSTANTIATE_TEST_SUITE_P(All, HostileDocuments,
                         ::testing::Combine(::testing::ValuesIn(all()), ::testing::ValuesIn(kEntries)), nameOf);

TEST(HostileClaims, AreMadeInAKibibyte) {
  for (const auto& document : claims()) EXPECT_LE(document.text.size(), 1024u) << document.name;
}

/// What an XML declaration claims counts in a buffer and in a file; a string is UTF-16 in any case.
TEST(HostileDocument, MayClaimAnEncodingThatNobodyReads) {
  for (const std::string encoding : {"UTF-32", "UCS-4", "ISO-10646-UCS-4", "EBCDIC-CP-US", "UTF-7", "x"}) {
    const auto text = "<?xml version='1.0' encoding='" + encoding + "'?>" + preface("<p:Number>7</p:Number>");
    for (const auto entry : {Entry::kBuffer, Entry::kFile}) {
      EXPECT_EXIT(importWithinLimits(text, entry), ::testing::ExitedWithCode(0), isRefused("ParseError", encoding));
    }
    EXPECT_EXIT(importWithinLimits(text, Entry::kString), ::testing::ExitedWithCode(0), isImported("Number>7<"));
  }
}

/// Prints what became of a document for which there is too little memory.
[[noreturn]] void loadWithLittleMemory(const std::string& text) {
  XMLUtils::Initializer::instance();
  limit(RLIMIT_AS, addressSpace() + (rlim_t{32} << 20));
  try {
    LosslessXML::Document::fromBytes(text.data(), text.size());
    std::cerr << "loaded";
  } catch (const std::bad_alloc&) {
    std::cerr << "out of memory";
  } catch (const Exceptions::BaseException& error) {
    std::cerr << error.message();
  }
  std::_Exit(0);
}

TEST(HostileDocument, ForWhichThereIsTooLittleMemoryIsNotToBlame) {
  if (isSanitized()) GTEST_SKIP() << "sanitizers need address space of their own";
  for (const std::string element : {"<a/>", "<a b='c'/>", "<a>b</a>"}) {
    EXPECT_EXIT(loadWithLittleMemory("<r>" + repeated(element, 1'000'000) + "</r>"), ::testing::ExitedWithCode(0),
                "out of memory");
  }
}

/// Imports from a path in place of a document.
[[noreturn]] void importWithinLimits(const wstring& path) {
  const auto partition = newPartition();
  limitProcess();
  const XMLUtils::UnicodeString name(path);
  std::cerr << failureOf([&] { getPartitionMetadataFromFile(name.utf16(), &*partition); });
  std::_Exit(0);
}

TEST(HostilePath, OfADeviceWithoutEndIsRefused) {
  EXPECT_EXIT(importWithinLimits(wstring(u"/dev/zero")), ::testing::ExitedWithCode(0),
              isRefused("ParseError",
                        "cannot read /dev/zero: it is no regular file, and a pipe or device may have no end; save it "
                        "to a file first"));
}

}  // namespace
}  // namespace Vantor::XML2Partition

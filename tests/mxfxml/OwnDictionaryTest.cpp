#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Types/Factories.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "tests/Registers/SomeMetaDictionary.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A file whose MetaDictionary defines three properties of its picture descriptor.
std::string fileWithOwn() { return sample("libmxf-writeaviddv50.header.mxf"); }

TEST(OwnDictionary, IsUsedByInfoUnlessTheUserRefusesIt) {
  EXPECT_THAT(run({"info", fileWithOwn(), "--partitions"}).out, Not(HasSubstr("unknown properties")));
  EXPECT_THAT(run({"info", fileWithOwn(), "--partitions", "--no-own-dictionary"}).out,
              HasSubstr("unknown properties: 3\n"));
}

TEST(OwnDictionary, NamesPropertiesInExports) {
  const auto plain = run({"export", fileWithOwn()}), own = run({"export", fileWithOwn(), "--own-dictionary"});
  EXPECT_THAT(plain.out, Not(HasSubstr("ResolutionID>142")));
  EXPECT_THAT(own.out, AllOf(HasSubstr("xmlns:ownP=\"urn:vantor:own:properties\""),
                             HasSubstr("<ownP:ResolutionID>142</ownP:ResolutionID>"),
                             HasSubstr("<ownP:FrameSampleSize>288000</ownP:FrameSampleSize>")));
  EXPECT_EQ(own.err, "");
}

class OwnDictionaryForms : public testing::TestWithParam<std::vector<std::string>> {
 protected:
  Result runWithForm(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), GetParam().begin(), GetParam().end());
    return run(arguments);
  }
  ScratchFolder folder_;
};

TEST_P(OwnDictionaryForms, LoseNothing) {
  const auto result = runWithForm({"verify", fileWithOwn(), "--own-dictionary", "--strict"});
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
}

TEST_P(OwnDictionaryForms, ComeBackWithTheSameOctets) {
  const auto document = folder_.path("document.xml"), file = folder_.path("new.mxf"), copy = folder_.path("copy.mxf");
  ASSERT_EQ(runWithForm({"export", fileWithOwn(), "--own-dictionary", "-o", document}).exitCode, 0);
  const auto import = run({"import", document, "--own-dictionary", "-o", file, "--strict"});
  EXPECT_EQ(import.exitCode, 0) << import.err;
  const auto difference = run({"diff", "--no-own-dictionary", fileWithOwn(), file});
  EXPECT_EQ(difference.exitCode, 0) << difference.out << difference.err;
  const auto merge = run({"import", document, "--own-dictionary", "--into", fileWithOwn(), "-o", copy});
  EXPECT_EQ(merge.exitCode, 0) << merge.err;
  EXPECT_EQ(readFile(copy), readFile(fileWithOwn()));
}

INSTANTIATE_TEST_SUITE_P(OwnDictionary, OwnDictionaryForms,
                         testing::Values(std::vector<std::string>{}, std::vector<std::string>{"--flat"},
                                         std::vector<std::string>{"--vocabulary", "st434-2014"},
                                         std::vector<std::string>{"--vocabulary", "st434-2014", "--flat"}));

TEST(OwnDictionary, IsNotReadOffADocumentUnlessTheUserAsksForIt) {
  const ScratchFolder folder;
  const auto document = folder.path("document.xml"), file = folder.path("new.mxf");
  run({"export", fileWithOwn(), "--own-dictionary", "-o", document});
  const auto result = run({"import", document, "-o", file});
  EXPECT_THAT(result.err, AllOf(HasSubstr("ResolutionID"), HasSubstr("--own-dictionary")));
}

TEST(OwnDictionary, OfOneFileServesBothThatAreCompared) {
  const ScratchFolder folder;
  const auto document = folder.path("document.xml");
  run({"export", fileWithOwn(), "--own-dictionary", "-o", document});
  const auto result = run({"diff", fileWithOwn(), document});
  EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  EXPECT_EQ(result.err, "");
}

TEST(OwnDictionary, IsCheckedWithTheRest) {
  const auto plain = run({"check", fileWithOwn()}), own = run({"check", fileWithOwn(), "--own-dictionary"});
  EXPECT_EQ(own.err, "");
  EXPECT_THAT(own.out, Not(HasSubstr("A0.24.00.60")));
}

void write(PartitionMetadata& metadata, const std::string& path) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kFile, sink);
  writeFile(path, std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()));
}

/// A file with a set under the key of a class that it defines itself, a UUID with swapped halves.
/// @param note  in UTF-16, big-endian.
void writeFileWithOwnSet(const std::string& path, const std::string& note = std::string("\0w\0a\0r\0m", 8)) {
  auto definitions = builtInDefinitions();
  definitions.readText(
      "dictionary 1\n"
      "a1000000.00130001.0f0e0d0c.00004001  Grading  InterchangeObject\n"
      "  -  a2000000.00000001.0f0e0d0c.00004001  Note  UTF16String  optional\n",
      "own.dictionary");
  Registers::SomeMetaDictionary file(definitions.makeDictionary());
  auto& grading =
      file.addClass("a1000000.00130001.0f0e0d0c.00004001", u"Grading", "060e2b34.02530101.0d010101.01010100");
  file.addProperty(grading, "a2000000.00000001.0f0e0d0c.00004001", u"Note", "060e2b34.01040101.01100200.00000000");
  file.metadata().createMetadataSet("Preface").set("OperationalPattern", Types::AUID());
  const auto* octets = reinterpret_cast<const uint8*>(note.data());
  const auto text = Types::Factories::fromBytes(Types::Identifiers::kUTF16String, octets, note.size());
  file.metadata().createMetadataSet("Grading").set("Note", *text);
  write(file.metadata(), path);
}

TEST(OwnDictionary, ReadsSetsWhoseKeysAreUUIDs) {
  const ScratchFolder folder;
  const auto file = folder.path("own.mxf"), document = folder.path("own.xml"), copy = folder.path("copy.mxf");
  writeFileWithOwnSet(file);
  EXPECT_THAT(run({"info", file, "--partitions", "--no-own-dictionary"}).out,
              HasSubstr("dark sets: 1\n  1  A1.00.00.00.00.13.00.01.0F.0E.0D.0C.00.00.40.01\n"));
  EXPECT_THAT(run({"info", file, "--partitions"}).out, AllOf(Not(HasSubstr("dark sets")), HasSubstr("  1  Grading\n")));
  EXPECT_THAT(run({"export", file, "--own-dictionary", "-o", document}).err, "");
  EXPECT_THAT(readFile(document), HasSubstr("<ownP:Note>warm</ownP:Note>"));
  EXPECT_EQ(run({"verify", file, "--own-dictionary"}).exitCode, 0);
  EXPECT_EQ(run({"import", document, "--own-dictionary", "-o", copy}).exitCode, 0);
  EXPECT_EQ(run({"diff", "--no-own-dictionary", file, copy}).exitCode, 0);
}

TEST(OwnDictionary, IsLeftOutWithAWarningWhereItMakesTheMetadataUnreadable) {
  const ScratchFolder folder;
  const auto path = folder.path("own.mxf");
  Registers::SomeMetaDictionary file;
  const auto key = MetaMetadata::registerKey("060e2b34.02530101.0f0e0d0c.00000001");
  file.addClass("060e2b34.02530101.0f0e0d0c.00000001", u"Own", "060e2b34.02530101.0d010101.01010100");
  file.metadata().createMetadataSet("Preface").set("OperationalPattern", Types::AUID());
  file.metadata().addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, 4, KLV::Value(Bytes{1, 2, 3})));
  write(file.metadata(), path);
  const auto result = run({"info", path, "--partitions"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("dark sets: 1\n"));
  EXPECT_THAT(result.err, HasSubstr("warning: the metadata cannot be read with their own definitions, and are read "
                                    "without: at byte offset 399: the items of set Own do not fill its 3 bytes"));
}

TEST(OwnDictionary, LetsPropertiesBeSetByTheirNames) {
  const ScratchFolder folder;
  const auto file = folder.path("own.mxf"), copy = folder.path("copy.mxf");
  writeFileWithOwnSet(file);
  EXPECT_EQ(run({"set", file, "Grading.Note=cold", "-o", copy}).exitCode, 1);
  const auto result = run({"set", file, "Grading.Note=cold", "--own-dictionary", "-o", copy});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(run({"diff", file, copy}).out, HasSubstr(": Note: \"warm\" -> \"cold\"\n"));
  EXPECT_THAT(run({"diff", "--no-own-dictionary", file, copy}).out, Not(HasSubstr("Note")));
}

/// A file whose Preface has two properties of one name with different values.
/// @param reversed  whether the second definition comes first.
void writeFileWithTwins(const std::string& path, bool reversed) {
  const char *const one = "a2000000.00000001.0f0e0d0c.00004001", *const other = "a2000000.00000002.0f0e0d0c.00004001";
  auto definitions = builtInDefinitions();
  definitions.readText(std::string("dictionary 1\nextend Preface\n  - ") + one + " Left UInt8 optional\n  - " + other +
                           " Right UInt8 optional\n",
                       "own.dictionary");
  Registers::SomeMetaDictionary file(definitions.makeDictionary());
  auto& preface = file.metadata().createMetadataSet("Preface");
  preface.set("OperationalPattern", Types::AUID());
  preface.set("Left", Types::UInt8(1));
  preface.set("Right", Types::UInt8(2));
  auto& definition =
      file.addClass("060e2b34.02530101.0d010101.01012f00", u"Preface", "060e2b34.02530101.0d010101.01010100");
  for (const auto* key : {reversed ? other : one, reversed ? one : other}) {
    file.addProperty(definition, key, u"Gain", "060e2b34.01040101.01010100.00000000");
  }
  write(file.metadata(), path);
}

class TwinProperties : public testing::TestWithParam<std::pair<bool, bool>> {};

TEST_P(TwinProperties, KeepTheirValuesInAnyOrderOfTheirDefinitions) {
  const auto [isReversed, isFlat] = GetParam();
  const ScratchFolder folder;
  const auto file = folder.path("own.mxf"), document = folder.path("own.xml"), copy = folder.path("copy.mxf");
  writeFileWithTwins(file, isReversed);
  std::vector<std::string> form;
  if (isFlat) form.emplace_back("--flat");
  const auto with = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), form.begin(), form.end());
    return run(arguments);
  };
  EXPECT_EQ(with({"verify", file, "--own-dictionary"}).exitCode, 0);
  EXPECT_EQ(with({"export", file, "--own-dictionary", "-o", document}).exitCode, 0);
  EXPECT_THAT(readFile(document),
              AllOf(HasSubstr("<ownP:Gain_a200000000000001>1</"), HasSubstr("<ownP:Gain_a200000000000002>2</")));
  EXPECT_EQ(run({"import", document, "--own-dictionary", "-o", copy}).exitCode, 0);
  EXPECT_EQ(run({"diff", "--no-own-dictionary", file, copy}).exitCode, 0);
  EXPECT_EQ(run({"diff", document, file}).exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(OwnDictionary, TwinProperties,
                         testing::Values(std::pair(false, false), std::pair(false, true), std::pair(true, false),
                                         std::pair(true, true)));

TEST(OwnDictionary, KeepsTheNULsOfItsTexts) {
  const ScratchFolder folder;
  const auto file = folder.path("own.mxf"), document = folder.path("own.xml"), copy = folder.path("copy.mxf");
  writeFileWithOwnSet(file, std::string("\0w\0a\0r\0m\0\0", 10));
  EXPECT_EQ(run({"export", file, "--own-dictionary", "-o", document}).exitCode, 0);
  EXPECT_THAT(readFile(document), AllOf(Not(HasSubstr("ownP:Note")), HasSubstr("007700610072006D0000")));
  EXPECT_EQ(run({"import", document, "--own-dictionary", "-o", copy}).exitCode, 0);
  EXPECT_EQ(run({"diff", "--no-own-dictionary", file, copy}).exitCode, 0);
  const auto verified = run({"verify", file, "--own-dictionary"});
  EXPECT_THAT(verified.out, Not(HasSubstr("trailing NULs")));
  EXPECT_EQ(verified.exitCode, 0);
}

TEST(OwnDictionary, IsSummedUpByInfo) {
  const ScratchFolder folder;
  const auto file = folder.path("own.mxf");
  writeFileWithOwnSet(file);
  EXPECT_THAT(run({"info", file}).out, HasSubstr("\n  own dictionary  1 classes, 1 properties, 0 types; 0 problems\n"));
  EXPECT_THAT(run({"info", file, "--partitions"}).out,
              HasSubstr("\nown dictionary: 1 classes, 1 properties, 0 types; 0 problems\n"));
  EXPECT_THAT(run({"info", file, "--no-own-dictionary"}).out, Not(HasSubstr("own dictionary")));
  EXPECT_THAT(run({"info", sample("op1a.mxf")}).out, Not(HasSubstr("own dictionary")));
  EXPECT_THAT(run({"info", fileWithOwn(), "--partitions"}).out,
              AllOf(HasSubstr("\nown dictionary: 0 classes, 44 properties, 17 types; "),
                    HasSubstr("  property CommentMarkerColor: its values are bytes: its type is a record\n")));
}

TEST(OwnDictionary, IsMissedWhereTheUserAsksForIt) {
  EXPECT_THAT(run({"verify", sample("op1a.mxf"), "--own-dictionary"}).err,
              HasSubstr("op1a.mxf: warning: the metadata define nothing that the dictionary lacks"));
}

TEST(OwnDictionary, IsNamedOnceByAnImportWithoutIt) {
  const ScratchFolder folder;
  const auto document = folder.path("document.xml"), file = folder.path("new.mxf");
  run({"export", fileWithOwn(), "--own-dictionary", "-o", document});
  const auto whole = run({"import", document, "-o", file}).err;
  EXPECT_THAT(whole, HasSubstr("the document is an export with --own-dictionary"));
  EXPECT_EQ(whole.find("--own-dictionary"), whole.rfind("--own-dictionary"));
  EXPECT_THAT(whole, Not(HasSubstr("--dictionary FILE adds definitions")));
  auto text = readFile(document);
  const auto start = text.find("<s377m:MetaDictionary "), end = text.find("</s377m:MetaDictionary>");
  ASSERT_NE(end, std::string::npos);
  writeFile(document, text.erase(start, end + 23 - start));
  EXPECT_THAT(run({"import", document, "-o", file}).err, HasSubstr("a MetaDictionary that is not in it"));
}

TEST(LearnedDictionary, ServesAsADictionaryFile) {
  const ScratchFolder folder;
  const auto learned = folder.path("maker.dictionary");
  const auto result = run({"dictionary", "--learn", fileWithOwn(), "-o", learned});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(readFile(learned),
              AllOf(HasSubstr("namespace properties ownP urn:vantor:own:properties\n"),
                    HasSubstr("extend PictureDescriptor\n"
                              "  -  a0240060.94eb75cb.ce2aca4d.51ab11d3  ResolutionID         Int32   optional\n")));
  const auto asFile = run({"export", fileWithOwn(), "--dictionary", learned});
  EXPECT_EQ(asFile.out, run({"export", fileWithOwn(), "--own-dictionary"}).out);
  EXPECT_EQ(run({"export", fileWithOwn(), "--dictionary", learned, "--own-dictionary"}).out, asFile.out);
}

TEST(LearnedDictionary, GoesToStandardOutputAndNamesWhatItChanged) {
  const auto result = run({"dictionary", "--learn", fileWithOwn()});
  EXPECT_THAT(result.out, testing::StartsWith("dictionary 1\n# Learned from libmxf-writeaviddv50.header.mxf.\n"));
  EXPECT_THAT(result.err, HasSubstr("property CommentMarkerColor: its values are bytes: its type is a record\n"));
}

TEST(LearnedDictionary, IsRefusedWhereThereIsNothingToLearn) {
  const ScratchFolder folder;
  const auto learned = folder.path("maker.dictionary");
  const auto result = run({"dictionary", "--learn", sample("op1a.mxf"), "-o", learned});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("op1a.mxf: the metadata define nothing that the dictionary lacks\n"));
  EXPECT_TRUE(folder.files().empty());
}

}  // namespace
}  // namespace Vantor::Tool

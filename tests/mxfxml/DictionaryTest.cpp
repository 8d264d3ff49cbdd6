#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kNotes = R"(dictionary 1
namespace properties acme urn:example:acme
enum AcmeGrade UInt8
  0  Rough
  1  Fine
060e2b34.027f0101.0f0e0d0c.00000100  AcmeNote  InterchangeObject
  -  060e2b34.01010101.0f0e0d0c.00010000  Grade  AcmeGrade  required
extend Preface
  -  060e2b34.01010101.0f0e0d0c.00020000  Notes  BatchOf(StrongReference(AcmeNote))  optional
label 060e2b34.04010101.0f0e0d0c.01000000  AcmeScheme  Acme's notes
)";

TEST(Dictionary, ListsSets) {
  const Result result = run({"dictionary"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, StartsWith("sets: 358\n"));
  EXPECT_THAT(result.out, HasSubstr("  InterchangeObject                          060e2b34.027f0101.0d010101.01010100  "
                                    "-                                  no\n"));
  EXPECT_THAT(result.out, HasSubstr("  Preface                                    060e2b34.027f0101.0d010101.01012f00  "
                                    "InterchangeObject                  yes\n"));
}

TEST(Dictionary, ShowsASetWithInheritedPropertiesInBothVocabularies) {
  const Result result = run({"dictionary", "GPITrigger"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, R"(set GPITrigger
  key              060e2b34.027f0101.0d010101.01010700
  parent           Event
  in files         yes
  XML, legacy      s377m:GPITrigger
  XML, st434-2014  st395:GPITrigger
  definition       GPI Trigger
  document         AAF Object Specification

properties: 12
  tag   legacy                          st434-2014                      type                                               status    of                 common name
  3c0a  rp210:InstanceUID               rp210:InstanceUID               UUID                                               optional  InterchangeObject
  0101  rp210:ObjectClass               st335:ObjectClass               AUID                                               optional  InterchangeObject
  0102  rp210:GenerationUID             rp210:GenerationUID             UUID                                               optional  InterchangeObject
  -     rp210:ApplicationPlugInObjects  st335:ApplicationPlugInObjects  BatchOf(StrongReference(ApplicationPlugInObject))  optional  InterchangeObject
  0201  rp210:ComponentDataDefinition   st335:ComponentDataDefinition   AUID                                               required  Component          DataDefinition
  0202  rp210:ComponentLength           st335:ComponentLength           Length                                             optional  Component          Duration
  0203  rp210:ComponentKLVData          st335:ComponentKLVData          ArrayOf(StrongReference(KLVData))                  optional  Component
  0204  rp210:ComponentUserComments     st335:ComponentUserComments     ArrayOf(StrongReference(TaggedValue))              optional  Component
  0205  rp210:ComponentAttributes       st335:ComponentAttributes       ArrayOf(StrongReference(TaggedValue))              optional  Component
  0601  rp210:EventPosition             st335:EventPosition             Position                                           optional  Event
  0602  rp210:EventComment              st335:EventComment              UTF16String                                        optional  Event
  0801  rp210:ActiveState               st335:ActiveState               Boolean                                            required  GPITrigger
)");
}

TEST(Dictionary, ShowsAPropertyByNameInXMLByTagAndByKeyOfAnyVersion) {
  const Result byName = run({"dictionary", "FrameLayout"});
  EXPECT_EQ(byName.out, R"(property FrameLayout
  key              060e2b34.01010101.04010301.04000000
  type             LayoutType (UInt8)
  XML, legacy      rp210:FrameLayout
  XML, st434-2014  st335:FrameLayout
  definition       Specifies frame layout (interlaced, single frame, full frame, etc.)
  document         SMPTE 377M
  tag   status    in set
  320c  required  PictureDescriptor

enumeration LayoutType of UInt8
  0  FullFrame
  1  SeparateFields
  2  OneField
  3  MixedFields
  4  SegmentedFrame
)");
  EXPECT_EQ(run({"dictionary", "320c"}).out, byName.out);
  EXPECT_EQ(run({"dictionary", "320C"}).out, byName.out);
  EXPECT_EQ(run({"dictionary", "060e2b34010101010401030104000000"}).out, byName.out);
  EXPECT_EQ(run({"dictionary", "06.0E.2B.34.01.01.01.7F.04.01.03.01.04.00.00.00"}).out, byName.out);
  EXPECT_EQ(run({"dictionary", "urn:smpte:ul:060e2b34.01010101.04010301.04000000"}).out, byName.out);
}

TEST(Dictionary, TakesNamesAndTagsAsTheyAreWrittenElsewhere) {
  EXPECT_EQ(run({"dictionary", "s377m:GPITrigger"}).out, run({"dictionary", "GPITrigger"}).out);
  EXPECT_EQ(run({"dictionary", "st335:FrameLayout"}).out, run({"dictionary", "FrameLayout"}).out);
  for (const auto* tag : {"0x320C", "32.0c", "320C"}) {
    EXPECT_EQ(run({"dictionary", tag}).out, run({"dictionary", "320c"}).out) << tag;
  }
  for (const auto* key :
       {"0x060e2b34010101010401030104000000", "{060e2b34-0101-0101-0401-030104000000}",
        "06 0E 2B 34 01 01 01 01 04 01 03 01 04 00 00 00", "URN:SMPTE:UL:060E2B34.01010101.04010301.04000000"}) {
    EXPECT_EQ(run({"dictionary", key}).out, run({"dictionary", "FrameLayout"}).out) << key;
  }
}

TEST(Dictionary, ShowsASetByTheKeyOfAnyCoding) {
  EXPECT_EQ(run({"dictionary", "060e2b34.02530101.0d010101.01010700"}).out, run({"dictionary", "GPITrigger"}).out);
}

TEST(Dictionary, ShowsLabelsBySymbolAndByKey) {
  const std::string label = R"(label MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal
  key         060e2b34.04010101.0d010201.01010900
  name        MXF OP1a SingleItem SinglePackage MultiTrack Stream Internal
  definition  Identifier for MXF OP1a SingleItem SinglePackage, with MultiTrack Stream and Internal essence constraints
  document    SMPTE ST 378
)";
  EXPECT_EQ(run({"dictionary", "MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal"}).out, label);
  EXPECT_EQ(run({"dictionary", "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"}).out, label);
}

TEST(Dictionary, ShowsEverythingOfOneName) {
  const std::string out = run({"dictionary", "Dictionary"}).out;
  EXPECT_THAT(out, AllOf(StartsWith("set Dictionary\n"), HasSubstr("\nproperty Dictionary\n")));
}

TEST(Dictionary, ListsWhatHasAPartOfAName) {
  const Result result = run({"dictionary", "preface"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, R"(found: 2
  set       Preface      060e2b34.027f0101.0d010101.01012f00
  property  RootPreface  060e2b34.0101010a.06010107.17000000
)");
  EXPECT_EQ(run({"dictionary", "oundedTimecodeBas"}).out, run({"dictionary", "FramesPerSecond"}).out) << "only one";
  EXPECT_EQ(run({"dictionary", "st335:oundedTimecodeBas"}).out, run({"dictionary", "FramesPerSecond"}).out);
  EXPECT_THAT(run({"dictionary", "bt.709"}).out, HasSubstr("  label "));
  EXPECT_THAT(run({"dictionary", "060e2b34.01010102.0520"}).out,
              HasSubstr("060e2b34.01010102.05200701.02010000  CompanyName\n"));
}

TEST(Dictionary, NamesTheNearestWhenThereIsNothing) {
  const Result result = run({"dictionary", "Prefcae"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "mxfxml: the dictionary has nothing of the name, key or tag 'Prefcae' (did you mean 'Preface'?)\n");
  EXPECT_EQ(run({"dictionary", "Nonesuch"}).err,
            "mxfxml: the dictionary has nothing of the name, key or tag 'Nonesuch'\n");
}

TEST(Dictionary, ShowsDefinitionsAndDocumentsOfRegistersThatAreGiven) {
  const std::string registers = VANTOR_SHARED_REGISTERS_DIR "/xml";
  if (!std::filesystem::exists(registers)) GTEST_SKIP() << "no registers beside the repository";
  const Result result = run({"dictionary", "PackageName", "--dictionary", registers});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("\n  definition       "));
  EXPECT_THAT(run({"dictionary", "Timecode", "--dictionary", registers}).out,
              HasSubstr("\n  document         AAF Object Specification SMPTE 377M\n"));
}

TEST(Dictionary, ShowsCommonNamesBesideSymbols) {
  const Result result = run({"dictionary", "CompanyName"});
  EXPECT_EQ(result.out, R"(property ApplicationSupplierName
  key              060e2b34.01010102.05200701.02010000
  type             UTF16String
  common name      CompanyName in Identification
  XML, legacy      rp210:ApplicationSupplierName
  XML, st434-2014  st335:ApplicationSupplierName
  definition       Specifies the name of the application provider
  tag   status    in set
  3c01  required  Identification
)");
  EXPECT_THAT(run({"dictionary", "TimecodeComponent"}).out,
              AllOf(StartsWith("set Timecode\n"), HasSubstr("  common name      TimecodeComponent\n"),
                    HasSubstr("Timecode           RoundedTimecodeBase\n")));
  EXPECT_THAT(run({"dictionary"}).out, HasSubstr("yes       TimecodeComponent\n"));
}

TEST(Dictionary, ShowsWhatAFileAdds) {
  const ScratchFolder folder;
  writeFile(folder.path("acme.dictionary"), kNotes);
  const auto ask = [&](const std::string& name) {
    return run({"dictionary", "--dictionary", folder.path("acme.dictionary"), name}).out;
  };
  EXPECT_THAT(ask("AcmeNote"), AllOf(HasSubstr("  XML, legacy      s377m:AcmeNote\n"),
                                     HasSubstr("  acme:Grade                      acme:Grade ")));
  EXPECT_THAT(ask("Preface"), HasSubstr("  acme:Notes                      "));
  EXPECT_THAT(ask("Grade"), HasSubstr("\nenumeration AcmeGrade of UInt8\n  0  Rough\n  1  Fine\n"));
  EXPECT_THAT(ask("060e2b34.04010101.0f0e0d0c.01000000"), HasSubstr("  name  Acme's notes\n"));
}

TEST(DictionaryOption, RefusesAFileThatIsWrongWithItsNameAndLine) {
  const ScratchFolder folder;
  const std::string path = folder.path("bad.dictionary");
  writeFile(path, "dictionary 1\nextend Nonesuch\n");
  const std::string message =
      "mxfxml: " + path +
      ":2: there is no set 'Nonesuch' to extend; define it before, or give the file that does so first\n";
  const std::string xml = folder.path("a.xml");
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", xml}).exitCode, 0);
  for (const auto& command : std::vector<std::vector<std::string>>{{"export", sample("op1a.mxf")},
                                                                   {"verify", sample("op1a.mxf")},
                                                                   {"info", sample("op1a.mxf")},
                                                                   {"import", xml, "-o", folder.path("b.mxf")},
                                                                   {"dictionary"}}) {
    auto arguments = command;
    arguments.insert(arguments.end(), {"--dictionary", path});
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 1) << command[0];
    EXPECT_EQ(result.out, "") << command[0];
    EXPECT_EQ(result.err, message) << command[0];
  }
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"a.xml", "bad.dictionary"}));
}

TEST(DictionaryOption, RefusesAFileThatIsNotThere) {
  EXPECT_EQ(run({"dictionary", "--dictionary", "/nonexistent/a.dictionary"}).err,
            "mxfxml: cannot open '/nonexistent/a.dictionary': No such file or directory\n");
}

TEST(VocabularyOption, ChoosesTheNamespacesOfAnExport) {
  const std::string legacy = run({"export", sample("op1a.mxf")}).out;
  EXPECT_EQ(run({"export", sample("op1a.mxf"), "--vocabulary", "legacy"}).out, legacy);
  EXPECT_THAT(legacy, AllOf(HasSubstr("<rp210:TrackID>"), Not(HasSubstr("434"))));
  const std::string schemas = run({"export", sample("op1a.mxf"), "--vocabulary", "st434-2014"}).out;
  EXPECT_THAT(schemas, AllOf(HasSubstr("<st395:Preface rp210:InstanceUID="), HasSubstr("<st335:TrackID>"),
                             HasSubstr("<st377Types:Numerator>"), Not(HasSubstr("<rp210:"))));
}

TEST(VocabularyOption, IsOneOfTwo) {
  const Result result = run({"export", "a.mxf", "--vocabulary", "st434"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err,
            "mxfxml: --vocabulary: 'st434' is no vocabulary: expected 'legacy' or 'st434-2014'; see mxfxml export "
            "--help\n");
}

}  // namespace
}  // namespace Vantor::Tool

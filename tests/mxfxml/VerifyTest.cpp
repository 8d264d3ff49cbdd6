#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "Core/Types/Types.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// A partition with a Preface, to be verified.
class SmallFile {
 public:
  SmallFile() : partition_(builtInDictionary()) {
    preface_ = partition_.createMetadataSet(Structural::StructuralMetadataKeys::preface());
    property<SimpleElement>(*preface_, "OperationalPattern").set(std::make_unique<Types::AUID>(), true);
  }

  MetadataSet& preface() { return *preface_; }
  MetadataSet& add(const std::string& set) {
    return *partition_.createMetadataSet(builtInDictionary()->findSetBySymbol(set)->key());
  }

  template <class Kind>
  static Kind& property(MetadataSet& set, const std::string& name) {
    for (const auto& attribute : set.definition()->attributes()) {
      if (attribute.metaElement()->symbol() == name) return dynamic_cast<Kind&>(set.createElement(attribute));
    }
    throw std::logic_error("a " + set.name() + " has no property " + name);
  }

  Result verify(std::vector<std::string> arguments = {}) {
    DataIO::Memory::MemoryDataSink sink;
    MXF::writeHeaderOnlyFile(partition_, MXF::SetOrder::kFile, sink);
    writeFile(path(), std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()));
    arguments.insert(arguments.begin(), {"verify", path()});
    return run(arguments);
  }
  std::string path() const { return folder_.path("small.mxf"); }

 private:
  ScratchFolder folder_;
  PartitionMetadata partition_;
  MetadataSet* preface_;
};

TEST(Verify, FindsNothingInAFileThatComesBackWhole) {
  const Result result = run({"verify", sample("ffmpeg-mpeg2-pipe-unfinished.mxf")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "not counted as differences: trailing NULs of strings 4, BER octet counts 25, sets in another order 3, "
            "sets with properties in another order 16, local tag numbers 6, "
            "item sizes of empty collections 1\n"
            "sets compared 27; properties compared 179\n");
}

TEST(VerifyExactly, PrintsEachDifferenceWithBothValues) {
  const Result result = run({"verify", "--exact", sample("gst-audio-ac3.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "mxfxml: " + sample("gst-audio-ac3.mxf") + ": the metadata of the header partition comes back changed\n");
  EXPECT_EQ(
      result.out,
      "value: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: FileLastModified (LastModifiedDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "value: Identification 85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74: FileModificationDate (ModificationDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "value: SourcePackage 22.1E.14.F3.7C.58.4B.02.94.E6.26.D4.31.97.8E.40: PackageLastModified "
      "(PackageModifiedDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "value: SourcePackage 22.1E.14.F3.7C.58.4B.02.94.E6.26.D4.31.97.8E.40: CreationTime (PackageCreationDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "value: MaterialPackage 41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7: PackageLastModified "
      "(PackageModifiedDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "value: MaterialPackage 41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7: CreationTime (PackageCreationDate): "
      "2026-10-21T01:15:27.020 -> 2026-10-21T01:15:27.004\n"
      "not counted as differences: BER octet counts 19, sets in another order 9, "
      "sets with properties in another order 19\n"
      "sets compared 19, different 4; properties compared 115, different 6\n");
}

TEST(VerifyExactly, TellsWhatReferencesToDarkGroupsCost) {
  const std::string group = "MultipleDescriptor 0A.DF.58.0B.F4.DD.44.03.88.5B.B2.FD.02.F3.E6.F6: SubDescriptors";
  const Result nested = run({"verify", "--exact", sample("bmx-op1a-adm.header.mxf")});
  EXPECT_EQ(nested.exitCode, 1);
  EXPECT_THAT(nested.out,
              AllOf(HasSubstr("reference: " + group + ": [8A.E2.A7.0F.15.96.4C.03.88.09.45.B2.A7.A3.1C.8E,"),
                    HasSubstr("dark groups that came back as dark sets 10, labels of local tags in dark sets 28\n"),
                    EndsWith("sets compared 44, different 7; properties compared 226, different 9\n")));
  const Result flat = run({"verify", "--exact", "--flat", sample("bmx-op1a-adm.header.mxf")});
  EXPECT_EQ(flat.exitCode, 1);
  EXPECT_THAT(flat.out, AllOf(HasSubstr("reference: " + group +
                                        "[0]: 8A.E2.A7.0F.15.96.4C.03.88.09.45.B2.A7.A3.1C.8E "
                                        "(06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.F1.0D) -> "),
                              HasSubstr(" (no set)\n"),
                              EndsWith("sets compared 44, different 7; properties compared 226, different 9\n")));
}

TEST(Verify, FindsNothingInEitherVocabularyAndForm) {
  for (const char* name : {"gst-audio-ac3.mxf", "libmxf-bbcarchive-10bit.header.mxf", "op1a.mxf"}) {
    for (const char* vocabulary : {"legacy", "st434-2014"}) {
      EXPECT_EQ(run({"verify", sample(name), "--vocabulary", vocabulary}).exitCode, 0) << name << vocabulary;
      EXPECT_EQ(run({"verify", sample(name), "--vocabulary", vocabulary, "--flat"}).exitCode, 0) << name << vocabulary;
    }
  }
}

TEST(Verify, FindsReferencesToDarkGroupsInEitherForm) {
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    std::vector<std::string> arguments = {"verify", sample("bmx-op1a-adm.header.mxf")};
    arguments.insert(arguments.end(), form.begin(), form.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, EndsWith("sets compared 44; properties compared 226\n"));
  }
}

TEST(Verify, LooksAtTheChosenPartition) {
  const Result footer = run({"verify", sample("ffmpeg-mpeg2-pipe-unfinished.mxf"), "--partition", "footer"});
  EXPECT_EQ(footer.exitCode, 1);
  EXPECT_THAT(footer.err, HasSubstr("at byte offset 23552: the partition has no header metadata"));
  const Result last = run({"verify", sample("gst-audio-ac3.mxf"), "--partition", "2"});
  EXPECT_EQ(last.exitCode, 0);
  EXPECT_THAT(last.out, EndsWith("sets compared 19; properties compared 115\n"));
}

TEST(Verify, FindsNothingInASmallFile) {
  const Result result = SmallFile().verify();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, EndsWith("sets compared 1; properties compared 2\n"));
}

TEST(VerifyExactly, ReportsEmptyTextsAsMissing) {
  SmallFile file;
  SmallFile::property<SimpleElement>(file.add("Identification"), "ApplicationName")
      .set(std::make_unique<Types::UTF16String>(), true);
  EXPECT_EQ(file.verify().exitCode, 0);
  const Result result = file.verify({"--exact"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, AllOf(HasSubstr("missing property: Identification "),
                                HasSubstr(": ApplicationName (ProductName): \"\" -> nothing\n"),
                                EndsWith("sets compared 2, different 1; properties compared 4, different 1\n")));
}

TEST(Verify, KeepsTextsWithControlCharactersOnOneLine) {
  SmallFile file;
  SmallFile::property<SimpleElement>(file.add("Identification"), "ApplicationName")
      .set(std::make_unique<Types::UTF16String>(wstring(u"a\r\nb")), true);
  const Result result = file.verify();
  EXPECT_THAT(result.out, Not(HasSubstr("\r")));
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), result.exitCode == 0 ? 1 : 2) << result.out;
}

TEST(VerifyExactly, FailsWithTheImportsMessageWhereTheImportFails) {
  SmallFile file;
  auto sizing = std::make_unique<Types::Array>(3);
  sizing->append(std::make_unique<Types::J2KPictureComponent>(uint8{9}, uint8{1}, uint8{1}));
  SmallFile::property<ArrayElement>(file.add("JPEG2000SubDescriptor"), "PictureComponentSizing").set(std::move(sizing));
  EXPECT_EQ(file.verify().exitCode, 0);
  const Result result = file.verify({"--exact"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + file.path() +
                            ": domComponentElement != 0: No 'J2KPictureComponent' element from "
                            "'PictureComponentSizing' in XML metadata\n");
}

TEST(Verify, TakesWhatTheReaderHasToSayForAnErrorWhenThatIsAskedFor) {
  const ScratchFolder folder;
  std::string bytes = readFile(sample("gst-audio-ac3.mxf"));
  const std::string one = "\x79\x4E\xDE\x7C\x04\xC7\x43\x42\x80\xEE\xFA\x59\x53\xB7\x25\xB3";
  const std::string other("\x8D\x9D\xAD\xD1\xE1\xB5\x47\x63\x93\xE4\x7F\x25\x1B\xC8\xBF\x00", 16);
  for (auto at = bytes.find(one); at != std::string::npos; at = bytes.find(one)) bytes.replace(at, one.size(), other);
  writeFile(folder.path("a.mxf"), bytes);  // two sets of one InstanceUID
  const Result lenient = run({"verify", folder.path("a.mxf")});
  EXPECT_THAT(lenient.out, AllOf(HasSubstr("note: TimelineTrack "), Not(HasSubstr("line "))));
  EXPECT_THAT(lenient.err, EndsWith(": the metadata of the header partition comes back changed\n"));
  const Result strict = run({"verify", folder.path("a.mxf"), "--strict"});
  EXPECT_EQ(strict.exitCode, 1);
  EXPECT_EQ(strict.out, lenient.out);
  EXPECT_EQ(strict.err, "mxfxml: " + folder.path("a.mxf") + ": 4 things are wrong with the document\n");
  EXPECT_EQ(run({"verify", sample("gst-audio-ac3.mxf"), "--strict"}).exitCode, 0);
}

TEST(Verify, FailsWhereThereIsNothingToVerify) {
  const ScratchFolder folder;
  const Result missing = run({"verify", folder.path("no.mxf")});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.out, "");
  EXPECT_THAT(missing.err, testing::StartsWith("mxfxml: cannot open '" + folder.path("no.mxf") + "': "));
}

TEST(Verify, RefusesWrongUsage) {
  EXPECT_EQ(run({"verify"}).exitCode, 2);
  EXPECT_EQ(run({"verify", sample("op1a.mxf"), "--nested"}).exitCode, 2);
  EXPECT_EQ(run({"verify", sample("op1a.mxf"), "--partition", "body"}).exitCode, 2);
}

TEST(Verify, FailsWhenItCannotTell) {
  const Result result = run({"verify", sample("ffmpeg-mpeg2-pipe-unfinished.mxf")}, Out::kFullDevice);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("cannot write to standard output"));
}

}  // namespace
}  // namespace Vantor::Tool

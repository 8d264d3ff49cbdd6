#include <gmock/gmock.h>

#include "Edit.h"

/// What becomes of sets that a document omits, with its description and without.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kDescriptive = "bmx-rdd9-embedxml.header.mxf";
constexpr const char* kDark = "bmx-op1a-adm.header.mxf";

/// An edit of a whole file.
class WholeEdit : public Edit {
 public:
  WholeEdit(const char* name, const std::vector<std::string>& form) : Edit(Whole(name).file(), form) {}

 private:
  struct Whole : ScratchFolder {
    explicit Whole(const char* name) { writeFile(file(), wholeFile(name)); }
    std::string file() const { return path("whole.mxf"); }
  };
};

std::size_t countOf(const std::string& text, const std::string& xml) {
  std::size_t number = 0;
  for (auto at = xml.find(text); at != std::string::npos; at = xml.find(text, at + 1)) ++number;
  return number;
}

constexpr const char* kNoFrameworks =
    "3 sets changed (3 properties), 4 removed; with it: DescriptiveSchemes of 1 set; written to 1 partition\n";

void cutFrameworks(const Edit& edit, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    edit.cut("<rp210:DescriptiveFrameworkObject>", "</rp210:DescriptiveFrameworkObject>");
  }
}

void expectNoEdit(const Edit& edit, const std::vector<std::string>& options = {"--strict"},
                  const std::string& remarks = "") {
  const Result result = edit.intoCopy(options);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(edit.remarks(result), remarks);
  EXPECT_TRUE(readFile(edit.copy()) == readFile(edit.original()));
}

void expectRefusal(const Edit& edit, const std::string& reason, const std::vector<std::string>& options = {}) {
  const Result result = edit.intoCopy(options);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(edit.remarks(result), "cannot be put into ORIGINAL: " + reason + "\n");
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
}

TEST(EditedScope, LosesSomeOfTheDescriptiveSets) {
  const WholeEdit edit(kDescriptive, {});
  cutFrameworks(edit, 1);
  edit.cut("<rp210:TextBasedObject>", "</rp210:TextBasedObject>");
  const Result result = edit.intoCopy({"--strict"});
  EXPECT_EQ(result.out, "2 sets changed (2 properties), 3 removed; written to 1 partition\n") << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(countOf("<s377m:TextBasedFramework ", edit.flat(edit.copy())), 1u);
}

TEST(EditedScope, LosesAllDescriptiveSetsWhetherTheDocumentDescribesItselfOrNot) {
  for (const bool isDescribed : {true, false}) {
    const WholeEdit edit(kDescriptive, {});
    cutFrameworks(edit, 2);
    if (!isDescribed) edit.withdrawDescription();
    const Result result = edit.intoCopy({"--strict"});
    EXPECT_EQ(result.out, kNoFrameworks) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(edit.flat(edit.copy()), Not(HasSubstr("<s377m:TextBasedFramework ")));
  }
}

TEST(EditedScope, KeepsWhatAnExportOfStructuralSetsLeavesOut) {
  for (const char* name : {kDescriptive, kDark}) {
    for (const auto& form :
         std::vector<std::vector<std::string>>{{"--structural-only"}, {"--structural-only", "--flat"}}) {
      const WholeEdit edit(name, form);
      expectNoEdit(edit);
      edit.withdrawDescription();
      expectNoEdit(edit, {"--strict", "--structural-only"});
    }
  }
}

TEST(EditedScope, LosesWhatAnExportOfStructuralSetsLeavesOutWhereItDoesNotDescribeItself) {
  const WholeEdit nested(kDescriptive, {"--structural-only"});
  nested.withdrawDescription();
  EXPECT_EQ(nested.intoCopy().out, kNoFrameworks);
  const WholeEdit dark(kDark, {"--structural-only"});
  dark.withdrawDescription();
  const Result result = dark.intoCopy();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(dark.remarks(result), HasSubstr(", but the MultipleDescriptor "
                                              "0A.DF.58.0B.F4.DD.44.03.88.5B.B2.FD.02.F3.E6.F6 refers to it, which the "
                                              "document does not show\n"));
}

TEST(EditedScope, LosesStructuralSetsOfAnExportOfThem) {
  for (const bool isDescribed : {true, false}) {
    const WholeEdit edit(kDescriptive, {"--structural-only"});
    edit.cut("<s377m:TimelineTrack rp210:InstanceUID", "</s377m:TimelineTrack>");
    if (!isDescribed) edit.withdrawDescription();
    const Result result = isDescribed ? edit.intoCopy() : edit.intoCopy({"--structural-only"});
    EXPECT_EQ(result.out, "1 set changed (1 property), 3 removed; written to 1 partition\n") << result.err;
    EXPECT_EQ(countOf("<s377m:TextBasedFramework ", edit.flat(edit.copy())), 2u);
  }
}

/// Dark sets that only dark sets refer to are in such an export.
TEST(EditedScope, LosesDarkSetsOfAnExportOfStructuralSets) {
  const WholeEdit edit(kDark, {"--structural-only"});
  EXPECT_EQ(countOf("<groups:DarkMetadata ", edit.content()), 4u);
  edit.cut("<groups:FloatingDarkMetadata>", "</groups:FloatingDarkMetadata>");
  const Result result = edit.intoCopy({"--strict"});
  EXPECT_EQ(result.out, "4 sets removed; written to 1 partition\n") << result.err;
  EXPECT_EQ(countOf("<groups:DarkMetadata ", edit.flat(edit.copy())), 6u);
}

TEST(EditedScope, ReportsDarkSetsThatAreGoneAndStillReferredTo) {
  const WholeEdit edit(kDark, {});
  edit.cut("<groups:FloatingDarkMetadata>", "</groups:FloatingDarkMetadata>");
  const Result result = edit.intoCopy({"--strict"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(edit.remarks(result), HasSubstr(": SubDescriptors: no set of the document has the InstanceUID "));
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
}

TEST(EditedScope, KeepsWhatAnExportFromAnotherStartLeavesOut) {
  for (const char* name : {kDescriptive, kDark}) {
    for (const std::string start : {"MaterialPackage", "ContentStorage", "Timecode[2]"}) {
      for (const std::string form : {"--structural-only", "--flat"}) {
        const WholeEdit edit(name, {"--start", start, form});
        expectNoEdit(edit);
        edit.withdrawDescription();
        std::vector<std::string> options = {"--strict", "--start", start};
        if (form != "--flat") options.push_back(form);
        expectNoEdit(edit, options);
      }
    }
  }
}

TEST(EditedScope, NeedsADescriptionOrOptionsForAnExportFromAnotherStart) {
  const WholeEdit edit(kDescriptive, {"--start", "MaterialPackage"});
  edit.withdrawDescription();
  expectRefusal(edit, "the document has no Preface, and does not describe what it is an export of");
  expectRefusal(edit,
                "Timecode is ambiguous: 2 sets (see \"mxfxml info --sets\"); use Timecode[1] (StartTimecode "
                "00:00:00:00, RoundedTimecodeBase 25, in MaterialPackage) or Timecode[2] (StartTimecode 00:00:00:00, "
                "RoundedTimecodeBase 25, in SourcePackage)",
                {"--start", "Timecode"});
  expectRefusal(edit, "the dictionary has no set 'Dance'", {"--start", "Dance"});
}

TEST(EditedScope, LosesWhatIsTakenOutOfAnExportFromAnotherStart) {
  for (const bool isDescribed : {true, false}) {
    const WholeEdit edit(kDescriptive, {"--start", "MaterialPackage"});
    edit.cut("<s377m:TimelineTrack rp210:InstanceUID", "</s377m:TimelineTrack>");
    if (!isDescribed) edit.withdrawDescription();
    const Result result = isDescribed ? edit.intoCopy() : edit.intoCopy({"--start", "MaterialPackage"});
    EXPECT_EQ(result.out, "1 set changed (1 property), 3 removed; written to 1 partition\n") << result.err;
  }
}

TEST(EditedScope, IsRefusedWhereTheStartOfTheDescriptionIsNotInTheFile) {
  const WholeEdit edit(kDescriptive, {"--start", "MaterialPackage"});
  edit.replace("start=\"urn:uuid:c4513b05", "start=\"urn:uuid:c4513b06");
  expectRefusal(edit,
                "the document starts from a set that the file does not have: "
                "C4.51.3B.06.E7.49.4B.45.86.CA.7A.CD.8A.6E.C8.86");
}

/// It is one of all sets then, as one without any description is.
TEST(EditedScope, IsAllSetsWhereTheDescriptionIsDamaged) {
  for (const auto& [from, to] :
       std::vector<std::pair<std::string, std::string>>{{"form=\"nested\"", "form=\"round\""},
                                                        {"sets=\"structural\"", "sets=\"some\""},
                                                        {" metadata=\"", " meta=\""}}) {
    const WholeEdit edit(kDescriptive, {"--structural-only"});
    edit.replace(from, to);
    EXPECT_EQ(edit.intoCopy().out, kNoFrameworks);
    expectNoEdit(edit, {"--structural-only"},
                 "warning: the document's description of itself is damaged, and is ignored\n");
  }
}

TEST(EditedScope, KeepsReferencesThatTheExactFormHides) {
  for (const auto& form : std::vector<std::vector<std::string>>{{"--exact"}, {"--exact", "--flat"}}) {
    const WholeEdit edit(kDark, form);
    expectNoEdit(edit);
    edit.replace("<rp210:ApplicationName>", "<rp210:ApplicationName>Ed ");
    EXPECT_EQ(edit.intoCopy({"--strict"}).out, "1 set changed (1 property); written to 1 partition\n");
    EXPECT_EQ(countOf("<s377m:Dangling_REF ", edit.flat(edit.copy())), 6u);
  }
}

TEST(EditedScope, IsWhateverTheEditedDescriptionGives) {
  const WholeEdit edit(kDescriptive, {});
  cutFrameworks(edit, 2);
  edit.replace("sets=\"all\"", "sets=\"structural\"");
  expectNoEdit(edit);
}

TEST(EditedScope, KeepsWhatTheDocumentLacksForWantOfADictionary) {
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    auto options = form;
    options.insert(options.end(), {"--dictionary", sample("adm.dictionary")});
    const WholeEdit edit(kDark, options);
    const Result result = edit.intoCopy({"--keep-going"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    EXPECT_THAT(result.err, HasSubstr("there is no set RIFFChunkSubDescriptor in the namespace urn:SMPTE:S377M; "
                                      "--dictionary FILE adds definitions\n"));
    EXPECT_THAT(result.err, HasSubstr("10 sets that the document lacks are kept, since parts of it could not be read"));
  }
}

}  // namespace
}  // namespace Vantor::Tool

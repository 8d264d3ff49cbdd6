#include <gmock/gmock.h>

#include "Edit.h"

/// Whether a document that lacks sets is an export of all sets, some of which were taken out, or one of structural
/// sets.
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

void cutFrameworks(const Edit& edit, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    edit.cut("<rp210:DescriptiveFrameworkObject>", "</rp210:DescriptiveFrameworkObject>");
  }
}

TEST(EditedScope, IsAllSetsWhereADescriptiveOneIsLeft) {
  const WholeEdit edit(kDescriptive, {});
  cutFrameworks(edit, 1);
  edit.cut("<rp210:TextBasedObject>", "</rp210:TextBasedObject>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "2 sets changed (2 properties), 0 added, 3 removed; written to 1 partition\n") << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(countOf("<s377m:TextBasedFramework ", edit.flat(edit.copy())), 1u);
}

TEST(EditedScope, IsStructuralSetsWhereNothingElseIsLeft) {
  const WholeEdit edit(kDescriptive, {});
  cutFrameworks(edit, 2);
  const Result kept = edit.intoCopy();
  EXPECT_EQ(kept.out, "nothing is edited\n");
  EXPECT_EQ(edit.remarks(kept),
            "the document is one of structural sets; 4 sets that such a document leaves out are "
            "kept; --whole takes out what the document lacks\n");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  const Result removed = edit.intoCopy({"--whole", "--strict"});
  EXPECT_EQ(removed.out, "2 sets changed (2 properties), 0 added, 4 removed; written to 1 partition\n") << removed.err;
  EXPECT_EQ(removed.err, "");
  EXPECT_THAT(edit.flat(edit.copy()), Not(HasSubstr("<s377m:TextBasedFramework ")));
}

/// An export of structural sets leaves out the properties that refer to dark sets, too.
TEST(EditedScope, IsAllSetsWhereReferencesToDarkSetsAreLeft) {
  const WholeEdit edit(kDark, {});
  edit.cut("<groups:FloatingDarkMetadata>", "</groups:FloatingDarkMetadata>");
  const Result result = edit.intoCopy({"--strict"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(edit.remarks(result), HasSubstr(" was taken out, and the MultipleDescriptor "));
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
}

/// Dark sets that only dark sets refer to are in such an export.
TEST(EditedScope, IsToBeNamedWhereSetsThatNothingInTheDocumentOwnsAreTakenOut) {
  const WholeEdit edit(kDark, {"--structural-only"});
  EXPECT_EQ(countOf("<groups:DarkMetadata ", readFile(edit.document())), 4u);
  edit.cut("<groups:FloatingDarkMetadata>", "</groups:FloatingDarkMetadata>");
  const Result refused = edit.intoCopy();
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(edit.remarks(refused),
            "cannot be put into ORIGINAL: the document is one of structural sets, in which case 6 sets that it leaves "
            "out would be kept, or one of all sets, of which they were taken out; tell which it was, with "
            "--structural-only or --whole\n");
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
  const Result structural = edit.intoCopy({"--structural-only"});
  EXPECT_EQ(structural.out, "0 sets changed (0 properties), 0 added, 4 removed; written to 1 partition\n");
  const Result whole = edit.intoCopy({"--whole"});
  EXPECT_EQ(whole.exitCode, 1);
  EXPECT_THAT(edit.remarks(whole), HasSubstr("SubDescriptors was edited, and refers to sets that the document does not "
                                             "show there; edit an export of all sets with --flat\n"));
}

TEST(EditedScope, MayLoseSetsThatTheDocumentShowsTheOwnerOf) {
  const WholeEdit edit(kDescriptive, {"--structural-only"});
  edit.cut("<s377m:TimelineTrack rp210:InstanceUID", "</s377m:TimelineTrack>");
  const Result result = edit.intoCopy();
  EXPECT_THAT(result.out, HasSubstr("1 set changed (1 property), 0 added, 3 removed")) << result.err;
  EXPECT_THAT(result.err, HasSubstr("4 sets that such a document leaves out are kept"));
}

TEST(EditedScope, IsNotStructuralSetsWhereTheOthersAreUnknownForWantOfADictionary) {
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    auto options = form;
    options.insert(options.end(), {"--dictionary", sample("adm.dictionary")});
    const WholeEdit edit(kDark, options);
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    EXPECT_THAT(result.err, HasSubstr("there is no set RIFFChunkSubDescriptor in the namespace urn:SMPTE:S377M; "
                                      "--dictionary FILE adds definitions\n"));
    EXPECT_THAT(result.err, Not(HasSubstr("structural")));
    EXPECT_THAT(result.err, HasSubstr("10 sets that the document lacks are kept, since parts of it could not be read"));
  }
}

TEST(EditedScope, IsToldForAFileAlone) {
  for (const char* option : {"--whole", "--structural-only"}) {
    const Result result = run({"import", "a.xml", "-o", "b.mxf", option});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr(std::string(option) + " requires --into"));
  }
  EXPECT_EQ(run({"import", "a.xml", "--into", "a.mxf", "-o", "b.mxf", "--whole", "--structural-only"}).exitCode, 2);
}

}  // namespace
}  // namespace Vantor::Tool

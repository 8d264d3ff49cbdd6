#include <gmock/gmock.h>

#include "Edit.h"

/// Edits of references: to sets of several owners, and to dark sets.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string uid(const std::string& octet) { return "01.00.00.00.00.00.00.00.00.00.00.00.00.00.00." + octet; }
std::string set(const std::string& name, const std::string& octet, const std::string& content) {
  return "<s377m:" + name + " rp210:InstanceUID='" + uid(octet) + "'>" + content + "</s377m:" + name + ">\n";
}
std::string property(const std::string& name, const std::string& content) {
  return "<rp210:" + name + ">" + content + "</rp210:" + name + ">";
}
std::string pointer(const std::string& name, const std::string& octet) {
  return "<s377m:" + name + "_REF types:TargetInstance=\"" + uid(octet) + "\"/>";
}
std::string track(const std::string& octet, const std::string& sequence) {
  return set("TimelineTrack", octet,
             property("TrackID", octet) + property("TrackSegment", pointer("Sequence", sequence)));
}
std::string tracks(const std::string& first, const std::string& second) {
  return property("PackageTracks", pointer("TimelineTrack", first) + pointer("TimelineTrack", second));
}

/// Both packages own track 11, and tracks 11 and 12 own sequence 21. Nested, each is shown where it comes first.
std::string twoOwners() {
  return "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' "
         "xmlns:types='urn:SMPTE:Types:MXF'>\n" +
         set("Preface", "01",
             property("ContentStorageObject", pointer("ContentStorage", "02")) +
                 property("OperationalPattern", "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00")) +
         set("ContentStorage", "02",
             property("Packages", pointer("MaterialPackage", "03") + pointer("SourcePackage", "04"))) +
         set("MaterialPackage", "03", tracks("11", "12")) + set("SourcePackage", "04", tracks("11", "13")) +
         track("11", "21") + track("12", "21") + track("13", "22") + set("Sequence", "21", "") +
         set("Sequence", "22", "") + "</s377m:MetadataSets>";
}

class OwnersEdit : public Edit {
 public:
  explicit OwnersEdit(std::vector<std::string> options = {}) : Edit(FileOf(twoOwners()).file(), std::move(options)) {}
};

/// What an export of a file has of the source package.
std::string sourcePackage(const std::string& flat) {
  const std::string end = "</s377m:SourcePackage>";
  const auto at = flat.find("<s377m:SourcePackage ");
  std::string text = flat.substr(at, flat.find(end) - at);
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  while (text.find("  ") != std::string::npos) text.erase(text.find("  "), 1);
  return text;
}

TEST(EditedReferences, AreAllThereWhenNothingWasEdited) {
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    const OwnersEdit edit(form);
    const Result result = edit.intoCopy({"--strict"});
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  }
}

TEST(EditedReferences, OfSeveralOwnersArePointersInNestedDocuments) {
  const OwnersEdit edit;
  EXPECT_EQ(run({"verify", edit.original()}).exitCode, 0);
  EXPECT_THAT(sourcePackage(edit.content()), HasSubstr(pointer("TimelineTrack", "11")));
  const Result exact = run({"verify", "--exact", edit.original()});
  EXPECT_EQ(exact.exitCode, 1);
  EXPECT_THAT(exact.out, HasSubstr("\nreference: SourcePackage " + uid("04") + ": PackageTracks (Tracks): [" +
                                   uid("11") + ", " + uid("13") + "] -> ["));
}

TEST(EditedReferences, GetNewOnesBesideThoseOfAnotherOwner) {
  const OwnersEdit edit;
  edit.replace("<s377m:TimelineTrack rp210:InstanceUID=\"" + uid("13"),
               "<s377m:TimelineTrack rp210:InstanceUID=\"" + uid("14") +
                   "\"/><s377m:TimelineTrack rp210:InstanceUID=\"" + uid("13"));
  const Result result = edit.intoCopy(ignoring({"needed-property", "required-property"}));
  EXPECT_EQ(result.out, "1 set changed (1 property), 1 added; written to 1 partition\n") << result.err;
  EXPECT_THAT(sourcePackage(edit.flat(edit.copy())),
              HasSubstr(pointer("TimelineTrack", "11") + " " + pointer("TimelineTrack", "14") + " " +
                        pointer("TimelineTrack", "13")));
}

TEST(EditedReferences, StayWhereTheirNeighboursAreTakenOut) {
  const OwnersEdit edit;
  edit.cut("<s377m:TimelineTrack rp210:InstanceUID=\"" + uid("13"), "</s377m:TimelineTrack>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property), 2 removed; written to 1 partition\n") << result.err;
  EXPECT_THAT(sourcePackage(edit.flat(edit.copy())), HasSubstr(pointer("TimelineTrack", "11") + " </rp210"));
}

/// What the first pointer to sequence 21 stands in: the second track of the material package.
std::string segmentIn(const std::string& xml) {
  const auto at = xml.rfind('\n', xml.rfind("<rp210:TrackSegment>", xml.find(pointer("Sequence", "21"))));
  const std::string end = "</rp210:TrackSegment>";
  return xml.substr(at, xml.find(end, at) + end.size() - at);
}

TEST(EditedReferences, OfOneOwnerOfSeveralAreTakenOut) {
  const OwnersEdit edit;
  edit.replace(segmentIn(edit.content()), "");
  const Result result = edit.intoCopy(ignoring({"needed-property"}));
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n") << result.err;
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
}

TEST(EditedReferences, OfOneOwnerOfSeveralLeadElsewhere) {
  const OwnersEdit edit;
  edit.replace(pointer("Sequence", "21"), pointer("Sequence", "22"));
  const Result result = edit.intoCopy(ignoring({"shared-set"}));
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n") << result.err;
  const std::string flat = edit.flat(edit.copy());
  const auto second = flat.find("<s377m:TimelineTrack rp210:InstanceUID=\"" + uid("12"));
  EXPECT_THAT(flat.substr(second, flat.find("</s377m:TimelineTrack>", second) - second),
              HasSubstr(pointer("Sequence", "22")));
}

TEST(EditedReferences, StayWhereTheExactFormHasNothingInTheirPlace) {
  const OwnersEdit edit({"--exact"});
  ASSERT_THAT(edit.content(), HasSubstr("<rp210:TrackSegment/>"));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

/// In documents without a description an empty property may stand for the reference, as the exact form has it.
TEST(EditedReferences, StayWhereADocumentWithoutDescriptionHasAnEmptyProperty) {
  const OwnersEdit edit;
  edit.withdrawDescription();
  edit.replace(segmentIn(edit.content()), "<rp210:TrackSegment/>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

TEST(EditedReferences, AreTakenOutOfAFlatDocumentAlsoWhereANestedOneWouldNotShowThem) {
  const OwnersEdit edit({"--flat"});
  const std::string xml = readFile(edit.document());
  const auto at = xml.find(pointer("TimelineTrack", "11"), xml.find("<s377m:SourcePackage "));
  writeFile(edit.document(), std::string(xml).erase(at, pointer("TimelineTrack", "11").size()));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n") << result.err;
  EXPECT_THAT(sourcePackage(edit.flat(edit.copy())), Not(HasSubstr(uid("11"))));
}

std::size_t countOf(const std::string& text, const std::string& xml) {
  std::size_t number = 0;
  for (auto at = xml.find(text); at != std::string::npos; at = xml.find(text, at + 1)) ++number;
  return number;
}

TEST(EditedReferences, ToDarkSetsAreAddedToAndTakenOut) {
  const ScratchFolder folder;
  writeFile(folder.path("whole.mxf"), wholeFile("bmx-op1a-adm.header.mxf"));
  const std::string dangling = "<s377m:Dangling_REF ";
  const Edit added(folder.path("whole.mxf"), {});
  ASSERT_EQ(countOf(dangling, added.content()), 6u);
  added.replace(
      "<rp210:SubDescriptors>",
      "<rp210:SubDescriptors><s377m:ContainerConstraintsSubDescriptor rp210:InstanceUID=\"" + uid("31") + "\"/>");
  EXPECT_EQ(added.intoCopy({"--strict"}).out, "1 set changed (1 property), 1 added; written to 1 partition\n");
  EXPECT_EQ(countOf(dangling, added.flat(added.copy())), 6u);
  const Edit removed(folder.path("whole.mxf"), {});
  removed.cut(dangling, "/>");
  EXPECT_EQ(removed.intoCopy({"--strict"}).out, "1 set changed (1 property); written to 1 partition\n");
  EXPECT_EQ(countOf(dangling, removed.flat(removed.copy())), 5u);
  EXPECT_EQ(countOf("<groups:DarkMetadata ", removed.flat(removed.copy())), 10u) << "their targets stay";
}

TEST(EditedReferences, AreReportedWhereTheirTargetsAreGone) {
  const ScratchFolder folder;
  writeFile(folder.path("whole.mxf"), wholeFile("bmx-op1a-adm.header.mxf"));
  const std::string start = "8A.E2.A7.0F", told = ": SubDescriptors: no set of the document has the InstanceUID ";
  const auto refused = [](const Edit& edit, const std::string& message) {
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(message));
    const Result rest = edit.intoCopy({"--keep-going"});
    EXPECT_EQ(rest.exitCode, 1);
    EXPECT_THAT(rest.err, HasSubstr(message));
    EXPECT_THAT(rest.out, testing::AnyOf("nothing is edited\n", Not(HasSubstr("removed")))) << rest.err;
  };
  const Edit unedited(folder.path("whole.mxf"), {"--flat"});
  EXPECT_EQ(unedited.intoCopy({"--strict"}).out, "nothing is edited\n");
  const Edit removed(folder.path("whole.mxf"), {"--flat"});
  removed.cut("<groups:DarkMetadata ", "</groups:DarkMetadata>");
  refused(removed, told + start);
  const Edit mistyped(folder.path("whole.mxf"), {"--flat"});
  mistyped.replace("TargetInstance=\"" + start, "TargetInstance=\"8A.E2.A7.0E");
  refused(mistyped, told + "8A.E2.A7.0E");
  const Edit renamed(folder.path("whole.mxf"), {"--flat"});
  renamed.replace(">3C0A00108AE2A70F", ">3C0A00108AE2A70E");
  refused(renamed, told + start);
  const Edit damaged(folder.path("whole.mxf"), {"--flat"});
  damaged.replace(">3C0A00108AE2A70F", ">3C0A0F108AE2A70F");
  refused(damaged, told + start);
  refused(damaged,
          "dark metadata: the key 06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.F1.0D is that of a local set; the octets "
          "are not one\n");
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    const OwnersEdit owner(form);
    owner.cut("<s377m:TimelineTrack rp210:InstanceUID=\"" + uid("11"), "</s377m:TimelineTrack>");
    refused(owner, ": PackageTracks: no set of the document has the InstanceUID " + uid("11"));
  }
}

/// Sets that the dictionary knows, and the document has as octets.
TEST(EditedReferences, ComeBackFromADocumentThatWasMadeWithoutTheDefinitions) {
  const ScratchFolder folder;
  writeFile(folder.path("whole.mxf"), wholeFile("bmx-op1a-adm.header.mxf"));
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    const Edit edit(folder.path("whole.mxf"), form);
    std::string xml = readFile(edit.document());
    const auto octet = xml.find("</groups:DarkMetadata>") - 1;
    xml[octet] = xml[octet] == '0' ? '1' : '0';
    writeFile(edit.document(), xml);
    const Result result = edit.intoCopy({"--dictionary", sample("adm.dictionary")});
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n") << result.err;
    std::vector<std::string> again = {"export", edit.copy()};
    again.insert(again.end(), form.begin(), form.end());
    EXPECT_TRUE(withoutDescription(run(again).out) == withoutDescription(xml));
  }
}

}  // namespace
}  // namespace Vantor::Tool

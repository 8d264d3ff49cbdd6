#include <gtest/gtest.h>
#ifdef __unix__
#include <sys/stat.h>
#endif

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

/// InstanceUIDs are made anew by an import; what they identify is told by their place.
std::string withoutInstanceUIDs(std::string xml) {
  for (const std::string start : {"rp210:InstanceUID=\"", "types:TargetInstance=\""}) {
    for (auto at = xml.find(start); at != std::string::npos; at = xml.find(start, at)) {
      at += start.size();
      xml.erase(at, xml.find('"', at) - at);
    }
  }
  return xml;
}

#ifdef __unix__
TEST(Import, RefusesAPipeAndSaysWhatToDo) {
  const ScratchFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto result = run({"import", pipe, "-o", folder.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: cannot read " + pipe +
                            ": it is no regular file, and a pipe or device may have no end; save it to a file first\n");
}
#endif

TEST(Import, KeepsTheInstanceUIDsOfTheDocument) {
  const ScratchFolder folder;
  for (const char* vocabulary : {"legacy", "st434-2014"}) {
    const std::vector<std::string> chosen = {"--vocabulary", vocabulary};
    ASSERT_EQ(run({"export", sample("gst-audio-ac3.mxf"), "-o", folder.path("a.xml"), chosen[0], chosen[1]}).exitCode,
              0);
    const auto imported = run({"import", folder.path("a.xml"), "-o", folder.path("b.mxf")});
    EXPECT_EQ(imported.err, "");
    ASSERT_EQ(imported.exitCode, 0);
    EXPECT_EQ(withoutDescription(run({"export", folder.path("b.mxf"), chosen[0], chosen[1]}).out),
              withoutDescription(readFile(folder.path("a.xml"))));
  }
}

TEST(Import, WarnsThatTheLocalTagsOfDarkSetsLoseTheirMeaning) {
  const ScratchFolder folder;
  const std::string path = folder.path("a.xml");
  ASSERT_EQ(run({"export", sample("bmx-op1a-adm.header.mxf"), "--flat", "-o", path}).exitCode, 0);
  const auto imported = run({"import", path, "-o", folder.path("b.mxf")});
  EXPECT_EQ(imported.exitCode, 0);
  EXPECT_EQ(imported.err, "mxfxml: " + path +
                              ": warning: documents do not hold what 28 local tags in dark sets stand for; importing "
                              "--into the original file keeps it\n");
}

TEST(Import, WarnsOfAValueThatManyReadersCannotRead) {
  const ScratchFolder folder;
  std::string document = run({"export", sample("op1a.mxf")}).out;
  const std::string name = "<rp210:ApplicationName>";
  const auto at = document.find(name) + name.size();
  document.replace(at, document.find('<', at) - at, std::string(40000, 'x'));
  writeFile(folder.path("a.xml"), document);
  // The value in the file ends with a NUL, which an edit of it keeps.
  struct Target {
    std::vector<std::string> options;
    std::string file;
    std::string size;
  };
  for (const auto& [target, file, size] :
       {Target{{"-o", folder.path("b.mxf")}, folder.path("a.xml"), "80000"},
        Target{{"--into", sample("op1a.mxf"), "--ignore", "long-values", "-o", folder.path("b.mxf")},
               sample("op1a.mxf"),
               "80002"}}) {
    std::vector<std::string> arguments = {"import", folder.path("a.xml")};
    arguments.insert(arguments.end(), target.begin(), target.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err.rfind("mxfxml: " + file + ": warning: set Identification ", 0), 0u) << result.err;
    EXPECT_NE(
        result.err.find(": a value of " + size + " bytes needs BER-coded lengths, which many readers do not know\n"),
        std::string::npos)
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
  }
}

TEST(Import, WarnsOfWhatItLeavesOutAndFailsWhenThatIsAskedFor) {
  const ScratchFolder folder;
  const std::string path = folder.path("a.xml");
  std::string document = run({"export", sample("op1a.mxf")}).out;
  const std::string track = "<rp210:TrackID>1</rp210:TrackID>";
  document.replace(document.find(track), track.size(), "<rp210:TrackID>one</rp210:TrackID>");
  writeFile(path, document);
  const std::string message = ": TrackID: 'one' is no whole number from 0 to 4294967295\n";
  const auto imported = run({"import", path, "-o", folder.path("b.mxf")});
  EXPECT_EQ(imported.exitCode, 0);
  EXPECT_EQ(imported.err.rfind("mxfxml: " + path + ": warning: line ", 0), 0u) << imported.err;
  EXPECT_NE(imported.err.find(message), std::string::npos) << imported.err;
  const auto strict = run({"import", path, "-o", folder.path("c.mxf"), "--strict"});
  EXPECT_EQ(strict.exitCode, 1);
  EXPECT_NE(strict.err.find(message), std::string::npos) << strict.err;
  EXPECT_NE(strict.err.find("1 thing is wrong with the document; nothing is written\n"), std::string::npos);
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"a.xml", "b.mxf"}));
}

TEST(ImportExactly, WritesAFileWhoseExportIsTheDocument) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("a.xml")}).exitCode, 0);
  const auto imported = run({"import", "--exact", folder.path("a.xml"), "-o", folder.path("b.mxf")});
  EXPECT_EQ(imported.err, "");
  ASSERT_EQ(imported.exitCode, 0);
  ASSERT_EQ(run({"export", folder.path("b.mxf"), "-o", folder.path("b.xml")}).exitCode, 0);
  EXPECT_EQ(withoutInstanceUIDs(withoutDescription(readFile(folder.path("b.xml")))),
            withoutInstanceUIDs(withoutDescription(readFile(folder.path("a.xml")))));
}

TEST(Import, TakesFileNamesOfAnyOctets) {
  const ScratchFolder folder;
  for (const char* name : {"\xc3\x9c \xf0\x9f\x8e\x9e.xml", "caf\xe9.xml"}) {
    const auto input = folder.path(name);
    ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", input}).exitCode, 0);
    const auto imported = run({"import", input, "-o", folder.path("b.mxf")});
    EXPECT_EQ(imported.exitCode, 0) << imported.err;
  }
}

TEST(Import, TellsWhereADocumentIsDamagedAndLeavesNoFile) {
  const ScratchFolder folder;
  writeFile(folder.path("a.xml"), "<a>\n<b></a>");
  const auto imported = run({"import", folder.path("a.xml"), "-o", folder.path("b.mxf")});
  EXPECT_EQ(imported.exitCode, 1);
  EXPECT_EQ(imported.err.rfind("mxfxml: " + folder.path("a.xml") + ": ", 0), 0u) << imported.err;
  EXPECT_NE(imported.err.find("line 2"), std::string::npos) << imported.err;
  EXPECT_EQ(folder.files(), std::vector<std::string>{"a.xml"});
}

TEST(Import, RefusesADocumentWithoutPreface) {
  const ScratchFolder folder;
  writeFile(folder.path("a.xml"), "<a:MetadataSets xmlns:a='urn:SMPTE:S377M'/>");
  const auto imported = run({"import", folder.path("a.xml"), "-o", folder.path("b.mxf")});
  EXPECT_EQ(imported.exitCode, 1);
  EXPECT_EQ(imported.err, "mxfxml: " + folder.path("a.xml") + ": the header metadata has no Preface\n");
  EXPECT_EQ(folder.files(), std::vector<std::string>{"a.xml"});
}

TEST(Import, WantsAnOutputOtherThanItsInput) {
  const ScratchFolder folder;
  writeFile(folder.path("a.xml"), "<a/>");
  EXPECT_EQ(run({"import", folder.path("a.xml")}).exitCode, 2);
  EXPECT_EQ(run({"import", folder.path("a.xml"), "-o", folder.path("a.xml")}).exitCode, 1);
  EXPECT_EQ(readFile(folder.path("a.xml")), "<a/>");
}

}  // namespace
}  // namespace Vantor::Tool

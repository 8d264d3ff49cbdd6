#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Refusal.h"

/// What --limit permits, and how a file beyond a limit is refused.
namespace Vantor::Tool {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* kImport[] = {"import", "{doc}", "-o", "{out}"};
Lines importing(const std::string& limit) { return with({std::begin(kImport), std::end(kImport)}, {"--limit", limit}); }

const Refusal kBeyondLimits[] = {
    {"sets of a file",
     {"export", "{file}", "--limit", "sets=3"},
     1,
     {"{file}: at byte offset 3107, set MaterialPackage: more than 3 sets (limit 'sets'); --limit sets=6 raises it"},
     kOp1a},
    {"properties of a file",
     {"info", "{file}", "--limit", "properties=10"},
     1,
     {"{file}: at byte offset 2782, set Identification: more than 10 properties (limit 'properties'); "
      "--limit properties=20 raises it"},
     kOp1a},
    {"a value of a file",
     {"get", "{file}", "MaterialPackage.Name", "--limit", "value=100"},
     2,
     {"{file}: at byte offset 531, the primer pack: a value of more than 100 bytes (limit 'value'); "
      "--limit value=200 raises it"},
     kOp1a},
    {"memory for a file",
     {"export", "{file}", "--limit", "memory=100K"},
     1,
     {"{file}: takes more than 102400 bytes of memory (limit 'memory'); --limit memory=200K raises it"},
     kOp1a},
    {"memory for one of several files",
     {"info", "{file}", "--limit", "memory=100k"},
     1,
     {"{file}: takes more than 102400 bytes of memory (limit 'memory'); --limit memory=200K raises it"},
     kOp1a},
    {"the size of XML",
     {"export", "{file}", "--limit", "output=1K"},
     1,
     {"{file}: an output of more than 1024 bytes (limit 'output'); --limit output=2K raises it"},
     kOp1a},
    {"the size of a copy in a file",
     {"export", "{file}", "-o", "{out}", "--limit", "output=1000"},
     1,
     {"{file}: an output of more than 1000 bytes (limit 'output'); --limit output=2000 raises it"},
     kOp1a},
    {"the size of the exact form",
     {"export", "{file}", "--exact", "--limit", "output=1000"},
     1,
     {"{file}: an output of more than 1000 bytes (limit 'output'); --limit output=2000 raises it"},
     kOp1a},
    {"elements within each other",
     importing("nesting=3"),
     1,
     {"{doc}: line 6, column 7: elements nest deeper than 3 levels (limit 'nesting'); --limit nesting=6 raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"different names of a document",
     importing("names=3"),
     1,
     {"{doc}: line 3, column 1: more than 3 different names (limit 'names'); --limit names=6 raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"the size of a document",
     importing("document=1K"),
     1,
     {"{doc}: a document of more than 1024 bytes (limit 'document'); --limit document=2K raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"the size of a document that is edited",
     {"import", "{doc}", "--into", "{file}", "--in-place", "--limit", "document=1000"},
     1,
     {"{doc}: a document of more than 1000 bytes (limit 'document'); --limit document=2000 raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"sets of a document",
     importing("sets=3"),
     1,
     {"{doc}: more than 3 sets (limit 'sets'); --limit sets=6 raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"sets of a document in the exact form",
     with(importing("sets=3"), {"--exact"}),
     1,
     {"{doc}: more than 3 sets (limit 'sets'); --limit sets=6 raises it"},
     kOp1a,
     exportOf(kOp1a)},
    {"a limit that nobody knows",
     {"export", "{file}", "--limit", "mem=1"},
     2,
     {"--limit: there is no limit 'mem' (did you mean 'memory'?); see mxfxml export --help"}},
    {"a limit without a number",
     {"export", "{file}", "--limit", "memory=much"},
     2,
     {"--limit: 'memory=much' gives no number, as memory=4G does; see mxfxml export --help"}},
    {"a limit without a value",
     {"export", "{file}", "--limit", "memory"},
     2,
     {"--limit: 'memory' gives no number, as memory=4G does; see mxfxml export --help"}},
    {"a limit beyond 64 bits",
     {"export", "{file}", "--limit", "memory=16777216T"},
     2,
     {"--limit: 'memory=16777216T' gives no number, as memory=4G does; see mxfxml export --help"}},
};

class Limit : public testing::TestWithParam<Refusal> {};

TEST_P(Limit, IsNamedWithTheValueThatRaisesIt) { expectRefusal(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Refusals, Limit, testing::ValuesIn(kBeyondLimits), mistakeOf);

TEST(Limits, TakeTheLastValueAndSeveralNames) {
  const auto result = run({"export", sample(kOp1a), "--limit", "sets=1", "--limit", "memory=1M", "--limit", "sets=100",
                           "--limit", "memory=64M"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, run({"export", sample(kOp1a)}).out);
}

TEST(Limits, CutTheListOfWarningsAndCountTheRest) {
  const ScratchFolder folder;
  std::string xml = run({"export", sample(kOp1a)}).out;
  std::string unknown;
  for (int i = 0; i < 1500; ++i) unknown += "<u xmlns=\"urn:nobody\"/>\n";
  const auto end = xml.rfind("</s377m:MetadataSets>");
  ASSERT_NE(end, std::string::npos);
  writeFile(folder.path("a.xml"), xml.insert(end, unknown));
  const auto warnings = [&](const Lines& more) {
    const auto result = run(with({"import", folder.path("a.xml"), "-o", folder.path("a.mxf")}, more));
    EXPECT_EQ(result.exitCode, 0);
    return result.err;
  };
  const auto linesOf = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
  const std::string start = "mxfxml: " + folder.path("a.xml") + ": warning: ";
  const auto byDefault = warnings({});
  EXPECT_EQ(linesOf(byDefault), 1001);
  EXPECT_THAT(byDefault, HasSubstr("\n" + start + "and 500 more; --limit diagnostics=N prints N\n"));
  EXPECT_THAT(warnings({"--limit", "diagnostics=2"}), HasSubstr(start + "and 1498 more; "));
  EXPECT_EQ(linesOf(warnings({"--limit", "diagnostics=2"})), 3);
  EXPECT_EQ(linesOf(warnings({"--limit", "diagnostics=2000"})), 1500);
}

TEST(Limits, CountWhatIsWrongWithADocumentBeyondTheList) {
  const ScratchFolder folder;
  std::string xml = run({"export", sample(kOp1a)}).out;
  const auto end = xml.rfind("</s377m:MetadataSets>");
  writeFile(folder.path("a.xml"), xml.insert(end, "<a/><b/><c/><d/>"));
  const auto result =
      run({"import", folder.path("a.xml"), "-o", folder.path("a.mxf"), "--strict", "--limit", "diagnostics=1"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("and 3 more; "));
  EXPECT_THAT(result.err, HasSubstr(": 4 things are wrong with the document"));
}

/// Wherever memory ends, the command says so, and leaves the file as it is.
TEST(Limits, OfMemoryEndEveryCommandInOrder) {
  const ScratchFolder folder;
  const auto file = folder.path("a.mxf"), document = folder.path("a.xml"), output = folder.path("b.mxf");
  fs::copy_file(sample(kGst), file);
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  writeFile(document, run({"export", file}).out);
  const auto content = readFile(file);
  const Lines commands[] = {{"info", file},
                            {"get", file, "Preface.ObjectModelVersion"},
                            {"show", file},
                            {"check", file},
                            {"export", file, "--flat"},
                            {"export", file, "--json"},
                            {"verify", file},
                            {"diff", file, document},
                            {"import", document, "-o", output},
                            {"import", document, "--into", file, "-o", output},
                            {"set", file, "--remove", "Preface.ObjectModelVersion", "--dry-run"}};
  int refusals = 0;
  for (const auto& command : commands) {
    for (int size = 16; size <= 16384; size *= 2) {
      fs::remove(output);
      const auto result = run(with(command, {"--limit", "memory=" + std::to_string(size) + "K"}));
      EXPECT_THAT(result.exitCode, AnyOf(0, 1, 2)) << command[0] << " " << size << ": " << result.err;
      if (result.err.find("bytes of memory (limit 'memory'); --limit memory=") == result.err.npos) {
        EXPECT_EQ(result.err, run(command).err) << command[0] << " " << size;
        break;
      }
      ++refusals;
      EXPECT_NE(result.exitCode, 0) << command[0];
      EXPECT_FALSE(fs::exists(output)) << command[0];
    }
    EXPECT_TRUE(readFile(file) == content) << command[0];
  }
  EXPECT_GT(refusals, 30);
}

TEST(Limits, HoldForAPipe) {
  const auto result = runScript("\"$0\" export - --limit sets=3 < \"$1\"", {sample(kOp1a)});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, AllOf(StartsWith("mxfxml: standard input: "), HasSubstr("more than 3 sets")));
  const auto document =
      runScript("\"$0\" export \"$1\" | \"$0\" import - -o /dev/null --limit document=1K", {sample(kOp1a)});
  EXPECT_THAT(document.err, HasSubstr("a document of more than 1024 bytes (limit 'document')"));
}

}  // namespace
}  // namespace Vantor::Tool

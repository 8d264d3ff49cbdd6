#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "JSON/Text.h"
#include "JSONSchema.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kSample = "gst-audio-ac3.mxf";
/// Of its header metadata: where the second set has its length, and bytes of the third, which stands at 1579.
constexpr std::size_t kLengthOfTheSecondSet = 1311;
constexpr std::size_t kInTheThirdSet = 1640;

/// A damaged copy of the sample.
class DamagedFile : public ScratchFolder {
 public:
  explicit DamagedFile(const std::string& bytes) { writeFile(file(), bytes); }
  static std::string whole() { return readFile(sample(kSample)); }
  static std::string cut(std::size_t size) { return whole().substr(0, size); }
  static std::string withByte(std::size_t offset, char byte) {
    auto bytes = whole();
    bytes[offset] = byte;
    return bytes;
  }

  std::string file() const { return path("damaged.mxf"); }
  /// The messages about the file, a line each, without what each starts with.
  std::string messages(const Result& result) const {
    const std::string start = "mxfxml: " + file() + ": ";
    std::string text = result.err;
    for (auto at = text.find(start); at != std::string::npos; at = text.find(start)) text.erase(at, start.size());
    return text;
  }
};

const std::string kCut = DamagedFile::cut(kInTheThirdSet);
constexpr const char* kMissing =
    "missing: at byte offset 1579: the file ends within set ContentStorage: 44 of its 92 bytes are there; 61 bytes are "
    "left out\n"
    "the metadata are damaged at 1 place; 2 whole sets are there\n";

JSON::Value::Items setsIn(const std::string& document) { return *JSON::fromText(document).find("sets")->items(); }

TEST(Salvage, IsOffered) {
  const DamagedFile damaged(kCut);
  const Result result = run({"export", damaged.file()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(
      damaged.messages(result),
      "at byte offset 1596: expected 92 bytes of set ContentStorage, found 44 to the end of the file; 2 whole sets "
      "stand before it; mxfxml export --salvage writes what is whole\n");
}

TEST(Salvage, ExportsWhatIsWholeAndEndsWith1) {
  const DamagedFile damaged(kCut);
  const Result result = run({"export", damaged.file(), "--salvage"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(damaged.messages(result), kMissing);
  EXPECT_THAT(result.out, AllOf(HasSubstr("<s377m:Preface "), HasSubstr("<s377m:Identification "),
                                Not(HasSubstr("<s377m:ContentStorage "))));
  const Result written = run({"export", damaged.file(), "--salvage", "-o", damaged.path("out.xml")});
  EXPECT_EQ(written.exitCode, 1);
  EXPECT_EQ(readFile(damaged.path("out.xml")), result.out);
}

TEST(Salvage, ExportsSetsAsTheWholeFileHasThem) {
  const auto all = setsIn(run({"export", "--json", sample(kSample)}).out);
  const DamagedFile cut(kCut), damaged(DamagedFile::withByte(kLengthOfTheSecondSet, '\x7f'));
  const auto ofCut = setsIn(run({"export", "--json", "--salvage", cut.file()}).out);
  ASSERT_EQ(ofCut.size(), 2u);
  for (std::size_t i = 0; i < ofCut.size(); ++i) EXPECT_EQ(JSON::toText(ofCut[i]), JSON::toText(all[i]));
  const Result result = run({"export", "--json", "--salvage", damaged.file()});
  EXPECT_EQ(damaged.messages(result),
            "missing: at byte offset 1294: set Identification cannot have 32522 bytes; 285 bytes are left out\n"
            "the metadata are damaged at 1 place; 18 whole sets are there\n");
  const auto ofDamaged = setsIn(result.out);
  ASSERT_EQ(ofDamaged.size() + 1, all.size());
  EXPECT_EQ(JSON::toText(ofDamaged[0]), JSON::toText(all[0]));
  for (std::size_t i = 1; i < ofDamaged.size(); ++i) EXPECT_EQ(JSON::toText(ofDamaged[i]), JSON::toText(all[i + 1]));
}

TEST(Salvage, HasNothingToSayAboutASoundFile) {
  for (const char* command : {"export", "info", "verify", "check"}) {
    const Result salvaged = run({command, sample(kSample), "--salvage"}), plain = run({command, sample(kSample)});
    EXPECT_EQ(salvaged.exitCode, plain.exitCode);
    EXPECT_EQ(salvaged.out, plain.out);
    EXPECT_EQ(salvaged.err, plain.err);
  }
}

TEST(Salvage, IsWhatInfoDoesByDefault) {
  const DamagedFile damaged(kCut);
  for (const Result& result : {run({"info", damaged.file()}), run({"info", "--salvage", damaged.file()})}) {
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("GStreamer Multimedia Framework"));
    EXPECT_EQ(damaged.messages(result), kMissing);
  }
  for (const char* list : {"--sets", "--partitions", "--all"}) {
    const Result result = run({"info", list, damaged.file()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("sets in the header partition: 2\n"));
    EXPECT_EQ(damaged.messages(result), kMissing);
  }
  const Result refused = run({"info", "--no-salvage", damaged.file()});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(damaged.messages(refused), HasSubstr("2 whole sets stand before it"));
}

TEST(Salvage, GetsValues) {
  const DamagedFile damaged(kCut);
  const std::vector<std::string> get = {"get", damaged.file(), "Identification.ApplicationName"};
  EXPECT_EQ(run(get).exitCode, 2);
  const Result result = run({"get", damaged.file(), "Identification.ApplicationName", "--salvage"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "GStreamer Multimedia Framework\n");
  EXPECT_EQ(damaged.messages(result), kMissing);
  const Result table = run({"get", "--table", "--salvage", damaged.file(), "Identification.ApplicationName"});
  EXPECT_EQ(table.exitCode, 1);
  EXPECT_THAT(table.out, EndsWith("\tGStreamer Multimedia Framework\n"));
}

TEST(Salvage, GetsValuesThatCanBeSet) {
  const DamagedFile damaged(kCut);
  const Result result = run({"get", "--json", "--salvage", damaged.file(), "Identification.ApplicationName"});
  writeFile(damaged.path("values.json"), result.out);
  writeFile(damaged.path("other.mxf"), DamagedFile::whole());
  EXPECT_EQ(run({"set", damaged.path("other.mxf"), "--from", damaged.path("values.json"), "--dry-run"}).err, "");
}

TEST(Salvage, Verifies) {
  const DamagedFile damaged(kCut);
  EXPECT_EQ(run({"verify", damaged.file()}).exitCode, 1);
  const Result result = run({"verify", "--salvage", damaged.file()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("sets compared 2; "));
  EXPECT_EQ(damaged.messages(result), kMissing);
}

TEST(Salvage, Checks) {
  const DamagedFile damaged(kCut);
  EXPECT_EQ(run({"check", damaged.file()}).exitCode, 2);
  const Result result = run({"check", "--salvage", damaged.file()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("error: unreadable-metadata: partition 0: the header metadata cannot be read: "),
                    HasSubstr("error: dangling-reference: partition 0: Preface")));
  EXPECT_EQ(damaged.messages(result), kMissing);
}

TEST(Salvage, NeedsASetThatIsWhole) {
  const DamagedFile damaged(DamagedFile::cut(1200));
  for (const char* command : {"export", "info", "verify"}) {
    const Result result = run({command, damaged.file(), "--salvage"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(damaged.messages(result),
              "at byte offset 1102: the file ends within set Preface: 80 of its 174 bytes are there; there is no whole "
              "set\n");
  }
  EXPECT_EQ(run({"check", damaged.file(), "--salvage"}).exitCode, 2);
  EXPECT_EQ(run({"get", damaged.file(), "--salvage", "Preface.Version"}).exitCode, 2);
}

TEST(Salvage, NeedsAPrefaceForXMLButNotForJSON) {
  const DamagedFile damaged(DamagedFile::withByte(1118, '\x7f'));  // the length of the Preface
  const Result xml = run({"export", "--salvage", damaged.file()});
  EXPECT_EQ(xml.exitCode, 1);
  EXPECT_EQ(xml.out, "");
  EXPECT_THAT(damaged.messages(xml), HasSubstr("has no Preface to start from"));
  EXPECT_EQ(setsIn(run({"export", "--json", "--salvage", damaged.file()}).out).size(), 18u);
  EXPECT_EQ(run({"export", "--start", "MaterialPackage", "--salvage", damaged.file()}).exitCode, 1);
}

TEST(Salvage, ReadsAPipe) {
  const DamagedFile damaged(DamagedFile::withByte(kLengthOfTheSecondSet, '\x7f'));
  const Result piped = runScript("cat '" + damaged.file() + "' | \"$0\" export --json --salvage -");
  const Result file = run({"export", "--json", "--salvage", damaged.file()});
  EXPECT_EQ(piped.exitCode, 1);
  EXPECT_EQ(piped.out, file.out);
  EXPECT_THAT(piped.err, HasSubstr("standard input: missing: at byte offset 1294: set Identification cannot have"));
}

TEST(Salvage, PrintsTwentyPlacesAtMost) {
  auto bytes = DamagedFile::whole().substr(0, 1102);
  const std::string set = DamagedFile::whole().substr(1579, 1688 - 1579);
  bytes += set;
  auto wrong = set;
  wrong[17 + 3] = '\x7f';  // the length of the first item
  for (int i = 0; i < 30; ++i) bytes += wrong;
  const DamagedFile damaged(bytes);
  const Result result = run({"info", "--sets", damaged.file()});
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 22);
  EXPECT_THAT(damaged.messages(result),
              EndsWith("missing: 10 more places\nthe metadata are damaged at 30 places; 1 whole set is there\n"));
}

class SalvageInJSON : public JSONSchema {};

TEST_F(SalvageInJSON, IsWhatIsMissing) {
  const DamagedFile damaged(kCut);
  const std::string file = damaged.file();
  const std::vector<std::vector<std::string>> commands = {
      {"info", "--json", file},
      {"get", "--json", "--salvage", file, "Identification.ApplicationName"},
      {"verify", "--json", "--salvage", file},
      {"check", "--json", "--salvage", file}};
  std::vector<std::string> documents;
  for (const auto& command : commands) {
    const Result result = run(command);
    EXPECT_EQ(damaged.messages(result), kMissing);
    EXPECT_THAT(result.out, AllOf(HasSubstr("\"kind\": \"cut-off\""), HasSubstr("\"offset\": 1579"),
                                  HasSubstr("\"bytes\": 61"), HasSubstr("\"set\": \"ContentStorage\"")));
    documents.push_back(damaged.path(command.front() + ".json"));
    writeFile(documents.back(), result.out);
  }
  const int code = validate(documents);
  if (isMissing) GTEST_SKIP() << "the schema is not checked";
  EXPECT_EQ(code, 0) << readFile(folder.path("problems"));
}

}  // namespace
}  // namespace Vantor::Tool

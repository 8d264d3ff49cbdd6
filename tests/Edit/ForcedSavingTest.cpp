#include <gmock/gmock.h>

#include <fstream>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "Edit/File.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::Edit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;
using Reason = MXF::Unchecked::Kind;

constexpr uint64 kBody = 3553, kFooter = 6822;  // in the sample
constexpr std::size_t kStatus = 14;             // of the header partition, in its key

/// A file with essence, that ends early.
class ForcedSaving : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    copySample();
  }
  void copySample() const {
    std::filesystem::copy_file(VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf", path(),
                               std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(path(), std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
  }
  Path path() const { return folder_ / "programme.mxf"; }

  void cut(uint64 size) const { std::filesystem::resize_file(path(), size); }
  void overwrite(std::size_t offset, const std::string& bytes) const {
    std::fstream stream(path(), std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(static_cast<std::streamoff>(offset));
    stream << bytes;
  }
  void append(const std::string& bytes) const { std::ofstream(path(), std::ios::binary | std::ios::app) << bytes; }
  /// As a file that is being written: the header partition is open, and names no footer.
  void open() const {
    overwrite(kStatus, "\x01");
    overwrite(41, std::string(8, '\0'));
  }

  static SaveOptions forced() {
    SaveOptions options;
    options.isForced = true;
    return options;
  }
  static void rename(File& file, const std::u16string& name = u"Ed") {
    file.metadata().find("Identification").set("ApplicationName", name);
  }
  static std::string nameIn(const Path& path) {
    const auto metadata = MXF::readHeaderMetadata(path, builtInDictionary());
    return Utils::wstringToString(metadata->find("Identification").text("ApplicationName"));
  }
  static std::vector<Reason> reasonsIn(const SaveReport& report) {
    std::vector<Reason> reasons;
    for (const auto& unchecked : report.unchecked) reasons.push_back(unchecked.kind);
    return reasons;
  }
};

TEST_F(ForcedSaving, IsRefusedWithoutForce) {
  cut(kBody + 1000);
  File file(path(), builtInDictionary());
  rename(file);
  EXPECT_THROW(file.save(), Exceptions::ParseError);
  EXPECT_THROW(file.rehearse(), Exceptions::ParseError);
}

TEST_F(ForcedSaving, ChangesOnlyTheHeaderMetadataOfAFileThatIsCut) {
  for (const uint64 size : {kBody, kBody + 50, kBody + 1000, kFooter, kFooter + 40, kFooter + 1000}) {
    copySample();
    cut(size);
    const std::string before = contents(path());
    File file(path(), builtInDictionary());
    rename(file);
    EXPECT_FALSE(file.rehearse(forced()).unchecked.empty());
    EXPECT_EQ(contents(path()), before);
    const auto report = file.save(forced());
    EXPECT_FALSE(report.unchecked.empty()) << size;
    EXPECT_EQ(report.partitions, 1u);
    const std::string after = contents(path());
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.substr(0, 121), before.substr(0, 121));
    EXPECT_EQ(after.substr(kBody), before.substr(kBody)) << size;
    EXPECT_EQ(nameIn(path()), "Ed");
    EXPECT_THAT(names(), ElementsAre("programme.mxf"));
    rename(file, u"Once more");
    file.save(forced());
    EXPECT_EQ(nameIn(path()), "Once more");
  }
}

TEST_F(ForcedSaving, TellsWhatIsNotChecked) {
  cut(kBody + 1000);
  File file(path(), builtInDictionary());
  rename(file);
  const auto report = file.preview(forced());
  EXPECT_THAT(reasonsIn(report), ElementsAre(Reason::kEnd, Reason::kMissingFooter));
  EXPECT_EQ(describe(report.unchecked[1]),
            "the footer partition that the header partition names is not at byte offset 6822");
}

TEST_F(ForcedSaving, NeedsNoForceForASoundFile) {
  File file(path(), builtInDictionary());
  rename(file);
  EXPECT_THAT(file.save(forced()).unchecked, IsEmpty());
  EXPECT_EQ(nameIn(path()), "Ed");
  rename(file, std::u16string(9000, u'x'));  // which needs more room
  EXPECT_NO_THROW(file.save(forced()));
}

TEST_F(ForcedSaving, NeverWritesAFileAnew) {
  cut(kBody + 1000);
  const std::string before = contents(path());
  File file(path(), builtInDictionary());
  rename(file, std::u16string(9000, u'x'));
  const auto refusal =
      ThrowsMessage<Exceptions::IOError>(HasSubstr("anew: it is cut off, or its writer is still at work"));
  EXPECT_THAT([&] { file.save(forced()); }, refusal);
  EXPECT_THAT([&] { file.rehearse(forced()); }, refusal);
  EXPECT_THAT([&] { file.saveCopy(folder_ / "copy.mxf", forced()); }, refusal);
  EXPECT_EQ(contents(path()), before);
  EXPECT_THAT(names(), ElementsAre("programme.mxf"));
}

TEST_F(ForcedSaving, RefusesDamagedHeaderMetadata) {
  overwrite(143, "\x44");  // the number of rows in the primer pack
  EXPECT_THROW(File(path(), builtInDictionary()), Exceptions::ParseError);
}

TEST_F(ForcedSaving, ChangesAFileWhoseWriterGoesOn) {
  cut(kBody);
  open();
  File file(path(), builtInDictionary());
  append("some bytes");
  rename(file);
  append(std::string(5000, '\x55'));
  EXPECT_THROW(file.save(), Exceptions::IOError);
  auto options = forced();
  options.keepsUndo = true;
  EXPECT_THAT(reasonsIn(file.save(options)), ElementsAre(Reason::kNoFooter));
  EXPECT_EQ(nameIn(path()), "Ed");
  append("and more");
  EXPECT_EQ(DataIO::File::undo(path()), DataIO::File::Undoing::kUndone);
  EXPECT_EQ(nameIn(path()), "GStreamer Multimedia Framework");
  EXPECT_EQ(std::filesystem::file_size(path()), kBody + 5018);
}

TEST_F(ForcedSaving, RefusesAFileWhoseWriterHasChangedTheMetadata) {
  cut(kBody);
  open();
  File file(path(), builtInDictionary());
  rename(file);
  overwrite(kStatus, "\x03");
  EXPECT_THAT([&] { file.save(forced()); },
              ThrowsMessage<Exceptions::IOError>(
                  HasSubstr("another program has changed its header metadata meanwhile; begin anew")));
}

TEST_F(ForcedSaving, RefusesAFileThatHasBecomeShorter) {
  open();
  cut(kFooter);
  File file(path(), builtInDictionary());
  rename(file);
  cut(kBody + 10);
  EXPECT_THAT([&] { file.save(forced()); }, ThrowsMessage<Exceptions::IOError>(HasSubstr("shorter")));
}

}  // namespace
}  // namespace Vantor::Edit

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Types/Types.h"
#include "Edit/File.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::Edit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::ThrowsMessage;

constexpr const char* kRepeating =
    VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf";  // with its metadata in partitions 0 and 2
constexpr const char* kOP1b = "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.02.01.00";

SaveOptions ignoringEveryRule() {
  SaveOptions options;
  for (const auto* rule : rules()) options.ignoredRules.insert(rule->code);
  return options;
}

SaveOptions ignoring(const std::string& rule) {
  SaveOptions options;
  options.ignoredRules = {rule};
  return options;
}

class SavingTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    std::filesystem::copy_file(kRepeating, path());
  }
  Path path() const { return folder_ / "programme.mxf"; }
  static Types::UMID32 renamed(MetadataSet& package) {
    auto octets = package.get<Types::UMID32>("PackageID");
    std::array<uint8, 32> other;
    std::copy_n(octets.rawBuffer(), 32, other.begin());
    other[31] ^= 0x55;
    package.set("PackageID", Types::UMID32(other));
    return Types::UMID32(other);
  }
  /// The operational patterns of the packs.
  std::vector<std::string> patterns() const {
    std::vector<std::string> texts;
    for (const auto& partition : MXF::readStructure(path()).partitions) {
      texts.push_back(partition.pack.operationalPattern.dottedText());
    }
    return texts;
  }
  void setPattern(const SaveOptions& options = {}) {
    File file(path(), builtInDictionary());
    file.metadata().preface()->set("OperationalPattern", Utils::stringToWstring(kOP1b));
    report_ = file.save(options);
  }
  bool isUntouched() const { return contents(path()) == contents(kRepeating); }

  SaveReport report_;
};

TEST_F(SavingTest, WritesWhatFollowsARenamedPackageIntoEveryPartition) {
  File file(path(), builtInDictionary());
  const auto id = renamed(file.metadata().find("SourcePackage"));
  report_ = file.save();
  EXPECT_EQ(report_.followed.size(), 2u);  // a clip and the essence data
  EXPECT_EQ(report_.changes.changedProperties, 3u);
  for (const auto& choice : {MXF::PartitionChoice::header(), MXF::PartitionChoice::footer()}) {
    const auto metadata = MXF::readHeaderMetadata(path(), builtInDictionary(), choice);
    EXPECT_EQ(metadata->find("EssenceData").get<Types::UMID32>("LinkedPackageID"), id);
  }
}

TEST_F(SavingTest, WritesTheLabelsOfThePrefaceIntoEveryPack) {
  setPattern();
  EXPECT_THAT(report_.packs, ElementsAre(0u, 1u, 2u));
  EXPECT_THAT(patterns(), ElementsAre(kOP1b, kOP1b, kOP1b));
  EXPECT_EQ(contents(path()).size(), contents(kRepeating).size());
}

TEST_F(SavingTest, WritesALongerListOfEssenceContainersIntoEveryPack) {
  File file(path(), builtInDictionary());
  auto& preface = *file.metadata().preface();
  const Types::AUID added(std::array<uint8, 16>{0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x03, 0x0d, 0x01, 0x03, 0x01,
                                                0x02, 0x7f, 0x01, 0x00});
  preface.append("EssenceContainers", added);
  const auto count = dynamic_cast<const CollectionElement&>(*preface.find("EssenceContainers")).size();
  report_ = file.save();
  EXPECT_EQ(report_.packs.size(), 3u);
  for (const auto& partition : MXF::readStructure(path()).partitions) {
    EXPECT_EQ(partition.pack.essenceContainers.size(), count);
  }
  File again(path(), builtInDictionary());
  EXPECT_EQ(again.metadata().sets().size(), file.metadata().sets().size());
}

TEST_F(SavingTest, ChangesThePropertyAloneWhereNothingIsToFollow) {
  SaveOptions only = ignoring("pack-pattern");
  only.completesEdits = false;
  const auto before = patterns();
  setPattern(only);
  EXPECT_THAT(report_.packs, IsEmpty());
  EXPECT_EQ(patterns(), before);
  File file(path(), builtInDictionary());
  renamed(file.metadata().find("SourcePackage"));
  only.ignoredRules = {"source-package", "linked-package", "essence-description", "unreached-set", "partition-stream"};
  EXPECT_THAT(file.save(only).followed, IsEmpty());
}

TEST_F(SavingTest, WritesTheLabelsIntoThePackOfAChosenPartitionAlone) {
  File file(path(), builtInDictionary(), MXF::PartitionChoice::footer());
  file.metadata().preface()->set("OperationalPattern", Utils::stringToWstring(kOP1b));
  const auto before = patterns();
  SaveOptions options;
  options.ignoredRules = {"repeated-metadata", "pack-pattern"};
  EXPECT_THAT(file.save(options).packs, ElementsAre(2u));
  EXPECT_THAT(patterns(), ElementsAre(before[0], before[1], kOP1b));
}

TEST_F(SavingTest, IsRefusedWhereTheEditBreaksARuleOnceMore) {
  const SaveOptions all = ignoringEveryRule();
  File file(path(), builtInDictionary());
  auto& preface = *file.metadata().preface();
  preface.append("IdentificationList", Types::StrongReference(Types::UUID(std::array<uint8, 16>{0x77})));
  file.save(all);
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  EXPECT_EQ(file.save().changes.changedSets, 1u) << "another set";
  preface.append("IdentificationList", Types::StrongReference(Types::UUID(std::array<uint8, 16>{0x78})));
  EXPECT_THROW(file.save(), FileGetsWorse) << "a second reference of the same list that leads nowhere";
}

TEST_F(SavingTest, IsRefusedWhereAWrongValueBecomesAnotherWrongValue) {
  File file(path(), builtInDictionary());
  auto& track = file.metadata().find("TimelineTrack[2]");
  track.set("EditRate", Types::Rational(0, 0));
  file.save(ignoringEveryRule());
  track.set("EditRate", Types::Rational(0, 7));
  EXPECT_THROW(file.save(), FileGetsWorse);
}

TEST_F(SavingTest, IsRefusedWhereTheEditBreaksARule) {
  File file(path(), builtInDictionary());
  file.metadata().find("TimelineTrack[2]").set("EditRate", Types::Rational(0, 0));
  try {
    file.save();
    FAIL();
  } catch (const FileGetsWorse& refusal) {
    EXPECT_THAT(refusal.message(), StartsWith("the edit would make the file worse: TimelineTrack "));
    ASSERT_FALSE(refusal.findings().empty());
    EXPECT_STREQ(refusal.findings()[0].rule->code, "edit-rate");
    EXPECT_EQ(refusal.findings()[0].property, "EditRate");
  }
  EXPECT_THROW(file.saveCopy(folder_ / "copy.mxf"), FileGetsWorse);
  DataIO::Memory::MemoryDataSink sink;
  EXPECT_THROW(file.saveTo(sink), FileGetsWorse);
  EXPECT_EQ(sink.serializedSize(), 0u);
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(names(), ElementsAre("programme.mxf"));
  EXPECT_FALSE(file.preview().findings.empty());
}

TEST_F(SavingTest, IsNotRefusedForARuleThatIsIgnored) {
  File file(path(), builtInDictionary());
  file.metadata().find("TimelineTrack[2]").set("EditRate", Types::Rational(0, 0));
  EXPECT_EQ(file.save(ignoring("edit-rate")).changes.changedSets, 1u);
}

TEST_F(SavingTest, IsNotRefusedForWhatTheFileBreaksAlready) {
  File file(path(), builtInDictionary());
  file.metadata().find("TimelineTrack[2]").set("EditRate", Types::Rational(0, 0));
  file.save(ignoring("edit-rate"));
  file.metadata().find("TimelineTrack[2]").set("Origin", Types::Position(0));
  file.metadata().find("TimelineTrack[2]").set("TrackName", u"Sound");
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  EXPECT_EQ(file.save().changes.changedSets, 2u);
}

TEST_F(SavingTest, SignsAnEditOnceHoweverOftenItIsLookedAt) {
  SaveOptions options;
  options.signature = Signature{u"A company", u"A product", u"1", {}, Types::UUID(std::array<uint8, 16>{1})};
  File file(path(), builtInDictionary());
  const auto before = file.metadata().findAll("Identification").size();
  EXPECT_TRUE(file.preview(options).changes.isNone()) << "nothing is edited, nothing is signed";
  file.metadata().find("MaterialPackage").set("PackageName", u"A title");
  file.preview(options);
  const auto report = file.save(options);
  EXPECT_EQ(report.changes.addedSets, 1u);
  EXPECT_EQ(report.changes.changedSets, 2u);  // the package and the Preface
  EXPECT_EQ(file.metadata().findAll("Identification").size(), before + 1);
  file.metadata().find("MaterialPackage").set("PackageName", u"Another title");
  file.save(options);
  EXPECT_EQ(file.metadata().findAll("Identification").size(), before + 2) << "another edit";
}

TEST_F(SavingTest, KeepsTheOldBytesToUndoIt) {
  File file(path(), builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  SaveOptions options;
  options.keepsUndo = true;
  file.save(options);
  EXPECT_FALSE(isUntouched());
  EXPECT_EQ(DataIO::File::undo(path()), DataIO::File::Undoing::kUndone);
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(names(), ElementsAre("programme.mxf"));
}

TEST_F(SavingTest, IsRefusedWhereOldBytesCannotBeKept) {
  File file(path(), builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", std::u16string(30000, u'x'));
  SaveOptions options;
  options.keepsUndo = true;
  EXPECT_THAT([&] { file.save(options); }, ThrowsMessage<Exceptions::IOError>(HasSubstr("does not fit in place")));
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(names(), ElementsAre("programme.mxf"));
}

TEST_F(SavingTest, ShowsTheDifferencesBefore) {
  File file(path(), builtInDictionary());
  EXPECT_TRUE(file.compare().isEqual());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  const auto differences = file.compare().differences;
  ASSERT_EQ(differences.size(), 1u);
  EXPECT_EQ(differences[0].property, "ApplicationName");
  EXPECT_EQ(differences[0].right, "\"Ed\"");
  file.save();
  EXPECT_TRUE(file.compare().isEqual());
}

TEST_F(SavingTest, NamesOtherHoldersOfAnOldValue) {
  File file(path(), builtInDictionary());
  file.metadata().find("Timecode[1]").set("StartTimecode", 90000);
  const auto report = file.preview();
  ASSERT_EQ(report.equalValues.size(), 1u);
  EXPECT_EQ(report.equalValues[0].property, "StartTimecode");
}

}  // namespace
}  // namespace Vantor::Edit

#include <gmock/gmock.h>

#include "StoppedSample.h"

namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class Recover : public testing::Test, protected StoppedSample {
 protected:
  Result recovered() const { return run({"recover", path()}); }
  bool isAsItWas() const { return readFile(path()) == readFile(sample(kSample)); }
};

TEST_F(Recover, UndoesAChangeThatWasStoppedOnce) {
  stopAChange();
  ASSERT_FALSE(isAsItWas());
  const Result result = recovered();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "the file is as it was before the change that was stopped\n");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(isAsItWas());
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
  EXPECT_EQ(recovered().out, "no change of the file was stopped; there is nothing to put back\n");
}

TEST_F(Recover, FindsNothingToDoWhereNoChangeWasStopped) {
  const Result result = recovered();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "no change of the file was stopped; there is nothing to put back\n");
  EXPECT_TRUE(isAsItWas());
}

TEST_F(Recover, RemovesAJournalThatWasNotFinished) {
  writeFile(journal() + ".tmp", "vantor-j");
  const Result result = recovered();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "the change was stopped before it touched the file; its journal is removed\n");
  EXPECT_TRUE(isAsItWas());
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

TEST_F(Recover, FailsWhereTheJournalIsCutOffAndKeepsIt) {
  stopAChange();
  const std::string changed = readFile(path()), whole = readFile(journal());
  const std::string real = fs::canonical(path()).string();
  for (const std::size_t size :
       {whole.size() - 1, whole.size() / 2, std::size_t{60}, std::size_t{20}, std::size_t{0}}) {
    writeFile(journal(), whole.substr(0, size));
    const Result result = recovered();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, testing::StartsWith("mxfxml: cannot recover '" + real + "': its journal is damaged"));
    EXPECT_THAT(result.err,
                testing::EndsWith("; to keep it as it is, remove the journal '" + real + ".vantor-journal'\n"));
    EXPECT_TRUE(readFile(path()) == changed);
    EXPECT_EQ(readFile(journal()), whole.substr(0, size));
  }
}

TEST_F(Recover, FailsWhereThereIsNoSuchFile) {
  stopAChange();
  const std::string saved = readFile(journal());
  fs::remove(path());
  const Result gone = recovered();
  EXPECT_EQ(gone.exitCode, 1);
  EXPECT_EQ(gone.out, "");
  EXPECT_EQ(gone.err, "mxfxml: cannot recover '" + path() + "': the file is gone; put it back, or remove '" + path() +
                          ".vantor-journal', which has old bytes of it\n");
  EXPECT_EQ(readFile(journal()), saved);
  fs::remove(journal());
  const Result missing = recovered();
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.err, "mxfxml: cannot recover '" + path() + "': there is no such file\n");
  EXPECT_THAT(folder_.files(), ElementsAre());
  EXPECT_EQ(run({"set", path(), "Preface.ByteOrder=1"}).err,
            "mxfxml: cannot open '" + path() + "': No such file or directory\n");
}

}  // namespace
}  // namespace Vantor::Tool

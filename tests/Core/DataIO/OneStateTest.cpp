#include "Core/DataIO/OneState.h"

#include <chrono>
#include <fstream>
#include <string>
#include <utility>

#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::DataIO::File {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

class OneState : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(file(), "0123456789");
    makeOld();
  }
  Path file() const { return folder_ / "a"; }

  void makeOld() const {
    const auto hour = std::chrono::hours(1);
    std::filesystem::last_write_time(file(), std::filesystem::file_time_type::clock::now() - hour);
  }
  void append(const std::string& text) const { std::ofstream(file(), std::ios::binary | std::ios::app) << text; }
  void overwrite(const std::string& text) const {
    std::fstream(file(), std::ios::binary | std::ios::in | std::ios::out) << text;
  }

  /// The first bytes and the size.
  static std::pair<std::string, uint64> startOf(SeekableSource& source) {
    std::string start(4, ' ');
    source.seek(0);
    source.read(reinterpret_cast<uint8*>(start.data()), start.size());
    return {start, source.size()};
  }
};

TEST_F(OneState, IsReadOnceWhereNothingChanges) {
  int calls = 0;
  const auto start = readInOneState(file(), [&](SeekableSource& source) {
    ++calls;
    return startOf(source);
  });
  EXPECT_EQ(start, (std::pair<std::string, uint64>("0123", 10)));
  EXPECT_EQ(calls, 1);
}

TEST_F(OneState, IsThatOfTheFirstBytesWhileAWriterAppends) {
  int calls = 0;
  const auto start = readInOneState(file(), [&](SeekableSource& source) {
    ++calls;
    auto found = startOf(source);
    append("more");
    return found;
  });
  EXPECT_EQ(start, (std::pair<std::string, uint64>("0123", 14)));
  EXPECT_EQ(calls, 3);
}

TEST_F(OneState, IsConfirmedOfAFileThatWasJustWritten) {
  overwrite("abcd");
  int calls = 0;
  readInOneState(file(), [&](SeekableSource& source) {
    ++calls;
    return startOf(source);
  });
  EXPECT_EQ(calls, 3);
}

TEST_F(OneState, IsTheNewOneBehindAChange) {
  int calls = 0;
  const auto start = readInOneState(file(), [&](SeekableSource& source) {
    auto found = startOf(source);
    if (calls++ == 0) {
      overwrite("abcd");
      append("e");  // whatever the clock of the file system
    }
    return found;
  });
  EXPECT_EQ(start, (std::pair<std::string, uint64>("abcd", 11)));
}

TEST_F(OneState, IsRefusedWhereWhatIsReadKeepsChanging) {
  int calls = 0;
  const auto read = [&](SeekableSource& source) {
    const auto found = startOf(source);
    overwrite(std::to_string(1000 + ++calls));
    append("!");
    return found;
  };
  EXPECT_THAT([&] { readInOneState(file(), read); },
              ThrowsMessage<Exceptions::IOError>(
                  HasSubstr("another program is writing what is read of it at the moment; try again later")));
  EXPECT_EQ(calls, 3);
}

TEST_F(OneState, IsReadAgainWhereReadingFailsDuringAChange) {
  int calls = 0;
  const auto start = readInOneState(file(), [&](SeekableSource& source) {
    if (calls++ == 0) {
      append("end");
      source.seek(11);
    }
    return startOf(source);
  });
  EXPECT_EQ(start.second, 13u);
}

TEST_F(OneState, FailsOnceWhereNothingChanges) {
  int calls = 0;
  const auto read = [&](SeekableSource& source) {
    ++calls;
    source.seek(11);
    return 0;
  };
  EXPECT_THROW(readInOneState(file(), read), Exceptions::ParseError);
  EXPECT_EQ(calls, 1);
  EXPECT_THROW(readInOneState(folder_ / "none", read), Exceptions::IOError);
}

}  // namespace
}  // namespace Vantor::DataIO::File

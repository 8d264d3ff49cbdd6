#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/Strings.h"
#include "Edit/File.h"
#include "LosslessXML.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "XMLUtils/Initializer.h"
#include "tests/faults/FailingHeap.h"

/// Each operation with its first allocation failing, then with its second one, and so on until none is left: once
/// alone, and once with all that follow. What comes out is the exception that the operation promises, or the whole
/// result; nothing leaks, and the next attempt works.
namespace Vantor {
namespace {

namespace fs = std::filesystem;
using FailingHeap::Fails;

const std::string kSample = VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf";

Bytes contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// What an operation threw.
enum class Outcome { kNothing, kOutOfMemory, kParseError, kOther };
void PrintTo(Outcome outcome, std::ostream* out) {
  constexpr const char* kNames[] = {"nothing", "out of memory", "ParseError", "another exception"};
  *out << kNames[static_cast<int>(outcome)];
}

template <class Operation>
Outcome outcomeOf(Operation&& operation, std::string& text) {
  try {
    operation();
    return Outcome::kNothing;
  } catch (const std::bad_alloc&) {
    return Outcome::kOutOfMemory;
  } catch (const xercesc::OutOfMemoryException&) {
    return Outcome::kOutOfMemory;
  } catch (const Exceptions::ParseError& error) {
    text = error.what();
    return Outcome::kParseError;
  } catch (const std::exception& error) {
    text = error.what();
  } catch (...) {
    text = "no std::exception";
  }
  return Outcome::kOther;
}

/// Runs an operation until none of its allocations fails.
/// @param promised  what it throws when memory is short.
/// @param check     called after each attempt with the outcome; throws nothing.
/// @return number of allocations that failed.
template <class Operation, class Check>
uint64 sweep(const char* name, Fails which, Outcome promised, Operation&& operation, Check&& check) {
  for (int i = 0; i < 2; ++i) operation();  // what is made once per process
  uint64 number = 1;
  for (;; ++number) {
    const auto before = FailingHeap::liveBlocks();
    std::string text;
    FailingHeap::failAt(number, which);
    const auto outcome = outcomeOf(operation, text);
    const bool hasFailed = FailingHeap::stop();
    const std::string where = std::string(name) + ", allocation " + std::to_string(number);
    std::string().swap(text);
    EXPECT_EQ(FailingHeap::liveBlocks(), before) << where;
    // What fails may be a cache that is done without.
    if (outcome != Outcome::kNothing) EXPECT_EQ(outcome, promised) << where << ": " << text;
    check(outcome, where);
    if (!hasFailed || testing::Test::HasFailure()) break;
  }
  std::cout << name << (which == Fails::kOnce ? ", one fails: " : ", all fail from there: ") << number - 1
            << " allocations\n";
  return number - 1;
}

class AllocationFaults : public testing::TestWithParam<Fails> {
 protected:
  AllocationFaults() { XMLUtils::Initializer::instance(); }

  static std::unique_ptr<PartitionMetadata> metadata() { return MXF::readHeaderMetadata(kSample, builtInDictionary()); }
  template <class Operation, class Check>
  void everyAllocation(const char* name, Outcome promised, Operation&& operation, Check&& check) {
    EXPECT_GT(sweep(name, GetParam(), promised, operation, check), 100u);
  }
  template <class Operation>
  void everyAllocation(const char* name, Outcome promised, Operation&& operation) {
    everyAllocation(name, promised, operation, [](Outcome, const std::string&) {});
  }
};

TEST_P(AllocationFaults, OfReading) {
  const auto bytes = contentsOf(kSample);
  everyAllocation("reading", Outcome::kOutOfMemory, [&] {
    DataIO::Memory::MemoryFile file(bytes.data(), bytes.size());
    MXF::readHeaderMetadata(file, builtInDictionary());
  });
}

TEST_P(AllocationFaults, OfTheExport) {
  const auto partition = metadata();
  for (const bool isNested : {true, false}) {
    everyAllocation(isNested ? "nested export" : "flat export", Outcome::kOutOfMemory, [&] {
      wstring text;
      XMLBuilder::partition2XML(&*partition, isNested, false, XMLUtils::EncodingType::kUTF8, text);
    });
  }
}

TEST_P(AllocationFaults, OfTheLosslessExport) {
  const auto partition = metadata();
  everyAllocation("lossless export", Outcome::kOutOfMemory,
                  [&] { LosslessXML::exportBytes(*partition, {}, XMLUtils::EncodingType::kUTF8); });
}

TEST_P(AllocationFaults, OfTheExactImport) {
  wstring text;
  XMLBuilder::partition2XML(&*metadata(), true, false, XMLUtils::EncodingType::kUTF8, text);
  const auto bytes = Utils::wstringToString(text);
  everyAllocation("exact import", Outcome::kParseError, [&] {
    PartitionMetadata partition(builtInDictionary());
    XML2Partition::getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(bytes.data()),
                                                  static_cast<uint32>(bytes.size()), &partition);
  });
}

TEST_P(AllocationFaults, OfTheLosslessImport) {
  const auto bytes = LosslessXML::exportBytes(*metadata(), {}, XMLUtils::EncodingType::kUTF8);
  everyAllocation("lossless import", Outcome::kOutOfMemory, [&] {
    PartitionMetadata partition(builtInDictionary());
    LosslessXML::Document::fromBytes(bytes.data(), bytes.size()).import(partition);
  });
}

TEST_P(AllocationFaults, OfAMergeWhichChangesNothingThen) {
  auto edited = LosslessXML::exportBytes(*metadata(), {}, XMLUtils::EncodingType::kUTF8);
  const std::string from = "<rp210:DropFrame>0<", to = "<rp210:DropFrame>1<";
  ASSERT_NE(edited.find(from), std::string::npos);
  edited.replace(edited.find(from), from.size(), to);
  const auto document = LosslessXML::Document::fromBytes(edited.data(), edited.size());
  const auto bytes = contentsOf(kSample);
  DataIO::Memory::MemoryFile source(bytes.data(), bytes.size());
  std::unique_ptr<Edit::File> file;
  uint64 original = 0;
  const auto merge = [&] { file->mergeDocument(document); };
  const auto reopen = [&] {
    file = std::make_unique<Edit::File>(source, builtInDictionary());
    original = digestOf(file->metadata());
  };
  reopen();
  uint64 number = 1;
  for (;; ++number) {
    reopen();
    std::string text;
    FailingHeap::failAt(number, GetParam());
    const auto outcome = outcomeOf(merge, text);
    const bool hasFailed = FailingHeap::stop();
    const auto where = "allocation " + std::to_string(number);
    if (outcome != Outcome::kNothing) {
      EXPECT_EQ(outcome, Outcome::kOutOfMemory) << where << ": " << text;
      EXPECT_EQ(digestOf(file->metadata()), original) << where << ": the metadata have changed";
    }
    merge();
    EXPECT_NE(digestOf(file->metadata()), original) << where;
    if (!hasFailed || HasFailure()) break;
  }
  std::cout << "merge: " << number - 1 << " allocations\n";
  EXPECT_GT(number, 100u);
}

/// Files in the folder of a test.
std::set<std::string> filesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

TEST_P(AllocationFaults, OfSavingWhichLeavesTheOldFileOrTheNewOne) {
  const fs::path folder = fs::path(testing::TempDir()) / ("faults-" + std::to_string(::getpid()));
  fs::create_directory(folder);
  const auto path = folder / "a.mxf";
  fs::copy_file(kSample, path);
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  const auto old = contentsOf(path);
  const auto edited = [&] {
    auto file = std::make_unique<Edit::File>(path, builtInDictionary());
    file->metadata().find("Preface").remove("ObjectModelVersion");
    return file;
  };
  const auto restore = [&] {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(old.data()), static_cast<std::streamsize>(old.size()));
  };
  edited()->save();
  const auto changed = contentsOf(path);
  ASSERT_NE(changed, old);
  uint64 number = 1;
  for (;; ++number) {
    restore();
    std::string text;
    auto file = edited();
    FailingHeap::failAt(number, GetParam());
    const auto outcome = outcomeOf([&] { file->save(); }, text);
    const bool hasFailed = FailingHeap::stop();
    const auto where = "allocation " + std::to_string(number);
    const auto found = contentsOf(path);
    if (outcome == Outcome::kNothing) {
      EXPECT_EQ(found, changed) << where;
    } else {
      EXPECT_EQ(outcome, Outcome::kOutOfMemory) << where << ": " << text;
      EXPECT_TRUE(found == old || found == changed) << where << ": the file is neither the old one nor the new one";
    }
    EXPECT_EQ(filesIn(folder), std::set<std::string>{"a.mxf"}) << where;
    if (found == old) EXPECT_NO_THROW(edited()->save()) << where << ": the lock is still there";
    if (!hasFailed || HasFailure()) break;
  }
  std::cout << "saving in place: " << number - 1 << " allocations\n";
  EXPECT_GT(number, 100u);
  fs::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(OneAndAll, AllocationFaults, testing::Values(Fails::kOnce, Fails::kFromThenOn));

/// How a process ends in which an allocation failed while the XML stack started, and which then tried again.
enum StartEnd : int { kStarted = 0, kStartedAgain = 1, kOtherException = 2, kCannotStart = 3 };

StartEnd startTwice(uint64 number, Fails which) {
  std::string text;
  const auto start = [] { XMLUtils::Initializer::instance(); };
  FailingHeap::failAt(number, which);
  auto outcome = Outcome::kOther;
  bool isStartFailure = false;
  try {
    outcome = outcomeOf(
        [&] {
          try {
            start();
          } catch (const Exceptions::StartFailure&) {
            isStartFailure = true;
          }
        },
        text);
  } catch (...) {
    outcome = Outcome::kOther;
  }
  const bool hasFailed = FailingHeap::stop();
  if (!hasFailed) return kStarted;
  if (outcome == Outcome::kParseError || outcome == Outcome::kOther) return kOtherException;
  static_cast<void>(isStartFailure);
  try {
    wstring out;
    XMLBuilder::partition2XML(&*MXF::readHeaderMetadata(kSample, builtInDictionary()), true, false,
                              XMLUtils::EncodingType::kUTF8, out);
    return out.empty() ? kCannotStart : kStartedAgain;
  } catch (...) {
    return kCannotStart;
  }
}

class StartFaults : public testing::TestWithParam<Fails> {};

TEST_P(StartFaults, AreReportedAndTheNextStartWorks) {
  uint64 number = 1;
  std::map<int, uint64> ends;
  for (;; ++number) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(startTwice(number, GetParam()));
    int status = 0;
    ::waitpid(child, &status, 0);
    const int end = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    ++ends[end];
    if (end == kStarted) break;
    EXPECT_EQ(end, kStartedAgain) << "allocation " << number;
  }
  for (const auto& [end, count] : ends) std::cout << "end " << end << ": " << count << " allocations\n";
}

INSTANTIATE_TEST_SUITE_P(OneAndAll, StartFaults, testing::Values(Fails::kOnce, Fails::kFromThenOn));

}  // namespace
}  // namespace Vantor

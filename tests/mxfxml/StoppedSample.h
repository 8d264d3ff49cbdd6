#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "Core/DataIO/UndoJournal.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {

/// A copy of a sample whose changes in place can be stopped.
class StoppedSample {
 public:
  StoppedSample() { std::filesystem::copy_file(sample(kSample), path()); }

  std::string path() const { return folder_.path("a.mxf"); }
  std::string journal() const { return path() + ".vantor-journal"; }

  /// Changes the name in the header partition, and calls back while the journal stands beside the file.
  void change(const std::function<void()>& meanwhile) const {
    const std::string name("\0X\0Y\0Z", 6);
    const Bytes bytes(name.begin(), name.end());
    const uint64 at = readFile(path()).find(kName);
    DataIO::File::changeInPlace(path(), DataIO::File::stateOf(path()), {{at, bytes}}, [&](auto& file) {
      file.write(at, bytes.data(), bytes.size());
      meanwhile();
    });
  }

  /// Leaves file and journal as a process does that is killed.
  void stopAChange() const {
    std::string changed, saved;
    const auto stop = [&] {
      changed = readFile(path());
      saved = readFile(journal());
      throw std::runtime_error("stop");
    };
    EXPECT_ANY_THROW(change(stop));
    EXPECT_NE(changed, readFile(sample(kSample)));
    writeFile(path(), changed);
    writeFile(journal(), saved);
  }

 protected:
  static constexpr const char* kSample = "gst-audio-ac3.mxf";  // header and footer partition have the same metadata
  const std::string kName{"\0G\0S\0t", 6};                     // starts the name of its writer, in UTF-16
  const ScratchFolder folder_;
};

}  // namespace Vantor::Tool

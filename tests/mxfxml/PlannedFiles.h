#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {

/// Files beside a table that edits them.
class PlannedFiles : public testing::Test {
 protected:
  using Names = std::vector<std::string>;

  static constexpr const char* kOriginal = "gst-audio-ac3.mxf";  // the same metadata in header and footer partition
  static constexpr const char* kName = "Identification.ApplicationName";

  void addFiles(const Names& names) const {
    for (const auto& name : names) std::filesystem::copy_file(sample(kOriginal), path(name));
  }
  /// A table that gives each file a name of its own.
  void writeTable(const Names& names) const {
    std::string text = "file,path,value\r\n";
    for (const auto& name : names) text += name + "," + kName + ",Writer of " + name + "\r\n";
    writeFile(table(), text);
  }

  Result set(Names options = {}) const {
    options.insert(options.begin(), {"set", "--plan", table()});
    return run(options);
  }
  Result import(Names options = {}) const {
    options.insert(options.begin(), {"import", "--plan", table()});
    return run(options);
  }

  std::string path(const std::string& name) const { return folder_.path(name); }
  std::string table() const { return path("plan.csv"); }
  /// The report of the last run that wrote one.
  std::string report() const { return readFile(path("report.csv")); }
  bool isUntouched(const std::string& name) const { return readFile(path(name)) == readFile(sample(kOriginal)); }
  std::string diff(const std::string& name) const { return run({"diff", sample(kOriginal), path(name)}).out; }
  bool hasName(const std::string& name, const std::string& value) const {
    return diff(name).find("-> \"" + value + "\"\n") != std::string::npos;
  }
  /// The text with the folder of the test as FOLDER.
  std::string inFolder(std::string text) const {
    const auto folder = folder_.path().string();
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) {
      text.replace(at, folder.size(), "FOLDER");
    }
    return text;
  }
  static std::string lastLine(const std::string& text) {
    const auto end = text.size() - 1;
    return text.substr(text.rfind('\n', end - 1) + 1, std::string::npos);
  }

  const ScratchFolder folder_;
};

}  // namespace Vantor::Tool

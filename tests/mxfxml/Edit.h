#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {

/// A document without the processing instruction in which it describes itself, and without its line.
inline std::string withoutDescription(std::string xml) {
  const auto from = xml.find("<?mxfxml");
  return from == std::string::npos ? xml : xml.erase(from, xml.find("?>", from) + 3 - from);
}

/// Arguments of a command with which its edit may break rules.
inline std::vector<std::string> ignoring(const std::vector<std::string>& rules,
                                         std::vector<std::string> arguments = {}) {
  for (const auto& rule : rules) arguments.insert(arguments.end(), {"--ignore", rule});
  return arguments;
}

/// A copy of a file, its export, and what editing that gives.
class Edit {
 public:
  Edit(const std::string& file, std::vector<std::string> exportOptions) {
    std::filesystem::copy_file(file, original());
    exportAgain(std::move(exportOptions));
  }

  std::string original() const { return folder_.path("original.mxf"); }
  std::string document() const { return folder_.path("edited.xml"); }
  std::string copy() const { return folder_.path("copy.mxf"); }
  std::vector<std::string> files() const { return folder_.files(); }

  void exportAgain(std::vector<std::string> options) const {
    options.insert(options.begin(), {"export", original(), "-o", document()});
    EXPECT_EQ(run(options).exitCode, 0);
  }
  /// The first of the texts in the document becomes another.
  void replace(const std::string& text, const std::string& by) const {
    std::string xml = readFile(document());
    const auto at = xml.find(text);
    ASSERT_NE(at, std::string::npos) << text;
    writeFile(document(), xml.replace(at, text.size(), by));
  }
  /// Takes out what is from the first of a text up to the end of the next of another one.
  void cut(const std::string& from, const std::string& to) const {
    std::string xml = readFile(document());
    const auto at = xml.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    const auto end = xml.find(to, at);
    ASSERT_NE(end, std::string::npos) << to;
    writeFile(document(), xml.erase(at, end + to.size() - at));
  }
  Result intoCopy(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"import", document(), "--into", original(), "-o", copy()});
    return run(options);
  }
  Result inPlace(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"import", document(), "--into", original(), "--in-place"});
    return run(options);
  }
  /// Exports without their descriptions, which differ after every edit.
  std::string exported(const std::string& file, const std::string& partition = "header") const {
    return withoutDescription(run({"export", file, "--partition", partition}).out);
  }
  std::string flat(const std::string& file) const { return withoutDescription(run({"export", file, "--flat"}).out); }
  /// The document without its description.
  std::string content() const { return withoutDescription(readFile(document())); }
  /// Takes the description out of the document.
  void withdrawDescription() const { writeFile(document(), content()); }

  /// The lines of a run's messages without what each starts with, and the path of the original as ORIGINAL.
  std::string remarks(const Result& result) const {
    std::string text = result.err;
    for (const auto& start : {"mxfxml: " + document() + ": ", "mxfxml: " + original() + ": "}) {
      for (auto at = text.find(start); at != std::string::npos; at = text.find(start)) text.erase(at, start.size());
    }
    const auto at = text.find(original());
    return at == std::string::npos ? text : text.replace(at, original().size(), "ORIGINAL");
  }

 private:
  ScratchFolder folder_;
};

/// A whole file with descriptive and dark sets: a header partition that says that it is all there is.
inline std::string wholeFile(const std::string& name) {
  std::string bytes = readFile(sample(name));
  bytes[13] = 2;
  bytes[14] = 4;                               // a header partition, closed and complete (ST 377-1)
  bytes.replace(44, 8, std::string(8, '\0'));  // which names no footer partition
  return bytes;
}

/// A file of nothing but the header metadata that a document has.
class FileOf : public ScratchFolder {
 public:
  explicit FileOf(const std::string& document) {
    writeFile(path("made.xml"), document);
    const Result result = run({"import", path("made.xml"), "-o", file()});
    EXPECT_EQ(result.exitCode, 0) << result.err;
  }
  std::string file() const { return path("made.mxf"); }
};

}  // namespace Vantor::Tool

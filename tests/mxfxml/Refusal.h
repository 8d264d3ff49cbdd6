#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "Program.h"
#include "ScratchFolder.h"

/// Mistakes at the command line with their messages and exit codes.
namespace Vantor::Tool {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

/// The files of a mistake. Words in braces stand for their paths in arguments and messages.
class Desk {
 public:
  explicit Desk(const std::string& original) {
    fs::copy_file(sample(original), file());
    fs::permissions(file(), fs::perms::owner_read | fs::perms::owner_write);
  }

  std::string file() const { return folder_.path("a.mxf"); }
  std::string document() const { return folder_.path("a.xml"); }

  /// Exports the file; the first of the texts in the document becomes another.
  void edit(const std::string& from, const std::string& to) const {
    std::string xml = run({"export", file()}).out;
    const auto at = xml.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    writeFile(document(), xml.replace(at, from.size(), to));
  }

  std::string inPaths(std::string text) const {
    for (const auto& [word, path] : paths()) {
      for (auto at = text.find(word); at != std::string::npos; at = text.find(word))
        text.replace(at, word.size(), path);
    }
    return text;
  }
  Lines inPaths(Lines texts) const {
    for (auto& text : texts) text = inPaths(text);
    return texts;
  }

  /// The bytes of all files by name.
  std::map<std::string, std::string> content() const {
    std::map<std::string, std::string> content;
    for (const auto& name : folder_.files()) content[name] = readFile(folder_.path(name));
    return content;
  }

 private:
  std::vector<std::pair<std::string, std::string>> paths() const {
    return {{"{file}", file()},
            {"{real}", (fs::canonical(folder_.path()) / "a.mxf").string()},
            {"{doc}", document()},
            {"{out}", folder_.path("b.mxf")},
            {"{link}", folder_.path("link.mxf")}};
  }

  ScratchFolder folder_;
};

using Prepare = std::function<void(const Desk&)>;

inline Prepare nothing() {
  return [](const Desk&) {};
}

constexpr const char* kGst = "gst-audio-ac3.mxf";
constexpr const char* kOp1a = "op1a.mxf";

struct Refusal {
  const char* name;
  Lines arguments;
  int exitCode;
  Lines messages;  ///< without the name of the program
  const char* original = kGst;
  Prepare prepare = nothing();
  std::string out = "";
};
inline void PrintTo(const Refusal& refusal, std::ostream* stream) { *stream << refusal.name; }

inline Prepare edited(const std::string& from, const std::string& to) {
  return [=](const Desk& desk) { desk.edit(from, to); };
}
/// Exports the file; the first element of a name is taken out.
inline Prepare without(const std::string& name) {
  return [=](const Desk& desk) {
    const std::string xml = run({"export", desk.file()}).out, end = "</" + name + ">";
    const auto from = xml.find("<" + name + ">");
    writeFile(desk.document(), xml.substr(0, from) + xml.substr(xml.find(end, from) + end.size()));
  };
}
inline Prepare exportOf(const std::string& other) {
  return [=](const Desk& desk) { writeFile(desk.document(), run({"export", sample(other)}).out); };
}
inline Prepare written(const std::string& text) {
  return [=](const Desk& desk) { writeFile(desk.document(), text); };
}
inline Prepare journal(const std::string& bytes) {
  return [=](const Desk& desk) { writeFile(desk.file() + ".vantor-journal", bytes); };
}
inline Prepare cutOldBytes() {
  return [=](const Desk& desk) { fs::resize_file(desk.file() + ".vantor-undo", 60); };
}
inline Prepare readOnly() {
  return [](const Desk& desk) { fs::permissions(desk.file(), fs::perms::owner_read); };
}
inline Prepare linked() {
  return [](const Desk& desk) { fs::create_hard_link(desk.file(), desk.inPaths("{link}")); };
}
inline Prepare removed() {
  return [](const Desk& desk) { fs::remove(desk.file()); };
}
inline Prepare after(const Lines& arguments) {
  return [=](const Desk& desk) { EXPECT_EQ(run(desk.inPaths(arguments)).exitCode, 0); };
}
inline Prepare both(const Prepare& first, const Prepare& second) {
  return [=](const Desk& desk) {
    first(desk);
    second(desk);
  };
}

inline const Lines kIntoItself = {"import", "{doc}", "--into", "{file}", "--in-place"};
inline const Lines kIntoCopy = {"import", "{doc}", "--into", "{file}", "-o", "{out}"};

inline Lines with(Lines arguments, const Lines& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

/// Runs the command of a mistake: whole messages, its exit code, and no file that is written or removed.
inline void expectRefusal(const Refusal& refusal) {
  const Desk desk(refusal.original);
  refusal.prepare(desk);
  const auto before = desk.content();
  const Result result = run(desk.inPaths(refusal.arguments));
  std::string messages;
  for (const auto& message : desk.inPaths(refusal.messages)) messages += "mxfxml: " + message + "\n";
  EXPECT_EQ(result.err, messages);
  EXPECT_EQ(result.exitCode, refusal.exitCode);
  EXPECT_EQ(result.out, refusal.out);
  EXPECT_TRUE(desk.content() == before);
}

/// The name of a mistake in the name of its test.
inline std::string mistakeOf(const testing::TestParamInfo<Refusal>& info) {
  return std::regex_replace(std::string(info.param.name), std::regex("[^A-Za-z0-9]+"), "_");
}

}  // namespace Vantor::Tool

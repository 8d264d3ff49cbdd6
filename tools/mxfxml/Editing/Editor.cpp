#include "Editing/Editor.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "Core/Platform/Path.h"
#include "Core/Platform/System.h"
#include "Terminal/ErrorText.h"
#include "Terminal/Terminal.h"

namespace Vantor::Tool {

namespace {

constexpr std::array kTakesPlus = {"vi",    "vim",         "nvim",  "gvim", "view", "nano",
                                   "emacs", "emacsclient", "micro", "kak",  "joe"};

/// The name of the program that a command begins with.
std::string programOf(const std::string& command) {
  auto word = command.substr(0, command.find_first_of(" \t"));
  word.erase(std::remove_if(word.begin(), word.end(), [](char c) { return c == '"' || c == '\''; }), word.end());
  return Platform::pathToUTF8(Platform::pathFromUTF8(word).stem());
}

[[noreturn]] void refuse(const std::string& command, const std::string& reason) {
  throw CommandError("the editor '" + command + "' " + reason + "; nothing is written");
}

}  // namespace

Editor Editor::ofUser() {
  for (const char* name : {"VISUAL", "EDITOR"}) {
    const auto command = environment(name);
    if (!command.empty()) return Editor(command);
  }
  throw CommandError("there is no editor to open; set VISUAL or EDITOR, such as EDITOR=nano");
}

std::vector<std::string> Editor::argumentsFor(const Path& file, uint64 line) const {
  const auto program = programOf(command_);
  const auto name = Platform::pathToUTF8(file), number = std::to_string(line);
  const bool isLineKnown = line != 0;
  if (program == "code") {
    return isLineKnown ? std::vector<std::string>{"--wait", "--goto", name + ":" + number}
                       : std::vector<std::string>{"--wait", name};
  }
  if (program == "subl") return {"--wait", isLineKnown ? name + ":" + number : name};
  const bool takesPlus = std::find(kTakesPlus.begin(), kTakesPlus.end(), program) != kTakesPlus.end();
  if (isLineKnown && takesPlus) return {"+" + number, name};
  return {name};
}

void Editor::edit(const Path& file, uint64 line) const {
  int status = 0;
  const int error = Platform::System::runCommand(command_, argumentsFor(file, line), status);
  if (error != 0) refuse(command_, "cannot be started: " + std::generic_category().message(error));
  if (status != 0) refuse(command_, "ended with " + std::to_string(status));
}

}  // namespace Vantor::Tool

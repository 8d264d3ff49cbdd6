#include "Editing/Editor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"
#include "Terminal/Terminal.h"
#ifndef _WIN32
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

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

#ifdef _WIN32

/// @return the exit code.
int runAndWait(const std::string& command, const std::vector<std::string>& arguments) {
  std::string line = command;
  for (const auto& argument : arguments) line += " \"" + argument + "\"";
  return std::system(line.c_str());
}

#else

/// Leaves the signals of the keyboard to the editor.
class KeyboardSignals {
 public:
  KeyboardSignals() : interrupt_(std::signal(SIGINT, SIG_IGN)), quit_(std::signal(SIGQUIT, SIG_IGN)) {}
  ~KeyboardSignals() {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGQUIT, quit_);
  }
  KeyboardSignals(const KeyboardSignals&) = delete;
  KeyboardSignals& operator=(const KeyboardSignals&) = delete;

 private:
  void (*interrupt_)(int);
  void (*quit_)(int);
};

/// How a new program starts: with the usual effect of all signals.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    sigset_t all;
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

/// @return the exit code, or as shells have it, 128 and the signal that ended the program.
int waitFor(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int runAndWait(const std::string& command, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {"sh", "-c", command + " \"$@\"", command};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const KeyboardSignals ignored;
  const SpawnAttributes attributes;
  pid_t process = 0;
  const int error = ::posix_spawn(&process, "/bin/sh", nullptr, attributes.get(), pointers.data(), environ);
  if (error != 0) refuse(command, "cannot be started: " + std::generic_category().message(error));
  return waitFor(process);
}

#endif

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
  const int status = runAndWait(command_, argumentsFor(file, line));
  if (status != 0) refuse(command_, "ended with " + std::to_string(status));
}

}  // namespace Vantor::Tool

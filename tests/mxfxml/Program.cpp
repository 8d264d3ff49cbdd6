#include "Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "ScratchFolder.h"

extern char** environ;

namespace Vantor::Tool {

namespace {

class FileActions {
 public:
  FileActions() { posix_spawn_file_actions_init(&actions_); }
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;

  void open(int descriptor, const std::string& path, int mode) {
    posix_spawn_file_actions_addopen(&actions_, descriptor, path.c_str(), mode, 0600);
  }
  void close(int descriptor) { posix_spawn_file_actions_addclose(&actions_, descriptor); }
  void duplicate(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

/// A pipe whose reading end is closed.
class DeadPipe {
 public:
  DeadPipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::runtime_error("pipe");
    ::close(ends[0]);
    writer_ = ends[1];
  }
  ~DeadPipe() { ::close(writer_); }
  DeadPipe(const DeadPipe&) = delete;
  DeadPipe& operator=(const DeadPipe&) = delete;
  int writer() const { return writer_; }

 private:
  int writer_;
};

int waitFor(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

pid_t start(std::vector<std::string> command, const FileActions& actions) {
  std::vector<char*> arguments;
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (posix_spawn(&child, arguments[0], actions.get(), nullptr, arguments.data(), environ) != 0) {
    throw std::runtime_error("cannot start " + command[0]);
  }
  return child;
}

Result runCommand(const std::vector<std::string>& command, Out out, Err err) {
  const ScratchFolder folder;
  const std::string outPath = folder.path("stdout");
  const std::string errPath = folder.path("stderr");
  const DeadPipe pipe;
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  if (out == Out::kCaptured) actions.open(STDOUT_FILENO, outPath, O_WRONLY | O_CREAT);
  if (out == Out::kFullDevice) actions.open(STDOUT_FILENO, "/dev/full", O_WRONLY);
  if (out == Out::kPipeWithoutReader) actions.duplicate(pipe.writer(), STDOUT_FILENO);
  if (out == Out::kClosed) actions.close(STDOUT_FILENO);
  if (err == Err::kCaptured) actions.open(STDERR_FILENO, errPath, O_WRONLY | O_CREAT);
  if (err == Err::kClosed) actions.close(STDERR_FILENO);
  const int exitCode = waitFor(start(command, actions));
  return {exitCode, out == Out::kCaptured ? readFile(outPath) : "", err == Err::kCaptured ? readFile(errPath) : ""};
}

/// @param err  a descriptor, or -1: a file in the folder.
pid_t startCaptured(const std::vector<std::string>& command, const ScratchFolder& streams, int err) {
  FileActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, streams.path("stdout"), O_WRONLY | O_CREAT);
  writeFile(streams.path("stderr"), "");
  if (err < 0) actions.open(STDERR_FILENO, streams.path("stderr"), O_WRONLY);
  if (err >= 0) actions.duplicate(err, STDERR_FILENO);
  return start(command, actions);
}

std::vector<std::string> programWith(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {programPath()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

}  // namespace

std::string programPath() {
  const char* path = std::getenv("VANTOR_MXFXML");
  return path != nullptr ? path : VANTOR_MXFXML;
}

Result run(const std::vector<std::string>& arguments, Out out, Err err) {
  return runCommand(programWith(arguments), out, err);
}

Result runLimited(const std::string& limit, const std::vector<std::string>& arguments) {
  return runScript(limit + " && exec \"$0\" \"$@\"", arguments);
}

Result runScript(const std::string& script, const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {"/bin/sh", "-c", script, programPath()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runCommand(command, Out::kCaptured, Err::kCaptured);
}

StartedProgram::StartedProgram(const std::vector<std::string>& arguments, int err)
    : streams_(std::make_unique<ScratchFolder>()), process_(startCaptured(programWith(arguments), *streams_, err)) {}

StartedProgram::~StartedProgram() {
  if (!isWaitedFor_) kill();
}

bool StartedProgram::hasEnded() const {
  siginfo_t ended{};
  return ::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid != 0;
}

void StartedProgram::waitUntil(const std::function<bool()>& condition) const {
  while (!condition() && !hasEnded()) {
  }
}

void StartedProgram::kill() {
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  isWaitedFor_ = true;
}

void StartedProgram::stop() const {
  siginfo_t stopped{};
  ::kill(process_, SIGSTOP);
  ::waitid(P_PID, static_cast<id_t>(process_), &stopped, WSTOPPED | WEXITED | WNOWAIT);
}

void StartedProgram::send(int signal) const { ::kill(process_, signal); }

Result StartedProgram::resume() {
  ::kill(process_, SIGCONT);
  isWaitedFor_ = true;
  const int exitCode = waitFor(process_);
  return {exitCode, readFile(streams_->path("stdout")), readFile(streams_->path("stderr"))};
}

std::string sample(const std::string& name) { return std::string(VANTOR_TEST_DATA_DIR) + "/" + name; }

}  // namespace Vantor::Tool

#include "Terminal/Question.h"

#include <cctype>
#include <csignal>
#include <cstdio>

#include "Terminal/ErrorText.h"
#include "Terminal/Terminal.h"
#ifndef _WIN32
#include <sys/select.h>
#include <unistd.h>
#endif

namespace Vantor::Tool {

namespace {

#ifdef _WIN32
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGBREAK};
#else
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
#endif

volatile std::sig_atomic_t came = 0;

extern "C" void noteSignal(int) { came = 1; }

#ifdef _WIN32

int nextCharacter() { return std::getchar(); }

#else

/// Lets signals come at no other moment than while it waits, so that none is missed.
void waitForInput() {
  sigset_t postponed, before;
  ::sigemptyset(&postponed);
  for (const int signal : kSignals) ::sigaddset(&postponed, signal);
  ::sigprocmask(SIG_BLOCK, &postponed, &before);
  fd_set input;
  FD_ZERO(&input);
  FD_SET(STDIN_FILENO, &input);
  if (came == 0) ::pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &before);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
  PostponedSignals::throwIfAny();
}

int nextCharacter() {
  waitForInput();
  char character = 0;
  return ::read(STDIN_FILENO, &character, 1) == 1 ? static_cast<unsigned char>(character) : EOF;
}

#endif

/// The first letter of the next line; NUL at the end of the input.
char firstLetterOfLine() {
  const int first = nextCharacter();
  if (first == EOF) return '\0';
  for (int character = first; character != EOF && character != '\n';) character = nextCharacter();
  return static_cast<char>(std::tolower(first));
}

}  // namespace

bool canAsk() { return isTerminal(stdin) && isTerminal(stderr); }

char ask(const std::string& question, const std::string& answers) {
  for (;;) {
    PostponedSignals::throwIfAny();
    std::fputs((question + " ").c_str(), stderr);
    std::fflush(stderr);
    const char answer = firstLetterOfLine();
    PostponedSignals::throwIfAny();
    if (answer == '\0') throw CommandError("the question has no answer; nothing is written");
    if (answers.find(answer) != std::string::npos) return answer;
  }
}

PostponedSignals::PostponedSignals() {
  came = 0;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    before_[i] = std::signal(kSignals[i], noteSignal);
    if (before_[i] == SIG_IGN) std::signal(kSignals[i], SIG_IGN);
  }
}

PostponedSignals::~PostponedSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    if (before_[i] != SIG_ERR) std::signal(kSignals[i], before_[i]);
  }
}

void PostponedSignals::throwIfAny() {
  if (came != 0) throw CommandError("interrupted; nothing is written");
}

}  // namespace Vantor::Tool

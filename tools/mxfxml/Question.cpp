#include "Question.h"

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include "ErrorText.h"
#include "Terminal.h"

namespace Vantor::Tool {

namespace {

#ifdef _WIN32
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGBREAK};
void endCallsOf(int) {}
#else
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
/// A signal that is caught ends a read instead of being followed by its rest.
void endCallsOf(int signal) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  action.sa_flags &= ~SA_RESTART;
  ::sigaction(signal, &action, nullptr);
}
#endif

volatile std::sig_atomic_t came = 0;

extern "C" void noteSignal(int) { came = 1; }

/// The first letter of the next line; NUL at the end of the input.
char firstLetterOfLine() {
  int first = '\0';
  int character = std::getchar();
  if (character == EOF) return '\0';
  for (first = character; character != EOF && character != '\n'; character = std::getchar()) {
  }
  return static_cast<char>(std::tolower(static_cast<unsigned char>(first)));
}

}  // namespace

bool canAsk() { return isTerminal(stdin) && isTerminal(stderr); }

char ask(const std::string& question, const std::string& answers) {
  for (const int signal : kSignals) endCallsOf(signal);
  for (;;) {
    PostponedSignals::throwIfAny();
    std::fputs((question + " ").c_str(), stderr);
    std::fflush(stderr);
    const char answer = firstLetterOfLine();
    PostponedSignals::throwIfAny();
    if (answer == '\0') return answers.back();
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

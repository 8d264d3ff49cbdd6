#include "Terminal/Question.h"

#include <cctype>
#include <csignal>
#include <cstdio>

#include "Core/Platform/System.h"
#include "Terminal/ErrorText.h"
#include "Terminal/Terminal.h"

namespace Vantor::Tool {

namespace {

const std::array kSignals = {SIGINT, SIGTERM, Platform::System::closingSignal()};

volatile std::sig_atomic_t came = 0;

extern "C" void noteSignal(int) { came = 1; }

int nextCharacter() {
  Platform::System::waitForInput({kSignals.begin(), kSignals.end()}, came);
  PostponedSignals::throwIfAny();
  return Platform::System::readCharacter();
}

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

#pragma once

#include <array>

#include "Core/MXF/HeaderMetadataReplacement.h"

namespace Vantor::Tool {

/// While it lives, a signal that asks the program to end (an interrupt of the user, SIGTERM, a terminal that is closed)
/// waits: in a copy until its progress is told next, which ends it so that nothing is left behind; otherwise until this
/// object goes, and then does what it always does. Signals that were ignored stay ignored. There is one at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// The progress, which throws CommandError when a signal waits. Of use as long as this object.
  MXF::Progress stopping(MXF::Progress progress);

 private:
  using Handler = void (*)(int);
  struct Watched {
    int signal;
    Handler before;
  };
  static Watched watch(int signal);

  std::array<Watched, 3> watched_;
  bool isStopped_ = false;
};

}  // namespace Vantor::Tool

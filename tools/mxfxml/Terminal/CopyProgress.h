#pragma once

#include <array>

#include "Core/MXF/HeaderMetadataReplacement.h"

namespace Vantor::Tool {

/// Shows the progress of a copy on standard error, if that is a terminal.
///
/// Postpones signals that ask the program to end (an interrupt of the user, SIGTERM, a terminal that is closed). While
/// a copy is written, the next report of progress cancels it, so that nothing is left behind; otherwise a signal takes
/// effect when this object is destroyed. Signals that were ignored stay ignored. Only one object may exist at a time.
class CopyProgress {
 public:
  CopyProgress();
  ~CopyProgress();
  CopyProgress(const CopyProgress&) = delete;
  CopyProgress& operator=(const CopyProgress&) = delete;

  /// To be called while a copy is written. Throws CommandError when a signal waits. It must not outlive this object.
  MXF::Progress progress();
  /// Whether a signal waits.
  bool isInterrupted() const;

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

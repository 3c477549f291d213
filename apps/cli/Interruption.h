// apps/cli/Interruption.h - signals that ask the program to end while it writes something.
#pragma once

namespace hv::cli {

/// While one lives, the first of SIGINT, SIGTERM and SIGHUP is noted instead of ending the program,
/// so that work in progress can be undone; the same one again ends it at once. Signals that the
/// parent process wants ignored stay ignored. One at a time.
class Interruption final {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// The signal that was noted in this process; 0: none.
  [[nodiscard]] static int Caught();
  /// Ends the process as that signal would have done.
  [[noreturn]] static void EndByIt();
};

}  // namespace hv::cli

// apps/cli/Interruption.h - signals that ask the program to end while it writes something.
#pragma once

namespace hv::cli {

/// How a verb that writes takes such signals.
class Interruption final {
 public:
  Interruption() = delete;

  /// From now on the first of SIGINT, SIGTERM and SIGHUP is noted instead of ending the program, so
  /// that work in progress can be undone; the same one again ends it at once. It stays so to the
  /// end: a signal that comes when the work is done must not report it as undone. Signals that the
  /// parent process wants ignored stay ignored.
  static void Watch();
  /// The signal that was noted in this process; 0: none.
  [[nodiscard]] static int Caught();
  /// Ends the process as that signal would have done.
  [[noreturn]] static void EndByIt();
};

}  // namespace hv::cli

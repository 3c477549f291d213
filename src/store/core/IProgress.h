// store/core/IProgress.h - how far long work is, told to somebody who may stop it.
#pragma once

#include <cstdint>

namespace hv::vex {

/// Given by the caller of an operation, borrowed for the call. Not counted.
class IProgress {
 public:
  /// Called on the caller's thread, many times a second while the work goes on; whoever draws
  /// something looks at the clock first.
  /// \param total  of what `done` counts up to; 0: unknown. Neither is bound to a unit.
  /// \return non-zero: go on. 0: stop; the operation then leaves everything as it found it and
  ///         throws kCancelled. Throws nothing.
  virtual std::int32_t OnProgress(std::uint64_t done, std::uint64_t total) = 0;

 protected:
  ~IProgress() = default;
};

}  // namespace hv::vex

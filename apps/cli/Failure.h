// apps/cli/Failure.h - why a command failed: one line for standard error.
#pragma once

#include <stdexcept>
#include <string>

namespace hv::cli {

/// What, where, why; ends the program with exit code 1.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& line) : std::runtime_error(line) {}
};

}  // namespace hv::cli

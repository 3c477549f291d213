// apps/cli/Terminal.h - what people see: text widths, a progress bar.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hv::cli {

/// How many columns a UTF-8 text takes on a terminal: wide characters two, combining ones none.
std::size_t DisplayWidth(std::string_view text);

/// A bar on standard error, redrawn at most ten times a second; silent if that is no terminal.
class ProgressBar final {
 public:
  explicit ProgressBar(std::string label);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Show(std::uint64_t done, std::uint64_t total);

 private:
  void Clear();
  std::string m_label;
  bool m_isTerminal;
  bool m_isDrawn = false;
  std::chrono::steady_clock::time_point m_last{};
};

}  // namespace hv::cli

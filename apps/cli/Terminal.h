// apps/cli/Terminal.h - what people see: text widths, a progress bar.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/core/IProgress.h"

namespace hv::cli {

/// How many columns a UTF-8 text takes on a terminal: wide characters two, combining ones none.
std::size_t DisplayWidth(std::string_view text);

/// The text with blanks for tabs, line ends and whatever else a terminal would obey.
std::string OneLine(std::string text);

/// A bar on standard error, redrawn at most ten times a second; silent if that is no terminal. As
/// the watcher of an engine's operation it also stops that when the program was told to end.
class ProgressBar final : public vex::IProgress {
 public:
  explicit ProgressBar(std::string label);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Show(std::uint64_t done, std::uint64_t total);

  // IProgress
  std::int32_t OnProgress(std::uint64_t done, std::uint64_t total) override;

 private:
  void Clear();
  std::string m_label;
  bool m_isTerminal;
  bool m_isDrawn = false;
  std::chrono::steady_clock::time_point m_last{};
};

}  // namespace hv::cli

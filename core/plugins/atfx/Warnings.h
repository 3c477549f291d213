// core/plugins/atfx/Warnings.h - what was odd in a file but could be read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace hv::vex::engine::atfx {

/// Collects warnings, each text once and only so many: a hostile file can be odd in every line.
class Warnings {
 public:
  static constexpr std::size_t kMost = 200;

  void Add(std::u16string text) {
    if (m_lines.size() > kMost) return;
    if (!m_known.insert(text).second) return;
    m_lines.push_back(m_lines.size() < kMost ? std::move(text) : u"more of this kind left out");
  }
  [[nodiscard]] const std::vector<std::u16string>& Lines() const { return m_lines; }

 private:
  std::vector<std::u16string> m_lines;
  std::unordered_set<std::u16string> m_known;
};

}  // namespace hv::vex::engine::atfx

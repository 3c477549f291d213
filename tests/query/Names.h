// query/Names.h - a collection of conditions that has nothing but names.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "query/logic/LogicParser.h"

namespace hv::vex::test {

class Names final : public IConditionNames {
 public:
  explicit Names(std::vector<std::u16string_view> names) : m_names(std::move(names)) {}
  [[nodiscard]] bool HasName(std::u16string_view name) const override {
    return std::find(m_names.begin(), m_names.end(), name) != m_names.end();
  }
  [[nodiscard]] std::size_t GetNameCount() const override { return m_names.size(); }
  [[nodiscard]] WString GetName(std::size_t index) const override { return m_names[index]; }

 private:
  std::vector<std::u16string_view> m_names;
};

}  // namespace hv::vex::test

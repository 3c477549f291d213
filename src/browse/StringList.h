// browse/StringList.h - the list of texts that configurations hand out.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include <storefabric/IBrowseConfig.h>

#include "cor/Counted.h"

namespace hv::vex {

class StringList final : public cor::Counted<IStringList> {
 public:
  StringList() = default;

  // IStringList
  std::uint64_t GetCount() override { return m_texts.size(); }
  void GetText(std::uint64_t index, WString& text) override {
    if (index < m_texts.size()) {
      text = m_texts[static_cast<std::size_t>(index)];
    } else {
      text.clear();
    }
  }

  void Append(std::u16string_view text) { m_texts.emplace_back(text); }
  /// Removes the first text that is exactly this one and closes the gap.
  void Remove(std::u16string_view text) {
    for (auto at = m_texts.begin(); at != m_texts.end(); ++at) {
      if (at->EqualsExact(text)) {
        m_texts.erase(at);
        return;
      }
    }
  }

 private:
  ~StringList() override = default;

  std::vector<WString> m_texts;
};

}  // namespace hv::vex

// store/collections/SuffixCounters.h - how a name that is taken gets its number.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <map>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex::easyImpl {

/// Counts, per requested name, how many times it has had to be changed.
class SuffixCounters {
 public:
  static constexpr std::u16string_view kDefaultName = u"NoName";

  SuffixCounters() { m_counters.emplace(kDefaultName, 1U); }

  /// The requested name if it is free, otherwise the name, "_" and a number.
  /// \param isTaken  tells whether a name is in use
  template <std::predicate<std::u16string_view> IsTaken>
  WString MakeUnique(std::u16string_view requested, IsTaken isTaken) {
    WString result = requested;
    while (isTaken(result.view())) {
      const auto counter = m_counters.find(requested);
      if (counter == m_counters.end()) {
        result = Numbered(requested, 1);
        m_counters.emplace(requested, 1U);
      } else {
        // The old value is written, so "A_1" is tried a second time before "A_2". Kept: which
        // numbers later names get depends on it.
        result = Numbered(requested, counter->second);
        ++counter->second;
      }
    }
    return result;
  }

  /// The counter of a requested name; 0 if it never had to be changed.
  [[nodiscard]] std::uint32_t CounterOf(std::u16string_view requested) const {
    const auto found = m_counters.find(requested);
    return found != m_counters.end() ? found->second : 0;
  }

 private:
  static WString Numbered(std::u16string_view name, std::uint32_t number) {
    std::array<char, 10> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    WString result = name;
    result += u'_';
    for (const char* p = digits.data(); p != end; ++p) result += static_cast<char16_t>(*p);
    return result;
  }

  std::map<WString, std::uint32_t, cor::ExactLess> m_counters;
};

}  // namespace hv::vex::easyImpl

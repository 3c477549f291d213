// cor/NoCaseOrder.cpp - the order of strings that ignores case.
#include <storefabric/WString.h>

#include "cor/Exceptions.h"

#include <unicode/ucol.h>

#include <algorithm>
#include <array>

namespace hv::cor {

namespace {

using Ranks = std::array<std::uint8_t, 128>;

constexpr std::uint8_t kIgnored = 0;

/// The place of each ASCII character in the root collation. No ASCII character takes part in a
/// contraction with another one, and none has an accent weight, so these places alone give the
/// order.
constexpr Ranks MakeRanks() {
  constexpr std::string_view kOrder =
      "\t\n\v\f\r _-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$0123456789abcdefghijklmnopqrstuvwxyz";
  Ranks ranks{};
  std::uint8_t rank = kIgnored;
  for (const char c : kOrder) {
    ranks[static_cast<unsigned char>(c)] = ++rank;
    if (c >= 'a' && c <= 'z') ranks[static_cast<unsigned char>(c - 'a' + 'A')] = rank;
  }
  return ranks;
}
constexpr Ranks kRanks = MakeRanks();

/// Neither a zero nor beyond ASCII.
constexpr bool IsPlain(char16_t unit) { return unit != 0 && unit < 128; }

bool IsPlain(std::u16string_view text) {
  return std::ranges::all_of(text, [](char16_t unit) { return IsPlain(unit); });
}

constexpr int Sign(std::int64_t value) { return value < 0 ? -1 : value > 0 ? 1 : 0; }

/// Orders two plain texts. False if one of them turns out not to be plain.
bool ComparePlain(std::u16string_view a, std::u16string_view b, int* order) {
  std::size_t i = 0;
  std::size_t j = 0;
  for (;;) {
    while (i < a.size() && IsPlain(a[i]) && kRanks[a[i]] == kIgnored) ++i;
    while (j < b.size() && IsPlain(b[j]) && kRanks[b[j]] == kIgnored) ++j;
    if (i == a.size() || j == b.size()) break;
    if (!IsPlain(a[i]) || !IsPlain(b[j])) return false;
    if (const int difference = kRanks[a[i]] - kRanks[b[j]]; difference != 0) {
      *order = Sign(difference);
      // What follows can't change the order of plain texts, but a zero or an accent there changes
      // the rule.
      return IsPlain(a.substr(i)) && IsPlain(b.substr(j));
    }
    ++i;
    ++j;
  }
  *order = static_cast<int>(i < a.size()) - static_cast<int>(j < b.size());
  return IsPlain(a.substr(i)) && IsPlain(b.substr(j));
}

/// One collator for the life of the module. It is never closed: nothing may run at unloading.
UCollator* RootCollator() {
  static UCollator* const collator = [] {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* opened = ucol_open("", &status);
    if (U_FAILURE(status)) throw exception::InvalidLocale();
    ucol_setStrength(opened, UCOL_SECONDARY);
    return opened;
  }();
  return collator;
}

int Collate(std::u16string_view a, std::u16string_view b) {
  // The collator counts in 32 bits; a longer text is ordered by as much of it as can be counted.
  constexpr std::size_t kMost = 0x7FFFFFFF;
  return static_cast<int>(
      ucol_strcoll(RootCollator(), a.data(), static_cast<std::int32_t>(std::min(a.size(), kMost)),
                   b.data(), static_cast<std::int32_t>(std::min(b.size(), kMost))));
}

int CompareUnits(std::u16string_view a, std::u16string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    int order = 0;
    if (!ComparePlain(a.substr(i, 1), b.substr(i, 1), &order)) {
      order = Collate(a.substr(i, 1), b.substr(i, 1));
    }
    if (order != 0) return order;
  }
  return static_cast<int>(a.size() > b.size()) - static_cast<int>(a.size() < b.size());
}

}  // namespace

int CompareNoCase(std::u16string_view a, std::u16string_view b) {
  if (a == b) return 0;
  int order = 0;
  if (ComparePlain(a, b, &order)) return order;
  if (a.find(u'\0') != a.npos || b.find(u'\0') != b.npos) return CompareUnits(a, b);
  return Collate(a, b);
}

}  // namespace hv::cor

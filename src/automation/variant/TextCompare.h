// automation/variant/TextCompare.h - the order of texts inside variants.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace hv::automation {

/// Below 0, 0 or above 0: the order of two texts without regard to case, by word sort. Blanks come
/// first, then punctuation, symbols, digits one by one, letters. Hyphens, apostrophes and control
/// characters weigh nothing until all else is equal ("coop" < "co-op" < "coops"). Accents count
/// after all letters. Zeros inside a text and characters without weight are skipped.
int CompareTextPlatform(std::u16string_view a, std::u16string_view b);

/// The beginning of an ASCII text as a number: of two texts that have different ones, the one with
/// the lower number comes first. Nothing for other texts.
std::optional<std::uint64_t> WordSortPrefix(std::u16string_view text);

}  // namespace hv::automation

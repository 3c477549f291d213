// automation/variant/TextCompare.h - the order of texts inside variants.
#pragma once

#include <string_view>

namespace hv::automation {

/// Below 0, 0 or above 0: the order of two texts without regard to case, by word sort. Blanks come
/// first, then punctuation, symbols, digits one by one, letters. Hyphens, apostrophes and control
/// characters weigh nothing until all else is equal ("coop" < "co-op" < "coops"). Accents count
/// after all letters. Zeros inside a text and characters without weight are skipped.
int CompareTextPlatform(std::u16string_view a, std::u16string_view b);

}  // namespace hv::automation

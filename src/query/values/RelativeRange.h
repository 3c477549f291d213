// query/values/RelativeRange.h - date ranges told relative to now, such as the last seven days.
// A keyword is stored, a local name from the string table is shown; both are taken everywhere, and
// both are compared exactly.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <storefabric/WString.h>

#include "automation/StringTable.h"
#include "automation/variant/VariantTime.h"

namespace hv::vex {

using automation::StringTable;
using automation::SystemTime;

/// The keyword of a keyword or local name, or nothing.
std::optional<std::u16string_view> FindRelativeKeyword(
    std::u16string_view text, const StringTable& texts = StringTable::Default());
/// True for a keyword and for a local name.
bool IsRelativeKeyword(std::u16string_view text, const StringTable& texts = StringTable::Default());
/// The local name of a keyword; any other text as it is.
WString KeywordToLocalName(std::u16string_view text,
                           const StringTable& texts = StringTable::Default());
/// The keyword of a local name; any other text as it is.
WString LocalNameToKeyword(std::u16string_view text,
                           const StringTable& texts = StringTable::Default());

struct DateRange {
  SystemTime from;
  SystemTime to;
};

/// The range of a keyword or local name. Today and yesterday are whole days, 00:00:00 to 23:59:59.
/// The last 7, 14 or 30 days reach from 00:00:00 that many days ago to now; any other text stands
/// for 0 days of that kind. \param now  the local time, a valid date; `LocalNow` outside of tests
DateRange RelativeRange(std::u16string_view text, const SystemTime& now,
                        const StringTable& texts = StringTable::Default());

/// The clock in local time, to the second.
SystemTime LocalNow();

/// The greatest number of days between two dates.
inline constexpr std::int64_t kMaxDayInterval = 3615897;

/// The date so many days later, with its time of day as it was.
/// \return nothing for more days than `kMaxDayInterval` to either side, or a date outside the years
///         0 to 9999
std::optional<SystemTime> AddDays(const SystemTime& date, std::int64_t days);

}  // namespace hv::vex

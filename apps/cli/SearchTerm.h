// apps/cli/SearchTerm.h - one condition of a search as people write it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "storefabric/Variant.h"

namespace hv::cli {

/// "Entity.Property OP value" in its parts, without blanks around them. Throws Failure with what is
/// missing.
struct SearchTerm {
  std::string path;  ///< "Entity.Property", or "Property" of what is searched for
  std::string op;    ///< =, <>, <, <=, > or >=; # for a range relative to today ("#LastSevenDays")
  std::string value;
};
SearchTerm ParseSearchTerm(std::string_view text);

/// A date that is written as "2025-03-07", "2025-03-07 14:30[:00]", with a "T" instead of the
/// blank, or in digits alone; nothing for any other text and for a date that there isn't.
std::optional<Variant> ParseDate(std::string_view text);

}  // namespace hv::cli

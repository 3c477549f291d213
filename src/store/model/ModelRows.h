// store/model/ModelRows.h - the error rows that the members of the model share.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::vex {

/// The standard rows alone, with the member's own name in messages.
inline constexpr auto kStandardErrors = automation::Errors(u"");

}  // namespace hv::vex

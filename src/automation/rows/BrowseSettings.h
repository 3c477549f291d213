// automation/rows/BrowseSettings.h - the messages of `CBrowseSettingsInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kBrowseSettingsRootElements = Errors(u"RootElements");
inline constexpr auto kBrowseSettingsRootEntity = Errors(u"RootEntity");

/// The standard rows name this member after the property, the others by its own name.
inline constexpr auto kBrowseSettingsGetBrowseEntity =
    Errors(u"RootEntity", On(VEX_E_FOREIGN_ELEMENT, 335),
           On(E_INVALIDARG, 222, Literal(u"Element<DataStore>"), Literal(u"GetBrowseEntity"),
              Literal(u"Element")));

inline constexpr auto kBrowseSettingsGetParent =
    Errors(u"GetParent", On(VEX_E_FOREIGN_ELEMENT, 335),
           On(E_INVALIDARG, 222, Literal(u"Element<DataStore>"), Literal(u"GetParent"),
              Literal(u"Element")));

inline constexpr auto kBrowseSettingsGetChildren =
    Errors(u"GetChildren", On(VEX_E_FOREIGN_ELEMENT, 335),
           On(E_INVALIDARG, 222, Literal(u"Element<DataStore>"), Literal(u"GetChildren"),
              Literal(u"Element")));

}  // namespace hv::automation::rows

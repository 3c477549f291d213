// automation/conv/ValueText.h - variants of any type as text, the way files and streams store them.
#pragma once

#include <string_view>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "util/conv/TimeValue.h"

namespace hv::util::conv {

/// The time in a variant: a date, or an object with the face of a time. A by-reference variant is
/// followed once.
/// \return S_OK; E_POINTER; E_INVALIDARG for an object that isn't a time, or none; E_NOTIMPL for
///         every other type; what the object answers.
Result TimeOfVariant(const Variant& value, TimeValue* time);

/// The 23 digits of the time in a variant; codes as `TimeOfVariant`.
Result TimeTextOfVariant(const Variant& value, WString* text);

/// A value as stored text: nothing for empty and null, integers in decimal (a VT_UI1 as a signed
/// byte), reals with up to 40 digits and a point in any case, times by their 23 digits, "true" and
/// "false", texts as they are. By-reference variants are followed.
/// \return S_OK; E_POINTER; E_NOTIMPL, with `*text` untouched, for every other type; E_INVALIDARG
///         for an object that isn't a time.
Result TextOfVariant(const Variant& value, WString* text);

}  // namespace hv::util::conv

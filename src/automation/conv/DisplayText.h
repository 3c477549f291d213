// automation/conv/DisplayText.h - variants of any type as people read them.
#pragma once

#include <string>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::util::conv {

class ITimeFormat;

/// The shortest decimal form that reads back as the same number, "." as the separator, with an
/// exponent only below 1e-5 and from 1e16 on. Infinities and NaN are "INF", "-INF" and "NaN".
std::string ShortestText(double value);
std::string ShortestText(float value);

/// A value as cells and names show it: integers of all sizes in decimal, reals in their shortest
/// form, "true" and "false", texts as they are, nothing for empty and null. By-reference variants
/// are followed.
/// \param timeFormat  how times are printed; null for their 23 digits
/// \return S_OK; E_POINTER; E_NOTIMPL, with `*text` untouched, for every other type; E_INVALIDARG
///         for an object that isn't a time.
Result DisplayTextOfVariant(const Variant& value, ITimeFormat* timeFormat, WString* text);

}  // namespace hv::util::conv

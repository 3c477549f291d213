// core/plugins/sql/TextKey.h - texts on their way into a database and back.
//
// A text stands in its column as UTF-8. Beside it stands a key wherever that differs from the text:
// the form in which it is compared. Keys of texts are folded, and pairs of surrogates are written
// as two units of three bytes each, so that the order of bytes is the order of UTF-16 code units.
// Keys of dates are their first 14 digits.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/model/OdsType.h"

namespace hv::vex::engine::sql {

/// UTF-8; an unpaired surrogate is kept as its three bytes.
std::string ToStored(std::u16string_view text);
void AppendStored(std::u16string_view text, std::string& out);
/// The same with every surrogate on its own, as keys have it.
std::string ToKeyBytes(std::u16string_view text);
/// Reads either form; bytes that are neither become U+FFFD.
void AppendUtf16(std::string_view stored, std::u16string& out);
std::u16string FromStored(std::string_view stored);

/// True for types that a key is kept for.
bool HasKey(OdsType type);
/// The key of a text of that type; nothing if it is `stored` itself. A date that isn't one has the
/// key of an empty text.
std::optional<std::string> KeyOf(OdsType type, std::u16string_view text, std::string_view stored);
/// The key of a constant: what `coalesce(key, text)` is compared with.
std::string FoldedKey(std::u16string_view text);
/// The first key behind all keys that begin with `prefix`; empty if there is none.
std::string BehindPrefix(std::string prefix);
/// -1, 0, 1: stored texts in the order of UTF-16 code units.
int CompareStored(std::string_view a, std::string_view b);

/// A date as other tools store it (ISO 8601 with or without time and zone letter) as digits; digits
/// stay as they are.
std::u16string DateDigits(std::u16string_view text);

}  // namespace hv::vex::engine::sql

// core/query/QueryText.h - query texts put together for the tests, and queries told in short.
#pragma once

#include <string>
#include <string_view>

#include "core/query/ParsedQuery.h"

namespace hv::vex::engine::test {

/// The text around the functions `body`; the body starts on line 5. A `head` stands in front of the
/// entity, `limit` is the attribute as written.
std::u16string Text(std::u16string_view body, std::u16string_view entity = u"MeaResult",
                    std::u16string_view limit = u"", std::u16string_view head = u"");
/// A function with an identifier and a constant; `attributes` go into the constant's tag.
std::u16string Function(std::u16string_view name, std::u16string_view identifier,
                        std::u16string_view constant, std::u16string_view attributes = u"");
std::u16string Function(std::u16string_view name, std::u16string_view body);

/// The constant's attributes that mark a text.
inline constexpr std::u16string_view kWild = u" wildcards=\"?*\" caseinsensitive=\"yes\"";
inline constexpr std::u16string_view kNoCase = u" caseinsensitive=\"yes\"";

/// "AND(Name = 'a*'wi, Size > '3')"; w: wildcards, i: without regard to case.
std::string Describe(const ParsedNode& node);
/// "AND(Bench.Name = 'a*'wi, Size > 3)"; whole numbers bare, others with r in front; an instance
/// attribute is "{name = 'text'}" with what else the constant may be.
std::string Describe(const BoundNode& node, const Model& model);
std::string Describe(const ResolvedPath& path, const Model& model);

}  // namespace hv::vex::engine::test

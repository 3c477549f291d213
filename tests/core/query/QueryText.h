// core/query/QueryText.h - query texts put together for the tests, and queries told in short.
#pragma once

#include <string>
#include <string_view>

#include "core/query/ParsedQuery.h"
#include "store/core/Exception.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::test {

/// The text around the functions `body`, which starts on line 5; `limit` is the attribute as
/// written.
std::u16string Text(const std::u16string& body, const std::u16string& entity = u"MeaResult",
                    const std::u16string& limit = u"");
/// A function with an identifier and a constant; `attributes` go into the constant's tag.
std::u16string Function(const std::u16string& name, const std::u16string& identifier,
                        const std::u16string& constant, const std::u16string& attributes = u"");
std::u16string Function(const std::u16string& name, const std::u16string& body);

/// The constant's attributes that mark a text.
inline constexpr const char16_t* kWild = u" wildcards=\"?*\" caseinsensitive=\"yes\"";
inline constexpr const char16_t* kNoCase = u" caseinsensitive=\"yes\"";

/// "AND(Name = 'a*'wi, Size > '3')"; w: wildcards, i: without regard to case.
std::string Describe(const ParsedNode& node);
/// "AND(Bench.Name = 'a*'wi, Size > 3)"; whole numbers bare, others with r in front; an instance
/// attribute is "{name = 'text'}" with what else the constant may be.
std::string Describe(const BoundNode& node, const Model& model);
std::string Describe(const ResolvedPath& path, const Model& model);

/// "code message" of what an action throws; empty if it throws nothing.
template <class Action>
std::string Thrown(Action&& action) {
  try {
    action();
  } catch (const Exception& e) {
    return std::to_string(e.code) + " " + cor::ToUtf8(e.message);
  }
  return {};
}

}  // namespace hv::vex::engine::test

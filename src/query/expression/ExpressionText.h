// query/expression/ExpressionText.h - the parts that the text of a query expression is made of.
// The form is told in docs/formats/query-expression.md; every byte of it is frozen. Everything is
// added at the end of a text, so that a text grows in one go.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex {

/// How a constant is marked.
enum class ConstantKind : std::uint8_t {
  Plain,      ///< a number or a date
  NoCase,     ///< a text compared without regard to case
  Wildcards,  ///< the same with "?" and "*"
};

/// Everything before the functions.
/// \param returnType  stands as it is, marks included
/// \param uri         stands as it is, without quotes; left out if empty
/// \param limit       left out if 0
/// \param freeText    left out if empty
void AppendHead(WString& text, std::u16string_view returnType, std::u16string_view uri,
                std::int32_t limit, std::u16string_view freeText);
/// Everything behind the functions.
void AppendTail(WString& text);

void OpenFunction(WString& text, std::u16string_view name);
void CloseFunction(WString& text);
/// A whole function with an identifier and a constant.
void AppendComparison(WString& text, std::u16string_view op, std::u16string_view identifier,
                      ConstantKind kind, std::u16string_view constant);

}  // namespace hv::vex

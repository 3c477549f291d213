#include "apps/cli/Values.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace hv::cli {
namespace {

struct TypeText {
  std::int32_t code;
  const char* text;
};
constexpr TypeText kTypes[] = {
    {2, "short"},  {3, "long"},      {4, "longlong"},           {5, "byte"},
    {9, "float"},  {10, "double"},   {11, "boolean"},           {23, "string"},
    {24, "enum"},  {30, "date"},     {41, "externalreference"}, {101, "bytestring"},
    {102, "blob"}, {103, "complex"}, {104, "dcomplex"},         {0, "any"},
};

}  // namespace

std::string TypeName(std::int32_t code) {
  for (const TypeText& type : kTypes) {
    if (type.code == code) return type.text;
  }
  return std::to_string(code);
}

bool IsNumberType(std::int32_t code) {
  switch (code) {
    case 2:
    case 3:
    case 4:
    case 5:
    case 9:
    case 10:
      return true;
    default:
      return false;
  }
}

std::string ReadableDate(const std::string& digits) {
  constexpr std::size_t kEnds[] = {4, 6, 8, 10, 12, 14};
  constexpr std::string_view kSeparators = "-- ::.";
  std::string text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const auto* const end = std::find(std::begin(kEnds), std::end(kEnds), i);
    if (end != std::end(kEnds)) text += kSeparators[static_cast<std::size_t>(end - kEnds)];
    text += digits[i];
  }
  return text;
}

}  // namespace hv::cli

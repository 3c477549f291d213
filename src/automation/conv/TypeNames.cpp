// automation/conv/TypeNames.cpp - names of types for messages and diagnostics.
#include "automation/conv/TypeNames.h"

#include <algorithm>
#include <array>
#include <string>

#include <storefabric/DataType.h>

namespace hv::util::conv {

namespace {

using namespace vex;  // the names of the data types

template <class Number>
struct NamedNumber {
  Number number;
  std::u16string_view name;
};

constexpr std::array<NamedNumber<std::uint16_t>, 21> kVariantTypes{{
    {0, u"VT_EMPTY"},    {1, u"VT_NULL"},     {2, u"VT_I2"},    {3, u"VT_I4"},
    {4, u"VT_R4"},       {5, u"VT_R8"},       {6, u"VT_CY"},    {7, u"VT_DATE"},
    {8, u"VT_BSTR"},     {9, u"VT_DISPATCH"}, {11, u"VT_BOOL"}, {13, u"VT_UNKNOWN"},
    {14, u"VT_DECIMAL"}, {16, u"VT_I1"},      {17, u"VT_UI1"},  {18, u"VT_UI2"},
    {19, u"VT_UI4"},     {22, u"VT_INT"},     {23, u"VT_UINT"}, {36, u"VT_RECORD"},
    {8192, u"VT_ARRAY"},
}};

/// Only the types that messages are worded for; the other ones show as their number.
constexpr std::array<NamedNumber<std::int32_t>, 9> kDataTypes{{
    {eNoType, u"eNoType"},
    {eI16, u"eI16"},
    {eI32, u"eI32"},
    {eI64, u"eI64"},
    {eByte, u"eByte"},
    {eR32, u"eR32"},
    {eR64, u"eR64"},
    {eString, u"eString"},
    {eTime, u"eTime"},
}};

}  // namespace

std::u16string_view VariantTypeName(std::uint16_t type) {
  const auto plain = static_cast<std::uint16_t>(type & ~VT_BYREF);
  const auto* at = std::ranges::find(kVariantTypes, plain, &NamedNumber<std::uint16_t>::number);
  return at == kVariantTypes.end() ? u"unknown type" : at->name;
}

std::u16string_view VariantTypeName(const Variant& value) {
  return VariantTypeName(value.Dereferenced().Type());
}

WString DataTypeName(std::int32_t dataType) {
  const auto* at = std::ranges::find(kDataTypes, dataType, &NamedNumber<std::int32_t>::number);
  if (at != kDataTypes.end()) return WString(at->name);
  return cor::FromUtf8(std::to_string(dataType));
}

}  // namespace hv::util::conv

// automation/conv/DisplayText.cpp - variants of any type as people read them.
#include "automation/conv/DisplayText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "automation/Guards.h"
#include "automation/conv/ValueText.h"
#include "util/conv/TimeFormat.h"

namespace hv::util::conv {

namespace {

template <class Real>
std::string Shortest(Real value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  const auto magnitude = std::fabs(static_cast<double>(value));
  const bool isPlain = magnitude == 0 || (magnitude >= 1e-5 && magnitude < 1e16);
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 isPlain ? std::chars_format::fixed : std::chars_format::scientific)
                       .ptr;
  return std::string(text.data(), end);
}

}  // namespace

std::string ShortestText(double value) { return Shortest(value); }

std::string ShortestText(float value) { return Shortest(value); }

Result DisplayTextOfVariant(const Variant& value, ITimeFormat* timeFormat, WString* text) try {
  HV_RETURN_IF_NULL(text);
  const Variant& source = value.Dereferenced();
  switch (source.Type()) {
    case VT_I1:
    case VT_I8:
    case VT_INT:
      *text = cor::FromUtf8(std::to_string(source.AsInt64()));
      return S_OK;
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
      *text = cor::FromUtf8(std::to_string(source.AsUInt64()));
      return S_OK;
    case VT_R4:
      *text = cor::FromUtf8(ShortestText(static_cast<float>(source.AsDouble())));
      return S_OK;
    case VT_R8:
      *text = cor::FromUtf8(ShortestText(source.AsDouble()));
      return S_OK;
    case VT_DATE:
    case VT_DISPATCH: {
      if (!timeFormat) return TimeTextOfVariant(source, text);
      TimeValue time;
      HV_RETURN_IF_FAILED(TimeOfVariant(source, &time));
      timeFormat->Format(text, time.ToRecord());
      return S_OK;
    }
    default:
      return TextOfVariant(source, text);
  }
}
HV_CATCH_RETURN()

}  // namespace hv::util::conv

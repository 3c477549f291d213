// fuzz/VariantTextFuzz.cpp - texts in variants: conversion to every type and back, and their order.
// The input is UTF-16 in the order of bytes of this machine.
#include <storefabric/Variant.h>

#include <cstring>

#include "fuzz/Fuzz.h"

namespace {

using hv::Failed;
using hv::Variant;
using hv::VarOrder;

VarOrder OrderOf(const Variant& a, const Variant& b) {
  VarOrder order = VarOrder::Null;
  Require(!Failed(hv::CompareVariants(a, b, &order)));
  return order;
}

/// A number that came from a text must survive the way through its own text.
void CheckRoundTrip(const Variant& value, std::uint16_t type) {
  Variant text;
  Variant again;
  if (Failed(value.ChangeType(hv::VT_BSTR, &text))) return;
  Require(!Failed(text.ChangeType(type, &again)));
  if (type != hv::VT_DECIMAL) {
    Require(again.AsInt64() == value.AsInt64());
  } else {
    Require(OrderOf(value, again) == VarOrder::Equal);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::u16string units(size / 2, u'\0');
  std::memcpy(units.data(), data, units.size() * 2);
  const Variant text = Variant::Text(units);
  for (std::uint16_t type = hv::VT_I2; type <= hv::VT_UINT; ++type) {
    Variant value;
    if (Failed(text.ChangeType(type, &value))) {
      Require(value.IsEmpty());
      continue;
    }
    Require(value.Is(type));
    const bool isExact = type == hv::VT_I8 || type == hv::VT_UI8 || type == hv::VT_I4 ||
                         type == hv::VT_CY || type == hv::VT_DECIMAL;
    if (isExact) CheckRoundTrip(value, type);
  }
  const std::size_t half = units.size() / 2;
  const Variant a = Variant::Text(units.substr(0, half));
  const Variant b = Variant::Text(units.substr(half));
  const VarOrder order = OrderOf(a, b);
  const VarOrder reverse = OrderOf(b, a);
  Require(order == VarOrder::Equal ? reverse == VarOrder::Equal : order != reverse);
  Require(OrderOf(text, text) == VarOrder::Equal);
  return 0;
}

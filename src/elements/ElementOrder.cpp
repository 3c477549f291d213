// elements/ElementOrder.cpp - what lists of elements are sorted by.
#include "elements/ElementOrder.h"

#include <storefabric/Ref.h>

#include "elements/DateDigits.h"
#include "elements/IPropertyImpl.h"
#include "elements/IVEXElementImpl.h"

namespace hv::vex::easyImpl {

WString QualifiedName(IVEXElementImpl& element) {
  WString type;
  WString name;
  (void)element.GetType(&type);
  (void)element.GetName(&name);
  type += u'.';
  return type + name;
}

Variant SortValue(IVEXElementImpl& element, std::u16string_view property) {
  Ref<IPropertyCollectionImpl> properties;
  Ref<IPropertyImpl> found;
  Variant value;
  if (Failed(element.GetProperties(properties.Put())) || !properties ||
      Failed(properties->GetItemByName(property, found.Put())) || !found ||
      Failed(found->GetValue(&value))) {
    return Variant::Null();
  }
  return value;
}

bool IsSortedBefore(const Variant& a, const Variant& b) {
  const auto rank = [](const Variant& value) {
    return value.IsEmpty() || value.Is(VT_NULL) ? 2 : value.Is(VT_DATE);
  };
  const int rankA = rank(a);
  const int rankB = rank(b);
  if (rankA != rankB || rankA == 2) return rankA < rankB;
  // Dates before day 0 count their time backwards, so the plain numbers don't order them.
  if (rankA == 1) return DigitsOfDate(a.AsDouble()) < DigitsOfDate(b.AsDouble());
  VarOrder order = VarOrder::Equal;
  return !Failed(CompareVariants(a, b, &order)) && order == VarOrder::Less;
}

}  // namespace hv::vex::easyImpl

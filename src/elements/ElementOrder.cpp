// elements/ElementOrder.cpp - what lists of elements are sorted by.
#include "elements/ElementOrder.h"

#include <storefabric/Ref.h>

#include "automation/conv/ValueOrder.h"
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

std::vector<std::size_t> SortedPositions(const std::vector<Variant>& keys, bool ascending,
                                         ByValue) {
  std::vector<std::size_t> order = util::conv::AscendingOrder(keys);
  if (!ascending) std::ranges::reverse(order);
  return order;
}

}  // namespace hv::vex::easyImpl

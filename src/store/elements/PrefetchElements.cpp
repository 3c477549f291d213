// store/elements/PrefetchElements.cpp - many elements with their names, with one call to the
// engine.
#include <cstdint>
#include <limits>
#include <utility>

#include "automation/Guards.h"
#include "browse/IBrowseConfigEntityIntern.h"
#include "browse/RepresentedByParts.h"
#include "store/core/IInstance.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/elements/StoreElementImpl.h"

namespace hv::vex {

Result PrefetchElements(easyImpl::ISimplifiedStoreImpl& provider, IInstance* start,
                        std::u16string_view reference, std::u16string_view filter,
                        IBrowseConfigEntity* level, IStoreElementListImpl& list) try {
  const auto own = OwnSimplifiedStore(provider);
  HV_RETURN_CODE_IF(!own, E_UNEXPECTED);
  Ref<IRepresentedByPartsImpl> parts;
  if (const auto shown = QueryRef<IBrowseConfigEntityIntern>(level)) {
    HV_RETURN_IF_FAILED(shown->GetRepresentedByParts(parts.Put()));
  }
  if (!parts) parts = MakeRef<CRepresentedByPartsImpl>();  // no display names

  DisplayNameTable table;
  const Result rc = ReadDisplayNames(&own->Store(), start, reference, filter, parts.Get(), &table);
  HV_RETURN_CODE_IF(rc == E_NOTIMPL, E_UNEXPECTED);
  HV_RETURN_IF_FAILED(rc);

  const std::size_t rows = table.names.size();
  HV_RETURN_CODE_IF(rows > std::numeric_limits<std::int32_t>::max(), E_OUTOFMEMORY);
  HV_RETURN_IF_FAILED(list.Reserve(static_cast<std::int32_t>(rows)));
  own->Expect(rows);
  ElementKind kind;
  for (std::size_t row = 0; row < rows; ++row) {
    const auto instance = Ref<IInstance>::Adopt(table.values->GetInstance(row));
    if (!instance) continue;
    const Ref<CStoreElementImpl> element = own->ElementOf(*instance, kind);
    element->SetCachedName(std::move(table.names[row]));
    if (!table.displayNames[row].empty()) {
      element->SetCachedDisplayName(std::move(table.displayNames[row]));
    }
    HV_RETURN_IF_FAILED(list.Append(element.Get()));
  }
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex

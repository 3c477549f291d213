// store/elements/PrefetchElements.cpp - many elements with their names, with one call to the
// engine.
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "automation/Guards.h"
#include "browse/IBrowseConfigEntityIntern.h"
#include "browse/RepresentedByParts.h"
#include "store/core/IBulkReader.h"
#include "store/core/IInstance.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/elements/StoreElementImpl.h"

namespace hv::vex {

namespace {

class ElementMaker final : public IDisplayNameVisitor {
 public:
  ElementMaker(CSimplifiedDataStoreImpl& provider, IStoreElementListImpl& list)
      : m_provider(provider), m_list(list) {}

  Result OnRow(IValueTable& values, std::uint64_t row, std::u16string_view name,
               std::u16string_view displayName) override {
    if (row == 0) HV_RETURN_IF_FAILED(Expect(values.GetRowCount()));
    if (row % kAtOnce == 0) TakeInstances(values, row);
    const Ref<IInstance>& instance = m_instances[row % kAtOnce];
    if (!instance) return S_OK;
    const Ref<CStoreElementImpl> element = m_provider.ElementOf(*instance, m_kind);
    element->SetCachedName(name);
    if (!displayName.empty()) element->SetCachedDisplayName(displayName);
    return m_list.Append(element.Get());
  }

 private:
  static constexpr std::uint64_t kAtOnce = 256;

  /// Instances made one behind the other lie beside each other, which the tables that find them and
  /// their elements make use of.
  void TakeInstances(IValueTable& values, std::uint64_t first) {
    for (std::uint64_t i = 0; i < kAtOnce; ++i) {
      m_instances[i] = Ref<IInstance>::Adopt(values.GetInstance(first + i));
    }
  }
  Result Expect(std::uint64_t rows) {
    HV_RETURN_CODE_IF(rows > std::numeric_limits<std::int32_t>::max(), E_OUTOFMEMORY);
    m_provider.Expect(rows);
    return m_list.Reserve(static_cast<std::int32_t>(rows));
  }

  CSimplifiedDataStoreImpl& m_provider;
  IStoreElementListImpl& m_list;
  ElementKind m_kind;
  std::array<Ref<IInstance>, kAtOnce> m_instances;
};

}  // namespace

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
  ElementMaker maker(*own, list);
  const Result rc = VisitDisplayNames(&own->Store(), start, reference, filter, parts.Get(), maker);
  return rc == E_NOTIMPL ? E_UNEXPECTED : rc;
}
HV_CATCH_RETURN()

}  // namespace hv::vex

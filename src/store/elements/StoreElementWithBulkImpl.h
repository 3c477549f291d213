// store/elements/StoreElementWithBulkImpl.h - the element of a column of measured values.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <storefabric/Ref.h>

#include "store/core/IAttribute.h"
#include "store/elements/StoreElementImpl.h"

namespace hv::vex {

/// Reads and writes the values by index through the engine's own object, which holds them as it
/// likes; nothing is copied here.
class CStoreElementWithBulkImpl final : public CStoreElementImpl, public IStoreElementBulkImpl {
 public:
  using CStoreElementImpl::CStoreElementImpl;

  // IUnknown
  Result QueryInterface(const Iid& iid, void** out) override {
    return CStoreElementImpl::QueryInterface(iid, out);
  }
  std::uint32_t AddRef() override { return CStoreElementImpl::AddRef(); }
  std::uint32_t Release() override { return CStoreElementImpl::Release(); }

  // IVEXElementImpl
  Result IsKindOf(std::u16string_view type, std::int32_t* isKindOf) override;
  Result Refresh() override;

  // IStoreElementImpl
  Result GetBulkInterface(IStoreElementBulkImpl** bulk) override;

  // IStoreElementBulkImpl
  Result GetValue(std::int32_t index, Variant* value) override;
  Result SetValue(std::int32_t index, const Variant& value) override;
  Result GetFlag(std::int32_t index, std::int32_t* flag) override;
  Result SetFlag(std::int32_t index, std::int32_t flag) override;
  Result GetSize(std::int32_t* size) override;
  Result GetDataType(enumDataType* dataType) override;
  Result SetDataType(std::int32_t dataType) override;
  Result SetValues(IUnknown* source) override;

 private:
  ~CStoreElementWithBulkImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// The first line of every operation on values: reads what isn't read yet.
  Result ReadBulk();
  [[nodiscard]] bool IsIndex(std::int32_t index) const { return index >= 0 && index < m_size; }

  // These throw what the engine throws.
  /// The number of values by their representation; 0 for none.
  [[nodiscard]] std::int32_t ReadSize() const;
  /// The type that the measurement quantity tells; eNoType if it tells none.
  Result ReadQuantityType(enumDataType* dataType) const;

  bool m_isRead = false;
  Ref<IAttribute> m_values;           // null: no values to reach by index
  enumDataType m_dataType = eNoType;  // of the values, or given to an empty column
  std::int32_t m_size = 0;
};

}  // namespace hv::vex

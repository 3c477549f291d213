// query/conditions/DataStoreConditionImpl.h - one condition of a query that is bound to a store.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>

#include "query/conditions/ConditionImpl.h"

namespace hv::vex::easyImpl {

/// A condition whose names are resolved in the model of a store. It can be read without a model as
/// well, and then keeps the names that it had.
class CDataStoreConditionImpl : public CConditionImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::CDataStoreConditionImpl");

  /// Resolves the names; those that can't be resolved count as the store's own.
  /// \param model  null for a condition that isn't bound
  CDataStoreConditionImpl(std::u16string_view type, std::u16string_view property,
                          IConditionModelSource* model);
  /// With names that the caller has resolved.
  CDataStoreConditionImpl(std::u16string_view type, std::u16string_view property,
                          std::u16string_view internalType, std::u16string_view internalProperty,
                          IConditionModelSource* model);

  // IConditionImpl
  const WString& GetInternalProperty() override { return m_internalProperty; }
  const WString& GetInternalType() override { return m_internalType; }
  void CopyFields(IConditionImpl& source) override;

  /// Forgets the model; all names stay.
  void DetachFromModel();
  /// Moves to another model, or to the same one after a change.
  /// \param remap  takes type and property anew from the internal names; otherwise they stay, and
  ///               the internal names are taken anew
  /// \return S_OK; E_POINTER for a null model; E_UNEXPECTED if the internal names lead nowhere;
  ///         VEX_E_OTHER_STORE if type and property don't, or if the first value doesn't fit the
  ///         property. The condition is as before then, but for the model.
  Result ReattachToModel(IConditionModelSource* model, bool remap);

 protected:
  ~CDataStoreConditionImpl() override = default;

  void* FindFace(const Iid& iid) override;
  /// Resolves the names anew.
  void OnRenamed() override;
  /// The names must still be those of the store.
  Result CheckReadable() override;

 private:
  void TakeModel(IConditionModelSource* model);
  void ResolveOrKeep();
  /// Whether the first value fits a property of that type.
  bool FitsFirstValue(std::int32_t dataType);

  Ref<IConditionModelSource> m_model;
  WString m_internalType;
  WString m_internalProperty;
};

}  // namespace hv::vex::easyImpl

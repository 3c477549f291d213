// query/conditions/DataStoreConditionCollImpl.h - the conditions of a query that is bound to a
// store.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>

#include "query/conditions/ConditionCollImpl.h"
#include "query/conditions/DataStoreConditionImpl.h"

namespace hv::vex::easyImpl {

/// Conditions that are checked against the model of a store. Forms derive from it: every
/// change reaches one of the hooks `OnAdded`, `OnRemove`, `Clear`, `OnSwap` and `OnLogicChanged`.
/// All items are `CDataStoreConditionImpl`.
class CDataStoreConditionCollImpl : public CConditionCollImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::CDataStoreConditionCollImpl");

  /// \param owner  kept without a reference until `DetachFromOwner` or `Detach`; may be null
  /// \param model  null for conditions that aren't bound: they know no types then
  CDataStoreConditionCollImpl(IConditionOwner* owner, IConditionModelSource* model);

  // IConditionCollImpl
  bool IsDateProperty(std::u16string_view type, std::u16string_view property) override;
  bool IsValidType(std::u16string_view type) override;
  bool IsValidProperty(std::u16string_view type, std::u16string_view property) override;
  /// Texts take "=" and "<>", dates the operators that have a name for dates, all others the
  /// symbols but "#".
  bool IsOperatorSupported(std::u16string_view op, std::u16string_view type,
                           std::u16string_view property) override;
  WString GetStoreName() override;

  /// As `AddWithName`, with the internal names known already, as a reader of files does.
  Result AddResolved(std::u16string_view name, std::u16string_view type,
                     std::u16string_view property, std::u16string_view internalType,
                     std::u16string_view internalProperty, std::u16string_view op,
                     const Variant& value, IConditionImpl** condition);
  /// Lets go of the model, of the query and of the ties between the conditions and this collection.
  /// All can still be read.
  void Detach();
  /// Binds everything to a query and a model. Stops at the first condition that fails and gives its
  /// code; those before it have moved.
  /// \param owner  kept without a reference
  /// \return S_OK; E_POINTER for a null argument; what `CDataStoreConditionImpl::ReattachToModel`
  ///         says
  Result Reattach(IConditionOwner* owner, IConditionModelSource* model, bool remap);
  /// Null after `Detach`; borrowed.
  [[nodiscard]] IConditionModelSource* GetModel() const { return m_model.Get(); }

 protected:
  ~CDataStoreConditionCollImpl() override = default;

  void* FindFace(const Iid& iid) override;
  Ref<CConditionImpl> MakeCondition(std::u16string_view type,
                                    std::u16string_view property) override;

 private:
  [[nodiscard]] std::int32_t TypeOf(std::u16string_view type, std::u16string_view property) const;

  Ref<IConditionModelSource> m_model;
};

}  // namespace hv::vex::easyImpl

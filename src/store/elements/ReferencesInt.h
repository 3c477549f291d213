// store/elements/ReferencesInt.h - the references of an element as hosts see them.
#pragma once

#include <utility>

#include <storefabric/IStoreElement.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/WrapObject.h"
#include "store/elements/IReferencesImpl.h"

namespace hv::vex {

class CReferenceInt final : public automation::DispatchImpl<CReferenceInt, IReference> {
 public:
  explicit CReferenceInt(Ref<IReferenceImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IReference
  Result get_Name(WString* name) override { return m_logic->GetName(name); }
  Result get_BaseName(WString* name) override { return m_logic->GetBaseName(name); }
  Result get_Elements(IStoreElements** elements) override;

 private:
  ~CReferenceInt() override = default;

  Ref<IReferenceImpl> m_logic;
};

class CReferencesInt final
    : public automation::tReadCollectionInt<
          CReferencesInt, tReadTraits<IReferencesImpl, IReference, CReferenceInt>, IReferences> {
 public:
  explicit CReferencesInt(Ref<IReferencesImpl> logic) : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

 private:
  ~CReferencesInt() override = default;
};

}  // namespace hv::vex

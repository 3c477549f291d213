// store/elements/ReferencesImpl.h - the references of an element.
#pragma once

#include <string_view>
#include <utility>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/collections/NamedCollectionImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IInstance.h"
#include "store/elements/IReferencesImpl.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementsImpl.h"

namespace hv::vex {

class CReferenceImpl final : private CoreBinding, public cor::Counted<IReferenceImpl> {
 public:
  /// \param name  a reference or a path of references
  CReferenceImpl(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                 std::u16string_view name, WString baseName)
      : m_provider(Ref<easyImpl::ISimplifiedStoreImpl>::Share(&provider)),
        m_instance(Ref<IInstance>::Share(&instance)),
        m_name(name),
        m_baseName(std::move(baseName)) {}

  // IReferenceImpl
  Result GetName(WString* name) override;
  Result GetBaseName(WString* name) override;
  Result GetElements(IStoreElementsImpl** elements) override;

 private:
  ~CReferenceImpl() override = default;

  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
  Ref<IInstance> m_instance;
  WString m_name;
  WString m_baseName;
  Ref<IStoreElementsImpl> m_elements;  // made on first use
};

/// Filled once. The references are the model's: E_NOTIMPL for all that would change the list.
class CReferencesImpl final : private CoreBinding,
                              public easyImpl::tNamedCollectionImpl<IReferencesImpl> {
 public:
  CReferencesImpl(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance)
      : m_provider(Ref<easyImpl::ISimplifiedStoreImpl>::Share(&provider)),
        m_instance(Ref<IInstance>::Share(&instance)) {}

  /// Reads the references of the instance's entity. VEX_E_OBJECT_GONE; E_FAIL.
  Result Fill();

  // ICollectionImpl
  Result RemoveAt(std::int32_t index) override;
  Result Clear() override;
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;
  // INamedCollectionImpl
  /// Finds base names as well, and paths: a new reference at each call.
  Result GetItemByName(std::u16string_view name, IReferenceImpl** reference) override;
  Result RemoveByName(std::u16string_view name) override;
  Result Exists(std::u16string_view name, bool* exists) override;
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override;

 private:
  using Named = easyImpl::tNamedCollectionImpl<IReferencesImpl>;

  ~CReferencesImpl() override = default;

  Result AddReference(std::u16string_view name, WString baseName);

  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
  Ref<IInstance> m_instance;
};

}  // namespace hv::vex

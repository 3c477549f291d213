// store/elements/ReferencesImpl.cpp - the references of an element.
#include "store/elements/ReferencesImpl.h"

#include <array>
#include <cstddef>
#include <span>

#include <storefabric/DataType.h>

#include "automation/Guards.h"
#include "elements/TextList.h"
#include "store/core/IAttribute.h"
#include "store/elements/ReferencePath.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kLocalColumnBase = u"aolocalcolumn";
constexpr std::u16string_view kValuesBase = u"values";
constexpr std::array kFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

bool IsLocalColumn(IEntity& entity) {
  const auto base = Ref<IEntity>::Adopt(entity.GetBaseEntity());
  if (!base) return false;
  WString name;
  base->GetName(name);
  return name.EqualsExact(kLocalColumnBase);
}

}  // namespace

Result CReferenceImpl::GetName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_name;
  return S_OK;
}

Result CReferenceImpl::GetBaseName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_baseName;
  return S_OK;
}

Result CReferenceImpl::GetElements(IStoreElementsImpl** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  if (!m_elements) {
    HV_RETURN_IF_FAILED(MakeReferencedElements(*m_provider, *m_instance, m_name, m_elements.Put()));
  }
  return m_elements.CopyTo(elements);
}

Result CReferencesImpl::AddReference(std::u16string_view name, WString baseName) {
  const auto reference =
      MakeRef<CReferenceImpl>(*m_provider, *m_instance, name, std::move(baseName));
  return Named::Add(reference.Get(), name);
}

Result CReferencesImpl::Fill() try {
  HV_RETURN_CODE_IF(m_instance->IsValid() == 0, VEX_E_OBJECT_GONE);
  const Ref<IEntity> entity = EntityOfInstance(*m_instance);
  HV_RETURN_CODE_IF(!entity, E_FAIL);
  const bool isLocalColumn = IsLocalColumn(*entity);
  const auto list = Ref<IAttribute>::Adopt(entity->GetAttributeNames());
  const std::span<const WString> names = TextsOf(list.Get());
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (entity->GetAttributeType(i) != kTypeReference) continue;
    WString baseName;
    entity->GetAttributeBaseName(baseName, names[i]);
    // The values of a local column are no reference, whatever an engine holds them in.
    if (isLocalColumn && baseName.EqualsExact(kValuesBase)) continue;
    HV_RETURN_IF_FAILED(AddReference(names[i], std::move(baseName)));
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CReferencesImpl::GetItemByName(std::u16string_view name, IReferenceImpl** reference) try {
  const Result listed = Named::GetItemByName(name, reference);
  HV_RETURN_CODE_IF(listed != E_INVALIDARG, listed);
  const Ref<IEntity> entity = EntityOfInstance(*m_instance);
  const auto step = entity ? FindLastStep(*entity, name) : std::nullopt;
  HV_RETURN_CODE_IF(!step, E_INVALIDARG);
  WString text;
  if (step->prefix.empty()) {
    step->relation->GetName(text);
    return Named::GetItemByName(text, reference);
  }
  step->relation->GetBaseName(text);
  *reference = MakeRef<CReferenceImpl>(*m_provider, *m_instance, name, std::move(text)).Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CReferencesImpl::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  Ref<IReferenceImpl> reference;
  const Result rc = GetItemByName(name, reference.Put());
  *exists = !Failed(rc);
  return rc == E_INVALIDARG ? S_OK : rc;
}

Result CReferencesImpl::RemoveAt(std::int32_t /*index*/) { return E_NOTIMPL; }
Result CReferencesImpl::Clear() { return E_NOTIMPL; }
Result CReferencesImpl::Swap(std::int32_t /*first*/, std::int32_t /*second*/) { return E_NOTIMPL; }
Result CReferencesImpl::RemoveByName(std::u16string_view /*name*/) { return E_NOTIMPL; }
Result CReferencesImpl::Rename(std::u16string_view /*oldName*/, std::u16string_view /*newName*/,
                               WString* unique) {
  HV_RETURN_IF_NULL(unique);
  unique->clear();
  return E_NOTIMPL;
}

Result MakeReferences(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                      IReferencesImpl** references) try {
  HV_RETURN_IF_NULL(references);
  *references = nullptr;
  auto made = MakeRef<CReferencesImpl>(provider, instance);
  HV_RETURN_IF_FAILED(made->Fill());
  *references = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex

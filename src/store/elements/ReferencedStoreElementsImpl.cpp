// store/elements/ReferencedStoreElementsImpl.cpp - the elements that a reference leads to.
#include "store/elements/ReferencedStoreElementsImpl.h"

#include <algorithm>
#include <array>
#include <utility>

#include "automation/Guards.h"
#include "store/core/IInstList.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

namespace {

constexpr std::array kFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};
/// A store that refuses changes adds no reference either, and no message tells why.
constexpr std::array kAddFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE},
                                  CodeRow{errc::kWriteProtected, VEX_E_ADD_REFERENCE}};

/// True if the end of a name may come from the collection, which numbers names that are taken.
bool HasNumber(std::u16string_view name) {
  const std::size_t mark = name.rfind(u'_');
  if (mark == name.npos || mark + 1 == name.size()) return false;
  return std::ranges::all_of(name.substr(mark + 1),
                             [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

bool IsToOne(IRelation& relation) {
  std::int32_t least = 0;
  std::int32_t most = 0;
  relation.GetOccurrence(&least, &most);
  return most == 1;
}

}  // namespace

// --- the list -----------------------------------------------------------------------------------

Result CReferencedStoreElementsImpl::ReadMembers() try {
  const Result rc =
      m_instance->IsValid() != 0 ? AppendFrom(m_instance.Get(), m_path) : VEX_E_OBJECT_GONE;
  if (Failed(rc)) DropList();
  m_isRead = !Failed(rc);
  return rc;
} catch (...) {
  DropList();
  return ResultFromCaughtException(E_FAIL, kFailures);
}

Result CReferencedStoreElementsImpl::Clear() {
  m_isRead = true;
  return tNamedElements::Clear();
}

void CReferencedStoreElementsImpl::DropList() {
  (void)Clear();
  m_isRead = false;
}

// --- names --------------------------------------------------------------------------------------

Result CReferencedStoreElementsImpl::GetItemByName(std::u16string_view name,
                                                   Element** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(name.empty(), E_INVALIDARG);
  const auto found = Ref<IInstList>::Adopt(m_instance->GetRelated(PathToName(m_path, name)));
  const auto instance = Ref<IInstance>::Adopt(found ? found->Next() : nullptr);
  if (!instance) {
    return HasNumber(name) ? tNamedElements::GetItemByName(name, element) : E_INVALIDARG;
  }
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(Provider().GetElement(instance.Get(), made.Put()));
  *element = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CReferencedStoreElementsImpl::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  *exists = false;
  Ref<Element> element;
  const Result rc = GetItemByName(name, element.Put());
  HV_RETURN_CODE_IF(rc == E_INVALIDARG, S_OK);
  *exists = !Failed(rc);
  return rc;
}

Result CReferencedStoreElementsImpl::RemoveByName(std::u16string_view name) try {
  Ref<Element> element;
  HV_RETURN_IF_FAILED(GetItemByName(name, element.Put()));
  static_cast<IStoreElementImpl&>(*element).GetCoreInstance()->Delete();
  if (const Node* node = m_isRead ? FindMember(element.Get()) : nullptr) DropMember(*node);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- members ------------------------------------------------------------------------------------

std::optional<LastStep> CReferencedStoreElementsImpl::FindStep() const {
  const Ref<IEntity> entity = EntityOfInstance(*m_instance);
  return entity ? FindLastStep(*entity, m_path) : std::nullopt;
}

Ref<IInstList> CReferencedStoreElementsImpl::StartsOf(const LastStep& step) const {
  return Ref<IInstList>::Adopt(m_instance->GetRelated(step.prefix));
}

Ref<IInstance> CReferencedStoreElementsImpl::FirstStartOf(const LastStep& step) const {
  if (step.prefix.empty()) return m_instance;
  const Ref<IInstList> starts = StartsOf(step);
  return Ref<IInstance>::Adopt(starts ? starts->Next() : nullptr);
}

Result CReferencedStoreElementsImpl::Add(std::u16string_view name,
                                         IStoreElementImpl** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  const auto step = FindStep();
  const Ref<IInstance> start = step ? FirstStartOf(*step) : Ref<IInstance>();
  HV_RETURN_CODE_IF(!start, E_FAIL);
  const auto instance = Ref<IInstance>::Adopt(start->CreateRelated(step->name));
  HV_RETURN_CODE_IF(!instance, E_FAIL);
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(NameNew(*instance, name, &made));
  if (IsToOne(*step->relation)) {
    DropList();  // the earlier member had to leave
  } else if (m_isRead) {
    HV_RETURN_IF_FAILED(AddMember(*made, name));
  }
  *element = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CReferencedStoreElementsImpl::CheckPartner(IStoreElementImpl* element,
                                                  std::optional<LastStep>* step,
                                                  Ref<IInstance>* partner) const {
  HV_RETURN_IF_NULL(element);
  Ref<IUnknown> object;
  HV_RETURN_CODE_IF(Failed(element->GetInstance(object.Put())), E_UNEXPECTED);
  *partner = object.As<IInstance>();
  HV_RETURN_CODE_IF(!*partner, E_UNEXPECTED);
  HV_RETURN_CODE_IF(!Provider().OwnsInstance(partner->Get()), VEX_E_FOREIGN_ELEMENT);
  *step = FindStep();
  HV_RETURN_CODE_IF(!*step, E_FAIL);
  const auto target = Ref<IEntity>::Adopt((*step)->relation->GetTargetEntity());
  HV_RETURN_CODE_IF((*partner)->IsKindOf(target.Get()) == 0, VEX_E_REFERENCE_TYPE);
  return S_OK;
}

Result CReferencedStoreElementsImpl::AddReference(IStoreElementImpl* element,
                                                  IStoreElementImpl** member) try {
  HV_RETURN_IF_NULL(member);
  *member = nullptr;
  std::optional<LastStep> step;
  Ref<IInstance> partner;
  HV_RETURN_IF_FAILED(CheckPartner(element, &step, &partner));
  const Ref<IInstance> start = FirstStartOf(*step);
  HV_RETURN_CODE_IF(!start, VEX_E_ADD_REFERENCE);
  start->Link(step->name, partner.Get());
  Ref<IStoreElementImpl> own;
  HV_RETURN_IF_FAILED(Provider().GetElement(partner.Get(), own.Put()));
  if (IsToOne(*step->relation)) {
    DropList();
  } else if (m_isRead && !FindMember(own.Get())) {
    WString name;
    HV_RETURN_IF_FAILED(own->GetName(&name));
    HV_RETURN_IF_FAILED(AddMember(*own, name));
  }
  *member = own.Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(VEX_E_ADD_REFERENCE, kAddFailures)

bool CReferencedStoreElementsImpl::IsLinked(IInstance& start, const LastStep& step,
                                            IInstance& partner) {
  // Asked from the other side, which has few partners where this one has many.
  const auto inverse = Ref<IRelation>::Adopt(step.relation->GetInverse());
  if (!inverse) return true;
  WString name;
  inverse->GetName(name);
  WString own;
  start.GetKey(own);
  const auto partners = Ref<IInstList>::Adopt(partner.GetRelated(name));
  WString key;
  for (std::uint64_t i = 0; i < partners->GetCount(); ++i) {
    partners->GetKey(i, key);
    if (key.EqualsExact(own)) return true;
  }
  return false;
}

Result CReferencedStoreElementsImpl::RemoveReference(IStoreElementImpl* element) try {
  std::optional<LastStep> step;
  Ref<IInstance> partner;
  HV_RETURN_IF_FAILED(CheckPartner(element, &step, &partner));
  bool isRemoved = false;
  const auto unlink = [&](IInstance& start) {
    if (!IsLinked(start, *step, *partner)) return;
    start.Unlink(step->name, partner.Get());
    isRemoved = true;
  };
  if (step->prefix.empty()) {
    unlink(*m_instance);
  } else {
    const Ref<IInstList> starts = StartsOf(*step);
    while (const auto start = Ref<IInstance>::Adopt(starts->Next())) unlink(*start);
  }
  HV_RETURN_CODE_IF(!isRemoved, VEX_E_REMOVE_REFERENCE);
  if (!m_isRead) return S_OK;
  Ref<IStoreElementImpl> own;
  HV_RETURN_IF_FAILED(Provider().GetElement(partner.Get(), own.Put()));
  if (const Node* node = FindMember(own.Get())) DropMember(*node);
  return S_OK;
}
HV_CATCH_RETURN_AS(VEX_E_REMOVE_REFERENCE, kFailures)

Result CReferencedStoreElementsImpl::RemoveAllReferences() try {
  const auto step = FindStep();
  HV_RETURN_CODE_IF(!step, E_FAIL);
  const auto unlinkAll = [&](IInstance& start) {
    const auto members = Ref<IInstList>::Adopt(start.GetRelated(step->name));
    while (const auto member = Ref<IInstance>::Adopt(members->Next())) {
      start.Unlink(step->name, member.Get());
    }
  };
  DropList();  // and not only in the end: some may be gone when one can't be removed
  if (step->prefix.empty()) {
    unlinkAll(*m_instance);
  } else {
    const Ref<IInstList> starts = StartsOf(*step);
    while (const auto start = Ref<IInstance>::Adopt(starts->Next())) unlinkAll(*start);
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result MakeReferencedElements(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                              std::u16string_view path, IStoreElementsImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = MakeRef<CReferencedStoreElementsImpl>(provider, instance, path).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex

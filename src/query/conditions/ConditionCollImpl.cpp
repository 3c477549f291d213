// query/conditions/ConditionCollImpl.cpp - adding, removing, copying and renaming conditions.
#include "query/conditions/ConditionCollImpl.h"

#include <map>
#include <set>
#include <utility>

#include "automation/Guards.h"
#include "query/conditions/DateValue.h"
#include "query/conditions/LogicNames.h"
#include "query/conditions/ValueCheck.h"
#include "query/logic/LogicRepair.h"
#include "query/values/Operators.h"

namespace hv::vex::easyImpl {

namespace {

using ExactNames = std::set<WString, cor::ExactLess>;
using NewNames = std::map<WString, WString, cor::ExactLess>;

ExactNames NamesIn(std::u16string_view logic) {
  ExactNames names;
  ForEachName(logic, [&](std::size_t, std::u16string_view name) { names.emplace(name); });
  return names;
}

WString RenameInLogic(std::u16string_view logic, const NewNames& newNames) {
  WString renamed;
  renamed.reserve(logic.size());
  std::size_t done = 0;
  ForEachName(logic, [&](std::size_t pos, std::u16string_view name) {
    const auto found = newNames.find(name);
    if (found == newNames.end()) return;
    renamed += logic.substr(done, pos - done);
    renamed += found->second;
    done = pos + name.size();
  });
  renamed += logic.substr(done);
  return renamed;
}

Result GiveValue(CConditionImpl& condition, const Variant& given) {
  const Variant& value = given.Dereferenced();
  if (value.Is(VT_BSTR)) return condition.SetFromText(value.AsText());
  if (value.IsEmpty() || value.Is(VT_NULL)) return condition.SetValues({}, {});
  WString text;
  const WString& op = condition.GetOperatorSymbol();
  HV_RETURN_CODE_IF(Failed(TextOfConditionValue(value, op, &text)), E_INVALIDARG);
  return condition.SetValue(value, text);
}

/// Calls `take(condition)` for each item in order, as long as that gives true.
template <class Take>
Result ForEachCondition(IConditionCollImpl& conditions, Take take) {
  std::int32_t count = 0;
  HV_RETURN_IF_FAILED(conditions.GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IConditionImpl> condition;
    HV_RETURN_IF_FAILED(conditions.GetItem(i, condition.Put()));
    if (!take(*condition)) break;
  }
  return S_OK;
}

}  // namespace

bool CConditionCollImpl::Names::HasName(std::u16string_view name) const {
  return m_conditions.HasName(name);
}

CConditionCollImpl::CConditionCollImpl(IConditionOwner* owner) : m_owner(owner) {}

CConditionCollImpl::~CConditionCollImpl() {
  for (std::size_t i = 0; i < Size(); ++i) ConditionAt(i).DetachFromOwner();
}

bool CConditionCollImpl::HasName(std::u16string_view name) {
  bool exists = false;
  return !Failed(Exists(name, &exists)) && exists;
}

Result CConditionCollImpl::RemoveAt(std::int32_t index) try {
  const auto position = static_cast<std::size_t>(index);
  HV_RETURN_CODE_IF(index < 0 || position >= Size(), E_INVALIDARG);
  const WString name = NameAt(position);
  HV_RETURN_IF_FAILED(Named::RemoveAt(index));
  if (Size() == 0) {
    m_logic.Clear();
    OnLogicChanged();
    return S_OK;
  }
  WString logic = m_logic.GetStored();
  RemoveFromLogic(name, logic);
  return SetLogicNormalised(logic);
}
HV_CATCH_RETURN()

void CConditionCollImpl::OnRemove(std::size_t position) {
  if (m_greatestName && m_greatestName->EqualsExact(NameAt(position))) m_greatestName.reset();
  ConditionAt(position).DetachFromOwner();
  Named::OnRemove(position);
}

Result CConditionCollImpl::Clear() {
  for (std::size_t i = 0; i < Size(); ++i) ConditionAt(i).DetachFromOwner();
  m_greatestName.reset();
  m_logic.Clear();
  const Result rc = Named::Clear();
  OnLogicChanged();
  return rc;
}

Result CConditionCollImpl::Rename(std::u16string_view oldName, std::u16string_view newName,
                                  WString* unique) {
  m_greatestName.reset();
  return Named::Rename(oldName, newName, unique);
}

WString CConditionCollImpl::MakeName() {
  if (!m_greatestName) {
    std::u16string_view greatest;
    for (std::size_t i = 0; i < Size(); ++i) {
      const WString& name = NameAt(i);
      if (IsLogicName(name) && IsLesserName(greatest, name)) greatest = name;
    }
    m_greatestName = greatest;
  }
  return m_greatestName->empty() ? WString(u"C1") : NextName(*m_greatestName);
}

Result CConditionCollImpl::Insert(CConditionImpl& condition, std::u16string_view name) {
  HV_RETURN_IF_FAILED(Named::Add(&condition, name));
  condition.SetOwner(*this);
  if (m_greatestName && IsLogicName(name) && IsLesserName(*m_greatestName, name)) {
    m_greatestName = name;
  }
  OnAdded(condition);
  return S_OK;
}

Result CConditionCollImpl::Complete(const Ref<CConditionImpl>& condition, std::u16string_view name,
                                    std::u16string_view op, const Variant& value,
                                    IConditionImpl** out) {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  HV_RETURN_IF_FAILED(condition->SetOperator(op));
  HV_RETURN_IF_FAILED(GiveValue(*condition, value));
  const WString key = name.empty() ? MakeName() : WString(name);
  if (HasName(key)) {
    HV_RETURN_IF_FAILED(condition->SetName(key));
    return condition.CopyTo(out);
  }
  HV_RETURN_IF_FAILED(Insert(*condition, key));
  // A name that no logic can hold would leave a text that nobody can read any more.
  if (!m_logic.GetStored().empty() && IsLogicName(key)) {
    HV_RETURN_IF_FAILED(SetLogicNormalised(ExtendLogic(m_logic.GetStored(), key)));
  }
  return condition.CopyTo(out);
}

Result CConditionCollImpl::AddWithName(std::u16string_view name, std::u16string_view type,
                                       std::u16string_view property, std::u16string_view op,
                                       const Variant& value, IConditionImpl** condition) try {
  return Complete(MakeCondition(type, property), name, op, value, condition);
}
HV_CATCH_RETURN()

Result CConditionCollImpl::AddDefault(std::u16string_view type, std::u16string_view property,
                                      IConditionImpl** condition) try {
  if (IsDateProperty(type, property)) {
    return AddWithName({}, type, property, u">=", DateOfNow(), condition);
  }
  return AddWithName({}, type, property, u"=", Variant::Text(u""), condition);
}
HV_CATCH_RETURN()

Result CConditionCollImpl::Add(std::u16string_view type, std::u16string_view property,
                               std::u16string_view op, const Variant& value,
                               IConditionImpl** condition) try {
  HV_RETURN_IF_NULL(condition);
  *condition = nullptr;
  HV_RETURN_CODE_IF(type.empty() || !IsValidType(type), VEX_E_BAD_TYPE_ARGUMENT);
  HV_RETURN_CODE_IF(property.empty() || !IsValidProperty(type, property), VEX_E_INVALID_PROPERTY);
  HV_RETURN_CODE_IF(op.empty(), VEX_E_BAD_OPERATOR);
  CheckedValue checked;
  const Result rc = CheckValue(*this, type, property, op, value, &checked);
  HV_RETURN_CODE_IF(Failed(rc) && rc != VEX_E_VALUE_WAS_TEXT, rc);
  HV_RETURN_IF_FAILED(AddWithName({}, type, property, op, checked.value, condition));
  if (checked.values.empty()) return S_OK;
  return (*condition)->SetValues(std::move(checked.values), checked.text);
}
HV_CATCH_RETURN()

Ref<CConditionImpl> CConditionCollImpl::MakeClone(IConditionImpl& source) {
  Ref<CConditionImpl> clone = MakeCondition(source.GetType(), source.GetProperty());
  (void)clone->SetName(source.GetName());
  clone->CopyFields(source);
  return clone;
}

Result CConditionCollImpl::TakeClones(const std::vector<Ref<CConditionImpl>>& clones,
                                      const WString& logic) {
  HV_RETURN_IF_FAILED(RemoveAll());
  for (const Ref<CConditionImpl>& clone : clones) {
    const WString name = clone->GetName();
    HV_RETURN_IF_FAILED(Insert(*clone, name));
  }
  m_logic.Assign(logic);
  OnLogicChanged();
  return S_OK;
}

Result CConditionCollImpl::AssignFrom(IConditionCollImpl& other) try {
  std::vector<Ref<CConditionImpl>> clones;
  HV_RETURN_IF_FAILED(ForEachCondition(other, [&](IConditionImpl& condition) {
    clones.push_back(MakeClone(condition));
    return true;
  }));
  return TakeClones(clones, WString(other.GetStoredLogic()));
}
HV_CATCH_RETURN()

Result CConditionCollImpl::CopyReferenced(IConditionCollImpl& source) try {
  const WString logic = source.GetLogic();
  const ExactNames names = NamesIn(logic);
  std::vector<Ref<CConditionImpl>> clones;
  HV_RETURN_IF_FAILED(ForEachCondition(source, [&](IConditionImpl& condition) {
    if (names.contains(condition.GetName())) clones.push_back(MakeClone(condition));
    return true;
  }));
  return TakeClones(clones, logic);
}
HV_CATCH_RETURN()

bool CConditionCollImpl::Compare(IConditionCollImpl& other) {
  std::int32_t count = 0;
  if (Failed(other.GetCount(&count)) || static_cast<std::size_t>(count) != Size()) return false;
  if (!GetLogic().EqualsExact(other.GetLogic())) return false;
  std::size_t equal = 0;
  const Result rc = ForEachCondition(other, [&](IConditionImpl& condition) {
    if (!IsEqual(ItemAt(equal), condition)) return false;
    ++equal;
    return true;
  });
  return !Failed(rc) && equal == Size();
}

bool CConditionCollImpl::IsEqual(IConditionImpl& a, IConditionImpl& b) {
  return a.GetName().EqualsExact(b.GetName()) && a.GetProperty().EqualsExact(b.GetProperty()) &&
         a.GetType().EqualsExact(b.GetType()) &&
         a.GetOperatorSymbol().EqualsExact(b.GetOperatorSymbol()) &&
         a.GetValueText().EqualsExact(b.GetValueText()) && a.GetOrderBy() == b.GetOrderBy() &&
         a.GetInternalType().EqualsExact(b.GetInternalType()) &&
         a.GetInternalProperty().EqualsExact(b.GetInternalProperty());
}

void CConditionCollImpl::DetachFromOwner() {
  m_owner.Clear();
  for (std::size_t i = 0; i < Size(); ++i) ConditionAt(i).DetachFromOwner();
}

bool CConditionCollImpl::IsDateProperty(std::u16string_view /*type*/,
                                        std::u16string_view /*property*/) {
  return false;
}

Result CConditionCollImpl::NormaliseDateValue(Variant* value) try {
  HV_RETURN_IF_NULL(value);
  if (IsDateValue(*value)) return S_OK;
  Variant text;
  if (!Failed(value->ChangeType(VT_BSTR, &text))) {
    if (std::optional<Variant> date = DateFromText(text.AsText())) {
      *value = *std::move(date);
      return VEX_E_VALUE_WAS_TEXT;
    }
  }
  *value = Variant::Null();
  return VEX_E_VALUE_NOT_DATE;
}
HV_CATCH_RETURN()

bool CConditionCollImpl::IsValidType(std::u16string_view type) { return !type.empty(); }

bool CConditionCollImpl::IsValidProperty(std::u16string_view type, std::u16string_view property) {
  return !type.empty() && !property.empty();
}

bool CConditionCollImpl::IsOperatorSupported(std::u16string_view op, std::u16string_view /*type*/,
                                             std::u16string_view /*property*/) {
  return IsSymbolOperator(op);
}

Result CConditionCollImpl::CheckOperatorForOr(std::u16string_view symbol) {
  return vex::CheckOperatorForOr(symbol);
}

Result CConditionCollImpl::SetLogicNormalised(std::u16string_view text) try {
  m_logic.SetLogicNormalised(text, m_names);
  OnLogicChanged();
  return S_OK;
}
HV_CATCH_RETURN()

WString CConditionCollImpl::GetLogic() { return m_logic.GetLogic(m_names); }

Result CConditionCollImpl::SetLogic(std::u16string_view text) try {
  HV_RETURN_IF_FAILED(m_logic.SetLogic(text, m_names));
  OnLogicChanged();
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionCollImpl::GetIndexOfName(std::u16string_view name, std::int32_t* index) {
  HV_RETURN_IF_NULL(index);
  *index = -1;
  for (std::size_t i = 0; i < Size(); ++i) {
    if (!NameAt(i).EqualsExact(name)) continue;
    *index = static_cast<std::int32_t>(i);
    return S_OK;
  }
  return E_FAIL;
}

bool CConditionCollImpl::NameHasPrefix(std::u16string_view name) {
  return name.starts_with(kNamePrefix);
}

Result CConditionCollImpl::Renumber() try {
  NewNames newNames;
  // Numbers may swap, so all names step aside first.
  for (std::size_t i = 0; i < Size(); ++i) {
    const WString name = NameAt(i);
    newNames.emplace(name, ConditionName(static_cast<std::int32_t>(i + 1)));
    WString aside;
    HV_RETURN_IF_FAILED(Rename(name, WString(u"X") + name, &aside));
  }
  for (std::size_t i = 0; i < Size(); ++i) {
    const WString aside = NameAt(i);
    WString name;
    HV_RETURN_IF_FAILED(Rename(aside, ConditionName(static_cast<std::int32_t>(i + 1)), &name));
    HV_RETURN_IF_FAILED(ConditionAt(i).SetName(name));
  }
  m_logic.Assign(RenameInLogic(m_logic.GetStored(), newNames));
  OnLogicChanged();
  return S_OK;
}
HV_CATCH_RETURN()

WString CConditionCollImpl::GetOwnerName() { return m_owner ? m_owner->GetStoreName() : WString(); }

Result CConditionCollImpl::RenameKey(std::u16string_view oldName, std::u16string_view newName) try {
  HV_RETURN_CODE_IF(newName.empty() || (oldName != newName && HasName(newName)), E_INVALIDARG);
  Ref<IConditionImpl> condition;
  HV_RETURN_IF_FAILED(GetItemByName(oldName, condition.Put()));
  WString name;
  HV_RETURN_IF_FAILED(Rename(oldName, newName, &name));
  return condition->SetName(name);
}
HV_CATCH_RETURN()

Result CConditionCollImpl::CloneCondition(IConditionImpl& source, IConditionImpl** clone) try {
  HV_RETURN_IF_NULL(clone);
  *clone = nullptr;
  return MakeClone(source).CopyTo(clone);
}
HV_CATCH_RETURN()

Result CConditionCollImpl::AddClone(IConditionImpl& source) try {
  if (HasName(source.GetName())) return S_OK;
  return Insert(*MakeClone(source), WString(source.GetName()));
}
HV_CATCH_RETURN()

Result CConditionCollImpl::CreateCondition(std::u16string_view type, std::u16string_view property,
                                           IConditionImpl** condition) try {
  HV_RETURN_IF_NULL(condition);
  *condition = nullptr;
  return MakeCondition(type, property).CopyTo(condition);
}
HV_CATCH_RETURN()

Result CConditionCollImpl::CheckModel(std::u16string_view type) {
  return m_owner ? m_owner->CheckModel(type) : S_OK;
}

Ref<CConditionImpl> CConditionCollImpl::MakeCondition(std::u16string_view type,
                                                      std::u16string_view property) {
  return MakeRef<CConditionImpl>(type, property);
}

}  // namespace hv::vex::easyImpl

// query/objects/AttributePath.cpp - a property named by a path of references.
#include "query/objects/AttributePath.h"

#include "store/core/IAttribute.h"
#include "store/model/BaseNames.h"

#include <storefabric/DataType.h>

namespace hv::vex {

namespace {

/// The attribute of that name, own or base; null for a reference.
Ref<IAttributeDefinition> FindProperty(IEntity& entity, std::u16string_view name) {
  const auto found = Ref<IAttribute>::Adopt(entity.GetAttribute(name));
  auto definition = QueryRef<IAttributeDefinition>(found.Get());
  if (definition && definition->GetDataType() == kTypeReference) definition.Reset();
  return definition;
}

WString BaseNameOf(IEntity& entity, IRelation& relation) {
  WString own;
  WString base;
  WString found;
  relation.GetName(own);
  relation.GetBaseName(base);
  const auto same = Ref<IRelation>::Adopt(base.empty() ? nullptr : entity.GetRelationByName(base));
  if (same) same->GetName(found);
  return found.EqualsExact(own) ? base : own;
}

WString BaseNameOf(IEntity& entity, const WString& property) {
  WString base;
  WString found;
  entity.GetAttributeBaseName(base, property);
  const auto same = base.empty() ? Ref<IAttributeDefinition>() : FindProperty(entity, base);
  if (same) same->GetName(found);
  return found.EqualsExact(property) ? base : property;
}

}  // namespace

IEntity& AttributePathInfo::Target() const {
  return m_steps.empty() ? *m_start : *m_steps.back().target;
}

bool AttributePathInfo::TakeProperty(std::u16string_view name) {
  const auto found = FindProperty(Target(), name);
  if (found) found->GetName(m_property);
  return bool(found);
}

bool AttributePathInfo::TakeReference(std::u16string_view* rest) {
  const auto source = Ref<IEntity>::Share(&Target());
  for (std::size_t end = rest->size(); end != rest->npos && end != 0;
       end = rest->rfind(u'.', end - 1)) {
    auto relation = Ref<IRelation>::Adopt(source->GetRelationByName(rest->substr(0, end)));
    if (!relation) continue;
    auto target = Ref<IEntity>::Adopt(relation->GetTargetEntity());
    if (!target || !Ref<IEntity>::Adopt(target->GetApplicationElement())) return false;
    m_steps.push_back({source, std::move(relation), std::move(target)});
    rest->remove_prefix(end == rest->size() ? end : end + 1);
    return true;
  }
  return false;
}

Result AttributePathInfo::Parse(IEntity& start, std::u16string_view path, bool wantsProperty) {
  m_start = Ref<IEntity>::Share(&start);
  m_steps.clear();
  m_property.clear();
  m_position = 0;
  while (!path.empty()) {
    if (wantsProperty && TakeProperty(path)) return S_OK;
    if (!TakeReference(&path)) return E_INVALIDARG;
  }
  return wantsProperty ? E_INVALIDARG : S_OK;
}

bool AttributePathInfo::Next() {
  if (m_position == m_steps.size()) return false;
  ++m_position;
  return true;
}

WString AttributePathInfo::BaseNames() const {
  WString names;
  const auto add = [&](const WString& name) {
    if (!names.empty()) names += u'.';
    names += name;
  };
  for (const AttributePathStep& step : m_steps) add(BaseNameOf(*step.source, *step.relation));
  if (!m_property.empty()) add(BaseNameOf(Target(), m_property));
  return names;
}

}  // namespace hv::vex

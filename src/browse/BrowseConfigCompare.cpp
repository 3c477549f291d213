// browse/BrowseConfigCompare.cpp - comparing browse configurations, for round trips.
#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "browse/ResolveReference.h"

namespace hv::vex {

namespace {

using Entity = CDataStoreBrowseConfigEntityImpl;

/// The first difference decides.
#define HV_RETURN_IF_DIFFERENT(expr)                          \
  do {                                                        \
    const std::int32_t hvDifference = (expr);                 \
    if (hvDifference != compare::kEqual) return hvDifference; \
  } while (false)

std::int32_t PartCount(IRepresentedByPartsImpl& parts) {
  std::int32_t count = 0;
  (void)parts.GetCount(&count);
  return count;
}

Ref<IRepresentedByPartImpl> PartAt(IRepresentedByPartsImpl& parts, std::int32_t index) {
  Ref<IRepresentedByPartImpl> part;
  (void)parts.GetItem(index, part.Put());
  return part;
}

/// A part's kind and what it shows.
struct PartText {
  bool isFreeText = false;
  WString text;

  bool Read(IRepresentedByPartImpl& part) {
    isFreeText = part.IsKind(PartKind::FreeText);
    return !Failed(isFreeText ? part.GetFreeText(&text) : part.GetPropertyName(&text));
  }
};

std::int32_t CompareParts(Entity& a, Entity& b) {
  const std::int32_t count = PartCount(a.Parts());
  if (count != PartCount(b.Parts())) return compare::kParts;
  for (std::int32_t i = 0; i < count; ++i) {
    PartText own;
    PartText other;
    if (!own.Read(*PartAt(a.Parts(), i)) || !other.Read(*PartAt(b.Parts(), i))) {
      return compare::kParts;
    }
    if (own.isFreeText != other.isFreeText) return compare::kPartKind;
    if (!own.text.EqualsExact(other.text)) return compare::kParts;
  }
  return compare::kEqual;
}

std::int32_t CompareSymbols(Entity& a, Entity& b) {
  const bool same =
      a.GetSymbolIndex() == b.GetSymbolIndex() && a.GetSymbolKey() == b.GetSymbolKey();
  return same ? compare::kEqual : compare::kSymbol;
}

/// The name of the entity that a reference leads to; a path that is none stands for itself.
WString TargetNameOf(Entity& level, const WString& path) {
  const auto reference = Ref<IRelation>::Adopt(level.ModelEntity().GetRelationByName(path));
  const auto target = Ref<IEntity>::Adopt(reference ? reference->GetTargetEntity() : nullptr);
  return target ? NameOf(*target) : path;
}

WString FirstChildPathOf(Entity& level) {
  return level.FirstChild() ? level.FirstChild()->Path() : WString();
}

std::int32_t CompareByText(Entity& a, Entity& b) {
  if (!FirstChildPathOf(a).EqualsExact(FirstChildPathOf(b))) return compare::kChildPath;
  if (!a.ParentPath().EqualsExact(b.ParentPath())) return compare::kParentPath;
  if (!a.Path().EqualsExact(b.Path())) return compare::kPath;
  HV_RETURN_IF_DIFFERENT(CompareSymbols(a, b));
  return CompareParts(a, b);
}

std::int32_t CompareByTarget(Entity& a, Entity& b) {
  const auto sameTarget = [&](const WString& own, const WString& other) {
    return TargetNameOf(a, own).EqualsExact(TargetNameOf(b, other));
  };
  if (!sameTarget(FirstChildPathOf(a), FirstChildPathOf(b))) return compare::kChildPath;
  if (!sameTarget(a.ParentPath(), b.ParentPath())) return compare::kParentPath;
  // A path leads away from the parent, so it means something only there.
  if (!NameOf(a.ModelEntity()).EqualsExact(NameOf(b.ModelEntity()))) return compare::kPath;
  HV_RETURN_IF_DIFFERENT(CompareSymbols(a, b));
  return CompareParts(a, b);
}

std::int32_t CompareSymbolTables(IDataStoreBrowseConfig& a, IDataStoreBrowseConfig& b) {
  if (a.GetStandardSymbolCount() != b.GetStandardSymbolCount()) return compare::kStandardSymbols;
  SymbolMap own;
  SymbolMap other;
  if (Failed(a.GetCustomerSymbols(&own)) || Failed(b.GetCustomerSymbols(&other))) {
    return compare::kLookup;
  }
  if (own.size() != other.size()) return compare::kSymbols;
  for (const auto& [key, image] : own) {
    if (!other.contains(key)) return compare::kSymbols;
  }
  return compare::kEqual;
}

std::int32_t CompareConfigs(CDataStoreBrowseConfigImpl& self, IBrowseConfig* other,
                            Ref<CDataStoreBrowseConfigImpl>* own) {
  if (!other) return compare::kNull;
  *own = OwnBrowseConfig(other);
  if (!*own) return compare::kOtherClass;
  return CompareSymbolTables(self, **own);
}

}  // namespace

std::int32_t CDataStoreBrowseConfigImpl::CompareWith(IBrowseConfig* other) try {
  Ref<CDataStoreBrowseConfigImpl> own;
  HV_RETURN_IF_DIFFERENT(CompareConfigs(*this, other, &own));
  if (!FirstRoot()) return compare::kNoRoot;
  for (Entity* level = FirstRoot(); level; level = level->Child()) {
    const auto match = OwnBrowseEntity(
        Ref<IBrowseConfigEntity>::Adopt(own->GetEntityByName(NameOf(level->ModelEntity()))).Get());
    if (!match) return compare::kEntityMissing;
    HV_RETURN_IF_DIFFERENT(CompareByText(*level, *match));
  }
  for (const auto& [key, implicit] : m_implicitLevels) {
    const auto match =
        OwnBrowseEntity(Ref<IBrowseConfigEntity>::Adopt(own->GetEntityByName(NameOf(*key))).Get());
    if (!match) return compare::kBranchMissing;
    HV_RETURN_IF_DIFFERENT(CompareByText(static_cast<Entity&>(*implicit.entity), *match));
  }
  return compare::kEqual;
} catch (const Exception&) {
  return compare::kLookup;
}

std::int32_t CDataStoreBrowseConfigImpl::CompareChainWith(IBrowseConfig* other) try {
  Ref<CDataStoreBrowseConfigImpl> own;
  HV_RETURN_IF_DIFFERENT(CompareConfigs(*this, other, &own));
  Entity* level = FirstRoot();
  Entity* match = own->FirstRoot();
  if (!level) return compare::kNoRoot;
  for (; level && match; level = level->Child(), match = match->Child()) {
    HV_RETURN_IF_DIFFERENT(CompareByTarget(*level, *match));
  }
  return level || match ? compare::kLength : compare::kEqual;
} catch (const Exception&) {
  return compare::kLookup;
}

std::int32_t CDataStoreBrowseConfigImpl::CompareEntityWithExpected(
    IBrowseConfigEntity* entity, const ExpectedBrowseEntity& expected) try {
  const auto level = OwnBrowseEntity(entity);
  if (!level || !NameOf(level->ModelEntity()).EqualsExact(expected.entityName)) {
    return compare::kEntityMissing;
  }
  if (!level->ParentPath().EqualsExact(expected.parentPath)) return compare::kParentPath;
  if (!level->Path().EqualsExact(expected.path)) return compare::kPath;
  if (level->GetSymbolKey() != expected.symbolKey) return compare::kSymbol;
  const std::int32_t count = PartCount(level->Parts());
  if (static_cast<std::size_t>(count) != expected.parts.size()) return compare::kParts;
  for (std::int32_t i = 0; i < count; ++i) {
    PartText part;
    if (!part.Read(*PartAt(level->Parts(), i))) return compare::kParts;
    const std::u16string_view record = expected.parts[static_cast<std::size_t>(i)];
    if (!record.starts_with(part.isFreeText ? u"t:" : u"p:")) return compare::kPartKind;
    if (!part.text.EqualsExact(record.substr(2))) return compare::kParts;
  }
  return compare::kEqual;
} catch (const Exception&) {
  return compare::kLookup;
}

std::int32_t CDataStoreBrowseConfigImpl::CompareWithExpected(
    std::span<const SymbolKey> symbolKeys, std::span<const ExpectedBrowseEntity> records) try {
  if (static_cast<std::size_t>(m_symbols.GetCount()) != symbolKeys.size()) return compare::kSymbols;
  for (std::size_t i = 0; i < symbolKeys.size(); ++i) {
    SymbolKey key = 0;
    if (Failed(m_symbols.GetKey(static_cast<std::int32_t>(i), &key))) return compare::kLookup;
    if (key != symbolKeys[i]) return compare::kSymbols;
  }
  Entity* level = FirstRoot();
  if (!level) return compare::kNoRoot;
  constexpr std::size_t kBranchRecords = 2;
  if (records.size() < kBranchRecords) return compare::kLength;
  for (const ExpectedBrowseEntity& record : records.first(records.size() - kBranchRecords)) {
    if (!level) return compare::kEntityMissing;
    HV_RETURN_IF_DIFFERENT(CompareEntityWithExpected(level, record));
    level = level->Child();
  }
  if (level) return compare::kLength;
  for (const ExpectedBrowseEntity& record : records.last(kBranchRecords)) {
    const auto found = Ref<IBrowseConfigEntity>::Adopt(GetEntityByName(record.entityName));
    if (!found) return compare::kBranchMissing;
    HV_RETURN_IF_DIFFERENT(CompareEntityWithExpected(found.Get(), record));
  }
  return compare::kEqual;
} catch (const Exception&) {
  return compare::kLookup;
}

}  // namespace hv::vex

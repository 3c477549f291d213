// browse/BrowseConfigEntity.h - one level of a browse path.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "browse/BaseTypes.h"
#include "browse/BrowseEntityList.h"
#include "browse/IBrowseConfigEntityIntern.h"
#include "browse/RepresentedByParts.h"
#include "cor/Counted.h"
#include "store/core/CoreBinding.h"

namespace hv::vex {

class CDataStoreBrowseConfigImpl;
class tBrowseConfigEntityImpl;

/// Where a level stands, told when it is made.
struct BrowsePlace {
  WString path;
  WString parentPath;
  tBrowseConfigEntityImpl* parent = nullptr;
  WString representedBy;  ///< empty: the attribute with the base name "name"

  static BrowsePlace Root(IEntity& entity);
  static BrowsePlace Child(IRelation& reference, tBrowseConfigEntityImpl& parent);
};

/// The generic layer: a level of a tree of browse entities. Parent and children are plain pointers
/// that the configuration keeps good: its map owns the levels and tells those that leave.
class tBrowseConfigEntityImpl : public cor::Counted<IBrowseConfigEntityIntern> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::tBrowseConfigEntityImpl");

  // IBrowseConfigEntity
  void GetPath(WString& path) override { path = m_place.path; }
  void GetEntityName(WString& name) override;
  void GetRepresentedBy(WString& attribute) override { attribute = m_place.representedBy; }
  bool HasChildren() override { return m_children.Count() > 0; }
  std::int32_t GetChildCount() override { return m_children.Count(); }
  void GetFirstChildPath(WString& path) override;
  IBrowseConfigEntity* GetFirstChild() override;
  void GetNextChildPath(WString& path) override;
  IBrowseConfigEntity* GetNextChild() override;
  void GetEntityDisplayName(WString& name, INameTranslator*) override { name.clear(); }
  void GetPathDisplayName(WString& name, INameTranslator*, std::u16string_view) override {
    name.clear();
  }
  bool IsDescendantByName(std::u16string_view) override { return false; }
  std::int32_t GetSymbolIndex() override { return 0; }
  std::int32_t GetSelectedSymbolIndex() override { return 0; }
  void GetParentPath(WString& path) override { path = m_place.parentPath; }
  IBrowseConfigEntity* GetParent() override;
  void FirstHook() override {}
  void SecondHook() override {}
  IEntity* GetModelEntity() override { return Ref<IEntity>(m_entity).Detach(); }
  bool IsEntityOfInstance(IInstance* instance) override;
  bool IsEntityOrDerived(IEntity* entity) override;
  bool IsBaseType(std::u16string_view baseName) override;
  bool IsDataLevel() override { return m_isDataLevel; }
  Result AddDefaultColumns(IDefaultColumns*) override { return E_POINTER; }
  IStringList* GetPropertyNames() override;
  void SetDataLevel(bool isDataLevel) override { m_isDataLevel = isDataLevel; }

  // For the configuration
  [[nodiscard]] IEntity& ModelEntity() const { return *m_entity; }
  [[nodiscard]] BaseKind Kind() const { return m_kind; }
  [[nodiscard]] tBrowseConfigEntityImpl* Parent() const { return m_place.parent; }
  [[nodiscard]] tBrowseConfigEntityImpl* FirstChild() const { return m_children.First(); }
  [[nodiscard]] const WString& Path() const { return m_place.path; }
  [[nodiscard]] const WString& ParentPath() const { return m_place.parentPath; }
  void AppendChild(tBrowseConfigEntityImpl& child) { m_children.Append(child); }
  void ForgetChild(const tBrowseConfigEntityImpl& child) { m_children.Remove(child); }
  /// Hangs the level below another one without being among its children.
  void SetParent(tBrowseConfigEntityImpl* parent, std::u16string_view parentPath);
  /// Called when the level leaves its configuration: forgets everything around it.
  virtual void Leave();

 protected:
  tBrowseConfigEntityImpl(IEntity& entity, BrowsePlace place, const BaseTypes& baseTypes);
  ~tBrowseConfigEntityImpl() override = default;

  void* FindFace(const Iid& iid) override;

 private:
  Ref<IEntity> m_entity;
  BrowsePlace m_place;
  BrowseEntityList m_children;
  BaseKind m_kind;
  bool m_isDataLevel;
};

/// The store layer: symbol, display name, columns.
class CDataStoreBrowseConfigEntityImpl final : private CoreBinding, public tBrowseConfigEntityImpl {
 public:
  CDataStoreBrowseConfigEntityImpl(CDataStoreBrowseConfigImpl& config, IEntity& entity,
                                   BrowsePlace place, const BaseTypes& baseTypes);

  // IUnknown
  Result QueryInterface(const Iid& iid, void** out) override {
    const Result rc = tBrowseConfigEntityImpl::QueryInterface(iid, out);
    if (!Failed(rc)) ++m_count;
    return rc;
  }
  std::uint32_t AddRef() override { return m_count = tBrowseConfigEntityImpl::AddRef(); }
  /// The configuration holds the last reference and is told when it is left alone with it.
  std::uint32_t Release() override;

  // IBrowseConfigEntity
  void GetEntityDisplayName(WString& name, INameTranslator* translator) override;
  void GetPathDisplayName(WString& name, INameTranslator* translator,
                          std::u16string_view path) override;
  bool IsDescendantByName(std::u16string_view entityName) override;
  std::int32_t GetSymbolIndex() override;
  std::int32_t GetSelectedSymbolIndex() override { return GetSymbolIndex(); }
  Result AddDefaultColumns(IDefaultColumns* columns) override;
  void SetDataLevel(bool isDataLevel) override;

  // IBrowseConfigEntityIntern
  SymbolKey GetSymbolKey() override { return m_symbolKey; }
  void SetSymbolKey(SymbolKey key) override;
  bool IsDefaultSymbol() override { return m_symbolIsDefault; }
  void ResetSymbol() override;
  Result GetRepresentedByParts(IRepresentedByPartsImpl** parts) override;
  Result ResetDisplayName() override;
  Result AddChild(std::u16string_view reference, IBrowseConfigEntity** child) override;
  Result RemoveFirstChild() override;

  // For the configuration
  void Leave() override;
  void TakeSymbol(SymbolKey key, bool isDefault);
  [[nodiscard]] bool IsHeldOutside() const { return m_count > 1; }
  [[nodiscard]] IRepresentedByPartsImpl& Parts() const { return *m_parts; }
  [[nodiscard]] CDataStoreBrowseConfigEntityImpl* Child() const {
    return static_cast<CDataStoreBrowseConfigEntityImpl*>(FirstChild());
  }

 private:
  ~CDataStoreBrowseConfigEntityImpl() override = default;

  void FillDefaultColumns();

  std::uint32_t m_count = 1;  // as the base class counts, which doesn't tell
  SymbolKey m_symbolKey = symbol::kLevel;
  bool m_symbolIsDefault = true;
  std::vector<std::pair<WString, WString>> m_defaultColumns;  // entity and property
  BackRef<CDataStoreBrowseConfigImpl> m_config;
  Ref<CRepresentedByPartsImpl> m_parts;
};

}  // namespace hv::vex

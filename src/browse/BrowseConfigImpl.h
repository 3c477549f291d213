// browse/BrowseConfigImpl.h - the browse configuration of a store: one chain of levels, their
// symbols and display names, and the implicit branch of submatrix and local column.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <storefabric/Ref.h>

#include "browse/BrowseConfigForest.h"
#include "browse/SymbolTable.h"
#include "store/core/CoreBinding.h"

namespace hv::vex {

/// Configuration and levels keep each other alive: a host that holds only a level has the whole
/// configuration, and whoever lets go last, of either kind, frees everything. The levels point back
/// without a count; when the configuration's last holder leaves while levels are held, it keeps one
/// reference on itself until a level tells that it is left alone.
class CDataStoreBrowseConfigImpl final : private CoreBinding, public tBrowseConfigImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::CDataStoreBrowseConfigImpl");
  using Entity = CDataStoreBrowseConfigEntityImpl;

  CDataStoreBrowseConfigImpl() = default;

  // IUnknown
  Result QueryInterface(const Iid& iid, void** out) override {
    const Result rc = tBrowseConfigImpl::QueryInterface(iid, out);
    if (!Failed(rc)) ++m_count;
    return rc;
  }
  std::uint32_t AddRef() override { return m_count = tBrowseConfigImpl::AddRef(); }
  std::uint32_t Release() override;

  // IBrowseConfig
  std::uint64_t GetGeneration() override { return m_generation; }
  Result Load(IStore* store, std::u16string_view fileName) override;
  IBrowseConfigEntity* CreateChildEntity(IEntity* entity, IRelation* reference,
                                         IBrowseConfigEntity* parent) override;
  IBrowseConfigEntity* CreateRootEntity(IEntity* entity) override;
  IBrowseConfigEntity* CreateEntityFromConfig(IEntity* entity, IInstance* instance,
                                              IBrowseConfigEntity* parent) override;
  void Clear() override;

  // IDataStoreBrowseConfig
  Result SetSingleRoot(IModel* model, std::u16string_view entityName) override;
  Result InitFromReferences(IModel* model, References references) override;
  Result InitModel(IModel* model) override;
  Result LoadFromStream(IStore* store, std::u16string_view text) override;
  Result ExtendPath(IBrowseConfig* source, References references) override;
  Result GetSymbolHandle(std::int32_t index, ISymbolImage** image) override;
  Result GetSymbolCount(std::int32_t* count) override;
  Result GetStandardSymbols(SymbolMap* symbols) override;
  Result GetCustomerSymbols(SymbolMap* symbols) override;
  Result AddCustomerSymbol(ISymbolImage* image, SymbolKey key) override;
  Result AddCustomerSymbolAuto(ISymbolImage* image) override;
  Result ReplaceCustomerSymbol(ISymbolImage* image, std::int32_t index) override;
  Result DeleteCustomerSymbolAt(std::int32_t index) override;
  Result DeleteCustomerSymbol(SymbolKey key) override;
  Result GetSymbolIndex(SymbolKey key, std::int32_t* index) override;
  Result GetSymbolKey(std::int32_t index, SymbolKey* key) override;
  bool IsSymbolUsed(std::int32_t index, IBrowseConfigEntity* skipped) override;
  std::int32_t GetStandardSymbolCount() override;
  Result ImportCustomerSymbols(const SymbolMap& symbols) override;
  bool HasInvalidSymbols() override;
  Result ReplaceInvalidSymbols() override;
  Result ResetSymbols() override;
  Result ResetDisplayNames() override;
  void ReleaseIfUnreferenced() override;
  bool IsUnreferenced() override;
  IBrowseConfigEntity* CreateChildEntityWithSymbol(IEntity* entity, IRelation* reference,
                                                   IBrowseConfigEntity* parent,
                                                   SymbolKey key) override;
  IBrowseConfigEntity* CreateRootEntityWithSymbol(IEntity* entity, SymbolKey key) override;
  Result RemoveEntity(IBrowseConfigEntity* entity) override;

  // IDataStoreBrowseConfigTesterInterface
  std::int32_t CompareWith(IBrowseConfig* other) override;
  std::int32_t CompareChainWith(IBrowseConfig* other) override;
  Result CopyFrom(IBrowseConfig* source) override;
  std::int32_t CompareEntityWithExpected(IBrowseConfigEntity* entity,
                                         const ExpectedBrowseEntity& expected) override;
  std::int32_t CompareWithExpected(std::span<const SymbolKey> symbolKeys,
                                   std::span<const ExpectedBrowseEntity> records) override;

  // For the library
  /// Copies a configuration with its model.
  /// \return S_OK; S_FALSE for this very object; E_POINTER; E_UNEXPECTED for a source without a
  ///         model; kInvalidPath for an entity that comes twice
  Result CloneFrom(IBrowseConfig* source);
  /// True if the path reaches a measurement and what lies below its submatrices is settled.
  [[nodiscard]] bool IsPathComplete() const { return m_pathComplete; }
  /// The tree comes from this store at the next `Load` or `BuildFromConfig`; `Clear` lets go of it.
  void SetConfigStore(Ref<IStore> store) { m_configStore = std::move(store); }
  /// The body of a level's `AddChild`.
  Result AddChildAndBranch(Entity& parent, IRelation& reference, IBrowseConfigEntity** child);

 private:
  ~CDataStoreBrowseConfigImpl() override;

  using Forest = tBrowseConfigImpl;

  void* FindFace(const Iid& iid) override;

  // tBrowseConfigImpl
  Ref<tBrowseConfigEntityImpl> MakeEntity(IEntity& entity, BrowsePlace place) override;
  [[nodiscard]] tBrowseConfigEntityImpl* FindLevel(IEntity* entity) const override;

  Ref<Entity> MakeLevel(IEntity& entity, BrowsePlace place);
  [[nodiscard]] Entity* FirstRoot() const { return static_cast<Entity*>(m_roots.First()); }
  [[nodiscard]] Entity* ImplicitLevel(IEntity* entity) const;
  void AddImplicit(Entity& level);
  void DropLevels();
  /// Every level of both maps, until `visit` says true. True if it did.
  template <class Visit>
  bool AnyLevel(Visit visit) const;

  // The path
  Result BuildFromReferences(References references);
  Result AppendHop(IRelation& hop, Ref<Entity>* level);
  void RefreshSubmatrixBranch();
  void BuildImplicitBranch(IEntity& submatrix, IEntity& localColumn);

  // Copies
  Result CopyChain(CDataStoreBrowseConfigImpl& source);
  Result CopyUpward(IEntity& entity, Entity& from, Ref<Entity>* copy);
  Result CopyLevel(Entity& from, IEntity& entity, BrowsePlace place, Ref<Entity>* copy);
  Result CopyImplicitBranch(CDataStoreBrowseConfigImpl& source);
  Result CloneChain(CDataStoreBrowseConfigImpl& source);
  void StartCopy(CDataStoreBrowseConfigImpl& source);

  std::uint32_t m_count = 1;   // as the base class counts, which doesn't tell
  bool m_holdsItself = false;  // one of the references is its own
  bool m_pathComplete = false;
  LevelMap m_implicitLevels;
  SymbolTable m_symbols;
  std::uint64_t m_generation = 0;
};

/// The configuration behind a face, if it is one of this library's own; otherwise null.
Ref<CDataStoreBrowseConfigImpl> OwnBrowseConfig(IBrowseConfig* config);
Ref<CDataStoreBrowseConfigEntityImpl> OwnBrowseEntity(IBrowseConfigEntity* entity);

template <class Visit>
bool CDataStoreBrowseConfigImpl::AnyLevel(Visit visit) const {
  for (const LevelMap* map : {&m_levels, &m_implicitLevels}) {
    for (const auto& [key, level] : *map) {
      if (visit(static_cast<Entity&>(*level.entity))) return true;
    }
  }
  return false;
}

}  // namespace hv::vex

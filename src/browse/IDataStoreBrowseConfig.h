// browse/IDataStoreBrowseConfig.h - what can be done with the browse configuration of a store
// beyond reading it, and the face that compares two of them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <storefabric/IBrowseConfig.h>

#include "browse/SymbolTable.h"

namespace hv::vex {

/// Null arguments give E_POINTER. Lists of references run from the leaf to the start.
class IDataStoreBrowseConfig : public IBrowseConfig {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreBrowseConfig");
  using References = std::span<IRelation* const>;

  /// Takes the model and makes the named entity the only root. E_INVALIDARG if it doesn't exist.
  virtual Result SetSingleRoot(IModel* model, std::u16string_view entityName) = 0;
  /// Takes the model and builds a chain. E_UNEXPECTED for an empty list or an entity that the model
  /// doesn't have.
  virtual Result InitFromReferences(IModel* model, References references) = 0;
  /// Takes the model and loads the standard symbols. The path, if there is one, stays.
  virtual Result InitModel(IModel* model) = 0;
  /// E_INVALIDARG for an empty text; E_NOTIMPL for any other in a build that can't read browse
  /// settings.
  virtual Result LoadFromStream(IStore* store, std::u16string_view text) = 0;
  /// Copies the source and makes its path longer by what the list has beyond it.
  /// \return S_OK; E_UNEXPECTED for an empty list; what the copy says; VEX_E_OTHER_STORE for an
  ///         entity that the model doesn't have; E_INVALIDARG if path and list don't begin alike
  virtual Result ExtendPath(IBrowseConfig* source, References references) = 0;

  /// \name Symbols, see SymbolTable
  /// @{
  virtual Result GetSymbolHandle(std::int32_t index, ISymbolImage** image) = 0;
  virtual Result GetSymbolCount(std::int32_t* count) = 0;
  virtual Result GetStandardSymbols(SymbolMap* symbols) = 0;
  virtual Result GetCustomerSymbols(SymbolMap* symbols) = 0;
  virtual Result AddCustomerSymbol(ISymbolImage* image, SymbolKey key) = 0;
  virtual Result AddCustomerSymbolAuto(ISymbolImage* image) = 0;
  virtual Result ReplaceCustomerSymbol(ISymbolImage* image, std::int32_t index) = 0;
  virtual Result DeleteCustomerSymbolAt(std::int32_t index) = 0;
  virtual Result DeleteCustomerSymbol(SymbolKey key) = 0;
  virtual Result GetSymbolIndex(SymbolKey key, std::int32_t* index) = 0;
  virtual Result GetSymbolKey(std::int32_t index, SymbolKey* key) = 0;
  /// True if a level other than `skipped` (which may be null) has that symbol.
  virtual bool IsSymbolUsed(std::int32_t index, IBrowseConfigEntity* skipped) = 0;
  virtual std::int32_t GetStandardSymbolCount() = 0;
  virtual Result ImportCustomerSymbols(const SymbolMap& symbols) = 0;
  /// True if the symbol of a level isn't in the table.
  virtual bool HasInvalidSymbols() = 0;
  virtual Result ReplaceInvalidSymbols() = 0;
  virtual Result ResetSymbols() = 0;
  /// @}

  virtual Result ResetDisplayNames() = 0;
  /// Called by a level that nobody but this object holds any more.
  virtual void ReleaseIfUnreferenced() = 0;
  /// True if nobody but this object holds a level.
  virtual bool IsUnreferenced() = 0;
  virtual IBrowseConfigEntity* CreateChildEntityWithSymbol(IEntity* entity, IRelation* reference,
                                                           IBrowseConfigEntity* parent,
                                                           SymbolKey key) = 0;
  virtual IBrowseConfigEntity* CreateRootEntityWithSymbol(IEntity* entity, SymbolKey key) = 0;
  /// Takes a level and everything below it out of the path.
  /// \return S_OK; E_UNEXPECTED if that fails below; E_INVALIDARG for a level of another path
  virtual Result RemoveEntity(IBrowseConfigEntity* entity) = 0;

 protected:
  ~IDataStoreBrowseConfig() = default;
};

/// Which comparison failed. Frozen numbers.
namespace compare {
inline constexpr std::int32_t kEqual = 0;
inline constexpr std::int32_t kNull = 1;
inline constexpr std::int32_t kOtherClass = 2;
inline constexpr std::int32_t kStandardSymbols = 3;
inline constexpr std::int32_t kSymbols = 4;
inline constexpr std::int32_t kNoRoot = 5;
inline constexpr std::int32_t kEntityMissing = 6;
inline constexpr std::int32_t kChildPath = 7;
inline constexpr std::int32_t kParentPath = 8;
inline constexpr std::int32_t kPath = 9;
inline constexpr std::int32_t kSymbol = 10;
inline constexpr std::int32_t kParts = 11;
inline constexpr std::int32_t kPartKind = 12;
inline constexpr std::int32_t kBranchMissing = 13;
inline constexpr std::int32_t kLength = 14;
inline constexpr std::int32_t kLookup = 50;
}  // namespace compare

/// What a level is expected to be. Parts are texts with "p:" before a property's name and "t:"
/// before a free text.
struct ExpectedBrowseEntity {
  WString entityName;
  WString path;
  WString parentPath;
  SymbolKey symbolKey = 0;
  std::vector<WString> parts;
};

/// Compares two configurations. All but `CopyFrom` give a number of `compare`.
class IDataStoreBrowseConfigTesterInterface : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreBrowseConfigTesterInterface");

  /// Walks this chain and finds each level in the other configuration by name.
  virtual std::int32_t CompareWith(IBrowseConfig* other) = 0;
  /// Walks both chains in step, whose lengths count too. References are told apart by the entities
  /// they lead to.
  virtual std::int32_t CompareChainWith(IBrowseConfig* other) = 0;
  /// Copies a configuration of any model into this one's, by name; entities that derive from the
  /// measurement quantity, the submatrix and the local column by base name.
  /// \return S_OK; S_FALSE for this very object; E_POINTER; E_UNEXPECTED without a model;
  ///         kInvalidPath for an entity that comes twice; kMissingBaseType; VEX_E_OTHER_STORE.
  ///         After a failure the object keeps what was built so far and is of no use.
  virtual Result CopyFrom(IBrowseConfig* source) = 0;
  virtual std::int32_t CompareEntityWithExpected(IBrowseConfigEntity* entity,
                                                 const ExpectedBrowseEntity& expected) = 0;
  /// \param symbolKeys  all keys in the order of the list
  /// \param records     the chain from its root, then submatrix and local column
  virtual std::int32_t CompareWithExpected(std::span<const SymbolKey> symbolKeys,
                                           std::span<const ExpectedBrowseEntity> records) = 0;

 protected:
  ~IDataStoreBrowseConfigTesterInterface() = default;
};

}  // namespace hv::vex

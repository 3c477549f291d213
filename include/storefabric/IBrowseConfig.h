// storefabric/IBrowseConfig.h - which way through a store's model a browser follows, as an object
// of the library. One thread: that of the store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IBrowseConfigEntity;
class IEntity;
class IInstance;
class IModel;
class IRelation;
class IStore;

/// A counted list of texts.
class IStringList : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStringList");
  /// The type code of the elements.
  static constexpr std::int32_t kElementType = 23;

  virtual std::uint64_t GetCount() = 0;
  /// Empty beyond the end.
  virtual void GetText(std::uint64_t index, WString& text) = 0;

 protected:
  ~IStringList() = default;
};

/// Translates the names of a model for people.
class INameTranslator : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::INameTranslator");

  virtual void TranslateEntity(IEntity* entity, WString& text) = 0;
  virtual void TranslatePath(IEntity* entity, std::u16string_view path, WString& text) = 0;

 protected:
  ~INameTranslator() = default;
};

/// Takes the columns that a level of a browse path suggests for showing its elements.
class IDefaultColumns {
 public:
  /// \param column  receives the new column, with one reference
  virtual Result Add(std::u16string_view entityName, std::u16string_view propertyName,
                     IUnknown** column) = 0;

 protected:
  ~IDefaultColumns() = default;
};

/// A browse configuration: a tree of browse entities, each standing for one entity of a model.
/// Objects returned carry one reference for the caller. A lookup that finds nothing, or fails in
/// the engine, gives null or false. Names are told apart by case.
///
/// The roots have two cursors, one for paths and one for entities, which belong to the object: two
/// walks of one kind at a time disturb each other.
class IBrowseConfig : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseConfig");

  virtual IBrowseConfigEntity* GetEntityByName(std::u16string_view name) = 0;
  /// Also finds the implicit levels of submatrix and local column.
  virtual IBrowseConfigEntity* GetEntity(IEntity* entity) = 0;
  virtual std::int32_t GetRootCount() = 0;
  /// The path that lists the first root's elements ("/#" and a name); empty if there is none.
  virtual void GetFirstRootPath(WString& path) = 0;
  virtual IBrowseConfigEntity* GetFirstRoot() = 0;
  virtual void GetNextRootPath(WString& path) = 0;
  virtual IBrowseConfigEntity* GetNextRoot() = 0;
  /// E_NOTIMPL. Keeps its place in the order of the operations.
  virtual Result Reserved(IUnknown* argument) = 0;
  virtual bool IsEntityInPathByName(std::u16string_view name) = 0;
  /// True if the entity is one of the path or derives from one. Implicit levels don't count.
  virtual bool IsEntityInPath(IEntity* entity) = 0;
  /// The names of the data levels in the order in which they became such.
  virtual IStringList* GetDataLevelNames() = 0;
  virtual bool IsDataLevelByName(std::u16string_view name) = 0;
  virtual bool IsDataLevel(IEntity* entity) = 0;
  /// Null before one is set.
  virtual IModel* GetModel() = 0;
  /// Changes with each copy into this object.
  virtual std::uint64_t GetGeneration() = 0;
  /// Takes the store's model and builds the path.
  /// \param fileName  empty: the store's default path
  /// \return S_OK; E_POINTER for a null store; VEX_E_BAD_FILE for a file that doesn't exist;
  ///         E_NOTIMPL for one that does, in a build that can't read browse settings files
  virtual Result Load(IStore* store, std::u16string_view fileName) = 0;
  /// A new browse entity, not yet part of this configuration: for a level below `parent` that
  /// `reference` leads to, for a root, and for what an instance of a configuration store tells.
  virtual IBrowseConfigEntity* CreateChildEntity(IEntity* entity, IRelation* reference,
                                                 IBrowseConfigEntity* parent) = 0;
  virtual IBrowseConfigEntity* CreateRootEntity(IEntity* entity) = 0;
  virtual IBrowseConfigEntity* CreateEntityFromConfig(IEntity* entity, IInstance* instance,
                                                      IBrowseConfigEntity* parent) = 0;
  /// Builds the tree from the configuration store at hand; without one nothing happens.
  virtual void BuildFromConfig() = 0;
  /// Drops the tree, the symbols and the configuration store. The model stays.
  virtual void Clear() = 0;

 protected:
  ~IBrowseConfig() = default;
};

/// One level of a browse path. A browse entity keeps its whole configuration alive. The children
/// have two cursors as the roots have.
class IBrowseConfigEntity : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseConfigEntity");

  /// The reference that leads here from the parent; of a root the path that lists its elements.
  virtual void GetPath(WString& path) = 0;
  virtual void GetEntityName(WString& name) = 0;
  /// The attribute that stands for an element.
  virtual void GetRepresentedBy(WString& attribute) = 0;
  virtual bool HasChildren() = 0;
  virtual std::int32_t GetChildCount() = 0;
  /// Empty for a leaf.
  virtual void GetFirstChildPath(WString& path) = 0;
  virtual IBrowseConfigEntity* GetFirstChild() = 0;
  virtual void GetNextChildPath(WString& path) = 0;
  virtual IBrowseConfigEntity* GetNextChild() = 0;
  /// The entity's name, translated if there is a translator.
  virtual void GetEntityDisplayName(WString& name, INameTranslator* translator) = 0;
  virtual void GetPathDisplayName(WString& name, INameTranslator* translator,
                                  std::u16string_view path) = 0;
  /// True if the level of that name lies on the chain of first children below this one.
  virtual bool IsDescendantByName(std::u16string_view entityName) = 0;
  /// Position in the configuration's list of symbols; 0 for none.
  virtual std::int32_t GetSymbolIndex() = 0;
  virtual std::int32_t GetSelectedSymbolIndex() = 0;
  /// The reference that leads to the parent; empty for a root and for a one-way reference.
  virtual void GetParentPath(WString& path) = 0;
  /// Null for a root.
  virtual IBrowseConfigEntity* GetParent() = 0;
  /// Without effect. They keep their places in the order of the operations.
  virtual void FirstHook() = 0;
  virtual void SecondHook() = 0;
  virtual IEntity* GetModelEntity() = 0;
  virtual bool IsEntityOfInstance(IInstance* instance) = 0;
  /// True if this level's entity is the given one or derives from it.
  virtual bool IsEntityOrDerived(IEntity* entity) = 0;
  virtual bool IsBaseType(std::u16string_view baseName) = 0;
  virtual bool IsDataLevel() = 0;
  /// Adds what a data level suggests: the id and the description, where the entity has them.
  /// \return S_OK; E_POINTER for null; E_OUTOFMEMORY; E_UNEXPECTED for any other failure
  virtual Result AddDefaultColumns(IDefaultColumns* columns) = 0;
  /// A copy of the level's set of names, which is empty.
  virtual IStringList* GetPropertyNames() = 0;
  virtual void SetDataLevel(bool isDataLevel) = 0;

 protected:
  ~IBrowseConfigEntity() = default;
};

}  // namespace hv::vex

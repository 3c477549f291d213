// store/model/IEntityImpl.h - the logic faces of entities, of lists of them and of their cache.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Engine failures give E_FAIL unless the common rules name another code.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex {

class IEntity;
class IEntityCollImpl;
class IModelPropertyCollImpl;
class IModelReferenceCollImpl;

/// A type of instance as the model shows it.
class IEntityImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEntityImpl");

  virtual Result GetName(WString* name) = 0;
  /// One collection for the entity's life.
  virtual Result GetModelProperties(IModelPropertyCollImpl** properties) = 0;
  /// A new collection at each call. VEX_E_OBJECT_GONE if the session's model is gone.
  virtual Result GetModelReferences(IModelReferenceCollImpl** references) = 0;
  /// S_OK with null for a leaf; otherwise a new list. VEX_E_OBJECT_GONE as above.
  virtual Result GetSubTypes(IEntityCollImpl** subTypes) = 0;
  /// S_OK with null for an entity without a parent. VEX_E_OBJECT_GONE as above.
  virtual Result GetSuperType(IEntityImpl** superType) = 0;
  /// 1 if this is the entity of that name, application or base, or derives from it; 0 otherwise and
  /// for an unknown name.
  virtual Result IsKindOf(std::u16string_view name, std::int32_t* isKindOf) = 0;
  /// 1 if the name begins with "ao" in lower case, which says nothing else.
  virtual Result IsBaseType(std::int32_t* isBaseType) = 0;
  /// Without effect. Keeps its place in the order of the operations.
  virtual Result Reserved() = 0;

 protected:
  ~IEntityImpl() = default;
};

/// A list of entities with unique names.
class IEntityCollImpl : public easyImpl::INamedCollectionImpl<IEntityImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEntityCollImpl");

 protected:
  ~IEntityCollImpl() = default;
};

/// Gives out the one logic object per entity of a session.
class IEntityImplCache : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEntityImplCache");

  /// The object of that application name if it is known by now. A name in another case is found
  /// where no entity bears the very name.
  /// \return S_OK; E_INVALIDARG for an empty or unknown name.
  virtual Result Get(std::u16string_view name, IEntityImpl** entity) = 0;
  /// The object of an entity of the engine, made on first request.
  /// \return S_OK; E_POINTER for a null argument; E_OUTOFMEMORY.
  virtual Result GetOrCreate(IEntity* coreEntity, IEntityImpl** entity) = 0;
  /// Lets go of all entities. Those still held elsewhere can't reach others any more.
  virtual Result Clear() = 0;

 protected:
  ~IEntityImplCache() = default;
};

}  // namespace hv::vex

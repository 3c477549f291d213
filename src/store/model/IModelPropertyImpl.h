// store/model/IModelPropertyImpl.h - the logic faces of an entity's properties.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Engine failures give E_FAIL unless the common rules name another code.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>
#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

/// A property of an entity.
class IModelPropertyImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelPropertyImpl");

  virtual Result GetName(WString* name) = 0;
  virtual Result GetDataType(enumDataType* dataType) = 0;
  /// \return S_OK; VEX_E_NOT_BASE_PROPERTY with an empty text if there is no base name.
  virtual Result GetBaseName(WString* baseName) = 0;
  virtual Result GetMinOccur(std::int32_t* minOccur) = 0;
  virtual Result GetMaxOccur(std::int32_t* maxOccur) = 0;

 protected:
  ~IModelPropertyImpl() = default;
};

/// The properties of an entity in the order of the engine.
class IModelPropertyCollImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelPropertyCollImpl");
  using Item = IModelPropertyImpl;

  /// E_INVALIDARG for an index outside.
  virtual Result GetItem(std::int32_t index, IModelPropertyImpl** property) = 0;
  virtual Result GetCount(std::int32_t* count) = 0;
  /// By name, or by any name under which the engine knows the attribute, such as the base name.
  /// E_INVALIDARG for an unknown name.
  virtual Result GetItemByName(std::u16string_view name, IModelPropertyImpl** property) = 0;
  /// True for a property's name, and for its very base name.
  virtual Result Exists(std::u16string_view name, bool* exists) = 0;

 protected:
  ~IModelPropertyCollImpl() = default;
};

}  // namespace hv::vex

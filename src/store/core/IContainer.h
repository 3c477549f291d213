// store/core/IContainer.h - a record's values by attribute name or path.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IInstance;
class IInstList;

/// Values by attribute name. An instance answers for this interface too: there names are those of
/// the model (own name or base name) or paths. A free container (`vexCreateContainer`) holds
/// whatever is set.
///
/// Paths: "relation.relation.attribute" follows references from the instance; "/#Name" names all
/// instances of an entity; "/##name" the same by base name or in any letter case; both may go on
/// with
/// ".relation". A step may end in "(attribute='value')", quotes inside doubled, which keeps the
/// instances with that value (without regard to case).
class IContainer : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IContainer");

  /// Fixes the value type of a fresh free container: it then is a list of values of that type, read
  /// and written through `GetAttribute` with an empty name. An instance throws kNotSupported.
  virtual void SetType(std::int32_t typeCode) = 0;
  /// The value as text, empty if unset; "name" gives the name of an instance.
  /// An unknown name throws kUnknownName.
  virtual void GetString(WString& value, std::u16string_view name) = 0;
  /// The first instance at a path, or null.
  virtual IInstance* GetObject(std::u16string_view path) = 0;
  /// The instances at a path or reference, or what a free container holds under that name. Never
  /// null.
  virtual IInstList* GetList(std::u16string_view pathOrName) = 0;
  virtual void SetInteger(std::u16string_view name, std::int32_t value) = 0;
  virtual void SetString(std::u16string_view name, std::u16string_view value) = 0;

  // Added behind the operations above.

  /// The first value as a number; `otherwise` if it is unset.
  virtual std::int64_t GetInteger64(std::u16string_view name, std::int64_t otherwise) = 0;
  virtual std::int32_t GetBoolean(std::u16string_view name, std::int32_t otherwise) = 0;
  virtual double GetReal(std::u16string_view name, double otherwise) = 0;
  virtual void SetInteger64(std::u16string_view name, std::int64_t value) = 0;
  virtual void SetBoolean(std::u16string_view name, std::int32_t value) = 0;
  virtual void SetReal(std::u16string_view name, double value) = 0;
  /// The value itself, or null for a name that doesn't exist.
  virtual IAttribute* GetAttribute(std::u16string_view name) = 0;
  /// Names of the values that a free container holds, or of an instance's attributes.
  virtual IAttribute* GetNames() = 0;

 protected:
  ~IContainer() = default;
};

}  // namespace hv::vex

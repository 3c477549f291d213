// storefabric/IDragDrop.h - what a drag brings along, and the companion that reads it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

/// \name Formats of drag data
/// @{
inline constexpr std::u16string_view kFormatQueryConditions = u"HV VEX Query Conditions";
inline constexpr std::u16string_view kFormatPropertyDescriptions = u"HV VEX Property Descriptions";
/// @}

/// Drag data: bytes by format name. A host implements it over its platform's data object.
class IDataObject : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataObject");

  /// The bytes under a format, borrowed as long as the object lives and isn't written to.
  /// \return S_OK; S_FALSE with null and 0 if there is nothing under that name; E_POINTER.
  virtual Result GetData(std::u16string_view format, const std::byte** bytes,
                         std::size_t* size) = 0;

 protected:
  ~IDataObject() = default;
};

/// Receives what a data object lists.
class IDragItemSink {
 public:
  /// One query condition: property `attribute` of `entity`, the operator's code, the value as text.
  virtual void OnCondition(std::u16string_view entity, std::u16string_view attribute,
                           std::int32_t operatorCode, std::u16string_view value) = 0;
  /// One property description: property `attribute` of `entity`.
  virtual void OnProperty(std::u16string_view entity, std::u16string_view attribute) = 0;

 protected:
  ~IDragItemSink() = default;
};

/// Tells what a data object holds. Comes from the GUI companion; answers are 32-bit truth values.
/// A null object holds nothing.
class IDragDrop : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDragDrop");

  /// Non-zero if the object holds bytes under the format of query conditions.
  virtual std::int32_t HoldsQueryConditions(IDataObject* object) = 0;
  /// Non-zero if the object holds bytes under the format of property descriptions.
  virtual std::int32_t HoldsPropertyDescriptions(IDataObject* object) = 0;
  /// Lists the object's query conditions. Throws kNotSupported from a companion that can't read
  /// them.
  virtual void ListQueryConditions(IDataObject* object, IDragItemSink* sink) = 0;
  /// Lists the object's property descriptions; throws as above.
  virtual void ListPropertyDescriptions(IDataObject* object, IDragItemSink* sink) = 0;

 protected:
  ~IDragDrop() = default;
};

}  // namespace hv::vex

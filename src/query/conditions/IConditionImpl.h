// query/conditions/IConditionImpl.h - the logic face of one condition of a query.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/DataType.h>
#include <storefabric/ISVEXConditions.h>
#include <storefabric/Unknown.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::vex {
class IDisplayNameSource;
}  // namespace hv::vex

namespace hv::vex::easyImpl {

/// One condition: an operator and values on the property of an entity.
///
/// Texts given by reference stand until the next change. Operations with a result code give
/// E_POINTER for a null out pointer and E_OUTOFMEMORY; a failure changes nothing.
class IConditionImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IConditionImpl");

  /// The key in the collection, "C" and a number.
  virtual const WString& GetName() = 0;
  /// Doesn't tell the collection; see `IConditionCollImpl::RenameKey`.
  virtual Result SetName(std::u16string_view name) = 0;
  /// The name that the operator has for a date if this is a condition on a date, which the data
  /// type, the property or the first value tells; the symbol otherwise.
  virtual WString GetOperatorForDisplay() = 0;
  /// One of the seven symbols (query/values/Operators.h), or what else has been set.
  virtual const WString& GetOperatorSymbol() = 0;
  /// Takes a symbol or a name for dates, and keeps the symbol.
  virtual Result SetOperator(std::u16string_view op) = 0;
  virtual const WString& GetProperty() = 0;
  /// The property in the language of the user.
  virtual const WString& GetShownProperty() = 0;
  /// Takes the snapshots of what is shown anew.
  virtual Result SetProperty(std::u16string_view property) = 0;
  /// The property as the store knows it; the property itself if there is no store.
  virtual const WString& GetInternalProperty() = 0;
  virtual const WString& GetType() = 0;
  /// The entity in the language of the user.
  virtual const WString& GetShownType() = 0;
  /// Takes the snapshots of what is shown anew.
  virtual Result SetType(std::u16string_view type) = 0;
  /// The number of values that count: 0 instead of 2 and more if the operator doesn't take several
  /// values; without a collection the plain number.
  virtual std::int32_t GetEffectiveSize() = 0;
  /// The number of values.
  /// \return S_OK; what the check of the store's model says
  virtual Result GetSize(std::int32_t* size) = 0;
  /// All values in one text, joined with " OR ", each escaped.
  virtual const WString& GetValueText() = 0;
  /// Only several values joined with OR show: if there are others than one, and the operator isn't
  /// "=", each of them is empty. So the two bounds of a range stay hidden.
  /// \return S_OK; E_INVALIDARG for an index outside; what the check of the store's model says
  virtual Result GetValue(std::int32_t index, Variant* value) = 0;
  /// Empty if there is no value.
  virtual const Variant& GetFirstValue() = 0;
  virtual Result CopyValues(std::vector<Variant>* values) = 0;
  /// One value, and the text that stands for it.
  virtual Result SetValue(const Variant& value, std::u16string_view text) = 0;
  /// Takes the values from a text that joins them with " OR " in any case: each a number where the
  /// type of the property asks for one, a text otherwise.
  virtual Result SetFromText(std::u16string_view text) = 0;
  /// Several values, and the text that stands for all of them.
  virtual Result SetValues(std::vector<Variant> values, std::u16string_view text) = 0;
  /// The type of the property as last known.
  virtual std::int32_t GetDataType() = 0;
  virtual Result SetDataType(std::int32_t dataType) = 0;
  /// Forgets the collection, which calls this when the condition leaves it, and when it dies.
  virtual void DetachFromOwner() = 0;

  /// \name The order of hits, which only some conditions hold
  /// A condition that holds none answers false, `eNoOrderBy` and E_NOTIMPL.
  /// @{
  virtual bool HasOrderBy() = 0;
  virtual enumOrderBy GetOrderBy() = 0;
  virtual Result SetOrderBy(enumOrderBy orderBy) = 0;
  virtual Result ClearOrderBy() = 0;
  /// @}

  /// \name The same again with result codes
  /// @{
  virtual Result ReadOperator(WString* op) = 0;  ///< for display
  virtual Result ReadProperty(WString* property) = 0;
  virtual Result ReadType(WString* type) = 0;
  virtual Result ReadEffectiveSize(std::int32_t* size) = 0;
  virtual Result ReadFirstValue(Variant* value) = 0;
  /// @}

  /// Copies property and type to what is shown, and puts the names of the user's language in their
  /// place if there is a source of them that knows both. Whatever that source fails with, the copy
  /// stays.
  virtual void RefreshSnapshots() = 0;
  /// Null if there is none; borrowed.
  virtual IDisplayNameSource* GetDisplayNameSource() = 0;

  // Added behind the operations above.

  /// The entity as the store knows it: the dotted way from the measurement quantity to it, empty
  /// for the measurement quantity itself; the entity's name if there is no way or no store.
  virtual const WString& GetInternalType() = 0;

 protected:
  ~IConditionImpl() = default;
};

}  // namespace hv::vex::easyImpl

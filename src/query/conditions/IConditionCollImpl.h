// query/conditions/IConditionCollImpl.h - the logic face of the conditions of a query.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>

#include "query/conditions/IConditionImpl.h"
#include "store/collections/ICollectionImpl.h"

namespace hv::vex {
class IConditionNames;
}  // namespace hv::vex

namespace hv::vex::easyImpl {

/// The conditions of a query in the order in which they were added, by index from 0 and by name,
/// and the logic that joins them. Out objects carry one reference for the caller; a null out
/// pointer gives E_POINTER; out objects are null after a failure. A failure changes nothing unless
/// the operation says otherwise.
///
/// Removing a condition, by any of the operations of the base, repairs the logic; `Clear` empties
/// it.
class IConditionCollImpl : public INamedCollectionImpl<IConditionImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IConditionCollImpl");

  /// Adds a condition without checks, as for a property that was chosen and has no value yet: ">="
  /// and the current time for a date, "=" and an empty text for any other.
  virtual Result AddDefault(std::u16string_view type, std::u16string_view property,
                            IConditionImpl** condition) = 0;
  /// Checks the arguments and adds a condition under a new name, as `ISVEXConditions::Add` tells.
  /// The codes of values stay as the check gives them: VEX_E_VALUE_TYPE, VEX_E_VALUE_NOT_DATE and
  /// VEX_E_VALUE_DIMENSIONS, which hosts see as VEX_E_BAD_VALUE.
  virtual Result Add(std::u16string_view type, std::u16string_view property, std::u16string_view op,
                     const Variant& value, IConditionImpl** condition) = 0;
  /// Becomes a copy of the other collection: all conditions, and the logic as it is stored.
  virtual Result AssignFrom(IConditionCollImpl& other) = 0;
  /// Whether both have the same logic, and conditions that are equal one by one, upper and lower
  /// case told apart.
  virtual bool Compare(IConditionCollImpl& other) = 0;
  /// Whether name, property, type, operator, value text, order and internal names are equal.
  virtual bool IsEqual(IConditionImpl& a, IConditionImpl& b) = 0;
  /// Becomes a copy of those conditions of the other collection that its logic names.
  virtual Result CopyReferenced(IConditionCollImpl& source) = 0;
  /// Adds a condition without checks, and extends a logic that isn't empty.
  /// \param name   empty: a new one is made
  /// \param value  a text gives all its values, see `IConditionImpl::SetFromText`; empty gives none
  /// \param condition  receives the new condition. If there is one of that name already, the new
  ///                   one isn't in the collection, and the logic stays.
  virtual Result AddWithName(std::u16string_view name, std::u16string_view type,
                             std::u16string_view property, std::u16string_view op,
                             const Variant& value, IConditionImpl** condition) = 0;
  /// The same as `Clear`.
  virtual Result RemoveAll() = 0;
  /// Forgets the query, and the conditions forget the collection.
  virtual void DetachFromOwner() = 0;
  virtual bool IsDateProperty(std::u16string_view type, std::u16string_view property) = 0;
  /// Makes a date of a value: a text is read in the format of the language.
  /// \param value  becomes the date; null if there is none in it
  /// \return S_OK for a date or a time object, which stays as it is; VEX_E_VALUE_WAS_TEXT, a
  ///         warning, for a text that was read; VEX_E_VALUE_NOT_DATE
  virtual Result NormaliseDateValue(Variant* value) = 0;
  virtual bool IsValidType(std::u16string_view type) = 0;
  virtual bool IsValidProperty(std::u16string_view type, std::u16string_view property) = 0;
  /// \param op  a symbol; for a date its display name
  virtual bool IsOperatorSupported(std::u16string_view op, std::u16string_view type,
                                   std::u16string_view property) = 0;
  /// \return S_OK if a condition under that symbol may have several values; VEX_E_OR_OPERATOR;
  ///         VEX_E_OR_UNSUPPORTED
  virtual Result CheckOperatorForOr(std::u16string_view symbol) = 0;
  /// The name of the store of the model; empty if there is none.
  virtual WString GetStoreName() = 0;
  /// Takes a text that is valid already, with keywords in upper case, into its normal form.
  virtual Result SetLogicNormalised(std::u16string_view text) = 0;
  /// The logic, or if it is empty the chain of all names with " AND ".
  virtual WString GetLogic() = 0;
  /// \return S_OK; VEX_E_BAD_LOGIC; VEX_E_LOGIC_UNSUPPORTED
  virtual Result SetLogic(std::u16string_view text) = 0;
  /// Counts from 0. \return S_OK; E_FAIL for an unknown name
  virtual Result GetIndexOfName(std::u16string_view name, std::int32_t* index) = 0;
  /// True for a name that begins as the made ones do, with "C".
  virtual bool NameHasPrefix(std::u16string_view name) = 0;
  /// Names the conditions "C1", "C2" ... in their order, in the logic as well, which isn't
  /// normalised.
  virtual Result Renumber() = 0;
  /// The name of the query's store; empty without a query.
  virtual WString GetOwnerName() = 0;
  /// Renames a condition in the collection and tells it; the logic stays.
  /// \return S_OK; E_INVALIDARG for an unknown old, or an empty or taken new name
  virtual Result RenameKey(std::u16string_view oldName, std::u16string_view newName) = 0;
  /// A condition with the same fields that isn't in the collection.
  virtual Result CloneCondition(IConditionImpl& source, IConditionImpl** clone) = 0;
  /// Clones a condition and puts the clone at the end under its name, unless that is taken. The
  /// logic stays.
  virtual Result AddClone(IConditionImpl& source) = 0;
  /// A condition without a name that isn't in the collection.
  virtual Result CreateCondition(std::u16string_view type, std::u16string_view property,
                                 IConditionImpl** condition) = 0;

  // Added behind the operations above.

  /// The logic as stored, possibly empty.
  virtual const WString& GetStoredLogic() = 0;
  /// What logic texts need to know of the collection; lives as long as the collection.
  virtual const IConditionNames& GetNames() = 0;
  /// See `IConditionOwner::CheckModel`; S_OK without a query.
  virtual Result CheckModel(std::u16string_view type) = 0;

 protected:
  ~IConditionCollImpl() = default;
};

}  // namespace hv::vex::easyImpl

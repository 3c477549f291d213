// query/conditions/ConditionCollImpl.h - the conditions of a query and the logic that joins them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>

#include "query/conditions/ConditionImpl.h"
#include "query/conditions/IConditionCollImpl.h"
#include "query/conditions/IConditionOwner.h"
#include "query/logic/LogicText.h"
#include "store/collections/NamedCollectionImpl.h"

namespace hv::vex::easyImpl {

/// Conditions that know no store: every type and property is valid, none is a date. All items are
/// `CConditionImpl`, which only this class and those derived from it put in.
class CConditionCollImpl : public tNamedCollectionImpl<IConditionCollImpl> {
 public:
  /// \param owner  kept without a reference until `DetachFromOwner`; may be null
  explicit CConditionCollImpl(IConditionOwner* owner);

  // ICollectionImpl
  Result RemoveAt(std::int32_t index) override;
  Result Clear() override;
  // INamedCollectionImpl
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override;
  // IConditionCollImpl
  Result AddDefault(std::u16string_view type, std::u16string_view property,
                    IConditionImpl** condition) override;
  Result Add(std::u16string_view type, std::u16string_view property, std::u16string_view op,
             const Variant& value, IConditionImpl** condition) override;
  Result AssignFrom(IConditionCollImpl& other) override;
  bool Compare(IConditionCollImpl& other) override;
  bool IsEqual(IConditionImpl& a, IConditionImpl& b) override;
  Result CopyReferenced(IConditionCollImpl& source) override;
  Result AddWithName(std::u16string_view name, std::u16string_view type,
                     std::u16string_view property, std::u16string_view op, const Variant& value,
                     IConditionImpl** condition) override;
  Result RemoveAll() override { return Clear(); }
  void DetachFromOwner() override;
  bool IsDateProperty(std::u16string_view type, std::u16string_view property) override;
  Result NormaliseDateValue(Variant* value) override;
  bool IsValidType(std::u16string_view type) override;
  bool IsValidProperty(std::u16string_view type, std::u16string_view property) override;
  bool IsOperatorSupported(std::u16string_view op, std::u16string_view type,
                           std::u16string_view property) override;
  Result CheckOperatorForOr(std::u16string_view symbol) override;
  WString GetStoreName() override { return {}; }
  Result SetLogicNormalised(std::u16string_view text) override;
  WString GetLogic() override;
  Result SetLogic(std::u16string_view text) override;
  Result GetIndexOfName(std::u16string_view name, std::int32_t* index) override;
  bool NameHasPrefix(std::u16string_view name) override;
  Result Renumber() override;
  WString GetOwnerName() override;
  Result RenameKey(std::u16string_view oldName, std::u16string_view newName) override;
  Result CloneCondition(IConditionImpl& source, IConditionImpl** clone) override;
  Result AddClone(IConditionImpl& source) override;
  Result CreateCondition(std::u16string_view type, std::u16string_view property,
                         IConditionImpl** condition) override;
  const WString& GetStoredLogic() override { return m_logic.GetStored(); }
  const IConditionNames& GetNames() override { return m_names; }
  Result CheckModel(std::u16string_view type) override;

 protected:
  ~CConditionCollImpl() override;

  void OnRemove(std::size_t position) override;

  /// The condition that this kind of collection holds, with nothing but its two names.
  virtual Ref<CConditionImpl> MakeCondition(std::u16string_view type, std::u16string_view property);
  /// A new condition stands at the end; its name isn't in the logic yet.
  virtual void OnAdded(CConditionImpl& /*condition*/) {}
  /// The stored logic may have changed.
  virtual void OnLogicChanged() {}

  /// Gives a new condition operator and value, puts it in and extends the logic; what `AddWithName`
  /// does with a condition of its own.
  Result Complete(const Ref<CConditionImpl>& condition, std::u16string_view name,
                  std::u16string_view op, const Variant& value, IConditionImpl** out);
  /// The condition at a position below `Size()`.
  [[nodiscard]] CConditionImpl& ConditionAt(std::size_t position) const {
    return static_cast<CConditionImpl&>(ItemAt(position));
  }
  void SetOwnerQuery(IConditionOwner* owner) { m_owner.Set(owner); }

 private:
  using Named = tNamedCollectionImpl<IConditionCollImpl>;

  /// The collection as logic texts see it.
  class Names final : public IConditionNames {
   public:
    explicit Names(CConditionCollImpl& conditions) : m_conditions(conditions) {}
    [[nodiscard]] bool HasName(std::u16string_view name) const override;
    [[nodiscard]] std::size_t GetNameCount() const override { return m_conditions.Size(); }
    [[nodiscard]] WString GetName(std::size_t index) const override {
      return m_conditions.NameAt(index);
    }

   private:
    CConditionCollImpl& m_conditions;
  };

  bool HasName(std::u16string_view name);
  /// A name behind all others.
  WString MakeName();
  /// Puts a condition at the end under a name that is free.
  Result Insert(CConditionImpl& condition, std::u16string_view name);
  /// Becomes the clones, with a logic that is taken as it stands.
  Result TakeClones(const std::vector<Ref<CConditionImpl>>& clones, const WString& logic);
  Ref<CConditionImpl> MakeClone(IConditionImpl& source);

  LogicText m_logic;
  BackRef<IConditionOwner> m_owner;
  Names m_names{*this};
  /// The greatest name if it is known, so that adding needn't look at all of them.
  std::optional<WString> m_greatestName;
};

}  // namespace hv::vex::easyImpl

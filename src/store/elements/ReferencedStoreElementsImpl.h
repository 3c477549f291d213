// store/elements/ReferencedStoreElementsImpl.h - the elements that a reference leads to.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/WString.h>

#include "store/elements/NamedElements.h"
#include "store/elements/ReferencePath.h"

namespace hv::vex {

/// What a reference, or a path of references, leads to from an instance. The list is read when it
/// is first looked at, and follows the changes that are made through this object; finding an
/// element by its name, adding and linking need no list.
class CReferencedStoreElementsImpl final : public tNamedElements<IStoreElementsImpl> {
 public:
  CReferencedStoreElementsImpl(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                               std::u16string_view path)
      : tNamedElements(provider), m_instance(Ref<IInstance>::Share(&instance)), m_path(path) {}

  // ICollectionImpl
  Result Clear() override;

  // Names
  /// Asks the store for the first record with that name. A name that only this list has ("A_1" for
  /// a second "A") is looked for in the list then.
  Result GetItemByName(std::u16string_view name, Element** element) override;
  Result RemoveByName(std::u16string_view name) override;
  Result Exists(std::u16string_view name, bool* exists) override;

  // IStoreElementsImpl
  using tNamedElements::Add;
  /// The record gets the name as it is, also where another one has it.
  Result Add(std::u16string_view name, IStoreElementImpl** element) override;
  Result AddReference(IStoreElementImpl* element, IStoreElementImpl** member) override;
  /// VEX_E_REMOVE_REFERENCE also for an element that isn't a member.
  Result RemoveReference(IStoreElementImpl* element) override;
  Result RemoveAllReferences() override;

 private:
  ~CReferencedStoreElementsImpl() override = default;

  // tNamedElements
  Result ReadMembers() override;
  Result Prepare() override { return m_isRead ? S_OK : ReadMembers(); }

  /// Forgets the list, so that it is read anew.
  void DropList();
  [[nodiscard]] std::optional<LastStep> FindStep() const;
  /// The instances that the last reference begins at.
  [[nodiscard]] Ref<IInstList> StartsOf(const LastStep& step) const;
  [[nodiscard]] Ref<IInstance> FirstStartOf(const LastStep& step) const;
  /// What adding and removing a reference check first.
  Result CheckPartner(IStoreElementImpl* element, std::optional<LastStep>* step,
                      Ref<IInstance>* partner) const;
  [[nodiscard]] static bool IsLinked(IInstance& start, const LastStep& step, IInstance& partner);

  Ref<IInstance> m_instance;
  WString m_path;
  bool m_isRead = false;
};

}  // namespace hv::vex

// elements/VEXElementInt.h - elements and lists of them as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IVEXElement.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/IVEXElementImpl.h"
#include "elements/LogicOf.h"
#include "elements/WrapObject.h"

namespace hv::vex::easyImpl {

/// The body of `Sort` of wrappers of lists, see `IVEXElements`.
Result SortElements(IVEXElementsImpl& elements, const Variant& property, const Variant& ascending);

/// An element without anything special to its kind.
class CVEXElementInt final
    : public automation::DispatchImpl<CVEXElementInt, IVEXElementEx_1_9, IVEXElement, IVEXElementEx,
                                      ILogicOf<IVEXElementImpl>> {
 public:
  explicit CVEXElementInt(Ref<IVEXElementImpl> logic) : m_logic(std::move(logic)) {}
  /// The members that every kind of element has; a kind's own map takes it as its base.
  static const automation::DispatchMap& Map();

  // IVEXElement
  Result get_Instance(IUnknown** instance) override;
  Result get_Path(WString* path) override;
  Result IsKindOf(const WString& type, std::int32_t* isKindOf) override;
  Result get_Properties(IProperties** properties) override;
  Result get_Name(WString* name) override;
  Result put_Name(const WString& name) override;
  Result get_TransportDataCollection(IDispatch** collection) override;
  Result get_Children(IVEXElements** children) override;
  Result get_Type(WString* type) override;
  // IVEXElementEx
  Result get_DisplayName(WString* name) override;
  Result get_DisplayType(WString* type) override;
  // IVEXElementEx_1_9
  Result get_Parent(IVEXElement** parent) override;
  Result Refresh() override;
  // ILogicOf
  IVEXElementImpl& GetLogic() override { return *m_logic; }

 private:
  ~CVEXElementInt() override = default;

  Ref<IVEXElementImpl> m_logic;
};

/// A list of elements.
class CVEXElementsInt final
    : public automation::tReadCollectionInt<
          CVEXElementsInt, tReadTraits<IVEXElementsImpl, IVEXElement, CVEXElementInt>, IVEXElements,
          ILogicOf<IVEXElementsImpl>> {
 public:
  explicit CVEXElementsInt(Ref<IVEXElementsImpl> logic) : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IVEXElements
  Result Add(IUnknown* instance, IVEXElement** element) override;
  Result Remove(std::int32_t index) override;
  Result RemoveAll() override;
  Result get_TransportDataCollection(IDispatch** collection) override;
  Result get_IsIncomplete(std::int32_t* isIncomplete) override;
  Result get_MaxCount(std::int32_t* maxCount) override;
  Result put_MaxCount(std::int32_t maxCount) override;
  Result Sort(const Variant& property, const Variant& ascending) override;
  // ILogicOf
  IVEXElementsImpl& GetLogic() override { return Logic(); }

 private:
  ~CVEXElementsInt() override = default;
};

}  // namespace hv::vex::easyImpl

// elements/PropertyInt.h - properties and lists of them as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IVEXElement.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/LogicOf.h"
#include "elements/PropertyBase.h"
#include "elements/WrapObject.h"

namespace hv::vex::easyImpl {

/// A value or a list of values under a name.
class CPropertyInt final : public tPropertyInt<CPropertyInt, IProperty> {
 public:
  using tPropertyInt::tPropertyInt;
  static const automation::DispatchMap& Map();

  /// The property's name, for messages.
  WString TextForMessage(automation::ObjectTextId id) const;

 private:
  ~CPropertyInt() override = default;
};

/// The properties of an element.
class CPropertiesInt final
    : public automation::tReadCollectionInt<
          CPropertiesInt, tReadTraits<IPropertyCollectionImpl, IProperty, CPropertyInt>,
          IProperties, ILogicOf<IPropertyCollectionImpl>> {
 public:
  explicit CPropertiesInt(Ref<IPropertyCollectionImpl> logic)
      : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IProperties
  Result Add(const WString& name, const Variant& value, IProperty** property) override;
  Result Remove(const Variant& nameOrIndex) override;
  Result RemoveAll() override;
  Result Exists(const WString& name, std::int32_t* exists) override;
  /// E_POINTER for null; E_INVALIDARG for an object that isn't of this library.
  Result AddProperties(IProperties* properties, const WString& prefix) override;
  // ILogicOf
  IPropertyCollectionImpl& GetLogic() override { return Logic(); }

 private:
  ~CPropertiesInt() override = default;
};

}  // namespace hv::vex::easyImpl

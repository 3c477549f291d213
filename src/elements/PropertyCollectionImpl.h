// elements/PropertyCollectionImpl.h - the properties of one instance of the engine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "elements/IPropertyImpl.h"
#include "elements/InstPropNames.h"
#include "store/core/CoreBinding.h"
#include "store/core/IInstance.h"

namespace hv::vex::easyImpl {

/// Adds the properties of one list to another, each under its name behind `prefix`.
Result CopyProperties(IPropertyCollectionImpl& from, std::u16string_view prefix,
                      IPropertyCollectionImpl& to);

/// Reads an instance's properties by groups of names; each property object is made when it is asked
/// for. The list itself can't be changed: that gives E_NOTIMPL. The engine's timeout gives
/// E_PENDING, its other failures E_INVALIDARG.
class CPropertyCollectionImpl : private CoreBinding, public cor::Counted<IPropertyCollectionImpl> {
 public:
  explicit CPropertyCollectionImpl(IInstance& instance)
      : m_instance(Ref<IInstance>::Share(&instance)) {}

  /// The names; read on first use.
  Result GetNames(const CInstPropNames** names);

  // ICollectionImpl
  Result GetItem(std::int32_t index, IPropertyImpl** property) override;
  Result GetCount(std::int32_t* count) override;
  Result GetIterator(tIIteratorImpl<IPropertyImpl>** iterator) override;
  Result RemoveAt(std::int32_t index) override;
  Result Clear() override;
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;

  // INamedCollectionImpl
  /// Makes the property of a name. Names beyond those listed work where the engine has a value
  /// under them, such as base names.
  /// \return S_OK; E_FAIL if there is no value of that name; E_INVALIDARG for an empty name or a
  ///         value of a type that is no property type; E_UNEXPECTED for a value without a face for
  ///         reading
  Result GetItemByName(std::u16string_view name, IPropertyImpl** property) override;
  Result RemoveByName(std::u16string_view name) override;
  /// True if the property can be made. A missing name is no failure.
  Result Exists(std::u16string_view name, bool* exists) override;
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override;

  // IPropertyCollectionImpl
  Result Add(std::u16string_view name, const Variant& value, IPropertyImpl** property) override;
  Result Remove(std::u16string_view name) override;
  Result RemoveAll() override;
  Result AddProperties(IPropertyCollectionImpl* properties, std::u16string_view prefix) override;

 protected:
  ~CPropertyCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// Tells whether a property is shown although its type is no property type. None is here; a kind
  /// of element that has such names says so.
  virtual bool IsAllowedName(std::u16string_view name) const;

 private:
  Ref<IInstance> m_instance;
  CInstPropNames m_names;
  bool m_namesRead = false;
};

/// Walks the groups in order, and each group's names in order. A property that can't be made is
/// reported once and stepped over.
class CPropertyCollectionIteratorImpl final : public cor::Counted<tIIteratorImpl<IPropertyImpl>> {
 public:
  explicit CPropertyCollectionIteratorImpl(CPropertyCollectionImpl& collection)
      : m_collection(Ref<CPropertyCollectionImpl>::Share(&collection)) {}

  // tIIteratorImpl
  Result Next(IPropertyImpl** property) override;
  Result Skip(std::int32_t count) override;
  Result Reset() override;
  Result Clone(tIIteratorImpl<IPropertyImpl>** iterator) override;

 private:
  ~CPropertyCollectionIteratorImpl() override = default;

  /// The name to come, or null at the end; steps into the group that has it.
  const WString* Current(const CInstPropNames& names);

  Ref<CPropertyCollectionImpl> m_collection;
  std::size_t m_group = 0;
  std::size_t m_name = 0;
};

}  // namespace hv::vex::easyImpl

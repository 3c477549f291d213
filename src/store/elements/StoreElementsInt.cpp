// store/elements/StoreElementsInt.cpp - collections of a store's elements as hosts see them.
#include "store/elements/StoreElementsInt.h"

#include "automation/rows/Collections.h"
#include "automation/rows/GenericElements.h"
#include "automation/rows/StoreElementList.h"
#include "automation/rows/StoreElements.h"
#include "store/elements/ElementColumns.h"

namespace hv::vex {

namespace rows = automation::rows;
using automation::CallFrame;
using automation::Custom;
using automation::DispatchMap;
using automation::Get;
using automation::MakeRows;
using automation::Method;
using automation::Put;

namespace {

/// The standard rows alone.
constexpr auto kStandard = automation::Errors(u"");

template <class Wrapper>
Result ReadColumnsByName(Wrapper& self, CallFrame& frame) {
  std::optional<WString> unknown;
  const Result rc = ReadElementColumns(self.Elements(), frame.args[0], frame.result, &unknown);
  if (unknown) RaiseUnknownProperty(*unknown);
  if (rc == DISP_E_TYPEMISMATCH) frame.refusedArgument = 0;
  return rc;
}

constexpr auto kElementsRows = MakeRows(
    Method<&IStoreElements::Item>(u"Item", kDispIdValue, rows::kStoreElementsItem),
    Method<&IStoreElements::Add>(u"Add", 1, rows::kStoreElementsAdd),
    Method<&IStoreElements::Remove>(u"Remove", 2, rows::kStoreElementsRemove),
    Get<&IStoreElements::get_Count>(u"Count", 3, rows::kElementsCount),
    Get<&IStoreElements::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, rows::kElementsNewEnum),
    Method<&IStoreElements::RemoveAll>(u"RemoveAll", 4, rows::kStoreElementsRemoveAll),
    Method<&IStoreElements::AddReference>(u"AddReference", 9, rows::kStoreElementsAddReference),
    Method<&IStoreElements::RemoveReference>(u"RemoveReference", 10,
                                             rows::kStoreElementsRemoveReference),
    Method<&IStoreElements::RemoveAllReferences>(u"RemoveAllReferences", 11,
                                                 rows::kStoreElementsRemoveAllReferences),
    Custom<&ReadColumnsByName<CStoreElementsInt>>(u"ReadColumns", 12, CallKind::Method, 1,
                                                  kStandard));
constexpr DispatchMap kElementsMap =
    DispatchMap(u"StoreElements", kElementsRows).WithDefault(kDispIdValue);

/// Callers by name have the elements of a store where the generic face has members of that name
/// too.
constexpr Result (IStoreElementList::*kItem)(const Variant&,
                                             IStoreElement**) = &IStoreElementList::Item;

constexpr auto kListRows = MakeRows(
    Method<kItem>(u"Item", kDispIdValue, rows::kStoreElementListItem),
    Method<&IStoreElementList::Add>(u"Add", 1, rows::kVexElementsAdd),
    Method<&IStoreElementList::Remove>(u"Remove", 2, rows::kVexElementsRemove),
    Get<&IStoreElementList::get_Count>(u"Count", 3, rows::kElementsCount),
    Get<&IStoreElementList::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, rows::kElementsNewEnum),
    Method<&IStoreElementList::RemoveAll>(u"RemoveAll", 4, rows::kVexElementsRemoveAll),
    Get<&IStoreElementList::get_TransportDataCollection>(u"TransportDataCollection", 5, kStandard),
    Get<&IStoreElementList::get_IsIncomplete>(u"IsIncomplete", 6, kStandard),
    Get<&IStoreElementList::get_MaxCount>(u"MaxCount", 7, rows::kStoreElementListGetMaxCount),
    Put<&IStoreElementList::put_MaxCount>(u"MaxCount", 7, rows::kStoreElementListPutMaxCount),
    Method<&IStoreElementList::Sort>(u"Sort", 8, rows::kVexElementsSort).Optional(2),
    Custom<&ReadColumnsByName<CStoreElementListInt>>(u"ReadColumns", 12, CallKind::Method, 1,
                                                     kStandard));
constexpr DispatchMap kListMap =
    DispatchMap(u"StoreElementList", kListRows).WithDefault(kDispIdValue);

/// Calls an operation that gives an element and hands it out.
/// \param get  `Result(IStoreElementImpl**)`
template <class Interface, class Get>
Result HandOut(Interface** out, Get get) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  Ref<IStoreElementImpl> element;
  HV_RETURN_IF_FAILED(get(element.Put()));
  Ref<IStoreElement> wrapper;
  HV_RETURN_IF_FAILED(WrapStoreElement(element.Get(), wrapper.Put()));
  *out = wrapper.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

/// Calls an operation that takes an element with the one behind an object of a host. What is no
/// element reaches it as null, since it decides first whether there are references at all.
template <class Operation>
Result WithElementOf(IDispatch* object, Operation operation) {
  Ref<IStoreElementImpl> element;
  const Result isElement = StoreElementOf(object, &element);
  const Result rc = operation(element.Get());
  return rc == E_POINTER ? isElement : rc;
}

}  // namespace

// --- CStoreElementsInt --------------------------------------------------------------------------

const DispatchMap& CStoreElementsInt::Map() { return kElementsMap; }

Result CStoreElementsInt::Add(const WString& name, IStoreElement** element) {
  return HandOut(element, [&](IStoreElementImpl** out) {
    return name.empty() ? VEX_E_EMPTY_NAME : Logic().Add(name, out);
  });
}

Result CStoreElementsInt::Remove(const Variant& nameOrIndex) { return Logic().Remove(nameOrIndex); }

Result CStoreElementsInt::RemoveAll() { return Logic().RemoveAll(); }

Result CStoreElementsInt::AddReference(IDispatch* element, IStoreElement** member) {
  return HandOut(member, [&](IStoreElementImpl** out) {
    return WithElementOf(
        element, [&](IStoreElementImpl* logic) { return Logic().AddReference(logic, out); });
  });
}

Result CStoreElementsInt::RemoveReference(IDispatch* element) {
  return WithElementOf(element,
                       [this](IStoreElementImpl* logic) { return Logic().RemoveReference(logic); });
}

Result CStoreElementsInt::RemoveAllReferences() { return Logic().RemoveAllReferences(); }

Result CStoreElementsInt::ReadColumns(const Variant& properties, Variant* columns) {
  std::optional<WString> unknown;
  return ReadElementColumns(Logic(), properties, columns, &unknown);
}

// --- CStoreElementListInt -----------------------------------------------------------------------

const DispatchMap& CStoreElementListInt::Map() { return kListMap; }

Result CStoreElementListInt::Add(IUnknown* instance, IVEXElement** element) {
  return HandOut(element, [&](IStoreElementImpl** out) -> Result {
    Ref<easyImpl::IVEXElementImpl> made;
    HV_RETURN_IF_FAILED(Logic().Add(instance, made.Put()));
    return made.As<IStoreElementImpl>().CopyTo(out);
  });
}

Result CStoreElementListInt::Item(const Variant& index, IVEXElement** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  Ref<IStoreElement> made;
  HV_RETURN_IF_FAILED(Item(index, made.Put()));
  return made.CopyTo(element);
}

Result CStoreElementListInt::ReadColumns(const Variant& properties, Variant* columns) {
  std::optional<WString> unknown;
  return ReadElementColumns(Logic(), properties, columns, &unknown);
}

// --- on their way out ---------------------------------------------------------------------------

Result WrapStoreElements(easyImpl::IVEXElementsImpl* elements, IStoreElements** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (!elements) return S_OK;
  auto logic = QueryRef<IStoreElementsImpl>(elements);
  HV_RETURN_CODE_IF(!logic, E_UNEXPECTED);
  *out = MakeRef<CStoreElementsInt>(std::move(logic)).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result WrapStoreElementList(IStoreElementListImpl* list, IStoreElementList** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (list) {
    *out = MakeRef<CStoreElementListInt>(Ref<IStoreElementListImpl>::Share(list)).Detach();
  }
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex

// store/elements/ElementColumns.h - properties of many elements, read with one call to the engine.
#pragma once

#include <span>
#include <vector>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "store/elements/IStoreElementsImpl.h"

namespace hv::vex {

/// One list of values for each property, with one value for each element in order: what `Value` of
/// the property gives, and null where an element has no such property or no value.
/// \param properties  own names, base names, or paths along references to one ("Test.Name")
/// \param unknown     with E_INVALIDARG, the name that none of the elements has a property of
/// \return S_OK; E_INVALIDARG; E_NOTIMPL for a store that can't read in bulk; E_PENDING; E_FAIL
Result ReadElementColumns(IStoreElementsImpl& elements, std::span<const WString> properties,
                          std::vector<Variant>* columns, WString* unknown);

/// The same as scripts have it.
/// \param properties  a name, which gives one list of values, or a list of names, which gives a
///                    list of them
/// \return as above; DISP_E_TYPEMISMATCH for what is neither
Result ReadElementColumns(IStoreElementsImpl& elements, const Variant& properties, Variant* columns,
                          WString* unknown);

}  // namespace hv::vex

// store/elements/ElementColumns.h - properties of many elements, read with one call to the engine.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "store/core/IInstList.h"
#include "store/core/IStore.h"
#include "store/elements/IStoreElementsImpl.h"

namespace hv::vex {

/// One list of values for each property, with one value for each element in order: what `Value` of
/// the property gives, and null where an element has no such property or no value. Properties go by
/// own names, base names, or paths along references to one ("Test.Name").
/// \param properties  a name, which gives one list of values, or a list of names, which gives a
///                    list of them
/// \param unknown     with E_INVALIDARG, the name that none of the elements has a property of
/// \return S_OK; E_INVALIDARG; DISP_E_TYPEMISMATCH for what is neither a text nor a list of texts;
///         E_NOTIMPL for a store that can't read in bulk; E_PENDING; E_FAIL
Result ReadElementColumns(IStoreElementsImpl& elements, const Variant& properties, Variant* columns,
                          std::optional<WString>* unknown);

/// The same for what a query text finds.
/// \param hits  receives the instances, which the columns are cut with if there are more than
///              `limit`; `*isCut` tells that
/// \return as above; what the engine throws for a query that it can't run gives E_FAIL
Result ReadQueryColumns(IStore& store, std::u16string_view queryText, std::uint64_t limit,
                        const Variant& properties, Variant* columns,
                        std::optional<WString>* unknown, Ref<IInstList>* hits, bool* isCut);

/// Ends a call by name with the message that names the property.
[[noreturn]] void RaiseUnknownProperty(const WString& name);

}  // namespace hv::vex

// browse/ResolveReference.h - references of a model by name, with their way back.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "store/core/IEntity.h"

namespace hv::vex {

/// The reference of that name and its inverse. It must lead to an application entity.
/// \return S_OK; VEX_E_OTHER_STORE if there is no such reference, none back, or the target's name
///         begins with "ao". Throws what the engine throws.
Result ResolveReference(IEntity& entity, std::u16string_view name, Ref<IRelation>* reference,
                        Ref<IRelation>* inverse);

WString NameOf(IEntity& entity);
WString NameOf(IRelation& relation);

}  // namespace hv::vex

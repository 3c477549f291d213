// query/files/QueryDocument.h - query files as the small stores that they are.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "store/core/IInstance.h"
#include "store/core/IStore.h"

/// Every operation throws what the engine throws.
namespace hv::vex::querydoc {

inline constexpr std::u16string_view kPluginName = u"VEX";
inline constexpr std::u16string_view kModelUri =
    u"http://www.halvorn.example/DataModels/VEX/Query/1_2";
/// Written as the attribute "version" of the managers, never read.
inline constexpr std::int32_t kVersionStamp = 6574665;

inline constexpr std::u16string_view kQueryManager = u"asamquery_manager";
inline constexpr std::u16string_view kQueries = u"queries";
inline constexpr std::u16string_view kColumnManager = u"asamcolumn_manager";
inline constexpr std::u16string_view kColumnConfigs = u"column_configs";

/// "<model>URI</model>"
WString ModelParameter();
/// A new document in memory.
Ref<IStore> Create();
/// A file, read-only.
Ref<IStore> Open(std::u16string_view path);
/// A document whose text is in memory, read-only.
Ref<IStore> OpenText(std::u16string_view text);
void Write(IStore& document, std::u16string_view path);
WString TextOf(IStore& document);

/// The one instance of an entity at the top, made if there is none.
Ref<IInstance> GetOrCreate(IStore& document, std::u16string_view entity);
/// The first instance at a path; null if there is none.
Ref<IInstance> FirstAt(IStore& document, std::u16string_view path);
/// "/##" in front of an entity, for paths.
WString PathOf(std::u16string_view entity);

}  // namespace hv::vex::querydoc

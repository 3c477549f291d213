// browse/BrowseOperations.cpp - making and copying browse configurations, and naming instances.
#include "browse/BrowseOperations.h"

#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "browse/BrowseResults.h"
#include "browse/DisplayText.h"
#include "store/core/IContainer.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

/// Gives the configuration out if it was read at least in part.
Result HandOut(Result loaded, const Ref<CDataStoreBrowseConfigImpl>& made, IBrowseConfig** config) {
  const bool isPartial = loaded == kPartialSymbols || loaded == kPartialDisplayName;
  if (!Failed(loaded) || isPartial) HV_RETURN_IF_FAILED(made.CopyTo(config));
  return loaded;
}

}  // namespace

Result LoadBrowseConfigFile(std::u16string_view fileName, IStore* store,
                            IBrowseConfig** config) try {
  HV_RETURN_IF_NULL(config);
  HV_RETURN_CODE_IF(fileName.empty(), VEX_E_BAD_FILE);
  const auto made = MakeRef<CDataStoreBrowseConfigImpl>();
  return HandOut(made->Load(store, fileName), made, config);
}
HV_CATCH_RETURN()

Result LoadDefaultBrowseConfig(IStore* store, IBrowseConfig** config) try {
  HV_RETURN_IF_NULL(config);
  const auto made = MakeRef<CDataStoreBrowseConfigImpl>();
  HV_RETURN_IF_FAILED(made->Load(store, {}));
  return made.CopyTo(config);
}
HV_CATCH_RETURN()

Result LoadBrowseConfigStream(std::u16string_view text, IStore* store, IBrowseConfig** config) try {
  HV_RETURN_IF_NULL(config);
  const auto made = MakeRef<CDataStoreBrowseConfigImpl>();
  return HandOut(made->LoadFromStream(store, text), made, config);
}
HV_CATCH_RETURN()

Result CopyBrowseConfig(IBrowseConfig* source, IBrowseConfig* target) {
  const auto from = OwnBrowseConfig(source);
  const auto to = OwnBrowseConfig(target);
  HV_RETURN_CODE_IF(!from || !to, E_INVALIDARG);
  return to->CopyFrom(from.Get());
}

Result GetBrowseDisplayName(IBrowseConfig* config, IInstance* instance, WString* name) try {
  HV_RETURN_IF_NULL(name);
  HV_RETURN_CODE_IF(!config || !instance, E_INVALIDARG);
  const auto store = Ref<IStore>::Adopt(instance->GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  const auto expected = Ref<IModel>::Adopt(config->GetModel());
  HV_RETURN_CODE_IF(!model || model.Get() != expected.Get(), VEX_E_OTHER_STORE);
  const auto entity = Ref<IEntity>::Adopt(instance->GetEntity());
  const auto level = Ref<IBrowseConfigEntity>::Adopt(config->GetEntity(entity.Get()));
  if (!level) {
    const auto values = QueryRef<IContainer>(instance);
    HV_RETURN_CODE_IF(!values, E_UNEXPECTED);
    values->GetString(*name, u"name");
    return S_FALSE;
  }
  const auto own = OwnBrowseEntity(level.Get());
  HV_RETURN_CODE_IF(!own, E_INVALIDARG);
  Ref<IRepresentedByPartsImpl> parts;
  HV_RETURN_CODE_IF(Failed(own->GetRepresentedByParts(parts.Put())), E_UNEXPECTED);
  return parts->FormatFromInstance(instance, ReadTimeFormat(*store), name);
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

}  // namespace hv::vex

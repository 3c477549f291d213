// query/files/QueryDocument.cpp - parameters and paths of query files.
#include "query/files/QueryDocument.h"

#include "store/core/CoreLibrary.h"
#include "store/core/IEntity.h"
#include "store/core/IEnvironment.h"
#include "store/core/IInstList.h"
#include "store/core/IModel.h"
#include "xml/ConnectParams.h"

namespace hv::vex::querydoc {

namespace {

WString TargetParameter(xml::ConnectParams parameters) {
  // Behind the file name, in this order: stored parameter texts look so.
  xml::AppendTag(parameters, u"targetmodels", kModelUri, u"mode=\"alwaysusetarget\"");
  return parameters;
}

WString FileParameter(std::u16string_view path) {
  xml::ConnectParams parameters;
  xml::AppendFilenameTag(parameters, path);
  return parameters;
}

}  // namespace

WString ModelParameter() {
  xml::ConnectParams parameters;
  xml::AppendTag(parameters, u"model", kModelUri);
  return parameters;
}

Ref<IStore> Create() {
  return Ref<IStore>::Adopt(GetEngineEnvironment()->CreateStore(kPluginName, ModelParameter(), u"",
                                                                0, CreateMode::Temporary));
}

Ref<IStore> Open(std::u16string_view path) {
  return Ref<IStore>::Adopt(GetEngineEnvironment()->CreateStore(
      kPluginName, TargetParameter(FileParameter(path)), u"", 0, CreateMode::OpenFile));
}

Ref<IStore> OpenText(std::u16string_view text) {
  return Ref<IStore>::Adopt(
      GetEngineEnvironment()->OpenStoreText(kPluginName, TargetParameter({}), text));
}

void Write(IStore& document, std::u16string_view path) {
  GetEngineEnvironment()->WriteStore(&document, FileParameter(path), kPluginName, 0);
}

WString TextOf(IStore& document) {
  WString text;
  GetEngineEnvironment()->GetStoreText(text, &document, kPluginName);
  return text;
}

WString PathOf(std::u16string_view entity) {
  WString path = u"/##";
  return path += entity;
}

Ref<IInstance> FirstAt(IStore& document, std::u16string_view path) {
  const auto list = Ref<IInstList>::Adopt(document.GetInstances(path));
  return Ref<IInstance>::Adopt(list->GetInstance(0));
}

Ref<IInstance> GetOrCreate(IStore& document, std::u16string_view entity) {
  if (Ref<IInstance> found = FirstAt(document, PathOf(entity))) return found;
  const auto model = Ref<IModel>::Adopt(document.GetModel());
  const auto type = Ref<IEntity>::Adopt(model->GetEntityByName(entity));
  return Ref<IInstance>::Adopt(document.CreateInstance(type.Get()));
}

}  // namespace hv::vex::querydoc

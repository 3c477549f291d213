// core/objects/EnvironmentObject.h - the engine's environment: variables, plug-ins, opening stores.
#pragma once

#include <map>
#include <span>
#include <string>

#include "cor/Counted.h"
#include "core/model/Value.h"
#include "core/plugins/Plugin.h"
#include "store/core/IEnvironment.h"
#include "store/core/IPlugin.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine {

/// The model of that name, built into the module; null if there is none.
using ModelSource = std::shared_ptr<const Model> (*)(std::u16string_view name);

class EnvironmentObject final : public cor::Counted<IEnvironment> {
 public:
  /// \param models  where new stores get their models from; null: there are none.
  explicit EnvironmentObject(std::span<const PluginInfo> plugins, ModelSource models = nullptr);

  IAttribute* GetVariable(std::u16string_view name) override;
  IStore* OpenStore(std::u16string_view name, std::int32_t flags) override;
  IStore* OpenStoreByParameter(std::u16string_view name, std::u16string_view pluginName,
                               std::u16string_view parameters, std::int32_t flags) override;
  IExporter* CreateExporter(std::u16string_view format, std::u16string_view options,
                            std::u16string_view parameters, IStore* source) override;
  IStore* CreateStore(std::u16string_view pluginName, std::u16string_view parameters,
                      std::u16string_view extra, std::int32_t flags, CreateMode mode) override;
  void WriteStore(IStore* store, std::u16string_view parameters, std::u16string_view pluginName,
                  std::int32_t flags) override;
  IPluginList* GetPlugins() override;
  IStore* OpenStoreText(std::u16string_view pluginName, std::u16string_view parameters,
                        std::u16string_view text) override;
  void GetStoreText(WString& text, IStore* store, std::u16string_view pluginName) override;
  IStore* OpenStoreWatched(std::u16string_view name, std::u16string_view pluginName,
                           std::u16string_view parameters, IProgress& progress) override;

 private:
  ~EnvironmentObject() override = default;
  /// The plug-in of that name without regard to case; throws kUnknownName.
  const PluginInfo& RequirePlugin(std::u16string_view name) const;
  IStore* Open(std::u16string_view name, std::u16string_view pluginName,
               const ConnectParameters& connect);
  /// An empty name is made from the file's.
  IStore* MakeStore(const PluginInfo& plugin, std::u16string_view name,
                    const ConnectParameters& connect, std::unique_ptr<RecordStore> records);

  xml::XmlRuntime m_xml;  // starting the parser anew for every query would cost more than the query
  std::span<const PluginInfo> m_plugins;
  ModelSource m_models;
  std::map<std::u16string, Value, std::less<>> m_variables;
};

}  // namespace hv::vex::engine

#include "core/objects/EnvironmentObject.h"

#include "core/objects/AttributeObjects.h"
#include "core/objects/Guard.h"
#include "core/objects/StoreObject.h"
#include "core/query/TextMatch.h"

namespace hv::vex::engine {
namespace {

constexpr std::u16string_view kVariables[] = {u"vexFormatStringTime"};

class PluginObject final : public cor::Counted<IPluginInfo> {
 public:
  explicit PluginObject(const PluginInfo& info) : m_info(info) {}
  std::int32_t SupportsQueries() override { return m_info.supportsQueries ? 1 : 0; }
  void GetName(WString& name) override { name = m_info.name; }
  void GetFileExtensions(WString& extensions) override { extensions = m_info.fileExtensions; }

 private:
  ~PluginObject() override = default;
  const PluginInfo& m_info;
};

const PluginInfo* FindPlugin(std::span<const PluginInfo> plugins, std::u16string_view name) {
  const std::u16string folded = FoldCase(name);
  for (const PluginInfo& plugin : plugins) {
    if (FoldCase(plugin.name) == folded) return &plugin;
  }
  return nullptr;
}

class PluginListObject final : public cor::Counted<IPluginList> {
 public:
  explicit PluginListObject(std::span<const PluginInfo> plugins) : m_plugins(plugins) {}
  IPluginInfo* GetPlugin(std::u16string_view name) override {
    return Seam([&]() -> IPluginInfo* {
      const PluginInfo* found = FindPlugin(m_plugins, name);
      return found ? new PluginObject(*found) : nullptr;
    });
  }
  std::uint64_t GetCount() override { return m_plugins.size(); }
  IPluginInfo* GetPluginAt(std::uint64_t index) override {
    return index < m_plugins.size() ? new PluginObject(m_plugins[index]) : nullptr;
  }

 private:
  ~PluginListObject() override = default;
  std::span<const PluginInfo> m_plugins;
};

class ExporterObject final : public cor::Counted<IExporter> {
 public:
  ExporterObject(const PluginInfo& plugin, std::u16string parameters, Ref<StoreObject> source)
      : m_plugin(plugin), m_parameters(std::move(parameters)), m_source(std::move(source)) {}
  void Run() override { Write({}); }
  void RunWatched(IProgress& progress) override { Write(Watch(&progress)); }

 private:
  void Write(Watch watch) {
    Seam([&] { m_plugin.write(m_source->Records(), ConnectParameters(m_parameters, watch)); });
  }
  ~ExporterObject() override = default;
  const PluginInfo& m_plugin;
  std::u16string m_parameters;
  Ref<StoreObject> m_source;
};

/// The store's name where the caller gave none: the file's name without folder and ending.
std::u16string NameFromFile(std::u16string_view file) {
  const std::size_t slash = file.find_last_of(u"/\\");
  if (slash != file.npos) file.remove_prefix(slash + 1);
  const std::size_t dot = file.rfind(u'.');
  if (dot != file.npos && dot > 0) file = file.substr(0, dot);
  return std::u16string(file);
}

StoreObject* OwnStore(IStore* store) {
  // Only the engine's own stores have a record store behind them.
  auto* own = dynamic_cast<StoreObject*>(store);
  if (!own) throw Exception(errc::kInvalidArgument, u"the store is not of this engine");
  return own;
}

}  // namespace

EnvironmentObject::EnvironmentObject(std::span<const PluginInfo> plugins, ModelSource models)
    : m_plugins(plugins), m_models(models) {
  for (const std::u16string_view name : kVariables) {
    m_variables.emplace(name, Value::Unset(OdsType::String));
  }
}

IAttribute* EnvironmentObject::GetVariable(std::u16string_view name) {
  return Seam([&]() -> IAttribute* {
    const auto found = m_variables.find(name);
    if (found == m_variables.end()) return nullptr;
    auto self = Ref<EnvironmentObject>::Share(this);
    return new ValueAttribute(
        found->first, found->second, nullptr, nullptr,
        [self, key = found->first](const Value& value) { self->m_variables[key] = value; });
  });
}

const PluginInfo& EnvironmentObject::RequirePlugin(std::u16string_view name) const {
  const PluginInfo* plugin = FindPlugin(m_plugins, name);
  if (!plugin) {
    throw Exception(errc::kUnknownName,
                    WString(u"there is no plug-in \"" + std::u16string(name) + u"\""));
  }
  return *plugin;
}

IStore* EnvironmentObject::OpenStore(std::u16string_view name, std::int32_t) {
  throw Exception(errc::kUnknownName,
                  WString(u"there is no configured store \"" + std::u16string(name) + u"\""));
}

IStore* EnvironmentObject::MakeStore(const PluginInfo& plugin, std::u16string_view name,
                                     const ConnectParameters& connect,
                                     std::unique_ptr<RecordStore> records) {
  const std::u16string file = connect.GetTrimmed(u"filename").value_or(std::u16string());
  StoreObject::Names names{name.empty() ? NameFromFile(file) : std::u16string(name),
                           std::u16string(plugin.name), std::u16string(connect.TagText()), file};
  return new StoreObject(std::move(records), std::move(names), Ref<IEnvironment>::Share(this));
}

IStore* EnvironmentObject::OpenStoreByParameter(std::u16string_view name,
                                                std::u16string_view pluginName,
                                                std::u16string_view parameters, std::int32_t) {
  return Open(name, pluginName, ConnectParameters(parameters));
}

IStore* EnvironmentObject::OpenStoreWatched(std::u16string_view name,
                                            std::u16string_view pluginName,
                                            std::u16string_view parameters, IProgress& progress) {
  return Open(name, pluginName, ConnectParameters(parameters, Watch(&progress)));
}

IStore* EnvironmentObject::Open(std::u16string_view name, std::u16string_view pluginName,
                                const ConnectParameters& connect) {
  return Seam([&] {
    const PluginInfo& plugin = RequirePlugin(pluginName);
    return MakeStore(plugin, name, connect, plugin.open(connect));
  });
}

IExporter* EnvironmentObject::CreateExporter(std::u16string_view format, std::u16string_view,
                                             std::u16string_view parameters, IStore* source) {
  return Seam([&]() -> IExporter* {
    const PluginInfo* plugin = FindPlugin(m_plugins, format);
    if (!plugin || !plugin->write) {
      throw Exception(errc::kNotSupported,
                      WString(u"stores can't be exported as \"" + std::u16string(format) + u"\""));
    }
    return new ExporterObject(*plugin, std::u16string(parameters),
                              Ref<StoreObject>::Share(OwnStore(source)));
  });
}

IStore* EnvironmentObject::CreateStore(std::u16string_view pluginName,
                                       std::u16string_view parameters, std::u16string_view,
                                       std::int32_t, CreateMode mode) {
  return Seam([&] {
    const PluginInfo& plugin = RequirePlugin(pluginName);
    if (mode == CreateMode::OpenFile) {
      const std::u16string readOnly = u"<readonly>yes</readonly>" + std::u16string(parameters);
      const ConnectParameters connect(readOnly);
      return MakeStore(plugin, u"", connect, plugin.open(connect));
    }
    if (!plugin.create) {
      throw Exception(errc::kNotSupported, WString(u"the plug-in \"" + std::u16string(pluginName) +
                                                   u"\" makes no stores"));
    }
    const ConnectParameters connect(parameters);
    const std::u16string model = connect.GetTrimmed(u"model").value_or(std::u16string());
    std::shared_ptr<const Model> found = m_models ? m_models(model) : nullptr;
    if (!found) {
      throw Exception(errc::kUnknownName, WString(u"there is no model \"" + model + u"\""));
    }
    return MakeStore(plugin, u"", connect, plugin.create(connect, std::move(found)));
  });
}

void EnvironmentObject::WriteStore(IStore* store, std::u16string_view parameters,
                                   std::u16string_view pluginName, std::int32_t) {
  Seam([&] {
    const PluginInfo& plugin = RequirePlugin(pluginName);
    if (!plugin.write) {
      throw Exception(errc::kNotSupported, WString(u"the plug-in \"" + std::u16string(pluginName) +
                                                   u"\" writes no stores"));
    }
    plugin.write(OwnStore(store)->Records(), ConnectParameters(parameters));
  });
}

IStore* EnvironmentObject::OpenStoreText(std::u16string_view pluginName,
                                         std::u16string_view parameters, std::u16string_view text) {
  return Seam([&] {
    const PluginInfo& plugin = RequirePlugin(pluginName);
    if (!plugin.openText) {
      throw Exception(errc::kNotSupported, WString(u"the plug-in \"" + std::u16string(pluginName) +
                                                   u"\" opens files only"));
    }
    const ConnectParameters connect(parameters);
    return MakeStore(plugin, u"", connect, plugin.openText(connect, text));
  });
}

void EnvironmentObject::GetStoreText(WString& text, IStore* store, std::u16string_view pluginName) {
  Seam([&] {
    const PluginInfo& plugin = RequirePlugin(pluginName);
    if (!plugin.writeText) {
      throw Exception(errc::kNotSupported, WString(u"the plug-in \"" + std::u16string(pluginName) +
                                                   u"\" writes files only"));
    }
    text = std::u16string_view(plugin.writeText(OwnStore(store)->Records()));
  });
}

IPluginList* EnvironmentObject::GetPlugins() {
  return Seam([&]() -> IPluginList* { return new PluginListObject(m_plugins); });
}

}  // namespace hv::vex::engine

// store/core/IEnvironment.h - the process-wide entry into the engine.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IPluginList;
class IProgress;
class IStore;

/// Writes a store into a file of another format.
class IExporter : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IExporter");

  /// Writes the file, whole or not at all. Throws kWriteFailed with the file and the reason.
  virtual void Run() = 0;

  // Added behind the operation above.

  /// The same, watched by `progress`; an engine that doesn't tell just runs.
  virtual void RunWatched(IProgress& progress) {
    static_cast<void>(progress);
    Run();
  }

 protected:
  ~IExporter() = default;
};

/// How `CreateStore` makes its store.
enum class CreateMode : std::int32_t {
  Temporary =
      0,  ///< a new store in memory, of the model that the parameter text names ("model" tag)
  OpenFile = 1,  ///< an existing file, read-only ("filename" and "targetmodels" tags)
};

/// The process-wide entry into the engine. Parameter texts are tags one after the other
/// ("<filename>a.atfx</filename>"); which ones count is the plug-in's business.
class IEnvironment : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEnvironment");

  /// A variable or null. The library asks for "vexFormatStringTime" only: the format in which hosts
  /// want times to be shown. Its value is written through the attribute.
  virtual IAttribute* GetVariable(std::u16string_view name) = 0;
  /// Opens a configured store; flags are 0. An unknown name throws kUnknownName, a file that isn't
  /// what it should be kBadFile, a server kConnectRefused or kConnectFailed, a slow one kTimeout.
  virtual IStore* OpenStore(std::u16string_view name, std::int32_t flags) = 0;
  /// Opens a store that isn't configured. An empty name is made from the parameters.
  virtual IStore* OpenStoreByParameter(std::u16string_view name, std::u16string_view pluginName,
                                       std::u16string_view parameters, std::int32_t flags) = 0;
  /// An exporter of `source` into the file that `parameters` name, in the format "ATFX" or "VEX".
  /// The second argument is empty. A format that isn't there throws kNotSupported.
  virtual IExporter* CreateExporter(std::u16string_view format, std::u16string_view options,
                                    std::u16string_view parameters, IStore* source) = 0;
  virtual IStore* CreateStore(std::u16string_view pluginName, std::u16string_view parameters,
                              std::u16string_view extra, std::int32_t flags, CreateMode mode) = 0;
  /// Writes a temporary store into the file that `parameters` name.
  virtual void WriteStore(IStore* store, std::u16string_view parameters,
                          std::u16string_view pluginName, std::int32_t flags) = 0;
  virtual IPluginList* GetPlugins() = 0;

  // Added behind the operations above.

  /// `OpenStoreByParameter`, watched by `progress`; an engine that doesn't tell just opens.
  virtual IStore* OpenStoreWatched(std::u16string_view name, std::u16string_view pluginName,
                                   std::u16string_view parameters, IProgress& progress) {
    static_cast<void>(progress);
    return OpenStoreByParameter(name, pluginName, parameters, 0);
  }

  /// Opens, read-only, a store whose file's whole text a host keeps elsewhere. A plug-in that can't
  /// throws kNotSupported, a text that isn't what it should be kBadFile.
  virtual IStore* OpenStoreText(std::u16string_view pluginName, std::u16string_view parameters,
                                std::u16string_view text) = 0;
  /// The text of the file that `WriteStore` would write.
  virtual void GetStoreText(WString& text, IStore* store, std::u16string_view pluginName) = 0;

 protected:
  ~IEnvironment() = default;
};

}  // namespace hv::vex

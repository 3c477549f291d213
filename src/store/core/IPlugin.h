// store/core/IPlugin.h - the installed kinds of storage.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IPluginInfo : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IPluginInfo");

  /// Handed on unchanged to hosts: non-zero if stores of this kind run queries.
  virtual std::int32_t SupportsQueries() = 0;

  // Added behind the operation above.

  virtual void GetName(WString& name) = 0;
  /// File name endings that this plug-in opens, separated by ";" ("atfx"); may be empty.
  virtual void GetFileExtensions(WString& extensions) = 0;

 protected:
  ~IPluginInfo() = default;
};

class IPluginList : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IPluginList");

  /// By name without regard to case, or null.
  virtual IPluginInfo* GetPlugin(std::u16string_view name) = 0;

  // Added behind the operation above.

  virtual std::uint64_t GetCount() = 0;
  virtual IPluginInfo* GetPluginAt(std::uint64_t index) = 0;

 protected:
  ~IPluginList() = default;
};

}  // namespace hv::vex

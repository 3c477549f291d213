// store/core/EngineModule.cpp - finds and loads the modules that the library binds at run time.
#include "store/core/EngineModule.h"

#include "cor/osdep/OSException.h"
#include "cor/osdep/Path.h"
#include "cor/osdep/RegKey.h"

#include <dlfcn.h>

#include <filesystem>
#include <memory>
#include <system_error>

namespace hv::vex {

namespace {

// A longer directory is cut, as it always was.
constexpr std::size_t kLongestDirectory = 1000;

WString ConfiguredDirectory() {
  try {
    const WString directory = cor::osdep::DirectoryValue(u"binDir");
    return cor::osdep::WithSeparatorAtEnd(directory.Substr(0, kLongestDirectory));
  } catch (const cor::osdep::OSException&) {
    return {};
  }
}

/// The directory of the module that holds this function, with its separator.
std::filesystem::path OwnDirectory() {
  Dl_info info{};
  if (!::dladdr(reinterpret_cast<const void*>(&OwnDirectory), &info) || !info.dli_fname) return {};
  return std::filesystem::path(info.dli_fname).parent_path();
}

}  // namespace

WString EngineModulePath(std::u16string_view stem) {
  WString fileName = cor::osdep::LibraryFileName(stem);
  const WString configured = ConfiguredDirectory();
  if (!configured.empty()) return configured + fileName;
  const std::filesystem::path beside = OwnDirectory() / cor::osdep::NativePath(fileName);
  std::error_code unused;
  if (std::filesystem::exists(beside, unused)) return WString(beside.u16string());
  return fileName;
}

cor::osdep::SharedLibrary* TryLoadEngineModule(std::u16string_view stem) noexcept {
  try {
    auto module = std::make_unique<cor::osdep::SharedLibrary>(EngineModulePath(stem), true, false);
    return module->IsLoaded() ? module.release() : nullptr;
  } catch (...) {
    return nullptr;
  }
}

}  // namespace hv::vex

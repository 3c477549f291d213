// cor/osdep/SharedLibrary.h - a module that is loaded at run time.
#pragma once

#include <string>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::cor::osdep {

/// Holds a loaded module. Its symbols are resolved at once and seen by nobody else.
class SharedLibrary final {
 public:
  /// \param fileName     completed by the rule of `LibraryFileName`.
  /// \param unloadAtEnd  whether the destructor unloads the module.
  /// \param throwOnFail  whether a module that can't be loaded raises `WinError`, whose text is the
  ///                     loader's own; otherwise `IsLoaded` tells.
  SharedLibrary(std::u16string_view fileName, bool unloadAtEnd, bool throwOnFail);
  ~SharedLibrary();
  SharedLibrary(const SharedLibrary&) = delete;
  SharedLibrary& operator=(const SharedLibrary&) = delete;

  [[nodiscard]] bool IsLoaded() const { return m_handle != nullptr; }
  [[nodiscard]] const WString& FileName() const { return m_fileName; }
  /// Why the module couldn't be loaded, in UTF-8; empty if it is loaded.
  [[nodiscard]] const std::string& LoadError() const { return m_loadError; }

  /// The address of an exported symbol. A missing one raises `WinError` if it must exist, and gives
  /// null otherwise; so does, with `InvalidOperation` "library not loaded", a module that isn't
  /// loaded.
  [[nodiscard]] void* GetSymbol(const char* name, bool mustExist) const;

 private:
  WString m_fileName;
  void* m_handle = nullptr;
  bool m_unloadAtEnd;
  bool m_throwOnFail;
  std::string m_loadError;
};

}  // namespace hv::cor::osdep

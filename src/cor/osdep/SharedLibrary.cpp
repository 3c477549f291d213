// cor/osdep/SharedLibrary.cpp - a module that is loaded at run time.
#include "cor/osdep/SharedLibrary.h"

#include "cor/osdep/OSException.h"
#include "cor/osdep/Path.h"

#include <dlfcn.h>

namespace hv::cor::osdep {

namespace {

constexpr const char* kSourceFile = "cor/osdep/sharedlib";

std::string LoaderMessage() {
  const char* const message = ::dlerror();
  return message ? message : "";
}

}  // namespace

SharedLibrary::SharedLibrary(std::u16string_view fileName, bool unloadAtEnd, bool throwOnFail)
    : m_fileName(LibraryFileName(fileName)),
      m_unloadAtEnd(unloadAtEnd),
      m_throwOnFail(throwOnFail) {
  if (m_fileName.empty()) {
    // The loader would take an empty name for the program itself.
    m_loadError = "no file name";
  } else {
    m_handle = ::dlopen(NativePath(m_fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) m_loadError = LoaderMessage();
  }
  if (!m_handle && m_throwOnFail) {
    throw WinError(kErrorModuleNotFound, m_loadError, kSourceFile, __LINE__);
  }
}

SharedLibrary::~SharedLibrary() {
  if (m_handle && m_unloadAtEnd) ::dlclose(m_handle);
}

void* SharedLibrary::GetSymbol(const char* name, bool mustExist) const {
  if (!m_handle) {
    if (mustExist) throw exception::InvalidOperation("library not loaded");
    return nullptr;
  }
  ::dlerror();
  void* const symbol = ::dlsym(m_handle, name);
  if (!symbol && mustExist) {
    throw WinError(kErrorProcNotFound, LoaderMessage(), kSourceFile, __LINE__);
  }
  return symbol;
}

}  // namespace hv::cor::osdep

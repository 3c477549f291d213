// fuzz/Fuzz.h - what fuzz targets share.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "store/core/Exception.h"
#include "xml/SaxParser.h"

/// A finding, unless it holds.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Starts the XML library once: anew for every input it would take most of the time.
inline void KeepXml() {
  static const auto* const runtime = new hv::xml::XmlRuntime;
  static_cast<void>(runtime);
}

/// Runs `work`, out of which nothing but the refusal with `code` may come.
/// \return whether it was done
template <class Work>
bool IsDone(int code, const Work& work) {
  try {
    work();
    return true;
  } catch (const hv::vex::Exception& error) {
    Require(error.code == code);
    return false;
  }
}

/// The folder of this process; in memory where there is such a place. Goes when the process ends,
/// but for a finding.
inline const std::filesystem::path& OwnFolder() {
  static const struct Folder {
    Folder() {
      const std::filesystem::path memory = "/dev/shm";
      const bool hasMemory = access(memory.c_str(), W_OK) == 0;
      path = (hasMemory ? memory : std::filesystem::temp_directory_path()) / "fuzzXXXXXX";
      std::string name = path;
      path = mkdtemp(name.data());
    }
    ~Folder() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path path;
  } folder;
  return folder.path;
}

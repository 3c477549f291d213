// tests/support/TempFolder.h - a folder for the files of one test.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace hv::test {

/// A folder of its own that goes with the object.
class TempFolder final {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "sftestXXXXXX").string();
    m_path = mkdtemp(name.data());
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
  [[nodiscard]] std::filesystem::path File(std::string_view name) const { return m_path / name; }
  /// Writes a file and gives its path.
  std::filesystem::path Write(std::string_view name, std::string_view contents) const {
    std::ofstream(File(name), std::ios::binary) << contents;
    return File(name);
  }
  [[nodiscard]] std::string Read(std::string_view name) const {
    std::ifstream in(File(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  /// Names of all files, sorted, each with a blank behind it.
  [[nodiscard]] std::string Listing() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
      names.insert(entry.path().filename().string() + " ");
    }
    std::string result;
    for (const std::string& name : names) result += name;
    return result;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace hv::test

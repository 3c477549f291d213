// tests/core/sql/SqlFixtures.h - folders and parameter texts for tests on database files.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "storefabric/WString.h"

namespace hv::vex::engine::test {

/// A folder that goes with this object.
class TempFolder final {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "sf-sql-XXXXXX").string();
    m_path = mkdtemp(name.data());
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code unused;
    std::filesystem::remove_all(m_path, unused);
  }
  std::filesystem::path File(std::string_view name) const { return m_path / name; }
  const std::filesystem::path& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

/// One for the whole program.
inline const TempFolder& ProgramFolder() {
  static const TempFolder kFolder;
  return kFolder;
}

/// The parameter text of a file, kept for the rest of the program: parameters only look at it.
inline std::u16string_view FileTag(const std::filesystem::path& path,
                                   std::u16string_view more = {}) {
  static std::vector<std::unique_ptr<std::u16string>> texts;
  texts.push_back(std::make_unique<std::u16string>(
      u"<filename>" + cor::FromUtf8(path.string()).str() + u"</filename>" + std::u16string(more)));
  return *texts.back();
}

}  // namespace hv::vex::engine::test

// tests/core/sql/SqlFixtures.h - database files in folders of their own, from inside and outside.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/plugins/sql/SqlPlugin.h"

#include "ContractModel.h"
#include "tests/support/TempFolder.h"

namespace hv::vex::engine::test {

using hv::test::TempFolder;

/// The parameters of a file. Parameters only look at their text, so it is kept for good.
inline ConnectParameters FileParameters(const std::filesystem::path& path,
                                        std::u16string_view more = {}) {
  static std::vector<std::unique_ptr<std::u16string>> texts;
  texts.push_back(std::make_unique<std::u16string>(
      u"<filename>" + cor::FromUtf8(path.string()).str() + u"</filename>" + std::u16string(more)));
  return ConnectParameters(*texts.back());
}

inline std::unique_ptr<RecordStore> OpenDatabase(const std::filesystem::path& path,
                                                 std::u16string_view more = {}) {
  return kSqlPlugin.open(FileParameters(path, more));
}

/// The values that statements give outside of any session, one behind the other, and an error.
inline std::string Ask(const std::filesystem::path& path, const std::string& sql) {
  sqlite3* database = nullptr;
  std::string result;
  sqlite3_open(path.c_str(), &database);
  const auto collect = [](void* out, int, char** values, char**) {
    *static_cast<std::string*>(out) += values[0] == nullptr ? "-" : values[0];
    return 0;
  };
  char* message = nullptr;
  sqlite3_exec(database, sql.c_str(), collect, &result, &message);
  if (message != nullptr) result += message;
  sqlite3_free(message);
  sqlite3_close(database);
  return result;
}

/// An empty database of the contract's model.
class SqlTest : public ::testing::Test {
 protected:
  SqlTest() : m_model(MakeContractModel()), m(*m_model), m_path(m_folder.File("a.sqlite")) {
    sql::WriteDatabase(MemoryStore(m_model, {}), m_path);
  }
  std::unique_ptr<RecordStore> Open(std::u16string_view more = u"<timeout>0.05</timeout>") const {
    return OpenDatabase(m_path, more);
  }
  /// A change by somebody else than this process.
  void Change(const std::string& sql) const { ASSERT_EQ("", Ask(m_path, sql)) << sql; }

  TempFolder m_folder;
  std::shared_ptr<const Model> m_model;
  ContractModel m;
  std::filesystem::path m_path;
};

}  // namespace hv::vex::engine::test

// tests/plugins/TestConfiguration.h - a configuration of a test's own, which says where modules
// are.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace hv::test {

/// Takes the place of the machine's configuration as long as it lives.
class TestConfiguration {
 public:
  /// Without `binDir`.
  TestConfiguration() {
    m_folder =
        std::filesystem::temp_directory_path() / ("storefabric-test-" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    ::setenv("STOREFABRIC_CONFIG", m_folder.c_str(), 1);
  }
  explicit TestConfiguration(const std::string& binDir) : TestConfiguration() {
    std::string escaped;
    for (const char c : binDir) escaped.append(c == '\\' ? 2 : 1, c);
    WriteMachine("REGEDIT4\n\n[Software\\Halvorn\\Common\\VEX]\n\"binDir\"=\"" + escaped + "\"\n");
  }
  TestConfiguration(const TestConfiguration&) = delete;
  TestConfiguration& operator=(const TestConfiguration&) = delete;
  ~TestConfiguration() {
    ::unsetenv("STOREFABRIC_CONFIG");
    std::error_code unused;
    std::filesystem::remove_all(m_folder, unused);
  }

  void WriteMachine(const std::string& text) const {
    std::ofstream(m_folder / "machine.reg", std::ios::binary) << text;
  }

 private:
  std::filesystem::path m_folder;
};

}  // namespace hv::test

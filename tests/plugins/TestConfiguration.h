// tests/plugins/TestConfiguration.h - a configuration of a test's own, which says where modules
// are.
#pragma once

#include <cstdlib>
#include <string>

#include "tests/support/TempFolder.h"

namespace hv::test {

/// Takes the place of the machine's configuration as long as it lives.
class TestConfiguration {
 public:
  /// Without `binDir`.
  TestConfiguration() { ::setenv("STOREFABRIC_CONFIG", m_folder.Path().c_str(), 1); }
  explicit TestConfiguration(const std::string& binDir) : TestConfiguration() {
    std::string escaped;
    for (const char c : binDir) escaped.append(c == '\\' ? 2 : 1, c);
    WriteMachine("REGEDIT4\n\n[Software\\Halvorn\\Common\\VEX]\n\"binDir\"=\"" + escaped + "\"\n");
  }
  TestConfiguration(const TestConfiguration&) = delete;
  TestConfiguration& operator=(const TestConfiguration&) = delete;
  ~TestConfiguration() { ::unsetenv("STOREFABRIC_CONFIG"); }

  void WriteMachine(const std::string& text) const { m_folder.Write("machine.reg", text); }

 private:
  TempFolder m_folder;
};

}  // namespace hv::test

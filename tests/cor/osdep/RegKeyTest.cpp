// cor/osdep/RegKeyTest.cpp - the configuration store on files.
#include "cor/osdep/RegKey.h"

#include "cor/osdep/OSException.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "tests/support/TempFolder.h"

namespace hv::cor::osdep {
namespace {

namespace fs = std::filesystem;

/// Gives the store a directory of its own, and the environment back at the end.
class RegKeyTest : public ::testing::Test {
 protected:
  RegKeyTest() {
    for (const char* variable : kVariables) {
      if (const char* const value = std::getenv(variable)) m_saved[variable] = value;
    }
    ::setenv("STOREFABRIC_CONFIG", m_directory.c_str(), 1);
  }
  ~RegKeyTest() override {
    for (const char* variable : kVariables) ::unsetenv(variable);
    for (const auto& [variable, value] : m_saved) ::setenv(variable, value.c_str(), 1);
  }

  void Write(const fs::path& file, std::string_view content) const {
    fs::create_directories((m_directory / file).parent_path());
    std::ofstream(m_directory / file, std::ios::binary) << content;
  }
  std::string Read(const fs::path& file) const {
    std::ifstream in(m_directory / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  template <class Action>
  static std::uint32_t ErrorOf(Action action) {
    try {
      action();
      return 0;
    } catch (const WinError& e) {
      EXPECT_STRNE("", e.what());
      EXPECT_STREQ("cor/osdep/regkey", e.File());
      return e.Number();
    }
  }

  static constexpr const char* kVariables[] = {"STOREFABRIC_CONFIG", "XDG_CONFIG_HOME",
                                               "XDG_CONFIG_DIRS", "HOME"};
  test::TempFolder m_folder;
  const fs::path& m_directory = m_folder.Path();

 private:
  std::map<const char*, std::string> m_saved;
};

TEST_F(RegKeyTest, DirectoryValues) {
  EXPECT_TRUE(DirectoryValue(u"binDir").empty());
  Write("machine.reg", "[Software\\Halvorn\\Common]\n");
  EXPECT_TRUE(DirectoryValue(u"binDir").empty());
  Write("machine.reg",
        "[Software\\\\Halvorn\\\\Common\\\\VEX]\n\"binDir\"=\"C:\\\\Data\"\n\"vexDir\"=\"/opt/x\"\n"
        "\"configDirEx\"=dword:1\n\"pluginDirEx\"=hex(2):2f,00,70,00,2f,00,00,00\n");
  EXPECT_TRUE(DirectoryValue(u"BINDIR").EqualsExact(u"C:\\Data\\"));
  EXPECT_TRUE(DirectoryValue(u"vexDir").EqualsExact(u"/opt/x/"));
  EXPECT_TRUE(DirectoryValue(u"configDirEx").empty());
  EXPECT_TRUE(DirectoryValue(u"pluginDirEx").EqualsExact(u"/p/"));
  EXPECT_TRUE(DirectoryValue(u"missing").empty());
  Write("machine.reg", "[Software\\Halvorn\n");
  try {
    (void)DirectoryValue(u"binDir");
    ADD_FAILURE() << "accepted";
  } catch (const WinError& e) {
    EXPECT_EQ(kErrorCorrupt, e.Number());
    EXPECT_TRUE(std::string_view(e.what()).starts_with((m_directory / "machine.reg:1: ").string()));
  }
}

TEST_F(RegKeyTest, TextsUpToTheirZeroAndDefaults) {
  Write("user.reg",
        "[Software\\Halvorn\\A]\n\"n\"=dword:1\n\"z\"=hex(1):61,00,00,00,62,00\n@=\"own\"");
  RegKey key(RegRoot::CurrentUser, u"a", true, false);
  EXPECT_TRUE(key.GetValue(u"z", u"d").EqualsExact(u"a"));
  EXPECT_TRUE(key.GetValue(u"n", u"d").EqualsExact(u"d"));
  EXPECT_TRUE(key.GetValue(u"missing", u"d").EqualsExact(u"d"));
  EXPECT_TRUE(key.GetValue(u"").EqualsExact(u"own"));
  EXPECT_EQ(1u, key.ReadValue(u"N")->bytes.at(0));
  EXPECT_FALSE(key.ReadValue(u"missing"));
}

TEST_F(RegKeyTest, OpensOnlyWhatItMay) {
  const auto open = [](RegRoot root, bool create, const char16_t* host) {
    return ErrorOf([&] { RegKey(root, u"K", true, create, host); });
  };
  EXPECT_EQ(kErrorFileNotFound, open(RegRoot::CurrentUser, false, nullptr));
  EXPECT_EQ(kErrorFileNotFound, open(RegRoot::LocalMachineToo, false, u""));
  EXPECT_EQ(kErrorBadNetPath, open(RegRoot::LocalMachine, false, u"srv"));
  EXPECT_EQ(kErrorInvalidParameter, open(RegRoot::Users, false, nullptr));
  EXPECT_EQ(kErrorInvalidParameter, open(static_cast<RegRoot>(7), false, nullptr));
  EXPECT_FALSE(fs::exists(m_directory / "user.reg"));
  EXPECT_EQ(0u, open(RegRoot::CurrentUser, true, nullptr));
  EXPECT_EQ(0u, open(RegRoot::CurrentUser, false, nullptr));
  EXPECT_EQ("[Software\\Halvorn\\K]\n", Read("user.reg"));
  fs::remove(m_directory / "user.reg");
  fs::create_directory(m_directory / "user.reg");
  EXPECT_EQ(kErrorCantRead, open(RegRoot::CurrentUser, false, nullptr));
}

TEST_F(RegKeyTest, WritesAreSeenByOtherKeysAtOnce) {
  RegKey writer(RegRoot::CurrentUser, u"Lists\\One", false, true);
  RegKey reader(RegRoot::CurrentUser, u"Lists", true, false);
  RegKey other(RegRoot::CurrentUser, u"Lists\\One", false, false, nullptr, u"software\\halvorn");
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {  // the same length every time
    writer.SetValue(u"Value", std::u16string(1, digit));
    ASSERT_TRUE(other.GetValue(u"value").EqualsExact(std::u16string(1, digit)));
  }
  other.SetNumber(u"Number", 0x12345678);
  other.SetValue(u"Expand", u"%X%", RegType::ExpandSz);
  other.SetValue(u"a\"b", u"line\nline");
  EXPECT_TRUE(writer.GetValue(u"Expand").EqualsExact(u"%X%"));
  EXPECT_TRUE(writer.GetValue(u"a\"b").EqualsExact(u"line\nline"));
  EXPECT_EQ(0x78, writer.ReadValue(u"Number")->bytes.at(0));
  writer.DeleteValue(u"VALUE");
  writer.DeleteValue(u"never there");
  std::string names;
  for (const WString& name : other.ValueNames()) names += ToUtf8(name) + ",";
  EXPECT_EQ("a\"b,Expand,Number,", names);
  ASSERT_EQ(1u, reader.SubKeys().size());
  EXPECT_TRUE(reader.SubKeys()[0].EqualsExact(u"One"));
  EXPECT_EQ(1, std::distance(fs::directory_iterator(m_directory), fs::directory_iterator()));

  EXPECT_EQ(kErrorAccessDenied, ErrorOf([&] { reader.SetNumber(u"n", 1); }));
  EXPECT_EQ(kErrorInvalidParameter, ErrorOf([&] { writer.SetValue(u"a\nb", u""); }));
  EXPECT_EQ(kErrorInvalidParameter, ErrorOf([&] { writer.SetValue(u"a", u"", RegType::Binary); }));
  EXPECT_EQ(kErrorInvalidParameter,
            ErrorOf([&] { RegKey(RegRoot::CurrentUser, u"a\nb", false, true); }));
  fs::remove(m_directory / "user.reg");
  EXPECT_EQ(kErrorFileNotFound, ErrorOf([&] { writer.SetNumber(u"n", 1); }));
}

TEST_F(RegKeyTest, AFailedWriteLeavesFileAndKeyAsTheyWere) {
  Write("user.reg", "[Software\\Halvorn\\A]\n\"v\"=\"old\"\n");
  RegKey key(RegRoot::CurrentUser, u"A", false, false);
  // A name that is too long for the file beside it, but not for the file itself.
  const std::string longName(250, 'x');
  fs::rename(m_directory / "user.reg", m_directory / longName);
  fs::create_symlink(m_directory / longName, m_directory / "user.reg");
  EXPECT_EQ(kErrorCantWrite, ErrorOf([&] { key.SetValue(u"v", u"new"); }));
  EXPECT_TRUE(key.GetValue(u"v").EqualsExact(u"old"));
  EXPECT_EQ("[Software\\Halvorn\\A]\n\"v\"=\"old\"\n", Read(longName));
  // With a shorter name behind the link the write goes through, and the link stays one.
  fs::rename(m_directory / longName, m_directory / "behind.reg");
  fs::remove(m_directory / "user.reg");
  fs::create_symlink(m_directory / "behind.reg", m_directory / "user.reg");
  fs::permissions(m_directory / "behind.reg", fs::perms::owner_read | fs::perms::owner_write);
  key.SetValue(u"v", u"new");
  EXPECT_TRUE(fs::is_symlink(m_directory / "user.reg"));
  EXPECT_EQ("[Software\\Halvorn\\A]\n\"v\"=\"new\"\n", Read("behind.reg"));
  EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write,
            fs::status(m_directory / "behind.reg").permissions());
}

TEST_F(RegKeyTest, FilesLieWhereTheEnvironmentSays) {
  EXPECT_EQ(m_directory / "user.reg", RegFilePath(RegRoot::CurrentUser));
  EXPECT_EQ(m_directory / "machine.reg", RegFilePath(RegRoot::ClassesRoot));
  ::unsetenv("STOREFABRIC_CONFIG");
  ::setenv("XDG_CONFIG_HOME", "/x/config", 1);
  EXPECT_EQ("/x/config/storefabric/user.reg", RegFilePath(RegRoot::CurrentUser));
  ::setenv("XDG_CONFIG_HOME", "relative", 1);
  ::setenv("HOME", "/h", 1);
  EXPECT_EQ("/h/.config/storefabric/user.reg", RegFilePath(RegRoot::CurrentUser));
  ::unsetenv("HOME");
  EXPECT_EQ("", RegFilePath(RegRoot::CurrentUser));
  EXPECT_EQ(kErrorFileNotFound, ErrorOf([] { RegKey(RegRoot::CurrentUser, u"A", false, false); }));
  EXPECT_EQ(kErrorCantWrite, ErrorOf([] { RegKey(RegRoot::CurrentUser, u"A", false, true); }));
  ::unsetenv("XDG_CONFIG_DIRS");
  EXPECT_EQ("/etc/xdg/storefabric/machine.reg", RegFilePath(RegRoot::LocalMachine));
  const std::string list =
      "relative:/none:" + (m_directory / "one").string() + ":" + (m_directory / "two").string();
  ::setenv("XDG_CONFIG_DIRS", list.c_str(), 1);
  EXPECT_EQ("/none/storefabric/machine.reg", RegFilePath(RegRoot::LocalMachine));
  Write("two/storefabric/machine.reg", "");
  EXPECT_EQ(m_directory / "two/storefabric/machine.reg", RegFilePath(RegRoot::LocalMachineToo));
}

}  // namespace
}  // namespace hv::cor::osdep

// cor/osdep/RegKey.h - the configuration store: keys and values per user and per machine.
// The files are user.reg in $XDG_CONFIG_HOME/storefabric (by default ~/.config/storefabric), and
// machine.reg in the first of $XDG_CONFIG_DIRS (by default /etc/xdg) that has
// storefabric/machine.reg. If the environment variable STOREFABRIC_CONFIG names a directory, both
// lie there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

#include "cor/osdep/RegFile.h"

namespace hv::cor::osdep {

/// The roots; their numbers are frozen.
enum class RegRoot : int {
  CurrentUser = 0,
  LocalMachine = 1,
  ClassesRoot = 2,  ///< the machine's "Software\Classes"
  Users = 3,        ///< not kept here: raises `WinError`
  LocalMachineToo = 4,
};

/// The key under which all of this system's keys lie.
inline constexpr const char16_t* kDefaultBaseKey = u"Software\\Halvorn\\";

/// The file that keeps a root; empty if there is no place for it.
std::filesystem::path RegFilePath(RegRoot root);

/// An open key. Reads see what any process wrote before; each write rewrites the whole file beside
/// and renames it over, so that a reader sees the old file or the new one. Comments don't survive a
/// write. Failures raise `WinError` with the number and a text that names the file.
class RegKey final {
 public:
  /// \param subKey    the key's path below the base key.
  /// \param readOnly  whether writes are refused.
  /// \param create    whether a missing key is made; otherwise it raises `WinError` 2.
  /// \param hostName  another machine's store; must be null or empty.
  /// \param baseKey   null for "Software\Halvorn\".
  RegKey(RegRoot root, std::u16string_view subKey, bool readOnly, bool create,
         const char16_t* hostName = nullptr, const char16_t* baseKey = nullptr);
  ~RegKey();
  RegKey(const RegKey&) = delete;
  RegKey& operator=(const RegKey&) = delete;

  /// The text of a value, up to its first zero unit. A value that is missing or isn't a text (Sz or
  /// ExpandSz, which isn't expanded) gives `defaultText`.
  [[nodiscard]] WString GetValue(std::u16string_view name, std::u16string_view defaultText = {});
  /// A value of any type, or nothing.
  [[nodiscard]] std::optional<RegValue> ReadValue(std::u16string_view name);
  /// The names in the order that ignores case.
  [[nodiscard]] std::vector<WString> ValueNames();
  [[nodiscard]] std::vector<WString> SubKeys();

  void SetValue(std::u16string_view name, std::u16string_view text, RegType type = RegType::Sz);
  void SetNumber(std::u16string_view name, std::uint32_t number);
  void WriteValue(std::u16string_view name, RegValue value);
  /// A missing value is no failure.
  void DeleteValue(std::u16string_view name);

 private:
  const RegNode& Node();
  template <class Change>
  void Modify(Change change);

  class File;
  std::unique_ptr<File> m_file;
  WString m_path;
  bool m_readOnly;
};

/// One of the system's directories: "binDir", "vexDir", "configDirEx" or "pluginDirEx", from the
/// machine's "Software\Halvorn\Common\VEX", with the separator of its notation at the end. Empty if
/// the key or the value is missing or the value isn't a text. Raises `WinError` for a malformed
/// file.
WString DirectoryValue(std::u16string_view name);

}  // namespace hv::cor::osdep

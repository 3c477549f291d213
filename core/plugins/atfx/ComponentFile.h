// core/plugins/atfx/ComponentFile.h - the binary files beside an ATFX file, mapped into memory.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace hv::vex::engine::atfx {

/// A regular file mapped for reading. The mapping stays good when the file is removed or replaced
/// by another; a file that someone shortens while it is mapped isn't guarded against.
class ComponentFile final {
 public:
  /// Throws kBadFile naming the file and the reason.
  explicit ComponentFile(const std::filesystem::path& path);
  ~ComponentFile();
  ComponentFile(const ComponentFile&) = delete;
  ComponentFile& operator=(const ComponentFile&) = delete;

  [[nodiscard]] std::span<const std::byte> Contents() const { return m_contents; }
  /// Gives pages back that were read; they come again when they are looked at.
  void Forget() const;
  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }

 private:
  std::filesystem::path m_path;
  std::span<const std::byte> m_contents;
};

/// The component files of one ATFX file, by the names it gives them. Each is mapped when first
/// asked for, once for all columns that lie in it, and stays mapped as long as anybody holds this
/// object: the file may be replaced meanwhile.
class ComponentFiles final {
 public:
  /// \param folder  where relative names start.
  /// \param warn    told of names that lead out of the folder.
  ComponentFiles(std::filesystem::path folder, std::function<void(std::u16string)> warn)
      : m_folder(std::move(folder)), m_warn(std::move(warn)) {}
  ComponentFiles(const ComponentFiles&) = delete;
  ComponentFiles& operator=(const ComponentFiles&) = delete;

  /// The file of that name as a mapping; throws kBadFile.
  std::shared_ptr<const ComponentFile> Open(std::u16string_view name);
  /// Where a name leads: "\" counts as "/", a leading "file://" is dropped, relative names start at
  /// the folder.
  [[nodiscard]] std::filesystem::path Resolve(std::u16string_view name) const;
  void Warn(std::u16string text) const {
    if (m_warn) m_warn(std::move(text));
  }

 private:
  std::filesystem::path m_folder;
  std::function<void(std::u16string)> m_warn;
  std::map<std::filesystem::path, std::shared_ptr<const ComponentFile>> m_open;
};

}  // namespace hv::vex::engine::atfx

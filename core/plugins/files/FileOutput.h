// core/plugins/files/FileOutput.h - writes a file in large pieces; an unfinished one vanishes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace hv::vex::engine {

/// A new file. Unless it is kept, it is removed when this object goes. Failures throw kWriteFailed
/// with the file's name and the reason.
class FileOutput final {
 public:
  /// Makes the file; fails if one of that name exists.
  explicit FileOutput(std::filesystem::path path);
  /// As above under a made-up name beside `path`, for renaming it over `path` later.
  static FileOutput Beside(const std::filesystem::path& path);
  FileOutput(FileOutput&& other) noexcept;
  FileOutput& operator=(FileOutput&&) = delete;
  ~FileOutput();

  void Write(std::string_view bytes) {
    if (bytes.size() > m_buffer.capacity() - m_buffer.size()) Flush();
    if (bytes.size() > kBufferSize) return WriteThrough(bytes);
    m_buffer.append(bytes);
  }
  void Write(std::span<const std::byte> bytes) {
    Write(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  }
  /// Bytes written so far.
  [[nodiscard]] std::uint64_t Size() const { return m_written + m_buffer.size(); }
  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }

  /// Brings everything to the disk and closes the file, which still vanishes unless it is kept.
  void Close();
  /// Lets the closed file stay.
  void Keep() { m_isKept = true; }
  /// Gives the closed file another name, replacing what is there, and lets it stay.
  void RenameOver(const std::filesystem::path& target);

 private:
  static constexpr std::size_t kBufferSize = std::size_t{1} << 17;
  void Flush();
  void WriteThrough(std::string_view bytes);
  [[noreturn]] void Fail(int error) const;

  std::filesystem::path m_path;
  int m_file = -1;
  bool m_isKept = false;
  std::uint64_t m_written = 0;
  std::string m_buffer;
};

/// True if a file of that name exists, whatever it is.
bool NameIsTaken(const std::filesystem::path& path);
/// The file that a name leads to: of a link, what it points to, so that the link stays.
std::filesystem::path ResolveTarget(const std::filesystem::path& target);

}  // namespace hv::vex::engine

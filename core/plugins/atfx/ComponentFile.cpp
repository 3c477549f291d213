// core/plugins/atfx/ComponentFile.cpp - mapping of component files.
#include "core/plugins/atfx/ComponentFile.h"

#include "core/plugins/atfx/AsciiText.h"

#include "store/core/Exception.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hv::vex::engine::atfx {

namespace {

[[noreturn]] void Refuse(const std::filesystem::path& path, std::string_view reason) {
  std::string text = path.string();
  text.append(": ").append(reason);
  throw Exception(errc::kBadFile, cor::FromUtf8(text));
}

[[noreturn]] void RefuseErrno(const std::filesystem::path& path, int error) {
  Refuse(path, std::generic_category().message(error));
}

class FileHandle final {
 public:
  explicit FileHandle(int file) : m_file(file) {}
  ~FileHandle() {
    if (m_file >= 0) close(m_file);
  }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  [[nodiscard]] int Get() const { return m_file; }

 private:
  int m_file;
};

}  // namespace

ComponentFile::ComponentFile(const std::filesystem::path& path) : m_path(path) {
  // Without O_NONBLOCK a name that leads to a pipe would wait for a writer for ever.
  const FileHandle file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.Get() < 0) RefuseErrno(path, errno);
  struct stat facts {};
  if (fstat(file.Get(), &facts) != 0) RefuseErrno(path, errno);
  if (!S_ISREG(facts.st_mode)) Refuse(path, "not a regular file");
  const auto size = static_cast<std::size_t>(facts.st_size);
  if (size == 0) return;
  void* const at = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.Get(), 0);
  if (at == MAP_FAILED) RefuseErrno(path, errno);
  m_contents = {static_cast<const std::byte*>(at), size};
}

void ComponentFile::Forget() const {
  if (m_contents.empty()) return;
  // The mapping is never written to, so nothing is lost.
  madvise(const_cast<std::byte*>(m_contents.data()), m_contents.size(), MADV_DONTNEED);
}

ComponentFile::~ComponentFile() {
  if (!m_contents.empty()) {
    munmap(const_cast<std::byte*>(m_contents.data()), m_contents.size());
  }
}

std::filesystem::path ComponentFiles::Resolve(std::u16string_view name) const {
  name = Trim(name);
  if (name.starts_with(u"file://")) name.remove_prefix(7);
  std::u16string slashed(name);
  std::replace(slashed.begin(), slashed.end(), u'\\', u'/');
  const std::filesystem::path path(cor::ToUtf8(slashed));
  return path.is_absolute() ? path : (m_folder / path).lexically_normal();
}

std::shared_ptr<const ComponentFile> ComponentFiles::Open(std::u16string_view name) {
  const std::filesystem::path path = Resolve(name);
  const auto known = m_open.find(path);
  if (known != m_open.end()) return known->second;
  const std::filesystem::path fromFolder = path.lexically_relative(m_folder.lexically_normal());
  if (fromFolder.empty() || *fromFolder.begin() == "..") {
    Warn(u"component file outside the folder: " + std::u16string(name));
  }
  auto file = std::make_shared<const ComponentFile>(path);
  m_open.emplace(path, file);
  return file;
}

}  // namespace hv::vex::engine::atfx

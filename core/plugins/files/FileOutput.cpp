// core/plugins/files/FileOutput.cpp - plain system calls, since every step's failure counts.
#include "core/plugins/files/FileOutput.h"

#include "store/core/Exception.h"

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hv::vex::engine {

namespace {

int CreateFile(const std::filesystem::path& path) {
  return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

}  // namespace

FileOutput::FileOutput(std::filesystem::path path) : m_path(std::move(path)) {
  m_file = CreateFile(m_path);
  if (m_file < 0) Fail(errno);
  m_buffer.reserve(kBufferSize);
}

FileOutput FileOutput::Beside(const std::filesystem::path& path) {
  for (unsigned attempt = 0;; ++attempt) {
    std::filesystem::path beside = path;
    beside += ".new" + std::to_string(getpid()) + "_" + std::to_string(attempt);
    if (!NameIsTaken(beside)) return FileOutput(beside);
  }
}

FileOutput::FileOutput(FileOutput&& other) noexcept
    : m_path(std::move(other.m_path)),
      m_file(std::exchange(other.m_file, -1)),
      m_isKept(std::exchange(other.m_isKept, true)),
      m_written(other.m_written),
      m_buffer(std::move(other.m_buffer)) {}

FileOutput::~FileOutput() {
  if (m_file >= 0) close(m_file);
  if (!m_isKept) unlink(m_path.c_str());
}

void FileOutput::Fail(int error) const {
  throw Exception(errc::kWriteFailed,
                  cor::FromUtf8(m_path.string() + ": " + std::generic_category().message(error)));
}

void FileOutput::Flush() {
  WriteThrough(m_buffer);
  m_buffer.clear();
}

void FileOutput::WriteThrough(std::string_view bytes) {
  m_written += bytes.size();
  while (!bytes.empty()) {
    const ssize_t done = write(m_file, bytes.data(), bytes.size());
    if (done < 0) {
      if (errno == EINTR) continue;
      Fail(errno);
    }
    bytes.remove_prefix(static_cast<std::size_t>(done));
  }
}

void FileOutput::Close() {
  Flush();
  if (fsync(m_file) != 0) Fail(errno);
  if (close(std::exchange(m_file, -1)) != 0) Fail(errno);
}

void FileOutput::RenameOver(const std::filesystem::path& target) {
  struct stat old {};
  if (stat(target.c_str(), &old) == 0 && chmod(m_path.c_str(), old.st_mode & 07777) != 0) {
    Fail(errno);
  }
  if (std::rename(m_path.c_str(), target.c_str()) != 0) Fail(errno);
  m_isKept = true;
  // The new name is on the disk only when its folder is. The file itself is in place already, so a
  // failure here is none of the caller's business.
  const int folder = open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
}

bool NameIsTaken(const std::filesystem::path& path) {
  struct stat facts {};
  return lstat(path.c_str(), &facts) == 0;
}

std::filesystem::path ResolveTarget(const std::filesystem::path& target) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(target, error);
  return error ? std::filesystem::absolute(target).lexically_normal() : real;
}

}  // namespace hv::vex::engine

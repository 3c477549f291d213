// core/plugins/sql/NewDatabaseFile.cpp - plain system calls around the making of a database.
#include "core/plugins/sql/NewDatabaseFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/plugins/sql/Sqlite.h"
#include "core/store/memory/Failure.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::sql {
namespace {

constexpr const char* kCompanions[] = {"-wal", "-shm", "-journal"};

[[noreturn]] void FailFor(const std::filesystem::path& path, int error) {
  Fail(errc::kWriteFailed, {cor::FromUtf8(path.string()), u": ",
                            cor::FromUtf8(std::generic_category().message(error))});
}

/// True if nobody else holds the file; the lock is held until `file` is closed.
bool Lock(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

void Synchronize(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) FailFor(path, errno);
  const int error = fsync(file) == 0 ? 0 : errno;
  close(file);
  if (error != 0) FailFor(path, error);
}

/// The log beside a database would be taken for the new one's. So the old one must be closed by
/// everybody, and what an old one that is gone has left must go too.
void CloseOld(const std::filesystem::path& path, bool isThere) {
  try {
    if (isThere) OpenSqlite(path, {})->Execute("PRAGMA journal_mode=DELETE");
  } catch (const Exception& error) {
    if (error.code != errc::kBadFile) throw;
  }
  std::error_code unused;
  for (const char* const ending : kCompanions) {
    std::filesystem::remove(path.string() + ending, unused);
  }
}

/// The new database that a file is or belongs to; empty if the name isn't made here.
std::string NewNameIn(std::string_view name, std::string_view begin) {
  if (!name.starts_with(begin)) return {};
  for (const std::string_view ending : kCompanions) {
    if (name.ends_with(ending)) name.remove_suffix(ending.size());
  }
  const std::string_view number = name.substr(std::min(begin.size(), name.size()));
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return number.empty() || !std::all_of(number.begin(), number.end(), isDigit) ? std::string()
                                                                               : std::string(name);
}

}  // namespace

NewDatabaseFile::NewDatabaseFile(const std::filesystem::path& target) {
  // A link is kept, and what it points to replaced.
  std::error_code error;
  m_target = std::filesystem::canonical(target, error);
  if (error) m_target = std::filesystem::absolute(target).lexically_normal();
  RemoveAbandoned();
  Create();
}

NewDatabaseFile::~NewDatabaseFile() {
  std::error_code unused;
  if (!m_isInPlace) {
    std::filesystem::remove(m_path, unused);
    for (const char* const ending : kCompanions) {
      std::filesystem::remove(m_path.string() + ending, unused);
    }
  }
  close(m_lock);
}

void NewDatabaseFile::Create() {
  for (std::int64_t number = getpid();; ++number) {
    m_path = m_target.string() + ".new-" + std::to_string(number);
    m_lock = open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_lock < 0 && errno == EEXIST) continue;
    if (m_lock < 0) FailFor(m_path, errno);
    // Somebody who clears up may have come between making and locking.
    struct stat facts {};
    if (Lock(m_lock) && fstat(m_lock, &facts) == 0 && facts.st_nlink != 0) return;
    close(m_lock);
  }
}

void NewDatabaseFile::RemoveAbandoned() const {
  const std::string begin = m_target.filename().string() + ".new-";
  std::error_code unused;
  for (const auto& entry : std::filesystem::directory_iterator(m_target.parent_path(), unused)) {
    const std::string name = NewNameIn(entry.path().filename().string(), begin);
    if (name.empty()) continue;
    const int file = open((m_target.parent_path() / name).c_str(), O_RDONLY | O_CLOEXEC);
    const bool isAbandoned = file >= 0 ? Lock(file) : errno == ENOENT;
    if (isAbandoned) std::filesystem::remove(entry.path(), unused);
    if (file >= 0) close(file);
  }
}

void NewDatabaseFile::TakePlace(IfTaken ifTaken) {
  Synchronize(m_path);
  struct stat old {};
  const bool isTaken = stat(m_target.c_str(), &old) == 0;
  if (isTaken && ifTaken == IfTaken::Replace) {
    if (fchmod(m_lock, old.st_mode & 07777) != 0) FailFor(m_path, errno);
  }
  if (!isTaken || ifTaken == IfTaken::Replace) CloseOld(m_target, isTaken);
  const bool mayReplace = ifTaken == IfTaken::Replace;
  int error = 0;
  if (renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, m_target.c_str(),
                mayReplace ? 0 : RENAME_NOREPLACE) != 0) {
    error = errno;
  }
  // Some network file systems know no such flag.
  if (error == EINVAL && !mayReplace && !isTaken) {
    error = std::rename(m_path.c_str(), m_target.c_str()) == 0 ? 0 : errno;
  }
  if (error == EEXIST) {
    Fail(errc::kNotUnique, {cor::FromUtf8(m_target.string()), u": exists already"});
  }
  if (error != 0) FailFor(m_target, error);
  m_isInPlace = true;
  // The new name is on the disk only when its folder is. The file itself is in place already, so a
  // failure here is none of the caller's business.
  const int folder = open(m_target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  fsync(folder);
  close(folder);
}

}  // namespace hv::vex::engine::sql

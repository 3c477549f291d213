// cor/osdep/RegKey.cpp - the configuration store on its files.
#include "cor/osdep/RegKey.h"

#include "cor/osdep/OSException.h"
#include "cor/osdep/Path.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hv::cor::osdep {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSourceFile = "cor/osdep/regkey";
constexpr std::size_t kLargestFile = std::size_t{16} << 20;

std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

fs::path UserFile() {
  fs::path directory = Environment("XDG_CONFIG_HOME");
  if (!directory.is_absolute()) {
    const std::string_view home = Environment("HOME");
    if (home.empty()) return {};
    directory = fs::path(home) / ".config";
  }
  return directory / "storefabric" / "user.reg";
}

fs::path MachineFile() {
  std::string_view list = Environment("XDG_CONFIG_DIRS");
  if (list.empty()) list = "/etc/xdg";
  fs::path first;
  while (!list.empty()) {
    const std::size_t end = list.find(':');
    const fs::path directory = list.substr(0, end);
    list.remove_prefix(end == list.npos ? list.size() : end + 1);
    if (!directory.is_absolute()) continue;
    fs::path file = directory / "storefabric" / "machine.reg";
    std::error_code ignored;
    if (fs::exists(file, ignored)) return file;
    if (first.empty()) first = file;
  }
  return first;
}

[[noreturn]] void RaiseFile(std::uint32_t number, const fs::path& path, int error, int line) {
  throw WinError(number, path.string() + ": " + std::generic_category().message(error), kSourceFile,
                 line);
}

/// Closes a file descriptor at the end of the scope.
class Descriptor final {
 public:
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  ~Descriptor() {
    if (m_descriptor >= 0) ::close(m_descriptor);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Get() const { return m_descriptor; }

 private:
  int m_descriptor;
};

/// What tells one state of a file from another; all zero for a missing file.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;
  friend bool operator==(const FileState&, const FileState&) = default;
};

FileState StateOf(const struct stat& info) {
  return {info.st_dev, info.st_ino, info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

/// The whole file; nothing if it is missing.
std::string ReadWholeFile(const fs::path& path, FileState* state) {
  *state = {};
  const Descriptor file(path.empty() ? -1 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.Get() < 0) {
    if (path.empty() || errno == ENOENT || errno == ENOTDIR) return {};
    RaiseFile(kErrorCantRead, path, errno, __LINE__);
  }
  struct stat info {};
  if (::fstat(file.Get(), &info) != 0) RaiseFile(kErrorCantRead, path, errno, __LINE__);
  if (!S_ISREG(info.st_mode)) RaiseFile(kErrorCantRead, path, EINVAL, __LINE__);
  std::string content;
  char buffer[16384];
  for (;;) {
    const ssize_t count = ::read(file.Get(), buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) RaiseFile(kErrorCantRead, path, errno, __LINE__);
    if (count == 0) break;
    content.append(buffer, static_cast<std::size_t>(count));
    if (content.size() > kLargestFile) RaiseFile(kErrorCantRead, path, EFBIG, __LINE__);
  }
  *state = StateOf(info);
  return content;
}

void WriteAll(int file, std::string_view content, const fs::path& path) {
  while (!content.empty()) {
    const ssize_t count = ::write(file, content.data(), content.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) RaiseFile(kErrorCantWrite, path, errno, __LINE__);
    content.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// Removes a file that was written beside, unless it has found its place.
class Beside final {
 public:
  explicit Beside(std::string name) : m_name(std::move(name)) {}
  ~Beside() {
    if (!m_name.empty()) ::unlink(m_name.c_str());
  }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  void RenameTo(const fs::path& path) {
    if (::rename(m_name.c_str(), path.c_str()) != 0) {
      RaiseFile(kErrorCantWrite, path, errno, __LINE__);
    }
    m_name.clear();
  }

 private:
  std::string m_name;
};

void WriteWholeFile(const fs::path& given, std::string_view content) {
  if (given.empty()) throw WinError(kErrorCantWrite, kSourceFile, __LINE__);
  std::error_code error;
  fs::create_directories(given.parent_path(), error);
  if (error) RaiseFile(kErrorCantWrite, given, error.value(), __LINE__);
  // Behind a link lies the file that is to be replaced, not the link itself.
  fs::path path = fs::weakly_canonical(given, error);
  if (error) path = given;

  std::string name = path.string() + ".XXXXXX";
  const Descriptor file(::mkostemp(name.data(), O_CLOEXEC));
  if (file.Get() < 0) RaiseFile(kErrorCantWrite, path, errno, __LINE__);
  Beside beside(name);
  struct stat old {};
  const mode_t mode = ::stat(path.c_str(), &old) == 0 ? old.st_mode & 0777 : 0644;
  if (::fchmod(file.Get(), mode) != 0) RaiseFile(kErrorCantWrite, path, errno, __LINE__);
  WriteAll(file.Get(), content, path);
  if (::fsync(file.Get()) != 0) RaiseFile(kErrorCantWrite, path, errno, __LINE__);
  beside.RenameTo(path);
}

WString KeyPath(RegRoot root, std::u16string_view subKey, const char16_t* baseKey) {
  WString path(root == RegRoot::ClassesRoot ? u"Software\\Classes\\" : u"");
  path.append(baseKey ? baseKey : kDefaultBaseKey);
  path.append(u"\\").append(subKey);
  return path;
}

/// Raises for a name that the notation can't hold.
void CheckName(std::u16string_view name) {
  if (!IsPlainRegText(name)) throw WinError(kErrorInvalidParameter, kSourceFile, __LINE__);
}

}  // namespace

fs::path RegFilePath(RegRoot root) {
  const bool isUser = root == RegRoot::CurrentUser;
  const std::string_view replaced = Environment("STOREFABRIC_CONFIG");
  if (!replaced.empty()) return fs::path(replaced) / (isUser ? "user.reg" : "machine.reg");
  return isUser ? UserFile() : MachineFile();
}

/// The keys of a file, read again when the file has become another one.
class RegKey::File final {
 public:
  explicit File(fs::path path) : m_path(std::move(path)) {}

  RegNode& Current() {
    struct stat info {};
    const bool exists = !m_path.empty() && ::stat(m_path.c_str(), &info) == 0;
    if (!m_trusted || (exists ? StateOf(info) : FileState{}) != m_state) Load();
    return *m_root;
  }
  void Load() {
    const std::string content = ReadWholeFile(m_path, &m_state);
    m_root = ParseRegFile(content, m_path.string());
    // Two writes within a tick of the file system's clock may leave the same state behind.
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    m_trusted = now.tv_sec - m_state.seconds > 1;
  }
  /// Writes what was changed in the tree. If that fails, the next read forgets the change.
  void Save() {
    m_trusted = false;
    WriteWholeFile(m_path, WriteRegFile(*m_root));
  }

 private:
  fs::path m_path;
  FileState m_state;
  bool m_trusted = false;
  std::unique_ptr<RegNode> m_root;
};

RegKey::RegKey(RegRoot root, std::u16string_view subKey, bool readOnly, bool create,
               const char16_t* hostName, const char16_t* baseKey)
    : m_path(KeyPath(root, subKey, baseKey)), m_readOnly(readOnly) {
  if (hostName && *hostName) throw WinError(kErrorBadNetPath, kSourceFile, __LINE__);
  const bool isKept = root == RegRoot::CurrentUser || root == RegRoot::LocalMachine ||
                      root == RegRoot::LocalMachineToo || root == RegRoot::ClassesRoot;
  if (!isKept) throw WinError(kErrorInvalidParameter, kSourceFile, __LINE__);
  m_file = std::make_unique<File>(RegFilePath(root));
  if (create) {
    CheckName(m_path);
    bool made = false;
    m_file->Current().FindOrMake(m_path, &made);
    if (made) m_file->Save();
  }
  Node();
}

RegKey::~RegKey() = default;

const RegNode& RegKey::Node() {
  const RegNode* const node = m_file->Current().Find(m_path);
  if (!node) throw WinError(kErrorFileNotFound, kSourceFile, __LINE__);
  return *node;
}

WString RegKey::GetValue(std::u16string_view name, std::u16string_view defaultText) {
  const auto& values = Node().values;
  const auto found = values.find(name);
  if (found == values.end() || !found->second.IsText()) return WString(defaultText);
  return WString(found->second.text.c_str());
}

std::optional<RegValue> RegKey::ReadValue(std::u16string_view name) {
  const auto& values = Node().values;
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

std::vector<WString> RegKey::ValueNames() {
  std::vector<WString> names;
  for (const auto& entry : Node().values) names.push_back(entry.first);
  return names;
}

std::vector<WString> RegKey::SubKeys() {
  std::vector<WString> names;
  for (const auto& entry : Node().keys) names.push_back(entry.first);
  return names;
}

template <class Change>
void RegKey::Modify(Change change) {
  if (m_readOnly) throw WinError(kErrorAccessDenied, kSourceFile, __LINE__);
  // Read anew, so that what other processes wrote in the meantime stays.
  m_file->Load();
  Node();
  change(m_file->Current().FindOrMake(m_path));
  m_file->Save();
}

void RegKey::SetValue(std::u16string_view name, std::u16string_view text, RegType type) {
  if (type != RegType::Sz && type != RegType::ExpandSz) {
    throw WinError(kErrorInvalidParameter, kSourceFile, __LINE__);
  }
  WriteValue(name, RegValue{type, WString(text), {}});
}

void RegKey::SetNumber(std::u16string_view name, std::uint32_t number) {
  RegValue value{RegType::DWord, {}, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    value.bytes.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
  }
  WriteValue(name, std::move(value));
}

void RegKey::WriteValue(std::u16string_view name, RegValue value) {
  CheckName(name);
  Modify([&](RegNode& node) { node.values.insert_or_assign(WString(name), std::move(value)); });
}

void RegKey::DeleteValue(std::u16string_view name) {
  Modify([&](RegNode& node) {
    const auto found = node.values.find(name);
    if (found != node.values.end()) node.values.erase(found);
  });
}

WString DirectoryValue(std::u16string_view name) {
  try {
    RegKey key(RegRoot::LocalMachine, u"Common\\VEX", true, false);
    return WithSeparatorAtEnd(key.GetValue(name));
  } catch (const WinError& e) {
    if (e.Number() != kErrorFileNotFound) throw;
    return {};
  }
}

}  // namespace hv::cor::osdep

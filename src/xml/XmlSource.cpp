// xml/XmlSource.cpp - where the XML library takes its bytes from, with a count of them.
#include "xml/XmlSource.h"

#include "xml/SaxParser.h"

#include <xercesc/util/BinInputStream.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hv::xml {

namespace {

class CountedStream final : public xercesc::BinInputStream {
 public:
  explicit CountedStream(ByteSource& bytes) : m_bytes(bytes) {}
  [[nodiscard]] XMLFilePos curPos() const override { return m_bytes.BytesRead(); }
  XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
    return m_bytes.Read(toFill, maxToRead);
  }
  [[nodiscard]] const XMLCh* getContentType() const override { return nullptr; }

 private:
  ByteSource& m_bytes;
};

[[noreturn]] void RaiseSystemError(const std::string& name, int error) {
  throw XmlError(name, {}, std::generic_category().message(error));
}

}  // namespace

std::size_t MemoryByteSource::Read(unsigned char* to, std::size_t room) {
  const std::size_t count = std::min(room, m_bytes.size() - static_cast<std::size_t>(m_read));
  if (count != 0) std::memcpy(to, m_bytes.data() + m_read, count);
  m_read += count;
  return count;
}

FileByteSource::FileByteSource(const std::filesystem::path& path)
    : m_name(path.string()), m_file(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (m_file < 0) RaiseSystemError(m_name, errno);
  struct stat info {};
  if (::fstat(m_file, &info) != 0) {
    const int error = errno;
    ::close(m_file);
    RaiseSystemError(m_name, error);
  }
  if (S_ISREG(info.st_mode)) m_total = static_cast<std::uint64_t>(info.st_size);
}

FileByteSource::~FileByteSource() { ::close(m_file); }

std::size_t FileByteSource::Read(unsigned char* to, std::size_t room) {
  for (;;) {
    const ssize_t count = ::read(m_file, to, room);
    if (count >= 0) {
      m_read += static_cast<std::uint64_t>(count);
      return static_cast<std::size_t>(count);
    }
    if (errno != EINTR) RaiseSystemError(m_name, errno);
  }
}

xercesc::BinInputStream* XmlInputSource::makeStream() const { return new CountedStream(m_bytes); }

}  // namespace hv::xml

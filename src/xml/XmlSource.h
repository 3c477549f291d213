// xml/XmlSource.h - where the XML library takes its bytes from, with a count of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include <xercesc/sax/InputSource.hpp>

namespace hv::xml {

/// Gives bytes in order; raises `XmlError` if they can't be read.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  /// Fills at most `room` bytes and gives their number, 0 at the end.
  virtual std::size_t Read(unsigned char* to, std::size_t room) = 0;
  [[nodiscard]] std::uint64_t BytesRead() const { return m_read; }
  [[nodiscard]] std::uint64_t BytesTotal() const { return m_total; }

 protected:
  std::uint64_t m_read = 0;
  std::uint64_t m_total = 0;
};

/// Bytes that somebody else keeps in memory.
class MemoryByteSource final : public ByteSource {
 public:
  explicit MemoryByteSource(std::span<const std::byte> bytes) : m_bytes(bytes) {
    m_total = bytes.size();
  }
  std::size_t Read(unsigned char* to, std::size_t room) override;

 private:
  std::span<const std::byte> m_bytes;
};

/// A file. Read rather than mapped: a file that is cut off by another process while it is read must
/// give an error and not a signal.
class FileByteSource final : public ByteSource {
 public:
  explicit FileByteSource(const std::filesystem::path& path);
  ~FileByteSource() override;
  FileByteSource(const FileByteSource&) = delete;
  FileByteSource& operator=(const FileByteSource&) = delete;
  std::size_t Read(unsigned char* to, std::size_t room) override;

 private:
  std::string m_name;
  int m_file = -1;
};

/// Shows a byte source, which must outlive it, to the XML library.
class XmlInputSource final : public xercesc::InputSource {
 public:
  explicit XmlInputSource(ByteSource& bytes) : m_bytes(bytes) {}
  [[nodiscard]] xercesc::BinInputStream* makeStream() const override;

 private:
  ByteSource& m_bytes;
};

}  // namespace hv::xml

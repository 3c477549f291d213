// core/plugins/atfx/PackedTextValues.cpp - values of differing length: found once, by marks.
#include "core/plugins/atfx/PackedTextValues.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

/// One place in so many is remembered; what lies between is found by going on from there.
constexpr std::uint64_t kMarkDistance = 64;

/// The component's bytes as far as the file holds them.
std::span<const std::byte> PartOf(const ComponentFile& file, const Component& component,
                                  bool* isCut) {
  const std::span<const std::byte> all = file.Contents();
  if (component.offset >= all.size()) {
    *isCut = component.length != 0;
    return {};
  }
  const std::uint64_t room = all.size() - component.offset;
  *isCut = component.length > room;
  return all.subspan(static_cast<std::size_t>(component.offset),
                     static_cast<std::size_t>(std::min(component.length, room)));
}

class PackedSource : public ValueSource {
 public:
  PackedSource(std::shared_ptr<const ComponentFile> file, OdsType type,
               std::span<const std::byte> bytes)
      : m_file(std::move(file)), m_type(type), m_bytes(bytes) {}
  void Forget() const override { m_file->Forget(); }

  [[nodiscard]] OdsType Type() const override { return m_type; }
  [[nodiscard]] std::uint64_t Count() const override { return m_count; }
  void ReadIntegers(std::uint64_t, std::span<std::int64_t> out) const override {
    std::fill(out.begin(), out.end(), 0);
  }
  void ReadReals(std::uint64_t, std::span<double> out) const override {
    std::fill(out.begin(), out.end(), 0.0);
  }
  void ReadTexts(std::uint64_t, std::uint64_t,
                 const std::function<void(std::u16string_view)>&) const override {}
  void ReadBytes(std::uint64_t, std::uint64_t,
                 const std::function<void(std::span<const std::byte>)>&) const override {}

 protected:
  void Mark(std::size_t at) {
    if (m_count % kMarkDistance == 0) m_marks.push_back(at);
    ++m_count;
  }
  /// The remembered place at or before an element, and how many elements to go on from it.
  [[nodiscard]] std::size_t MarkBefore(std::uint64_t element, std::uint64_t* toSkip) const {
    *toSkip = element % kMarkDistance;
    return m_marks[static_cast<std::size_t>(element / kMarkDistance)];
  }

  std::shared_ptr<const ComponentFile> m_file;
  OdsType m_type;
  std::span<const std::byte> m_bytes;

 private:
  std::uint64_t m_count = 0;
  std::vector<std::size_t> m_marks;
};

class PackedTexts final : public PackedSource {
 public:
  PackedTexts(std::shared_ptr<const ComponentFile> file, OdsType type,
              std::span<const std::byte> bytes, bool isUtf8)
      : PackedSource(std::move(file), type, bytes), m_isUtf8(isUtf8) {
    for (std::size_t at = 0; at < m_bytes.size(); at = EndOf(at) + 1) Mark(at);
  }

  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const override {
    if (count == 0) return;
    std::uint64_t skip = 0;
    std::size_t at = MarkBefore(first, &skip);
    for (; skip != 0; --skip) at = EndOf(at) + 1;
    std::u16string buffer;
    for (; count != 0; --count) {
      const std::size_t end = EndOf(at);
      Emit({reinterpret_cast<const char*>(m_bytes.data()) + at, end - at}, &buffer, sink);
      at = end + 1;
    }
  }

 private:
  [[nodiscard]] std::size_t EndOf(std::size_t at) const {
    const void* const zero = std::memchr(m_bytes.data() + at, 0, m_bytes.size() - at);
    if (!zero) return m_bytes.size();
    return static_cast<std::size_t>(static_cast<const std::byte*>(zero) - m_bytes.data());
  }
  void Emit(std::string_view text, std::u16string* buffer,
            const std::function<void(std::u16string_view)>& sink) const {
    buffer->resize(text.size());
    bool isAscii = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
      const auto c = static_cast<unsigned char>(text[i]);
      isAscii = isAscii && c < 0x80;
      (*buffer)[i] = c;
    }
    if (isAscii || !m_isUtf8) return sink(*buffer);
    sink(cor::FromUtf8(text));
  }

  bool m_isUtf8;
};

std::uint32_t LengthAt(const std::byte* at, bool bigEndian) {
  std::uint32_t length = 0;
  for (int i = 0; i < 4; ++i) {
    length |= std::to_integer<std::uint32_t>(at[i]) << (bigEndian ? 24 - 8 * i : 8 * i);
  }
  return length;
}

class PackedByteStrings final : public PackedSource {
 public:
  PackedByteStrings(std::shared_ptr<const ComponentFile> file, std::span<const std::byte> bytes,
                    bool bigEndian)
      : PackedSource(std::move(file), OdsType::ByteStr, bytes), m_bigEndian(bigEndian) {
    std::size_t at = 0;
    while (m_bytes.size() - at >= 4) {
      const std::uint32_t length = LengthAt(m_bytes.data() + at, bigEndian);
      if (length > m_bytes.size() - at - 4) break;
      Mark(at);
      at += 4 + std::size_t{length};
    }
    m_addsUp = at == m_bytes.size();
  }

  /// True if the lengths fill the component to its last byte.
  [[nodiscard]] bool AddsUp() const { return m_addsUp; }

  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const override {
    if (count == 0) return;
    std::uint64_t skip = 0;
    std::size_t at = MarkBefore(first, &skip);
    for (; skip != 0; --skip) at += 4 + std::size_t{LengthAt(m_bytes.data() + at, m_bigEndian)};
    for (; count != 0; --count) {
      const std::size_t length = LengthAt(m_bytes.data() + at, m_bigEndian);
      sink(m_bytes.subspan(at + 4, length));
      at += 4 + length;
    }
  }

 private:
  bool m_bigEndian;
  bool m_addsUp = false;
};

}  // namespace

std::unique_ptr<ValueSource> OpenTexts(std::shared_ptr<const ComponentFile> file,
                                       const Component& component, OdsType wanted, bool* isCut) {
  const std::span<const std::byte> bytes = PartOf(*file, component, isCut);
  return std::make_unique<PackedTexts>(std::move(file),
                                       TypeOfStorage(*component.typespec, wanted, 0), bytes,
                                       component.typespec->layout == Layout::Utf8Texts);
}

std::unique_ptr<ValueSource> OpenByteStrings(std::shared_ptr<const ComponentFile> file,
                                             const Component& component, bool* isCut) {
  const std::span<const std::byte> bytes = PartOf(*file, component, isCut);
  const bool byName = component.typespec->bigEndian;
  auto named = std::make_unique<PackedByteStrings>(file, bytes, byName);
  if (named->AddsUp()) return named;
  auto other = std::make_unique<PackedByteStrings>(std::move(file), bytes, !byName);
  if (other->AddsUp()) return other;
  // Neither order fits: the file is cut, or wrong. The one that gives more is the better guess.
  *isCut = true;
  if (other->Count() > named->Count()) return other;
  return named;
}

}  // namespace hv::vex::engine::atfx

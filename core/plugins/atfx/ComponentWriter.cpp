// core/plugins/atfx/ComponentWriter.cpp - values go out in batches, or as they lie in memory.
#include "core/plugins/atfx/ComponentWriter.h"

#include "core/plugins/atfx/Batches.h"
#include "core/plugins/atfx/OwnFiles.h"
#include "core/plugins/atfx/Typespec.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

static_assert(std::endian::native == std::endian::little);

/// Every column starts at such a boundary, so that its values can be used where they are mapped.
constexpr std::uint64_t kAlignment = 8;

template <class To, class From>
void WriteAs(std::span<const From> numbers, FileOutput* file) {
  To packed[kBatch];
  while (!numbers.empty()) {
    const std::size_t count = std::min<std::size_t>(numbers.size(), kBatch);
    for (std::size_t i = 0; i < count; ++i) packed[i] = static_cast<To>(numbers[i]);
    file->Write(std::as_bytes(std::span(packed, count)));
    numbers = numbers.subspan(count);
  }
}

}  // namespace

ComponentWriter::ComponentWriter(std::filesystem::path target, std::uint64_t largestFile,
                                 const std::vector<std::filesystem::path>& replaced)
    : m_target(std::move(target)), m_largestFile(largestFile) {
  const std::u16string stem = cor::FromUtf8(m_target.stem().string()).str();
  for (const std::filesystem::path& old : replaced) {
    m_number = std::max(m_number,
                        NumberOfOwnComponent(cor::FromUtf8(old.filename().string()).view(), stem));
  }
}

bool ComponentWriter::CanWrite(OdsType type, OdsType wanted) {
  const std::optional<std::u16string_view> name = TypespecForWriting(type);
  return name && TypeOfStorage(*FindTypespec(*name), wanted, 0) == type;
}

FileOutput& ComponentWriter::OpenFile() {
  if (!m_files.empty()) {
    if (m_files.back().Size() < m_largestFile) return m_files.back();
    m_files.back().Close();
  }
  const std::u16string stem = cor::FromUtf8(m_target.stem().string()).str();
  std::filesystem::path path;
  do {
    path = m_target.parent_path() / cor::ToUtf8(OwnComponentName(stem, ++m_number));
  } while (NameIsTaken(path));
  return m_files.emplace_back(path);
}

Component ComponentWriter::Write(const ValueSource& values) {
  FileOutput& file = OpenFile();
  const std::string padding((kAlignment - file.Size() % kAlignment) % kAlignment, '\0');
  file.Write(padding);
  Component component;
  component.fileName = cor::FromUtf8(file.Path().filename().string());
  component.typespec = FindTypespec(*TypespecForWriting(values.Type()));
  component.offset = file.Size();
  component.length = values.Count() * PartsOf(values.Type());
  const std::uint8_t width = component.typespec->width;
  switch (component.typespec->layout) {
    case Layout::PackedBits:
      WriteBits(values, &file);
      break;
    case Layout::Float:
      WriteReals(values, width, &file);
      break;
    case Layout::Utf8Texts:
      WriteTexts(values, &file);
      component.length = file.Size() - component.offset;
      break;
    case Layout::ByteStrings:
      WriteByteStrings(values, &file);
      component.length = file.Size() - component.offset;
      break;
    default:
      WriteIntegers(values, width, &file);
      break;
  }
  return component;
}

void ComponentWriter::WriteIntegers(const ValueSource& values, std::uint8_t width,
                                    FileOutput* file) {
  if (const auto packed = values.Contiguous(); !packed.empty()) return file->Write(packed);
  std::vector<std::int64_t> numbers;
  ForEachBatch(values.Count(), [&](std::uint64_t first, std::uint64_t count) {
    numbers.resize(static_cast<std::size_t>(count));
    values.ReadIntegers(first, numbers);
    const std::span<const std::int64_t> all(numbers);
    switch (width) {
      case 1:
        return WriteAs<std::uint8_t>(all, file);
      case 2:
        return WriteAs<std::int16_t>(all, file);
      case 4:
        return WriteAs<std::int32_t>(all, file);
      default:
        return WriteAs<std::int64_t>(all, file);
    }
  });
}

void ComponentWriter::WriteReals(const ValueSource& values, std::uint8_t width, FileOutput* file) {
  if (const auto packed = values.Contiguous(); !packed.empty()) return file->Write(packed);
  std::vector<double> numbers;
  ForEachBatch(values.Count(), [&](std::uint64_t first, std::uint64_t count) {
    numbers.resize(static_cast<std::size_t>(count) * PartsOf(values.Type()));
    values.ReadReals(first, numbers);
    const std::span<const double> all(numbers);
    width == 4 ? WriteAs<float>(all, file) : WriteAs<double>(all, file);
  });
}

void ComponentWriter::WriteBits(const ValueSource& values, FileOutput* file) {
  // A batch is a whole number of bytes, so that each one starts with a fresh byte.
  static_assert(kBatch % 8 == 0);
  std::vector<std::int64_t> numbers;
  std::string bytes;
  ForEachBatch(values.Count(), [&](std::uint64_t first, std::uint64_t count) {
    numbers.resize(static_cast<std::size_t>(count));
    values.ReadIntegers(first, numbers);
    bytes.assign((numbers.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (numbers[i] == 0) continue;
      bytes[i / 8] = static_cast<char>(static_cast<unsigned char>(bytes[i / 8]) | (0x80u >> i % 8));
    }
    file->Write(bytes);
  });
}

void ComponentWriter::WriteTexts(const ValueSource& values, FileOutput* file) {
  values.ReadTexts(0, values.Count(), [&](std::u16string_view text) {
    // A zero inside a text would end it.
    if (text.find(u'\0') != text.npos) {
      std::u16string clean(text);
      std::replace(clean.begin(), clean.end(), u'\0', u'\xFFFD');
      file->Write(cor::ToUtf8(clean));
    } else {
      file->Write(cor::ToUtf8(text));
    }
    file->Write(std::string_view("\0", 1));
  });
}

void ComponentWriter::WriteByteStrings(const ValueSource& values, FileOutput* file) {
  values.ReadBytes(0, values.Count(), [&](std::span<const std::byte> bytes) {
    const auto length = static_cast<std::uint32_t>(bytes.size());
    file->Write(std::as_bytes(std::span(&length, 1)));
    file->Write(bytes);
  });
}

std::vector<std::u16string> ComponentWriter::FileNames() const {
  std::vector<std::u16string> names;
  for (const FileOutput& file : m_files) {
    names.push_back(cor::FromUtf8(file.Path().filename().string()).str());
  }
  return names;
}

std::vector<std::filesystem::path> ComponentWriter::Paths() const {
  std::vector<std::filesystem::path> paths;
  for (const FileOutput& file : m_files) paths.push_back(file.Path());
  return paths;
}

void ComponentWriter::Close() {
  if (!m_files.empty()) m_files.back().Close();
}

void ComponentWriter::Keep() {
  for (FileOutput& file : m_files) file.Keep();
}

}  // namespace hv::vex::engine::atfx

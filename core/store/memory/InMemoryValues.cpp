// core/store/memory/InMemoryValues.cpp - packing and reading of long value sequences.
#include "core/store/memory/InMemoryValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "core/store/memory/Column.h"
#include "core/store/memory/Failure.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

std::size_t WidthOf(OdsType type) {
  switch (type) {
    case OdsType::Boolean:
    case OdsType::Byte:
      return 1;
    case OdsType::Short:
      return 2;
    case OdsType::Long:
    case OdsType::Enum:
    case OdsType::Float:
    case OdsType::Complex:
      return 4;
    case OdsType::LongLong:
    case OdsType::Id:
    case OdsType::Double:
    case OdsType::DComplex:
      return 8;
    default:
      return 0;
  }
}

std::int64_t ToInteger(double value) {
  constexpr double kLimit = 9223372036854775808.0;
  if (std::isnan(value)) return 0;
  if (value >= kLimit) return std::numeric_limits<std::int64_t>::max();
  if (value < -kLimit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

template <class Stored, class Out>
void Convert(const std::byte* from, std::span<Out> out) {
  for (Out& to : out) {
    Stored value;
    std::memcpy(&value, from, sizeof value);
    from += sizeof value;
    if constexpr (std::is_floating_point_v<Stored> && std::is_integral_v<Out>) {
      to = ToInteger(static_cast<double>(value));
    } else {
      to = static_cast<Out>(value);
    }
  }
}

template <class Out>
void ConvertFrom(OdsType type, const std::byte* from, std::span<Out> out) {
  switch (type) {
    case OdsType::Boolean:
    case OdsType::Byte:
      return Convert<std::uint8_t>(from, out);
    case OdsType::Short:
      return Convert<std::int16_t>(from, out);
    case OdsType::Long:
    case OdsType::Enum:
      return Convert<std::int32_t>(from, out);
    case OdsType::LongLong:
    case OdsType::Id:
      return Convert<std::int64_t>(from, out);
    case OdsType::Float:
    case OdsType::Complex:
      return Convert<float>(from, out);
    case OdsType::Double:
    case OdsType::DComplex:
      return Convert<double>(from, out);
    default:
      Fail(errc::kWrongType, {u"texts and byte strings can't be read as numbers"});
  }
}

void CheckRange(std::uint64_t first, std::uint64_t count, std::uint64_t total) {
  if (first > total || count > total - first) {
    Fail(errc::kInvalidArgument,
         {u"values from ", DecimalText(static_cast<std::int64_t>(first)), u" on, ",
          DecimalText(static_cast<std::int64_t>(count)), u" of them, don't lie inside ",
          DecimalText(static_cast<std::int64_t>(total)), u" values"});
  }
}

class InMemorySource final : public ValueSource {
 public:
  explicit InMemorySource(std::shared_ptr<const InMemoryValues> values)
      : m_values(std::move(values)) {}
  OdsType Type() const override { return m_values->Type(); }
  std::uint64_t Count() const override { return m_values->Count(); }
  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    m_values->ReadIntegers(first, out);
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    m_values->ReadReals(first, out);
  }
  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const override {
    m_values->ReadTexts(first, count, sink);
  }
  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const override {
    m_values->ReadBytes(first, count, sink);
  }
  std::span<const std::byte> Contiguous() const override { return m_values->Packed(); }

 private:
  std::shared_ptr<const InMemoryValues> m_values;
};

}  // namespace

InMemoryValues::InMemoryValues(OdsType type)
    : m_type(type), m_kind(StorageKindOf(type)), m_width(WidthOf(type)) {
  if (type == OdsType::Unknown) Fail(errc::kWrongType, {u"values need a type"});
}

std::shared_ptr<InMemoryValues> InMemoryValues::FromValue(const Value& value) {
  auto values = std::make_shared<InMemoryValues>(value.type);
  values->Append(value);
  return values;
}

std::shared_ptr<InMemoryValues> InMemoryValues::FromSource(const ValueSource& source) {
  auto values = std::make_shared<InMemoryValues>(source.Type());
  const std::uint64_t count = source.Count();
  const std::size_t parts = PartsOf(source.Type());
  values->Reserve(static_cast<std::size_t>(count));
  constexpr std::uint64_t kBlock = 4096;
  std::vector<std::int64_t> integers;
  std::vector<double> reals;
  for (std::uint64_t first = 0; first < count; first += kBlock) {
    const std::uint64_t n = std::min(kBlock, count - first);
    switch (values->m_kind) {
      case StorageKind::Integer:
        integers.resize(n);
        source.ReadIntegers(first, integers);
        for (const std::int64_t v : integers) values->AddInteger(v);
        break;
      case StorageKind::Real:
        reals.resize(n * parts);
        source.ReadReals(first, reals);
        for (const double v : reals) values->AddReal(v);
        break;
      case StorageKind::Text:
        source.ReadTexts(first, n, [&](std::u16string_view text) { values->AddText(text); });
        break;
      case StorageKind::Bytes:
        source.ReadBytes(first, n,
                         [&](std::span<const std::byte> bytes) { values->AddBytes(bytes); });
        break;
    }
  }
  return values;
}

std::shared_ptr<InMemoryValues> InMemoryValues::FromFlags(std::span<const std::int16_t> flags) {
  auto values = std::make_shared<InMemoryValues>(OdsType::Short);
  values->AddPacked(flags.data(), flags.size());
  return values;
}

InMemoryValues InMemoryValues::FromImage(OdsType type, std::uint64_t count,
                                         std::span<const std::byte> image) {
  InMemoryValues values(type);
  if (values.m_width == 0) {
    values.m_ends.resize(static_cast<std::size_t>(count));
    const std::size_t head = values.m_ends.size() * sizeof(std::uint64_t);
    if (head != 0) std::memcpy(values.m_ends.data(), image.data(), head);
    image = image.subspan(head);
  }
  values.m_data.assign(image.begin(), image.end());
  return values;
}

Bytes InMemoryValues::Image() const {
  if (!m_replaced.empty()) {
    InMemoryValues settled = *this;
    settled.Settle();
    return settled.Image();
  }
  const auto ends = std::as_bytes(std::span(m_ends));
  Bytes image;
  image.reserve(SizeInBytes());
  image.insert(image.end(), ends.begin(), ends.end());
  image.insert(image.end(), m_data.begin(), m_data.end());
  return image;
}

void InMemoryValues::Clear() {
  m_data.clear();
  m_ends.clear();
  m_replaced.clear();
}

void InMemoryValues::Reserve(std::size_t count) {
  if (m_width != 0) {
    m_data.reserve(m_data.size() + count * m_width * PartsOf(m_type));
  } else {
    m_ends.reserve(m_ends.size() + count);
  }
}

bool InMemoryValues::AddInteger(std::int64_t value) {
  if (m_kind != StorageKind::Integer || !IntegerFits(m_type, value)) return false;
  // The processor's order is little-endian, so the low bytes come first.
  std::array<std::byte, sizeof value> bytes;
  std::memcpy(bytes.data(), &value, sizeof value);
  m_data.insert(m_data.end(), bytes.data(), bytes.data() + m_width);
  return true;
}

bool InMemoryValues::AddReal(double value) {
  if (m_kind != StorageKind::Real || !RealFits(m_type, value)) return false;
  if (m_width == sizeof(float)) {
    const auto narrow = static_cast<float>(value);
    AddPacked(&narrow, 1);
  } else {
    AddPacked(&value, 1);
  }
  return true;
}

void InMemoryValues::AddPacked(const void* numbers, std::size_t count) {
  const auto* bytes = static_cast<const std::byte*>(numbers);
  m_data.insert(m_data.end(), bytes, bytes + count * m_width);
}

void InMemoryValues::AddText(std::u16string_view text) {
  const bool isAscii =
      std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
  if (isAscii) {
    const std::size_t begin = m_data.size();
    m_data.resize(begin + text.size());
    std::transform(text.begin(), text.end(), m_data.begin() + static_cast<std::ptrdiff_t>(begin),
                   [](char16_t unit) { return static_cast<std::byte>(unit); });
  } else {
    if (m_data.size() % 2 != 0) m_data.push_back(std::byte{0});
    const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
    m_data.insert(m_data.end(), bytes, bytes + text.size() * sizeof(char16_t));
  }
  m_ends.push_back(std::uint64_t{m_data.size()} * 2 + (isAscii ? 0 : 1));
}

void InMemoryValues::AddBytes(std::span<const std::byte> bytes) {
  m_data.insert(m_data.end(), bytes.begin(), bytes.end());
  m_ends.push_back(m_data.size());
}

void InMemoryValues::Append(const Value& value) {
  const std::size_t oldData = m_data.size();
  const std::size_t oldEnds = m_ends.size();
  bool fits = value.IsSet() && value.type == m_type;
  if (fits) {
    Reserve(value.Count());
    if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
      for (const std::int64_t v : *integers) fits = fits && AddInteger(v);
    } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
      fits = reals->size() % PartsOf(m_type) == 0;
      for (const double v : *reals) fits = fits && AddReal(v);
    } else if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
      fits = m_kind == StorageKind::Text;
      for (std::size_t i = 0; fits && i < texts->size(); ++i) AddText((*texts)[i]);
    } else {
      const auto& strings = std::get<Value::ByteStrings>(value.data);
      fits = m_kind == StorageKind::Bytes;
      for (std::size_t i = 0; fits && i < strings.size(); ++i) AddBytes(strings[i]);
    }
  }
  if (fits) return;
  m_data.resize(oldData);
  m_ends.resize(oldEnds);
  Fail(errc::kWrongType, {u"the values don't fit the type ", NameOfType(m_type, true)});
}

void InMemoryValues::Overwrite(std::uint64_t first, const Value& value) {
  CheckRange(first, value.Count(), Count());
  InMemoryValues fitting(m_type);
  fitting.Append(value);
  if (m_width != 0) {
    const std::size_t offset = static_cast<std::size_t>(first) * PartsOf(m_type) * m_width;
    std::copy(fitting.m_data.begin(), fitting.m_data.end(),
              m_data.begin() + static_cast<std::ptrdiff_t>(offset));
    return;
  }
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    for (const std::u16string& text : *texts) {
      const auto bytes = std::as_bytes(std::span(text));
      m_replaced[first++].assign(bytes.begin(), bytes.end());
    }
  } else {
    for (const Bytes& bytes : std::get<Value::ByteStrings>(value.data)) m_replaced[first++] = bytes;
  }
  // Settling passes over everything, so it waits until that is little for each that was replaced.
  constexpr std::size_t kFew = 1024;
  constexpr std::size_t kShare = 8;
  if (m_replaced.size() > kFew + Count() / kShare) Settle();
}

void InMemoryValues::Settle() {
  InMemoryValues settled(m_type);
  settled.Reserve(static_cast<std::size_t>(Count()));
  if (m_kind == StorageKind::Text) {
    ReadTexts(0, Count(), [&](std::u16string_view text) { settled.AddText(text); });
  } else {
    ReadBytes(0, Count(), [&](std::span<const std::byte> bytes) { settled.AddBytes(bytes); });
  }
  *this = std::move(settled);
}

std::uint64_t InMemoryValues::Count() const {
  return m_width == 0 ? m_ends.size() : m_data.size() / (m_width * PartsOf(m_type));
}

void InMemoryValues::ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const {
  const std::size_t parts = PartsOf(m_type);
  CheckRange(first, out.size() / parts, Count());
  ConvertFrom(m_type, m_data.data() + first * parts * m_width, out);
}

void InMemoryValues::ReadReals(std::uint64_t first, std::span<double> out) const {
  const std::size_t parts = PartsOf(m_type);
  CheckRange(first, out.size() / parts, Count());
  ConvertFrom(m_type, m_data.data() + first * parts * m_width, out);
}

const Bytes* InMemoryValues::ReplacedAt(std::uint64_t index) const {
  if (m_replaced.empty()) return nullptr;
  const auto found = m_replaced.find(index);
  return found == m_replaced.end() ? nullptr : &found->second;
}

void InMemoryValues::ReadTexts(std::uint64_t first, std::uint64_t count,
                               const std::function<void(std::u16string_view)>& sink) const {
  if (m_kind != StorageKind::Text) Fail(errc::kWrongType, {u"the values aren't texts"});
  CheckRange(first, count, Count());
  std::u16string buffer;
  for (std::uint64_t i = first; i < first + count; ++i) {
    if (const Bytes* const other = ReplacedAt(i)) {
      buffer.resize(other->size() / sizeof(char16_t));
      if (!buffer.empty()) std::memcpy(buffer.data(), other->data(), other->size());
      sink(buffer);
      continue;
    }
    const auto end = static_cast<std::size_t>(m_ends[i] >> 1);
    std::size_t begin = i == 0 ? 0 : static_cast<std::size_t>(m_ends[i - 1] >> 1);
    if ((m_ends[i] & 1) != 0) {
      begin += begin % 2;
      sink({reinterpret_cast<const char16_t*>(m_data.data() + begin), (end - begin) / 2});
    } else {
      const auto* ascii = reinterpret_cast<const char*>(m_data.data());
      buffer.assign(ascii + begin, ascii + end);
      sink(buffer);
    }
  }
}

void InMemoryValues::ReadBytes(std::uint64_t first, std::uint64_t count,
                               const std::function<void(std::span<const std::byte>)>& sink) const {
  if (m_kind != StorageKind::Bytes) Fail(errc::kWrongType, {u"the values aren't byte strings"});
  CheckRange(first, count, Count());
  for (std::uint64_t i = first; i < first + count; ++i) {
    if (const Bytes* const other = ReplacedAt(i)) {
      sink(*other);
      continue;
    }
    const auto begin = i == 0 ? 0 : static_cast<std::size_t>(m_ends[i - 1]);
    sink(std::span(m_data).subspan(begin, static_cast<std::size_t>(m_ends[i]) - begin));
  }
}

std::span<const std::byte> InMemoryValues::Packed() const {
  if (m_width == 0) return {};
  return m_data;
}

std::unique_ptr<ValueSource> InMemoryValues::Open(std::shared_ptr<const InMemoryValues> values) {
  return std::make_unique<InMemorySource>(std::move(values));
}

}  // namespace hv::vex::engine

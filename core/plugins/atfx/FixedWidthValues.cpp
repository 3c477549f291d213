// core/plugins/atfx/FixedWidthValues.cpp - one class per way of packing; each reads whole runs of a
// block with the byte order and width fixed at compile time.
#include "core/plugins/atfx/FixedWidthValues.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

namespace hv::vex::engine::atfx {

namespace {

static_assert(std::endian::native == std::endian::little,
              "values are handed on as they lie in the file");

/// Where the stored numbers lie. All fields were checked against the file's size.
struct BlockLayout {
  const std::byte* base = nullptr;  ///< first value of the first block
  std::uint64_t count = 0;          ///< numbers that can be read
  std::uint64_t perBlock = 1;
  std::uint64_t blockSize = 0;
  std::uint64_t width = 1;  ///< bytes of one number; 0: bits

  /// Calls `use(first byte, index into the range, number of values)` for each run inside one block.
  template <class Use>
  void ForEachRun(std::uint64_t first, std::uint64_t number, Use use) const {
    for (std::uint64_t done = 0; done < number;) {
      const std::uint64_t at = first + done;
      const std::uint64_t inBlock = at % perBlock;
      const std::uint64_t run = std::min(perBlock - inBlock, number - done);
      use(base + (at / perBlock) * blockSize + inBlock * width, static_cast<std::size_t>(done),
          static_cast<std::size_t>(run));
      done += run;
    }
  }
  [[nodiscard]] bool IsGapless() const {
    return perBlock >= count || blockSize == perBlock * width;
  }
};

template <class T>
T Load(const std::byte* at, bool swap) {
  std::array<std::byte, sizeof(T)> bytes;
  std::memcpy(bytes.data(), at, sizeof(T));
  if (swap) std::reverse(bytes.begin(), bytes.end());
  return std::bit_cast<T>(bytes);
}

/// Conversion to integers as everywhere in the engine: rounded towards zero, NaN is 0, limited.
std::int64_t ToInteger(double value) {
  if (!(value > -9.2233720368547758e18)) {
    return value != value ? 0 : std::numeric_limits<std::int64_t>::min();
  }
  if (value >= 9.2233720368547758e18) return std::numeric_limits<std::int64_t>::max();
  return static_cast<std::int64_t>(value);
}

class NumberSource : public ValueSource {
 public:
  NumberSource(std::shared_ptr<const ComponentFile> file, OdsType type, const BlockLayout& layout)
      : m_file(std::move(file)), m_type(type), m_layout(layout) {}
  void Forget() const override { m_file->Forget(); }

  [[nodiscard]] OdsType Type() const override { return m_type; }
  [[nodiscard]] std::uint64_t Count() const override { return m_layout.count / PartsOf(m_type); }
  void ReadTexts(std::uint64_t, std::uint64_t,
                 const std::function<void(std::u16string_view)>&) const override {}
  void ReadBytes(std::uint64_t, std::uint64_t,
                 const std::function<void(std::span<const std::byte>)>&) const override {}

 protected:
  [[nodiscard]] std::uint64_t FirstNumber(std::uint64_t element) const {
    return element * PartsOf(m_type);
  }

  std::shared_ptr<const ComponentFile> m_file;
  OdsType m_type;
  BlockLayout m_layout;
};

template <class T>
class PlainNumbers final : public NumberSource {
 public:
  PlainNumbers(std::shared_ptr<const ComponentFile> file, OdsType type, const BlockLayout& layout,
               bool swap)
      : NumberSource(std::move(file), type, layout), m_swap(swap) {}

  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    Read(first, out, [](T value) {
      if constexpr (std::is_floating_point_v<T>) {
        return ToInteger(value);
      } else {
        return static_cast<std::int64_t>(value);
      }
    });
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    Read(first, out, [](T value) { return static_cast<double>(value); });
  }
  [[nodiscard]] std::span<const std::byte> Contiguous() const override {
    const bool isOwnWidth = StorageKindOf(m_type) == StorageKind::Real ||
                            (std::is_signed_v<T> && sizeof(T) > 1) || m_type == OdsType::Byte;
    if (m_swap || !isOwnWidth || !m_layout.IsGapless()) return {};
    return {m_layout.base, static_cast<std::size_t>(Count() * PartsOf(m_type)) * sizeof(T)};
  }

 private:
  template <class Out, class Convert>
  void Read(std::uint64_t first, std::span<Out> out, Convert convert) const {
    const auto copy = [&](bool swap) {
      m_layout.ForEachRun(FirstNumber(first), out.size(),
                          [&](const std::byte* at, std::size_t done, std::size_t count) {
                            for (std::size_t i = 0; i < count; ++i) {
                              out[done + i] = convert(Load<T>(at + i * sizeof(T), swap));
                            }
                          });
    };
    m_swap ? copy(true) : copy(false);
  }

  bool m_swap;
};

class PackedBooleans final : public NumberSource {
 public:
  using NumberSource::NumberSource;

  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = At(first + i);
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    for (std::size_t i = 0; i < out.size(); ++i) out[i] = At(first + i);
  }

 private:
  [[nodiscard]] int At(std::uint64_t index) const {
    const std::uint64_t bit = index % m_layout.perBlock;
    const std::byte* const at =
        m_layout.base + (index / m_layout.perBlock) * m_layout.blockSize + bit / 8;
    return (std::to_integer<int>(*at) >> (7 - bit % 8)) & 1;
  }
};

/// Some bits of a few bytes. The bytes are put into the order low to high, then the bits above
/// `bitOffset` count.
class BitFields final : public NumberSource {
 public:
  BitFields(std::shared_ptr<const ComponentFile> file, OdsType type, const BlockLayout& layout,
            const Component& component)
      : NumberSource(std::move(file), type, layout),
        m_kind(component.typespec->layout),
        m_swap(component.typespec->bigEndian),
        m_bitCount(component.bitCount),
        m_bitOffset(component.bitOffset) {}

  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    ForEach(first, out.size(), [&](std::size_t i, std::uint64_t bits) {
      out[i] = m_kind == Layout::BitFloat ? ToInteger(AsReal(bits)) : AsInteger(bits);
    });
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    ForEach(first, out.size(), [&](std::size_t i, std::uint64_t bits) {
      out[i] = m_kind == Layout::BitFloat ? AsReal(bits) : static_cast<double>(AsInteger(bits));
    });
  }

 private:
  template <class Use>
  void ForEach(std::uint64_t first, std::uint64_t number, Use use) const {
    m_layout.ForEachRun(first, number,
                        [&](const std::byte* at, std::size_t done, std::size_t count) {
                          for (std::size_t i = 0; i < count; ++i) {
                            use(done + i, BitsAt(at + i * m_layout.width));
                          }
                        });
  }
  [[nodiscard]] std::uint64_t BitsAt(const std::byte* at) const {
    const std::uint64_t width = m_layout.width;
    std::uint64_t bits = 0;
    for (std::uint64_t i = m_bitOffset / 8; i < width; ++i) {
      const std::uint64_t byte = std::to_integer<std::uint64_t>(at[m_swap ? width - 1 - i : i]);
      const std::int64_t shift =
          static_cast<std::int64_t>(i * 8) - static_cast<std::int64_t>(m_bitOffset);
      bits |= shift < 0 ? byte >> -shift : shift < 64 ? byte << shift : 0;
    }
    return m_bitCount == 64 ? bits : bits & ((std::uint64_t{1} << m_bitCount) - 1);
  }
  [[nodiscard]] std::int64_t AsInteger(std::uint64_t bits) const {
    if (m_kind == Layout::BitSigned && m_bitCount < 64 && (bits >> (m_bitCount - 1)) != 0) {
      bits |= ~std::uint64_t{0} << m_bitCount;
    }
    return static_cast<std::int64_t>(bits);
  }
  [[nodiscard]] double AsReal(std::uint64_t bits) const {
    if (m_bitCount == 32) {
      return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    }
    return std::bit_cast<double>(bits);
  }

  Layout m_kind;
  bool m_swap;
  std::uint32_t m_bitCount;
  std::uint32_t m_bitOffset;
};

bool IsBitField(Layout layout) {
  return layout == Layout::BitSigned || layout == Layout::BitUnsigned || layout == Layout::BitFloat;
}

/// Bytes that `number` values of a block cover, without overflow for any number.
std::uint64_t BytesOf(std::uint64_t number, std::uint64_t width) {
  if (width == 0) return number / 8 + (number % 8 != 0 ? 1 : 0);
  const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() / width;
  return number > most ? std::numeric_limits<std::uint64_t>::max() : number * width;
}

/// Values that fit into `bytes`.
std::uint64_t ValuesIn(std::uint64_t bytes, std::uint64_t width) {
  return width == 0 ? (bytes > (std::uint64_t{1} << 60) ? bytes : bytes * 8) : bytes / width;
}

/// Fills in what the description leaves open. Values that stand alone in a block and blocks that
/// hold just their values come to the same: one block.
void CompleteBlocks(const Component& component, BlockLayout* layout) {
  const std::uint64_t width = layout->width;
  layout->perBlock = component.valuesPerBlock;
  layout->blockSize = component.blockSize;
  const std::uint64_t whole = BytesOf(component.length, width);
  const bool isOneRun = layout->blockSize == 0 || layout->blockSize == width ||
                        (width == 0 && layout->blockSize == whole);
  if (layout->perBlock <= 1 && isOneRun) layout->perBlock = component.length;
  if (layout->perBlock == 0) layout->perBlock = 1;
  if (layout->perBlock >= component.length)
    layout->perBlock = std::max<std::uint64_t>(component.length, 1);
  const std::uint64_t values = BytesOf(layout->perBlock, width);
  if (layout->blockSize == 0 || layout->perBlock == component.length) layout->blockSize = values;
}

/// How many values lie wholly inside `size` bytes behind the first value's place.
std::uint64_t ReadableCount(const BlockLayout& layout, std::uint64_t size, std::uint64_t wanted) {
  const std::uint64_t least = std::max<std::uint64_t>(layout.width, 1);
  if (size < least) return 0;
  const std::uint64_t lastBlock = layout.blockSize == 0 ? 0 : (size - least) / layout.blockSize;
  const std::uint64_t blocks = (wanted - 1) / layout.perBlock;
  if (blocks < lastBlock) return wanted;
  const std::uint64_t rest = size - lastBlock * layout.blockSize;
  const std::uint64_t inLast = std::min(layout.perBlock, ValuesIn(rest, layout.width));
  return std::min(wanted, lastBlock * layout.perBlock + inLast);
}

std::unique_ptr<ValueSource> MakeSource(std::shared_ptr<const ComponentFile> file,
                                        const Component& component, OdsType type,
                                        const BlockLayout& layout) {
  const Typespec& typespec = *component.typespec;
  const bool swap = typespec.bigEndian;
  const auto plain = [&](auto zero) -> std::unique_ptr<ValueSource> {
    return std::make_unique<PlainNumbers<decltype(zero)>>(std::move(file), type, layout, swap);
  };
  if (typespec.layout == Layout::PackedBits) {
    return std::make_unique<PackedBooleans>(std::move(file), type, layout);
  }
  if (IsBitField(typespec.layout)) {
    return std::make_unique<BitFields>(std::move(file), type, layout, component);
  }
  if (typespec.layout == Layout::Float) return typespec.width == 4 ? plain(0.0F) : plain(0.0);
  const bool isSigned = typespec.layout == Layout::Signed;
  switch (typespec.width) {
    case 1:
      return isSigned ? plain(std::int8_t{}) : plain(std::uint8_t{});
    case 2:
      return isSigned ? plain(std::int16_t{}) : plain(std::uint16_t{});
    case 4:
      return isSigned ? plain(std::int32_t{}) : plain(std::uint32_t{});
    default:
      return plain(std::int64_t{});
  }
}

}  // namespace

std::unique_ptr<ValueSource> OpenFixedWidth(std::shared_ptr<const ComponentFile> file,
                                            const Component& component, OdsType wanted, bool* isCut,
                                            std::u16string_view* problem) {
  const Typespec& typespec = *component.typespec;
  BlockLayout layout;
  layout.width = typespec.width;
  if (IsBitField(typespec.layout)) {
    const bool isFloat = typespec.layout == Layout::BitFloat;
    if (component.bitCount == 0 || component.bitCount > 64 || component.bitOffset > 64 ||
        (isFloat && component.bitCount != 32 && component.bitCount != 64)) {
      *problem = u"a number of bits that can't be";
      return nullptr;
    }
    layout.width = (component.bitCount + component.bitOffset - 1) / 8 + 1;
  }
  CompleteBlocks(component, &layout);
  if (layout.blockSize < BytesOf(layout.perBlock, layout.width)) {
    *problem = u"blocks smaller than the values in them";
    return nullptr;
  }
  const OdsType type = TypeOfStorage(typespec, wanted, component.bitCount);
  const std::span<const std::byte> contents = file->Contents();
  std::uint64_t room = 0;
  if (component.offset <= contents.size() &&
      component.valueOffset <= contents.size() - component.offset) {
    room = contents.size() - component.offset - component.valueOffset;
    layout.base = contents.data() + component.offset + component.valueOffset;
  }
  layout.count = component.length == 0 ? 0 : ReadableCount(layout, room, component.length);
  *isCut = layout.count < component.length;
  return MakeSource(std::move(file), component, type, layout);
}

}  // namespace hv::vex::engine::atfx

// core/store/memory/InMemoryValues.h - values of a local column held in memory, packed by type.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/model/Value.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// Values packed without gaps at their type's own width: Boolean and Byte 1 byte, Short 2, Long,
/// Enum and Float 4, LongLong, Id and Double 8, Complex and DComplex two reals; texts as ASCII or
/// UTF-16 in one buffer; byte strings in one buffer. Those who read share them; only who holds them
/// alone may go on changing them.
class InMemoryValues final {
 public:
  /// `type` may be any scalar type but Unknown, otherwise throws kWrongType.
  explicit InMemoryValues(OdsType type);

  /// The values of a scalar or sequence; throws kWrongType if `value` isn't set or holds a number
  /// that doesn't fit its type.
  static std::shared_ptr<InMemoryValues> FromValue(const Value& value);
  /// Everything `source` holds, copied.
  static std::shared_ptr<InMemoryValues> FromSource(const ValueSource& source);
  /// Flags: Shorts.
  static std::shared_ptr<InMemoryValues> FromFlags(std::span<const std::int16_t> flags);

  /// What `Image` gave for `count` values of that type.
  static InMemoryValues FromImage(OdsType type, std::uint64_t count,
                                  std::span<const std::byte> image);

  void Reserve(std::size_t count);
  /// Drops all values and keeps the room.
  void Clear();
  /// Adds one integer; false if it doesn't fit the type, or the type isn't an Integer one.
  bool AddInteger(std::int64_t value);
  /// Adds one real, which for complex types is half an element; false if the type isn't a Real one.
  bool AddReal(double value);
  /// Adds one text (Text types only).
  void AddText(std::u16string_view text);
  /// Adds one byte string (ByteStr, Blob only).
  void AddBytes(std::span<const std::byte> bytes);
  /// Adds `count` numbers that lie in memory at the type's own width, in the processor's byte
  /// order.
  void AddPacked(const void* numbers, std::size_t count);
  /// Adds all values; throws kWrongType as `FromValue` does, then nothing was added.
  void Append(const Value& value);
  /// Replaces the values from `first` on; throws kWrongType as `FromValue` does, and
  /// kInvalidArgument for a range that doesn't lie inside, then nothing was replaced.
  void Overwrite(std::uint64_t first, const Value& value);

  [[nodiscard]] OdsType Type() const { return m_type; }
  [[nodiscard]] std::uint64_t Count() const;

  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const;
  void ReadReals(std::uint64_t first, std::span<double> out) const;
  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const;
  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const;
  /// The packed numbers; empty for texts and byte strings.
  [[nodiscard]] std::span<const std::byte> Packed() const;

  /// Everything as bytes, for this process alone.
  [[nodiscard]] Bytes Image() const;
  /// About what they take in memory.
  [[nodiscard]] std::size_t SizeInBytes() const {
    return m_data.size() + m_ends.size() * sizeof(std::uint64_t);
  }

  /// A source that reads `values` and keeps them alive.
  static std::unique_ptr<ValueSource> Open(std::shared_ptr<const InMemoryValues> values);

 private:
  /// Brings replaced texts and byte strings to their places.
  void Settle();
  [[nodiscard]] const Bytes* ReplacedAt(std::uint64_t index) const;

  OdsType m_type;
  StorageKind m_kind;
  std::size_t m_width = 0;        // of one number; 0 for texts and byte strings
  std::vector<std::byte> m_data;  // numbers, or texts and byte strings one after the other
  std::vector<std::uint64_t>
      m_ends;  // texts: twice the end plus 1 if UTF-16; byte strings: the end
  // What stands for texts (UTF-16) and byte strings that were replaced, by their position.
  std::unordered_map<std::uint64_t, Bytes> m_replaced;
};

/// Opens the values of a local column, each time they are asked for.
using ValueProvider = std::function<std::unique_ptr<ValueSource>()>;

}  // namespace hv::vex::engine

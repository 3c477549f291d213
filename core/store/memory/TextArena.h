// core/store/memory/TextArena.h - many texts in one buffer, each named by a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hv::vex::engine {

/// A text of an arena: one byte per character if it is plain ASCII, otherwise UTF-16.
struct StoredText {
  std::string_view ascii;
  std::u16string_view wide;
  bool isAscii;

  [[nodiscard]] std::size_t Size() const { return isAscii ? ascii.size() : wide.size(); }
  /// The text as UTF-16: a view of the arena, or of `buffer`.
  [[nodiscard]] std::u16string_view Widen(std::u16string& buffer) const {
    if (!isAscii) return wide;
    buffer.assign(ascii.begin(), ascii.end());
    return buffer;
  }
  /// The text folded (see FoldCase): a view of the arena, or of `buffer`.
  [[nodiscard]] std::u16string_view Fold(std::u16string& buffer) const;
};

/// Texts are only added; what nobody names any more is dropped when the owner moves the others to a
/// new arena. Views hold until the next `Add`.
class TextArena final {
 public:
  /// No text.
  static constexpr std::uint64_t kNone = 0;

  /// Copies the text, which must not lie in the arena. The text added last is kept only once if it
  /// comes again at once, as repeated column values do.
  std::uint64_t Add(std::u16string_view text);
  /// The text of a handle other than kNone.
  [[nodiscard]] StoredText At(std::uint64_t handle) const;
  /// Bytes in use.
  [[nodiscard]] std::size_t Size() const { return m_bytes.size(); }
  /// Copies a text from another arena.
  std::uint64_t AddFrom(const TextArena& other, std::uint64_t handle);
  void ShrinkToFit() { m_bytes.shrink_to_fit(); }

 private:
  std::uint64_t AddAscii(std::string_view text);
  std::uint64_t AddWide(std::u16string_view text);
  void PutLength(std::uint64_t length);

  // Each text: its length times two, plus 1 if UTF-16, seven bits per byte, the last byte below
  // 128; then its units. UTF-16 units stand at even offsets. The first byte belongs to no text.
  std::vector<std::byte> m_bytes;
  std::uint64_t m_last = kNone;
};

}  // namespace hv::vex::engine

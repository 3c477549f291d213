// cor/WString.cpp - the wide string.
#include <storefabric/WString.h>

#include "cor/SafeInteger.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace hv::cor {

namespace {

constexpr const char* kSourceFile = "cor/StringBase";

// The allocator hands out blocks of this many bytes anyhow; a string uses them to the end.
constexpr std::size_t kBlockBytes = 16;

/// The bytes of a block that holds `units` units and the terminator.
std::size_t BlockSize(SafeInteger<std::size_t> units) {
  const SafeInteger<std::size_t> bytes = (units + 1) * sizeof(char16_t) + (kBlockBytes - 1);
  // Positions are told apart by signed differences.
  if (bytes.Value() > static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max())) {
    throw exception::BoundExceeded();
  }
  return bytes.Value() / kBlockBytes * kBlockBytes;
}

char16_t* AllocateBlock(std::size_t bytes) {
  void* const block = std::malloc(bytes);
  if (!block) throw std::bad_alloc();
  return static_cast<char16_t*>(block);
}

void CopyUnits(char16_t* to, const char16_t* from, std::size_t units) {
  if (units != 0) std::memcpy(to, from, units * sizeof(char16_t));
}

std::int64_t PositionOrNone(std::size_t found) {
  return found == std::u16string_view::npos ? -1 : static_cast<std::int64_t>(found);
}

[[noreturn]] void RaiseOffset(int line) {
  throw exception::OutOfRange2("String offset out of range", kSourceFile, line);
}

/// A block being filled, freed if filling is given up.
class Block final {
 public:
  explicit Block(SafeInteger<std::size_t> units)
      : m_bytes(BlockSize(units)), m_begin(AllocateBlock(m_bytes)) {}
  ~Block() { std::free(m_begin); }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  [[nodiscard]] char16_t* Begin() const { return m_begin; }
  [[nodiscard]] std::size_t Capacity() const { return m_bytes / sizeof(char16_t) - 1; }
  [[nodiscard]] char16_t* Detach() { return std::exchange(m_begin, nullptr); }

 private:
  std::size_t m_bytes;
  char16_t* m_begin;
};

}  // namespace

WString::WString(const char16_t* text) {
  if (text) Assign(text);
}

WString::WString(std::u16string_view text) { Assign(text); }

WString::WString(const WString& other) { Assign(other.view()); }

WString::WString(WString&& other) noexcept { swap(other); }

WString::~WString() { std::free(m_begin); }

WString& WString::operator=(const WString& other) {
  Assign(other.view());
  return *this;
}

WString& WString::operator=(WString&& other) noexcept {
  if (this != &other) {
    WString(std::move(other)).swap(*this);
  }
  return *this;
}

WString& WString::operator=(std::u16string_view text) {
  Assign(text);
  return *this;
}

WString& WString::operator=(const char16_t* text) {
  Assign(text ? std::u16string_view(text) : std::u16string_view());
  return *this;
}

void WString::SetLength(std::size_t units) noexcept {
  m_end = m_begin + units;
  *m_end = 0;
}

void WString::Assign(std::u16string_view text) {
  if (text.empty()) {
    clear();
    return;
  }
  if (!m_begin || text.size() > capacity()) {
    Block block(text.size());
    CopyUnits(block.Begin(), text.data(), text.size());
    const std::size_t newCapacity = block.Capacity();
    // The text may lie in the old block, which therefore goes last.
    std::free(std::exchange(m_begin, block.Detach()));
    m_capacityEnd = m_begin + newCapacity;
  } else {
    std::memmove(m_begin, text.data(), text.size() * sizeof(char16_t));
  }
  SetLength(text.size());
}

void WString::clear() noexcept {
  if (m_begin) SetLength(0);
}

void WString::reserve(std::size_t units) {
  if (units <= capacity()) return;
  Block block(units);
  const std::size_t length = size();
  CopyUnits(block.Begin(), m_begin, length);
  const std::size_t newCapacity = block.Capacity();
  std::free(std::exchange(m_begin, block.Detach()));
  m_capacityEnd = m_begin + newCapacity;
  SetLength(length);
}

WString& WString::append(std::u16string_view text) {
  if (text.empty()) return *this;
  const std::size_t oldSize = size();
  const std::size_t newSize = (SafeInteger<std::size_t>(oldSize) + text.size()).Value();
  if (newSize > capacity()) {
    // Half as much again, so that a string built piece by piece is copied a few times only.
    Block block(std::max(newSize, oldSize + oldSize / 2));
    CopyUnits(block.Begin(), m_begin, oldSize);
    CopyUnits(block.Begin() + oldSize, text.data(), text.size());
    const std::size_t newCapacity = block.Capacity();
    std::free(std::exchange(m_begin, block.Detach()));
    m_capacityEnd = m_begin + newCapacity;
  } else {
    std::memmove(m_end, text.data(), text.size() * sizeof(char16_t));
  }
  SetLength(newSize);
  return *this;
}

WString& WString::append(std::size_t count, char16_t unit) {
  if (count == 0) return *this;
  const std::size_t oldSize = size();
  const std::size_t newSize = (SafeInteger<std::size_t>(oldSize) + count).Value();
  if (newSize > capacity()) reserve(std::max(newSize, oldSize + oldSize / 2));
  std::fill_n(m_end, count, unit);
  SetLength(newSize);
  return *this;
}

void WString::swap(WString& other) noexcept {
  std::swap(m_begin, other.m_begin);
  std::swap(m_end, other.m_end);
  std::swap(m_capacityEnd, other.m_capacityEnd);
}

std::int64_t WString::Find(std::u16string_view text, std::size_t start) const {
  return start >= size() ? -1 : PositionOrNone(view().find(text, start));
}

std::int64_t WString::FindFirstOf(std::u16string_view set, std::size_t start) const {
  return start >= size() ? -1 : PositionOrNone(view().find_first_of(set, start));
}

std::int64_t WString::FindFirstNotOf(std::u16string_view set, std::size_t start) const {
  return start >= size() ? -1 : PositionOrNone(view().find_first_not_of(set, start));
}

std::int64_t WString::FindLastNotOf(std::u16string_view set) const {
  return PositionOrNone(view().find_last_not_of(set));
}

WString& WString::Replace(std::size_t pos, std::size_t count, std::u16string_view text) {
  const std::size_t oldSize = size();
  if (pos > oldSize) RaiseOffset(__LINE__);
  const std::size_t removed = std::min(count, oldSize - pos);
  const std::size_t kept = oldSize - removed;
  if (text.size() >
      static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) / 2 - kept) {
    throw exception::BoundExceeded2("Resulting string too large", kSourceFile, __LINE__);
  }
  const std::size_t newSize = kept + text.size();
  if (newSize == 0) {
    clear();
    return *this;
  }
  // Built beside: the text may be a part of this string.
  WString result;
  result.reserve(newSize);
  result.append(view().substr(0, pos)).append(text).append(view().substr(pos + removed));
  swap(result);
  return *this;
}

WString WString::Substr(std::size_t pos, std::size_t count) const {
  if (pos > size()) RaiseOffset(__LINE__);
  return WString(view().substr(pos, count));
}

WString& WString::ReplaceAll(std::u16string_view what, std::u16string_view with) {
  if (what.empty()) return *this;
  std::size_t found = view().find(what);
  if (found == std::u16string_view::npos) return *this;
  WString result;
  result.reserve(size());
  std::size_t from = 0;
  for (; found != std::u16string_view::npos; found = view().find(what, from)) {
    result.append(view().substr(from, found - from)).append(with);
    from = found + what.size();
  }
  result.append(view().substr(from));
  swap(result);
  return *this;
}

int WString::CompareExact(std::u16string_view other) const { return view().compare(other); }

}  // namespace hv::cor

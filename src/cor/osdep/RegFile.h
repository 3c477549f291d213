// cor/osdep/RegFile.h - one file of the configuration store: keys and values in .reg notation.
//
//   [Software\Halvorn\Common\VEX]      a key; two backslashes in a row count as one
//   "binDir"="C:\\Data"                a text; \\ and \" are the only escapes
//   @="..."                            the key's own value, whose name is empty
//   "n"=dword:0000002a                 a number
//   "n"=hex(2):61,00,00,00             bytes of the type in brackets (none: 3), here a text
//   "n"=-                              takes back a value that stands further up
//   [-Software\Old]                    takes back a key
//   ; a comment
//
// A line of bytes that ends in a comma and a backslash goes on in the next one.
// UTF-8 or UTF-16 with a byte order mark. Names ignore case. The first line may be a title.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

namespace hv::cor::osdep {

/// The type numbers of values, as they stand in the notation.
enum class RegType : std::uint32_t {
  None = 0,
  Sz = 1,
  ExpandSz = 2,
  Binary = 3,
  DWord = 4,
  MultiSz = 7,
  QWord = 11,
};

/// A value: a text for Sz and ExpandSz, bytes (little-endian for numbers) for every other type.
struct RegValue {
  RegType type = RegType::None;
  WString text;
  std::vector<std::uint8_t> bytes;
  [[nodiscard]] bool IsText() const { return type == RegType::Sz || type == RegType::ExpandSz; }
};

/// A key with its values and the keys below it, in the order that ignores case.
struct RegNode {
  std::map<WString, RegValue, NoCaseLess> values;
  std::map<WString, std::unique_ptr<RegNode>, NoCaseLess> keys;

  /// The key at that path below this one, or null. Empty components don't count.
  [[nodiscard]] const RegNode* Find(std::u16string_view path) const;
  /// The same, made with all keys on the way if there is none. Raises `WinError` for a path of more
  /// than 512 components.
  RegNode& FindOrMake(std::u16string_view path, bool* made = nullptr);
  /// Removes the key at that path and everything below it, if there is one.
  void Remove(std::u16string_view path);
};

/// True for a text without control characters and halves of surrogate pairs, which can stand
/// between quotation marks and in names.
bool IsPlainRegText(std::u16string_view text);

/// The keys of a file's content. Raises `WinError` "source:line: reason" for a malformed one.
/// \param sourceName  stands for the file in errors, in UTF-8.
std::unique_ptr<RegNode> ParseRegFile(std::string_view content, std::string_view sourceName);

/// The content for a tree: UTF-8, one section for every key that has values or nothing below it.
std::string WriteRegFile(const RegNode& root);

}  // namespace hv::cor::osdep

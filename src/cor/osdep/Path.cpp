// cor/osdep/Path.cpp - the rules for paths, in both notations.
#include "cor/osdep/Path.h"

#include "cor/osdep/OSException.h"

namespace hv::cor::osdep {

namespace {

constexpr const char* kSourceFile = "cor/osdep/path";

bool HasDrive(std::u16string_view path) {
  if (path.size() < 2 || path[1] != u':') return false;
  return (path[0] >= u'a' && path[0] <= u'z') || (path[0] >= u'A' && path[0] <= u'Z');
}

bool UsesBackslashes(std::u16string_view path) {
  if (path.starts_with(u'/')) return false;
  return HasDrive(path) || path.find(u'\\') != path.npos;
}

bool TellsNotation(std::u16string_view path) {
  return HasDrive(path) || path.find_first_of(u"\\/") != path.npos;
}

}  // namespace

char16_t SeparatorOf(std::u16string_view path) { return UsesBackslashes(path) ? u'\\' : u'/'; }

bool IsAbsolute(std::u16string_view path) {
  if (path.starts_with(u'/') || path.starts_with(u"\\\\")) return true;
  return HasDrive(path) && path.size() > 2 && path[2] == u'\\';
}

WString Join(std::u16string_view a, std::u16string_view b) {
  if (a.empty() || IsAbsolute(b)) return WString(b);
  const char16_t separator = SeparatorOf(TellsNotation(a) ? a : b);
  WString joined;
  joined.reserve(a.size() + 1 + b.size());
  joined.append(a);
  if (a.back() != separator) joined += separator;
  joined.append(b);
  return joined;
}

WString WithSeparatorAtEnd(std::u16string_view path) {
  WString result(path);
  const char16_t separator = SeparatorOf(path);
  if (!path.empty() && path.back() != separator) result += separator;
  return result;
}

WString CurrentDirectory() {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::current_path(error);
  if (error) {
    throw OSException(static_cast<std::uint32_t>(error.value()), error.message(), kSourceFile,
                      __LINE__);
  }
  return FromUtf8(path.native());
}

WString CurrentDirectoryJoin(std::u16string_view name) {
  WString directory = CurrentDirectory();
  return name == u"." ? directory : Join(directory, name);
}

WString LibraryFileName(std::u16string_view name) {
  if (name.empty()) return {};
  const std::size_t separator = name.find_last_of(SeparatorOf(name));
  const std::u16string_view last = separator == name.npos ? name : name.substr(separator + 1);
  return last.find(u'.') == last.npos ? WString(name) + u".so" : WString(name);
}

std::filesystem::path NativePath(std::u16string_view path) { return ToUtf8(path); }

}  // namespace hv::cor::osdep

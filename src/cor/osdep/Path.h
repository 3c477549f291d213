// cor/osdep/Path.h - the rules for paths, in both notations.
// A path with a drive letter or with backslashes follows the backslash rules; one that starts with
// a slash, and everything else, follows the same rules with slashes.
#pragma once

#include <filesystem>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::cor::osdep {

/// The character that separates the components of this path: u'\\' or u'/'.
char16_t SeparatorOf(std::u16string_view path);

/// True for a path that starts with two backslashes; with a letter, a colon and a backslash; or
/// with a slash. One backslash alone at the start isn't absolute.
bool IsAbsolute(std::u16string_view path);

/// `b` if it is absolute or `a` is empty; otherwise both, with `a`'s separator between them unless
/// `a` ends in it. If `a` alone doesn't tell its notation, `b` decides.
WString Join(std::u16string_view a, std::u16string_view b);

/// The path with its separator at the end; an empty one stays empty.
WString WithSeparatorAtEnd(std::u16string_view path);

/// Raises `OSException` with the system's number if the process has lost its directory.
WString CurrentDirectory();

/// The current directory alone for "."; otherwise `Join` of it and `name`.
WString CurrentDirectoryJoin(std::u16string_view name);

/// The file name of a shared library: a name whose last component has no "." gets ".so"; an empty
/// name and every other name stay as they are.
WString LibraryFileName(std::u16string_view name);

/// The path as the file system takes it: the same characters in UTF-8.
std::filesystem::path NativePath(std::u16string_view path);

}  // namespace hv::cor::osdep

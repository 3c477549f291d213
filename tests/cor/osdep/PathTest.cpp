// cor/osdep/PathTest.cpp - the rules for paths in both notations.
#include "cor/osdep/Path.h"

#include <gtest/gtest.h>

namespace hv::cor::osdep {
namespace {

TEST(Path, AbsoluteInBothNotations) {
  for (const auto* path : {u"\\\\h\\s", u"c:\\", u"Z:\\a", u"/", u"/a", u"//h"}) {
    EXPECT_TRUE(IsAbsolute(path)) << ToUtf8(path);
  }
  for (const auto* path : {u"", u"\\", u"\\a", u"c:", u"c:a", u"1:\\a", u"\u00e4:\\a", u"a", u"a/b",
                           u"./a", u"cc:\\a"}) {
    EXPECT_FALSE(IsAbsolute(path)) << ToUtf8(path);
  }
}

TEST(Path, JoinKeepsTheNotation) {
  const char16_t* const cases[][3] = {
      {u"c:\\a", u"b", u"c:\\a\\b"},
      {u"c:\\a\\", u"b", u"c:\\a\\b"},
      {u"c:\\a", u"\\\\h\\s", u"\\\\h\\s"},
      {u"c:\\a", u"d:\\b", u"d:\\b"},
      {u"c:\\a", u"\\b", u"c:\\a\\\\b"},
      {u"", u"b", u"b"},
      {u"a\\b", u"c", u"a\\b\\c"},
      {u"c:", u"b", u"c:\\b"},
      {u"/a", u"b", u"/a/b"},
      {u"/a/", u"b", u"/a/b"},
      {u"/a", u"/b", u"/b"},
      {u"a", u"b", u"a/b"},
      {u"a", u"b\\c", u"a\\b\\c"},
      {u"/a", u"b\\c", u"/a/b\\c"},
      {u"a/b", u"", u"a/b/"},
      {u"/a\\b", u"c", u"/a\\b/c"},
  };
  for (const auto& [a, b, joined] : cases) {
    EXPECT_EQ(joined, Join(a, b).view()) << ToUtf8(a) << " and " << ToUtf8(b);
  }
}

TEST(Path, LibraryNamesGetTheirExtensionAndDirectoriesTheirSeparator) {
  const char16_t* const files[][2] = {
      {u"", u""},
      {u"x", u"x.so"},
      {u"x.y", u"x.y"},
      {u".", u"."},
      {u"a.b/x", u"a.b/x.so"},
      {u"/a/b.so", u"/a/b.so"},
      {u"/a.d/", u"/a.d/.so"},
      {u"c:\\a.b\\x", u"c:\\a.b\\x.so"},
      {u"c:\\a/b.c\\x", u"c:\\a/b.c\\x.so"},
  };
  for (const auto& [in, out] : files) EXPECT_EQ(out, LibraryFileName(in).view()) << ToUtf8(in);
  const char16_t* const directories[][2] = {
      {u"", u""},       {u"C:\\Data", u"C:\\Data\\"}, {u"C:\\Data\\", u"C:\\Data\\"},
      {u"C:", u"C:\\"}, {u"/opt/x", u"/opt/x/"},      {u"/opt/x/", u"/opt/x/"},
      {u"x", u"x/"},
  };
  for (const auto& [in, out] : directories)
    EXPECT_EQ(out, WithSeparatorAtEnd(in).view()) << ToUtf8(in);
}

TEST(Path, CurrentDirectory) {
  const WString here = FromUtf8(std::filesystem::current_path().native());
  EXPECT_EQ(here.view(), CurrentDirectoryJoin(u".").view());
  EXPECT_EQ((here + u"/x").view(), CurrentDirectoryJoin(u"x").view());
  EXPECT_EQ(u"/x", CurrentDirectoryJoin(u"/x").view());
  EXPECT_EQ(std::filesystem::current_path(), NativePath(here));
}

}  // namespace
}  // namespace hv::cor::osdep

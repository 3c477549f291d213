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

struct JoinCase {
  const char16_t* a;
  const char16_t* b;
  const char16_t* joined;
};

TEST(Path, JoinKeepsTheNotation) {
  const JoinCase cases[] = {
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
  for (const JoinCase& c : cases) {
    EXPECT_TRUE(Join(c.a, c.b).EqualsExact(c.joined))
        << ToUtf8(c.a) << " and " << ToUtf8(c.b) << ": " << ToUtf8(Join(c.a, c.b));
  }
}

struct TextCase {
  const char16_t* in;
  const char16_t* out;
};

TEST(Path, LibraryNamesGetTheirExtension) {
  const TextCase cases[] = {
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
  for (const TextCase& c : cases) {
    EXPECT_TRUE(LibraryFileName(c.in).EqualsExact(c.out)) << ToUtf8(c.in);
  }
}

TEST(Path, SeparatorAtEnd) {
  const TextCase cases[] = {
      {u"", u""},       {u"C:\\Data", u"C:\\Data\\"}, {u"C:\\Data\\", u"C:\\Data\\"},
      {u"C:", u"C:\\"}, {u"/opt/x", u"/opt/x/"},      {u"/opt/x/", u"/opt/x/"},
      {u"x", u"x/"},
  };
  for (const TextCase& c : cases) {
    EXPECT_TRUE(WithSeparatorAtEnd(c.in).EqualsExact(c.out)) << ToUtf8(c.in);
  }
}

TEST(Path, CurrentDirectory) {
  const WString here = FromUtf8(std::filesystem::current_path().native());
  EXPECT_TRUE(CurrentDirectoryJoin(u".").EqualsExact(here));
  EXPECT_TRUE(CurrentDirectoryJoin(u"x").EqualsExact(here + u"/x"));
  EXPECT_TRUE(CurrentDirectoryJoin(u"/x").EqualsExact(u"/x"));
  EXPECT_EQ(std::filesystem::current_path(), NativePath(here));
}

}  // namespace
}  // namespace hv::cor::osdep

// tests/browse/SymbolTableTest.cpp - symbols by key and by index.
#include "browse/SymbolTable.h"

#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace hv::vex {
namespace {

Ref<ISymbolImage> Image(const char* content) {
  return MakeRef<SymbolImage>(content, "image/svg+xml");
}

SymbolTable StandardTable() {
  SymbolTable table;
  table.LoadStandard();
  return table;
}

std::vector<SymbolKey> KeysOf(const SymbolTable& table) {
  std::vector<SymbolKey> keys;
  SymbolKey key = 0;
  for (std::int32_t i = 0; !Failed(table.GetKey(i, &key)); ++i) keys.push_back(key);
  return keys;
}

std::string ContentAt(const SymbolTable& table, std::int32_t index) {
  Ref<ISymbolImage> image;
  EXPECT_EQ(S_OK, table.GetHandle(index, image.Put()));
  return image ? std::string(image->GetContent()) : std::string();
}

TEST(SymbolTable, StartsWithNoSymbolAndTheStandardSymbols) {
  const SymbolTable table = StandardTable();
  EXPECT_EQ((std::vector<SymbolKey>{0, -1, -2, -3, -4, -5, -6, -7}), KeysOf(table));
  EXPECT_EQ(7u, table.Standard().size());
  std::set<std::string> pictures;
  for (std::int32_t i = 0; i < table.GetCount(); ++i) pictures.insert(ContentAt(table, i));
  EXPECT_EQ(8u, pictures.size());
  for (const std::string& picture : pictures) EXPECT_EQ(0u, picture.find("<svg "));
  EXPECT_EQ(LoadSymbolResource(9008)->GetContent(), ContentAt(table, 2));
  EXPECT_EQ(LoadSymbolResource(9007)->GetContent(), ContentAt(table, 5));
  EXPECT_FALSE(LoadSymbolResource(9001));
}

TEST(SymbolTable, UnknownIndexesAndKeysAreRefused) {
  const SymbolTable table = StandardTable();
  for (const std::int32_t index : {-1, 8, 100}) {
    Ref<ISymbolImage> image = Image("x");
    EXPECT_EQ(E_INVALIDARG, table.GetHandle(index, image.Put()));
    EXPECT_FALSE(image);
    SymbolKey key = 5;
    EXPECT_EQ(E_INVALIDARG, table.GetKey(index, &key));
  }
  for (const SymbolKey key : {SymbolKey{0}, SymbolKey{-8}, SymbolKey{1}}) {
    std::int32_t index = 9;
    EXPECT_EQ(E_INVALIDARG, table.GetIndex(key, &index));
    EXPECT_EQ(0, index);
  }
  EXPECT_EQ(E_POINTER, table.GetHandle(0, nullptr));
}

TEST(SymbolTable, CustomerSymbolsStandByAscendingKey) {
  SymbolTable table = StandardTable();
  EXPECT_EQ(S_OK, table.Add(Image("nine").Get(), 9));
  EXPECT_EQ(S_OK, table.Add(Image("three").Get(), 3));
  EXPECT_EQ(S_OK, table.AddAuto(Image("ten").Get()));
  EXPECT_EQ((std::vector<SymbolKey>{0, -1, -2, -3, -4, -5, -6, -7, 3, 9, 10}), KeysOf(table));
  std::int32_t index = 0;
  EXPECT_EQ(S_OK, table.GetIndex(9, &index));
  EXPECT_EQ(9, index);
  EXPECT_EQ("nine", ContentAt(table, index));
  for (const SymbolKey taken : {9, -1}) {
    EXPECT_EQ(E_INVALIDARG, table.Add(Image("again").Get(), taken));
  }
  EXPECT_EQ(E_INVALIDARG, table.Add(nullptr, 4));
  EXPECT_EQ(E_INVALIDARG, table.AddAuto(nullptr));
  // The largest key is used again.
  EXPECT_EQ(S_OK, table.Delete(10));
  EXPECT_EQ(S_OK, table.AddAuto(Image("c").Get()));
  EXPECT_EQ(10, KeysOf(table).back());
  EXPECT_EQ("c", ContentAt(table, 10));
}

TEST(SymbolTable, StandardSymbolsCantBeChanged) {
  SymbolTable table = StandardTable();
  EXPECT_EQ(S_OK, table.AddAuto(Image("a").Get()));
  EXPECT_EQ(E_ACCESSDENIED, table.Replace(Image("x").Get(), 3));
  EXPECT_EQ(E_ACCESSDENIED, table.DeleteAt(7));
  EXPECT_EQ(E_ACCESSDENIED, table.Delete(-3));
  EXPECT_EQ(E_INVALIDARG, table.Delete(4));
  EXPECT_EQ(E_INVALIDARG, table.Replace(Image("x").Get(), 9));
  EXPECT_EQ(E_INVALIDARG, table.Replace(nullptr, 8));
  EXPECT_EQ(S_OK, table.Replace(Image("b").Get(), 8));
  EXPECT_EQ("b", ContentAt(table, 8));
  EXPECT_EQ(E_NOTIMPL, table.Import({{5, Image("five")}}));
  EXPECT_EQ(S_OK, table.DeleteAt(8));
  EXPECT_EQ(E_INVALIDARG, table.DeleteAt(8));
  EXPECT_EQ(S_OK, table.Import({{5, Image("five")}, {2, Image("two")}}));
  EXPECT_EQ("two", ContentAt(table, 8));
  EXPECT_EQ(S_OK, table.DeleteAt(0)) << "the first place isn't refused";
  EXPECT_EQ((std::vector<SymbolKey>{-1, -2, -3, -4, -5, -6, -7, 2, 5}), KeysOf(table));
}

}  // namespace
}  // namespace hv::vex

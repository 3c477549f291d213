// tests/core/atfx/AtfxPluginTest.cpp - exchange files as a kind of store: open, change, save, go
// back.
#include "core/plugins/atfx/AtfxPlugin.h"

#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

std::u16string FileTag(const std::filesystem::path& path) {
  WString name = cor::FromUtf8(path.string());
  name.ReplaceAll(u"&", u"&amp;");
  return u"<filename>" + name.str() + u"</filename>";
}

void Rename(RecordStore& store, std::u16string_view name) {
  const RecordRef test = Ref(store, u"Test");
  store.Write(test, store.GetModel()->At(test.entity).FindAttribute(u"Name"),
              Value::Text(OdsType::String, std::u16string(name)));
}

std::string Name(const RecordStore& store) {
  return AttributeText(store, Ref(store, u"Test"), u"Name");
}

class AtfxPlugin : public testing::Test {
 protected:
  AtfxPlugin() {
    m_folder.Write(
        "a.atfx",
        Document("<Test><Id>1</Id><Name>first</Name></Test>\n<Column><Id>1</Id>" +
                 Component("identifier=data.bin datatype=dt_byte length=5000") + "</Column>\n"));
    m_folder.Write("data.bin", std::string(4999, '\1') + '\2');
  }
  std::unique_ptr<RecordStore> Open(std::string_view name = "a.atfx") const {
    return kAtfxPlugin.open(ConnectParameters(FileTag(m_folder.File(name))));
  }
  const TempFolder m_folder;
};

TEST_F(AtfxPlugin, SavesAgainAndAgainWithoutLosingValues) {
  const auto store = Open();
  const std::string before = ColumnText(*store);
  for (const char16_t* name : {u"x", u"y", u"z"}) {
    Rename(*store, name);
    store->Save(u"");
    EXPECT_EQ(before, ColumnText(*store));
    EXPECT_EQ(before, ColumnText(*Open()));
  }
  Rename(*store, u"unsaved");
  store->Discard();
  EXPECT_FALSE(store->IsModified());
  EXPECT_EQ("'z'", Name(*store));
  EXPECT_EQ(before, ColumnText(*store));
  // The foreign file stays, one file of its own is left.
  EXPECT_EQ("a.atfx a_3.btf data.bin ", m_folder.Listing());
}

TEST_F(AtfxPlugin, RefreshSeesWhatOthersWrote) {
  const auto store = Open();
  store->Refresh();
  EXPECT_EQ("'first'", Name(*store));
  m_folder.Write("a.atfx", Document("<Test><Id>1</Id><Name>by another</Name></Test>"));
  store->Refresh();
  EXPECT_EQ("'by another'", Name(*store));
}

TEST_F(AtfxPlugin, TellsLateOfValuesThatAreCutOff) {
  m_folder.Write("data.bin", "\1\2\3");
  const auto store = Open();
  EXPECT_EQ("", WarningsText(*store));
  EXPECT_EQ("1 2 3", ColumnText(*store));
  EXPECT_NE(std::string::npos, WarningsText(*store).find("the file ends early"));
}

TEST_F(AtfxPlugin, FilesOutsideTheFolderAreReadWithAWarning) {
  const TempFolder other;
  const std::string outside = other.Write("o.bin", "\7").string();
  for (const std::string& name : {outside, "../" + other.Path().filename().string() + "/o.bin"}) {
    m_folder.Write("a.atfx", Document(ColumnInstances(
                                 Component("identifier=" + name + " datatype=dt_byte length=1"),
                                 "DT_BYTE", 1)));
    const auto store = Open();
    EXPECT_EQ("7", ColumnText(*store));
    EXPECT_EQ("component file outside the folder: " + name + "\n", WarningsText(*store));
  }
}

TEST_F(AtfxPlugin, ValuesOutliveTheirStore) {
  auto store = Open();
  const auto values = store->OpenValues(Ref(*store, u"Column"));
  store.reset();
  std::int64_t last = 0;
  values->ReadIntegers(4999, {&last, 1});
  EXPECT_EQ(2, last);
}

TEST_F(AtfxPlugin, MakesNewStores) {
  const auto model = Open()->GetModel();
  const EntityId test = model->Find(u"Test")->id;
  const std::u16string text = FileTag(m_folder.File("new.atfx"));
  {
    const auto store = kAtfxPlugin.create(ConnectParameters(text), model);
    store->Create(test, 1);
    store->Discard();
    EXPECT_EQ(0u, store->CountOf(test));
    EXPECT_EQ("a.atfx data.bin ", m_folder.Listing());
    store->Create(test, 1);
    Rename(*store, u"made");
    store->Save(u"");
  }
  EXPECT_EQ("'made'", Name(*Open("new.atfx")));
  EXPECT_TRUE(
      Thrown([&] { kAtfxPlugin.create(ConnectParameters(text), model); }).starts_with("-1304 "));
  const auto inMemory = kAtfxPlugin.create(ConnectParameters(u""), model);
  inMemory->Create(test);
  inMemory->Save(u"");
  EXPECT_FALSE(inMemory->IsModified());
}

TEST_F(AtfxPlugin, ExportsAnyStore) {
  const auto store = Open();
  kAtfxPlugin.write(*store, ConnectParameters(FileTag(m_folder.File("b & c.atfx"))));
  EXPECT_EQ("a.atfx b & c.atfx b & c_1.btf data.bin ", m_folder.Listing());
  EXPECT_EQ(DumpStore(*store), DumpStore(*Open("b & c.atfx")));
}

TEST_F(AtfxPlugin, NeedsAFileName) {
  EXPECT_EQ("-1301 no file name is given",
            Thrown([] { kAtfxPlugin.open(ConnectParameters(u"<filename> </filename>")); }));
}

}  // namespace
}  // namespace hv::vex::engine::test

// tests/core/atfx/AtfxPluginTest.cpp - exchange files as a kind of store: open, change, save, go
// back.
#include "core/plugins/atfx/AtfxPlugin.h"

#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

std::u16string FileTag(const std::filesystem::path& path, bool readOnly = false) {
  WString name = cor::FromUtf8(path.string());
  name.ReplaceAll(u"&", u"&amp;");
  return std::u16string(u"<filename") + (readOnly ? u" readonly='yes'>" : u">") + name.str() +
         u"</filename>";
}

std::unique_ptr<RecordStore> Open(const std::filesystem::path& path, bool readOnly = false) {
  return kAtfxPlugin.open(ConnectParameters(FileTag(path, readOnly)));
}

void Rename(RecordStore& store, std::u16string_view name) {
  const RecordRef test = Ref(store, u"Test", 1);
  store.Write(test, store.GetModel()->At(test.entity).FindAttribute(u"Name"),
              Value::Text(OdsType::String, std::u16string(name)));
}

std::string Name(const RecordStore& store) {
  return AttributeText(store, Ref(store, u"Test", 1), u"Name");
}

constexpr std::string_view kInstances =
    "<Test><Id>1</Id><Name>first</Name></Test>\n"
    "<Column><Id>1</Id><Values><component><identifier>data.bin</identifier>"
    "<datatype>dt_byte</datatype><length>5000</length></component></Values></Column>\n";

class AtfxPlugin : public testing::Test {
 protected:
  AtfxPlugin() {
    m_path = m_folder.Write("a.atfx", Document(kInstances));
    std::string bytes(5000, '\1');
    bytes.back() = '\2';
    m_folder.Write("data.bin", bytes);
  }
  TempFolder m_folder;
  std::filesystem::path m_path;
};

TEST_F(AtfxPlugin, SavesChangesAndLosesUnsavedOnes) {
  {
    const auto store = Open(m_path);
    EXPECT_TRUE(store->GetCapabilities().writable);
    Rename(*store, u"second");
    EXPECT_TRUE(store->IsModified());
    EXPECT_EQ("'first'", Name(*Open(m_path)));
    store->Save(u"");
    EXPECT_FALSE(store->IsModified());
    Rename(*store, u"third");
  }
  EXPECT_EQ("'second'", Name(*Open(m_path)));
}

TEST_F(AtfxPlugin, SavesAgainAndAgainWithoutLosingValues) {
  const auto store = Open(m_path);
  const RecordRef column = Ref(*store, u"Column", 1);
  const std::string before = ValuesText(store->OpenValues(column).get());
  for (const char16_t* name : {u"x", u"y", u"z"}) {
    Rename(*store, name);
    store->Save(u"");
    EXPECT_EQ(before, ValuesText(store->OpenValues(column).get()));
    EXPECT_EQ(before, ValuesText(Open(m_path)->OpenValues(column).get()));
  }
  // The foreign file stays, one file of its own is left.
  EXPECT_EQ("a.atfx a_3.btf data.bin", m_folder.Listing());
}

TEST_F(AtfxPlugin, GoesBackToTheLastSave) {
  const auto store = Open(m_path);
  Rename(*store, u"second");
  store->Save(u"");
  Rename(*store, u"third");
  store->Discard();
  EXPECT_EQ("'second'", Name(*store));
  EXPECT_FALSE(store->IsModified());
}

TEST_F(AtfxPlugin, RefreshSeesWhatOthersWrote) {
  const auto store = Open(m_path);
  store->Refresh();
  EXPECT_EQ("'first'", Name(*store));
  m_folder.Write("a.atfx", Document("<Test><Id>1</Id><Name>by another</Name></Test>"));
  store->Refresh();
  EXPECT_EQ("'by another'", Name(*store));
}

TEST_F(AtfxPlugin, ReadOnlyStoresRefuseChanges) {
  const auto store = Open(m_path, true);
  EXPECT_FALSE(store->GetCapabilities().writable);
  EXPECT_TRUE(Thrown([&] { Rename(*store, u"x"); }).starts_with("-1302 "));
}

TEST_F(AtfxPlugin, TellsLateOfValuesThatAreCutOff) {
  m_folder.Write("data.bin", "\1\2\3");
  const auto store = Open(m_path);
  const RecordRef column = Ref(*store, u"Column", 1);
  EXPECT_EQ("", WarningsText(*store));
  EXPECT_EQ("1 2 3", ValuesText(store->OpenValues(column).get()));
  EXPECT_NE(std::string::npos, WarningsText(*store).find("the file ends early"));
}

TEST_F(AtfxPlugin, FilesOutsideTheFolderAreReadWithAWarning) {
  const TempFolder other;
  const std::string outside = other.Write("o.bin", "\7").string();
  for (const std::string& name : {outside, "../" + other.Path().filename().string() + "/o.bin"}) {
    m_folder.Write("a.atfx", Document("<Column><Id>1</Id><Values><component><identifier>" + name +
                                      "</identifier><datatype>dt_byte</datatype><length>1</length>"
                                      "</component></Values></Column>"));
    const auto store = Open(m_path);
    EXPECT_EQ("7", ValuesText(store->OpenValues(Ref(*store, u"Column", 1)).get()));
    EXPECT_EQ("component file outside the folder: " + name + "\n", WarningsText(*store));
  }
}

TEST_F(AtfxPlugin, ValuesOutliveTheirStore) {
  auto store = Open(m_path);
  const auto values = store->OpenValues(Ref(*store, u"Column", 1));
  store.reset();
  std::int64_t last = 0;
  values->ReadIntegers(4999, {&last, 1});
  EXPECT_EQ(2, last);
}

TEST_F(AtfxPlugin, MakesNewStores) {
  const auto model = Open(m_path)->GetModel();
  const std::filesystem::path path = m_folder.Path() / "new.atfx";
  const std::u16string text = FileTag(path);
  {
    const auto store = kAtfxPlugin.create(ConnectParameters(text), model);
    store->Create(model->Find(u"Test")->id, 1);
    Rename(*store, u"lost");
    store->Discard();
    EXPECT_EQ(0u, store->CountOf(model->Find(u"Test")->id));
    EXPECT_FALSE(std::filesystem::exists(path));
    store->Create(model->Find(u"Test")->id, 1);
    Rename(*store, u"made");
    store->Save(u"");
  }
  EXPECT_EQ("'made'", Name(*Open(path)));
  EXPECT_TRUE(
      Thrown([&] { kAtfxPlugin.create(ConnectParameters(text), model); }).starts_with("-1304 "));
  const auto inMemory = kAtfxPlugin.create(ConnectParameters(u""), model);
  inMemory->Create(model->Find(u"Test")->id);
  inMemory->Save(u"");
  EXPECT_FALSE(inMemory->IsModified());
}

TEST_F(AtfxPlugin, ExportsAnyStore) {
  const auto store = Open(m_path);
  const std::filesystem::path path = m_folder.Path() / "b & c.atfx";
  kAtfxPlugin.write(*store, ConnectParameters(FileTag(path)));
  EXPECT_EQ("a.atfx b & c.atfx b & c_1.btf data.bin", m_folder.Listing());
  EXPECT_EQ(DumpStore(*store), DumpStore(*Open(path)));
}

TEST_F(AtfxPlugin, NeedsAFileName) {
  EXPECT_EQ("-1301 no file name is given",
            Thrown([] { kAtfxPlugin.open(ConnectParameters(u"<filename> </filename>")); }));
}

}  // namespace
}  // namespace hv::vex::engine::test

// tests/core/atfx/AtfxWriterTest.cpp - what is written is read back as it was, and nothing is lost
// when writing fails.
#include "core/plugins/atfx/AtfxWriter.h"

#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"
#include "core/model/ModelBuilder.h"

namespace hv::vex::engine::test {
namespace {

class AtfxRoundTrip : public testing::TestWithParam<std::tuple<const char*, std::uint64_t>> {};

TEST_P(AtfxRoundTrip, BringsEverythingBack) {
  const auto& [name, mostInline] = GetParam();
  const auto store = atfx::ReadAtfxFile(std::string(HV_TEST_DATA_DIR "/atfx/") + name, {});
  const TempFolder folder;
  atfx::WriteOptions options;
  options.mostInlineValues = mostInline;
  const std::filesystem::path target = folder.Path() / "out.atfx";
  const auto components = atfx::WriteAtfx(*store, target, options);
  const auto again = atfx::ReadAtfxFile(target, {});
  EXPECT_EQ(DumpStore(*store), DumpStore(*again));
  EXPECT_EQ(components.empty() ? "out.atfx" : "out.atfx out_1.btf", folder.Listing());
}

INSTANTIATE_TEST_SUITE_P(Files, AtfxRoundTrip,
                         testing::Combine(testing::Values("features.atfx", "own_typespecs.atfx"),
                                          testing::Values(std::uint64_t{0}, std::uint64_t{4},
                                                          std::uint64_t{4096})));

std::string LongColumn(std::string_view tag, int count) {
  std::string text = "<Values><" + std::string(tag) + ">";
  for (int i = 0; i < count; ++i) text += std::to_string(i % 100) + " ";
  return text + "</" + std::string(tag) + "></Values>";
}

TEST(AtfxWriter, PutsLongColumnsIntoFilesOfLimitedSize) {
  std::string instances = ColumnInstances(LongColumn("A_INT32", 5000), "DT_LONG", 5000);
  for (const char* id : {"2", "3", "4"}) {
    instances += "<Column><Id>" + std::string(id) + "</Id>" +
                 LongColumn("A_FLOAT64", id[0] == '4' ? 4096 : 5000) + "</Column>";
  }
  const auto store = ReadText(Document(instances));
  const TempFolder folder;
  atfx::WriteOptions options;
  options.largestComponentFile = 50000;
  atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options);
  EXPECT_EQ("a.atfx a_1.btf a_2.btf", folder.Listing());
  EXPECT_EQ(20000u + 40000u, folder.Read("a_1.btf").size());
  EXPECT_EQ(40000u, folder.Read("a_2.btf").size());
  const auto again = atfx::ReadAtfxFile(folder.Path() / "a.atfx", {});
  EXPECT_EQ(DumpStore(*store), DumpStore(*again));
  EXPECT_EQ(20000u, again->OpenValues(Ref(*again, u"Column", 1))->Contiguous().size());
}

TEST(AtfxWriter, KeepsInlineWhatAFileWouldChange) {
  // Floats of a complex quantity would come back as pairs, texts of a date quantity as dates.
  for (const auto& [tag, quantity] :
       {std::pair("A_FLOAT32", "DT_COMPLEX"), std::pair("A_FLOAT64", "DT_DCOMPLEX")}) {
    const auto store = ReadText(Document(ColumnInstances(LongColumn(tag, 10), quantity, 10)));
    const TempFolder folder;
    atfx::WriteOptions options;
    options.mostInlineValues = 0;
    EXPECT_TRUE(atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options).empty()) << tag;
  }
}

struct FlagCase {
  const char* content;
  const char* flags;
  const char* global;
};

TEST(AtfxWriter, WritesOneFlagForAllWhereThatSaysTheSame) {
  constexpr FlagCase kCases[] = {
      {"<Flags>15 15</Flags>", "-", "15"},
      {"<Flags>15 0</Flags>", "15 0", "-"},
      {"<Flags>0 0</Flags>", "0 0", "-"},
      {"<Flags>7 7</Flags><GlobalFlag>7</GlobalFlag>", "-", "7"},
      {"<Flags>15 7</Flags><GlobalFlag>7</GlobalFlag>", "15 7", "7"},
      {"", "-", "-"},
  };
  for (const FlagCase& c : kCases) {
    SCOPED_TRACE(c.content);
    const auto store = ReadText(Document(
        ColumnInstances(std::string("<Values><A_INT16>1 2</A_INT16></Values>") + c.content)));
    for (const std::uint64_t mostInline : {std::uint64_t{0}, std::uint64_t{10}}) {
      const TempFolder folder;
      atfx::WriteOptions options;
      options.mostInlineValues = mostInline;
      atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options);
      const auto again = atfx::ReadAtfxFile(folder.Path() / "a.atfx", {});
      const RecordRef column = Ref(*again, u"Column", 1);
      EXPECT_EQ(c.flags, ValuesText(again->OpenFlags(column).get()));
      EXPECT_EQ(c.global, AttributeText(*again, column, u"GlobalFlag"));
    }
  }
}

/// An empty store of the shared model that can be changed.
std::unique_ptr<MemoryStore> EmptyStore() {
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  return std::make_unique<MemoryStore>(ReadText(Document(""))->GetModel(), std::move(persistence));
}

TEST(AtfxWriter, ReplacesWhatXmlCannotHold) {
  const auto store = EmptyStore();
  const RecordRef test{store->GetModel()->Find(u"Test")->id, 1};
  store->Create(test.entity, 1);
  const std::u16string odd =
      std::u16string(u"a\u0001b\uFFFE<&>\"'\r\n\t") + char16_t{0xD800} + u"\U0001F600 ]]>";
  store->Write(test, store->GetModel()->At(test.entity).FindAttribute(u"Name"),
               Value::Text(OdsType::String, odd));
  store->SetInstanceAttribute(test, {u"<n\n&\">", Value::Text(OdsType::String, u"x"), 0});
  const TempFolder folder;
  atfx::WriteAtfx(*store, folder.Path() / "a.atfx");
  const auto again = atfx::ReadAtfxFile(folder.Path() / "a.atfx", {});
  EXPECT_EQ("'a\uFFFDb\uFFFD<&>\"'\r\\n\t\uFFFD\U0001F600 ]]>'",
            AttributeText(*again, test, u"Name"));
  ASSERT_EQ(1u, again->InstanceAttributesOf(test).size());
  EXPECT_EQ(u"<n\n&\">", again->InstanceAttributesOf(test)[0].name);
}

TEST(AtfxWriter, LeavesForeignFilesAlone) {
  const TempFolder folder;
  folder.Write("a_1.btf", "foreign");
  folder.Write("a.atfx",
               "<atfx_file><documentation><exporter>another</exporter></documentation><files>"
               "<component><identifier>a_1.btf</identifier><filename>a_1.btf</filename>"
               "</component></files></atfx_file>");
  const auto store = ReadText(Document(ColumnInstances(LongColumn("A_INT32", 10), "DT_LONG", 10)));
  atfx::WriteOptions options;
  options.mostInlineValues = 5;
  atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options);
  EXPECT_EQ("a.atfx a_1.btf a_2.btf", folder.Listing());
  EXPECT_EQ("foreign", folder.Read("a_1.btf"));
  // Its own file goes when it is replaced.
  atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options);
  EXPECT_EQ("a.atfx a_1.btf a_3.btf", folder.Listing());
  EXPECT_EQ(DumpStore(*store), DumpStore(*atfx::ReadAtfxFile(folder.Path() / "a.atfx", {})));
}

TEST(AtfxWriter, FailureLeavesEverythingAsItWas) {
  const TempFolder folder;
  folder.Write("a.atfx", "old");
  // The second column's values can't be read, when the first one's are written already.
  const auto store = ReadText(
      Document(ColumnInstances(LongColumn("A_INT32", 10), "DT_LONG", 10) +
               "<Column><Id>2</Id><Values><component><identifier>none.bin</identifier>"
               "<datatype>dt_short</datatype><length>1</length></component></Values></Column>"));
  atfx::WriteOptions options;
  options.mostInlineValues = 5;
  EXPECT_EQ("-1301 /nowhere/none.bin: No such file or directory",
            Thrown([&] { atfx::WriteAtfx(*store, folder.Path() / "a.atfx", options); }));
  EXPECT_EQ("a.atfx", folder.Listing());
  EXPECT_EQ("old", folder.Read("a.atfx"));
  const std::string missing = (folder.Path() / "none/a.atfx").string();
  EXPECT_TRUE(Thrown([&] { atfx::WriteAtfx(*store, missing, options); }).starts_with("-1303 "));
}

TEST(AtfxWriter, RefusesModelsThatTheFormatCannotTell) {
  const TempFolder folder;
  // Writes a store with one record of the model's last element.
  const auto error = [&](ModelBuilder builder) {
    MemoryPersistence persistence;
    persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
    MemoryStore store(builder.Build(), std::move(persistence));
    store.Create(store.GetModel()->Entities().back().id);
    return Thrown([&] { atfx::WriteAtfx(store, folder.Path() / "a.atfx"); });
  };
  ModelBuilder document = ModelBuilder::WithoutBaseModel();
  document.BeginEntity(u"Query", u"asamquery_manager");
  EXPECT_EQ("-1002 element 'Query' stands on no base element of the standard",
            error(std::move(document)));
  ModelBuilder blanks(u"asam36");
  blanks.BeginEntity(u"two words", u"AoAny");
  AttributeSpec id;
  id.name = u"Id";
  id.baseAttribute = u"id";
  blanks.AddAttribute(id);
  const std::string refused = error(std::move(blanks));
  EXPECT_NE(std::string::npos, refused.find(": the name 'two words' can't be a tag")) << refused;
  EXPECT_EQ("", folder.Listing());
}

}  // namespace
}  // namespace hv::vex::engine::test

// tests/core/atfx/AtfxWriterTest.cpp - what is written is read back as it was, and nothing is lost
// when writing fails.
#include "core/plugins/atfx/AtfxWriter.h"

#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"
#include "core/model/ModelBuilder.h"

namespace hv::vex::engine::test {
namespace {

class AtfxWriter : public testing::Test {
 protected:
  /// Writes "a.atfx", and reads it again.
  std::unique_ptr<MemoryStore> Again(const RecordStore& store, std::uint64_t mostInline = 4096,
                                     std::uint64_t largestFile = 500'000'000) {
    atfx::WriteAtfx(store, m_target, {mostInline, largestFile, {}});
    return atfx::ReadAtfxFile(m_target, {});
  }

  const TempFolder m_folder;
  const std::filesystem::path m_target = m_folder.File("a.atfx");
};

TEST_F(AtfxWriter, BringsEverythingBack) {
  for (const char* name : {"/atfx/features.atfx", "/atfx/own_typespecs.atfx"}) {
    const auto store = atfx::ReadAtfxFile(HV_TEST_DATA_DIR + std::string(name), {});
    for (const std::uint64_t mostInline : {0, 4, 4096}) {
      SCOPED_TRACE(name + std::to_string(mostInline));
      const TempFolder folder;
      const auto components =
          atfx::WriteAtfx(*store, folder.File("a.atfx"), {mostInline, 9999, {}});
      EXPECT_EQ(DumpStore(*store), DumpStore(*atfx::ReadAtfxFile(folder.File("a.atfx"), {})));
      EXPECT_EQ(components.empty() ? "a.atfx " : "a.atfx a_1.btf ", folder.Listing());
    }
  }
}

std::string LongColumn(std::string_view tag, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i % 100) + " ";
  return Inline(tag, text);
}

TEST_F(AtfxWriter, PutsLongColumnsIntoFilesOfLimitedSize) {
  std::string instances = ColumnInstances(LongColumn("A_INT32", 5000), "DT_LONG", 5000);
  for (const char* id : {"2", "3", "4"}) {
    instances += "<Column>" + Tags(std::string("Id=") + id) +
                 LongColumn("A_FLOAT64", id[0] == '4' ? 4096 : 5000) + "</Column>";
  }
  const auto store = ReadText(Document(instances));
  const auto again = Again(*store, 4096, 50000);
  EXPECT_EQ("a.atfx a_1.btf a_2.btf ", m_folder.Listing());
  EXPECT_EQ(20000u + 40000u, m_folder.Read("a_1.btf").size());
  EXPECT_EQ(40000u, m_folder.Read("a_2.btf").size());
  EXPECT_EQ(DumpStore(*store), DumpStore(*again));
  EXPECT_EQ(20000u, again->OpenValues(Ref(*again, u"Column"))->Contiguous().size());
}

TEST_F(AtfxWriter, KeepsInlineWhatAFileWouldChange) {
  // Floats of a complex quantity would come back as pairs.
  for (const auto& [tag, quantity] :
       {std::pair("A_FLOAT32", "DT_COMPLEX"), std::pair("A_FLOAT64", "DT_DCOMPLEX")}) {
    Again(*ReadColumn(LongColumn(tag, 10), quantity, 10), 0);
    EXPECT_EQ("a.atfx ", m_folder.Listing()) << tag;
  }
}

TEST_F(AtfxWriter, WritesOneFlagForAllWhereThatSaysTheSame) {
  constexpr std::tuple<const char*, const char*, const char*> kCases[] = {
      {"<Flags>15 15</Flags>", "-", "15"},
      {"<Flags>15 0</Flags>", "15 0", "-"},
      {"<Flags>0 0</Flags>", "0 0", "-"},
      {"<Flags>7 7</Flags><GlobalFlag>7</GlobalFlag>", "-", "7"},
      {"<Flags>15 7</Flags><GlobalFlag>7</GlobalFlag>", "15 7", "7"},
      {"", "-", "-"},
  };
  for (const auto& [content, flags, global] : kCases) {
    const auto store = ReadColumn(Inline("A_INT16", "1 2") + content);
    for (const std::uint64_t mostInline : {0, 10}) {
      SCOPED_TRACE(content + std::to_string(mostInline));
      const auto again = Again(*store, mostInline);
      EXPECT_EQ(flags, FlagsText(*again));
      EXPECT_EQ(global, AttributeText(*again, Ref(*again, u"Column"), u"GlobalFlag"));
    }
  }
}

/// An empty store that can be changed.
std::unique_ptr<MemoryStore> EmptyStore(std::shared_ptr<const Model> model) {
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  return std::make_unique<MemoryStore>(std::move(model), std::move(persistence));
}

TEST_F(AtfxWriter, ReplacesWhatXmlCannotHold) {
  const auto store = EmptyStore(ReadText(Document(""))->GetModel());
  const RecordRef test = Ref(*store, u"Test");
  store->Create(test.entity, 1);
  const std::u16string odd =
      std::u16string(u"a\u0001b\uFFFE<&>\"'\r\n\t") + char16_t{0xD800} + u"\U0001F600 ]]>";
  store->Write(test, store->GetModel()->At(test.entity).FindAttribute(u"Name"),
               Value::Text(OdsType::String, odd));
  store->SetInstanceAttribute(test, {u"<n\n&\">", Value::Text(OdsType::String, u"x"), 0});
  const auto again = Again(*store);
  EXPECT_EQ("'a\uFFFDb\uFFFD<&>\"'\r\\n\t\uFFFD\U0001F600 ]]>'",
            AttributeText(*again, test, u"Name"));
  ASSERT_EQ(1u, again->InstanceAttributesOf(test).size());
  EXPECT_EQ(u"<n\n&\">", again->InstanceAttributesOf(test)[0].name);
}

TEST_F(AtfxWriter, LeavesForeignFilesAlone) {
  m_folder.Write("a_1.btf", "foreign");
  m_folder.Write("a.atfx",
                 "<atfx_file><documentation><exporter>another</exporter></documentation><files>"
                 "<component>" +
                     Tags("identifier=a_1.btf filename=a_1.btf") +
                     "</component></files></atfx_file>");
  const auto store = ReadColumn(LongColumn("A_INT32", 10), "DT_LONG", 10);
  Again(*store, 5);
  EXPECT_EQ("a.atfx a_1.btf a_2.btf ", m_folder.Listing());
  EXPECT_EQ("foreign", m_folder.Read("a_1.btf"));
  // Its own file goes when it is replaced.
  EXPECT_EQ(DumpStore(*store), DumpStore(*Again(*store, 5)));
  EXPECT_EQ("a.atfx a_1.btf a_3.btf ", m_folder.Listing());
}

TEST_F(AtfxWriter, FailureLeavesEverythingAsItWas) {
  m_folder.Write("a.atfx", "old");
  // The second column's values can't be read, when the first one's are written already.
  const auto store = ReadText(
      Document(ColumnInstances(LongColumn("A_INT32", 10), "DT_LONG", 10) + "<Column><Id>2</Id>" +
               Component("identifier=none.bin datatype=dt_short length=1") + "</Column>"));
  EXPECT_EQ("-1301 /nowhere/none.bin: No such file or directory",
            Thrown([&] { Again(*store, 5); }));
  EXPECT_EQ("a.atfx ", m_folder.Listing());
  EXPECT_EQ("old", m_folder.Read("a.atfx"));
  const auto missing = m_folder.File("none/a.atfx");
  EXPECT_TRUE(Thrown([&] { atfx::WriteAtfx(*store, missing); }).starts_with("-1303 "));
}

TEST_F(AtfxWriter, RefusesModelsThatTheFormatCannotTell) {
  // Writes a store with one record of the model's last element.
  const auto error = [&](ModelBuilder builder) {
    const auto store = EmptyStore(builder.Build());
    store->Create(store->GetModel()->Entities().back().id);
    return Thrown([&] { Again(*store); });
  };
  ModelBuilder document = ModelBuilder::WithoutBaseModel();
  document.BeginEntity(u"Query", u"asamquery_manager");
  EXPECT_EQ("-1002 element 'Query' stands on no base element of the standard",
            error(std::move(document)));
  ModelBuilder blanks(u"asam36");
  blanks.BeginEntity(u"two words", u"AoAny");
  const std::string refused = error(std::move(blanks));
  EXPECT_NE(std::string::npos, refused.find(": the name 'two words' can't be a tag")) << refused;
  EXPECT_EQ("", m_folder.Listing());
}

}  // namespace
}  // namespace hv::vex::engine::test

// tests/query/objects/QueryFixture.h - stores over tests/data/query/bench.atfx, as a file and as a
// database, and queries over them.
#pragma once

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "automation/conv/VexTime.h"
#include "cor/Counted.h"
#include "query/objects/DataStoreAdvancedQueryImpl.h"
#include "query/objects/DataStoreConfigHelper.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "tests/plugins/TestConfiguration.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace hv::vex {

/// Counts objects: none may be left over.
class QueryTest : public ::testing::Test {
 protected:
  QueryTest() : m_configuration(HV_BINARY_DIR "/lib"), m_objects(cor::LiveObjectCount()) {
    HostInit();
  }
  ~QueryTest() override {
    m_query.Reset();
    m_store.Reset();
    EXPECT_EQ(m_objects, cor::LiveObjectCount()) << "an object is still held";
    HostCleanup();
  }

  static WString FileTag(const std::filesystem::path& path) {
    return cor::FromUtf8("<filename>" + path.string() + "</filename>");
  }
  static Ref<IStore> OpenFile(const std::string& path, std::u16string_view plugin = u"ATFX") {
    return Ref<IStore>::Adopt(
        GetEngineEnvironment()->OpenStoreByParameter(u"", plugin, FileTag(path), 0));
  }
  static Ref<IStore> OpenBench() { return OpenFile(HV_TEST_DATA_DIR "/query/bench.atfx"); }
  /// The same records in a database.
  Ref<IStore> OpenBenchDatabase() {
    const Ref<IStore> file = OpenBench();
    const WString target = FileTag(m_folder.File("bench.sqlite"));
    const auto environment = GetEngineEnvironment();
    Ref<IExporter>::Adopt(environment->CreateExporter(u"SQL", u"", target, file.Get()))->Run();
    return OpenFile(m_folder.File("bench.sqlite").string(), u"SQL");
  }

  void Use(Ref<IStore> store) {
    m_store = std::move(store);
    m_query = MakeRef<CDataStoreAdvancedQueryImpl>(*m_store, nullptr);
    // A Sunday afternoon.
    m_query->SetClock([] { return SystemTime{2009, 5, 0, 17, 15, 30, 0, 0}; });
  }

  easyImpl::IConditionCollImpl& Conditions() { return *m_query->GetStoreConditions(); }
  /// "Entity|Property|operator|value", without an entity for one of MeaResult; a value behind "@"
  /// is a date in digits.
  static void Add(CDataStoreAdvancedQueryImpl& query, std::string_view condition) {
    std::vector<WString> parts;
    if (std::ranges::count(condition, '|') < 3) parts.push_back(u"MeaResult");
    for (std::size_t bar = 0; parts.size() < 3; condition.remove_prefix(bar + 1)) {
      bar = condition.find('|');
      parts.push_back(cor::FromUtf8(condition.substr(0, bar)));
    }
    Variant value = Variant::Text(cor::FromUtf8(condition));
    if (condition.starts_with('@')) {
      const auto time = util::conv::TimeValue::FromText(condition.substr(1));
      value = Variant::Object(CreateTime(time).Get());
    }
    Ref<easyImpl::IConditionImpl> added;
    ASSERT_EQ(S_OK, query.GetStoreConditions()->AddWithName({}, parts[0], parts[1], parts[2], value,
                                                            added.Put()));
  }
  /// Adds conditions with ";" between them, and sets the logic.
  void Fill(std::string_view conditions, std::u16string_view logic = {}) {
    while (!conditions.empty()) {
      const std::string_view first = conditions.substr(0, conditions.find(';'));
      Add(*m_query, first);
      conditions.remove_prefix(std::min(first.size() + 1, conditions.size()));
    }
    ASSERT_EQ(S_OK, Conditions().SetLogicNormalised(logic));
  }

  /// The functions of a text in short: OP(...), identifier and constant, which has w, c or p in
  /// front for wildcards, no case and plain.
  static std::string Short(std::u16string_view expression) {
    WString text(expression);
    const std::pair<std::u16string_view, std::u16string_view> kShort[] = {
        {u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">", u" w'"},
        {u"<q:constant caseinsensitive=\"yes\">", u" c'"},
        {u"<q:constant>", u" p'"},
        {u"</q:constant>\n", u"'"},
        {u"<q:identifier>", u""},
        {u"</q:identifier>\n", u""},
        {u"<q:function name=\"", u""},
        {u"\">\n", u"("},
        {u"</q:function>\n", u")"},
    };
    const std::int64_t start = text.Find(u"<q:");
    if (start < 0) return cor::ToUtf8(text);
    text = text.Substr(static_cast<std::size_t>(start));
    text = text.Substr(0, static_cast<std::size_t>(text.Find(u"</expression>")));
    for (const auto& [tag, sign] : kShort) text.ReplaceAll(tag, sign);
    return cor::ToUtf8(text);
  }
  Result Build(WString* text, std::int32_t limit = 0) {
    return m_query->GetExpressionWithReturnType(
        text, *MakeRef<CDataStoreConfigHelper>(m_store.Get()), limit);
  }
  /// The ids of what a text finds.
  std::string Hits(std::u16string_view text) {
    const auto engine = m_store.As<IStoreQuery>();
    const auto list = Ref<IInstList>::Adopt(engine->Execute(text));
    std::set<std::string> ids;
    for (std::uint64_t i = 0; i < list->GetCount(); ++i) {
      WString key;
      list->GetKey(i, key);
      ids.insert(cor::ToUtf8(key).substr(cor::ToUtf8(key).rfind(':') + 1));
    }
    EXPECT_EQ(list->GetCount(), ids.size()) << "each hit once";
    std::string all;
    for (const std::string& id : ids) all += (all.empty() ? "" : " ") + id;
    return all;
  }

  Ref<IStore> m_store;
  Ref<CDataStoreAdvancedQueryImpl> m_query;
  test::TempFolder m_folder;

 private:
  test::TestConfiguration m_configuration;
  std::int64_t m_objects;
};

}  // namespace hv::vex

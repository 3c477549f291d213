// tests/query/files/FilesFixture.h - queries over the bench, and documents of queries as texts.
#pragma once

#include <storefabric/ITextStream.h>

#include "query/files/QueryFiles.h"
#include "query/files/QueryInfoSetLoader.h"
#include "query/files/QueryInfoSetSaver.h"
#include "tests/query/objects/QueryFixture.h"

namespace hv::vex {

/// A text in a host's hands.
class TextHolder final : public cor::Counted<ITextStream> {
 public:
  explicit TextHolder(std::u16string_view text_ = {}) : text(text_) {}
  Result Read(WString* out) override {
    *out = text;
    return answer;
  }
  Result Write(std::u16string_view written) override {
    text = written;
    return answer;
  }
  WString text;
  Result answer = S_OK;
};

/// A document with these tags.
inline std::string Whole(std::string_view tags) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vex_document version=\"1\" "
         "model=\"http://www.halvorn.example/DataModels/VEX/Query/1_2\">\n" +
         std::string(tags) + "</vex_document>\n";
}
/// A document with one query: its tags.
inline std::string Document(std::string_view query) {
  return Whole("<asamquery_manager><queries><asamquery>" + std::string(query) +
               "</asamquery></queries></asamquery_manager>");
}

class QueryFiles : public QueryTest {
 protected:
  QueryFiles() { Use(OpenBench()); }

  static Result LoadText(std::string_view document, IUnknown& query) {
    const auto stream = MakeRef<TextHolder>(cor::FromUtf8(document));
    const auto loader = MakeRef<CDataStoreQueryInfoSetLoader>();
    const Result rc = loader->OpenByStream(stream.Get(), kQueryInfoSetVersion);
    return Failed(rc) ? rc : loader->LoadQuery(&query);
  }
  std::string SavedText() {
    const auto saver = MakeRef<CDataStoreQueryInfoSetSaver>();
    const auto stream = MakeRef<TextHolder>();
    EXPECT_EQ(S_OK, saver->SaveQuery(m_query.Get()));
    EXPECT_EQ(S_OK, saver->SaveToStream(stream.Get()));
    return cor::ToUtf8(stream->text);
  }
  /// The contents of the first tag of a name in a text.
  static std::string Tag(const std::string& text, const std::string& name) {
    const std::size_t from = text.find("<" + name + ">") + name.size() + 2;
    return text.substr(from, text.find("</" + name + ">") - from);
  }
  /// "C1 Entity.Property operator type:value text [values]" for each condition, then the logic.
  static std::string Described(CDataStoreAdvancedQueryImpl& query) {
    std::string all;
    easyImpl::IConditionCollImpl& conditions = *query.GetStoreConditions();
    std::int32_t count = 0;
    EXPECT_EQ(S_OK, conditions.GetCount(&count));
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<easyImpl::IConditionImpl> c;
      EXPECT_EQ(S_OK, conditions.GetItem(i, c.Put()));
      std::int32_t size = 0;
      EXPECT_EQ(S_OK, c->GetSize(&size));
      const auto text = [](std::u16string_view wide) { return cor::ToUtf8(wide); };
      all += text(c->GetName()) + " " + text(c->GetType()) + "." + text(c->GetProperty()) + " " +
             text(c->GetOperatorForDisplay()) + " " + std::to_string(c->GetFirstValue().Type()) +
             ":" + text(c->GetValueText()) + (size > 1 ? " " + std::to_string(size) : "") + "\n";
    }
    return all + cor::ToUtf8(conditions.GetLogic());
  }
};

}  // namespace hv::vex

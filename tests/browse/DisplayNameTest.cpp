// tests/browse/DisplayNameTest.cpp - display names: parts, one element, many elements.
#include "browse/DisplayText.h"
#include "browse/RepresentedByParts.h"
#include "elements/PropertyCollectionImpl.h"
#include "store/core/IContainer.h"
#include "tests/browse/BrowseFixture.h"
#include "tests/elements/TestElement.h"

namespace hv::vex {
namespace {

class DisplayName : public BrowseTest {
 protected:
  /// Parts with "|" between them: "p:" and a property's name, or "t:" and a free text.
  static Ref<CRepresentedByPartsImpl> Parts(IStore& store, std::u16string_view entityName,
                                            std::u16string_view texts) {
    const auto model = Ref<IModel>::Adopt(store.GetModel());
    const auto entity = Ref<IEntity>::Adopt(model->GetEntity(entityName));
    auto parts = MakeRef<CRepresentedByPartsImpl>();
    while (!texts.empty()) {
      const std::u16string_view text = texts.substr(0, texts.find(u'|'));
      const auto property = FindAttributeDefinition(*entity, text.substr(2));
      EXPECT_EQ(S_OK, text.starts_with(u"p:") ? parts->AddProperty(property.Get(), nullptr)
                                              : parts->AddFreeText(text.substr(2), nullptr));
      texts.remove_prefix(std::min(text.size() + 1, texts.size()));
    }
    return parts;
  }
  static std::string FormatText(CRepresentedByPartsImpl& parts) {
    return Text(parts, &CRepresentedByPartsImpl::GetFormatText);
  }
  static Ref<IInstance> Instance(IStore& store, std::u16string_view key) {
    auto found = Ref<IInstance>::Adopt(store.GetInstance(key));
    EXPECT_TRUE(found);
    return found;
  }
};

TEST_F(DisplayName, IsTheSameForOneAndForMany) {
  const auto store = Open("campaign");
  const auto format = Ref<IAttribute>::Adopt(
      Ref<IEnvironment>::Adopt(store->GetEnvironment())->GetVariable(u"vexFormatStringTime"));
  const auto cold = Instance(*store, u"Campaign:1");
  const auto element = MakeRef<test::CTestElement>(*cold);
  const auto warm = MakeRef<test::CTestElement>(*Instance(*store, u"Campaign:2"));
  constexpr struct {
    std::u16string_view parts;
    const char *timeFormat, *first, *second;
  } kCases[] = {
      {u"", "", "", ""},
      {u"t:same", "", "same", "same"},
      {u"p:Title", "", "Cold start", "Warm start"},
      {u"p:Title|t: (|p:Score|t:)", "", "Cold start (0.5)", "Warm start (-2.)"},
      {u"p:Title|p:Title", "", "Cold startCold start", "Warm startWarm start"},
      {u"p:Count|t:/|p:Big|t:/|p:Byte", "", "7/5000000000/-56", "//"},
      {u"p:Active", "", "true", ""},
      {u"p:Start.Date", "", "20260102030405000000000", "20251231235959123000000"},
      {u"p:Start.Date", "DD.MM.YYYY hh:mm", "02.01.2026 03:04", "31.12.2025 23:59"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.first);
    const WString pattern = cor::FromUtf8(row.timeFormat);
    format->Clear();
    if (!pattern.empty()) format->SetText(0, pattern);
    const auto parts = Parts(*store, u"Campaign", row.parts);
    DisplayNameTable table;
    ASSERT_EQ(S_OK, ReadDisplayNames(store.Get(), nullptr, u"/#Campaign", {}, parts.Get(), &table));
    ASSERT_EQ(2u, table.displayNames.size());
    EXPECT_EQ(row.first, cor::ToUtf8(table.displayNames[0]));
    EXPECT_EQ(row.second, cor::ToUtf8(table.displayNames[1]));
    EXPECT_EQ("Cold start", cor::ToUtf8(table.names[0]));
    EXPECT_EQ(cold, Ref<IInstance>::Adopt(table.values->GetInstance(0)));

    WString text;
    EXPECT_EQ(S_OK, parts->FormatFromInstance(cold.Get(), pattern, &text));
    EXPECT_EQ(row.first, cor::ToUtf8(text));
    EXPECT_EQ(S_OK, parts->FormatFromProperties(element.Get(), pattern, &text));
    EXPECT_EQ(row.first, cor::ToUtf8(text));
    EXPECT_EQ(S_OK, parts->FormatFromProperties(warm.Get(), pattern, &text));
    EXPECT_EQ(row.second, cor::ToUtf8(text));
  }
  format->Clear();
}

TEST_F(DisplayName, FollowsReferencesInBulk) {
  const auto store = Open("campaign");
  const auto parts = Parts(*store, u"Run", u"p:Name|t:[|p:Version|t:]");
  DisplayNameTable table;
  const auto day = Instance(*store, u"Sub.Test:3");
  ASSERT_EQ(S_OK, ReadDisplayNames(store.Get(), day.Get(), u"Runs", {}, parts.Get(), &table));
  ASSERT_EQ(2u, table.displayNames.size());
  EXPECT_EQ("Run 2[b]", cor::ToUtf8(table.displayNames[1]));
  const auto list = Ref<IInstList>::Adopt(day->GetRelated(u"Runs"));
  ASSERT_EQ(S_OK, ReadDisplayNames(store.Get(), list.Get(), parts.Get(), &table));
  EXPECT_EQ("Run 1[a]", cor::ToUtf8(table.displayNames[0]));
  EXPECT_EQ(E_POINTER, ReadDisplayNames(nullptr, list.Get(), parts.Get(), &table));
  EXPECT_EQ(E_POINTER, ReadDisplayNames(store.Get(), nullptr, parts.Get(), &table));
  EXPECT_EQ(E_FAIL, ReadDisplayNames(store.Get(), nullptr, u"/#Nothing", {}, parts.Get(), &table));
}

TEST_F(DisplayName, CollectsEveryPropertyOnce) {
  const auto store = Open("campaign");
  const auto parts = Parts(*store, u"Campaign", u"p:Score|t:Count|p:Title|p:Score|p:Count");
  ValueColumns columns;
  columns.try_emplace(u"name");
  std::vector<WString> keys{u"name"};
  EXPECT_EQ(S_OK, parts->CollectProperties(columns, &keys));
  ASSERT_EQ(3u, keys.size());
  EXPECT_EQ(u"Score", keys[1].view());
  EXPECT_EQ(u"Count", keys[2].view());
  WString text = u"old";
  // Columns that nobody has filled are left out.
  EXPECT_EQ(S_OK, parts->FormatFromColumns(columns, 0, {}, &text));
  EXPECT_EQ(u"Count", text.view());
  EXPECT_EQ(E_POINTER, parts->FormatFromColumns(columns, 0, {}, nullptr));
  EXPECT_EQ("ScoreCountTitleScoreCount", FormatText(*parts));
}

TEST_F(DisplayName, MissingPropertiesEndTheTextOfOneElement) {
  const auto store = Open("campaign");
  const auto parts = Parts(*store, u"Campaign", u"t:a|p:Score|t:b");
  const auto run = Instance(*store, u"Run:4");
  WString text;
  EXPECT_EQ(kPartialDisplayName, parts->FormatFromInstance(run.Get(), {}, &text));
  EXPECT_EQ(u"a", text.view());
  const auto element = MakeRef<test::CTestElement>(*run);
  EXPECT_EQ(kPartialDisplayName, parts->FormatFromProperties(element.Get(), {}, &text));
  EXPECT_EQ(u"a", text.view());
  const auto picture = Parts(*store, u"Campaign", u"p:Picture");
  const auto cold = Instance(*store, u"Campaign:1");
  EXPECT_EQ(kPartialDisplayName, picture->FormatFromInstance(cold.Get(), {}, &text));
  EXPECT_EQ(E_POINTER, parts->FormatFromInstance(nullptr, {}, &text));
  EXPECT_EQ(E_POINTER, parts->FormatFromInstance(run.Get(), {}, nullptr));
}

TEST_F(DisplayName, PartsKeepTheirKind) {
  const auto store = Open("campaign");
  const auto parts = Parts(*store, u"Campaign", u"t:text|p:Title");
  Ref<IRepresentedByPartImpl> text;
  Ref<IRepresentedByPartImpl> property;
  ASSERT_EQ(S_OK, parts->GetItem(0, text.Put()));
  ASSERT_EQ(S_OK, parts->GetItem(1, property.Put()));
  Ref<IAttributeDefinition> title;
  WString name;
  EXPECT_TRUE(text->IsKind(PartKind::FreeText));
  EXPECT_TRUE(text->IsValid());
  EXPECT_EQ(E_POINTER, text->GetProperty(title.Put()));
  EXPECT_EQ(E_NOTIMPL, text->GetPropertyName(&name));
  EXPECT_EQ(E_NOTIMPL, text->GetPropertyKey(&name));
  EXPECT_EQ(E_NOTIMPL, text->SetPropertyName(u"x"));
  EXPECT_EQ(S_OK, text->SetFreeText({}));
  EXPECT_FALSE(text->IsValid());

  EXPECT_TRUE(property->IsKind(PartKind::Property));
  EXPECT_FALSE(property->IsKind(static_cast<PartKind>(2)));
  EXPECT_EQ(E_NOTIMPL, property->GetFreeText(&name));
  EXPECT_EQ(E_NOTIMPL, property->SetFreeText(u"x"));
  ASSERT_EQ(S_OK, property->GetProperty(title.Put()));
  EXPECT_EQ(E_POINTER, text->SetProperty(title.Get()));
  EXPECT_EQ(S_OK, property->GetPropertyName(&name));
  EXPECT_EQ(u"Title", name.view());
  EXPECT_EQ(S_OK, property->GetPropertyKey(&name));
  EXPECT_EQ(u"name", name.view());

  EXPECT_EQ(S_OK, property->SetPropertyName(u"Later"));
  EXPECT_TRUE(property->IsKind(PartKind::Property));
  EXPECT_FALSE(property->IsValid());
  EXPECT_EQ(E_NOTIMPL, property->GetProperty(title.Put()));
  EXPECT_EQ(S_OK, property->GetPropertyKey(&name));
  EXPECT_EQ(u"Later", name.view());
}

TEST_F(DisplayName, PartsAreResolvedOnAnotherEntity) {
  const auto store = Open("campaign");
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  const auto run = Ref<IEntity>::Adopt(model->GetEntity(u"Run"));
  const auto copy = MakeRef<CRepresentedByPartsImpl>();
  const auto names = Parts(*store, u"Campaign", u"p:Title|t:x");
  EXPECT_EQ(S_OK, copy->CopyResolved(names.Get(), run.Get()));
  EXPECT_EQ("Namex", FormatText(*copy));
  copy->CopyFrom(names.Get());
  EXPECT_EQ("Titlex", FormatText(*copy));
  const auto scores = Parts(*store, u"Campaign", u"p:Score");
  EXPECT_EQ(kModelMismatch, copy->CopyResolved(scores.Get(), run.Get()));
  Ref<IRepresentedByPartImpl> part;
  ASSERT_EQ(S_OK, scores->GetItem(0, part.Put()));
  EXPECT_EQ(S_OK, part->SetPropertyName(u"Name"));
  EXPECT_EQ(E_INVALIDARG, copy->CopyResolved(scores.Get(), run.Get()));
  const auto pictures = Parts(*store, u"Campaign", u"p:Picture");
  const auto campaign = Ref<IEntity>::Adopt(model->GetEntity(u"Campaign"));
  EXPECT_EQ(kModelMismatch, copy->CopyResolved(pictures.Get(), campaign.Get()));
  EXPECT_EQ(E_POINTER, copy->CopyResolved(nullptr, run.Get()));
}

TEST_F(DisplayName, OfAnInstanceUnderAConfiguration) {
  const auto store = Open("campaign");
  const auto config = Load(*store);
  const auto cold = Instance(*store, u"Campaign:1");
  EXPECT_EQ(S_OK, Level(*config, u"Campaign")->Parts().AddFreeText(u"!", nullptr));
  WString text;
  EXPECT_EQ(S_OK, GetBrowseDisplayName(config.Get(), cold.Get(), &text));
  EXPECT_EQ(u"Cold start!", text.view());
  EXPECT_EQ(S_OK, config->ResetDisplayNames());
  EXPECT_EQ(S_OK, GetBrowseDisplayName(config.Get(), cold.Get(), &text));
  EXPECT_EQ(u"Cold start", text.view());

  const auto runs = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(S_OK, runs->SetSingleRoot(Ref<IModel>::Adopt(store->GetModel()).Get(), u"Run"));
  text.clear();
  EXPECT_EQ(S_FALSE, GetBrowseDisplayName(runs.Get(), cold.Get(), &text));
  EXPECT_EQ(u"Cold start", text.view());

  const auto elsewhere = Load("campaign");
  EXPECT_EQ(VEX_E_OTHER_STORE, GetBrowseDisplayName(elsewhere.Get(), cold.Get(), &text));
  EXPECT_EQ(E_INVALIDARG, GetBrowseDisplayName(nullptr, cold.Get(), &text));
  EXPECT_EQ(E_INVALIDARG, GetBrowseDisplayName(config.Get(), nullptr, &text));
  EXPECT_EQ(E_POINTER, GetBrowseDisplayName(config.Get(), cold.Get(), nullptr));
}

}  // namespace
}  // namespace hv::vex

// store/model/ModelScriptTest.cpp - the model of a real store, by name and by the typed faces.
#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <storefabric/IDataStoreModel.h>

#include "store/model/DataStoreModelImpl.h"
#include "store/model/DataStoreModelInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/Script.h"

namespace hv::vex {
namespace {

using test::Answer;
using test::Eval;
using test::Get;

class FleetModel : public test::FleetTest {
 protected:
  FleetModel() {
    m_logic = MakeRef<CDataStoreModelImpl>();
    EXPECT_EQ(S_OK, m_logic->SetStore(m_store.Get()));
    m_model = MakeRef<CDataStoreModelInt>(m_logic);
  }
  Answer Ask(std::string_view expression) { return Eval(m_model.Get(), expression); }

  Ref<IDataStoreModelImpl> m_logic;
  Ref<IDataStoreModel> m_model;
};

struct Line {
  const char* expression;
  const char* shown;
};

void ExpectAll(IDispatch* object, std::initializer_list<Line> lines) {
  for (const Line& line : lines) {
    SCOPED_TRACE(line.expression);
    EXPECT_EQ(line.shown, Eval(object, line.expression).Shown());
  }
}

TEST_F(FleetModel, ShowsEntitiesInTheirOrder) {
  EXPECT_EQ("Campaign Run Quantity Matrix Column Person aoMyTest Part.Of.Truck",
            test::NamesOf(Get(m_model.Get(), u"Entities").Object()));
  ExpectAll(m_model.Get(), {{"Entities.Count", "8"},
                            {"Entities(0).Name", "Campaign"},
                            {"Entities('Campaign').Name", "Campaign"},
                            {"Entities.Item('Part.Of.Truck').Name", "Part.Of.Truck"},
                            {"Entities.Item(7).Name", "Part.Of.Truck"},
                            {"Entities.Exists('Run')", "1"},
                            {"Entities.Exists('run')", "0"},
                            {"Entities.Exists('aotest')", "0"},
                            {"Entities.Exists('')", "0"}});
}

TEST_F(FleetModel, TellsHowEntitiesDerive) {
  ExpectAll(m_model.Get(), {{"Entities('Campaign').SuperType.Name", "aotest"},
                            {"Entities('Campaign').SuperType.IsBaseType", "1"},
                            {"Entities('Campaign').SuperType.SuperType", "no object"},
                            {"Entities('Campaign').SuperType.SubTypes.Count", "1"},
                            {"Entities('Campaign').SuperType.SubTypes(0).Name", "Campaign"},
                            {"Entities('Campaign').SubTypes", "no object"},
                            {"Entities('Campaign').IsBaseType", "0"},
                            {"Entities('aoMyTest').IsBaseType", "1"},
                            {"Entities('Campaign').IsKindOf('Campaign')", "1"},
                            {"Entities('Campaign').IsKindOf('CAMPAIGN')", "1"},
                            {"Entities('Campaign').IsKindOf('aotest')", "1"},
                            {"Entities('Campaign').IsKindOf('Run')", "0"},
                            {"Entities('Campaign').IsKindOf('Nobody')", "0"},
                            {"Entities('Campaign').IsKindOf('')", "0"},
                            {"Entities('Campaign').IsKindOf(1)", "0"},
                            {"Entities('aoMyTest').IsKindOf('aotest')", "0"}});
}

TEST_F(FleetModel, IsKindOfTakesAnEntity) {
  const Answer campaign = Ask("Entities('Campaign')");
  const Answer base = Ask("Entities('Campaign').SuperType");
  EXPECT_EQ("1", Get(campaign.Object(), u"IsKindOf", base.value).Shown());
  EXPECT_EQ("1", Get(campaign.Object(), u"IsKindOf", campaign.value).Shown());
  EXPECT_EQ("0", Get(base.Object(), u"IsKindOf", campaign.value).Shown());
  // Neither a text nor an entity.
  EXPECT_EQ("250 Unknown error.", Get(campaign.Object(), u"IsKindOf", Variant::Null()).Shown());
  EXPECT_EQ("250 Unknown error.",
            Get(campaign.Object(), u"IsKindOf", Variant::Object(m_model.Get())).Shown());
}

TEST_F(FleetModel, ShowsPropertiesOfPropertyTypesOnly) {
  const Answer properties = Ask("Entities('Campaign').ModelProperties");
  std::string names;
  const int count = std::stoi(Get(properties.Object(), u"Count").Text());
  for (int i = 0; i < count; ++i) {
    const Answer property = test::Index(properties.Object(), Variant::I4(i));
    names += Eval(property.Object(), "Name").Text() + ":" +
             Eval(property.Object(), "DataType").Text() + " ";
  }
  EXPECT_EQ(
      "Id:4 Title:23 Start.Date:30 Score:10 Short:2 Long:3 LongLong:4 Byte:5 Float:9 Active:11 "
      "Mood:24 Tags:23 Levels:3 Empty:23 ",
      names);
  ExpectAll(properties.Object(), {{"Exists('Picture')", "0"},
                                  {"Exists('Sheet')", "0"},
                                  {"Exists('Raw')", "0"},
                                  {"Exists('Z')", "0"},
                                  {"Exists('ZZ')", "0"},
                                  {"Exists('Driver')", "0"},
                                  {"_NewEnum", "refused"}});
}

TEST_F(FleetModel, ShowsWhatOthersHaveAddedAfterARefresh) {
  const std::filesystem::path path = m_folder / "fleet.atfx";
  const Answer properties = Ask("Entities('Campaign').ModelProperties");
  std::string content = test::ReadFile(path);
  const auto rewrite = [&](std::string_view before, std::string_view text) {
    content.insert(content.find(before), text);
    std::ofstream(path, std::ios::binary) << content;
  };
  rewrite("<relation_attribute><name>Runs</name>",
          "<application_attribute><name>Late</name><datatype>DT_LONG</datatype>"
          "</application_attribute>");
  rewrite("</application_model>",
          "<application_element><name>Wheel</name><basetype>AoAny</basetype>"
          "<application_attribute><name>Id</name><base_attribute>id</base_attribute>"
          "</application_attribute></application_element>");
  EXPECT_EQ("8", Ask("Entities.Count").Shown());
  m_store->Refresh();
  EXPECT_EQ("Campaign Run Quantity Matrix Column Person aoMyTest Part.Of.Truck Wheel",
            test::NamesOf(Get(m_model.Get(), u"Entities").Object()));
  ExpectAll(m_model.Get(), {{"Entities('Wheel').ModelProperties.Count", "1"},
                            {"Entities('Campaign').ModelProperties('Late').DataType", "3"}});
  ExpectAll(properties.Object(), {{"Count", "15"}, {"Item(14).Name", "Late"}});

  // Places known have other members now: nothing of this file is shown.
  rewrite("<application_attribute><name>Title",
          "<application_attribute><name>First</name><datatype>DT_LONG</datatype>"
          "</application_attribute>");
  EXPECT_THROW(m_store->Refresh(), Exception);
  EXPECT_EQ("0", Ask("Entities('Campaign').ModelProperties.Exists('First')").Shown());
}

TEST_F(FleetModel, FindsPropertiesByNameAndBaseName) {
  ExpectAll(Ask("Entities('Campaign').ModelProperties").Object(),
            {{"Item('Title').Name", "Title"},
             {"Item('TITLE').Name", "Title"},
             {"Item('name').Name", "Title"},
             {"Item('Title').BaseName", "name"},
             {"Item('Start.Date').Name", "Start.Date"},
             {"Item('Start.Date').MinOccur", "0"},
             {"Item('Title').MaxOccur", "1"},
             {"Item('Tags').MaxOccur", "-1"},
             {"Exists('Title')", "1"},
             {"Exists('name')", "1"},
             {"Exists('NAME')", "0"},
             {"Exists('')", "0"},
             {"Exists('nothing')", "0"}});
}

TEST_F(FleetModel, FindsReferencesByNameAndBaseName) {
  const Answer references = Ask("Entities('Campaign').ModelReferences");
  EXPECT_EQ("Runs Driver CoDriver", test::NamesOf(references.Object()));
  ExpectAll(references.Object(), {{"Count", "3"},
                                  {"Item(0).Name", "Runs"},
                                  {"Item('Runs').BaseName", "children"},
                                  {"Item('children').Name", "Runs"},
                                  {"Item('CHILDREN').Name", "Runs"},
                                  {"Item('Runs').EntityType.Name", "Run"},
                                  {"Item('Runs').MinOccur", "0"},
                                  {"Item('Runs').MaxOccur", "-1"},
                                  {"Item('Driver').BaseName", ""},
                                  {"Item('Driver').MinOccur", "1"},
                                  {"Item('Driver').MaxOccur", "1"},
                                  {"Exists('driver')", "1"},
                                  {"Exists('children')", "1"},
                                  {"Exists('')", "0"},
                                  {"Exists('Title')", "0"}});
}

TEST_F(FleetModel, FollowsReferencesBothWays) {
  ExpectAll(
      m_model.Get(),
      {// two references between the same entities don't get mixed up
       {"Entities(0).ModelReferences('Driver').Inverse.Name", "Drives"},
       {"Entities(0).ModelReferences('CoDriver').Inverse.Name", "Rides.along"},
       {"Entities(0).ModelReferences('CoDriver').Inverse.Inverse.Name", "CoDriver"},
       {"Entities(0).ModelReferences('CoDriver').Inverse.EntityType.Name", "Campaign"},
       // an entity that refers to itself
       {"Entities('Person').ModelReferences('Boss').EntityType.Name", "Person"},
       {"Entities('Person').ModelReferences('Boss').Inverse.Name", "Staff"},
       {"Entities('Part.Of.Truck').ModelReferences('sits.in').Inverse.Name", "holds"},
       {"Entities('Part.Of.Truck').ModelReferences('sits.in').EntityType.Name", "Part.Of.Truck"}});
}

TEST_F(FleetModel, ValuesOfALocalColumnAreNoReference) {
  ExpectAll(Ask("Entities('Column').ModelReferences").Object(), {{"Count", "2"},
                                                                 {"Exists('Values')", "0"},
                                                                 {"Exists('values')", "0"},
                                                                 {"Exists('VALUES')", "0"}});
}

// The rows of the members that have rows of their own, and of those that have none.
TEST_F(FleetModel, RaisesTheMessageOfTheRow) {
  ExpectAll(
      m_model.Get(),
      {{"Entities('Nobody')",
        "215 The index Nobody does not correspond to a member of the collection."},
       {"Entities('')", "215 The index  does not correspond to a member of the collection."},
       {"Entities('0')",
        "215 The index 0 does not correspond to a member of the collection."},  // a text is a name,
                                                                                // also one of
                                                                                // digits
       {"Entities(8)", "215 The index 8 does not correspond to a member of the collection."},
       {"Entities(-1)", "215 The index -1 does not correspond to a member of the collection."},
       {"Entities(null)", "214 The argument passed to Item must be either a string or an integer."},
       {"Entities('Campaign').ModelProperties('Picture')",
        "215 The index Picture does not correspond to a member of the collection."},
       {"Entities('Campaign').ModelProperties('Driver')",
        "215 The index Driver does not correspond to a member of the collection."},
       {"Entities('Campaign').ModelProperties(14)",
        "215 The index 14 does not correspond to a member of the collection."},
       {"Entities('Campaign').ModelReferences('Title')",
        "215 The index Title does not correspond to a member of the collection."},
       {"Entities('Campaign').ModelReferences(3)",
        "215 The index 3 does not correspond to a member of the collection."},
       {"Entities('Column').ModelReferences('Values')",
        "215 The index Values does not correspond to a member of the collection."},
       {"Entities('Campaign').ModelProperties('Score').BaseName",
        "343 This property is no base property."},
       {"Export('/nowhere/at all/x.atfx')",
        "358 Cannot write the file /nowhere/at all/x.atfx. Maybe the file is write protected or "
        "the path does not exist."}});
}

TEST_F(FleetModel, GivesCodesOnTheTypedFace) {
  Ref<IModelEntities> entities;
  ASSERT_EQ(S_OK, m_model->get_Entities(entities.Put()));
  Ref<IModelEntity> entity;
  EXPECT_EQ(E_INVALIDARG, entities->Item(Variant::Text(u"Nobody"), entity.Put()));
  EXPECT_EQ(E_INVALIDARG, entities->Item(Variant::I4(8), entity.Put()));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, entities->Item(Variant::Null(), entity.Put()));
  Variant index = Variant::R8(4.6);
  ASSERT_EQ(S_OK, entities->Item(Variant::RefTo(&index), entity.Put()));
  WString name;
  EXPECT_EQ(S_OK, entity->get_Name(&name));
  EXPECT_EQ("Person", cor::ToUtf8(name));
  Ref<IModelProperties> properties;
  ASSERT_EQ(S_OK, entity->get_ModelProperties(properties.Put()));
  Ref<IModelProperty> property;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, properties->Item(Variant(), property.Put()));
  EXPECT_EQ(E_INVALIDARG, properties->Item(Variant::Text(u"Nothing"), property.Put()));
  EXPECT_EQ(E_POINTER, m_model->get_Entities(nullptr));
  EXPECT_EQ(E_POINTER, entities->Item(Variant::I4(0), nullptr));
  EXPECT_EQ(E_POINTER, entities->get_Count(nullptr));
  EXPECT_EQ(E_POINTER, entities->Exists(u"Run", nullptr));
  EXPECT_EQ(E_POINTER, entities->get__NewEnum(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_Name(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_SubTypes(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_SuperType(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_ModelReferences(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_IsBaseType(nullptr));
  EXPECT_EQ(E_POINTER, entity->IsKindOf(Variant::Text(u"Run"), nullptr));
  EXPECT_EQ(E_POINTER, properties->Item(Variant::I4(0), nullptr));
}

struct ExportCase {
  const char* name;
  const char* path;
  const char* written;
};
class ModelExport : public FleetModel, public ::testing::WithParamInterface<ExportCase> {};
TEST_P(ModelExport, WritesTheFile) {
  const WString path = cor::FromUtf8((m_folder / GetParam().path).string());
  ASSERT_EQ(S_OK, m_model->Export(path));
  EXPECT_FALSE(test::ReadFile(m_folder / GetParam().written).empty());
}
INSTANTIATE_TEST_SUITE_P(Paths, ModelExport,
                         ::testing::Values(ExportCase{"NoExtension", "x", "x.atfx"},
                                           ExportCase{"Atfx", "y.atfx", "y.atfx"},
                                           ExportCase{"AnyOther", "z.txt", "z.txt"},
                                           ExportCase{"Escaped", "a & b <c>", "a & b <c>.atfx"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FleetModel, ExportsWhatItRead) {
  ASSERT_EQ(S_OK, m_model->Export(cor::FromUtf8((m_folder / "copy").string())));
  std::filesystem::rename(m_folder / "copy.atfx", m_folder / "fleet.atfx");
  const auto copy = Open(u"<filename>");
  const auto logic = MakeRef<CDataStoreModelImpl>();
  ASSERT_EQ(S_OK, logic->SetStore(copy.Get()));
  const auto model = MakeRef<CDataStoreModelInt>(logic);
  EXPECT_EQ(test::NamesOf(Get(m_model.Get(), u"Entities").Object()),
            test::NamesOf(Get(model.Get(), u"Entities").Object()));
  EXPECT_EQ("Rides.along",
            Eval(model.Get(), "Entities(0).ModelReferences('CoDriver').Inverse.Name").Shown());
}

TEST_F(FleetModel, EntitiesOutliveTheModel) {
  const Answer entity = Ask("Entities('Campaign')");
  const Answer reference = Ask("Entities('Person').ModelReferences('Boss')");
  m_model.Reset();
  m_logic.Reset();
  // The reference still holds the session's entities.
  EXPECT_EQ("Person", Eval(reference.Object(), "EntityType.Name").Shown());
  EXPECT_EQ("aotest", Eval(entity.Object(), "SuperType.Name").Shown());
}

TEST_F(FleetModel, EntitiesThatLostTheirSessionSaySo) {
  const Answer entity = Ask("Entities('Campaign')");
  m_model.Reset();
  m_logic.Reset();
  constexpr const char* kGone = "323 The object is no longer valid.";
  ExpectAll(entity.Object(), {{"Name", "Campaign"},
                              {"ModelProperties('name').Name", "Title"},
                              {"IsKindOf('aotest')", "1"},
                              {"SuperType", kGone},
                              {"SubTypes", kGone},
                              {"ModelReferences", kGone}});
}

TEST_F(FleetModel, ListsItsMembers) {
  struct ClassCase {
    const char* expression;
    const char* className;
    std::set<std::string> members;
  };
  const ClassCase cases[] = {
      {"", "DataStoreModel", {"Entities", "Export"}},
      {"Entities", "ModelEntities", {"Count", "Exists", "Item", "_NewEnum"}},
      {"Entities(0)",
       "ModelEntity",
       {"IsBaseType", "IsKindOf", "ModelProperties", "ModelReferences", "Name", "SubTypes",
        "SuperType"}},
      {"Entities(0).ModelProperties", "ModelProperties", {"Count", "Exists", "Item"}},
      {"Entities(0).ModelProperties(0)",
       "ModelProperty",
       {"BaseName", "DataType", "MaxOccur", "MinOccur", "Name"}},
      {"Entities(0).ModelReferences", "ModelReferences", {"Count", "Exists", "Item", "_NewEnum"}},
      {"Entities(0).ModelReferences(0)",
       "ModelReference",
       {"BaseName", "EntityType", "Inverse", "MaxOccur", "MinOccur", "Name"}}};
  for (const ClassCase& row : cases) {
    SCOPED_TRACE(row.className);
    const Answer object = Ask(row.expression);
    ASSERT_NE(nullptr, object.Object());
    EXPECT_EQ(row.className, cor::ToUtf8(object.Object()->GetClassName()));
    std::set<std::string> members;
    for (std::uint32_t i = 0; i < object.Object()->GetMemberCount(); ++i) {
      MemberInfo member;
      ASSERT_EQ(S_OK, object.Object()->GetMember(i, &member));
      members.insert(cor::ToUtf8(member.name));
    }
    EXPECT_EQ(row.members, members);
  }
}

}  // namespace
}  // namespace hv::vex

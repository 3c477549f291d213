// store/model/ModelScriptTest.cpp - the model of a real store, by name and by the typed faces.
#include <set>

#include <storefabric/IDataStoreModel.h>

#include "store/model/DataStoreModelImpl.h"
#include "store/model/DataStoreModelInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/support/Script.h"

namespace hv::vex {
namespace {

using test::kGone;
using test::kUnknown;
using test::NoMember;

class FleetModel : public test::FleetTest {
 protected:
  FleetModel() {
    EXPECT_EQ(S_OK, m_logic->SetStore(m_store.Get()));
    m_model = MakeRef<CDataStoreModelInt>(m_logic);
    m_script = test::Script(m_model.Get());
    Expect({{"Set campaign = Entities(0)", "Campaign"},
            {"Set properties = campaign.ModelProperties", "object"},
            {"Set references = campaign.ModelReferences", "[Runs|Driver|CoDriver]"}});
  }
  void Expect(const std::vector<test::Line>& lines) { m_script.Expect(lines); }

  Ref<CDataStoreModelImpl> m_logic = MakeRef<CDataStoreModelImpl>();
  Ref<IDataStoreModel> m_model;
  test::Script m_script;
};

const std::string kEntities = "Campaign|Run|Quantity|Matrix|Column|Person|aoMyTest|Part.Of.Truck";

TEST_F(FleetModel, ShowsEntitiesAndHowTheyDerive) {
  Expect({{"Entities", "[" + kEntities + "]"},
          {"Entities.Count", "8"},
          {"Entities.Item('Part.Of.Truck')", "Part.Of.Truck"},
          {"Entities.Item(7)", "Part.Of.Truck"},
          {"Entities.Exists('Run')", "1"},
          {"Entities.Exists('run')", "0"},
          {"Entities.Exists('aotest')", "0"},
          {"Entities.Exists('')", "0"},
          {"Set base = campaign.SuperType", "aotest"},
          {"base.IsBaseType", "1"},
          {"base.SuperType", "no object"},
          {"base.SubTypes", "[Campaign]"},
          {"campaign.SubTypes", "no object"},
          {"campaign.IsBaseType", "0"},
          {"Entities('aoMyTest').IsBaseType", "1"},
          {"campaign.IsKindOf('Campaign')", "1"},
          {"campaign.IsKindOf('CAMPAIGN')", "1"},
          {"campaign.IsKindOf('aotest')", "1"},
          {"campaign.IsKindOf('Run')", "0"},
          {"campaign.IsKindOf('Nobody')", "0"},
          {"campaign.IsKindOf('')", "0"},
          {"campaign.IsKindOf(1)", "0"},
          {"Entities('aoMyTest').IsKindOf('aotest')", "0"},
          {"campaign.IsKindOf(base)", "1"},
          {"campaign.IsKindOf(campaign)", "1"},
          {"base.IsKindOf(campaign)", "0"},
          {"campaign.IsKindOf(null)", kUnknown},  // neither a text nor an entity
          {"campaign.IsKindOf(Entities)", kUnknown}});
}

TEST_F(FleetModel, ShowsPropertiesOfPropertyTypesOnly) {
  std::string names;
  for (int i = 0; i < 14; ++i) {
    const std::string property = "properties(" + std::to_string(i) + ").";
    names += m_script.Show(property + "Name") + ":" + m_script.Show(property + "DataType") + " ";
  }
  EXPECT_EQ(
      "Id:4 Title:23 Start.Date:30 Score:10 Short:2 Long:3 LongLong:4 Byte:5 Float:9 Active:11 "
      "Mood:24 Tags:23 Levels:3 Empty:23 ",
      names);
  Expect({{"properties.Count", "14"},
          {"properties('TITLE')", "Title"},
          {"properties('name')", "Title"},
          {"properties('Title').BaseName", "name"},
          {"properties('Score').BaseName", test::kNotBase},
          {"properties('Start.Date').MinOccur", "0"},
          {"properties('Title').MaxOccur", "1"},
          {"properties('Tags').MaxOccur", "-1"},
          {"properties.Exists('Title')", "1"},
          {"properties.Exists('name')", "1"},
          {"properties('Picture')", NoMember("Picture")},
          {"properties('Driver')", NoMember("Driver")},
          {"properties('nothing')", NoMember("nothing")},
          {"properties(14)", NoMember("14")},
          {"properties(null)", test::kNoKey},
          {"properties._NewEnum", "refused"}});
  for (const std::string name :
       {"NAME", "", "nothing", "Picture", "Sheet", "Raw", "Z", "ZZ", "Driver"}) {
    EXPECT_EQ("0", m_script.Show("properties.Exists('" + name + "')")) << name;
  }
}

TEST_F(FleetModel, FollowsReferencesBothWays) {
  Expect({{"references.Count", "3"},
          {"references(0)", "Runs"},
          {"references('Runs').BaseName", "children"},
          {"references('children')", "Runs"},
          {"references('CHILDREN')", "Runs"},
          {"references('Runs').EntityType", "Run"},
          {"references('Runs').MinOccur", "0"},
          {"references('Runs').MaxOccur", "-1"},
          {"references('Driver').BaseName", ""},
          {"references('Driver').MinOccur", "1"},
          {"references('Driver').MaxOccur", "1"},
          {"references.Exists('driver')", "1"},
          {"references.Exists('children')", "1"},
          {"references.Exists('')", "0"},
          {"references.Exists('Title')", "0"},
          {"references('Title')", NoMember("Title")},
          {"references(3)", NoMember("3")},
          // Two references between the same entities don't get mixed up.
          {"references('Driver').Inverse", "Drives"},
          {"references('CoDriver').Inverse", "Rides.along"},
          {"references('CoDriver').Inverse.Inverse", "CoDriver"},
          {"references('CoDriver').Inverse.EntityType", "Campaign"},
          // An entity that refers to itself.
          {"Entities('Person').ModelReferences('Boss').EntityType", "Person"},
          {"Entities('Person').ModelReferences('Boss').Inverse", "Staff"},
          {"Set sits = Entities('Part.Of.Truck').ModelReferences('sits.in')", "sits.in"},
          {"sits.Inverse", "holds"},
          {"sits.EntityType", "Part.Of.Truck"},
          // The values of a local column are no reference.
          {"Set column = Entities('Column').ModelReferences", "[Matrix|Quantity]"},
          {"column.Exists('Values')", "0"},
          {"column.Exists('values')", "0"},
          {"column.Exists('VALUES')", "0"},
          {"column('Values')", NoMember("Values")}});
}

TEST_F(FleetModel, ShowsWhatOthersHaveAddedAfterARefresh) {
  std::string content = m_folder.Read("fleet.atfx");
  const auto rewrite = [&](std::string_view before, std::string_view text) {
    content.insert(content.find(before), text);
    m_folder.Write("fleet.atfx", content);
  };
  rewrite("<relation_attribute><name>Runs</name>",
          "<application_attribute><name>Late</name><datatype>DT_LONG</datatype>"
          "</application_attribute>");
  rewrite("</application_model>",
          "<application_element><name>Wheel</name><basetype>AoAny</basetype>"
          "<application_attribute><name>Id</name><base_attribute>id</base_attribute>"
          "</application_attribute></application_element>");
  Expect({{"Entities.Count", "8"}});
  m_store->Refresh();
  Expect({{"Entities", "[" + kEntities + "|Wheel]"},
          {"Entities('Wheel').ModelProperties.Count", "1"},
          {"Entities('Campaign').ModelProperties('Late').DataType", "3"},
          {"properties.Count", "15"},
          {"properties(14)", "Late"}});

  // Places known have other members now: nothing of this file is shown.
  rewrite("<application_attribute><name>Title",
          "<application_attribute><name>First</name><datatype>DT_LONG</datatype>"
          "</application_attribute>");
  EXPECT_THROW(m_store->Refresh(), Exception);
  Expect({{"Entities('Campaign').ModelProperties.Exists('First')", "0"}});
}

TEST_F(FleetModel, GivesCodesOnTheTypedFaceAndMessagesByName) {
  Expect({{"Entities('Nobody')", NoMember("Nobody")},
          {"Entities('')", NoMember("")},
          {"Entities('0')", NoMember("0")},  // a text is a name, also one of digits
          {"Entities(8)", NoMember("8")},
          {"Entities(-1)", NoMember("-1")},
          {"Entities(null)", test::kNoKey}});
  Ref<IModelEntities> entities;
  ASSERT_EQ(S_OK, m_model->get_Entities(entities.Put()));
  Ref<IModelEntity> entity;
  Variant index = Variant::R8(4.6);
  ASSERT_EQ(S_OK, entities->Item(Variant::RefTo(&index), entity.Put()));
  WString name;
  EXPECT_EQ(S_OK, entity->get_Name(&name));
  EXPECT_EQ("Person", cor::ToUtf8(name));
  EXPECT_EQ(E_POINTER, m_model->get_Entities(nullptr));
  EXPECT_EQ(E_POINTER, entities->Exists(u"Run", nullptr));
  EXPECT_EQ(E_POINTER, entity->get_Name(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_SubTypes(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_SuperType(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_ModelReferences(nullptr));
  EXPECT_EQ(E_POINTER, entity->get_IsBaseType(nullptr));
  EXPECT_EQ(E_POINTER, entity->IsKindOf(Variant::Text(u"Run"), nullptr));
}

TEST_F(FleetModel, ExportsWhatItRead) {
  const std::pair<const char*, const char*> kPaths[] = {
      {"x", "x.atfx"}, {"y.atfx", "y.atfx"}, {"z.txt", "z.txt"}, {"a & b <c>", "a & b <c>.atfx"}};
  for (const auto& [path, written] : kPaths) {
    ASSERT_EQ(S_OK, m_model->Export(cor::FromUtf8(m_folder.File(path).string())));
    EXPECT_FALSE(m_folder.Read(written).empty()) << written;
  }
  Expect({{"Export('/nowhere/at all/x.atfx')",
           "358 Cannot write the file /nowhere/at all/x.atfx. Maybe the file is write protected or "
           "the path does not exist."}});
  std::filesystem::rename(m_folder.File("x.atfx"), m_folder.File("fleet.atfx"));
  const auto copy = Open(u"<filename>");
  ASSERT_EQ(S_OK, m_logic->SetStore(copy.Get()));
  Expect({{"Entities", "[" + kEntities + "]"},
          {"Entities(0).ModelReferences('CoDriver').Inverse", "Rides.along"}});
}

TEST_F(FleetModel, EntitiesThatLostTheirSessionSaySo) {
  Expect({{"Set reference = Entities('Person').ModelReferences('Boss')", "Boss"},
          {"Set properties = null", "null"},
          {"Set references = null", "null"}});
  m_script.Set("", {});
  m_model.Reset();
  m_logic.Reset();
  // The reference still holds the session's entities.
  Expect({{"reference.EntityType", "Person"},
          {"campaign.SuperType", "aotest"},
          {"Set reference = null", "null"},
          {"campaign.Name", "Campaign"},
          {"campaign.ModelProperties('name')", "Title"},
          {"campaign.IsKindOf('aotest')", "1"},
          {"campaign.SuperType", kGone},
          {"campaign.SubTypes", kGone},
          {"campaign.ModelReferences", kGone}});
}

TEST_F(FleetModel, ListsItsMembers) {
  m_script.Set("model", Variant::Object(m_model.Get()));
  const std::pair<const char*, const char*> kMembers[] = {
      {"model", "DataStoreModel: Entities Export"},
      {"Entities", "ModelEntities: Count Exists Item _NewEnum"},
      {"campaign",
       "ModelEntity: IsBaseType IsKindOf ModelProperties ModelReferences Name SubTypes SuperType"},
      {"properties", "ModelProperties: Count Exists Item"},
      {"properties(0)", "ModelProperty: BaseName DataType MaxOccur MinOccur Name"},
      {"references", "ModelReferences: Count Exists Item _NewEnum"},
      {"references(0)", "ModelReference: BaseName EntityType Inverse MaxOccur MinOccur Name"}};
  for (const auto& [line, expected] : kMembers) {
    const Ref<IDispatch> object = m_script.Object(line);
    std::set<std::string> members;
    for (std::uint32_t i = 0; i < object->GetMemberCount(); ++i) {
      MemberInfo member;
      ASSERT_EQ(S_OK, object->GetMember(i, &member));
      members.insert(cor::ToUtf8(member.name));
    }
    std::string listed = cor::ToUtf8(WString(object->GetClassName())) + ":";
    for (const std::string& name : members) listed += " " + name;
    EXPECT_EQ(expected, listed);
  }
}

}  // namespace
}  // namespace hv::vex

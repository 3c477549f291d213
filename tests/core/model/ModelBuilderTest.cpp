// tests/core/model/ModelBuilderTest.cpp - what becomes of declarations: defaults, both directions
// of relations, deviations that are tolerated, and models that are refused.
#include "core/model/ModelBuilder.h"

#include <gtest/gtest.h>

#include "tests/core/model/ModelText.h"

namespace hv::vex::engine {
namespace {

/// "entity.name[base] target 0..1 inverse father" of each relation, with " made" behind one that
/// nobody declared.
std::string DescribeRelations(const Model& model, const Entity& entity) {
  constexpr const char* kKinds[] = {"none", "father", "child", "to", "from", "rel"};
  std::string text;
  for (const Relation& relation : entity.relations) {
    const Entity& target = model.At(relation.target);
    text += cor::ToUtf8(entity.name) + "." + cor::ToUtf8(relation.name);
    if (!relation.baseName.empty()) text += "[" + cor::ToUtf8(relation.baseName) + "]";
    text += " " + cor::ToUtf8(target.name) + " " + std::to_string(relation.minOccurs) + "..";
    text += relation.maxOccurs == kMany ? "N " : std::to_string(relation.maxOccurs) + " ";
    text += relation.inverse == kNone
                ? "-"
                : cor::ToUtf8(target.relations[static_cast<std::size_t>(relation.inverse)].name);
    text += std::string(" ") + kKinds[static_cast<std::size_t>(relation.relationship)];
    text += relation.isDeclared ? "\n" : " made\n";
  }
  return text;
}

TEST(ModelBuilder, TakesWhatIsLeftOpenFromTheBaseAttributeOfTheVersion) {
  struct Case {
    std::u16string_view version;
    const char* element;      // its base type
    const char* declaration;  // of the attribute "a"
    const char* expected;     // type, obligatory, unique, autogenerate; base name, enumeration
  };
  constexpr Case kCases[] = {
      {u"asam31", "AoTest", "base=id", "DT_LONGLONG oua id "},
      {u"asam31", "AoTest", "base=id type=DT_LONG autogenerate=false", "DT_LONG ou id "},
      {u"asam31", "aotest", "base=NAME obligatory=false", "DT_STRING  name "},
      {u"29", "AoExternalComponent", "base=start_offset", "DT_LONG  start_offset "},
      {u"asam28", "AoExternalComponent", "base=start_offset", "DT_LONGLONG  start_offset "},
      {u"asam31", "AoLocalColumn", "base=sequence_representation",
       "DT_ENUM o sequence_representation seq_rep_enum"},
      {u"asam31", "AoLocalColumn", "base=sequence_representation type=DT_LONG",
       "DT_LONG o sequence_representation "},
      {u"asam31", "AoLocalColumn", "base=generation_parameters",
       "DS_DOUBLE  generation_parameters "},
      {u"asam31", "AoTest", "type=DT_ENUM enum=gear unique=true", "DT_ENUM u  Gear"},
      {u"asam31", "AoTest", "enum=Gear", "DT_ENUM   Gear"},
      {u"asam30", "AoTest", "base=ao_created type=DT_DATE", "DT_DATE   "},
      {u"asam31", "AoTest", "", "DT_STRING   "},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.element) + " " + c.declaration);
    const auto model = Built(
        std::string("enum Gear First Second\nelement E ") + c.element + "\nattr a " + c.declaration,
        c.version);
    const Attribute& made = model->Find(u"E")->attributes.at(0);
    std::string text = cor::ToUtf8(NameOfType(made.type, made.sequence)) + " ";
    if (made.obligatory) text += "o";
    if (made.unique) text += "u";
    if (made.autogenerate) text += "a";
    text += " " + cor::ToUtf8(made.baseName) + " ";
    if (made.enumeration != kNone) {
      text += cor::ToUtf8(model->Enumerations()[static_cast<std::size_t>(made.enumeration)].name);
    }
    EXPECT_EQ(c.expected, text);
  }
}

TEST(ModelBuilder, FindsOrMakesBothDirectionsOfRelations) {
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"element Prj AoTest\nrel meas to=Mea base=children inverse=prj min=0 max=Many\n"
       "element Mea AoMeasurement\nrel prj to=Prj base=test inverse=meas min=1 max=1",
       "Prj.meas[children] Mea 0..N prj child\nMea.prj[test] Prj 1..1 meas father\n"},
      {"element Prj AoTest\nrel meas to=mea base=CHILDREN inverse=PRJ\n"
       "element Mea AoMeasurement\nrel prj to=Prj base=Test inverse=MEAS min=0",
       "Prj.meas[children] Mea 0..N prj child\nMea.prj[test] Prj 0..1 meas father\n"},
      {"element Prj AoTest\nrel meas to=Mea base=children inverse=prj\n"
       "element Mea AoMeasurement",
       "Prj.meas[children] Mea 0..N prj child\nMea.prj[test] Prj 1..1 meas father made\n"},
      {"element Prj AoTest\nrel subs to=Sub base=children inverse=p\nelement Sub AoSubTest",
       "Prj.subs[children] Sub 0..N p child\nSub.p[parent_test] Prj 1..1 subs father made\n"},
      {"element A AoAny\nrel x to=B max=1\nelement B AoAny",
       "A.x B 0..1 inverse_of_A_x to\nB.inverse_of_A_x A 0..N x from made\n"},
      {"element A AoAny\nrel x to=B inverse=id\nelement B AoAny\nattr id base=id",
       "A.x B 0..N inverse_of_A_x rel\nB.inverse_of_A_x A 0..N x rel made\n"},
      {"element A AoAny\nrel x to=B\nelement B AoAny\nattr Inverse_Of_A_X\n"
       "attr inverse_of_a_x_2",
       "A.x B 0..N inverse_of_A_x_3 rel\nB.inverse_of_A_x_3 A 0..N x rel made\n"},
      {"element A AoAny\nrel x to=B max=1\nelement B AoAny\nrel y to=A inverse=x",
       "A.x B 0..1 y to\nB.y A 0..N x from\n"},
      {"element Mea AoMeasurement\nrel dts to=Sm base=submatrices\nelement Sm AoSubmatrix\n"
       "rel other to=Mea\nrel m to=Mea base=measurement",
       "Mea.dts[submatrices] Sm 0..N m child\nMea.inverse_of_Sm_other Sm 0..N other rel made\n"
       "Sm.other Mea 0..N inverse_of_Sm_other rel\nSm.m[measurement] Mea 1..1 dts father\n"},
      {"element A AoAny\nrel x to=B inverse=y\nelement B AoAny\nrel y to=C\nelement C AoAny",
       "A.x B 0..N inverse_of_A_x rel\nB.y C 0..N inverse_of_B_y rel\n"
       "B.inverse_of_A_x A 0..N x rel made\nC.inverse_of_B_y B 0..N y rel made\n"},
      {"element A AoAny\nrel x to=B inverse=y\nrel z to=B inverse=y\nelement B AoAny\n"
       "rel y to=A inverse=z",
       "A.x B 0..N inverse_of_A_x rel\nA.z B 0..N y rel\nB.y A 0..N z rel\n"
       "B.inverse_of_A_x A 0..N x rel made\n"},
      {"element G AoAny\nrel up to=G base=parent inverse=down\n"
       "rel down to=G base=children inverse=up",
       "G.up[parent] G 0..1 down father\nG.down[children] G 0..N up child\n"},
      {"element G AoAny\nrel up to=G base=parent\nrel down to=G base=children",
       "G.up[parent] G 0..1 down father\nG.down[children] G 0..N up child\n"},
      {"element G AoAny\nrel up to=G base=parent",
       "G.up[parent] G 0..1 inverse_of_G_up father\n"
       "G.inverse_of_G_up[children] G 0..N up child made\n"},
      {"element G AoAny\nrel peers to=G inverse=peers", "G.peers G 0..N peers rel\n"},
      {"element T AoTest\nrel subs to=S base=children\nrel meas to=M base=children\n"
       "element S AoSubTest\nrel t to=T base=parent_test\nelement M AoMeasurement\n"
       "rel mt to=T base=test",
       "T.subs[children] S 0..N t child\nT.meas[children] M 0..N mt child\n"
       "S.t[parent_test] T 1..1 subs father\nM.mt[test] T 1..1 meas father\n"},
      {"element A AoMeasurementQuantity\nrel y-axis to=A base=scales max=Many inverse=x-axis\n"
       "rel x-axis to=A base=is_scaled_by max=Many inverse=y-axis\nelement B AoAny",
       "A.y-axis[scales] A 0..N x-axis to\nA.x-axis[is_scaled_by] A 0..N y-axis from\n"},
      {"element A AoAny\nrel x to=B base=nothing max=1 inverse=y\nelement B AoAny\n"
       "rel y to=A inverse=x max=1",
       "A.x B 0..1 y rel\nB.y A 0..1 x rel\n"},
      {"element P AoTest\nrel c to=M base=children inverse=f\nelement M AoMeasurement\n"
       "rel f to=P inverse=c max=1",
       "P.c[children] M 0..N f child\nM.f P 0..1 c father\n"},
  };
  for (const auto& [declared, expected] : kCases) {
    const auto model = Built(declared);
    std::string relations;
    for (const Entity& entity : model->Entities()) {
      if (!entity.isBase) relations += DescribeRelations(*model, entity);
    }
    EXPECT_EQ(expected, relations) << declared;
  }
}

TEST(ModelBuilder, TellsWhatIsWrong) {
  struct Case {
    const char* base;      // of the element A
    const char* declared;  // in it and behind it
    const char* problems;  // "!" marks an error, which refuses the model
  };
  constexpr Case kCases[] = {
      {"AoAny", "attr n base=name", "Element 'A': no attribute has the base attribute 'id'.\n"},
      {"AoCar", "", "!Element 'A': the base type 'AoCar' is unknown.\n"},
      {"", "", "!Element 'A': the base type '' is unknown.\n"},
      {"AoMimetypeMap", "", "!Element 'A': the base type 'AoMimetypeMap' is unknown.\n"},
      {"AoAny", "rel x to=B",
       "!Element 'A', relation 'x': refers to the element 'B', which doesn't exist.\n"},
      {"AoAny", "rel x to=aounit",
       "!Element 'A', relation 'x': refers to the element 'aounit', which doesn't exist.\n"},
      {"AoAny", "attr x type=DT_ENUM enum=Color",
       "!Element 'A', attribute 'x': the enumeration 'Color' doesn't exist.\n"},
      {"AoAny", "attr x type=DS_ENUM", "!Element 'A', attribute 'x': no enumeration is given.\n"},
      {"AoAny", "element A AoTest\nattr x type=DT_LONG", "!Element 'A': the name is taken.\n"},
      {"AoAny", "element aotest AoTest", "!Element 'aotest': the name is taken.\n"},
      {"AoAny", "attr x type=DT_LONG\nrel x to=A",
       "Element 'A', relation 'x': the name is taken; ignored.\n"},
      {"AoAny", "enum E a b\nenum E c\nenum datatype_enum DT_LONG",
       "Enumeration 'E': the name is taken; ignored.\n"
       "Enumeration 'datatype_enum': the name is taken; ignored.\n"},
      {"AoAny", "attr x type=DT_LONG base=speed\nrel y to=A base=test inverse=y",
       "Element 'A', attribute 'x': the base attribute 'speed' is unknown; ignored.\n"
       "Element 'A', relation 'y': the base relation 'test' is unknown; ignored.\n"},
      {"AoAny", "attr x base=name\nattr y base=Name",
       "Element 'A', attribute 'y': not the first one with the base attribute 'name'.\n"},
      {"AoTest", "rel y to=A base=children inverse=y",
       "Element 'A', relation 'y': the base relation 'children' doesn't lead to AoTest.\n"},
      {"AoAny", "attr x", "Element 'A', attribute 'x': no data type; taken for a text.\n"},
      {"AoAny", "rel x to=B inverse=y\nelement B AoAny",
       "Element 'A', relation 'x': no inverse relation in 'B'; 'y' was made.\n"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.problems);
    ModelBuilder builder(u"asam31");
    Declare(builder, std::string("element A ") + c.base + "\n" + c.declared);
    const auto model = builder.Build();
    std::string problems;
    std::istringstream lines(DescribeProblems(builder));
    for (std::string line; std::getline(lines, line);) {
      // Every element here lacks an id and a name; only the first case is about that.
      if (&c == kCases || line.find("no attribute has the base") == line.npos) {
        problems += line + "\n";
      }
    }
    EXPECT_EQ(c.problems, problems);
    EXPECT_EQ(problems.find('!') != problems.npos, model == nullptr);
  }
}

TEST(ModelBuilder, RefusesMembersWithoutAnElementOrName) {
  ModelBuilder builder(u"asam36");
  AttributeSpec attribute;
  attribute.name = u"a";
  EXPECT_FALSE(builder.AddAttribute(attribute));
  EXPECT_FALSE(builder.BeginEntity(u"", u"AoTest"));
  EXPECT_TRUE(builder.BeginEntity(u"A", u"AoTest"));
  EXPECT_TRUE(builder.AddAttribute(attribute));
  EXPECT_FALSE(builder.AddAttribute(attribute));
  EXPECT_FALSE(builder.AddRelation({}));
  EXPECT_FALSE(builder.BeginEntity(u"A", u"AoTest"));
  attribute.name = u"b";
  EXPECT_FALSE(builder.AddAttribute(attribute)) << "went to the element before";
}

TEST(Models, HoldBaseEntitiesBeforeApplicationEntities) {
  const auto model = Built(
      "element Test AoTest\nattr b base=name\nrel r to=Sub base=children inverse=p\n"
      "attr a base=id\nelement Sub AoSubTest\nrel p to=Test base=parent_test inverse=r\n"
      "element Sub2 AoSubTest\nattr x base=description",
      u"asam31", u"/DataModels/VEX/QMD/1_0");
  EXPECT_EQ(u"asam31", model->BaseModelVersion());
  EXPECT_EQ(31, model->BaseVersion());
  EXPECT_TRUE(model->HasPart(u"/DataModels/VEX/QMD/1_0"));
  EXPECT_FALSE(model->HasPart(u"/DataModels/VEX/QMD"));
  ASSERT_EQ(29u + 3u, model->Entities().size());  // no AoMimetypeMap yet
  EXPECT_EQ(u"Test", model->Entities()[29].name);

  const Entity& test = *model->Find(u"Test");
  const Entity& base = *model->Find(u"aotest");
  const Entity& baseSub = *model->Find(u"aosubtest");
  EXPECT_TRUE(base.isBase);
  EXPECT_EQ(base.id, test.super);
  EXPECT_EQ(u"aotest", model->BaseNameOf(test.id));
  EXPECT_EQ(u"aotest", model->BaseNameOf(base.id));
  EXPECT_TRUE(model->IsKindOf(test.id, base.id));
  EXPECT_FALSE(model->IsKindOf(base.id, test.id));
  EXPECT_FALSE(model->IsKindOf(test.id, baseSub.id));
  EXPECT_EQ(std::vector{test.id}, model->ApplicationEntitiesOf(test.id));
  EXPECT_EQ((std::vector<EntityId>{30, 31}), model->ApplicationEntitiesOf(baseSub.id));
  EXPECT_TRUE(model->ApplicationEntitiesOf(model->Find(u"aolog")->id).empty());

  EXPECT_EQ(nullptr, model->Find(u"AOTEST"));
  EXPECT_EQ(&base, model->FindAnyCase(u"AOTEST"));
  EXPECT_EQ(&test, model->FindAnyCase(u"tEST"));
  EXPECT_EQ(nullptr, model->FindAnyCase(u"tESTs"));

  std::u16string order;
  for (const MemberRef& member : test.members) {
    order +=
        member.isRelation ? test.relations[member.index].name : test.attributes[member.index].name;
  }
  EXPECT_EQ(u"bra", order);
  EXPECT_EQ(1, test.idAttribute);
  EXPECT_EQ(0, test.nameAttribute);
  EXPECT_EQ(kNone, model->At(31).idAttribute);
  EXPECT_EQ(
      "aosubtest.ao_file_children[ao_file_children] aofile 0..N ao_file_parent child\n"
      "aosubtest.children[children] aosubtest 0..N parent_test child\n"
      "aosubtest.parent_test[parent_test] aotest 1..1 children father\n",
      DescribeRelations(*model, baseSub));
}

TEST(Models, FindMembersByNameBeforeBaseNameBeforeAnyCase) {
  // "version" is the base name of one attribute and the own name of another.
  const auto model = Built(
      "element T AoTest\nattr Rev base=version\nattr version type=DT_LONG\n"
      "attr NAME type=DT_LONG\nattr n base=name\nrel one to=M base=children\n"
      "rel two to=S base=children\nrel Children2 to=M\n"
      "element M AoMeasurement\nrel up to=T base=test\nelement S AoSubTest");
  const Entity& entity = *model->Find(u"T");
  struct Case {
    std::u16string_view name;
    std::int32_t attribute, baseAttribute, relation, baseRelation;
  };
  constexpr Case kCases[] = {
      {u"version", 1, 0, kNone, kNone},
      {u"VERSION", 1, kNone, kNone, kNone},
      {u"rev", 0, kNone, kNone, kNone},
      {u"name", 3, 3, kNone, kNone},
      {u"Name", 2, kNone, kNone, kNone},
      {u"children", kNone, kNone, 0, 0},
      {u"CHILDREN", kNone, kNone, 0, kNone},
      {u"TWO", kNone, kNone, 1, kNone},
      {u"", kNone, kNone, kNone, kNone},
      {u"a_name_longer_than_all", kNone, kNone, kNone, kNone},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.name));
    EXPECT_EQ(c.attribute, entity.FindAttribute(c.name));
    EXPECT_EQ(c.baseAttribute, entity.FindBaseAttribute(c.name));
    EXPECT_EQ(c.relation, entity.FindRelation(c.name));
    EXPECT_EQ(c.baseRelation, entity.FindBaseRelation(c.name));
  }
  EXPECT_EQ(0, entity.FirstRelationOf(Relationship::Child));
  EXPECT_EQ(kNone, entity.FirstRelationOf(Relationship::Father));
  EXPECT_EQ(0, model->Find(u"M")->FirstRelationOf(Relationship::Father));
}

TEST(Models, FindNamesOutsideAsciiInAnyCase) {
  // The last letter is a capital outside the first plane.
  const auto model = Built("element Pr\u00fcfling AoUnitUnderTest\nattr L\u00c4NGE\U00010400");
  const Entity* entity = model->FindAnyCase(u"PR\u00dcFLING");
  ASSERT_NE(nullptr, entity);
  EXPECT_EQ(0, entity->FindAttribute(u"l\u00e4nge\U00010428"));
  EXPECT_EQ(kNone, entity->FindAttribute(u"l\u00e4nge\xd801"));  // half a pair
}

TEST(Enumerations, AreFoundExactlyThenInAnyCase) {
  const auto model = Built("enum State on ON off\nelement A AoAny");
  const Enumeration& own = *model->FindEnumeration(u"STATE");
  EXPECT_FALSE(own.isBase);
  EXPECT_EQ(1, own.ValueOf(u"ON"));
  EXPECT_EQ(0, own.ValueOf(u"On"));
  EXPECT_EQ(2, own.ValueOf(u"Off"));
  EXPECT_EQ(std::nullopt, own.ValueOf(u"gone"));
  EXPECT_EQ(u"off", own.ItemOf(2)->name);
  EXPECT_EQ(nullptr, own.ItemOf(3));
  const Enumeration& base = *model->FindEnumeration(u"typespec_enum");
  EXPECT_TRUE(base.isBase);
  EXPECT_EQ(14, base.ValueOf(u"DT_BLOB"));
}

TEST(ModelsWithoutBaseModel, TakeTheirOwnBaseNames) {
  ModelBuilder builder = ModelBuilder::WithoutBaseModel();
  Declare(builder,
          "element Manager AsamQuery_Manager\nattr Id base=ID type=DT_LONGLONG\n"
          "rel Queries to=Query base=Queries inverse=Manager\n"
          "element Query AsamQuery\nattr Id base=id type=DT_LONGLONG\n"
          "attr Text base=text type=DT_STRING\n"
          "rel Manager to=Manager base=manager inverse=Queries max=1\n"
          "element Folder AsamQuery\nattr Depth base=depth type=DT_LONG\n"
          "element Loose\nattr x type=DT_LONG\nrel q to=Query\n"
          "element query Query\nrel next to=query base=next max=1");
  const auto model = builder.Build();
  ASSERT_TRUE(model) << DescribeProblems(builder);
  EXPECT_EQ(0, model->BaseVersion());
  EXPECT_EQ(nullptr, model->Find(u"aotest"));
  const Entity& base = *model->Find(u"asamquery_manager");
  EXPECT_EQ(std::vector{model->Find(u"Manager")->id}, model->ApplicationEntitiesOf(base.id));
  const Entity& query = *model->Find(u"asamquery");
  EXPECT_EQ(
      "asamquery_manager.queries[queries] asamquery 0..N manager from\n"
      "asamquery.manager[manager] asamquery_manager 0..1 queries to\n"
      "Manager.Queries[queries] Query 0..N Manager from\n",
      DescribeRelations(*model, base) + DescribeRelations(*model, query) +
          DescribeRelations(*model, *model->Find(u"Manager")));
  ASSERT_EQ(3u, query.attributes.size());
  EXPECT_EQ(2, query.FindAttribute(u"depth"));
  EXPECT_EQ(0, model->Find(u"Query")->idAttribute);
  EXPECT_EQ(kNoEntity, model->Find(u"Loose")->super);
  EXPECT_EQ(u"Loose", model->BaseNameOf(model->Find(u"Loose")->id));
  EXPECT_TRUE(model->Enumerations().empty());
  // An element may bear its base name.
  EXPECT_FALSE(model->Find(u"query")->isBase);
  EXPECT_TRUE(model->At(model->Find(u"query")->super).isBase);
}

TEST(ModelsWithoutBaseModel, RefuseAMissingTarget) {
  ModelBuilder builder = ModelBuilder::WithoutBaseModel();
  Declare(builder, "element A B\nrel x to=C base=x");
  EXPECT_EQ(nullptr, builder.Build());
  EXPECT_EQ("!Element 'A', relation 'x': refers to the element 'C', which doesn't exist.\n",
            DescribeProblems(builder));
}

}  // namespace
}  // namespace hv::vex::engine

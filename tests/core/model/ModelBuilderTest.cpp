// tests/core/model/ModelBuilderTest.cpp - what becomes of declarations: defaults, both directions
// of relations, deviations that are tolerated, and models that are refused.
#include "core/model/ModelBuilder.h"

#include <gtest/gtest.h>

#include "tests/core/model/ModelText.h"

namespace hv::vex::engine {
namespace {

// --- attributes --------------------------------------------------------------------------------

struct AttributeCase {
  const char* name;
  const char* version;
  const char* element;      ///< base type
  const char* declaration;  ///< of the attribute "a"
  OdsType type;
  bool sequence;
  const char* flags;  ///< o obligatory, u unique, a autogenerate
  const char* baseName;
  const char* enumeration;
};

class AttributeDefaults : public ::testing::TestWithParam<AttributeCase> {};

TEST_P(AttributeDefaults, ComeFromTheBaseAttributeOfTheVersion) {
  const AttributeCase& c = GetParam();
  ModelBuilder builder(Wide(c.version));
  Declare(builder,
          "enum Gear First Second\nelement E " + std::string(c.element) + "\n" + c.declaration);
  const auto model = builder.Build();
  ASSERT_TRUE(model) << DescribeProblems(builder);
  const Attribute& made = model->Find(u"E")->attributes.at(0);
  EXPECT_EQ(made.type, c.type);
  EXPECT_EQ(made.sequence, c.sequence);
  EXPECT_EQ(std::string(made.obligatory ? "o" : "") + (made.unique ? "u" : "") +
                (made.autogenerate ? "a" : ""),
            c.flags);
  EXPECT_EQ(Narrow(made.baseName), c.baseName);
  EXPECT_EQ(made.enumeration == kNone
                ? ""
                : Narrow(model->Enumerations()[static_cast<std::size_t>(made.enumeration)].name),
            c.enumeration);
}

const AttributeCase kAttributes[] = {
    {"Id", "asam31", "AoTest", "attr a base=id", OdsType::LongLong, false, "oua", "id", ""},
    {"IdAsLong", "asam31", "AoTest", "attr a base=id type=DT_LONG autogenerate=false",
     OdsType::Long, false, "ou", "id", ""},
    {"NameInAnyCase", "asam31", "aotest", "attr a base=NAME obligatory=false", OdsType::String,
     false, "", "name", ""},
    {"RowsOf31", "asam31", "AoSubMatrix", "attr a base=number_of_rows", OdsType::Long, false, "o",
     "number_of_rows", ""},
    {"RowsOf36", "asam36", "AOSUBMATRIX", "attr a base=number_of_rows", OdsType::LongLong, false,
     "o", "number_of_rows", ""},
    {"OffsetOfBareNumber", "29", "AoExternalComponent", "attr a base=start_offset", OdsType::Long,
     false, "", "start_offset", ""},
    {"OffsetOfOldVersion", "asam28", "AoExternalComponent", "attr a base=start_offset",
     OdsType::LongLong, false, "", "start_offset", ""},
    {"BaseEnum", "asam31", "AoLocalColumn", "attr a base=sequence_representation", OdsType::Enum,
     false, "o", "sequence_representation", "seq_rep_enum"},
    {"BaseEnumAsNumber", "asam31", "AoLocalColumn",
     "attr a base=sequence_representation type=DT_LONG", OdsType::Long, false, "o",
     "sequence_representation", ""},
    {"Sequence", "asam31", "AoLocalColumn", "attr a base=generation_parameters", OdsType::Double,
     true, "", "generation_parameters", ""},
    {"OwnEnum", "asam31", "AoTest", "attr a type=DT_ENUM enum=gear unique=true", OdsType::Enum,
     false, "u", "", "Gear"},
    {"OwnEnumWithoutType", "asam31", "AoTest", "attr a enum=Gear", OdsType::Enum, false, "", "",
     "Gear"},
    {"NewerBaseAttribute", "asam30", "AoTest", "attr a base=ao_created type=DT_DATE", OdsType::Date,
     false, "", "", ""},
    {"NothingSaid", "asam31", "AoTest", "attr a", OdsType::String, false, "", "", ""},
};
INSTANTIATE_TEST_SUITE_P(All, AttributeDefaults, ::testing::ValuesIn(kAttributes),
                         [](const auto& row) { return std::string(row.param.name); });

// --- relations ---------------------------------------------------------------------------------

struct RelationCase {
  const char* name;
  const char* text;
  const char* entityA;
  const char* relationsA;
  const char* entityB;
  const char* relationsB;
};

class RelationDirections : public ::testing::TestWithParam<RelationCase> {};

TEST_P(RelationDirections, AreFoundOrMade) {
  const RelationCase& c = GetParam();
  ModelBuilder builder(u"asam31");
  Declare(builder, c.text);
  const auto model = builder.Build();
  ASSERT_TRUE(model) << DescribeProblems(builder);
  EXPECT_EQ(DescribeRelations(*model, Wide(c.entityA)), c.relationsA) << DescribeProblems(builder);
  EXPECT_EQ(DescribeRelations(*model, Wide(c.entityB)), c.relationsB) << DescribeProblems(builder);
}

const RelationCase kRelations[] = {
    {"BothTold",
     "element Prj AoTest\nrel meas to=Mea base=children inverse=prj min=0 max=Many\n"
     "element Mea AoMeasurement\nrel prj to=Prj base=test inverse=meas min=1 max=1",
     "Prj", "meas[children] Mea 0..N prj child\n", "Mea", "prj[test] Prj 1..1 meas father\n"},
    {"RangesFromTheBaseRelation",
     "element Prj AoTest\nrel meas to=mea base=CHILDREN inverse=PRJ\n"
     "element Mea AoMeasurement\nrel prj to=Prj base=Test inverse=MEAS min=0",
     "Prj", "meas[children] Mea 0..N prj child\n", "Mea", "prj[test] Prj 0..1 meas father\n"},
    {"InverseMissingButNamed",
     "element Prj AoTest\nrel meas to=Mea base=children inverse=prj\nelement Mea AoMeasurement",
     "Prj", "meas[children] Mea 0..N prj child\n", "Mea", "prj[test] Prj 1..1 meas father made\n"},
    {"InverseMissingInSubTest",
     "element Prj AoTest\nrel subs to=Sub base=children inverse=p\nelement Sub AoSubTest", "Prj",
     "subs[children] Sub 0..N p child\n", "Sub", "p[parent_test] Prj 1..1 subs father made\n"},
    {"InverseMissingUnnamed", "element A AoAny\nrel x to=B max=1\nelement B AoAny", "A",
     "x B 0..1 inverse_of_A_x to\n", "B", "inverse_of_A_x A 0..N x from made\n"},
    {"InverseNamedLikeAnAttribute",
     "element A AoAny\nrel x to=B inverse=id\nelement B AoAny\nattr id base=id", "A",
     "x B 0..N inverse_of_A_x rel\n", "B", "inverse_of_A_x A 0..N x rel made\n"},
    {"MadeNameTaken",
     "element A AoAny\nrel x to=B\nelement B AoAny\nattr Inverse_Of_A_X\nattr inverse_of_a_x_2",
     "A", "x B 0..N inverse_of_A_x_3 rel\n", "B", "inverse_of_A_x_3 A 0..N x rel made\n"},
    {"OnlyOneSideNames", "element A AoAny\nrel x to=B max=1\nelement B AoAny\nrel y to=A inverse=x",
     "A", "x B 0..1 y to\n", "B", "y A 0..N x from\n"},
    {"ByBaseRelation",
     "element Mea AoMeasurement\nrel dts to=Sm base=submatrices\n"
     "element Sm AoSubmatrix\nrel other to=Mea\nrel m to=Mea base=measurement",
     "Mea", "dts[submatrices] Sm 0..N m child\ninverse_of_Sm_other Sm 0..N other rel made\n", "Sm",
     "other Mea 0..N inverse_of_Sm_other rel\nm[measurement] Mea 1..1 dts father\n"},
    {"InverseLeadsElsewhere",
     "element A AoAny\nrel x to=B inverse=y\nelement B AoAny\nrel y to=C\nelement C AoAny", "A",
     "x B 0..N inverse_of_A_x rel\n", "B",
     "y C 0..N inverse_of_B_y rel\ninverse_of_A_x A 0..N x rel made\n"},
    {"TwoClaimOneInverse",
     "element A AoAny\nrel x to=B inverse=y\nrel z to=B inverse=y\n"
     "element B AoAny\nrel y to=A inverse=z",
     "A", "x B 0..N inverse_of_A_x rel\nz B 0..N y rel\n", "B",
     "y A 0..N z rel\ninverse_of_A_x A 0..N x rel made\n"},
    {"SelfByName",
     "element G AoAny\nrel up to=G base=parent inverse=down\nrel down to=G base=children "
     "inverse=up\nelement H AoAny",
     "G", "up[parent] G 0..1 down father\ndown[children] G 0..N up child\n", "H", ""},
    {"SelfByBase",
     "element G AoAny\nrel up to=G base=parent\nrel down to=G base=children\nelement H AoAny", "G",
     "up[parent] G 0..1 down father\ndown[children] G 0..N up child\n", "H", ""},
    {"SelfOneSided", "element G AoAny\nrel up to=G base=parent\nelement H AoAny", "G",
     "up[parent] G 0..1 inverse_of_G_up father\n"
     "inverse_of_G_up[children] G 0..N up child made\n",
     "H", ""},
    {"OwnInverse", "element G AoAny\nrel peers to=G inverse=peers\nelement H AoAny", "G",
     "peers G 0..N peers rel\n", "H", ""},
    {"SameBaseRelationTwice",
     "element T AoTest\nrel subs to=S base=children\nrel meas to=M base=children\n"
     "element S AoSubTest\nrel t to=T base=parent_test\n"
     "element M AoMeasurement\nrel mt to=T base=test",
     "T", "subs[children] S 0..N t child\nmeas[children] M 0..N mt child\n", "M",
     "mt[test] T 1..1 meas father\n"},
    {"BothDirectionsMany",
     "element A AoMeasurementQuantity\nrel y-axis to=A base=scales max=Many inverse=x-axis\n"
     "rel x-axis to=A base=is_scaled_by max=Many inverse=y-axis\nelement B AoAny",
     "A", "y-axis[scales] A 0..N x-axis to\nx-axis[is_scaled_by] A 0..N y-axis from\n", "B", ""},
    {"UnknownBaseRelation",
     "element A AoAny\nrel x to=B base=nothing max=1 inverse=y\n"
     "element B AoAny\nrel y to=A inverse=x max=1",
     "A", "x B 0..1 y rel\n", "B", "y A 0..1 x rel\n"},
    {"KindFromTheOtherSide",
     "element P AoTest\nrel c to=M base=children inverse=f\nelement M AoMeasurement\n"
     "rel f to=P inverse=c max=1",
     "P", "c[children] M 0..N f child\n", "M", "f P 0..1 c father\n"},
};
INSTANTIATE_TEST_SUITE_P(All, RelationDirections, ::testing::ValuesIn(kRelations),
                         [](const auto& row) { return std::string(row.param.name); });

// --- problems ----------------------------------------------------------------------------------

struct ProblemCase {
  const char* name;
  const char* text;
  const char* problems;  ///< "!" marks an error, which refuses the model
};

class ModelProblems : public ::testing::TestWithParam<ProblemCase> {};

TEST_P(ModelProblems, NameWhatIsWrong) {
  const ProblemCase& c = GetParam();
  ModelBuilder builder(u"asam31");
  Declare(builder, c.text);
  const auto model = builder.Build();
  std::string problems;
  std::istringstream lines(DescribeProblems(builder));
  for (std::string line; std::getline(lines, line);) {
    // Every element here lacks an id and a name; only one case is about that.
    if (line.find("no attribute has the base attribute") == std::string::npos ||
        std::string(c.name) == "Identity") {
      problems += line + "\n";
    }
  }
  EXPECT_EQ(problems, c.problems);
  EXPECT_EQ(model == nullptr, problems.find('!') != std::string::npos);
}

const ProblemCase kProblems[] = {
    {"Identity", "element A AoAny\nattr n base=name",
     "Element 'A': no attribute has the base attribute 'id'.\n"},
    {"UnknownBaseType", "element A AoCar", "!Element 'A': the base type 'AoCar' is unknown.\n"},
    {"EmptyBaseType", "element A", "!Element 'A': the base type '' is unknown.\n"},
    {"NewerBaseType", "element A AoMimetypeMap",
     "!Element 'A': the base type 'AoMimetypeMap' is unknown.\n"},
    {"UnknownTarget", "element A AoAny\nrel x to=B",
     "!Element 'A', relation 'x': refers to the element 'B', which doesn't exist.\n"},
    {"BaseEntityAsTarget", "element A AoAny\nrel x to=aounit",
     "!Element 'A', relation 'x': refers to the element 'aounit', which doesn't exist.\n"},
    {"UnknownEnumeration", "element A AoAny\nattr x type=DT_ENUM enum=Color",
     "!Element 'A', attribute 'x': the enumeration 'Color' doesn't exist.\n"},
    {"EnumWithoutEnumeration", "element A AoAny\nattr x type=DS_ENUM",
     "!Element 'A', attribute 'x': no enumeration is given.\n"},
    {"ElementTwice", "element A AoAny\nelement A AoTest\nattr x type=DT_LONG",
     "!Element 'A': the name is taken.\n"},
    {"NameOfABaseElement", "element aotest AoTest", "!Element 'aotest': the name is taken.\n"},
    {"MemberTwice", "element A AoAny\nattr x type=DT_LONG\nrel x to=A",
     "Element 'A', relation 'x': the name is taken; ignored.\n"},
    {"EnumerationTwice", "enum E a b\nenum E c\nenum datatype_enum DT_LONG\nelement A AoAny",
     "Enumeration 'E': the name is taken; ignored.\n"
     "Enumeration 'datatype_enum': the name is taken; ignored.\n"},
    {"UnknownBaseNames",
     "element A AoAny\nattr x type=DT_LONG base=speed\nrel y to=A base=test "
     "inverse=y",
     "Element 'A', attribute 'x': the base attribute 'speed' is unknown; ignored.\n"
     "Element 'A', relation 'y': the base relation 'test' is unknown; ignored.\n"},
    {"BaseAttributeTwice", "element A AoAny\nattr x base=name\nattr y base=Name",
     "Element 'A', attribute 'y': not the first one with the base attribute 'name'.\n"},
    {"BaseRelationElsewhere", "element A AoTest\nrel y to=A base=children inverse=y",
     "Element 'A', relation 'y': the base relation 'children' doesn't lead to AoTest.\n"},
    {"NoType", "element A AoAny\nattr x",
     "Element 'A', attribute 'x': no data type; taken for a text.\n"},
    {"MadeInverse", "element A AoAny\nrel x to=B inverse=y\nelement B AoAny",
     "Element 'A', relation 'x': no inverse relation in 'B'; 'y' was made.\n"},
};
INSTANTIATE_TEST_SUITE_P(All, ModelProblems, ::testing::ValuesIn(kProblems),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ModelBuilderCalls, RefuseMembersWithoutAnElementOrName) {
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

// --- the model as a whole ------------------------------------------------------------------------

TEST(Models, HoldBaseEntitiesBeforeApplicationEntities) {
  ModelBuilder builder(u"asam31");
  Declare(builder,
          "element Test AoTest\nattr b base=name\nrel r to=Sub base=children inverse=p\n"
          "attr a base=id\nelement Sub AoSubTest\nrel p to=Test base=parent_test inverse=r\n"
          "element Sub2 AoSubTest\nattr x base=description");
  builder.AddPart(u"/DataModels/VEX/QMD/1_0");
  const auto model = builder.Build();
  ASSERT_TRUE(model);
  EXPECT_EQ(model->BaseModelVersion(), u"asam31");
  EXPECT_EQ(model->BaseVersion(), 31);
  EXPECT_TRUE(model->HasPart(u"/DataModels/VEX/QMD/1_0"));
  EXPECT_FALSE(model->HasPart(u"/DataModels/VEX/QMD"));
  ASSERT_EQ(model->Entities().size(), 29u + 3u);  // no AoMimetypeMap yet
  EXPECT_EQ(model->Entities()[29].name, u"Test");

  const Entity& test = *model->Find(u"Test");
  const Entity& base = *model->Find(u"aotest");
  const Entity& baseSub = *model->Find(u"aosubtest");
  EXPECT_TRUE(base.isBase);
  EXPECT_EQ(test.super, base.id);
  EXPECT_EQ(model->BaseNameOf(test.id), u"aotest");
  EXPECT_EQ(model->BaseNameOf(base.id), u"aotest");
  EXPECT_TRUE(model->IsKindOf(test.id, base.id));
  EXPECT_FALSE(model->IsKindOf(base.id, test.id));
  EXPECT_FALSE(model->IsKindOf(test.id, baseSub.id));
  EXPECT_EQ(model->ApplicationEntitiesOf(test.id), std::vector<EntityId>{test.id});
  EXPECT_EQ(model->ApplicationEntitiesOf(baseSub.id), (std::vector<EntityId>{30, 31}));
  EXPECT_TRUE(model->ApplicationEntitiesOf(model->Find(u"aolog")->id).empty());

  EXPECT_EQ(model->Find(u"AOTEST"), nullptr);
  EXPECT_EQ(model->FindAnyCase(u"AOTEST"), &base);
  EXPECT_EQ(model->FindAnyCase(u"tEST"), &test);
  EXPECT_EQ(model->FindAnyCase(u"tESTs"), nullptr);

  std::string order;
  for (const MemberRef& member : test.members) {
    order += Narrow(member.isRelation ? test.relations[member.index].name
                                      : test.attributes[member.index].name);
  }
  EXPECT_EQ(order, "bra");
  EXPECT_EQ(test.idAttribute, 1);
  EXPECT_EQ(test.nameAttribute, 0);
  EXPECT_EQ(model->At(31).idAttribute, kNone);
  EXPECT_EQ(DescribeRelations(*model, u"aosubtest"),
            "ao_file_children[ao_file_children] aofile 0..N ao_file_parent child\n"
            "children[children] aosubtest 0..N parent_test child\n"
            "parent_test[parent_test] aotest 1..1 children father\n");
}

TEST(Models, FindMembersByNameBeforeBaseNameBeforeAnyCase) {
  ModelBuilder builder(u"asam31");
  // "version" is the base name of one attribute and the own name of another.
  Declare(builder,
          "element T AoTest\nattr Rev base=version\nattr version type=DT_LONG\n"
          "attr NAME type=DT_LONG\nattr n base=name\n"
          "rel one to=M base=children\nrel two to=S base=children\nrel Children2 to=M\n"
          "element M AoMeasurement\nrel up to=T base=test\nelement S AoSubTest");
  const auto model = builder.Build();
  ASSERT_TRUE(model);
  const Entity& entity = *model->Find(u"T");
  struct Case {
    std::u16string_view name;
    std::int32_t attribute, baseAttribute, relation, baseRelation;
  };
  const Case cases[] = {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(Narrow(c.name));
    EXPECT_EQ(entity.FindAttribute(c.name), c.attribute);
    EXPECT_EQ(entity.FindBaseAttribute(c.name), c.baseAttribute);
    EXPECT_EQ(entity.FindRelation(c.name), c.relation);
    EXPECT_EQ(entity.FindBaseRelation(c.name), c.baseRelation);
  }
  EXPECT_EQ(entity.FirstRelationOf(Relationship::Child), 0);
  EXPECT_EQ(entity.FirstRelationOf(Relationship::Father), kNone);
  EXPECT_EQ(model->Find(u"M")->FirstRelationOf(Relationship::Father), 0);
}

TEST(Models, FindNamesOutsideAsciiInAnyCase) {
  ModelBuilder builder(u"asam36");
  ASSERT_TRUE(builder.BeginEntity(u"Pr\u00fcfling", u"AoUnitUnderTest"));
  AttributeSpec spec;
  spec.name = u"L\u00c4NGE\U00010400";  // the last one is a capital outside the first plane
  spec.type = TypeName{OdsType::Double, false};
  ASSERT_TRUE(builder.AddAttribute(spec));
  const auto model = builder.Build();
  ASSERT_TRUE(model);
  const Entity* entity = model->FindAnyCase(u"PR\u00dcFLING");
  ASSERT_NE(entity, nullptr);
  EXPECT_EQ(entity->FindAttribute(u"l\u00e4nge\U00010428"), 0);
  EXPECT_EQ(entity->FindAttribute(u"l\u00e4nge\xd801"), kNone);  // half a pair
}

TEST(Enumerations, AreFoundExactlyThenInAnyCase) {
  ModelBuilder builder(u"asam31");
  Declare(builder, "enum State on ON off\nelement A AoAny");
  const auto model = builder.Build();
  ASSERT_TRUE(model);
  const Enumeration* own = model->FindEnumeration(u"STATE");
  ASSERT_NE(own, nullptr);
  EXPECT_FALSE(own->isBase);
  EXPECT_EQ(own->ValueOf(u"ON"), 1);
  EXPECT_EQ(own->ValueOf(u"On"), 0);
  EXPECT_EQ(own->ValueOf(u"Off"), 2);
  EXPECT_EQ(own->ValueOf(u"gone"), std::nullopt);
  ASSERT_NE(own->ItemOf(2), nullptr);
  EXPECT_EQ(own->ItemOf(2)->name, u"off");
  EXPECT_EQ(own->ItemOf(3), nullptr);
  const Enumeration* base = model->FindEnumeration(u"typespec_enum");
  ASSERT_NE(base, nullptr);
  EXPECT_TRUE(base->isBase);
  EXPECT_EQ(base->ValueOf(u"DT_BLOB"), 14);
}

// --- without the standard's base model -----------------------------------------------------------

TEST(ModelsWithoutBaseModel, TakeTheirOwnBaseNames) {
  ModelBuilder builder = ModelBuilder::WithoutBaseModel();
  Declare(builder,
          "element Manager AsamQuery_Manager\nattr Id base=ID type=DT_LONGLONG\n"
          "rel Queries to=Query base=Queries inverse=Manager\n"
          "element Query AsamQuery\nattr Id base=id type=DT_LONGLONG\n"
          "attr Text base=text type=DT_STRING\n"
          "rel Manager to=Manager base=manager inverse=Queries max=1\n"
          "element Folder AsamQuery\nattr Depth base=depth type=DT_LONG\n"
          "element Loose\nattr x type=DT_LONG\nrel q to=Query");
  const auto model = builder.Build();
  ASSERT_TRUE(model) << DescribeProblems(builder);
  EXPECT_EQ(model->BaseVersion(), 0);
  ASSERT_EQ(model->Entities().size(), 6u);
  EXPECT_EQ(model->Find(u"aotest"), nullptr);
  const Entity* base = model->Find(u"asamquery_manager");
  ASSERT_NE(base, nullptr);
  EXPECT_EQ(model->ApplicationEntitiesOf(base->id),
            std::vector<EntityId>{model->Find(u"Manager")->id});
  EXPECT_EQ(DescribeRelations(*model, u"asamquery_manager"),
            "queries[queries] asamquery 0..N manager from\n");
  EXPECT_EQ(DescribeRelations(*model, u"asamquery"),
            "manager[manager] asamquery_manager 0..1 queries to\n");
  EXPECT_EQ(DescribeRelations(*model, u"Manager"), "Queries[queries] Query 0..N Manager from\n");
  const Entity& query = *model->Find(u"asamquery");
  ASSERT_EQ(query.attributes.size(), 3u);
  EXPECT_EQ(query.FindAttribute(u"depth"), 2);
  EXPECT_EQ(model->Find(u"Query")->idAttribute, 0);
  EXPECT_EQ(model->Find(u"Loose")->super, kNoEntity);
  EXPECT_EQ(model->BaseNameOf(model->Find(u"Loose")->id), u"Loose");
  EXPECT_TRUE(model->Enumerations().empty());
}

TEST(ModelsWithoutBaseModel, LetAnElementBearItsBaseName) {
  ModelBuilder builder = ModelBuilder::WithoutBaseModel();
  Declare(builder, "element query Query\nrel next to=query base=next max=1");
  const auto model = builder.Build();
  ASSERT_TRUE(model) << DescribeProblems(builder);
  const Entity* found = model->Find(u"query");
  ASSERT_NE(found, nullptr);
  EXPECT_FALSE(found->isBase);
  EXPECT_TRUE(model->At(found->super).isBase);
}

TEST(ModelsWithoutBaseModel, RefuseAMissingTarget) {
  ModelBuilder builder = ModelBuilder::WithoutBaseModel();
  Declare(builder, "element A B\nrel x to=C base=x");
  EXPECT_EQ(builder.Build(), nullptr);
  EXPECT_EQ(DescribeProblems(builder),
            "!Element 'A', relation 'x': refers to the element 'C', which doesn't exist.\n");
}

}  // namespace
}  // namespace hv::vex::engine

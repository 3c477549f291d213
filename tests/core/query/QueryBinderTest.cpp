// core/query/QueryBinderTest.cpp - names and constants of a query against a model.
#include "core/query/QueryBinder.h"

#include <gtest/gtest.h>

#include "core/model/ModelBuilder.h"
#include "core/query/QueryReader.h"
#include "storefabric/WString.h"

#include "QueryText.h"

namespace hv::vex::engine {
namespace {

using test::Describe;
using test::Function;
using test::kNoCase;
using test::kWild;
using test::Text;

AttributeSpec Plain(std::u16string_view name, OdsType type, bool sequence = false) {
  AttributeSpec spec;
  spec.name = name;
  spec.type = TypeName{type, sequence};
  return spec;
}

AttributeSpec Based(std::u16string_view name, std::u16string_view base) {
  AttributeSpec spec;
  spec.name = name;
  spec.baseAttribute = base;
  return spec;
}

void AddRelation(ModelBuilder& builder, std::u16string_view name, std::u16string_view to,
                 std::u16string_view base, std::u16string_view inverse) {
  RelationSpec spec;
  spec.name = name;
  spec.refTo = to;
  spec.baseRelation = base;
  spec.inverseName = inverse;
  EXPECT_TRUE(builder.AddRelation(std::move(spec)));
}

// A test with two levels of sub tests and a measurement with an attribute of every kind.
std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam31");
  builder.AddEnumeration({u"state_enum", false, {{u"Open", 0}, {u"Done", 1}, {u"Dropped", 4}}});
  const auto begin = [&](std::u16string_view name, std::u16string_view base) {
    EXPECT_TRUE(builder.BeginEntity(name, base));
    EXPECT_TRUE(builder.AddAttribute(Based(u"Id", u"id")));
    EXPECT_TRUE(builder.AddAttribute(Based(u"Name", u"name")));
  };
  begin(u"Project", u"AoTest");
  AddRelation(builder, u"Benches", u"Bench", u"children", u"Project");
  begin(u"Bench", u"AoSubTest");
  builder.AddAttribute(Plain(u"Location", OdsType::String));
  AddRelation(builder, u"Project", u"Project", u"parent_test", u"Benches");
  AddRelation(builder, u"Rigs", u"Rig", u"children", u"Bench");
  begin(u"Rig", u"AoSubTest");
  builder.AddAttribute(Plain(u"Axles", OdsType::Long));
  AddRelation(builder, u"Bench", u"Bench", u"parent_test", u"Rigs");
  AddRelation(builder, u"Results", u"MeaResult", u"children", u"Rig");
  begin(u"MeaResult", u"AoMeasurement");
  builder.AddAttribute(Plain(u"Size", OdsType::Long));
  builder.AddAttribute(Plain(u"Serial", OdsType::LongLong));
  builder.AddAttribute(Plain(u"Ratio", OdsType::Double));
  builder.AddAttribute(Plain(u"Gain", OdsType::Float));
  builder.AddAttribute(Plain(u"Time", OdsType::Date));
  builder.AddAttribute(Plain(u"Valid", OdsType::Boolean));
  builder.AddAttribute(Plain(u"Tags", OdsType::String, true));
  builder.AddAttribute(Plain(u"Picture", OdsType::Blob));
  builder.AddAttribute(Plain(u"Odd.Name", OdsType::String));
  builder.AddAttribute(Plain(u"Report", OdsType::ExternalReference));
  AttributeSpec state = Plain(u"State", OdsType::Enum);
  state.enumeration = u"state_enum";
  builder.AddAttribute(std::move(state));
  AddRelation(builder, u"Rig", u"Rig", u"test", u"Results");
  AddRelation(builder, u"Channels", u"Channel", u"measurement_quantities", u"Result");
  begin(u"Channel", u"AoMeasurementQuantity");
  AddRelation(builder, u"Result", u"MeaResult", u"measurement", u"Channels");
  std::shared_ptr<const Model> model = builder.Build();
  for (const ModelProblem& problem : builder.Problems()) {
    EXPECT_FALSE(problem.isError) << cor::ToUtf8(problem.text);
  }
  return model;
}

class QueryBinder : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_model); }

  std::vector<BoundQuery> Bind(std::u16string_view text) {
    return BindQuery(ReadQuery(text), *m_model);
  }
  // The condition of the one query, or the error.
  std::string BindBody(std::u16string_view body, std::u16string_view entity = u"MeaResult") {
    try {
      const std::vector<BoundQuery> queries = Bind(Text(body, entity));
      std::string text;
      for (const BoundQuery& query : queries) {
        if (&query != &queries.front()) text += "; ";
        text += query.hasCondition ? Describe(query.condition, *m_model) : "all";
      }
      return text;
    } catch (const Exception& e) {
      EXPECT_EQ(errc::kBadQuery, e.code);
      return "error " + cor::ToUtf8(e.message);
    }
  }

  std::shared_ptr<const Model> m_model = MakeModel();
};

struct EntityRow {
  std::u16string_view name;
  std::vector<std::u16string_view> entities;
};

TEST_F(QueryBinder, FindsTheEntitiesOfAReturnType) {
  const EntityRow rows[] = {
      {u"MeaResult", {u"MeaResult"}},     {u"mearesult", {u"MeaResult"}},
      {u"aomeasurement", {u"MeaResult"}}, {u"AoMeasurement", {u"MeaResult"}},
      {u"AoSubTest", {u"Bench", u"Rig"}}, {u"aosubmatrix", {}},
  };
  for (const EntityRow& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.name));
    const std::vector<BoundQuery> queries = Bind(Text(u"", row.name, u" limit=\"7\""));
    ASSERT_EQ(row.entities.size(), queries.size());
    for (std::size_t i = 0; i < queries.size(); ++i) {
      EXPECT_TRUE(m_model->At(queries[i].entity).name == row.entities[i]);
      EXPECT_EQ(7, queries[i].limit);
      EXPECT_FALSE(queries[i].hasCondition);
    }
  }
  EXPECT_EQ("error query expression, line 3, column 25: unknown entity Nothing",
            BindBody(u"", u"Nothing"));
}

struct NameRow {
  std::u16string_view identifier;
  const char* bound;
};

TEST_F(QueryBinder, ResolvesIdentifiers) {
  constexpr const char* kUnknown = "error query expression, line 5, column 22: unknown identifier ";
  const NameRow rows[] = {
      {u"Name", "Name = '7'"},
      {u"name", "Name = '7'"},
      {u"NAME", "Name = '7'"},
      {u"id", "Id = 7"},
      {u"Odd.Name", "Odd.Name = '7'"},
      {u"Rig.Name", "Rig.Name = '7'"},
      {u"test.name", "Rig.Name = '7'"},
      {u"Rig.Bench.Location", "Rig.Bench.Location = '7'"},
      {u"test.parent_test.parent_test.id", "Rig.Bench.Project.Id = 7"},
      {u"measurement_quantities.Name", "Channels.Name = '7'"},
      {u"Channels.Result.Odd.Name", "Channels.Result.Odd.Name = '7'"},
      {u"HV_VEX_INSTANCE", "Id = 7"},
      {u"Rig.HV_VEX_INSTANCE", "Rig.Id = 7"},
      {u"Rig", "Rig.Id = 7"},
  };
  for (const NameRow& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.identifier));
    EXPECT_EQ(row.bound, BindBody(Function(u"=", row.identifier, u"7")));
  }
  for (const std::u16string_view name :
       {u"Nothing", u"Rig.Nothing", u"Nothing.Name", u"Rig.", u".Name", u"Rig..Name", u" Name",
        u"Nothing.HV_VEX_INSTANCE", u"Nothing.instance_attributes.values"}) {
    SCOPED_TRACE(cor::ToUtf8(name));
    EXPECT_EQ(kUnknown + cor::ToUtf8(name) + " on entity MeaResult",
              BindBody(Function(u"=", name, u"7")));
  }
}

struct ConstantRow {
  std::u16string_view identifier;
  std::u16string_view op;
  std::u16string_view constant;
  std::u16string_view marks;
  const char* bound;  // "!": refused
};

TEST_F(QueryBinder, ReadsConstantsAsTheAttributesType) {
  const ConstantRow rows[] = {
      {u"Name", u"=", u"A*\u00C4", kWild, "Name = 'a*\xC3\xA4'wi"},
      {u"Name", u"=", u"A", kWild, "Name = 'a'i"},
      {u"Name", u"=", u"A*", u"", "Name = 'A*'"},
      {u"Name", u"!=", u"A*", kWild, "Name != 'a*'wi"},
      {u"Name", u"&gt;", u"A*", kWild, "Name > 'a*'i"},
      {u"Name", u"=", u"", kNoCase, "Name = ''i"},
      {u"Report", u"=", u"*.pdf", kWild, "Report = '*.pdf'wi"},
      {u"Size", u"=", u"3", u"", "Size = 3"},
      {u"Size", u"=", u" -3 ", kWild, "Size = -3"},
      {u"Size", u"=", u"+3", u"", "Size = 3"},
      {u"Size", u"&lt;", u"3.0", u"", "Size < 3"},
      {u"Size", u"&lt;", u"1e3", u"", "Size < 1000"},
      {u"Size", u"&lt;", u"3.5", u"", "Size < r3.5"},
      {u"Size", u"=", u"99999999999", u"", "Size = 99999999999"},
      {u"Serial", u"=", u"9223372036854775807", u"", "Serial = 9223372036854775807"},
      {u"Serial", u"=", u"-9223372036854775808", u"", "Serial = -9223372036854775808"},
      {u"Serial", u"=", u"9223372036854775808", u"", "Serial = r9.2233720368547758e+18"},
      {u"Size", u"=", u"*", kWild, "Size != never"},
      {u"Size", u"!=", u"**", kWild, "Size = never"},
      {u"Size", u"=", u"1*", kWild, "!a number"},
      {u"Size", u"=", u"", u"", "!a number"},
      {u"Size", u"=", u"3,5", u"", "!a number"},
      {u"Size", u"=", u"3 5", u"", "!a number"},
      {u"Size", u"=", u"0x10", u"", "!a number"},
      {u"Size", u"=", u"+-3", u"", "!a number"},
      {u"Size", u"=", u"inf", u"", "!a number"},
      {u"Size", u"=", u"-nan", u"", "!a number"},
      {u"Size", u"=", u"\u0663", u"", "!a number"},
      {u"Ratio", u"=", u"0.1", u"", "Ratio = r0.10000000000000001"},
      {u"Ratio", u"=", u"2", u"", "Ratio = r2"},
      {u"Ratio", u"=", u"1e400", u"", "!a number"},
      {u"Gain", u"=", u"0.1", u"", "Gain = r0.10000000149011612"},
      {u"Gain", u"&lt;", u"1e300", u"", "Gain < r1.0000000000000001e+300"},
      {u"Time", u"=", u"2010", u"", "Time = '20100101000000'"},
      {u"Time", u"&gt;=", u"20090517235959500", kWild, "Time >= '20090517235959'"},
      {u"Time", u"=", u"17.05.2009", u"", "!a date of 4 to 23 digits"},
      {u"Valid", u"=", u"True", u"", "Valid = 1"},
      {u"Valid", u"=", u"-1", u"", "Valid = 1"},
      {u"Valid", u"=", u"0", u"", "Valid = 0"},
      {u"Valid", u"=", u"FALSE", kWild, "Valid = 0"},
      {u"Valid", u"=", u"maybe", u"", "!true or false"},
      {u"State", u"=", u"Done", u"", "State = 1"},
      {u"State", u"=", u"DROPPED", kWild, "State = 4"},
      {u"State", u"=", u"4", u"", "State = 4"},
      {u"State", u"=", u"d*", kWild, "OR(State = 1, State = 4)"},
      {u"State", u"!=", u"d*", kWild, "AND(State != 1, State != 4)"},
      {u"State", u"=", u"d?ne", kWild, "State = 1"},
      {u"State", u"=", u"x*", kWild, "State = never"},
      {u"State", u"=", u"lost", u"", "State = never"},
      {u"State", u"!=", u"lost", kWild, "State != never"},
      {u"Rig", u"=", u"R*", kWild, "Rig.Name = 'r*'wi"},
      {u"Rig", u"=", u"7", kWild, "Rig.Name = '7'i"},
      {u"Rig", u"=", u"R7", u"", "Rig.Name = 'R7'"},
      {u"HV_VEX_INSTANCE", u"=", u"MeaResult:12", u"", "Id = 12"},
      {u"HV_VEX_INSTANCE", u"=", u"aomeasurement:12", u"", "Id = 12"},
      {u"HV_VEX_INSTANCE", u"=", u"Rig:12", u"", "Id = never"},
      {u"HV_VEX_INSTANCE", u"=", u"MeaResult:x", u"", "!a number"},
  };
  for (const ConstantRow& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.identifier) + " = " + cor::ToUtf8(row.constant));
    const std::string bound = BindBody(Function(row.op, row.identifier, row.constant, row.marks));
    if (row.bound[0] != '!') {
      EXPECT_EQ(row.bound, bound);
      continue;
    }
    EXPECT_TRUE(bound.starts_with("error query expression, line 5, column ")) << bound;
    EXPECT_TRUE(bound.ends_with("doesn't fit identifier " + cor::ToUtf8(row.identifier) +
                                ", which is compared with " + (row.bound + 1)))
        << bound;
  }
  EXPECT_EQ(
      "error query expression, line 5, column 22: identifier Tags can't be compared, its "
      "type is DS_STRING",
      BindBody(Function(u"=", u"Tags", u"x")));
  EXPECT_EQ(
      "error query expression, line 5, column 22: identifier Picture can't be compared, its "
      "type is DT_BLOB",
      BindBody(Function(u"=", u"Picture", u"x")));
}

std::u16string ValueOf(std::u16string_view constant, std::u16string_view op = u"=",
                       std::u16string_view prefix = u"") {
  return Function(op, std::u16string(prefix) + u"instance_attributes.values", constant, kWild);
}
std::u16string NameIs(std::u16string_view constant, std::u16string_view prefix = u"") {
  return Function(u"==", std::u16string(prefix) + u"instance_attributes.name", constant, kNoCase);
}

struct BodyRow {
  const char* name;
  std::u16string body;
  const char* bound;
};

TEST_F(QueryBinder, PairsTheValueAndTheNameOfInstanceAttributes) {
  const std::u16string plain = Function(u"=", u"Size", u"3");
  const BodyRow rows[] = {
      {"bare", ValueOf(u"x*") + NameIs(u"Oil"), "{oil = 'x*'wi}"},
      {"wrapped", Function(u"AND", ValueOf(u"x") + NameIs(u"Oil")), "{oil = 'x'i}"},
      {"name first", Function(u"AND", NameIs(u"Oil") + ValueOf(u"x")), "{oil = 'x'i}"},
      {"among others", plain + ValueOf(u"x") + NameIs(u"Oil") + plain,
       "AND(Size = 3, {oil = 'x'i}, Size = 3)"},
      {"two pairs", ValueOf(u"1") + NameIs(u"A") + ValueOf(u"2") + NameIs(u"B"),
       "AND({a = '1'i number 1}, {b = '2'i number 2})"},
      {"values in an or",
       Function(u"OR", Function(u"AND", ValueOf(u"x") + NameIs(u"A")) +
                           Function(u"AND", ValueOf(u"y") + NameIs(u"A"))),
       "OR({a = 'x'i}, {a = 'y'i})"},
      {"an or makes no pair", Function(u"OR", ValueOf(u"x") + NameIs(u"A")), "OR({ = 'x'i}, {a})"},
      {"others between", ValueOf(u"x") + plain + NameIs(u"A"), "AND({ = 'x'i}, Size = 3, {a})"},
      {"value alone", ValueOf(u"x", u"!="), "{ != 'x'i}"},
      {"name alone", NameIs(u"Oil"), "{oil}"},
      {"behind relations", ValueOf(u"x", u"=", u"Rig.Bench.") + NameIs(u"A", u"Rig.Bench."),
       "Rig.Bench.{a = 'x'i}"},
      {"two paths", ValueOf(u"x", u"=", u"Rig.") + NameIs(u"A"), "AND(Rig.{ = 'x'i}, {a})"},
      {"numbers and dates", ValueOf(u"2.50", u"&gt;") + NameIs(u"A"), "{a > '2.50'i number r2.5}"},
      {"dates", ValueOf(u"20090517235959", u"&lt;=") + NameIs(u"A"),
       "{a <= '20090517235959'i number 20090517235959 date 20090517235959}"},
  };
  for (const BodyRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.bound, BindBody(row.body));
  }
  EXPECT_EQ(
      "error query expression, line 5, column 23: the name of an instance attribute can only "
      "be compared with \"==\"",
      BindBody(Function(u"!=", u"instance_attributes.name", u"A")));
  EXPECT_EQ("error query expression, line 5, column 23: the name of an instance attribute is empty",
            BindBody(NameIs(u"")));
}

TEST_F(QueryBinder, LetsEntitiesOfOneBaseDiffer) {
  EXPECT_EQ(
      "AND(Name = 'x', Location = 'y'); AND(Name = 'x', Id = never)",
      BindBody(Function(u"=", u"name", u"x") + Function(u"=", u"Location", u"y"), u"aosubtest"));
  EXPECT_EQ(
      "OR(Id = never, Location = 'y'); OR(Axles = 2, Id = never)",
      BindBody(Function(u"OR", Function(u"=", u"Axles", u"2") + Function(u"=", u"Location", u"y")),
               u"aosubtest"));
  EXPECT_EQ(
      "error query expression, line 9, column 22: unknown identifier Wheels on entity aosubtest",
      BindBody(Function(u"=", u"Axles", u"2") + Function(u"=", u"Wheels", u"y"), u"AoSubTest"));
}

TEST_F(QueryBinder, ResolvesTheOrder) {
  const auto bind = [&](std::u16string_view entity, std::u16string_view names) {
    std::u16string text = u"<query><entity name=\"";
    text += entity;
    text += u"\">";
    text += names;
    text += u"</entity></query>";
    return Bind(text);
  };
  const auto queries =
      bind(u"MeaResult", u"<order name=\"Rig.name\" descending=\"yes\"/><order name=\"Rig\"/>");
  ASSERT_EQ(1u, queries.size());
  ASSERT_EQ(2u, queries[0].order.size());
  EXPECT_EQ("Rig.Name", Describe(queries[0].order[0].path, *m_model));
  EXPECT_TRUE(queries[0].order[0].descending);
  EXPECT_EQ("Rig.Name", Describe(queries[0].order[1].path, *m_model));
  EXPECT_FALSE(queries[0].order[1].descending);

  const auto both = bind(u"aosubtest", u"<order name=\"Axles\"/>");
  ASSERT_EQ(2u, both.size());
  EXPECT_TRUE(both[0].order.empty());
  EXPECT_EQ(1u, both[1].order.size());
  EXPECT_THROW(bind(u"MeaResult", u"<order name=\"Nothing\"/>"), Exception);
  EXPECT_THROW(bind(u"MeaResult", u"<order name=\"Picture\"/>"), Exception);
}

}  // namespace
}  // namespace hv::vex::engine

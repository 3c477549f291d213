// core/query/QueryBinderTest.cpp - names and constants of a query against a model.
#include "core/query/QueryBinder.h"

#include <gtest/gtest.h>

#include "core/query/QueryReader.h"

#include "ModelText.h"
#include "QueryText.h"

namespace hv::vex::engine::test {
namespace {

// A test with two levels of sub tests and a measurement with an attribute of every kind.
std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam31");
  builder.AddEnumeration({u"state_enum", false, {{u"Open", 0}, {u"Done", 1}, {u"Dropped", 4}}});
  const auto element = [&](const std::string& name, const std::string& base,
                           const std::string& members) {
    Declare(builder,
            "element " + name + " " + base + "\nattr Id base=id\nattr Name base=name\n" + members);
  };
  element("Project", "AoTest", "rel Benches to=Bench base=children inverse=Project");
  element("Bench", "AoSubTest", R"(attr Location type=DT_STRING
      rel Project to=Project base=parent_test inverse=Benches
      rel Rigs to=Rig base=children inverse=Bench)");
  element("Rig", "AoSubTest", R"(attr Axles type=DT_LONG
      rel Bench to=Bench base=parent_test inverse=Rigs
      rel Results to=MeaResult base=children inverse=Rig)");
  element("MeaResult", "AoMeasurement", R"(attr Size type=DT_LONG
      attr Serial type=DT_LONGLONG
      attr Ratio type=DT_DOUBLE
      attr Gain type=DT_FLOAT
      attr Time type=DT_DATE
      attr Valid type=DT_BOOLEAN
      attr Tags type=DS_STRING
      attr Picture type=DT_BLOB
      attr Odd.Name type=DT_STRING
      attr Report type=DT_EXTERNALREFERENCE
      attr State type=DT_ENUM enum=state_enum
      rel Rig to=Rig base=test inverse=Results
      rel Channels to=Channel base=measurement_quantities inverse=Result)");
  element("Channel", "AoMeasurementQuantity",
          "rel Result to=MeaResult base=measurement inverse=Channels");
  std::shared_ptr<const Model> model = builder.Build();
  EXPECT_EQ(std::string::npos, DescribeProblems(builder).find('!')) << DescribeProblems(builder);
  return model;
}

class QueryBinder : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_model); }

  std::vector<BoundQuery> Bind(const std::u16string& text) {
    return BindQuery(ReadQuery(text), *m_model);
  }
  // The conditions of the queries, or the error behind "query expression, line ".
  std::string BindBody(const std::u16string& body, const std::u16string& entity = u"MeaResult") {
    std::string text;
    const std::string error = Thrown([&] {
      for (const BoundQuery& query : Bind(Text(body, entity))) {
        if (!text.empty()) text += "; ";
        text += query.hasCondition ? Describe(query.condition, *m_model) : "all";
      }
    });
    if (error.empty()) return text;
    const std::string expected = std::to_string(errc::kBadQuery) + " query expression, line ";
    EXPECT_TRUE(error.starts_with(expected)) << error;
    return error.substr(std::min(error.size(), expected.size()));
  }

  std::shared_ptr<const Model> m_model = MakeModel();
};

TEST_F(QueryBinder, FindsTheEntitiesOfAReturnType) {
  const std::pair<const char16_t*, std::u16string_view> kRows[] = {
      {u"MeaResult", u"MeaResult "},     {u"mearesult", u"MeaResult "},
      {u"aomeasurement", u"MeaResult "}, {u"AoMeasurement", u"MeaResult "},
      {u"AoSubTest", u"Bench Rig "},     {u"aosubmatrix", u""}};
  for (const auto& [name, expected] : kRows) {
    SCOPED_TRACE(cor::ToUtf8(name));
    std::u16string entities;
    for (const BoundQuery& query : Bind(Text(u"", name, u" limit=\"7\""))) {
      entities += m_model->At(query.entity).name + u" ";
      EXPECT_EQ(7, query.limit);
      EXPECT_FALSE(query.hasCondition);
    }
    EXPECT_EQ(expected, entities);
  }
  EXPECT_EQ("3, column 25: unknown entity Nothing", BindBody(u"", u"Nothing"));
}

TEST_F(QueryBinder, ResolvesIdentifiers) {
  const std::pair<const char16_t*, const char*> kRows[] = {
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
  for (const auto& [identifier, bound] : kRows) {
    EXPECT_EQ(bound, BindBody(Function(u"=", identifier, u"7"))) << cor::ToUtf8(identifier);
  }
  for (const std::u16string name :
       {u"Nothing", u"Rig.Nothing", u"Nothing.Name", u"Rig.", u".Name", u"Rig..Name", u" Name",
        u"Nothing.HV_VEX_INSTANCE", u"Nothing.instance_attributes.values"}) {
    EXPECT_EQ("5, column 22: unknown identifier " + cor::ToUtf8(name) + " on entity MeaResult",
              BindBody(Function(u"=", name, u"7")));
  }
}

TEST_F(QueryBinder, ReadsConstantsAsTheAttributesType) {
  const struct {
    const char16_t *identifier, *op, *constant, *marks;
    const char* bound;
  } kRows[] = {
      {u"Name", u"=", u"A*Ä", kWild, "Name = 'a*ä'wi"},
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
      {u"Ratio", u"=", u"0.1", u"", "Ratio = r0.10000000000000001"},
      {u"Ratio", u"=", u"2", u"", "Ratio = r2"},
      {u"Gain", u"=", u"0.1", u"", "Gain = r0.10000000149011612"},
      {u"Gain", u"&lt;", u"1e300", u"", "Gain < r1.0000000000000001e+300"},
      {u"Time", u"=", u"2010", u"", "Time = '20100101000000'"},
      {u"Time", u"&gt;=", u"20090517235959500", kWild, "Time >= '20090517235959'"},
      {u"Valid", u"=", u"True", u"", "Valid = 1"},
      {u"Valid", u"=", u"-1", u"", "Valid = 1"},
      {u"Valid", u"=", u"0", u"", "Valid = 0"},
      {u"Valid", u"=", u"FALSE", kWild, "Valid = 0"},
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
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(row.bound, BindBody(Function(row.op, row.identifier, row.constant, row.marks)))
        << cor::ToUtf8(row.constant);
  }
}

TEST_F(QueryBinder, RefusesConstantsOfOtherTypes) {
  const struct {
    std::u16string identifier;
    std::vector<std::u16string> constants;
    const char* wanted;
  } kRows[] = {
      {u"Size",
       {u"1*", u"", u"3,5", u"3 5", u"0x10", u"+-3", u"inf", u"-nan", u"\u0663"},
       "a number"},
      {u"Ratio", {u"1e400"}, "a number"},
      {u"HV_VEX_INSTANCE", {u"MeaResult:x"}, "a number"},
      {u"Time", {u"17.05.2009"}, "a date of 4 to 23 digits"},
      {u"Valid", {u"maybe"}, "true or false"},
  };
  for (const auto& row : kRows) {
    for (const std::u16string& constant : row.constants) {
      for (const char16_t* marks : {u"", kWild}) {
        const std::string error = BindBody(Function(u"=", row.identifier, constant, marks));
        EXPECT_TRUE(error.starts_with("5, column ") &&
                    error.ends_with("doesn't fit identifier " + cor::ToUtf8(row.identifier) +
                                    ", which is compared with " + row.wanted))
            << cor::ToUtf8(constant) << ": " << error;
      }
    }
  }
  EXPECT_EQ("5, column 22: identifier Tags can't be compared, its type is DS_STRING",
            BindBody(Function(u"=", u"Tags", u"x")));
  EXPECT_EQ("5, column 22: identifier Picture can't be compared, its type is DT_BLOB",
            BindBody(Function(u"=", u"Picture", u"x")));
}

std::u16string ValueOf(const std::u16string& constant, const std::u16string& op = u"=",
                       const std::u16string& prefix = u"") {
  return Function(op, prefix + u"instance_attributes.values", constant, kWild);
}
std::u16string NameIs(const std::u16string& constant, const std::u16string& prefix = u"") {
  return Function(u"==", prefix + u"instance_attributes.name", constant, kNoCase);
}

TEST_F(QueryBinder, PairsTheValueAndTheNameOfInstanceAttributes) {
  const std::u16string plain = Function(u"=", u"Size", u"3");
  const std::pair<std::u16string, const char*> kRows[] = {
      {ValueOf(u"x*") + NameIs(u"Oil"), "{oil = 'x*'wi}"},
      {Function(u"AND", ValueOf(u"x") + NameIs(u"Oil")), "{oil = 'x'i}"},
      {Function(u"AND", NameIs(u"Oil") + ValueOf(u"x")), "{oil = 'x'i}"},
      {plain + ValueOf(u"x") + NameIs(u"Oil") + plain, "AND(Size = 3, {oil = 'x'i}, Size = 3)"},
      {ValueOf(u"1") + NameIs(u"A") + ValueOf(u"2") + NameIs(u"B"),
       "AND({a = '1'i number 1}, {b = '2'i number 2})"},
      {Function(u"OR", Function(u"AND", ValueOf(u"x") + NameIs(u"A")) +
                           Function(u"AND", ValueOf(u"y") + NameIs(u"A"))),
       "OR({a = 'x'i}, {a = 'y'i})"},
      // An or makes no pair, nor do others between.
      {Function(u"OR", ValueOf(u"x") + NameIs(u"A")), "OR({ = 'x'i}, {a})"},
      {ValueOf(u"x") + plain + NameIs(u"A"), "AND({ = 'x'i}, Size = 3, {a})"},
      {ValueOf(u"x", u"!="), "{ != 'x'i}"},
      {NameIs(u"Oil"), "{oil}"},
      {ValueOf(u"x", u"=", u"Rig.Bench.") + NameIs(u"A", u"Rig.Bench."), "Rig.Bench.{a = 'x'i}"},
      {ValueOf(u"x", u"=", u"Rig.") + NameIs(u"A"), "AND(Rig.{ = 'x'i}, {a})"},
      {ValueOf(u"2.50", u"&gt;") + NameIs(u"A"), "{a > '2.50'i number r2.5}"},
      {ValueOf(u"20090517235959", u"&lt;=") + NameIs(u"A"),
       "{a <= '20090517235959'i number 20090517235959 date 20090517235959}"},
      {Function(u"!=", u"instance_attributes.name", u"A"),
       "5, column 23: the name of an instance attribute can only be compared with \"==\""},
      {NameIs(u""), "5, column 23: the name of an instance attribute is empty"},
  };
  for (const auto& [body, bound] : kRows) EXPECT_EQ(bound, BindBody(body));
}

TEST_F(QueryBinder, LetsEntitiesOfOneBaseDiffer) {
  const std::u16string location = Function(u"=", u"Location", u"y");
  const std::u16string axles = Function(u"=", u"Axles", u"2");
  EXPECT_EQ("AND(Name = 'x', Location = 'y'); AND(Name = 'x', Id = never)",
            BindBody(Function(u"=", u"name", u"x") + location, u"aosubtest"));
  EXPECT_EQ("OR(Id = never, Location = 'y'); OR(Axles = 2, Id = never)",
            BindBody(Function(u"OR", axles + location), u"aosubtest"));
  EXPECT_EQ("9, column 22: unknown identifier Wheels on entity aosubtest",
            BindBody(axles + Function(u"=", u"Wheels", u"y"), u"AoSubTest"));
}

TEST_F(QueryBinder, ResolvesTheOrder) {
  // "Rig.Name down, Name; " for each query.
  const auto bind = [&](const std::u16string& entity, const std::u16string& names) {
    std::string text;
    for (const BoundQuery& query :
         Bind(u"<query><entity name=\"" + entity + u"\">" + names + u"</entity></query>")) {
      for (const BoundOrder& order : query.order) {
        text += Describe(order.path, *m_model) + (order.descending ? " down, " : ", ");
      }
      text += "; ";
    }
    return text;
  };
  EXPECT_EQ(
      "Rig.Name down, Rig.Name, ; ",
      bind(u"MeaResult", u"<order name=\"Rig.name\" descending=\"yes\"/><order name=\"Rig\"/>"));
  EXPECT_EQ("; Axles, ; ", bind(u"aosubtest", u"<order name=\"Axles\"/>"));
  EXPECT_THROW(bind(u"MeaResult", u"<order name=\"Nothing\"/>"), Exception);
  EXPECT_THROW(bind(u"MeaResult", u"<order name=\"Picture\"/>"), Exception);
}

}  // namespace
}  // namespace hv::vex::engine::test

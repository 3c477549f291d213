// tests/core/model/ModelPathTest.cpp - dotted paths, and the search for a way between entities.
#include <gtest/gtest.h>

#include "tests/core/model/ModelText.h"

namespace hv::vex::engine {
namespace {

/// A test bench with names as exporters choose them: dots, dashes, one text for an id and a
/// relation.
std::shared_ptr<const Model> Bench() {
  return Built(
      "element env AoEnvironment\nattr iid base=id\nrel tests to=test base=tests inverse=env\n"
      "rel uuts to=uut base=uuts inverse=env\n"
      "element test AoTest\nattr test_iid base=id\nattr name base=name\n"
      "rel env to=env base=environment inverse=tests\n"
      "rel tstser_iid to=series base=children inverse=test_iid.parent\n"
      "element series AoSubTest\nattr ser.name base=name\nattr name.of.owner type=DT_STRING\n"
      "rel test_iid.parent to=test base=parent_test inverse=tstser_iid\n"
      "rel mea to=mea base=children inverse=series\n"
      "rel mea.next to=series inverse=mea.previous max=1\n"
      "rel mea.previous to=series inverse=mea.next max=1\n"
      "element mea AoMeasurement\nattr mea_iid base=id\nattr mea_name base=name\n"
      "rel werk.fahrzeug to=uut base=units_under_test inverse=mea\n"
      "rel quantities to=meq base=measurement_quantities inverse=mea\n"
      "rel matrices to=sm base=submatrices inverse=mea\n"
      "rel series to=series base=test inverse=mea\n"
      "element uut AoUnitUnderTest\nattr name base=name\nattr motor.typ type=DT_STRING\n"
      "rel mea to=mea base=measurement inverse=werk.fahrzeug\n"
      "rel env to=env base=environment inverse=uuts\n"
      "element meq AoMeasurementQuantity\nattr lc_iid base=name\n"
      "rel mea to=mea base=measurement inverse=quantities\n"
      "rel lcs to=lc base=local_columns inverse=meq\nrel unit to=unit base=unit inverse=meqs\n"
      "rel unit2 to=unit inverse=meqs2 max=1\n"
      "element sm AoSubmatrix\nrel mea to=mea base=measurement inverse=matrices\n"
      "rel lcs to=lc base=local_columns inverse=sm\n"
      "element lc AoLocalColumn\nattr lc_iid base=id\n"
      "rel meq to=meq base=measurement_quantity inverse=lcs\n"
      "rel sm to=sm base=submatrix inverse=lcs\n"
      "element unit AoUnit\nattr name base=name\n"
      "rel meqs to=meq base=measurement_quantities inverse=unit\n"
      "rel meqs2 to=meq inverse=unit2\n"
      "element alone AoAny\nattr name base=name");
}

/// "source/relation" of each step, then ":attribute" or the target.
std::string Describe(const Model& model, const std::optional<ResolvedPath>& path) {
  if (!path) return "none";
  std::string text;
  for (const PathStep& step : path->steps) {
    const Entity& source = model.At(step.source);
    text += cor::ToUtf8(source.name) + "/" +
            cor::ToUtf8(source.relations[static_cast<std::size_t>(step.relation)].name) + " ";
  }
  const Entity& target = model.At(path->target);
  text += cor::ToUtf8(target.name);
  if (path->attribute != kNone) {
    text += ":" + cor::ToUtf8(target.attributes[static_cast<std::size_t>(path->attribute)].name);
  }
  return text;
}

TEST(ModelPaths, ResolveToTheLongestNames) {
  const auto model = Bench();
  struct Case {
    const char *start, *path;
    bool wantAttribute;
    const char* expected;
  };
  constexpr Case kCases[] = {
      {"test", "name", true, "test:name"},
      {"test", "Test_IID", true, "test:test_iid"},
      {"test", "id", true, "test:test_iid"},
      {"test", "children.name", true, "test/tstser_iid series:ser.name"},
      {"test", "tstser_iid.ser.name", true, "test/tstser_iid series:ser.name"},
      {"test", "tstser_iid.name.of.owner", true, "test/tstser_iid series:name.of.owner"},
      {"mea", "werk.fahrzeug.motor.typ", true, "mea/werk.fahrzeug uut:motor.typ"},
      {"mea", "units_under_test.name", true, "mea/werk.fahrzeug uut:name"},
      {"series", "mea.mea_name", true, "series/mea mea:mea_name"},
      {"series", "mea.next.mea.id", true, "series/mea.next series/mea mea:mea_iid"},
      {"series", "MEA.NEXT.mea", false, "series/mea.next series/mea mea"},
      {"series", "test_iid.parent.test_iid", true, "series/test_iid.parent test:test_iid"},
      {"series", "mea", false, "series/mea mea"},
      {"aotest", "children.parent_test.name", true,
       "aotest/children aosubtest/parent_test aotest:name"},
      // An attribute is no step, a relation no end.
      {"test", "name.name", true, "none"},
      {"test", "children", true, "none"},
      {"test", "name", false, "none"},
      {"test", "children.name", false, "none"},
      {"test", "children.gone.name", true, "none"},
      {"test", "", true, "none"},
      {"test", "", false, "none"},
      {"test", ".", false, "none"},
      {"test", ".name", true, "none"},
      {"test", "children.", false, "none"},
      {"test", "children..name", true, "none"},
      {"series", "test_iid", false, "none"},
      {"series", "mea.", true, "none"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.start) + " " + c.path);
    EXPECT_EQ(Describe(*model, model->Resolve(model->Find(Wide(c.start))->id, Wide(c.path),
                                              c.wantAttribute)),
              c.expected);
  }
}

TEST(ModelPaths, ResolveLongHostileTextsQuickly) {
  const auto model = Bench();
  const EntityId series = model->Find(u"series")->id;
  std::u16string back_and_forth = u"mea.next";
  for (int i = 0; i < 20'000; ++i) back_and_forth += u".mea.previous.mea.next";
  const auto path = model->Resolve(series, back_and_forth, false);
  ASSERT_TRUE(path);
  EXPECT_EQ(path->steps.size(), 40'001u);
  EXPECT_FALSE(model->Resolve(series, std::u16string(1'000'000, u'.'), true));
}

TEST(ModelPaths, FollowTheHierarchyAsFarAsTheyCan) {
  const auto model = Bench();
  constexpr std::tuple<const char*, const char*, const char*> kCases[] = {
      {"test", "test", "test"},
      {"test", "aotest", "test"},
      {"test", "mea", "test/tstser_iid series/mea mea"},
      {"test", "aomeasurement", "test/tstser_iid series/mea mea"},
      {"lc", "test", "lc/sm sm/mea mea/series series/test_iid.parent test"},
      // By the quantity the way is as long and told of first, but not all up and down.
      {"lc", "mea", "lc/sm sm/mea mea"},
      {"mea", "lc", "mea/matrices sm/lcs lc"},
      {"meq", "unit", "meq/unit unit"},
      {"unit", "mea", "unit/meqs meq/mea mea"},
      // The environment has all units under test, the measurements those of the test.
      {"test", "uut", "test/tstser_iid series/mea mea/werk.fahrzeug uut"},
      {"uut", "aosubtest", "uut/mea mea/series series"},
      {"test", "alone", "none"},
      {"alone", "test", "none"},
      {"aosubmatrix", "aolocalcolumn", "aosubmatrix/local_columns aolocalcolumn"},
      {"aotest", "test", "none"},
  };
  for (const auto& [from, to, expected] : kCases) {
    const auto path = model->FindPath(model->Find(Wide(from))->id, model->Find(Wide(to))->id);
    EXPECT_EQ(expected, Describe(*model, path)) << from << " to " << to;
  }
}

}  // namespace
}  // namespace hv::vex::engine

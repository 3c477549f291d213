// store/elements/BulkTest.cpp - columns of values as scripts see them, over
// tests/data/browse/columns.atfx.
#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::Get;
using test::Put;

class Columns : public test::CampaignTest {
 protected:
  Columns() { OpenAgain({}, "columns"); }

  Ref<IStoreElement> Column(int id) {
    return Wrap(Element(u"Trace.Record:" + cor::FromUtf8(std::to_string(id)).str()));
  }
  std::string Ask(int id, std::string_view expression) {
    return Eval(Column(id).Get(), expression).Shown();
  }
};
INSTANTIATE_TEST_SUITE_P(Stores, Columns, ::testing::Values("ATFX", "SQL"), test::NameOfKind);

TEST_P(Columns, ShowValuesFlagsAndTypes) {
  const auto outside = [](int index, const char* property) {
    return "211 The index " + std::to_string(index) + " is out of range for the property " +
           property + ".";
  };
  const std::string badType = "352 The datatype of the measurement quantity is invalid.";
  const struct {
    int id;
    const char* expression;
    std::string shown;
  } rows[] = {
      {1, "Size", "3"},
      {1, "DataType", "10"},
      {1, "Values(2)", "3.5"},
      {1, "Values(3)", outside(3, "Values")},
      {1, "Values(-1)", outside(-1, "Values")},
      {1, "Flags(1)", "0"},
      {1, "Flags(3)", outside(3, "Flags")},
      {1, "Flags(-1)", outside(-1, "Flags")},
      {2, "Size", "2"},  // start and step, whatever the submatrix says
      {2, "Values(1)", "0.25"},
      {2, "Values(2)", outside(2, "Values")},
      {2, "Flags(77)", "9"},  // one for all
      {3, "Size", "0"},
      {3, "Values(0)", outside(0, "Values")},
      {4, "Size", "3"},
      {4, "Values(0)", "null"},  // promised by the submatrix
      {4, "DataType", "3"},      // as the quantity says
      {4, "Flags(0)", outside(0, "Flags")},
      {5, "Size", "0"},
      {5, "DataType", "0"},
      {6, "Size", "0"},
      {6, "DataType", badType},
      {7, "Values(1)", "b"},
      {7, "DataType", "23"},
      {8, "Size", "3"},
      {8, "DataType", "0"},
      {9, "Size", "0"},  // truth values can't be reached by index
      {1, "IsKindOf('StoreElement<WithBulk>')", "1"},
      {1, "IsKindOf('Element<DataStore>')", "1"},
      {1, "IsKindOf('Trace.Record')", "1"},
      {1, "SetValues(null)",
       "222 The argument Channel<Data> of the method SetValues must be a Object."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.shown, Ask(row.id, row.expression)) << row.id << " " << row.expression;
  }
}

TEST_P(Columns, TakeTheirTypeOnceAndKeepWhatIsWritten) {
  const auto put = [](const Ref<IStoreElement>& column, std::u16string_view name, auto... args) {
    return Put(column.Get(), name, args...).Shown();
  };
  const auto free = Column(8);
  EXPECT_EQ("364 The value 99 is not a valid data type.", put(free, u"DataType", Variant::I4(99)));
  EXPECT_EQ("250 Unknown error.", put(free, u"Values", Variant::I4(0), Variant::R8(1)));
  EXPECT_EQ("empty", put(free, u"DataType", Variant::I4(eR32)));
  EXPECT_EQ("355 Cannot change local column data type because it has already been assigned.",
            put(free, u"DataType", Variant::I4(eR64)));
  EXPECT_EQ("empty", put(free, u"Values", Variant::I4(1), Variant::R8(0.5)));
  EXPECT_EQ("211 The index 3 is out of range for the property Values.",
            put(free, u"Values", Variant::I4(3), Variant::R8(1)));
  // The chosen type is that of the record, not only of the object.
  EXPECT_EQ("empty", Get(free.Get(), u"Refresh").Shown());
  EXPECT_EQ("9", Eval(free.Get(), "DataType").Shown());
  EXPECT_EQ("0.5", Eval(free.Get(), "Values(1)").Shown());
  EXPECT_EQ("null", Eval(free.Get(), "Values(2)").Shown());

  const auto kept = Column(1);
  EXPECT_EQ("355 Cannot change local column data type because it has already been assigned.",
            put(kept, u"DataType", Variant::I4(eR32)));
  EXPECT_EQ("250 Unknown error.", put(kept, u"Values", Variant::I4(0), Variant::Text(u"x")));
  EXPECT_EQ("empty", put(kept, u"Values", Variant::I4(0), Variant::R8(-1)));
  EXPECT_EQ("empty", put(kept, u"Flags", Variant::I4(2), Variant::I4(7)));
  EXPECT_EQ("211 The index 3 is out of range for the property Flags.",
            put(kept, u"Flags", Variant::I4(3), Variant::I4(7)));
  EXPECT_EQ("-1 2.5 3.5 7", Eval(kept.Get(), "Values(0)").Shown() + " " + Ask(1, "Values(1)") +
                                " " + Ask(1, "Values(2)") + " " + Ask(1, "Flags(2)"));
}

TEST_P(Columns, RefuseWritesWhereTheStoreDoes) {
  OpenAgain(u" readonly='yes'", "columns");
  EXPECT_EQ("365 The data store is write protected.",
            Put(Column(1).Get(), u"Values", Variant::I4(0), Variant::R8(1)).Shown());
}

}  // namespace
}  // namespace hv::vex

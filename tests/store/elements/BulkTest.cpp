// store/elements/BulkTest.cpp - columns of values as scripts see them, over
// tests/data/browse/columns.atfx.
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::kUnknown;
using test::OutOfRange;

class Columns : public test::CampaignTest {
 protected:
  Columns() { Use(); }
  void Use(const std::string& moreTags = {}) {
    OpenAgain("browse/columns", moreTags);
    for (const char id : std::string("123456789")) {
      Show(std::string("Set c") + id + " = GetElementByKey('Trace.Record:" + id + "')");
    }
  }
};
HV_BOTH_KINDS(Columns);

TEST_P(Columns, ShowValuesFlagsAndTypes) {
  Expect({{"c1.Size", "3"},
          {"c1.DataType", "10"},
          {"c1.Values(2)", "3.5"},
          {"c1.Values(3)", OutOfRange("3")},
          {"c1.Values(-1)", OutOfRange("-1")},
          {"c1.Flags(1)", "0"},
          {"c1.Flags(3)", OutOfRange("3", "Flags")},
          {"c1.Flags(-1)", OutOfRange("-1", "Flags")},
          {"c2.Size", "2"},  // start and step, whatever the submatrix says
          {"c2.Values(1)", "0.25"},
          {"c2.Values(2)", OutOfRange("2")},
          {"c2.Flags(77)", "9"},  // one for all
          {"c3.Size", "0"},
          {"c3.Values(0)", OutOfRange("0")},
          {"c4.Size", "3"},
          {"c4.Values(0)", "null"},  // promised by the submatrix
          {"c4.DataType", "3"},      // as the quantity says
          {"c4.Flags(0)", OutOfRange("0", "Flags")},
          {"c5.Size", "0"},
          {"c5.DataType", "0"},
          {"c6.Size", "0"},
          {"c6.DataType", "352 The datatype of the measurement quantity is invalid."},
          {"c7.Values(1)", "b"},
          {"c7.DataType", "23"},
          {"c8.Size", "3"},
          {"c8.DataType", "0"},
          {"c9.Size", "0"},  // truth values can't be reached by index
          {"c1.IsKindOf('StoreElement<WithBulk>')", "1"},
          {"c1.IsKindOf('Element<DataStore>')", "1"},
          {"c1.IsKindOf('Trace.Record')", "1"},
          {"c1.SetValues(none)",
           "222 The argument Channel<Data> of the method SetValues must be a Object."}});
}

TEST_P(Columns, TakeTheirTypeOnceAndKeepWhatIsWritten) {
  const std::string assigned =
      "355 Cannot change local column data type because it has already been assigned.";
  Expect({{"c8.DataType = 99", "364 The value 99 is not a valid data type."},
          {"c8.Values(0) = 1.0", kUnknown},
          {"c8.DataType = 9", "empty"},
          {"c8.DataType = 10", assigned},
          {"c8.Values(1) = 0.5", "empty"},
          {"c8.Values(3) = 1.0", OutOfRange("3")},
          // The chosen type is that of the record, not only of the object.
          {"c8.Refresh", "empty"},
          {"c8.DataType", "9"},
          {"c8.Values(1)", "0.5"},
          {"c8.Values(2)", "null"},
          {"c1.DataType = 9", assigned},
          {"c1.Values(0) = 'x'", kUnknown},
          {"c1.Values(0) = -1.0", "empty"},
          {"c1.Flags(2) = 7", "empty"},
          {"c1.Flags(3) = 7", OutOfRange("3", "Flags")},
          {"c1.Values(0)", "-1"},
          {"c1.Values(1)", "2.5"},
          {"c1.Values(2)", "3.5"},
          {"c1.Flags(2)", "7"}});
  Use("<readonly>yes</readonly>");
  Expect({{"c1.Values(0) = 1.0", test::kProtected}});
}

}  // namespace
}  // namespace hv::vex

// apps/cli/demo/Context.h - records that measurements share: units, quantities, people, equipment.
#pragma once

#include <map>
#include <string_view>

#include "apps/cli/demo/Records.h"

namespace hv::cli::demo {

/// The shared records by their names, which last as long as the program.
struct Context {
  using ByName = std::map<std::u16string_view, Record>;
  Record environment;
  ByName units;
  ByName quantities;
  ByName users;
  ByName unitsUnderTest;
  ByName equipments;
  ByName sensors;
  ByName sequences;
};

Context WriteContext(RecordMaker& maker);

}  // namespace hv::cli::demo

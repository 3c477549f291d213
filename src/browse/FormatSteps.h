// browse/FormatSteps.h - a display name made ready for many rows: every key is looked up once.
#pragma once

#include <cstdint>
#include <vector>

#include <storefabric/WString.h>

#include "browse/RepresentedByParts.h"

namespace hv::vex {

class DisplayFormat;

class FormatSteps {
 public:
  /// Holds the columns' tables. Throws what the engine throws.
  FormatSteps(IRepresentedByPartsImpl& parts, const ValueColumns& columns);

  /// Appends the text of a row. A value that can't be read or converted is left out.
  void Append(std::uint64_t row, const DisplayFormat& format, WString& text) const;

 private:
  struct Step {
    WString freeText;
    ValueColumn column;  ///< without a table: the free text
  };
  std::vector<Step> m_steps;
};

}  // namespace hv::vex

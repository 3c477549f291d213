// core/plugins/sql/Cells.h - values of attributes on their way into columns and back.
#pragma once

#include <string>

#include "core/model/Model.h"
#include "core/model/Value.h"
#include "core/plugins/sql/Driver.h"

namespace hv::vex::engine::sql {

/// Binds the value at `row` of a block of a scalar attribute. A text is put into `buffer`, which
/// must stay as it is until the statement ran.
void BindCell(Statement& statement, int index, const ColumnBlock& block, std::size_t row,
              std::string& buffer);
/// Binds the key of a text cell, or null if the text is its own key. `stored` is what `BindCell`
/// left in its buffer.
void BindKey(Statement& statement, int index, const ColumnBlock& block, std::size_t row,
             const std::string& stored, std::string& buffer);
/// Adds a row to the block of a scalar attribute.
void AppendCell(const Statement& statement, int column, bool isForeign, ColumnBlock& block);
/// A block of one row; `value` is a scalar of a type that has columns.
ColumnBlock BlockOf(const Value& value);

}  // namespace hv::vex::engine::sql

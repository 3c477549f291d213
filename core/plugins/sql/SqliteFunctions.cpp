// core/plugins/sql/SqliteFunctions.cpp - folding and wildcards for statements, and lists of ids as
// a table.
#include "core/plugins/sql/SqliteFunctions.h"

#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "core/plugins/sql/TextKey.h"
#include "core/query/TextMatch.h"

namespace hv::vex::engine::sql {
namespace {

std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void GiveText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// Runs a body that gives no result for a null, and never lets an exception into C code.
template <class Body>
void Answer(sqlite3_context* context, sqlite3_value* value, Body body) {
  if (sqlite3_value_type(value) == SQLITE_NULL) return;
  try {
    body();
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (...) {
    sqlite3_result_error(context, "text function", -1);
  }
}

void Fold(sqlite3_context* context, int, sqlite3_value** values) {
  Answer(context, values[0], [&] { GiveText(context, FoldedKey(FromStored(TextOf(values[0])))); });
}

void Date14Of(sqlite3_context* context, int, sqlite3_value** values) {
  Answer(context, values[0], [&] {
    const auto digits = NormalizeDate14(DateDigits(FromStored(TextOf(values[0]))));
    if (digits) GiveText(context, std::string(digits->begin(), digits->end()));
  });
}

/// What the statement keeps for its pattern. The text's memory serves all rows; it isn't kept by
/// the thread, which would keep this module loaded until the thread ends.
struct Matcher {
  WildcardPattern pattern;
  std::u16string text;
};

void Matches(sqlite3_context* context, int, sqlite3_value** values) {
  Answer(context, values[0], [&] {
    auto* matcher = static_cast<Matcher*>(sqlite3_get_auxdata(context, 1));
    std::unique_ptr<Matcher> made;
    if (matcher == nullptr) {
      made.reset(new Matcher{WildcardPattern(FromStored(TextOf(values[1]))), {}});
      matcher = made.get();
    }
    matcher->text.clear();
    AppendUtf16(TextOf(values[0]), matcher->text);
    sqlite3_result_int(context, matcher->pattern.Matches(matcher->text) ? 1 : 0);
    if (made == nullptr) return;
    sqlite3_set_auxdata(context, 1, made.release(),
                        [](void* p) { delete static_cast<Matcher*>(p); });
  });
}

int CompareUtf16(void*, int aSize, const void* a, int bSize, const void* b) {
  return CompareStored({static_cast<const char*>(a), static_cast<std::size_t>(aSize)},
                       {static_cast<const char*>(b), static_cast<std::size_t>(bSize)});
}

// --- sf_ids ------------------------------------------------------------------------------------

using IdSpan = std::span<const std::int64_t>;
enum IdColumn { kId, kPosition, kPointer };

struct IdCursor {
  sqlite3_vtab_cursor base;
  IdSpan ids;
  std::size_t at;
};

int Connect(sqlite3* database, void*, int, const char* const*, sqlite3_vtab** out, char**) {
  const int rc =
      sqlite3_declare_vtab(database, "CREATE TABLE x(id INTEGER, pos INTEGER, list HIDDEN)");
  if (rc != SQLITE_OK) return rc;
  *out = static_cast<sqlite3_vtab*>(sqlite3_malloc(sizeof(sqlite3_vtab)));
  if (*out == nullptr) return SQLITE_NOMEM;
  **out = {};
  sqlite3_vtab_config(database, SQLITE_VTAB_INNOCUOUS);
  return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* table) {
  sqlite3_free(table);
  return SQLITE_OK;
}

int BestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& constraint = info->aConstraint[i];
    if (constraint.iColumn != kPointer || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) continue;
    if (constraint.usable == 0) return SQLITE_CONSTRAINT;
    info->aConstraintUsage[i].argvIndex = 1;
    info->aConstraintUsage[i].omit = 1;
    // Told of more rows than a table had when it was last looked at, the database reads all of it
    // into a Bloom filter before each statement.
    info->estimatedCost = 1;
    info->estimatedRows = 1;
    return SQLITE_OK;
  }
  return SQLITE_CONSTRAINT;
}

int OpenCursor(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
  auto* cursor = new (std::nothrow) IdCursor{};
  if (cursor == nullptr) return SQLITE_NOMEM;
  *out = &cursor->base;
  return SQLITE_OK;
}

int CloseCursor(sqlite3_vtab_cursor* cursor) {
  delete reinterpret_cast<IdCursor*>(cursor);
  return SQLITE_OK;
}

int Filter(sqlite3_vtab_cursor* base, int, const char*, int count, sqlite3_value** values) {
  auto* cursor = reinterpret_cast<IdCursor*>(base);
  const auto* ids = count == 0
                        ? nullptr
                        : static_cast<const IdSpan*>(sqlite3_value_pointer(values[0], kIdsPointer));
  cursor->ids = ids == nullptr ? IdSpan() : *ids;
  cursor->at = 0;
  return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* cursor) {
  ++reinterpret_cast<IdCursor*>(cursor)->at;
  return SQLITE_OK;
}

int IsAtEnd(sqlite3_vtab_cursor* base) {
  const auto* cursor = reinterpret_cast<IdCursor*>(base);
  return cursor->at >= cursor->ids.size() ? 1 : 0;
}

int ColumnAt(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
  const auto* cursor = reinterpret_cast<IdCursor*>(base);
  if (column == kId) sqlite3_result_int64(context, cursor->ids[cursor->at]);
  if (column == kPosition) sqlite3_result_int64(context, static_cast<sqlite3_int64>(cursor->at));
  return SQLITE_OK;
}

int RowId(sqlite3_vtab_cursor* base, sqlite3_int64* out) {
  *out = static_cast<sqlite3_int64>(reinterpret_cast<IdCursor*>(base)->at);
  return SQLITE_OK;
}

constexpr sqlite3_module MakeIdsModule() {
  sqlite3_module module{};
  module.xConnect = Connect;
  module.xBestIndex = BestIndex;
  module.xDisconnect = Disconnect;
  module.xOpen = OpenCursor;
  module.xClose = CloseCursor;
  module.xFilter = Filter;
  module.xNext = Next;
  module.xEof = IsAtEnd;
  module.xColumn = ColumnAt;
  module.xRowid = RowId;
  return module;
}
constexpr sqlite3_module kIdsModule = MakeIdsModule();

}  // namespace

int RegisterFunctions(sqlite3* database) {
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  const struct {
    const char* name;
    int arguments;
    void (*function)(sqlite3_context*, int, sqlite3_value**);
  } kFunctions[] = {{"sf_fold", 1, Fold}, {"sf_date14", 1, Date14Of}, {"sf_matches", 2, Matches}};
  for (const auto& f : kFunctions) {
    const int rc = sqlite3_create_function(database, f.name, f.arguments, kFlags, nullptr,
                                           f.function, nullptr, nullptr);
    if (rc != SQLITE_OK) return rc;
  }
  const int rc = sqlite3_create_collation(database, "SF_UTF16", SQLITE_UTF8, nullptr, CompareUtf16);
  if (rc != SQLITE_OK) return rc;
  return sqlite3_create_module(database, "sf_ids", &kIdsModule, nullptr);
}

}  // namespace hv::vex::engine::sql

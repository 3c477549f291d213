// store/core/IBulkReader.h - values of many instances with one call.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IContainer;
class IInstance;
class IInstList;
struct ScalarValue;

/// The answer of a bulk read: rows of instances, one column per attribute asked for.
class IValueTable : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IValueTable");

  virtual std::uint64_t GetRowCount() = 0;
  virtual std::uint64_t GetColumnCount() = 0;
  /// Type code of a column.
  virtual std::int32_t GetColumnType(std::uint64_t column) = 0;
  /// The instance of a row.
  virtual IInstance* GetInstance(std::uint64_t row) = 0;
  /// The key of a row without making its instance.
  virtual void GetKey(std::uint64_t row, WString& key) = 0;
  /// Non-zero if the value is unset.
  virtual std::int32_t IsNull(std::uint64_t row, std::uint64_t column) = 0;
  /// One value; a text stays valid until the next call on the table.
  virtual std::u16string_view GetText(std::uint64_t row, std::uint64_t column) = 0;
  virtual std::int64_t GetInteger(std::uint64_t row, std::uint64_t column) = 0;
  virtual double GetReal(std::uint64_t row, std::uint64_t column) = 0;
  /// One value in the form that its column's type has; of a list of values the first. A text stays
  /// valid until the next call on the table.
  virtual void ReadScalar(std::uint64_t row, std::uint64_t column, ScalarValue* value) = 0;
  /// The instances of all rows in order. The list and the table show the same rows: where it is
  /// cut, the table is.
  virtual IInstList* GetInstances() = 0;

 protected:
  ~IValueTable() = default;
};

/// Got by asking a store for this interface; a store may refuse.
class IBulkReader : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBulkReader");

  /// The instances that `reference` leads to from `start` (null: all instances at the path
  /// `reference`, "/#Name"), kept if they meet `filter` (a query text; empty: all), with the values
  /// of the attributes named in `attributes` (a free container of texts; names may be paths along
  /// references to one). The pseudo attribute "HV_VEX_INSTANCE" stands for the instance itself: an
  /// empty column.
  virtual IValueTable* ReadRelated(IInstance* start, std::u16string_view reference,
                                   std::u16string_view filter, IContainer* attributes) = 0;
  /// The same for instances at hand, all of one entity; one row per instance in the order of the
  /// list.
  virtual IValueTable* ReadInstances(IInstList* instances, IContainer* attributes) = 0;
  /// The same for what a query text gives (see `IStoreQuery::Execute`, also for failures), read
  /// while it is found.
  virtual IValueTable* ReadQuery(std::u16string_view queryText, IContainer* attributes) = 0;

 protected:
  ~IBulkReader() = default;
};

}  // namespace hv::vex

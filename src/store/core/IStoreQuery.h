// store/core/IStoreQuery.h - the query face of a store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IInstList;

/// Got by asking a store for this interface; a store may refuse.
class IStoreQuery : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreQuery");

  /// Runs a query text (docs/formats/query-expression.md). A text that can't be read, or names what
  /// the model doesn't have, throws kBadQuery with the place and the reason.
  virtual IInstList* Execute(std::u16string_view queryText) = 0;
  /// Fills the query text for a plain list of `returnType`. `expression` is a name pattern or a
  /// list of conditions (same page); its wildcards are "%" and "_", or "*" and "?" with
  /// `odsConform`.
  virtual void BuildQueryText(WString& queryText, std::u16string_view returnType,
                              std::int32_t odsConform, std::u16string_view expression) = 0;

  // Added behind the operations above.

  /// Distinct values of "Entity.Attribute" in ascending order, at most `limit` (0: all), of all
  /// records or of those that `restriction` (a query text, may be empty) gives: a list of values.
  virtual class IAttribute* GetDistinctValues(std::u16string_view entity,
                                              std::u16string_view attribute,
                                              std::u16string_view restriction,
                                              std::uint64_t limit) = 0;
  /// Two values, lowest and highest; none if no record has one. `*count` gets the number of records
  /// that have one.
  virtual class IAttribute* GetBounds(std::u16string_view entity, std::u16string_view attribute,
                                      std::u16string_view restriction, std::uint64_t* count) = 0;

 protected:
  ~IStoreQuery() = default;
};

}  // namespace hv::vex

// query/files/IColumnCollectionImpl.h - column configurations as query files hold them. The columns
// of a results display implement it.
#pragma once

#include <cstdint>
#include <vector>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

/// One column. Names are internal ones, which outlive a change of the store's names.
struct StoredColumn {
  WString typeName;  ///< the entity, as a path
  WString property;
  std::int32_t width = 0;  ///< pixels
};

/// The columns of one type of results.
struct StoredReturnType {
  WString returnTypeName;             ///< the entity, by its internal name
  std::int32_t firstColumnWidth = 0;  ///< pixels
  bool automaticColumns = false;      ///< columns are added for what a search asks for
  std::vector<StoredColumn> columns;  ///< in their order
};

class IColumnCollectionImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IColumnCollectionImpl");

  /// True for the columns of a store's results, the only ones that files hold.
  virtual bool IsOfStore() = 0;
  virtual Result GetStored(std::vector<StoredReturnType>* configuration) = 0;
  /// Becomes what a file holds. What the store doesn't have is the collection's to leave out.
  virtual Result SetStored(const std::vector<StoredReturnType>& configuration) = 0;

 protected:
  ~IColumnCollectionImpl() = default;
};

}  // namespace hv::vex

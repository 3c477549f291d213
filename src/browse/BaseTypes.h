// browse/BaseTypes.h - the four base types that a browse path treats in a way of its own.
#pragma once

#include <storefabric/Ref.h>

#include "browse/SymbolTable.h"
#include "store/core/IEntity.h"
#include "store/core/IModel.h"

namespace hv::vex {

enum class BaseKind { None, Measurement, MeasurementQuantity, Submatrix, LocalColumn };

/// The entities of a model under the four base names; null where the model has none.
struct BaseTypes {
  Ref<IEntity> measurement;
  Ref<IEntity> measurementQuantity;
  Ref<IEntity> submatrix;
  Ref<IEntity> localColumn;

  void Resolve(IModel& model) {
    measurement = Ref<IEntity>::Adopt(model.GetEntity(u"aomeasurement"));
    measurementQuantity = Ref<IEntity>::Adopt(model.GetEntity(u"aomeasurementquantity"));
    submatrix = Ref<IEntity>::Adopt(model.GetEntity(u"aosubmatrix"));
    localColumn = Ref<IEntity>::Adopt(model.GetEntity(u"aolocalcolumn"));
  }
  [[nodiscard]] BaseKind KindOf(IEntity& entity) const {
    if (entity.IsKindOf(measurement.Get()) != 0) return BaseKind::Measurement;
    if (entity.IsKindOf(measurementQuantity.Get()) != 0) return BaseKind::MeasurementQuantity;
    if (entity.IsKindOf(submatrix.Get()) != 0) return BaseKind::Submatrix;
    if (entity.IsKindOf(localColumn.Get()) != 0) return BaseKind::LocalColumn;
    return BaseKind::None;
  }
};

/// The symbol that a level has when nobody gave it one.
constexpr SymbolKey DefaultSymbol(BaseKind kind, bool isDataLevel) {
  switch (kind) {
    case BaseKind::Measurement:
      return symbol::kMeasurement;
    case BaseKind::MeasurementQuantity:
      return symbol::kMeasurementQuantity;
    case BaseKind::Submatrix:
      return symbol::kSubmatrix;
    case BaseKind::LocalColumn:
      return symbol::kLocalColumn;
    case BaseKind::None:
      break;
  }
  return isDataLevel ? symbol::kDataLevel : symbol::kLevel;
}

/// The first entity that derives from `base`; null if there is none. Throws what the engine throws.
inline Ref<IEntity> FirstDerived(const Ref<IEntity>& base) {
  const auto derived = Ref<IEntityList>::Adopt(base ? base->GetSubTypes() : nullptr);
  return derived ? Ref<IEntity>::Adopt(derived->GetEntity(0)) : Ref<IEntity>();
}

}  // namespace hv::vex

#include "core/model/ModelChange.h"

#include <algorithm>

namespace hv::vex::engine {
namespace {

bool IsInPlace(const Attribute& x, const Attribute& y) {
  return x.name == y.name && x.baseName == y.baseName && x.type == y.type &&
         x.sequence == y.sequence;
}

bool IsSame(const Attribute& x, const Attribute& y) {
  return IsInPlace(x, y) && x.obligatory == y.obligatory && x.unique == y.unique &&
         x.autogenerate == y.autogenerate && x.length == y.length &&
         x.enumeration == y.enumeration && x.unit == y.unit;
}

bool IsInPlace(const Relation& x, const Relation& y) {
  return x.name == y.name && x.baseName == y.baseName && x.target == y.target &&
         x.inverse == y.inverse;
}

bool IsSame(const Relation& x, const Relation& y) {
  return IsInPlace(x, y) && x.minOccurs == y.minOccurs && x.maxOccurs == y.maxOccurs &&
         x.inverseName == y.inverseName && x.relationship == y.relationship;
}

/// True if the first list is the beginning of the second.
template <class List, class Equal>
bool IsBeginning(const List& before, const List& after, Equal equal) {
  return before.size() <= after.size() &&
         std::equal(before.begin(), before.end(), after.begin(), equal);
}

template <class List, class Equal>
bool IsWhole(const List& before, const List& after, Equal equal) {
  return before.size() == after.size() && IsBeginning(before, after, equal);
}

bool IsInPlace(const Entity& x, const Entity& y);
bool IsSame(const Entity& x, const Entity& y);
bool IsSame(const Enumeration& x, const Enumeration& y);
constexpr auto kInPlace = [](const auto& x, const auto& y) { return IsInPlace(x, y); };
constexpr auto kSame = [](const auto& x, const auto& y) { return IsSame(x, y); };

bool IsInPlace(const Entity& x, const Entity& y) {
  return x.name == y.name && x.isBase == y.isBase && x.super == y.super &&
         IsBeginning(x.attributes, y.attributes, kInPlace) &&
         IsBeginning(x.relations, y.relations, kInPlace);
}

bool IsSame(const Entity& x, const Entity& y) {
  return x.name == y.name && x.isBase == y.isBase && x.super == y.super &&
         IsWhole(x.attributes, y.attributes, kSame) && IsWhole(x.relations, y.relations, kSame);
}

bool IsSame(const Enumeration& x, const Enumeration& y) {
  return x.name == y.name && IsWhole(x.items, y.items, [](const EnumItem& i, const EnumItem& j) {
           return i.name == j.name && i.value == j.value;
         });
}

}  // namespace

ModelChange CompareModels(const Model& before, const Model& after) {
  if (before.BaseModelVersion() != after.BaseModelVersion()) return ModelChange::Other;
  if (IsWhole(before.Entities(), after.Entities(), kSame) &&
      IsWhole(before.Enumerations(), after.Enumerations(), kSame)) {
    return ModelChange::None;
  }
  return IsBeginning(before.Entities(), after.Entities(), kInPlace) ? ModelChange::Grown
                                                                    : ModelChange::Other;
}

}  // namespace hv::vex::engine

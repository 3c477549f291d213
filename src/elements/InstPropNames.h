// elements/InstPropNames.h - the names of an instance's properties, in groups.
#pragma once

#include <cstddef>
#include <vector>

#include <storefabric/WString.h>

namespace hv::vex {
class IInstance;
}

namespace hv::vex::easyImpl {

/// The names of one group, and the groups in their order.
using tInstPropNames = std::vector<WString>;
using tListInstPropNames = std::vector<tInstPropNames>;

/// The names of the attributes of property types: those of the entity, then those that only the
/// instance has, each in the order of the engine.
class CInstPropNames {
 public:
  static constexpr std::size_t kEntityGroup = 0;
  static constexpr std::size_t kInstanceGroup = 1;

  /// Reads the names anew. Throws what the engine throws, with the names as they were.
  void Read(IInstance& instance);

  [[nodiscard]] const tListInstPropNames& Groups() const { return m_groups; }
  /// The number of names in all groups.
  [[nodiscard]] std::size_t Count() const;
  /// The name at a position counted through all groups; null beyond the end.
  [[nodiscard]] const WString* At(std::size_t position) const;

 private:
  tListInstPropNames m_groups;
};

}  // namespace hv::vex::easyImpl

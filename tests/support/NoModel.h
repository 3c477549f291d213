// tests/support/NoModel.h - a model that knows nothing.
#pragma once

#include "cor/Counted.h"
#include "store/core/Seam.h"

namespace hv::test {

class NoModel : public cor::Counted<vex::IModel> {
 public:
  vex::IEntityList* GetEntities() override { return nullptr; }
  vex::IEntity* GetEntityByName(std::u16string_view) override { return nullptr; }
  vex::IEntity* GetEntityOf(vex::IInstance*) override { return nullptr; }
  std::int32_t HasModelPart(std::u16string_view) override { return 0; }
  vex::IEntity* GetEntity(std::u16string_view) override { return nullptr; }
  vex::IEntity* GetApplicationEntityOfBase(std::u16string_view) override { return nullptr; }
  std::int32_t FindPath(vex::IEntity*, vex::IEntity*, WString&) override { return 0; }
  std::uint64_t GetChangeCounter() override { return 0; }
  std::uint64_t GetLongestValue() override { return 0; }
  std::int32_t SupportsCustomLogic() override { return 0; }
  std::int32_t SupportsMultipleValues() override { return 0; }
  void GetBaseModelVersion(WString&) override {}
  vex::IAttribute* GetEnumerationNames() override { return nullptr; }
  std::uint64_t GetEnumerationItemCount(std::u16string_view) override { return 0; }
  void GetEnumerationItem(std::u16string_view, std::uint64_t, WString&, std::int64_t*) override {}
};

}  // namespace hv::test

// core/objects/StoreContextObject.h - named values of a store session at the seam.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "cor/Counted.h"
#include "store/core/IStoreContext.h"

namespace hv::vex::engine {

/// What the store's source says about itself, and what the host adds for this session.
class StoreContextObject final : public cor::Counted<IStoreContext> {
 public:
  using Values = std::vector<std::pair<std::u16string, std::u16string>>;
  explicit StoreContextObject(Values values) : m_values(std::move(values)) {}

  IAttribute* GetParameter(std::u16string_view name) override;
  void SetParameter(std::u16string_view name, std::u16string_view value) override;
  IAttribute* GetParameterNames() override;

 private:
  ~StoreContextObject() override = default;
  Values m_values;
};

}  // namespace hv::vex::engine

// store/core/IStoreContext.h - settings of a store session.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;

/// Named values of a store session: what an exchange file says about itself
/// ("documentation_exporter"), and what hosts set for plug-ins.
class IStoreContext : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreContext");

  /// The value of that name, or null.
  virtual IAttribute* GetParameter(std::u16string_view name) = 0;
  /// Sets a text value, making the parameter where it doesn't exist.
  virtual void SetParameter(std::u16string_view name, std::u16string_view value) = 0;
  /// A list of texts.
  virtual IAttribute* GetParameterNames() = 0;

 protected:
  ~IStoreContext() = default;
};

}  // namespace hv::vex

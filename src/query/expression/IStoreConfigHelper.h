// query/expression/IStoreConfigHelper.h - what the writer of query expressions asks a store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>

namespace hv::vex {

class IAttributeDataTypeHelper;

/// Answers for one store, or for none: then everything is supported and no type is known.
class IStoreConfigHelper : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreConfigHelper");

  [[nodiscard]] virtual bool HasStore() = 0;
  /// Whether conditions may be combined in another way than all with AND.
  [[nodiscard]] virtual bool SupportsCustomLogic() = 0;
  /// Whether one condition may hold several values joined with OR.
  [[nodiscard]] virtual bool SupportsMultipleValues() = 0;
  /// Longest value in UTF-16 units; 0 for no limit.
  [[nodiscard]] virtual std::uint64_t GetLongestValue() = 0;
  /// What kind of values a property takes, with one reference for the caller. A property that the
  /// entity doesn't have, or an unknown entity, has no type.
  /// \param property  a name, or a path of references and a name
  /// \return S_OK; E_POINTER; what reading the model says
  virtual Result MakePropertyHelper(std::u16string_view type, std::u16string_view property,
                                    IAttributeDataTypeHelper** helper) = 0;

 protected:
  ~IStoreConfigHelper() = default;
};

}  // namespace hv::vex

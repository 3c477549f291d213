// core/objects/FreeContainer.h - a container that belongs to no store.
#pragma once

#include <map>
#include <string>

#include "cor/Counted.h"
#include "core/model/Value.h"
#include "store/core/IContainer.h"

namespace hv::vex::engine {

/// Values by name, told apart by case; with `SetType` one list of values under the empty name.
class FreeContainer final : public cor::Counted<IContainer> {
 public:
  FreeContainer() = default;

  void SetType(std::int32_t typeCode) override;
  void GetString(WString& value, std::u16string_view name) override;
  IInstance* GetObject(std::u16string_view path) override;
  IInstList* GetList(std::u16string_view pathOrName) override;
  void SetInteger(std::u16string_view name, std::int32_t value) override;
  void SetString(std::u16string_view name, std::u16string_view value) override;
  std::int64_t GetInteger64(std::u16string_view name, std::int64_t otherwise) override;
  std::int32_t GetBoolean(std::u16string_view name, std::int32_t otherwise) override;
  double GetReal(std::u16string_view name, double otherwise) override;
  void SetInteger64(std::u16string_view name, std::int64_t value) override;
  void SetBoolean(std::u16string_view name, std::int32_t value) override;
  void SetReal(std::u16string_view name, double value) override;
  IAttribute* GetAttribute(std::u16string_view name) override;
  IAttribute* GetNames() override;

 private:
  ~FreeContainer() override = default;
  [[nodiscard]] const Value* Find(std::u16string_view name) const;
  std::map<std::u16string, Value, std::less<>> m_values;
};

}  // namespace hv::vex::engine

// apps/cli/demo/Records.h - makes and fills instances of a store through the engine's interfaces.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "store/core/Seam.h"
#include "storefabric/Ref.h"

namespace hv::cli::demo {

/// One instance, by its attributes' names. Throws vex::Exception.
class Record final {
 public:
  Record() = default;
  explicit Record(Ref<vex::IInstance> instance);

  Record& Set(std::u16string_view attribute, std::u16string_view text);
  Record& Set(std::u16string_view attribute, double number);
  Record& Set(std::u16string_view attribute, std::int64_t number);
  Record& Set(std::u16string_view attribute, std::span<const std::u16string_view> texts);
  Record& Set(std::u16string_view attribute, std::span<const double> numbers);
  Record& Set(std::u16string_view attribute, std::span<const std::int64_t> numbers);
  Record& Link(std::u16string_view reference, const Record& target);
  /// An attribute that only this instance has.
  Record& Note(std::u16string_view name, std::u16string_view text);

 private:
  [[nodiscard]] Ref<vex::IAttribute> At(std::u16string_view attribute) const;
  Ref<vex::IInstance> m_instance;
};

class RecordMaker final {
 public:
  explicit RecordMaker(vex::IStore& store);
  /// A new instance of an entity of the store's model.
  Record New(std::u16string_view entity, std::u16string_view name);

 private:
  vex::IStore& m_store;
  Ref<vex::IModel> m_model;
  std::map<std::u16string, Ref<vex::IEntity>, std::less<>> m_entities;
};

}  // namespace hv::cli::demo

#include "core/objects/FreeContainer.h"

#include "core/objects/AttributeObjects.h"
#include "core/objects/Guard.h"
#include "core/objects/InstanceLists.h"
#include "core/objects/ValueText.h"

namespace hv::vex::engine {

const Value* FreeContainer::Find(std::u16string_view name) const {
  const auto found = m_values.find(name);
  return found == m_values.end() || !found->second.IsSet() ? nullptr : &found->second;
}

void FreeContainer::SetType(std::int32_t typeCode) {
  Seam([&] {
    const auto type = OdsTypeOfSeam(typeCode);
    if (!type) throw Exception(errc::kWrongType, u"that type can't be stored");
    m_values[std::u16string()] = Value::Unset(*type, true);
  });
}

void FreeContainer::GetString(WString& value, std::u16string_view name) {
  Seam([&] {
    value.clear();
    const Value* found = Find(name);
    if (!found || found->Count() == 0) return;
    std::u16string text;
    ElementAsText(*found, 0, nullptr, text);
    value = std::u16string_view(text);
  });
}

IInstance* FreeContainer::GetObject(std::u16string_view) { return nullptr; }
IInstList* FreeContainer::GetList(std::u16string_view) {
  return Seam([]() -> IInstList* { return new FreeInstList; });
}

void FreeContainer::SetInteger(std::u16string_view name, std::int32_t value) {
  Seam([&] { m_values[std::u16string(name)] = Value::Integer(OdsType::Long, value); });
}
void FreeContainer::SetString(std::u16string_view name, std::u16string_view value) {
  Seam([&] {
    m_values[std::u16string(name)] = Value::Text(OdsType::String, std::u16string(value));
  });
}
void FreeContainer::SetInteger64(std::u16string_view name, std::int64_t value) {
  Seam([&] { m_values[std::u16string(name)] = Value::Integer(OdsType::LongLong, value); });
}
void FreeContainer::SetBoolean(std::u16string_view name, std::int32_t value) {
  Seam([&] { m_values[std::u16string(name)] = Value::Integer(OdsType::Boolean, value ? 1 : 0); });
}
void FreeContainer::SetReal(std::u16string_view name, double value) {
  Seam([&] { m_values[std::u16string(name)] = Value::Real(OdsType::Double, value); });
}

std::int64_t FreeContainer::GetInteger64(std::u16string_view name, std::int64_t otherwise) {
  return Seam([&] {
    const Value* found = Find(name);
    return found ? ElementAsInteger(*found, 0) : otherwise;
  });
}
std::int32_t FreeContainer::GetBoolean(std::u16string_view name, std::int32_t otherwise) {
  return Seam([&] {
    const Value* found = Find(name);
    return found ? (ElementAsInteger(*found, 0) != 0 ? 1 : 0) : otherwise;
  });
}
double FreeContainer::GetReal(std::u16string_view name, double otherwise) {
  return Seam([&] {
    const Value* found = Find(name);
    return found ? ElementAsReal(*found, 0) : otherwise;
  });
}

IAttribute* FreeContainer::GetAttribute(std::u16string_view name) {
  return Seam([&]() -> IAttribute* {
    const auto found = m_values.find(name);
    if (found == m_values.end()) return nullptr;
    // The attribute writes through to the container, which it keeps alive.
    auto self = Ref<FreeContainer>::Share(this);
    return new ValueAttribute(
        std::u16string(name), found->second, nullptr, nullptr,
        [self, key = std::u16string(name)](const Value& value) { self->m_values[key] = value; });
  });
}

IAttribute* FreeContainer::GetNames() {
  return Seam([&] {
    std::vector<std::u16string> names;
    for (const auto& [name, value] : m_values) {
      if (!name.empty()) names.push_back(name);
    }
    return ValueAttribute::MakeTextList(u"Names", std::move(names));
  });
}

}  // namespace hv::vex::engine

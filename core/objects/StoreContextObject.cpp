#include "core/objects/StoreContextObject.h"

#include <algorithm>

#include "core/objects/AttributeObjects.h"
#include "core/objects/Guard.h"

namespace hv::vex::engine {

IAttribute* StoreContextObject::GetParameter(std::u16string_view name) {
  return Seam([&]() -> IAttribute* {
    for (const auto& [key, text] : m_values) {
      if (key == name) return new ValueAttribute(key, Value::Text(OdsType::String, text));
    }
    return nullptr;
  });
}

void StoreContextObject::SetParameter(std::u16string_view name, std::u16string_view value) {
  Seam([&] {
    const auto found = std::find_if(m_values.begin(), m_values.end(),
                                    [&](const auto& entry) { return entry.first == name; });
    if (found != m_values.end()) {
      found->second = value;
    } else {
      m_values.emplace_back(name, value);
    }
  });
}

IAttribute* StoreContextObject::GetParameterNames() {
  return Seam([&] {
    std::vector<std::u16string> names;
    for (const auto& entry : m_values) names.push_back(entry.first);
    return ValueAttribute::MakeTextList(u"ParameterNames", std::move(names));
  });
}

}  // namespace hv::vex::engine

#include "core/objects/InstanceKey.h"

#include <charconv>

namespace hv::vex::engine {

void AppendKey(const Model& model, RecordRef record, std::u16string& out) {
  out += model.At(record.entity).name;
  char digits[24] = {':'};
  const auto end = std::to_chars(digits + 1, digits + sizeof digits, record.id).ptr;
  out.append(digits, end);
}

std::optional<RecordRef> ParseKey(const Model& model, std::u16string_view key) {
  const std::size_t colon = key.rfind(u':');
  if (colon == key.npos || colon == 0 || key.size() - colon > 21) return std::nullopt;
  const Entity* entity = model.Find(key.substr(0, colon));
  if (!entity || entity->isBase) return std::nullopt;
  char digits[24];
  std::size_t size = 0;
  for (const char16_t unit : key.substr(colon + 1)) {
    if (unit > 0x7f) return std::nullopt;
    digits[size++] = static_cast<char>(unit);
  }
  RecordId id = 0;
  const auto [end, error] = std::from_chars(digits, digits + size, id);
  if (error != std::errc() || end != digits + size || size == 0) return std::nullopt;
  return RecordRef{entity->id, id};
}

}  // namespace hv::vex::engine

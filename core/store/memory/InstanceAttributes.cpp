// core/store/memory/InstanceAttributes.cpp - chains of items per row.
#include "core/store/memory/InstanceAttributes.h"

#include <bit>
#include <limits>

#include "core/store/memory/Column.h"

namespace hv::vex::engine {
namespace {

bool IsAllowedType(OdsType type) {
  switch (type) {
    case OdsType::String:
    case OdsType::Byte:
    case OdsType::Short:
    case OdsType::Long:
    case OdsType::LongLong:
    case OdsType::Float:
    case OdsType::Double:
    case OdsType::Date:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool InstanceAttributes::IsAllowed(const Value& value) {
  if (!IsAllowedType(value.type)) return false;
  if (!value.IsSet()) return true;
  if (value.sequence || value.Count() != 1) return false;
  const auto* integers = std::get_if<Value::Integers>(&value.data);
  if (integers != nullptr && value.type == OdsType::Byte && integers->front() < 0) {
    // Files know signed bytes here, and only here.
    return integers->front() >= std::numeric_limits<std::int8_t>::min();
  }
  // A column of the type knows all rules of fitting.
  Column probe(value.type, false);
  return probe.SetValue(0, value);
}

std::uint32_t InstanceAttributes::NameNumber(std::u16string_view name) {
  const auto found = m_nameNumbers.find(name);
  if (found != m_nameNumbers.end()) return found->second;
  const auto number = static_cast<std::uint32_t>(m_names.size());
  m_names.emplace_back(name);
  m_nameNumbers.emplace(name, number);
  return number;
}

std::uint32_t* InstanceAttributes::Find(Row row, std::u16string_view name) {
  if (row >= m_heads.size()) m_heads.resize(std::size_t{row} + 1, kEnd);
  std::uint32_t* link = &m_heads[row];
  while (*link != kEnd && m_names[m_items[*link - 1].name] != name) link = &m_items[*link - 1].next;
  return link;
}

bool InstanceAttributes::Set(Row row, const InstanceAttribute& attribute) {
  const Value& value = attribute.value;
  if (!IsAllowed(value)) return false;
  std::int64_t payload = 0;
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    payload = integers->front();
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    const double real = value.type == OdsType::Float
                            ? static_cast<double>(static_cast<float>(reals->front()))
                            : reals->front();
    payload = std::bit_cast<std::int64_t>(real);
  } else if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    payload = static_cast<std::int64_t>(m_texts.Add(texts->front()));
  }
  const std::uint32_t name = NameNumber(attribute.name);
  Item item{payload, attribute.unit, row, kEnd, name, value.type, value.IsSet()};
  std::uint32_t* link = Find(row, attribute.name);
  if (*link != kEnd) {
    item.next = m_items[*link - 1].next;
    m_items[*link - 1] = item;
  } else if (m_free != kEnd) {
    *link = m_free;
    m_free = m_items[m_free - 1].next;
    m_items[*link - 1] = item;
  } else {
    // The link may lie in the vector that grows now, so it is written before.
    *link = static_cast<std::uint32_t>(m_items.size() + 1);
    m_items.push_back(item);
  }
  return true;
}

void InstanceAttributes::Release(std::uint32_t& link) {
  const std::uint32_t position = link;
  Item& item = m_items[position - 1];
  link = item.next;
  item.row = kNoRow;
  item.next = m_free;
  m_free = position;
}

bool InstanceAttributes::Remove(Row row, std::u16string_view name) {
  std::uint32_t* link = Find(row, name);
  if (*link == kEnd) return false;
  Release(*link);
  return true;
}

void InstanceAttributes::Clear(Row row) {
  if (row >= m_heads.size()) return;
  while (m_heads[row] != kEnd) Release(m_heads[row]);
}

std::vector<InstanceAttribute> InstanceAttributes::Of(Row row) const {
  std::vector<InstanceAttribute> attributes;
  if (row >= m_heads.size()) return attributes;
  for (std::uint32_t at = m_heads[row]; at != kEnd; at = m_items[at - 1].next) {
    const Item& item = m_items[at - 1];
    Value value = Value::Unset(item.type);
    if (item.isSet) {
      switch (StorageKindOf(item.type)) {
        case StorageKind::Integer:
          value.data = Value::Integers{item.payload};
          break;
        case StorageKind::Real:
          value.data = Value::Reals{std::bit_cast<double>(item.payload)};
          break;
        default: {
          std::u16string buffer;
          value.data = Value::Texts{std::u16string(TextOf(item).Widen(buffer))};
        }
      }
    }
    attributes.push_back({m_names[item.name], std::move(value), item.unit});
  }
  return attributes;
}

}  // namespace hv::vex::engine

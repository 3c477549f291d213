// tests/core/atfx/DumpStore.cpp - writes every fact that the interface of a store gives.
#include "DumpStore.h"

#include <charconv>
#include <cmath>
#include <sstream>

#include <storefabric/WString.h>

namespace hv::vex::engine::test {

namespace {

std::string Text(std::u16string_view text) { return cor::ToUtf8(text); }

std::string One(double value, bool isSingle) {
  if (std::isnan(value)) return "nan";
  char buffer[40];
  return {buffer, isSingle ? std::to_chars(buffer, buffer + 40, static_cast<float>(value)).ptr
                           : std::to_chars(buffer, buffer + 40, value).ptr};
}

std::string One(std::u16string_view text) {
  std::string result = "'";
  for (const char c : Text(text))
    result += c == '\n' ? "\\n" : std::string(1, c == '\x1f' ? '|' : c);
  return result + "'";
}

std::string One(std::span<const std::byte> bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string result = "x";
  for (const std::byte byte : bytes) {
    result += {kDigits[std::to_integer<int>(byte) >> 4], kDigits[std::to_integer<int>(byte) & 15]};
  }
  return result;
}

void DumpModel(const Model& model, std::ostringstream& out) {
  out << "base " << Text(model.BaseModelVersion()) << '\n';
  for (const Enumeration& enumeration : model.Enumerations()) {
    if (enumeration.isBase) continue;
    out << "enum " << Text(enumeration.name);
    for (const EnumItem& item : enumeration.items)
      out << ' ' << Text(item.name) << '=' << item.value;
    out << '\n';
  }
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    out << "element " << Text(entity.name) << " : " << Text(model.BaseNameOf(entity.id)) << '\n';
    for (const Attribute& a : entity.attributes) {
      out << "  attribute " << Text(a.name) << " base=" << Text(a.baseName) << ' '
          << Text(NameOfType(a.type, a.sequence)) << (a.obligatory ? " obligatory" : "")
          << (a.unique ? " unique" : "") << (a.autogenerate ? " auto" : "")
          << " length=" << a.length << " unit=" << a.unit;
      if (a.enumeration != kNone) {
        out << " enum=" << Text(model.Enumerations()[static_cast<std::size_t>(a.enumeration)].name);
      }
      out << '\n';
    }
    for (const Relation& r : entity.relations) {
      const Entity& target = model.At(r.target);
      out << "  relation " << Text(r.name) << " base=" << Text(r.baseName) << " -> "
          << Text(target.name) << ' ' << r.minOccurs << ".." << r.maxOccurs;
      if (r.inverse != kNone) {
        out << " inverse=" << Text(target.relations[static_cast<std::size_t>(r.inverse)].name);
      }
      out << '\n';
    }
  }
}

void DumpRecord(const RecordStore& store, const Entity& entity, RecordId id,
                std::ostringstream& out) {
  const RecordRef record{entity.id, id};
  out << Text(entity.name) << ' ' << id << '\n';
  for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
    const Value value = store.ReadValue(record, static_cast<std::int32_t>(i));
    if (!value.IsSet()) continue;
    out << "  " << Text(entity.attributes[i].name) << " = " << ValueText(value) << '\n';
  }
  for (const Relation& relation : entity.relations) {
    const std::string links = LinksText(store, record, relation.name);
    if (!links.empty()) out << "  " << Text(relation.name) << " -> " << links << '\n';
  }
  for (const InstanceAttribute& a : store.InstanceAttributesOf(record)) {
    out << "  instance attribute " << One(a.name) << ' ' << Text(NameOfType(a.value.type, false))
        << ' ' << ValueText(a.value) << " unit=" << a.unit << '\n';
  }
}

}  // namespace

std::string ValuesText(const ValueSource* source) {
  if (!source) return "-";
  const std::uint64_t count = source->Count();
  Value value{source->Type(), true, {}};
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      source->ReadIntegers(0, value.data.emplace<Value::Integers>(count));
      break;
    case StorageKind::Real:
      source->ReadReals(0, value.data.emplace<Value::Reals>(count * PartsOf(value.type)));
      break;
    case StorageKind::Text:
      source->ReadTexts(0, count, [&texts = value.data.emplace<Value::Texts>()](auto text) {
        texts.emplace_back(text);
      });
      break;
    case StorageKind::Bytes:
      source->ReadBytes(0, count, [&all = value.data.emplace<Value::ByteStrings>()](auto bytes) {
        all.emplace_back(bytes.begin(), bytes.end());
      });
  }
  return ValueText(value);
}

std::string ValueText(const Value& value) {
  if (!value.IsSet()) return "-";
  std::string result;
  const auto append = [&](const std::string& one) { result += (result.empty() ? "" : " ") + one; };
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    for (const std::int64_t number : *integers) append(std::to_string(number));
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    const bool isSingle = value.type == OdsType::Float || value.type == OdsType::Complex;
    const std::size_t width = PartsOf(value.type);
    for (std::size_t i = 0; i + width <= reals->size(); i += width) {
      append(One((*reals)[i], isSingle));
      if (width == 2) result += "/" + One((*reals)[i + 1], isSingle);
    }
  } else if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    for (const std::u16string& text : *texts) append(One(text));
  } else if (const auto* bytes = std::get_if<Value::ByteStrings>(&value.data)) {
    for (const Bytes& one : *bytes) append(One(one));
  }
  return result;
}

std::string LinksText(const RecordStore& store, RecordRef record, std::u16string_view relation) {
  const std::int32_t index = store.GetModel()->At(record.entity).FindRelation(relation);
  if (index == kNone) return "no such relation";
  const RecordId ids[] = {record.id};
  std::string result;
  for (const Link& link : store.Follow(record.entity, index, ids)) {
    result += (result.empty() ? "" : " ") + std::to_string(link.target.id);
  }
  return result;
}

std::string DumpStore(const RecordStore& store) {
  std::ostringstream out;
  const Model& model = *store.GetModel();
  DumpModel(model, out);
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    for (const RecordId id : store.AllOf(entity.id)) {
      DumpRecord(store, entity, id, out);
      if (model.BaseNameOf(entity.id) != u"aolocalcolumn") continue;
      if (const auto values = store.OpenValues({entity.id, id})) {
        out << "  values " << Text(NameOfType(values->Type(), true)) << ' '
            << ValuesText(values.get()) << '\n';
      }
      if (const auto flags = store.OpenFlags({entity.id, id})) {
        out << "  flags " << ValuesText(flags.get()) << '\n';
      }
    }
  }
  return out.str();
}

}  // namespace hv::vex::engine::test

// tests/core/atfx/DumpStore.cpp - writes every fact that the interface of a store gives.
#include "DumpStore.h"

#include <charconv>
#include <cmath>
#include <sstream>

#include <storefabric/WString.h>

namespace hv::vex::engine::test {

namespace {

std::string Real(double value, OdsType type) {
  if (std::isnan(value)) return "nan";
  char buffer[40];
  const bool isSingle = type == OdsType::Float || type == OdsType::Complex;
  const auto end = isSingle ? std::to_chars(buffer, buffer + 40, static_cast<float>(value)).ptr
                            : std::to_chars(buffer, buffer + 40, value).ptr;
  return std::string(buffer, end);
}

std::string Quoted(std::u16string_view text) {
  std::string result = "'";
  for (const char c : cor::ToUtf8(text)) {
    if (c == '\n') {
      result += "\\n";
    } else if (c == '\x1f') {
      result += "|";
    } else {
      result += c;
    }
  }
  return result + "'";
}

std::string Hex(std::span<const std::byte> bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string result = "x";
  for (const std::byte byte : bytes) {
    result += kDigits[std::to_integer<int>(byte) >> 4];
    result += kDigits[std::to_integer<int>(byte) & 15];
  }
  return result;
}

void Append(std::string* to, const std::string& text) {
  if (!to->empty()) *to += ' ';
  *to += text;
}

std::string Reals(std::span<const double> reals, OdsType type) {
  std::string result;
  const std::size_t width = PartsOf(type);
  for (std::size_t i = 0; i + width <= reals.size(); i += width) {
    std::string one = Real(reals[i], type);
    if (width == 2) one += "/" + Real(reals[i + 1], type);
    Append(&result, one);
  }
  return result;
}

std::string TypeText(OdsType type, bool sequence) {
  return cor::ToUtf8(NameOfType(type, sequence));
}

std::string Name(std::u16string_view name) { return cor::ToUtf8(name); }

void DumpModel(const Model& model, std::ostringstream& out) {
  out << "base " << Name(model.BaseModelVersion()) << '\n';
  for (const Enumeration& enumeration : model.Enumerations()) {
    if (enumeration.isBase) continue;
    out << "enum " << Name(enumeration.name);
    for (const EnumItem& item : enumeration.items) {
      out << ' ' << Name(item.name) << '=' << item.value;
    }
    out << '\n';
  }
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    out << "element " << Name(entity.name) << " : " << Name(model.BaseNameOf(entity.id)) << '\n';
    for (const Attribute& a : entity.attributes) {
      out << "  attribute " << Name(a.name) << " base=" << Name(a.baseName) << ' '
          << TypeText(a.type, a.sequence) << (a.obligatory ? " obligatory" : "")
          << (a.unique ? " unique" : "") << (a.autogenerate ? " auto" : "")
          << " length=" << a.length << " unit=" << a.unit;
      if (a.enumeration != kNone) {
        out << " enum=" << Name(model.Enumerations()[static_cast<std::size_t>(a.enumeration)].name);
      }
      out << '\n';
    }
    for (const Relation& r : entity.relations) {
      out << "  relation " << Name(r.name) << " base=" << Name(r.baseName) << " -> "
          << Name(model.At(r.target).name) << ' ' << r.minOccurs << ".." << r.maxOccurs;
      if (r.inverse != kNone) {
        out << " inverse="
            << Name(model.At(r.target).relations[static_cast<std::size_t>(r.inverse)].name);
      }
      out << '\n';
    }
  }
}

void DumpRecord(const RecordStore& store, const Entity& entity, RecordId id,
                std::ostringstream& out) {
  const RecordRef record{entity.id, id};
  out << Name(entity.name) << ' ' << id << '\n';
  for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
    const Value value = store.ReadValue(record, static_cast<std::int32_t>(i));
    if (value.IsSet()) {
      out << "  " << Name(entity.attributes[i].name) << " = " << ValueText(value) << '\n';
    }
  }
  for (std::size_t i = 0; i < entity.relations.size(); ++i) {
    const RecordId ids[] = {id};
    const std::vector<Link> links = store.Follow(entity.id, static_cast<std::int32_t>(i), ids);
    if (links.empty()) continue;
    out << "  " << Name(entity.relations[i].name) << " ->";
    for (const Link& link : links) out << ' ' << link.target.id;
    out << '\n';
  }
  for (const InstanceAttribute& a : store.InstanceAttributesOf(record)) {
    out << "  instance attribute " << Quoted(a.name) << ' ' << TypeText(a.value.type, false) << ' '
        << ValueText(a.value) << " unit=" << a.unit << '\n';
  }
}

}  // namespace

std::string ValuesText(const ValueSource* source) {
  if (!source) return "-";
  const OdsType type = source->Type();
  const std::uint64_t count = source->Count();
  std::string result;
  switch (StorageKindOf(type)) {
    case StorageKind::Integer: {
      std::vector<std::int64_t> numbers(count);
      source->ReadIntegers(0, numbers);
      for (const std::int64_t number : numbers) Append(&result, std::to_string(number));
      break;
    }
    case StorageKind::Real: {
      std::vector<double> numbers(count * PartsOf(type));
      source->ReadReals(0, numbers);
      result = Reals(numbers, type);
      break;
    }
    case StorageKind::Text:
      source->ReadTexts(0, count, [&](std::u16string_view text) { Append(&result, Quoted(text)); });
      break;
    case StorageKind::Bytes:
      source->ReadBytes(0, count,
                        [&](std::span<const std::byte> bytes) { Append(&result, Hex(bytes)); });
      break;
  }
  return result;
}

std::string ValueText(const Value& value) {
  std::string result;
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    for (const std::int64_t number : *integers) Append(&result, std::to_string(number));
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    result = Reals(*reals, value.type);
  } else if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    for (const std::u16string& text : *texts) Append(&result, Quoted(text));
  } else if (const auto* bytes = std::get_if<Value::ByteStrings>(&value.data)) {
    for (const Bytes& one : *bytes) Append(&result, Hex(one));
  } else {
    return "-";
  }
  return result;
}

std::string DumpStore(const RecordStore& store) {
  std::ostringstream out;
  const Model& model = *store.GetModel();
  DumpModel(model, out);
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    const bool isColumn = model.BaseNameOf(entity.id) == u"aolocalcolumn";
    for (const RecordId id : store.AllOf(entity.id)) {
      DumpRecord(store, entity, id, out);
      if (!isColumn) continue;
      const auto values = store.OpenValues({entity.id, id});
      if (values) {
        out << "  values " << TypeText(values->Type(), true) << ' ' << ValuesText(values.get())
            << '\n';
      }
      const auto flags = store.OpenFlags({entity.id, id});
      if (flags) out << "  flags " << ValuesText(flags.get()) << '\n';
    }
  }
  return out.str();
}

}  // namespace hv::vex::engine::test

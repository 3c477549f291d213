// core/plugins/atfx/ValueWriter.cpp - mirrors TypedContent.cpp and ColumnContent.cpp.
#include "core/plugins/atfx/ValueWriter.h"

#include "core/plugins/atfx/Batches.h"
#include "core/plugins/atfx/ColumnContent.h"

#include <algorithm>

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

bool IsSingle(OdsType type) { return type == OdsType::Float || type == OdsType::Complex; }

void WriteInteger(OdsType type, std::int64_t value, XmlOutput& xml) {
  if (type == OdsType::Boolean) return xml.Plain(value != 0 ? "true" : "false");
  xml.Integer(value);
}

void WriteBytes(std::span<const std::byte> bytes, XmlOutput& xml) {
  xml.Leaf(u"length", static_cast<std::int64_t>(bytes.size()));
  xml.Start(u"sequence");
  for (const std::byte byte : bytes) xml.Integer(std::to_integer<std::int64_t>(byte));
  xml.End();
}

void WriteBlob(std::span<const std::byte> blob, XmlOutput& xml) {
  const auto zero = std::find(blob.begin(), blob.end(), std::byte{0});
  const auto header = static_cast<std::size_t>(zero - blob.begin());
  xml.Leaf(u"text", cor::FromUtf8({reinterpret_cast<const char*>(blob.data()), header}));
  xml.Start(u"bytefield");
  WriteBytes(blob.subspan(std::min(header + 1, blob.size())), xml);
  xml.End();
}

void WriteReference(std::u16string_view reference, XmlOutput& xml) {
  xml.Start(u"external_reference");
  for (const std::u16string_view tag : {u"description", u"mimetype", u"location"}) {
    const std::size_t end = std::min(reference.find(kReferenceSeparator), reference.size());
    xml.Leaf(tag, reference.substr(0, end));
    reference.remove_prefix(std::min(end + 1, reference.size()));
  }
  xml.End();
}

void WriteItem(std::int64_t value, const Enumeration* enumeration, XmlOutput& xml) {
  const EnumItem* const item = enumeration ? enumeration->ItemOf(value) : nullptr;
  item ? xml.Text(item->name) : xml.Integer(value);
}

void WriteIntegers(const Value& value, const Enumeration* enumeration, XmlOutput& xml) {
  const auto& integers = std::get<Value::Integers>(value.data);
  if (!value.sequence) return WriteNumber(value.type, integers.front(), enumeration, xml);
  for (std::size_t i = 0; i < integers.size(); ++i) {
    if (value.type == OdsType::Enum) {
      xml.Start(u"s");
      WriteItem(integers[i], enumeration, xml);
      xml.End();
    } else if (value.type == OdsType::Boolean) {
      if (i != 0) xml.Plain(" ");
      WriteInteger(value.type, integers[i], xml);
    } else {
      xml.Integer(integers[i]);
    }
  }
}

void WriteTexts(const Value& value, XmlOutput& xml) {
  for (const std::u16string& text : std::get<Value::Texts>(value.data)) {
    if (value.type == OdsType::ExternalReference) {
      WriteReference(text, xml);
    } else if (value.sequence) {
      xml.Leaf(u"s", text);
    } else {
      xml.Text(text);
    }
  }
}

void WriteIntegerList(const ValueSource& values, XmlOutput& xml) {
  std::vector<std::int64_t> numbers;
  ForEachBatch(values.Count(), [&](std::uint64_t first, std::uint64_t count) {
    numbers.resize(static_cast<std::size_t>(count));
    values.ReadIntegers(first, numbers);
    for (const std::int64_t number : numbers) xml.Integer(number);
  });
}

void WriteRealList(const ValueSource& values, XmlOutput& xml) {
  std::vector<double> numbers;
  ForEachBatch(values.Count(), [&](std::uint64_t first, std::uint64_t count) {
    numbers.resize(static_cast<std::size_t>(count) * PartsOf(values.Type()));
    values.ReadReals(first, numbers);
    for (const double number : numbers) xml.Real(number, IsSingle(values.Type()));
  });
}

void WriteTextList(const ValueSource& values, XmlOutput& xml) {
  values.ReadTexts(0, values.Count(), [&](std::u16string_view text) {
    if (values.Type() == OdsType::ExternalReference) {
      WriteReference(text, xml);
    } else {
      xml.Leaf(u"s", text);
    }
  });
}

}  // namespace

void WriteNumber(OdsType type, std::int64_t integer, const Enumeration* enumeration,
                 XmlOutput& xml) {
  type == OdsType::Enum ? WriteItem(integer, enumeration, xml) : WriteInteger(type, integer, xml);
}

void WriteValue(const Value& value, const Enumeration* enumeration, XmlOutput& xml) {
  if (value.Count() == 0) return;
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      WriteIntegers(value, enumeration, xml);
      break;
    case StorageKind::Real:
      for (const double real : std::get<Value::Reals>(value.data)) {
        xml.Real(real, IsSingle(value.type));
      }
      break;
    case StorageKind::Text:
      WriteTexts(value, xml);
      break;
    case StorageKind::Bytes:
      for (const Bytes& bytes : std::get<Value::ByteStrings>(value.data)) {
        value.type == OdsType::Blob ? WriteBlob(bytes, xml) : WriteBytes(bytes, xml);
      }
      break;
  }
}

void WriteInlineValues(const ValueSource& values, XmlOutput& xml) {
  const OdsType type = values.Type();
  const std::u16string_view tag = InlineTagOf(type);
  if (tag.empty()) return;
  xml.Start(tag);
  switch (StorageKindOf(type)) {
    case StorageKind::Integer:
      WriteIntegerList(values, xml);
      break;
    case StorageKind::Real:
      WriteRealList(values, xml);
      break;
    case StorageKind::Text:
      WriteTextList(values, xml);
      break;
    case StorageKind::Bytes:
      values.ReadBytes(0, values.Count(), [&](std::span<const std::byte> bytes) {
        type == OdsType::Blob ? WriteBlob(bytes, xml) : WriteBytes(bytes, xml);
      });
      break;
  }
  xml.End();
}

void WriteInlineFlags(const ValueSource& flags, XmlOutput& xml) { WriteIntegerList(flags, xml); }

void WriteComponent(const Component& component, XmlOutput& xml) {
  xml.Start(u"component");
  xml.Leaf(u"identifier", component.fileName);
  xml.Leaf(u"datatype", component.typespec->name);
  xml.Leaf(u"length", static_cast<std::int64_t>(component.length));
  xml.Leaf(u"inioffset", static_cast<std::int64_t>(component.offset));
  // Without gaps the whole column is one block.
  const std::uint8_t width = component.typespec->width;
  const bool isBits = component.typespec->layout == Layout::PackedBits;
  if (width != 0 || isBits) {
    const std::uint64_t bytes =
        isBits ? (component.length + 7) / 8 : component.length * std::uint64_t{width};
    xml.Leaf(u"blocksize", static_cast<std::int64_t>(bytes));
    xml.Leaf(u"valperblock", static_cast<std::int64_t>(component.length));
    xml.Leaf(u"valoffsets", 0);
  }
  xml.End();
}

}  // namespace hv::vex::engine::atfx

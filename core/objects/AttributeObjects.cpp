#include "core/objects/AttributeObjects.h"

#include <cstring>
#include <limits>

#include "core/objects/Guard.h"
#include "store/core/IInstance.h"

namespace hv::vex::engine {
namespace {

/// Lays elements out as the C++ type that `IAttribute::GetData` promises.
template <class T, class From>
const void* Pack(const std::vector<From>& values, std::vector<std::byte>& buffer) {
  buffer.resize(values.size() * sizeof(T));
  std::byte* out = buffer.data();
  for (const From value : values) {
    const T element = static_cast<T>(value);
    std::memcpy(out, &element, sizeof element);
    out += sizeof element;
  }
  return buffer.data();
}

const void* PackValue(const Value& value, std::vector<std::byte>& buffer,
                      std::vector<WString>& texts) {
  if (!value.IsSet()) return nullptr;
  switch (value.type) {
    case OdsType::Byte:
      return Pack<std::uint8_t>(std::get<Value::Integers>(value.data), buffer);
    case OdsType::Short:
    case OdsType::Boolean:
      return Pack<std::int16_t>(std::get<Value::Integers>(value.data), buffer);
    case OdsType::Long:
    case OdsType::Enum:
      return Pack<std::int32_t>(std::get<Value::Integers>(value.data), buffer);
    case OdsType::LongLong:
    case OdsType::Id:
      return Pack<std::int64_t>(std::get<Value::Integers>(value.data), buffer);
    case OdsType::Float:
    case OdsType::Complex:
      return Pack<float>(std::get<Value::Reals>(value.data), buffer);
    case OdsType::Double:
    case OdsType::DComplex:
      return Pack<double>(std::get<Value::Reals>(value.data), buffer);
    case OdsType::String:
    case OdsType::Date: {
      texts.clear();
      for (const std::u16string& text : std::get<Value::Texts>(value.data))
        texts.emplace_back(text);
      return texts.data();
    }
    default:
      return nullptr;
  }
}

const std::byte* BytesOf(const Value& value, std::uint64_t index, std::size_t* size) {
  const auto* strings = std::get_if<Value::ByteStrings>(&value.data);
  if (!strings) throw Exception(errc::kWrongType, u"the value is no byte string");
  if (index >= strings->size()) {
    throw Exception(errc::kInvalidArgument, u"value index out of range");
  }
  if (size) *size = (*strings)[index].size();
  return (*strings)[index].data();
}

/// Sets all elements of a value from an array, each through the checks of a single one.
template <class T>
void SetAll(Value& value, std::uint64_t count, const T* elements) {
  const std::size_t parts = std::is_same_v<T, double> ? PartsOf(value.type) : 1;
  ResizeValue(value, count);
  if (parts == 2) {
    std::get<Value::Reals>(value.data).assign(elements, elements + count * parts);
    return;
  }
  for (std::uint64_t i = 0; i < count; ++i) {
    if constexpr (std::is_same_v<T, double>) {
      SetElementReal(value, i, elements[i]);
    } else {
      SetElementInteger(value, i, elements[i]);
    }
  }
}

void SetElementBytes(Value& value, std::uint64_t index, const std::byte* bytes, std::size_t size) {
  if (StorageKindOf(value.type) != StorageKind::Bytes) {
    throw Exception(errc::kWrongType, u"the attribute takes no bytes");
  }
  const std::uint64_t count = value.Count();
  if (index > count) throw Exception(errc::kInvalidArgument, u"value index out of range");
  if (index == count) ResizeValue(value, index + 1);
  std::get<Value::ByteStrings>(value.data)[index].assign(bytes, bytes + size);
}

class ListIterator final : public cor::Counted<IInstIterator> {
 public:
  explicit ListIterator(Ref<IInstList> list) : m_list(std::move(list)) {}
  IInstance* Next() override {
    IInstance* instance = m_list->GetInstance(m_next);
    if (instance) ++m_next;
    return instance;
  }

 private:
  ~ListIterator() override = default;
  Ref<IInstList> m_list;
  std::uint64_t m_next = 0;
};

}  // namespace

// --- ValueAttribute ---------------------------------------------------------------------------

ValueAttribute::ValueAttribute(std::u16string name, Value value, EnumPtr enumeration,
                               std::shared_ptr<const Model> model, Writer write)
    : m_name(std::move(name)),
      m_value(std::move(value)),
      m_enumeration(enumeration),
      m_model(std::move(model)),
      m_write(std::move(write)) {}

IAttribute* ValueAttribute::MakeTextList(std::u16string name, std::vector<std::u16string> texts) {
  Value value = Value::Unset(OdsType::String, true);
  if (!texts.empty()) value.data = std::move(texts);
  return new ValueAttribute(std::move(name), std::move(value));
}

std::uint64_t ValueAttribute::GetCount() { return m_value.Count(); }
void ValueAttribute::GetName(WString& name) { name = std::u16string_view(m_name); }
std::int32_t ValueAttribute::GetDataType() { return SeamTypeOf(m_value.type); }

void ValueAttribute::GetStringValue(WString& value) {
  value.clear();
  if (m_value.Count() == 0) return;
  GetText(0, value);
}

const void* ValueAttribute::GetData() {
  return Seam([&] { return PackValue(m_value, m_dataBuffer, m_textBuffer); });
}
std::int64_t ValueAttribute::GetInteger(std::uint64_t index) {
  return Seam([&] { return ElementAsInteger(m_value, index); });
}
double ValueAttribute::GetReal(std::uint64_t index) {
  return Seam([&] { return ElementAsReal(m_value, index); });
}
void ValueAttribute::GetText(std::uint64_t index, WString& value) {
  Seam([&] {
    std::u16string text;
    ElementAsText(m_value, index, m_enumeration, text);
    value = std::u16string_view(text);
  });
}
const std::byte* ValueAttribute::GetBytes(std::uint64_t index, std::size_t* size) {
  return BytesOf(m_value, index, size);
}
void ValueAttribute::ReadReals(std::uint64_t first, std::uint64_t count, double* out) {
  for (std::uint64_t i = 0; i < count; ++i) out[i] = GetReal(first + i);
}
void ValueAttribute::ReadIntegers(std::uint64_t first, std::uint64_t count, std::int64_t* out) {
  for (std::uint64_t i = 0; i < count; ++i) out[i] = GetInteger(first + i);
}

template <class Change>
void ValueAttribute::Write(Change&& change) {
  Seam([&] {
    if (!m_write) throw Exception(errc::kWriteProtected, u"the value can't be changed");
    Value changed = m_value;
    change(changed);
    m_write(changed);
    m_value = std::move(changed);
  });
}

void ValueAttribute::Clear() {
  Write([](Value& value) { value.data = std::monostate{}; });
}
void ValueAttribute::SetCount(std::uint64_t count) {
  Write([&](Value& value) { ResizeValue(value, count); });
}
void ValueAttribute::SetInteger(std::uint64_t index, std::int64_t element) {
  Write([&](Value& value) { SetElementInteger(value, index, element); });
}
void ValueAttribute::SetReal(std::uint64_t index, double element) {
  Write([&](Value& value) { SetElementReal(value, index, element); });
}
void ValueAttribute::SetText(std::uint64_t index, std::u16string_view element) {
  Write([&](Value& value) { SetElementText(value, index, element, m_enumeration); });
}
void ValueAttribute::SetBytes(std::uint64_t index, const std::byte* bytes, std::size_t size) {
  Write([&](Value& value) { SetElementBytes(value, index, bytes, size); });
}
void ValueAttribute::SetReals(std::uint64_t count, const double* values) {
  Write([&](Value& value) { SetAll(value, count, values); });
}
void ValueAttribute::SetIntegers(std::uint64_t count, const std::int64_t* values) {
  Write([&](Value& value) { SetAll(value, count, values); });
}

void ValueAttribute::SetDataType(std::int32_t) {
  throw Exception(errc::kNotSupported, u"the attribute has the type of its model");
}

// --- ColumnAttribute --------------------------------------------------------------------------

ColumnAttribute::ColumnAttribute(std::u16string name, OdsType typeIfEmpty, bool isTypeFree,
                                 Opener open, Writer write)
    : m_name(std::move(name)),
      m_typeIfEmpty(typeIfEmpty),
      m_isTypeFree(isTypeFree),
      m_open(std::move(open)),
      m_write(std::move(write)),
      m_type(typeIfEmpty) {
  Open();
}

void ColumnAttribute::Open() {
  m_source = m_open();
  m_isOpen = true;
  m_count = m_source ? m_source->Count() : 0;
  m_type = m_source ? m_source->Type() : m_typeIfEmpty;
}

void ColumnAttribute::Close() {
  m_source.reset();
  m_isOpen = false;
  m_dataBuffer.clear();
  m_textBuffer.clear();
}

const ValueSource& ColumnAttribute::Source() {
  if (!m_isOpen) Open();
  if (!m_source) throw Exception(errc::kInstanceGone, u"the values were deleted");
  return *m_source;
}

std::uint64_t ColumnAttribute::GetCount() { return m_count; }
void ColumnAttribute::GetName(WString& name) { name = std::u16string_view(m_name); }
std::int32_t ColumnAttribute::GetDataType() { return SeamTypeOf(m_type); }

void ColumnAttribute::GetStringValue(WString& value) {
  value.clear();
  if (GetCount() > 0) GetText(0, value);
}

void ColumnAttribute::CheckRange(std::uint64_t first, std::uint64_t count) const {
  if (first > m_count || count > m_count - first) {
    throw Exception(errc::kInvalidArgument, u"value index out of range");
  }
}

Value ColumnAttribute::Load(std::uint64_t first, std::uint64_t count) {
  CheckRange(first, count);
  const ValueSource& source = Source();
  Value value = Value::Unset(source.Type(), true);
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer: {
      Value::Integers integers(count);
      source.ReadIntegers(first, integers);
      value.data = std::move(integers);
      break;
    }
    case StorageKind::Real: {
      Value::Reals reals(count * PartsOf(value.type));
      source.ReadReals(first, reals);
      value.data = std::move(reals);
      break;
    }
    case StorageKind::Text: {
      Value::Texts texts;
      texts.reserve(count);
      source.ReadTexts(first, count, [&](std::u16string_view text) { texts.emplace_back(text); });
      value.data = std::move(texts);
      break;
    }
    case StorageKind::Bytes: {
      Value::ByteStrings strings;
      strings.reserve(count);
      source.ReadBytes(first, count, [&](std::span<const std::byte> bytes) {
        strings.emplace_back(bytes.begin(), bytes.end());
      });
      value.data = std::move(strings);
      break;
    }
  }
  return value;
}

const void* ColumnAttribute::GetData() {
  return Seam([&]() -> const void* {
    if (GetCount() == 0) return nullptr;
    if (m_dataBuffer.empty() && m_textBuffer.empty()) {
      // The layout in the file serves as it stands where it has the width that GetData promises.
      const auto raw = Source().Contiguous();
      if (!raw.empty() && m_type != OdsType::Boolean) return raw.data();
      return PackValue(Load(0, m_count), m_dataBuffer, m_textBuffer);
    }
    return m_textBuffer.empty() ? static_cast<const void*>(m_dataBuffer.data())
                                : static_cast<const void*>(m_textBuffer.data());
  });
}

std::int64_t ColumnAttribute::GetInteger(std::uint64_t index) {
  return Seam([&] { return ElementAsInteger(Load(index, 1), 0); });
}
double ColumnAttribute::GetReal(std::uint64_t index) {
  return Seam([&] { return ElementAsReal(Load(index, 1), 0); });
}
void ColumnAttribute::GetText(std::uint64_t index, WString& value) {
  Seam([&] {
    std::u16string text;
    ElementAsText(Load(index, 1), 0, nullptr, text);
    value = std::u16string_view(text);
  });
}
const std::byte* ColumnAttribute::GetBytes(std::uint64_t index, std::size_t* size) {
  return Seam([&] {
    const Value value = Load(index, 1);
    std::size_t length = 0;
    const std::byte* bytes = BytesOf(value, 0, &length);
    m_bytes.assign(bytes, bytes + length);
    if (size) *size = length;
    return static_cast<const std::byte*>(m_bytes.data());
  });
}
void ColumnAttribute::ReadReals(std::uint64_t first, std::uint64_t count, double* out) {
  Seam([&] {
    CheckRange(first, count);
    if (count > 0) Source().ReadReals(first, {out, count * PartsOf(m_type)});
  });
}
void ColumnAttribute::ReadIntegers(std::uint64_t first, std::uint64_t count, std::int64_t* out) {
  Seam([&] {
    CheckRange(first, count);
    if (count > 0) Source().ReadIntegers(first, {out, count});
  });
}

void ColumnAttribute::CheckWritable() const {
  if (!m_write.put) throw Exception(errc::kWriteProtected, u"the values can't be changed");
}

void ColumnAttribute::ReplaceAll(const Value& values) {
  Close();
  m_write.replaceAll(values);
  Open();
}

template <class Change>
void ColumnAttribute::Put(std::uint64_t index, Change&& change) {
  Seam([&] {
    CheckWritable();
    if (index > m_count) throw Exception(errc::kInvalidArgument, u"value index out of range");
    Value one = Value::Unset(m_type, true);
    change(one);
    Close();
    m_write.put(index, one);
    if (index == m_count) ++m_count;
  });
}

void ColumnAttribute::Clear() {
  Seam([&] {
    CheckWritable();
    ReplaceAll(Value::Unset(m_type, true));
  });
}
void ColumnAttribute::SetCount(std::uint64_t count) {
  Seam([&] {
    CheckWritable();
    Value all = m_count > 0 ? Load(0, std::min(m_count, count)) : Value::Unset(m_type, true);
    ResizeValue(all, count);
    ReplaceAll(all);
  });
}
void ColumnAttribute::SetInteger(std::uint64_t index, std::int64_t element) {
  Put(index, [&](Value& value) { SetElementInteger(value, 0, element); });
}
void ColumnAttribute::SetReal(std::uint64_t index, double element) {
  Put(index, [&](Value& value) { SetElementReal(value, 0, element); });
}
void ColumnAttribute::SetText(std::uint64_t index, std::u16string_view element) {
  Put(index, [&](Value& value) { SetElementText(value, 0, element, nullptr); });
}
void ColumnAttribute::SetBytes(std::uint64_t index, const std::byte* bytes, std::size_t size) {
  Put(index, [&](Value& value) { SetElementBytes(value, 0, bytes, size); });
}
void ColumnAttribute::SetReals(std::uint64_t count, const double* values) {
  Seam([&] {
    CheckWritable();
    Value all = Value::Unset(m_type, true);
    SetAll(all, count, values);
    ReplaceAll(all);
  });
}
void ColumnAttribute::SetIntegers(std::uint64_t count, const std::int64_t* values) {
  Seam([&] {
    CheckWritable();
    Value all = Value::Unset(m_type, true);
    SetAll(all, count, values);
    ReplaceAll(all);
  });
}

void ColumnAttribute::SetDataType(std::int32_t typeCode) {
  Seam([&] {
    if (!m_isTypeFree) throw Exception(errc::kNotSupported, u"flags have a type of their own");
    if (GetCount() > 0) throw Exception(errc::kInvalidArgument, u"the column has values already");
    const auto type = OdsTypeOfSeam(typeCode);
    const bool isOfValues = type && *type != OdsType::Enum && *type != OdsType::ExternalReference;
    if (!isOfValues) throw Exception(errc::kWrongType, u"values can't have that type");
    m_source.reset();
    m_typeIfEmpty = *type;
    m_type = *type;
  });
}

// --- ReferenceAttribute, DefinitionAttribute --------------------------------------------------

IInstIterator* ReferenceAttribute::GetIterator() {
  return Seam([&]() -> IInstIterator* { return new ListIterator(m_list); });
}

const Attribute* DefinitionAttribute::AttributeOrNull() const {
  if (m_member.kind != Member::Kind::Attribute) return nullptr;
  return &m_model->Get().At(m_entity).attributes[static_cast<std::size_t>(m_member.index)];
}
const Relation* DefinitionAttribute::RelationOrNull() const {
  if (m_member.kind != Member::Kind::Relation) return nullptr;
  return &m_model->Get().At(m_entity).relations[static_cast<std::size_t>(m_member.index)];
}
EnumPtr DefinitionAttribute::EnumerationOrNull() const {
  const Attribute* attribute = AttributeOrNull();
  if (!attribute || attribute->enumeration == kNone) return nullptr;
  return &m_model->Get().Enumerations()[static_cast<std::size_t>(attribute->enumeration)];
}

void DefinitionAttribute::GetName(WString& name) {
  if (const Attribute* attribute = AttributeOrNull()) {
    name = std::u16string_view(attribute->name);
  } else if (const Relation* relation = RelationOrNull()) {
    name = std::u16string_view(relation->name);
  }
}
std::int32_t DefinitionAttribute::GetDataType() {
  const Attribute* attribute = AttributeOrNull();
  return attribute ? attribute->SeamType() : kReferenceType;
}
void DefinitionAttribute::GetBaseName(WString& name) {
  if (const Attribute* attribute = AttributeOrNull()) {
    name = std::u16string_view(attribute->baseName);
  } else if (const Relation* relation = RelationOrNull()) {
    name = std::u16string_view(relation->baseName);
  }
}
std::int32_t DefinitionAttribute::IsKey() {
  return m_member.kind == Member::Kind::Attribute &&
                 m_model->Get().At(m_entity).idAttribute == m_member.index
             ? 1
             : 0;
}
void DefinitionAttribute::GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) {
  const Attribute* attribute = AttributeOrNull();
  const Relation* relation = RelationOrNull();
  if (minimum) *minimum = attribute ? (attribute->obligatory ? 1 : 0) : relation->minOccurs;
  if (maximum) *maximum = attribute ? (attribute->sequence ? kMany : 1) : relation->maxOccurs;
}
std::int32_t DefinitionAttribute::IsUnique() {
  const Attribute* attribute = AttributeOrNull();
  return attribute && attribute->unique ? 1 : 0;
}
std::int32_t DefinitionAttribute::IsAutogenerated() {
  const Attribute* attribute = AttributeOrNull();
  return attribute && attribute->autogenerate ? 1 : 0;
}
std::int32_t DefinitionAttribute::GetLength() {
  const Attribute* attribute = AttributeOrNull();
  return attribute ? attribute->length : 0;
}
IEntity* DefinitionAttribute::GetSourceEntity() {
  return Ref<IEntity>::Share(m_model->EntityAt(m_entity)).Detach();
}
IRelation* DefinitionAttribute::GetRelation() {
  if (m_member.kind != Member::Kind::Relation) return nullptr;
  return Ref<IRelation>::Share(m_model->EntityAt(m_entity)->RelationAt(m_member.index)).Detach();
}
std::uint64_t DefinitionAttribute::GetEnumerationCount() {
  const EnumPtr enumeration = EnumerationOrNull();
  return enumeration ? enumeration->items.size() : 0;
}
void DefinitionAttribute::GetEnumerationItem(std::uint64_t index, WString& name,
                                             std::int64_t* value) {
  const EnumPtr enumeration = EnumerationOrNull();
  if (!enumeration || index >= enumeration->items.size()) {
    throw Exception(errc::kInvalidArgument, u"enumeration index out of range");
  }
  name = std::u16string_view(enumeration->items[index].name);
  if (value) *value = enumeration->items[index].value;
}
void DefinitionAttribute::GetEnumerationName(WString& name) {
  const EnumPtr enumeration = EnumerationOrNull();
  name = enumeration ? std::u16string_view(enumeration->name) : std::u16string_view();
}
std::int64_t DefinitionAttribute::GetUnitId() {
  const Attribute* attribute = AttributeOrNull();
  return attribute ? attribute->unit : 0;
}

}  // namespace hv::vex::engine

#include "core/objects/InstanceObject.h"

#include "core/objects/AttributeObjects.h"
#include "core/objects/Guard.h"
#include "core/objects/InstanceKey.h"
#include "core/objects/InstancePath.h"
#include "core/objects/ValueText.h"
#include "core/store/RecordAccess.h"

namespace hv::vex::engine {
namespace {

bool IsColumnMember(const Attribute& attribute) {
  return attribute.baseName == u"values" || attribute.baseName == u"flags";
}

/// The flags of a column for values that take the place of those it has: as they are, and valid
/// behind their end. Empty if it has none.
std::vector<std::int16_t> FlagsFor(const RecordStore& records, RecordRef column,
                                   const Value& values) {
  const auto old = records.OpenFlags(column);
  if (!old || old->Count() == 0) return {};
  Value::Integers kept(std::min<std::size_t>(old->Count(), values.Count()));
  if (!kept.empty()) old->ReadIntegers(0, kept);
  std::vector<std::int16_t> flags(kept.begin(), kept.end());
  flags.resize(values.Count(), kFlagsOfValid);
  return flags;
}

StorageKind KindOf(const ScalarValue& scalar) {
  return StorageKindOf(OdsTypeOfSeam(scalar.typeCode).value_or(OdsType::Unknown));
}

/// A value that is set, as `IAttribute::GetStringValue` gives it.
void TextOf(const ScalarValue& scalar, WString& text) {
  const OdsType type = OdsTypeOfSeam(scalar.typeCode).value_or(OdsType::Unknown);
  std::u16string number;
  switch (type == OdsType::Enum ? StorageKind::Text : StorageKindOf(type)) {
    case StorageKind::Integer:
      IntegerAsText(type, scalar.integer, nullptr, number);
      break;
    case StorageKind::Real:
      RealAsText(type, scalar.real, number);
      break;
    case StorageKind::Text:
    case StorageKind::Bytes:
      text = scalar.text;
      return;
  }
  text = std::u16string_view(number);
}

bool IsInstanceAttributeType(OdsType type) {
  switch (type) {
    case OdsType::Short:
    case OdsType::Long:
    case OdsType::LongLong:
    case OdsType::Byte:
    case OdsType::Float:
    case OdsType::Double:
    case OdsType::String:
    case OdsType::Date:
      return true;
    default:
      return false;
  }
}

}  // namespace

InstanceObject::InstanceObject(Ref<StoreObject> store, RecordRef record)
    : m_store(std::move(store)), m_record(record) {}

InstanceObject::~InstanceObject() { m_store->ForgetInstance(m_record); }

const Entity& InstanceObject::EntityOf() const {
  return m_store->GetCoreModel().At(m_record.entity);
}

const Attribute& InstanceObject::AttributeAt(std::int32_t index) const {
  return EntityOf().attributes[static_cast<std::size_t>(index)];
}

void InstanceObject::CheckValid() const {
  if (!m_store->Records().Exists(m_record)) {
    throw Exception(errc::kInstanceGone, u"the instance was deleted");
  }
}

void InstanceObject::GetKey(WString& key) {
  Seam([&] {
    std::u16string text;
    AppendKey(m_store->GetCoreModel(), m_record, text);
    key = std::u16string_view(text);
  });
}

// Stores keep unsaved work as a whole, so that it is lost or kept as a whole: nothing to do for
// one.
void InstanceObject::Save() {
  Seam([&] { CheckValid(); });
}

void InstanceObject::Refresh() {
  m_seenAt = 0;
  m_batch.Reset();
  Seam([&] { CheckValid(); });
}

// Asked before nearly everything that is done with a record, so the store is asked but once until
// something may have changed the answer.
std::int32_t InstanceObject::IsValid() {
  return Seam([&] {
    const std::uint32_t now = m_store->Now().looks;
    if (m_seenAt != now) {
      const RecordBatch::Cell id = ReadAlong(EntityOf().idAttribute);
      const bool exists = id ? !id.IsNull() : m_store->Records().Exists(m_record);
      m_seenAt = exists ? now : 0;
    }
    return m_seenAt != 0 ? 1 : 0;
  });
}

IStore* InstanceObject::GetStore() { return Ref<IStore>::Share(m_store.Get()).Detach(); }

IEntity* InstanceObject::GetEntity() {
  return Ref<IEntity>::Share(m_store->GetModelObject().EntityAt(m_record.entity)).Detach();
}

std::int32_t InstanceObject::IsKindOf(IEntity* entity) {
  return m_store->GetModelObject().EntityAt(m_record.entity)->IsKindOf(entity);
}

// --- values -----------------------------------------------------------------------------------

OdsType InstanceObject::QuantityType() const {
  // A column without values takes the type that its quantity names.
  const Entity& entity = EntityOf();
  const std::int32_t relation = entity.FindBaseRelation(u"measurement_quantity");
  if (relation == kNone) return OdsType::Unknown;
  const auto links = m_store->Records().Follow(m_record.entity, relation, {&m_record.id, 1});
  if (links.empty()) return OdsType::Unknown;
  const Entity& quantity = m_store->GetCoreModel().At(links.front().target.entity);
  const std::int32_t attribute = quantity.FindBaseAttribute(u"datatype");
  if (attribute == kNone) return OdsType::Unknown;
  const Value value = m_store->Records().ReadValue(links.front().target, attribute);
  return value.Count() == 1 ? static_cast<OdsType>(ElementAsInteger(value, 0)) : OdsType::Unknown;
}

RecordBatch::Cell InstanceObject::ReadAlong(std::int32_t attribute) {
  if (!m_batch || attribute == kNone) return {};
  const Attribute& declared = AttributeAt(attribute);
  if (declared.sequence || StorageKindOf(declared.type) == StorageKind::Bytes) return {};
  return m_batch->Find(*m_store, m_position, m_record, attribute);
}

Value InstanceObject::ReadValue(std::int32_t attribute) {
  const RecordBatch::Cell cell = ReadAlong(attribute);
  return cell ? ValueAt(*cell.block, cell.row) : m_store->Records().ReadValue(m_record, attribute);
}

EnumPtr InstanceObject::EnumerationOf(const Attribute& attribute) const {
  if (attribute.enumeration == kNone) return nullptr;
  return &m_store->GetCoreModel().Enumerations()[static_cast<std::size_t>(attribute.enumeration)];
}

std::int32_t InstanceObject::ReadScalar(std::u16string_view name, ScalarValue* value) {
  return Seam([&] {
    const std::int32_t index = EntityOf().FindAttribute(name);
    if (index == kNone) return 0;
    const Attribute& attribute = AttributeAt(index);
    const StorageKind kind = StorageKindOf(attribute.type);
    if (attribute.sequence || kind == StorageKind::Bytes || PartsOf(attribute.type) != 1 ||
        attribute.type == OdsType::ExternalReference || IsColumnMember(attribute)) {
      return 0;
    }
    *value = {SeamTypeOf(attribute.type)};
    if (const RecordBatch::Cell cell = ReadAlong(index)) {
      const ColumnBlock& block = *cell.block;
      value->isSet = !cell.IsNull();
      if (kind == StorageKind::Integer) value->integer = block.integers[cell.row];
      if (kind == StorageKind::Real) value->real = block.reals[cell.row];
      if (kind == StorageKind::Text) value->text = block.TextAt(cell.row);
    } else {
      Value alone = m_store->Records().ReadValue(m_record, index);
      value->isSet = alone.Count() > 0;
      if (!value->isSet) return 1;
      if (kind == StorageKind::Integer) value->integer = ElementAsInteger(alone, 0);
      if (kind == StorageKind::Real) value->real = ElementAsReal(alone, 0);
      if (kind == StorageKind::Text) {
        m_store->Scratch() = std::move(std::get<Value::Texts>(alone.data).front());
        value->text = m_store->Scratch();
      }
    }
    if (attribute.type == OdsType::Enum && value->isSet) {
      m_store->Scratch().clear();
      IntegerAsText(attribute.type, value->integer, EnumerationOf(attribute), m_store->Scratch());
      value->text = m_store->Scratch();
    }
    return 1;
  });
}

Ref<IAttribute> InstanceObject::ModelAttribute(std::int32_t index) {
  const Attribute& attribute = AttributeAt(index);
  StoreObject* const store = m_store.Get();
  const RecordRef record = m_record;
  // Attributes keep their store alive, since they read and write through it.
  const Ref<StoreObject> hold = m_store;
  const bool writable = store->Records().GetCapabilities().writable;
  const bool isColumn = m_store->GetCoreModel().BaseNameOf(m_record.entity) == u"aolocalcolumn";
  if (isColumn && IsColumnMember(attribute)) {
    const auto putOf = [&](ColumnPart part) {
      return [hold, record, part](std::uint64_t first, const Value& values) {
        hold->Records().PutValues(record, part, first, values);
      };
    };
    if (attribute.baseName == u"flags") {
      return MakeRef<ColumnAttribute>(
          attribute.name, OdsType::Short, false,
          [hold, record] { return hold->Records().OpenFlags(record); },
          writable ? ColumnAttribute::Writer{[hold, record, index](const Value& flags) {
                                               hold->Records().Write(record, index, flags);
                                             },
                                             putOf(ColumnPart::Flags)}
                   : ColumnAttribute::Writer());
    }
    return MakeRef<ColumnAttribute>(
        attribute.name, QuantityType(), true,
        [hold, record] { return hold->Records().OpenValues(record); },
        writable ? ColumnAttribute::Writer{[hold, record](const Value& values) {
                                             RecordStore& records = hold->Records();
                                             records.WriteValues(record, values,
                                                                 FlagsFor(records, record, values),
                                                                 false);
                                           },
                                           putOf(ColumnPart::Values)}
                 : ColumnAttribute::Writer());
  }
  const bool isKey = EntityOf().idAttribute == index;
  return MakeRef<ValueAttribute>(
      attribute.name, ReadValue(index), EnumerationOf(attribute),
      m_store->GetModelObject().Shared(),
      writable && !isKey ? ValueAttribute::Writer([hold, record, index](const Value& value) {
        hold->Records().Write(record, index, value);
      })
                         : nullptr);
}

Ref<IAttribute> InstanceObject::InstanceAttributeNamed(std::u16string_view name) {
  for (InstanceAttribute& attribute : m_store->Records().InstanceAttributesOf(m_record)) {
    if (attribute.name != name) continue;
    const bool writable = m_store->Records().GetCapabilities().writable;
    ValueAttribute::Writer write;
    if (writable) {
      write = [hold = m_store, record = m_record, key = attribute.name,
               unit = attribute.unit](const Value& value) {
        hold->Records().SetInstanceAttribute(record, {key, value, unit});
      };
    }
    return MakeRef<ValueAttribute>(attribute.name, std::move(attribute.value), nullptr, nullptr,
                                   std::move(write));
  }
  return {};
}

IAttribute* InstanceObject::GetAttributeValue(std::u16string_view name) {
  return Seam([&]() -> IAttribute* {
    const Member member = FindMember(EntityOf(), name);
    // Reading a value of a record that is gone fails by itself, and saves a look at the store.
    if (member.kind != Member::Kind::Attribute || IsColumnMember(AttributeAt(member.index))) {
      CheckValid();
    }
    switch (member.kind) {
      case Member::Kind::Attribute:
        return ModelAttribute(member.index).Detach();
      case Member::Kind::Relation: {
        const Relation& relation = EntityOf().relations[static_cast<std::size_t>(member.index)];
        auto list = Ref<IInstList>::Adopt(GetRelated(relation.name));
        return MakeRef<ReferenceAttribute>(relation.name, std::move(list)).Detach();
      }
      case Member::Kind::None:
        break;
    }
    return InstanceAttributeNamed(name).Detach();
  });
}

Ref<IAttribute> InstanceObject::Require(std::u16string_view name) {
  Ref<IAttribute> attribute = Ref<IAttribute>::Adopt(GetAttributeValue(name));
  if (!attribute) {
    throw Exception(errc::kUnknownName,
                    WString(u"the entity \"" + EntityOf().name + u"\" has no attribute \"" +
                            std::u16string(name) + u"\""));
  }
  return attribute;
}

// --- instance attributes ----------------------------------------------------------------------

std::int32_t InstanceObject::GetInstanceAttributeType(std::u16string_view name) {
  return Seam([&] {
    CheckValid();
    for (const InstanceAttribute& attribute : m_store->Records().InstanceAttributesOf(m_record)) {
      if (attribute.name == name) return SeamTypeOf(attribute.value.type);
    }
    return 0;
  });
}

void InstanceObject::AddInstanceAttribute(std::u16string_view name, std::int32_t typeCode) {
  Seam([&] {
    CheckValid();
    const auto type = OdsTypeOfSeam(typeCode);
    if (!type || !IsInstanceAttributeType(*type)) {
      throw Exception(errc::kWrongType, u"an instance attribute can't have that type");
    }
    if (!IsValidAttributeName(name, 3)) {
      const bool isTaken = GetInstanceAttributeType(name) != 0 ||
                           FindMember(EntityOf(), name).kind != Member::Kind::None;
      throw Exception(
          isTaken ? errc::kNotUnique : errc::kInvalidArgument,
          WString(u"\"" + std::u16string(name) + u"\" can't be the name of a new attribute"));
    }
    m_store->Records().SetInstanceAttribute(m_record,
                                            {std::u16string(name), Value::Unset(*type), 0});
  });
}

void InstanceObject::RemoveInstanceAttribute(std::u16string_view name) {
  Seam([&] {
    CheckValid();
    if (!m_store->Records().RemoveInstanceAttribute(m_record, name)) {
      throw Exception(errc::kUnknownName,
                      WString(u"there is no instance attribute \"" + std::u16string(name) + u"\""));
    }
  });
}

IAttribute* InstanceObject::GetInstanceAttributeNames() {
  return Seam([&] {
    CheckValid();
    std::vector<std::u16string> names;
    for (InstanceAttribute& attribute : m_store->Records().InstanceAttributesOf(m_record)) {
      names.push_back(std::move(attribute.name));
    }
    return ValueAttribute::MakeTextList(u"InstanceAttributeNames", std::move(names));
  });
}

std::int32_t InstanceObject::IsValidAttributeName(std::u16string_view name, std::int32_t selector) {
  return Seam([&] {
    CheckValid();
    if (selector != 3 || name.empty()) return 0;
    const auto isLetter = [](char16_t c) {
      return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_' || c > 0x7f;
    };
    if (!isLetter(name.front())) return 0;
    for (const char16_t c : name) {
      if (!isLetter(c) && !(c >= u'0' && c <= u'9') && c != u'-' && c != u'.') return 0;
    }
    if (FindMember(EntityOf(), name).kind != Member::Kind::None) return 0;
    return GetInstanceAttributeType(name) == 0 ? 1 : 0;
  });
}

// --- references -------------------------------------------------------------------------------

IInstList* InstanceObject::GetRelated(std::u16string_view path) {
  return Seam([&] {
    CheckValid();
    return m_store->MakeList(FollowPath(m_store->Records(), m_record, path));
  });
}

std::int32_t InstanceObject::RequireRelation(std::u16string_view reference) {
  const std::int32_t relation = EntityOf().FindRelation(reference);
  if (relation == kNone) {
    throw Exception(errc::kUnknownName,
                    WString(u"the entity \"" + EntityOf().name + u"\" has no reference \"" +
                            std::u16string(reference) + u"\""));
  }
  return relation;
}

RecordRef InstanceObject::RequirePartner(std::int32_t relation, IInstance* target) {
  const auto record = m_store->OwnRecord(target);
  if (!record) {
    throw Exception(errc::kInvalidArgument, u"the instance is not of this store");
  }
  const EntityId wanted = EntityOf().relations[static_cast<std::size_t>(relation)].target;
  if (!m_store->GetCoreModel().IsKindOf(record->entity, wanted)) {
    throw Exception(errc::kWrongType, u"the instance's entity is not the reference's");
  }
  return *record;
}

IInstance* InstanceObject::CreateRelated(std::u16string_view reference) {
  return Seam([&] {
    CheckValid();
    const std::int32_t relation = RequireRelation(reference);
    const EntityId target = EntityOf().relations[static_cast<std::size_t>(relation)].target;
    if (m_store->GetCoreModel().At(target).isBase) {
      throw Exception(errc::kInvalidArgument,
                      u"the reference leads to several entities: make the instance and link it");
    }
    RecordStore& records = m_store->Records();
    const RecordRef created{target, records.Create(target)};
    records.Connect(m_record, relation, created);
    return m_store->InstanceOf(created, m_store->Now());
  });
}

void InstanceObject::Link(std::u16string_view reference, IInstance* target) {
  Seam([&] {
    CheckValid();
    const std::int32_t relation = RequireRelation(reference);
    m_store->Records().Connect(m_record, relation, RequirePartner(relation, target));
  });
}

void InstanceObject::Unlink(std::u16string_view reference, IInstance* target) {
  Seam([&] {
    CheckValid();
    const std::int32_t relation = RequireRelation(reference);
    m_store->Records().Disconnect(m_record, relation, RequirePartner(relation, target));
  });
}

void InstanceObject::Delete() {
  Seam([&] {
    CheckValid();
    m_store->DeleteRecord(m_record);
  });
}

// --- IContainer -------------------------------------------------------------------------------

void InstanceObject::SetType(std::int32_t) {
  throw Exception(errc::kNotSupported, u"an instance has the types of its model");
}

void InstanceObject::GetString(WString& value, std::u16string_view name) {
  Seam([&] {
    ScalarValue scalar;
    if (ReadScalar(name, &scalar) == 0) {
      Require(name)->GetStringValue(value);
    } else if (scalar.isSet) {
      TextOf(scalar, value);
    } else {
      value.clear();
    }
  });
}

IInstance* InstanceObject::GetObject(std::u16string_view path) {
  const Ref<IInstList> list = Ref<IInstList>::Adopt(GetList(path));
  return list->GetInstance(0);
}

IInstList* InstanceObject::GetList(std::u16string_view pathOrName) {
  return GetRelated(pathOrName);
}

void InstanceObject::SetInteger(std::u16string_view name, std::int32_t value) {
  Seam([&] { Require(name)->SetInteger(0, value); });
}
void InstanceObject::SetString(std::u16string_view name, std::u16string_view value) {
  Seam([&] { Require(name)->SetText(0, value); });
}
void InstanceObject::SetInteger64(std::u16string_view name, std::int64_t value) {
  Seam([&] { Require(name)->SetInteger(0, value); });
}
void InstanceObject::SetBoolean(std::u16string_view name, std::int32_t value) {
  Seam([&] { Require(name)->SetInteger(0, value ? 1 : 0); });
}
void InstanceObject::SetReal(std::u16string_view name, double value) {
  Seam([&] { Require(name)->SetReal(0, value); });
}

std::int64_t InstanceObject::GetInteger64(std::u16string_view name, std::int64_t otherwise) {
  return Seam([&] {
    ScalarValue scalar;
    if (ReadScalar(name, &scalar) != 0 && KindOf(scalar) == StorageKind::Integer) {
      return scalar.isSet ? scalar.integer : otherwise;
    }
    const Ref<IAttribute> attribute = Require(name);
    return attribute->GetCount() > 0 ? attribute->GetInteger(0) : otherwise;
  });
}
std::int32_t InstanceObject::GetBoolean(std::u16string_view name, std::int32_t otherwise) {
  return GetInteger64(name, otherwise ? 1 : 0) != 0 ? 1 : 0;
}
double InstanceObject::GetReal(std::u16string_view name, double otherwise) {
  return Seam([&] {
    ScalarValue scalar;
    if (ReadScalar(name, &scalar) != 0 && KindOf(scalar) == StorageKind::Real) {
      return scalar.isSet ? scalar.real : otherwise;
    }
    const Ref<IAttribute> attribute = Require(name);
    return attribute->GetCount() > 0 ? attribute->GetReal(0) : otherwise;
  });
}

IAttribute* InstanceObject::GetAttribute(std::u16string_view name) {
  return GetAttributeValue(name);
}

IAttribute* InstanceObject::GetNames() {
  return m_store->GetModelObject().EntityAt(m_record.entity)->GetAttributeNames();
}

}  // namespace hv::vex::engine

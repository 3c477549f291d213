// core/plugins/atfx/InstanceSection.cpp - one state per kind of tag; scalars take the short way.
#include "core/plugins/atfx/InstanceSection.h"

#include "core/plugins/atfx/AsciiText.h"
#include "core/plugins/atfx/NumberText.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine::atfx {

namespace {

/// Security entries; read by nobody here.
bool IsSecurityTag(std::u16string_view name) { return name == u"ACLA" || name == u"ACLI"; }

bool IsDateText(std::u16string_view text) {
  if (text.size() < 4) return false;
  for (const char16_t c : text) {
    if (c < u'0' || c > u'9') return false;
  }
  return true;
}

}  // namespace

InstanceSection::InstanceSection(ReadContext& context, std::shared_ptr<const Model> model,
                                 std::shared_ptr<ComponentFiles> files,
                                 std::shared_ptr<ValueSpool> spool)
    : m_context(context),
      m_builder(std::move(model)),
      m_fields(m_builder.GetModel()),
      m_typed(context),
      m_columnContent(context, std::move(spool)),
      m_instanceAttributes(context, m_builder),
      m_columns(context, m_builder, std::move(files)) {}

void InstanceSection::OnStart(std::u16string_view name,
                              std::span<const xml::AttributeView> attributes) {
  switch (m_part) {
    case Part::Between:
      BeginRecord(name);
      break;
    case Part::Record:
      BeginField(name);
      break;
    case Part::Typed:
      ++m_depth;
      m_typed.OnStart(name);
      break;
    case Part::Column:
      ++m_depth;
      m_columnContent.OnStart(name);
      break;
    case Part::Attributes:
      ++m_depth;
      m_instanceAttributes.OnStart(name, attributes);
      break;
    case Part::Scalar:
      m_context.Warn(Join({u"unknown tag '", name, u"' in ", What()}));
      m_skippedIn = Part::Scalar;
      m_part = Part::Skipped;
      m_depth = 0;
      break;
    case Part::Skipped:
      ++m_depth;
      break;
  }
}

void InstanceSection::OnText(std::u16string_view text) {
  switch (m_part) {
    case Part::Scalar:
      m_text += text;
      break;
    case Part::Typed:
      m_typed.OnText(text);
      break;
    case Part::Column:
      m_columnContent.OnText(text);
      break;
    case Part::Attributes:
      m_instanceAttributes.OnText(text);
      break;
    default:
      break;
  }
}

void InstanceSection::OnEnd() {
  switch (m_part) {
    case Part::Between:
      break;
    case Part::Record:
      EndRecord();
      m_part = Part::Between;
      break;
    case Part::Scalar:
      EndScalar();
      m_part = Part::Record;
      break;
    case Part::Typed:
      if (m_depth-- != 0) return m_typed.OnEnd();
      EndTyped();
      m_part = Part::Record;
      break;
    case Part::Column:
      if (m_depth-- != 0) return m_columnContent.OnEnd();
      EndColumnContent();
      m_part = Part::Record;
      break;
    case Part::Attributes:
      if (m_depth-- != 0) return m_instanceAttributes.OnEnd();
      m_part = Part::Record;
      break;
    case Part::Skipped:
      if (m_depth-- == 0) m_part = m_skippedIn;
      break;
  }
}

void InstanceSection::BeginRecord(std::u16string_view name) {
  m_entity = m_fields.Find(name);
  if (!m_entity) {
    m_context.Warn(Join({u"unknown tag '", name, u"' in the instance data"}));
    m_skippedIn = Part::Between;
    m_part = Part::Skipped;
    m_depth = 0;
    return;
  }
  m_part = Part::Record;
  m_id.reset();
  m_noted.clear();
  m_hiddenLinks.clear();
  if (m_entity->role == Role::LocalColumn) m_column = {};
  if (m_entity->role == Role::ExternalComponent) {
    m_external = {};
  } else {
    m_row = m_builder.BeginRecord(m_entity->id);
  }
}

void InstanceSection::BeginField(std::u16string_view name) {
  m_depth = 0;
  m_field = m_entity->Find(name);
  const bool isHidden = m_entity->role == Role::ExternalComponent;
  if (!m_field || (isHidden && name == u"instance_attributes")) {
    if (name == u"instance_attributes" && !isHidden) {
      m_part = Part::Attributes;
      m_instanceAttributes.Begin(m_entity->id, m_row);
      return;
    }
    if (!IsSecurityTag(name)) {
      m_context.Warn(Join({u"unknown tag '", name, u"' in an instance of ", m_entity->name}));
    }
    m_skippedIn = Part::Record;
    m_part = Part::Skipped;
    return;
  }
  m_text.clear();
  m_part = Part::Scalar;
  if (isHidden) return;
  switch (m_field->kind) {
    case Field::Kind::Unreadable:
      m_context.Warn(Join({What(), u" has no data type; left out"}));
      m_skippedIn = Part::Record;
      m_part = Part::Skipped;
      break;
    case Field::Kind::Typed:
      m_part = Part::Typed;
      m_typed.Begin({m_field->type, m_field->enumeration, false, false}, What());
      break;
    case Field::Kind::Values:
    case Field::Kind::Flags:
      m_part = Part::Column;
      m_columnContent.Begin(m_field->kind == Field::Kind::Flags, What());
      break;
    default:
      break;
  }
}

void InstanceSection::EndRecord() {
  const EntityId entity = m_entity->id;
  const bool isHidden = m_entity->role == Role::ExternalComponent;
  if (!m_id && (m_entity->hasId || isHidden)) {
    m_context.Refuse(Join({u"an instance of ", m_entity->name, u" without an id"}));
  }
  if (!m_id) {
    m_id = m_builder.EndRecordWithNewId(entity);
  } else if (!isHidden && !m_builder.EndRecord(entity, *m_id)) {
    m_context.Refuse(
        Join({u"two instances of ", m_entity->name, u" with the id ", DecimalText(*m_id)}));
  }
  for (const auto& [field, target] : m_hiddenLinks) {
    const RecordRef self{entity, *m_id};
    const RecordRef other{field->target, target};
    if (isHidden) {
      m_columns.LinkExternal(other, self);
    } else if (m_entity->role == Role::LocalColumn) {
      m_columns.LinkExternal(self, other);
    } else if (m_entity->role == Role::File) {
      m_columns.LinkFile(self, other, field->baseName == u"ao_extcomp_flags");
    }
  }
  switch (m_entity->role) {
    case Role::LocalColumn:
      m_columns.AddColumn(entity, m_row, *m_id, std::move(m_column));
      break;
    case Role::ExternalComponent:
      m_columns.AddExternal({entity, *m_id}, std::move(m_external));
      break;
    case Role::Unit:
      m_instanceAttributes.AddUnit(*m_id, m_noted);
      break;
    case Role::File:
      m_columns.SetFileLocation({entity, *m_id}, m_noted);
      break;
    case Role::Plain:
      break;
  }
}

void InstanceSection::EndScalar() {
  const bool isHidden = m_entity->role == Role::ExternalComponent;
  if (m_field->kind == Field::Kind::Id) return EndId(m_text);
  if (m_field->kind == Field::Kind::Relation) return EndRelation(m_text);
  if (isHidden) return EndExternalField(m_text);
  if (m_field->kind == Field::Kind::Text) {
    if (m_text.empty()) return Clear();
    NoteText(m_text);
    m_builder.SetText(m_entity->id, m_row, m_field->index, m_text);
    return;
  }
  const std::u16string_view text = Trim(m_text);
  if (text.empty()) return Clear();
  switch (m_field->kind) {
    case Field::Kind::Integer:
      EndInteger(text);
      break;
    case Field::Kind::Boolean: {
      const std::optional<bool> value = ParseBoolean(text);
      if (!value) RefuseValue(text);
      m_builder.SetInteger(m_entity->id, m_row, m_field->index, *value ? 1 : 0);
      break;
    }
    case Field::Kind::Real: {
      const std::optional<double> value = ParseReal(text);
      if (!value || !m_builder.SetReal(m_entity->id, m_row, m_field->index, *value)) {
        RefuseValue(text);
      }
      break;
    }
    case Field::Kind::Date:
      if (!IsDateText(text)) m_context.Warn(Join({u"'", text, u"' in ", What(), u" is no date"}));
      m_builder.SetText(m_entity->id, m_row, m_field->index, text);
      break;
    default:
      EndEnum(text);
      break;
  }
}

void InstanceSection::EndInteger(std::u16string_view text) {
  const std::optional<std::int64_t> value = ParseInteger(text);
  if (!value || !m_builder.SetInteger(m_entity->id, m_row, m_field->index, *value)) {
    RefuseValue(text);
  }
  NoteInteger(*value);
}

void InstanceSection::EndId(std::u16string_view text) {
  m_id = ParseInteger(text);
  if (!m_id) RefuseValue(text);
}

void InstanceSection::EndEnum(std::u16string_view text) {
  std::optional<std::int64_t> value;
  if (m_field->enumeration) value = m_field->enumeration->ValueOf(text);
  if (!value) value = ParseInteger(text);
  if (value && m_builder.SetInteger(m_entity->id, m_row, m_field->index, *value)) {
    return NoteInteger(*value);
  }
  m_context.Warn(Join({u"unknown item '", text, u"' in ", What()}));
  Clear();
}

void InstanceSection::EndRelation(std::u16string_view text) {
  while (!(text = Trim(text)).empty()) {
    std::size_t length = 0;
    while (length < text.size() && !IsBlank(text[length])) ++length;
    const std::optional<std::int64_t> id = ParseInteger(text.substr(0, length));
    if (!id) RefuseValue(text.substr(0, length));
    LinkTo(*id);
    text.remove_prefix(length);
  }
}

void InstanceSection::LinkTo(RecordId target) {
  if (m_entity->role == Role::ExternalComponent) {
    if (m_fields.RoleOf(m_field->target) == Role::LocalColumn) {
      m_hiddenLinks.emplace_back(m_field, target);
    } else if (m_field->baseName == u"ao_values_file") {
      m_external.valuesFile = RecordRef{m_field->target, target};
    } else if (m_field->baseName == u"ao_flags_file") {
      m_external.flagsFileRecord = RecordRef{m_field->target, target};
    }
  } else if (m_fields.RoleOf(m_field->target) == Role::ExternalComponent) {
    m_hiddenLinks.emplace_back(m_field, target);
  } else {
    m_builder.AddLink(m_entity->id, m_row, m_field->index, target);
  }
}

void InstanceSection::EndExternalField(std::u16string_view text) {
  if (!LocalColumns::SetExternalAttribute(&m_external, m_field->baseName, text)) {
    RefuseValue(Trim(text));
  }
}

void InstanceSection::EndTyped() {
  const std::shared_ptr<InMemoryValues> values = m_typed.End();
  const OdsType type = m_field->type;
  const bool isSequence = m_builder.GetModel()
                              .At(m_entity->id)
                              .attributes[static_cast<std::size_t>(m_field->index)]
                              .sequence;
  if (!values || m_typed.HadUnknownItem()) return Clear();
  Value value = Value::Unset(type, isSequence);
  const std::size_t count = static_cast<std::size_t>(values->Count());
  if (!isSequence && count > 1) {
    m_context.Warn(Join({What(), u" holds more than one value; the first one stays"}));
  }
  const std::size_t taken = isSequence ? count : 1;
  switch (StorageKindOf(type)) {
    case StorageKind::Integer:
      values->ReadIntegers(0, value.data.emplace<Value::Integers>(taken));
      break;
    case StorageKind::Real:
      values->ReadReals(0, value.data.emplace<Value::Reals>(taken * PartsOf(type)));
      break;
    case StorageKind::Text: {
      auto& texts = value.data.emplace<Value::Texts>();
      values->ReadTexts(0, taken, [&](std::u16string_view text) { texts.emplace_back(text); });
      break;
    }
    case StorageKind::Bytes: {
      auto& list = value.data.emplace<Value::ByteStrings>();
      values->ReadBytes(0, taken, [&](std::span<const std::byte> bytes) {
        list.emplace_back(bytes.begin(), bytes.end());
      });
      break;
    }
  }
  if (!m_builder.SetValue(m_entity->id, m_row, m_field->index, value)) {
    m_context.Refuse(Join({What(), u" holds a value out of range"}));
  }
}

void InstanceSection::EndColumnContent() {
  m_columnContent.End();
  if (m_field->kind == Field::Kind::Flags) {
    m_column.flags = std::move(m_columnContent.inlineValues);
    m_column.flagComponents = std::move(m_columnContent.components);
  } else {
    m_column.values = std::move(m_columnContent.inlineValues);
    m_column.valueComponents = std::move(m_columnContent.components);
  }
}

void InstanceSection::Clear() {
  const Attribute& attribute =
      m_builder.GetModel().At(m_entity->id).attributes[static_cast<std::size_t>(m_field->index)];
  m_builder.SetValue(m_entity->id, m_row, m_field->index,
                     Value::Unset(attribute.type, attribute.sequence));
}

void InstanceSection::NoteText(std::u16string_view text) {
  switch (m_entity->role) {
    case Role::LocalColumn:
      if (m_field->baseName == u"name") m_column.name = text;
      break;
    case Role::Unit:
      if (m_field->baseName == u"name") m_noted = text;
      break;
    case Role::File:
      if (m_field->baseName == u"ao_location") m_noted = text;
      break;
    default:
      break;
  }
}

void InstanceSection::NoteInteger(std::int64_t number) {
  if (m_entity->role != Role::LocalColumn) return;
  if (m_field->baseName == u"sequence_representation") m_column.representation = number;
  if (m_field->baseName == u"global_flag") m_column.globalFlag = number;
}

std::u16string InstanceSection::What() const {
  return Join({u"'", m_field->name, u"' of ", m_entity->name});
}

void InstanceSection::RefuseValue(std::u16string_view text) {
  const OdsType type = m_field->kind == Field::Kind::Relation || m_field->kind == Field::Kind::Id
                           ? OdsType::LongLong
                           : m_field->type;
  m_context.Refuse(
      Join({u"'", text, u"' in ", What(), u" is not a value of ", NameOfType(type, false)}));
}

std::unique_ptr<MemoryStore> InstanceSection::Finish(const FileSection& files,
                                                     MemoryPersistence persistence) {
  m_columns.AttachOutside(files);
  m_instanceAttributes.ResolveUnits();
  const Model& model = m_builder.GetModel();
  std::unique_ptr<MemoryStore> store =
      m_builder.Finish(std::move(persistence), [&](const DroppedLink& link) {
        const Entity& entity = model.At(link.record.entity);
        const Relation& relation = entity.relations[static_cast<std::size_t>(link.relation)];
        const std::u16string_view reason =
            link.reason == DroppedLink::Reason::NoSuchTarget ? u" doesn't exist" : u" is taken";
        m_context.WarnGenerally(Join({entity.name, u" ", DecimalText(link.record.id), u": '",
                                      relation.name, u"' dropped, ", model.At(relation.target).name,
                                      u" ", DecimalText(link.target), reason}));
      });
  m_columns.Complete(*store);
  for (const std::u16string& line : m_context.AllWarnings().Lines()) store->AddWarning(line);
  return store;
}

}  // namespace hv::vex::engine::atfx

#include "core/plugins/vex/DocumentHandler.h"

#include "core/plugins/vex/ScalarText.h"

namespace hv::vex::engine::vexdoc {

namespace {

/// What differs between two versions of one model: "1_2" in "/DataModels/VEX/Query/1_2".
std::u16string_view WithoutVersion(std::u16string_view uri) {
  return uri.substr(0, uri.rfind(u'/'));
}

}  // namespace

// --- tags -------------------------------------------------------------------------------------

void DocumentHandler::OnStart(std::u16string_view name, Tags attributes) {
  if (m_skipped > 0) return Skip({}, name, attributes);
  if (m_open.empty()) return BeginDocument(name, attributes);
  switch (m_open.back().kind) {
    case Kind::Document:
    case Kind::Reference:
      return BeginInstance(name, attributes);
    case Kind::Instance:
      return BeginMember(name, attributes);
    default:
      m_context.Refuse({u"the tag '", name, u"' has no place in a value"});
  }
}

void DocumentHandler::OnText(std::u16string_view text) {
  if (m_skipped > 0) return;
  if (m_open.back().kind == Kind::Attribute) {
    m_text += text;
  } else if (!IsBlank(text)) {
    m_context.Refuse({u"a text where a tag is expected"});
  }
}

void DocumentHandler::OnEnd(std::u16string_view) {
  if (m_skipped > 0) {
    --m_skipped;
    return;
  }
  const Open closed = m_open.back();
  if (closed.kind == Kind::Attribute) EndAttribute();
  m_open.pop_back();
  if (closed.kind != Kind::Instance) return;
  // Sequences only now, when all their elements are there.
  for (const auto& [attribute, value] : m_contents.back().values) {
    if (value.sequence && !m_builder->SetValue(closed.entity, closed.row, attribute, value)) {
      const Attribute& declared = EntityOf(closed).attributes[static_cast<std::size_t>(attribute)];
      m_context.Refuse({u"a number of '", declared.name, u"' is beyond its type"});
    }
  }
  m_contents.pop_back();
}

void DocumentHandler::Skip(std::u16string_view what, std::u16string_view name, Tags attributes) {
  if (m_skipped++ == 0) m_context.Warn({what, u" '", name, u"' is unknown and was left out"});
  if (const auto* id = FindTagValue(attributes, u"id")) m_skippedIds.emplace(*id);
}

void DocumentHandler::BeginDocument(std::u16string_view name, Tags attributes) {
  if (name != kRootTag) {
    m_context.Refuse({u"not a document of instances: the root element is '", name, u"'"});
  }
  const std::u16string_view* version = FindTagValue(attributes, u"version");
  if (version == nullptr || *version != kFormatVersion) {
    m_context.Refuse(
        {u"version '", version ? *version : std::u16string_view(), u"' of the format isn't known"});
  }
  const std::u16string_view* own = FindTagValue(attributes, u"model");
  if (own == nullptr) m_context.Refuse({u"the document names no model"});
  std::shared_ptr<const Model> model;
  if (m_options.targetModel.empty()) {
    model = m_options.models(*own);
    if (model == nullptr) m_context.Refuse({u"there is no model '", *own, u"'"});
  } else {
    model = m_options.models(m_options.targetModel);
    if (model == nullptr) {
      Fail(errc::kUnknownName, {u"there is no model \"", m_options.targetModel, u"\""});
    }
    // Either may be told with the organisation or without: one then ends in the other.
    const std::u16string_view wanted = WithoutVersion(m_options.targetModel);
    const std::u16string_view found = WithoutVersion(*own);
    if (found.empty() || !(wanted.ends_with(found) || found.ends_with(wanted))) {
      m_context.Refuse(
          {u"a document of the model '", *own, u"', not of '", m_options.targetModel, u"'"});
    }
  }
  m_lastIds.resize(model->Entities().size());
  m_builder = std::make_unique<MemoryBuilder>(std::move(model));
  m_open.push_back({Kind::Document});
}

void DocumentHandler::BeginInstance(std::u16string_view name, Tags attributes) {
  const Open around = m_open.back();
  const bool isInside = around.kind == Kind::Reference;
  const Entity* entity = ModelOf().Find(name);
  if (entity == nullptr || entity->isBase || (isInside && !Fits(around, entity->id))) {
    return Skip(isInside ? u"here the entity" : u"the entity", name, attributes);
  }
  if (const auto* other = FindTagValue(attributes, u"ref")) {
    if (!isInside) m_context.Refuse({u"'ref' has no meaning outside of a reference"});
    AddLink(around, std::nullopt, *other);
    m_open.push_back({Kind::Mention});
    return;
  }
  const RecordRef place{entity->id, ++m_lastIds[entity->id]};
  if (const auto* id = FindTagValue(attributes, u"id")) {
    if (!m_byId.emplace(*id, place).second) {
      m_context.Refuse({u"the id '", *id, u"' is there already"});
    }
  }
  const std::optional<Row> row = m_builder->AppendRecord(place.entity, place.id);
  if (isInside) AddLink(around, place, {});
  m_open.push_back({Kind::Instance, place.entity, place.id, row.value()});
  m_contents.emplace_back();
}

void DocumentHandler::BeginMember(std::u16string_view name, Tags attributes) {
  Open member = m_open.back();
  const Entity& entity = EntityOf(member);
  member.kind = Kind::Attribute;
  member.member = entity.FindAttribute(name);
  if (member.member == kNone) {
    member.kind = Kind::Reference;
    member.member = entity.FindRelation(name);
  }
  if (member.member == kNone) {
    return Skip(std::u16string(u"in '") + entity.name + u"' the member", name, attributes);
  }
  m_text.clear();
  m_open.push_back(member);
}

void DocumentHandler::EndAttribute() {
  const Open& open = m_open.back();
  const Attribute& attribute = EntityOf(open).attributes[static_cast<std::size_t>(open.member)];
  const auto [place, isFirst] = m_contents.back().values.try_emplace(
      open.member, Value::Unset(attribute.type, attribute.sequence));
  Value& value = place->second;
  if (!isFirst && !attribute.sequence) {
    m_context.Refuse({u"'", attribute.name, u"' is there already"});
  }
  if (!ReadElement(m_text, value) ||
      (!attribute.sequence && !m_builder->SetValue(open.entity, open.row, open.member, value))) {
    m_context.Refuse({u"'", std::u16string_view(m_text).substr(0, 100), u"' is no value of '",
                      attribute.name, u"', which is of the type ",
                      NameOfType(attribute.type, false)});
  }
}

// --- links ------------------------------------------------------------------------------------

bool DocumentHandler::Fits(const Open& reference, EntityId target) const {
  return ModelOf().IsKindOf(target, RelationOf(reference).target);
}

void DocumentHandler::AddLink(const Open& from, std::optional<RecordRef> target,
                              std::u16string_view targetId) {
  const Relation& relation = RelationOf(from);
  if (!relation.ToMany() && !m_contents.back().fullReferences.insert(from.member).second) {
    m_context.Refuse({u"the reference '", relation.name, u"' has room for one"});
  }
  m_links.push_back({m_context.Line(), from, target, std::u16string(targetId)});
}

RecordRef DocumentHandler::Resolve(const Link& link) const {
  if (link.target) return *link.target;
  const auto found = m_byId.find(link.targetId);
  if (found == m_byId.end()) {
    m_context.RefuseAt(link.line, {u"there is no instance with the id '", link.targetId, u"'"});
  }
  if (!Fits(link.from, found->second.entity)) {
    m_context.RefuseAt(link.line,
                       {u"the instance with the id '", link.targetId, u"' is of another entity"});
  }
  return found->second;
}

std::unique_ptr<MemoryStore> DocumentHandler::Finish(MemoryPersistence persistence) {
  std::vector<std::pair<Open, RecordRef>> mixed;
  for (const Link& link : m_links) {
    if (!link.target && m_skippedIds.contains(link.targetId)) continue;
    const RecordRef target = Resolve(link);
    if (RelationOf(link.from).IsMixed()) {
      mixed.emplace_back(link.from, target);
    } else {
      m_builder->AddLink(link.from.entity, link.from.row, link.from.member, target.id);
    }
  }
  for (std::u16string& warning : m_context.Warnings()) m_builder->AddWarning(std::move(warning));
  if (mixed.empty()) return m_builder->Finish(std::move(persistence), nullptr);
  MemoryPersistence changeable;
  changeable.save = [](const MemoryStore&, std::u16string_view) { return false; };
  const std::unique_ptr<MemoryStore> store = m_builder->Finish(std::move(changeable), nullptr);
  for (const auto& [from, target] : mixed) {
    store->Connect({from.entity, from.id}, from.member, target);
  }
  return store->Clone(std::move(persistence));
}

}  // namespace hv::vex::engine::vexdoc

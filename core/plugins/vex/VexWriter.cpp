// core/plugins/vex/VexWriter.cpp - attributes of an entity are read in one batch, then written
// where the plan says.
#include "core/plugins/vex/VexWriter.h"

#include <map>

#include "core/plugins/vex/DocumentHandler.h"
#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/DocumentPlan.h"
#include "core/plugins/vex/ModelDefinition.h"
#include "core/plugins/vex/ScalarText.h"
#include "core/store/memory/Failure.h"
#include "xml/Escape.h"

namespace hv::vex::engine::vexdoc {

namespace {

/// The cell of a column as a value.
Value CellOf(const ColumnBlock& block, std::size_t row) {
  if (block.isNull[row]) return Value::Unset(block.type);
  if (!block.others.empty()) return block.others[row];
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      return Value::Integer(block.type, block.integers[row]);
    case StorageKind::Real:
      return Value::Real(block.type, block.reals[row]);
    default:
      return Value::Text(block.type, std::u16string(block.TextAt(row)));
  }
}

/// True if XML has a place for every character.
bool IsXmlText(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto isLow = [&](std::size_t at) { return (text[at] & 0xFC00) == 0xDC00; };
    if ((text[i] & 0xFC00) == 0xD800) {
      if (++i == text.size() || !isLow(i)) return false;
    } else if (isLow(i) || !xml::IsXmlUnit(text[i])) {
      return false;
    }
  }
  return true;
}

class Writer {
 public:
  explicit Writer(const RecordStore& source)
      : m_model(*source.GetModel()), m_plan(source), m_columns(m_model.Entities().size()) {
    for (const Entity& entity : m_model.Entities()) {
      if (entity.isBase || entity.attributes.empty()) continue;
      std::vector<std::int32_t> all(entity.attributes.size());
      for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::int32_t>(i);
      m_columns[entity.id] = source.ReadColumns(entity.id, source.AllOf(entity.id), all);
    }
  }

  std::string Run(std::u16string_view path) {
    using Kind = DocumentPlan::Step::Kind;
    m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    Tag(kRootTag, " version=\"" + cor::ToUtf8(kFormatVersion) + "\" model=\"" +
                      cor::ToUtf8(kOrganisation) + cor::ToUtf8(path) + "\"");
    for (const DocumentPlan::Step& step : m_plan.Steps()) {
      switch (step.kind) {
        case Kind::Begin:
          Tag(EntityOf(step).name, m_plan.IsMentioned(step.node) ? IdText(" id", step.node) : "");
          Attributes(step.node);
          break;
        case Kind::End:
          EndTag(EntityOf(step).name);
          break;
        case Kind::BeginReference:
          Tag(RelationOf(step).name, "");
          break;
        case Kind::EndReference:
          EndTag(RelationOf(step).name);
          break;
        case Kind::Mention:
          NewLine();
          m_text.append("<").append(cor::ToUtf8(EntityOf(step).name));
          m_text.append(IdText(" ref", step.node)).append("/>");
          break;
      }
    }
    EndTag(kRootTag);
    return std::move(m_text += "\n");
  }

 private:
  const Entity& EntityOf(const DocumentPlan::Step& step) const {
    return m_model.At(m_plan.At(step.node).entity);
  }
  const Relation& RelationOf(const DocumentPlan::Step& step) const {
    return EntityOf(step).relations[static_cast<std::size_t>(step.relation)];
  }
  void NewLine() {
    if (m_text.back() != '\n') m_text += '\n';
    m_text.append(m_depth, ' ');
  }
  void Tag(std::u16string_view name, std::string_view attributes) {
    NewLine();
    m_text.append("<").append(cor::ToUtf8(name)).append(attributes).append(">");
    ++m_depth;
  }
  void EndTag(std::u16string_view name) {
    --m_depth;
    NewLine();
    m_text.append("</").append(cor::ToUtf8(name)).append(">");
  }
  /// Ids count the mentioned instances in the order in which they are met.
  std::string IdText(std::string_view name, DocumentPlan::Node node) {
    const std::size_t id = m_ids.try_emplace(node, m_ids.size() + 1).first->second;
    return std::string(name).append("=\"").append(std::to_string(id)).append("\"");
  }

  void Attributes(DocumentPlan::Node node) {
    const Entity& entity = m_model.At(m_plan.At(node).entity);
    for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
      const Attribute& attribute = entity.attributes[i];
      const std::string tag = cor::ToUtf8(attribute.name);
      const Value value = CellOf(m_columns[entity.id][i], m_plan.RowOf(node));
      for (std::size_t k = 0; k < value.Count(); ++k) {
        m_element.clear();
        AppendElement(value, k, m_element);
        NewLine();
        m_text.append("<").append(tag).append(">");
        AppendEscaped(entity, attribute);
        m_text.append("</").append(tag).append(">");
      }
    }
  }
  void AppendEscaped(const Entity& entity, const Attribute& attribute) {
    if (!IsXmlText(m_element)) {
      Fail(errc::kWriteFailed, {u"'", attribute.name, u"' of '", entity.name,
                                u"' holds a control character, which a document can't keep"});
    }
    m_escaped.clear();
    xml::AppendReadable(m_escaped, m_element, false);
    m_text += cor::ToUtf8(m_escaped);
  }

  const Model& m_model;
  DocumentPlan m_plan;
  std::vector<std::vector<ColumnBlock>> m_columns;  // by entity and attribute
  std::map<DocumentPlan::Node, std::size_t> m_ids;
  std::size_t m_depth = 0;
  std::string m_text;
  std::u16string m_element;
  std::u16string m_escaped;
};

}  // namespace

std::string WriteVexText(const RecordStore& source) {
  const std::u16string_view path = PathOfDocumentModel(*source.GetModel());
  if (path.empty()) {
    Fail(errc::kNotSupported, {u"only documents of instances can be written in this format"});
  }
  return Writer(source).Run(path);
}

}  // namespace hv::vex::engine::vexdoc

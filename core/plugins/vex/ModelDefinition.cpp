// core/plugins/vex/ModelDefinition.cpp - strict: a definition is part of the program.
#include "core/plugins/vex/ModelDefinition.h"

#include "core/model/ModelBuilder.h"
#include "core/plugins/vex/DocumentContext.h"
#include "core/plugins/vex/ScalarText.h"

namespace hv::vex::engine::vexdoc {

namespace {

class DefinitionHandler final : public xml::ISaxHandler {
 public:
  explicit DefinitionHandler(const DocumentContext& context)
      : m_context(context), m_builder(ModelBuilder::WithoutBaseModel()) {}

  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override {
    constexpr std::u16string_view kOuter[] = {u"document_model", u"entity"};
    const bool isMember = m_depth == 2 && (name == u"attribute" || name == u"reference");
    if (!isMember && (m_depth > 1 || name != kOuter[m_depth])) {
      m_context.Refuse({u"the tag '", name, u"' has no place here"});
    }
    ++m_depth;
    if (m_depth == 1) {
      m_path = Required(attributes, u"path");
      m_builder.AddPart(m_path);
      m_builder.AddPart(std::u16string(kOrganisation).append(m_path));
    } else if (m_depth == 2) {
      const std::u16string_view entity = Required(attributes, u"name");
      const std::u16string_view* kind = FindTagValue(attributes, u"kind");
      if (!m_builder.BeginEntity(entity, kind ? *kind : std::u16string_view())) {
        m_context.Refuse({u"the entity '", entity, u"' is there already"});
      }
    } else if (!(name == u"attribute" ? AddAttribute(attributes) : AddReference(attributes))) {
      m_context.Refuse({u"'", Required(attributes, u"name"), u"' is there already"});
    }
  }
  void OnText(std::u16string_view text) override {
    if (!IsBlank(text)) m_context.Refuse({u"a definition has no texts"});
  }
  void OnEnd(std::u16string_view) override { --m_depth; }

  ModelDefinition Finish() {
    ModelDefinition made{std::move(m_path), m_builder.Build()};
    if (made.model == nullptr) {
      m_context.RefuseAt(0, {m_builder.Problems().back().text});
    }
    return made;
  }

 private:
  std::u16string_view Required(std::span<const xml::AttributeView> attributes,
                               std::u16string_view name) const {
    const std::u16string_view* value = FindTagValue(attributes, name);
    if (value == nullptr || value->empty()) m_context.Refuse({u"'", name, u"' is missing"});
    return *value;
  }
  bool AddAttribute(std::span<const xml::AttributeView> attributes) {
    AttributeSpec spec;
    spec.name = Required(attributes, u"name");
    const std::u16string_view type = Required(attributes, u"type");
    spec.type = ParseTypeName(type);
    if (!spec.type || !HasText(spec.type->type)) {
      m_context.Refuse({u"documents can't hold values of the type '", type, u"'"});
    }
    return m_builder.AddAttribute(std::move(spec));
  }
  bool AddReference(std::span<const xml::AttributeView> attributes) {
    RelationSpec spec;
    spec.name = Required(attributes, u"name");
    spec.refTo = Required(attributes, u"to");
    if (const auto* inverse = FindTagValue(attributes, u"inverse")) spec.inverseName = *inverse;
    const std::u16string_view* most = FindTagValue(attributes, u"most");
    if (most != nullptr && *most != u"1") m_context.Refuse({u"'most' is 1 or left out"});
    spec.minOccurs = 0;
    spec.maxOccurs = most == nullptr ? kMany : 1;
    return m_builder.AddRelation(std::move(spec));
  }

  const DocumentContext& m_context;
  ModelBuilder m_builder;
  std::u16string m_path;
  std::size_t m_depth = 0;
};

}  // namespace

ModelDefinition ReadModelDefinition(std::span<const std::byte> text, std::string_view sourceName) {
  xml::SaxParser parser;
  const DocumentContext context(parser, cor::FromUtf8(sourceName).str());
  DefinitionHandler handler(context);
  ParseGuarded(context, parser,
               [&](xml::SaxParser& run) { run.ParseBytes(text, sourceName, handler); });
  return handler.Finish();
}

}  // namespace hv::vex::engine::vexdoc

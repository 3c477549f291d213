// core/plugins/atfx/ModelSection.h - reads the application model of an ATFX file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/model/ModelBuilder.h"
#include "core/plugins/atfx/ReadContext.h"

namespace hv::vex::engine::atfx {

/// Takes the events inside `application_model` and collects what it declares; the base model's
/// version may come later.
class ModelSection {
 public:
  explicit ModelSection(ReadContext& context) : m_context(context) {}
  ModelSection(const ModelSection&) = delete;
  ModelSection& operator=(const ModelSection&) = delete;

  void OnStart(std::u16string_view name);
  void OnText(std::u16string_view text);
  void OnEnd();

  /// Makes the model. Throws kBadFile for one that can't be used.
  std::shared_ptr<const Model> Build(std::u16string_view baseModelVersion);

 private:
  enum class Level : std::uint8_t {
    Top,
    Enumeration,
    EnumItem,
    Element,
    Attribute,
    Relation,
    Leaf,
    Unknown,
  };
  struct MemberDraft {
    std::uint64_t line;
    std::variant<AttributeSpec, RelationSpec> spec;
  };
  struct ElementDraft {
    std::uint64_t line = 0;
    std::u16string name, baseType;
    std::vector<MemberDraft> members;
  };

  [[nodiscard]] Level LevelOfTag(std::u16string_view name) const;
  void EndLeaf();
  void EndEnumLeaf(std::u16string_view text);
  void EndAttributeLeaf(AttributeSpec* spec, std::u16string_view text);
  void EndRelationLeaf(RelationSpec* spec, std::u16string_view text);
  bool ReadFlag(std::u16string_view text, std::optional<bool>* flag);
  std::int64_t ReadNumber(std::u16string_view text);
  void AddElement(ModelBuilder* builder, const ElementDraft& element);
  void CheckTargets() const;

  ReadContext& m_context;
  std::vector<Level> m_levels{Level::Top};
  std::u16string m_tag;  // of the open leaf
  std::u16string m_text;
  std::vector<Enumeration> m_enumerations;
  std::vector<ElementDraft> m_elements;
};

}  // namespace hv::vex::engine::atfx

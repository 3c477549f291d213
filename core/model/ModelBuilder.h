// core/model/ModelBuilder.h - puts a model together from what a file or a database tells.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/model/Model.h"

namespace hv::vex::engine {

/// What a source says about an attribute. Whatever is left open comes from the base attribute of
/// the model's base version.
struct AttributeSpec {
  std::u16string name;
  std::u16string baseAttribute;  ///< in any case, or empty
  std::optional<TypeName> type;
  std::optional<bool> obligatory, unique, autogenerate;
  std::int32_t length = 0;
  std::u16string enumeration;
  std::int64_t unit = 0;
};

/// What a source says about a relation.
struct RelationSpec {
  std::u16string name;
  std::u16string refTo;                              ///< application element
  std::u16string baseRelation;                       ///< in any case, or empty
  std::optional<std::int32_t> minOccurs, maxOccurs;  ///< maximum kMany
  std::u16string inverseName;
};

struct EntityDraft;
struct ModelDraft;

struct ModelProblem {
  bool isError;
  std::u16string text;  ///< names the element and member concerned
};

/// Collects declarations in their order, then makes the model. Tolerant where real exporters
/// deviate: names in any case, missing ranges (the base relation's, else 0..Many), missing inverse
/// relations (made here and marked so), unknown base names (reported, then ignored).
class ModelBuilder {
 public:
  /// `baseModelVersion` such as "asam31"; a bare number and unknown versions are accepted, versions
  /// below 29 count as asam30.
  explicit ModelBuilder(std::u16string_view baseModelVersion);
  /// For documents whose base names are not the standard's: each base type becomes a base entity
  /// under its lower-case text, with the base attributes and relations that its elements declare.
  /// An element may have no base type. A relation to a base type leads to every element that stands
  /// on it, and has no inverse.
  static ModelBuilder WithoutBaseModel();
  ModelBuilder(ModelBuilder&&) noexcept;
  ModelBuilder& operator=(ModelBuilder&&) noexcept;
  ~ModelBuilder();

  /// A second enumeration of a name, or one under the name of a base enumeration, is reported and
  /// ignored.
  void AddEnumeration(Enumeration enumeration);
  /// Opens an application element. False if the name is taken or empty; no element is open then,
  /// and the model will be refused.
  bool BeginEntity(std::u16string_view name, std::u16string_view baseType);
  /// Add to the element opened last; false (and reported) if none is open, or the member's name is
  /// empty or taken in this element.
  bool AddAttribute(AttributeSpec spec);
  bool AddRelation(RelationSpec spec);
  void AddPart(std::u16string_view identifier);

  /// Resolves everything and gives the model. Null if an error was found (a relation to an element
  /// that doesn't exist, an unknown enumeration, an unknown base type); `Problems` tells all. To be
  /// called once.
  std::shared_ptr<const Model> Build();
  [[nodiscard]] const std::vector<ModelProblem>& Problems() const { return m_problems; }

 private:
  ModelBuilder();
  void Report(bool isError, std::u16string text);
  /// The open element if it can take a member of that name, else null.
  EntityDraft* Admit(std::u16string_view kind, std::u16string_view name);

  std::unique_ptr<ModelDraft> m_draft;
  std::vector<ModelProblem> m_problems;
};

}  // namespace hv::vex::engine

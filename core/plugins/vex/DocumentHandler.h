// core/plugins/vex/DocumentHandler.h - one pass over a document: tags become records and links.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/plugins/vex/DocumentContext.h"
#include "core/plugins/vex/VexReader.h"
#include "core/store/memory/MemoryBuilder.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine::vexdoc {

inline constexpr std::u16string_view kRootTag = u"vex_document";
inline constexpr std::u16string_view kFormatVersion = u"1";

/// The tags alternate: document, instance, attribute or reference, inside a reference instances
/// again.
class DocumentHandler final : public xml::ISaxHandler {
 public:
  DocumentHandler(DocumentContext& context, const VexReadOptions& options)
      : m_context(context), m_options(options) {}
  DocumentHandler(const DocumentHandler&) = delete;
  DocumentHandler& operator=(const DocumentHandler&) = delete;

  // ISaxHandler
  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override;
  void OnText(std::u16string_view text) override;
  void OnEnd(std::u16string_view name) override;

  /// Settles references to instances that stand elsewhere, and gives the store.
  std::unique_ptr<MemoryStore> Finish(MemoryPersistence persistence);

 private:
  using Tags = std::span<const xml::AttributeView>;
  enum class Kind : std::uint8_t { Document, Instance, Attribute, Reference, Mention };
  /// An open tag. `entity` and `row` are those of the instance that it is or belongs to.
  struct Open {
    Kind kind;
    EntityId entity = kNoEntity;
    RecordId id = 0;
    Row row = kNoRow;
    std::int32_t member = kNone;  // index of the attribute or relation
  };
  /// What an open instance has got so far.
  struct Contents {
    std::map<std::int32_t, Value> values;
    std::set<std::int32_t> fullReferences;  // to-one, with a target
  };
  /// Links are kept in their order, since some lead to instances that come later.
  struct Link {
    std::uint64_t line;
    Open from;
    std::optional<RecordRef> target;
    std::u16string targetId;  // in the document, if the target isn't here
  };

  void BeginDocument(std::u16string_view name, Tags attributes);
  void BeginInstance(std::u16string_view name, Tags attributes);
  void BeginMember(std::u16string_view name, Tags attributes);
  void Skip(std::u16string_view what, std::u16string_view name, Tags attributes);
  void EndAttribute();
  /// Notes a link; refuses a second target of a to-one reference.
  void AddLink(const Open& from, std::optional<RecordRef> target, std::u16string_view targetId);
  [[nodiscard]] RecordRef Resolve(const Link& link) const;
  [[nodiscard]] bool Fits(const Open& reference, EntityId target) const;
  [[nodiscard]] const Model& ModelOf() const { return m_builder->GetModel(); }
  [[nodiscard]] const Entity& EntityOf(const Open& open) const { return ModelOf().At(open.entity); }
  [[nodiscard]] const Relation& RelationOf(const Open& reference) const {
    return EntityOf(reference).relations[static_cast<std::size_t>(reference.member)];
  }

  DocumentContext& m_context;
  const VexReadOptions& m_options;
  std::unique_ptr<MemoryBuilder> m_builder;
  std::vector<Open> m_open;
  std::vector<Contents> m_contents;  // of the open instances
  int m_skipped = 0;                 // tags that are open and left out
  std::u16string m_text;             // of the open attribute
  std::vector<RecordId> m_lastIds;   // by entity
  std::map<std::u16string, RecordRef, std::less<>> m_byId;
  std::set<std::u16string, std::less<>> m_skippedIds;
  std::vector<Link> m_links;
};

}  // namespace hv::vex::engine::vexdoc

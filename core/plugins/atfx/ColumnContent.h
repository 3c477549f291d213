// core/plugins/atfx/ColumnContent.h - reads what stands in the `values` or `flags` of a local
// column.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/plugins/atfx/ComponentValues.h"
#include "core/plugins/atfx/InlineValues.h"
#include "core/plugins/atfx/ReadContext.h"
#include "core/plugins/atfx/TypedContent.h"

namespace hv::vex::engine::atfx {

/// The type that a tag of inline values stands for, and how its text is read.
struct InlineForm {
  std::u16string_view tag;  ///< "A_FLOAT32"
  TypedContent::Rules rules;
};
/// Null for a tag that is none of them.
const InlineForm* FindInlineForm(std::u16string_view tag);
/// The tag with which values of a type are written inline; empty if there is none.
std::u16string_view InlineTagOf(OdsType type);

/// Takes the events inside one such element. Values are either inline, in a typed tag, or described
/// by components; of several inline lists the last one counts, components add up.
class ColumnContent {
 public:
  /// \param spool  where long inline values go while they come in; null: they stay in memory.
  ColumnContent(ReadContext& context, std::shared_ptr<ValueSpool> spool)
      : m_context(context), m_spool(std::move(spool)), m_typed(context) {}
  ColumnContent(const ColumnContent&) = delete;
  ColumnContent& operator=(const ColumnContent&) = delete;

  /// \param isFlags  the element's own text is a list of flags.
  /// \param what     names it in messages.
  void Begin(bool isFlags, std::u16string_view what);
  void OnStart(std::u16string_view name);
  void OnText(std::u16string_view text);
  void OnEnd();
  void End();

  /// After `End`; may be taken. Components name files by the identifiers of the file section.
  InlineValues inlineValues;
  std::vector<Component> components;

 private:
  enum class Part : std::uint8_t { Top, Typed, Component, Leaf, Unknown };
  void BeginTyped(const TypedContent::Rules& rules);
  void SpoolIfLarge(std::size_t size);
  void EndTyped();
  void MakeFlags();
  void EndLeaf();
  std::uint64_t ReadCount(std::u16string_view text);

  ReadContext& m_context;
  std::shared_ptr<ValueSpool> m_spool;
  TypedContent m_typed;
  std::shared_ptr<SpooledValues> m_spooled;  // of the open element, if there are any
  bool m_mayBeSigned = false;                // the open element holds bytes, perhaps signed ones
  bool m_hadSigned = false;                  // there were some among those spooled
  bool m_isFlags = false;
  bool m_isOwnText = false;  // the typed content is that of the element itself
  Part m_part = Part::Top;
  int m_depth = 0;  // inside a typed or unknown tag
  std::u16string m_what;
  std::u16string m_tag;
  std::u16string m_text;
  std::uint64_t m_valueScale = 0;
};

}  // namespace hv::vex::engine::atfx

// xml/SaxState.h - readers built of small counted objects, one per element that is known.
// A reader joins states to a tree and parses once; elements without a state are skipped with
// everything inside them, so formats stay open for additions.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "xml/SaxParser.h"

namespace hv::xml {

/// What to do with one element. Counted by hand, first count 1: held in `Ref`.
class ISAXState {
 public:
  ISAXState(const ISAXState&) = delete;
  ISAXState& operator=(const ISAXState&) = delete;

  virtual std::uint32_t AddRef();
  /// Gives a reference back; the object dies with the last one.
  virtual std::uint32_t Release();
  /// The start tag. The views are valid during the call only.
  virtual void OnAttributes(std::span<const AttributeView> attributes);
  /// Text straight inside the element. One run of text may come in pieces.
  virtual void OnCharacters(std::u16string_view text);
  /// The end tag, once for each `OnAttributes`.
  virtual void OnEnd();
  /// The state of a child element, or null: it is skipped with everything inside it.
  virtual Ref<ISAXState> GetChildState(std::u16string_view tagName) = 0;

 protected:
  ISAXState();
  virtual ~ISAXState();

 private:
  std::uint32_t m_refCount = 1;
};

/// A state with a list of children. Tag handlers derive from it and override what they need.
class ISAXStateImpl : public ISAXState {
 public:
  /// Enters a child, which may stand under several parents; names ignore case. One that is there
  /// under that name is replaced.
  void AddChildState(std::u16string_view tagName, Ref<ISAXState> state);
  Ref<ISAXState> GetChildState(std::u16string_view tagName) override;

 protected:
  ISAXStateImpl() = default;
  ~ISAXStateImpl() override = default;

 private:
  std::map<WString, Ref<ISAXState>, cor::NoCaseLess> m_children;
};

/// The state above the document element: knows one tag, by its exact name.
class ISAXStateRootImpl final : public ISAXState {
 public:
  /// \param rootTagName  must outlive the object
  ISAXStateRootImpl(std::u16string_view rootTagName, Ref<ISAXState> rootState)
      : m_rootTagName(rootTagName), m_rootState(std::move(rootState)) {}
  Ref<ISAXState> GetChildState(std::u16string_view tagName) override;

 private:
  std::u16string_view m_rootTagName;
  Ref<ISAXState> m_rootState;
};

/// Parses `text` through the states, which get names as they are written: a prefix makes another
/// name. A document with another root is skipped as a whole, without a failure; so is every unknown
/// element.
/// \return S_OK; E_FAIL for a text that isn't well-formed (the empty text too) or goes beyond the
///         limits of `SaxParser`. The handlers before the fault have run then, and what they fill
///         may be half filled. What a handler raises leaves the call.
Result ParseXmlDocument(std::u16string_view text, std::u16string_view rootTagName,
                        ISAXState& rootState);

/// \name For handlers
/// @{

/// "true" and "false", exactly so.
/// \return false, with `*value` untouched, for any other text
bool ParseBoolText(std::u16string_view text, bool* value);
/// The value of the attribute of that exact name, or nothing.
std::optional<std::u16string_view> FindAttribute(std::span<const AttributeView> attributes,
                                                 std::u16string_view name);
/// @}

}  // namespace hv::xml

// xml/SaxState.cpp - the stack of states between the parser's events and the tag handlers.
#include "xml/SaxState.h"

#include "cor/Counted.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace hv::xml {

namespace {

/// Keeps the states of the open elements; null inside an element that nobody knows.
class CSAXHandler final : public ISaxHandler {
 public:
  explicit CSAXHandler(Ref<ISAXState> above) { m_open.push_back(std::move(above)); }

  // ISaxHandler
  void OnStart(std::u16string_view name, std::span<const AttributeView> attributes) override {
    Ref<ISAXState> child;
    if (m_open.back()) child = m_open.back()->GetChildState(name);
    if (child) child->OnAttributes(attributes);
    m_open.push_back(std::move(child));
  }
  void OnText(std::u16string_view text) override {
    if (m_open.back()) m_open.back()->OnCharacters(text);
  }
  void OnEnd(std::u16string_view) override {
    if (m_open.back()) m_open.back()->OnEnd();
    m_open.pop_back();
  }

 private:
  std::vector<Ref<ISAXState>> m_open;
};

}  // namespace

ISAXState::ISAXState() { cor::AddLiveObject(1); }

ISAXState::~ISAXState() { cor::AddLiveObject(-1); }

std::uint32_t ISAXState::AddRef() { return ++m_refCount; }

std::uint32_t ISAXState::Release() {
  const std::uint32_t left = --m_refCount;
  if (left == 0) delete this;
  return left;
}

void ISAXState::OnAttributes(std::span<const AttributeView>) {}

void ISAXState::OnCharacters(std::u16string_view) {}

void ISAXState::OnEnd() {}

void ISAXStateImpl::AddChildState(std::u16string_view tagName, Ref<ISAXState> state) {
  m_children.insert_or_assign(WString(tagName), std::move(state));
}

Ref<ISAXState> ISAXStateImpl::GetChildState(std::u16string_view tagName) {
  const auto found = m_children.find(tagName);
  return found == m_children.end() ? nullptr : found->second;
}

Ref<ISAXState> ISAXStateRootImpl::GetChildState(std::u16string_view tagName) {
  return tagName == m_rootTagName ? m_rootState : nullptr;
}

Result ParseXmlDocument(std::u16string_view text, std::u16string_view rootTagName,
                        ISAXState& rootState) {
  CSAXHandler handler(MakeRef<ISAXStateRootImpl>(rootTagName, Ref<ISAXState>::Share(&rootState)));
  try {
    SaxParser({}, NameForm::Written).ParseMemory(text, handler, "parse from string");
  } catch (const XmlError&) {
    return E_FAIL;
  }
  return S_OK;
}

bool ParseBoolText(std::u16string_view text, bool* value) {
  if (text != u"true" && text != u"false") return false;
  *value = text == u"true";
  return true;
}

std::optional<std::u16string_view> FindAttribute(std::span<const AttributeView> attributes,
                                                 std::u16string_view name) {
  const auto found = std::find_if(attributes.begin(), attributes.end(),
                                  [&](const AttributeView& a) { return a.name == name; });
  if (found == attributes.end()) return std::nullopt;
  return found->value;
}

}  // namespace hv::xml

// automation/EventSource.cpp - telling listeners that may change the list of listeners.
#include "automation/EventSource.h"

#include <algorithm>
#include <utility>

#include "automation/Guards.h"

namespace hv::automation {

/// While an event is under way entries keep their places; the removed ones leave with the last
/// event.
class EventSource::FiringScope {
 public:
  explicit FiringScope(EventSource& source) : m_source(source) { ++m_source.m_firingDepth; }
  ~FiringScope() {
    if (--m_source.m_firingDepth == 0) {
      std::erase_if(m_source.m_entries, [](const Entry& entry) { return !entry.sink; });
    }
  }
  FiringScope(const FiringScope&) = delete;
  FiringScope& operator=(const FiringScope&) = delete;

 private:
  EventSource& m_source;
};

Result EventSource::Advise(IEventSink* sink, std::uint32_t* cookie) try {
  HV_RETURN_IF_NULL(sink);
  HV_RETURN_IF_NULL(cookie);
  m_entries.push_back({m_lastCookie + 1, Ref<IEventSink>::Share(sink)});
  *cookie = ++m_lastCookie;
  return S_OK;
}
HV_CATCH_RETURN()

Result EventSource::Unadvise(std::uint32_t cookie) {
  const auto at = std::ranges::find(m_entries, cookie, &Entry::cookie);
  HV_RETURN_CODE_IF(at == m_entries.end() || !at->sink, E_INVALIDARG);
  // The sink may die with its reference and come back here; by then the list must be in order.
  const Ref<IEventSink> leaving = std::move(at->sink);
  if (m_firingDepth == 0) m_entries.erase(at);
  return S_OK;
}

Result EventSource::GetEvent(std::uint32_t index, MemberInfo* info) const {
  HV_RETURN_IF_NULL(info);
  *info = {};
  HV_RETURN_CODE_IF(index >= m_events.size(), E_INVALIDARG);
  const EventRow& row = m_events[index];
  *info = {row.name, row.id, CallKind::Method, row.argumentCount, row.argumentCount};
  return S_OK;
}

void EventSource::Fire(IUnknown& owner, std::int32_t id, std::span<const Variant> args,
                       Variant* result) {
  if (m_entries.empty()) return;
  const Ref<IUnknown> alive = Ref<IUnknown>::Share(&owner);
  const std::u16string_view name = NameOf(id);
  const FiringScope scope(*this);
  const std::size_t count = m_entries.size();
  for (std::size_t i = 0; i < count; ++i) {
    // A reference of its own: the listener may remove itself, and a new one may move the list.
    const Ref<IEventSink> sink = m_entries[i].sink;
    if (!sink) continue;
    Variant answer;
    (void)sink->OnEvent(id, name, args, &answer);
    if (result && !answer.IsEmpty()) *result = std::move(answer);
  }
}

bool EventSource::HasSinks() const {
  return std::ranges::any_of(m_entries, [](const Entry& entry) { return bool(entry.sink); });
}

std::u16string_view EventSource::NameOf(std::int32_t id) const {
  const auto at = std::ranges::find(m_events, id, &EventRow::id);
  return at == m_events.end() ? std::u16string_view() : at->name;
}

}  // namespace hv::automation

// automation/EventSource.h - the body of objects that raise events.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <storefabric/Dispatch.h>

namespace hv::automation {

/// One event as published. A table of them is a constant of the class that raises them.
struct EventRow {
  std::u16string_view name;
  std::int32_t id;  ///< frozen
  std::uint8_t argumentCount;
};

/// The listeners of one object and the way to reach them; a member of the object, which forwards
/// the operations of `IEventSource` to it.
///
/// A listener may do anything while it is called: unadvise itself or others, advise new ones, raise
/// the next event, or let go of the object. Hence a listener removed while an event is under way
/// doesn't hear it any more, one added hears the next event first, and who fires keeps the object
/// alive.
class EventSource {
 public:
  explicit EventSource(std::span<const EventRow> events) : m_events(events) {}
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

  /// \name The operations of `IEventSource`
  /// @{
  Result Advise(IEventSink* sink, std::uint32_t* cookie);
  Result Unadvise(std::uint32_t cookie);
  [[nodiscard]] std::uint32_t GetEventCount() const {
    return static_cast<std::uint32_t>(m_events.size());
  }
  Result GetEvent(std::uint32_t index, MemberInfo* info) const;
  /// @}

  /// Tells every listener, in the order in which they came.
  /// \param owner  the object that this is a part of; kept alive until the last listener was told
  /// \param id     one of the table
  /// \param result receives the last answer that isn't empty; null if unwanted
  void Fire(IUnknown& owner, std::int32_t id, std::span<const Variant> args,
            Variant* result = nullptr);

  [[nodiscard]] bool HasSinks() const;

 private:
  struct Entry {
    std::uint32_t cookie;
    Ref<IEventSink> sink;  ///< null if removed while an event is under way
  };
  class FiringScope;

  [[nodiscard]] std::u16string_view NameOf(std::int32_t id) const;

  std::span<const EventRow> m_events;
  std::vector<Entry> m_entries;
  std::uint32_t m_lastCookie = 0;
  std::uint32_t m_firingDepth = 0;
};

}  // namespace hv::automation

// automation/EventSourceTest.cpp - listeners that change the list of listeners.
#include "automation/EventSource.h"

#include <functional>
#include <string>

#include "ToyObjects.h"

namespace hv::automation::toys {
namespace {

constexpr EventRow kEvents[] = {{u"SelectionChanged", 6, 0}, {u"Drag", 7, 3}};

/// An object with an event source, as a control has one.
struct Control final : public cor::Counted<IUnknown> {
  void Fire(std::int32_t id) { m_events.Fire(*this, id, {}); }
  EventSource m_events{kEvents};
};

/// Writes down what it hears, then does what the test told it.
class Sink final : public cor::Counted<IEventSink> {
 public:
  Sink(std::string name, std::string& log) : m_name(std::move(name)), m_log(log) {}

  Result OnEvent(std::int32_t id, std::u16string_view name, std::span<const Variant>,
                 Variant*) override {
    m_log += m_name + std::to_string(id) + ":" + cor::ToUtf8(name) + " ";
    if (m_action) std::exchange(m_action, nullptr)();
    return E_FAIL;  // nobody may care
  }
  std::function<void()> m_action;

 private:
  ~Sink() override = default;
  std::string m_name;
  std::string& m_log;
};

class Events : public NoLeaks {
 protected:
  Ref<Sink> Join(const char* name, std::uint32_t& cookie) {
    auto sink = MakeRef<Sink>(name, m_log);
    EXPECT_EQ(S_OK, m_control->m_events.Advise(sink.Get(), &cookie));
    return sink;
  }

  std::string m_log;
  Ref<Control> m_control = MakeRef<Control>();
  std::uint32_t m_a = 0, m_b = 0, m_c = 0;
};

TEST_F(Events, ReachEverySinkInOrder) {
  Join("a", m_a);
  Join("b", m_b);
  EXPECT_NE(0U, m_a);
  EXPECT_NE(m_a, m_b);
  m_control->Fire(6);
  m_control->Fire(99);
  EXPECT_EQ("a6:SelectionChanged b6:SelectionChanged a99: b99: ", m_log);
  EXPECT_EQ(S_OK, m_control->m_events.Unadvise(m_a));
  EXPECT_EQ(E_INVALIDARG, m_control->m_events.Unadvise(m_a));
  EXPECT_EQ(E_INVALIDARG, m_control->m_events.Unadvise(0));
  EXPECT_EQ(E_POINTER, m_control->m_events.Advise(nullptr, &m_a));
  EXPECT_TRUE(m_control->m_events.HasSinks());
}

TEST_F(Events, ASinkMayLeaveOrRemoveOthersWhileItIsCalled) {
  const auto a = Join("a", m_a);
  Join("b", m_b);
  Join("c", m_c);
  a->m_action = [this] {
    EXPECT_EQ(S_OK, m_control->m_events.Unadvise(m_a));
    EXPECT_EQ(E_INVALIDARG, m_control->m_events.Unadvise(m_a));
    EXPECT_EQ(S_OK, m_control->m_events.Unadvise(m_b));
  };
  m_control->Fire(6);
  EXPECT_EQ("a6:SelectionChanged c6:SelectionChanged ", m_log);
  m_log.clear();
  m_control->Fire(7);
  EXPECT_EQ("c7:Drag ", m_log);
}

TEST_F(Events, ASinkThatJoinsHearsTheNextEvent) {
  const auto a = Join("a", m_a);
  a->m_action = [this] {
    // Enough to move the list elsewhere.
    for (int i = 0; i < 20; ++i) Join("n", m_b);
    m_control->Fire(7);
  };
  m_control->Fire(6);
  EXPECT_EQ(0U, m_log.find("a6:SelectionChanged a7:Drag n7:Drag n7:Drag "));
  EXPECT_EQ(std::string::npos, m_log.find("n6"));
}

TEST_F(Events, TheControlOutlivesAnEventInWhichItsLastHolderLetsGo) {
  const auto a = Join("a", m_a);
  Join("b", m_b);
  a->m_action = [this] { m_control.Reset(); };
  m_control->Fire(6);
  EXPECT_EQ("a6:SelectionChanged b6:SelectionChanged ", m_log);
}

TEST_F(Events, AreListed) {
  MemberInfo info;
  ASSERT_EQ(2U, m_control->m_events.GetEventCount());
  ASSERT_EQ(S_OK, m_control->m_events.GetEvent(1, &info));
  EXPECT_EQ(u"Drag", info.name);
  EXPECT_EQ(7, info.id);
  EXPECT_EQ(3, info.argumentCount);
  EXPECT_EQ(E_INVALIDARG, m_control->m_events.GetEvent(2, &info));
  EXPECT_EQ(E_POINTER, m_control->m_events.GetEvent(0, nullptr));
}

}  // namespace
}  // namespace hv::automation::toys

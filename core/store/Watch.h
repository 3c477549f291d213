// core/store/Watch.h - tells the caller of long work how far it is; stops it when told to.
#pragma once

#include <cstdint>

#include "store/core/Exception.h"
#include "store/core/IProgress.h"

namespace hv::vex::engine {

/// A plain value; the caller's object must outlive it.
class Watch final {
 public:
  Watch() = default;  ///< nobody watches
  explicit Watch(IProgress* client) : m_client(client) {}

  [[nodiscard]] bool IsAnybodyThere() const { return m_client != nullptr; }
  /// False if the work shall stop.
  [[nodiscard]] bool MayGoOn(std::uint64_t done, std::uint64_t total) const {
    return m_client == nullptr || m_client->OnProgress(done, total) != 0;
  }
  /// Throws kCancelled if the work shall stop.
  void Tell(std::uint64_t done, std::uint64_t total) const {
    if (!MayGoOn(done, total)) throw Exception(errc::kCancelled, u"stopped");
  }

 private:
  IProgress* m_client = nullptr;
};

/// Counts the steps of work whose number is known.
class WatchedSteps final {
 public:
  WatchedSteps(const Watch& watch, std::uint64_t total) : m_watch(watch), m_total(total) {}
  void Add(std::uint64_t steps) { m_watch.Tell(m_done += steps, m_total); }

 private:
  Watch m_watch;
  std::uint64_t m_done = 0;
  std::uint64_t m_total;
};

}  // namespace hv::vex::engine

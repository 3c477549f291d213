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

}  // namespace hv::vex::engine

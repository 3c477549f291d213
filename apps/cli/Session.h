// apps/cli/Session.h - a session of the library with the store that a command works on.
#pragma once

#include <string>

#include "apps/cli/StoreAccess.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/session/IDataStoreImpl.h"

namespace hv::cli {

/// Throws Failure if an operation of the library failed.
/// \param what  what was done, for the message: "reading bench.atfx"
void Check(Result rc, const std::string& what);

/// The store, and the library's objects over it. The engine opens the store, since it tells why it
/// can't.
class Session final {
 public:
  explicit Session(const std::string& store);

  [[nodiscard]] vex::IStore& Store() { return *m_store; }
  [[nodiscard]] vex::IDataStoreImpl& DataStore() { return *m_session; }
  [[nodiscard]] vex::easyImpl::ISimplifiedStoreImpl& Provider() { return *m_provider; }
  /// "reading bench.atfx"
  [[nodiscard]] const std::string& Reading() const { return m_reading; }
  /// The element of a key; a key of no element is a Failure.
  Ref<vex::IStoreElementImpl> ElementOf(const std::string& key);

 private:
  Engine m_engine;
  std::string m_reading;
  Ref<vex::IStore> m_store;
  Ref<vex::IDataStoreImpl> m_session;
  Ref<vex::easyImpl::ISimplifiedStoreImpl> m_provider;
};

}  // namespace hv::cli

#include "apps/cli/Session.h"

#include <cstdio>

#include "apps/cli/Failure.h"
#include "query/objects/SessionQueries.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/ISessionQueries.h"

namespace hv::cli {
namespace {

std::string ReasonOf(Result rc) {
  if (rc == E_PENDING) return "the store didn't answer in time";
  if (rc == E_OUTOFMEMORY) return "there isn't enough memory";
  if (rc == VEX_E_OBJECT_GONE) return "the element no longer exists";
  if (rc == VEX_E_WRITE_PROTECTED) return "the store refuses changes";
  char code[16];
  std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(CodeOf(rc)));
  return std::string("the library failed with code ") + code;
}

}  // namespace

void Check(Result rc, const std::string& what) {
  if (Failed(rc)) throw Failure(what + ": " + ReasonOf(rc));
}

Session::Session(const std::string& store)
    : m_reading("reading " + store),
      m_store(m_engine.Open(store)),
      m_session(MakeRef<vex::CDataStoreImpl>()) {
  vex::InstallSessionQueries(&vex::StoreQueries());
  Check(m_session->OpenByStore(m_store.Get()), "opening " + store);
  Check(m_session->GetSimplifiedStore(m_provider.Put()), "opening " + store);
}

Ref<vex::IStoreElementImpl> Session::ElementOf(const std::string& key) {
  Ref<vex::IStoreElementImpl> element;
  const Result rc = m_session->GetElementByKey(cor::FromUtf8(key), element.Put());
  if (rc == E_INVALIDARG || (!Failed(rc) && !element)) {
    throw Failure(m_reading + ": there is no element with the key " + key);
  }
  Check(rc, m_reading);
  return element;
}

}  // namespace hv::cli

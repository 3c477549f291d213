#include "core/objects/Guard.h"

#include "storefabric/WString.h"

namespace hv::vex::engine {

void RethrowAsSeamException() {
  try {
    throw;
  } catch (const Exception&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw Exception(errc::kOutOfMemory, u"out of memory");
  } catch (const std::exception& error) {
    throw Exception(errc::kInternal, cor::FromUtf8(error.what()));
  } catch (...) {
    throw Exception(errc::kInternal, u"unexpected failure");
  }
}

}  // namespace hv::vex::engine

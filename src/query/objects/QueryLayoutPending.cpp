// query/objects/QueryLayoutPending.cpp - a build without query files: nothing is read or written.
#include "query/objects/QueryLayout.h"

namespace hv::vex {

Result SaveQueryInto(IAdvancedQueryImpl&, IInstance&) { return E_NOTIMPL; }
Result LoadQueryFrom(IInstance&, IAdvancedQueryImpl&) { return E_NOTIMPL; }

}  // namespace hv::vex

// query/objects/SessionQueries.h - queries for sessions, which stand a layer below.
#pragma once

#include "store/session/ISessionQueries.h"

namespace hv::vex {

/// What sessions are given with `InstallSessionQueries`.
ISessionQueries& StoreQueries();

}  // namespace hv::vex

// store/session/SessionQueries.cpp - where sessions find the query library.
#include "store/session/ISessionQueries.h"

namespace hv::vex {

namespace {

constinit ISessionQueries* g_queries = nullptr;

}  // namespace

void InstallSessionQueries(ISessionQueries* queries) { g_queries = queries; }
ISessionQueries* GetSessionQueries() { return g_queries; }

}  // namespace hv::vex

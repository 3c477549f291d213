// tests/plugins/StandInLogOwner.cpp - the log that the stand-in modules write to.
#include "plugins/StandInLog.h"

extern "C" __attribute__((visibility("default"))) hv::test::StandInLog HvStandInLog;
hv::test::StandInLog HvStandInLog;

// storefabric/Export.h - marks what the shared library gives to its hosts.
#pragma once

/// Everything else is hidden. Class templates and inline functions need no mark.
#define HV_API __attribute__((visibility("default")))

// store/core/Seam.h - the seam between the library and a storage engine: everything in one include.
//
// For those who write an engine. A module that exports the six functions of EngineExports.h and
// answers with these interfaces can take the place of `vexex`. The conventions, for every operation
// unless its own comment says otherwise:
//
//  1. Objects are counted by hand (IUnknown), first count 1, on one thread: the caller's. The
//  library
//     holds no lock when it calls, and an engine need not either.
//  2. An operation that returns an object gives the caller one reference. Objects passed in are
//     borrowed for the call.
//  3. Looking something up gives null for a thing that doesn't exist, and doesn't throw.
//  4. Every other failure is thrown as hv::vex::Exception, never as another type; nothing else
//  leaves
//     the engine. The codes of store/core/Exception.h that the library tells apart are
//     kOutOfMemory, kTimeout, kWriteProtected, kConnectRefused, kConnectFailed and kAccessDenied.
//  5. Strings passed in are views and need not be terminated. An out string is a string object that
//     the callee fills; its memory comes from malloc, so both sides may free it.
//  6. Truth values are 32-bit numbers, zero or not.
//  7. Names of entities, attributes and relations are told apart by case. Base names are lower
//  case.
//  8. The order of the operations in an interface is fixed for good; new ones are added at its end.
//  9. An object may outlive the store it came from as long as it is referenced; an instance whose
//     record was deleted answers 0 to IsValid and throws kInstanceGone from everything else.
// 10. A call that takes long blocks its caller; to time out is the engine's task (kTimeout).
#pragma once

#include "store/core/EngineExports.h"
#include "store/core/Exception.h"
#include "store/core/IAttribute.h"
#include "store/core/IBulkReader.h"
#include "store/core/IContainer.h"
#include "store/core/IEntity.h"
#include "store/core/IEnvironment.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IModel.h"
#include "store/core/IPlugin.h"
#include "store/core/IProgress.h"
#include "store/core/IStore.h"
#include "store/core/IStoreContext.h"
#include "store/core/IStoreQuery.h"

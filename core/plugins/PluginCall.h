// core/plugins/PluginCall.h - what the calls of every plug-in have in common.
#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>

#include "core/plugins/Plugin.h"
#include "core/store/memory/Failure.h"
#include "store/core/Exception.h"
#include "storefabric/WString.h"

namespace hv::vex::engine {

/// Lets nothing but the engine's own exception out.
template <class Body>
auto Guarded(Body body) {
  try {
    return body();
  } catch (const Exception&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw Exception(errc::kOutOfMemory);
  } catch (const std::exception& error) {
    throw Exception(errc::kInternal, cor::FromUtf8(error.what()));
  }
}

/// The absolute name of the file that the parameters name. Throws kBadFile if they name none.
inline std::filesystem::path FileNameOf(const ConnectParameters& parameters) {
  const std::optional<std::u16string> name = parameters.GetTrimmed(u"filename");
  if (!name) Fail(errc::kBadFile, {u"no file name is given"});
  return std::filesystem::absolute(cor::ToUtf8(*name));
}

}  // namespace hv::vex::engine

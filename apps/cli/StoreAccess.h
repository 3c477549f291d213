// apps/cli/StoreAccess.h - the engine and the store that a command works on.
#pragma once

#include <string>
#include <string_view>

#include "store/core/CoreBinding.h"
#include "store/core/Seam.h"
#include "storefabric/Ref.h"

namespace hv::cli {

/// Keeps the engine loaded while a command runs.
class Engine final : private vex::CoreBinding {
 public:
  Engine();
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  [[nodiscard]] vex::IEnvironment& Environment() { return *m_environment; }
  /// Opens what the program's first argument names: a file by its ending, or a configured store.
  /// \param progress  watches; may be null.
  Ref<vex::IStore> Open(const std::string& store, vex::IProgress* progress = nullptr);
  /// The same for a command that reads everything once: what is bulky goes into a temporary file in
  /// `folder` instead of memory.
  Ref<vex::IStore> OpenToCopy(const std::string& store, std::string_view folder,
                              vex::IProgress& progress);

 private:
  Ref<vex::IStore> OpenWith(const std::string& store, const WString& more,
                            vex::IProgress* progress);
  Ref<vex::IEnvironment> m_environment;
};

/// Tells on standard error what was odd in a store: how much, or with `list` each remark. Last of
/// all, since values that are read late may add to it.
void TellRemarks(vex::IStore& store, bool list);

/// The connection parameters that name a file.
WString FilenameParameter(std::string_view file);

/// Throws Failure if `target` is no name of an exchange file, if writing it would replace something
/// without being told to, or if it isn't possible at all.
void CheckTarget(const std::string& target, bool force);

/// Runs a body and turns what the engine throws into a Failure that begins with `what`.
template <class Body>
auto Explained(const std::string& what, Body&& body) -> decltype(body());

}  // namespace hv::cli

#include "apps/cli/Failure.h"
#include "apps/cli/Interruption.h"

template <class Body>
auto hv::cli::Explained(const std::string& what, Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const vex::Exception& exception) {
    std::string reason = cor::ToUtf8(exception.message);
    // Which step heard of it first is nobody's concern.
    if (Interruption::Caught() != 0) reason = "stopped";
    if (reason.empty()) reason = "the engine failed with code " + std::to_string(exception.code);
    throw Failure(what + ": " + reason);
  }
}

// store/core/Exception.h - the one exception type that crosses the seam to the storage engine.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/WString.h>

/// Types thrown or asked for across modules keep their type information visible.
#define HV_SEAM_TYPE __attribute__((visibility("default")))

namespace hv::vex {

/// Thrown by the engine and by the calls into it, never anything else. The code is negative. The
/// message is for people who write engines and for the command line; hosts get their words from the
/// string table.
class HV_SEAM_TYPE Exception {
 public:
  explicit Exception(std::int32_t code_, WString message_ = {})
      : code(code_), message(std::move(message_)) {}
  Exception(const Exception& other) = default;
  Exception& operator=(const Exception&) = default;
  virtual ~Exception() = default;

  std::int32_t code;
  WString message;
};

/// The engine's error codes. Frozen. The first seven are told apart by the library above the seam,
/// all others mean plain failure there.
namespace errc {
// clang-format off
inline constexpr std::int32_t kOutOfMemory = -800;
inline constexpr std::int32_t kNotBound = -1006;        ///< the engine isn't loaded
inline constexpr std::int32_t kTimeout = -1008;
inline constexpr std::int32_t kWriteProtected = -1302;
inline constexpr std::int32_t kConnectRefused = -1906;  ///< a server refused the session
inline constexpr std::int32_t kAccessDenied = -1908;
inline constexpr std::int32_t kConnectFailed = -4104;   ///< a server that can't be reached

inline constexpr std::int32_t kInvalidArgument = -1001; ///< an argument that makes no sense
inline constexpr std::int32_t kNotSupported = -1002;    ///< this kind of store can't do that
inline constexpr std::int32_t kUnknownName = -1003;     ///< no such store, plug-in, entity, attribute or relation
inline constexpr std::int32_t kWrongType = -1004;       ///< a value that doesn't fit its attribute
inline constexpr std::int32_t kInstanceGone = -1005;    ///< the instance was deleted
inline constexpr std::int32_t kVersion = -1007;         ///< interface version or stamp not accepted
inline constexpr std::int32_t kCancelled = -1009;      ///< stopped by whoever watches the progress
inline constexpr std::int32_t kBadQuery = -1201;        ///< a query text that can't be read or bound
inline constexpr std::int32_t kBadFile = -1301;         ///< a file that isn't what it should be
inline constexpr std::int32_t kWriteFailed = -1303;     ///< a file that can't be written
inline constexpr std::int32_t kNotUnique = -1304;       ///< an id or a unique value that exists already
inline constexpr std::int32_t kInternal = -1999;        ///< an unexpected failure inside the engine
// clang-format on
}  // namespace errc

}  // namespace hv::vex

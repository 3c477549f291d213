// automation/Guards.h - return guards and the one translator from exceptions to result codes.
// Every logic operation that calls the engine ends with HV_CATCH_RETURN or HV_CATCH_RETURN_AS.
#pragma once

#include <cassert>
#include <cstdint>
#include <span>

#include <storefabric/Result.h>

#include "automation/ErrCode.h"
#include "store/core/Exception.h"

namespace hv {

/// One line of an operation's own mapping of engine error codes.
struct CodeRow {
  std::int32_t code;
  Result result;
};

/// The result code of an engine exception.
/// \param rows       the operation's own lines; they come before the common ones, which are out of
///                   memory, timed out and write protected
/// \param otherwise  the operation's failure value for every other code
Result ResultFromVexException(const vex::Exception& exception, std::span<const CodeRow> rows,
                              Result otherwise);

/// The result code of a value thrown by a constructor; `otherwise` for the values without one.
Result ResultFromErrCode(vex::com::cErrCode code, Result otherwise);

/// Translates the exception being handled. Call it in a `catch (...)` only. The text of the
/// exception goes nowhere: what a user reads comes from the string table.
/// \param otherwise  the operation's failure value: E_FAIL for elements, properties and references,
///                   E_UNEXPECTED for reads on the store object
Result ResultFromCaughtException(Result otherwise = E_FAIL, std::span<const CodeRow> rows = {});

}  // namespace hv

/// Returns the code of `expr` if it failed. Evaluates it once.
#define HV_RETURN_IF_FAILED(expr)        \
  do {                                   \
    const ::hv::Result hvRc = (expr);    \
    if (::hv::Failed(hvRc)) return hvRc; \
  } while (false)

/// Returns E_POINTER for a null out pointer; the first line of an operation.
#define HV_RETURN_IF_NULL(ptr)                    \
  do {                                            \
    if ((ptr) == nullptr) return ::hv::E_POINTER; \
  } while (false)

/// Returns `code` if the condition holds.
#define HV_RETURN_CODE_IF(cond, code) \
  do {                                \
    if (cond) return (code);          \
  } while (false)

/// Ends the function-try-block of an operation whose failure value is E_FAIL.
#define HV_CATCH_RETURN()                     \
  catch (...) {                               \
    return ::hv::ResultFromCaughtException(); \
  }

/// Ends the function-try-block of an operation; takes the failure value and, if wanted, the
/// operation's own rows.
#define HV_CATCH_RETURN_AS(...)                          \
  catch (...) {                                          \
    return ::hv::ResultFromCaughtException(__VA_ARGS__); \
  }

/// A condition that only a programming error can break: stops in builds with assertions, returns
/// E_UNEXPECTED in others.
#define HV_CHECK(cond)                       \
  do {                                       \
    const bool hvHolds = bool(cond);         \
    assert(hvHolds&& #cond);                 \
    if (!hvHolds) return ::hv::E_UNEXPECTED; \
  } while (false)

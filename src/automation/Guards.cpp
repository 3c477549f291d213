// automation/Guards.cpp - the translator from exceptions to result codes.
#include "automation/Guards.h"

#include <algorithm>
#include <new>

namespace hv {

Result ResultFromVexException(const vex::Exception& exception, std::span<const CodeRow> rows,
                              Result otherwise) {
  const auto own = std::ranges::find(rows, exception.code, &CodeRow::code);
  if (own != rows.end()) return own->result;
  switch (exception.code) {
    case vex::errc::kOutOfMemory:
      return E_OUTOFMEMORY;
    case vex::errc::kTimeout:
      return E_PENDING;
    case vex::errc::kWriteProtected:
      return VEX_E_WRITE_PROTECTED;
    default:
      return otherwise;
  }
}

Result ResultFromErrCode(vex::com::cErrCode code, Result otherwise) {
  using enum vex::com::cErrCode;
  switch (code) {
    case eTypeMismatch:
      return DISP_E_TYPEMISMATCH;
    case eBadTransportFormat:
      return E_INVALIDARG;
    case eOutOfMemory:
      return E_OUTOFMEMORY;
    case eWrongClass:
    case eFailure:
      return E_UNEXPECTED;
    case eTimeout:
      return E_PENDING;
    case eBadQueryContent:
    case eAdvancedQueryFirst:
    case eAdvancedQuerySecond:
      break;
  }
  return otherwise;
}

Result ResultFromCaughtException(Result otherwise, std::span<const CodeRow> rows) {
  try {
    throw;
  } catch (const vex::Exception& exception) {
    return ResultFromVexException(exception, rows, otherwise);
  } catch (vex::com::cErrCode code) {
    return ResultFromErrCode(code, otherwise);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return otherwise;
  }
}

}  // namespace hv

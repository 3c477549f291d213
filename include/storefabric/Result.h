// storefabric/Result.h - the result codes of every operation.
// The numbers are frozen: hosts and scripts compare with them.
#pragma once

#include <cstdint>

namespace hv {

/// A 32-bit result code. Negative (high bit set) means failure; small positive values mean done
/// with a remark, so success is asked with `Failed`, never by comparing with `S_OK`.
/// Binary-compatible with the plain 32-bit integer that the exported functions return.
enum class [[nodiscard]] Result : std::int32_t{};

/// True if the operation failed.
constexpr bool Failed(Result rc) { return static_cast<std::int32_t>(rc) < 0; }

/// The code from its customary hexadecimal notation.
constexpr Result MakeResult(std::uint32_t code) {
  return static_cast<Result>(static_cast<std::int32_t>(code));
}

/// The code as the unsigned number that its hexadecimal notation shows.
constexpr std::uint32_t CodeOf(Result rc) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(rc));
}

// clang-format off
inline constexpr Result S_OK                           = MakeResult(0);           ///< Done.
inline constexpr Result S_FALSE                        = MakeResult(1);           ///< Done, with a negative answer.
inline constexpr Result E_NOTIMPL                      = MakeResult(0x80004001);  ///< Not implemented, or not possible on this data.
inline constexpr Result E_NOINTERFACE                  = MakeResult(0x80004002);  ///< The object doesn't offer that interface.
inline constexpr Result E_POINTER                      = MakeResult(0x80004003);  ///< Null argument or null out pointer.
inline constexpr Result E_FAIL                         = MakeResult(0x80004005);  ///< General failure.
inline constexpr Result E_PENDING                      = MakeResult(0x8000000A);  ///< The operation timed out.
inline constexpr Result E_UNEXPECTED                   = MakeResult(0x8000FFFF);  ///< Unexpected state.
inline constexpr Result E_ACCESSDENIED                 = MakeResult(0x80070005);  ///< Not allowed here.
inline constexpr Result E_HANDLE                       = MakeResult(0x80070006);  ///< Not an object of the expected kind.
inline constexpr Result E_OUTOFMEMORY                  = MakeResult(0x8007000E);  ///< Out of memory.
inline constexpr Result E_INVALIDARG                   = MakeResult(0x80070057);  ///< Invalid argument.
inline constexpr Result DISP_E_MEMBERNOTFOUND          = MakeResult(0x80020003);  ///< The object has no such member of that kind.
inline constexpr Result DISP_E_PARAMNOTFOUND           = MakeResult(0x80020004);  ///< A left-out argument (carried by the missing argument).
inline constexpr Result DISP_E_TYPEMISMATCH            = MakeResult(0x80020005);  ///< A variant of the wrong type.
inline constexpr Result DISP_E_UNKNOWNNAME             = MakeResult(0x80020006);  ///< The object has no member of that name.
inline constexpr Result DISP_E_BADVARTYPE              = MakeResult(0x80020008);  ///< A variant type that can't be used there.
inline constexpr Result DISP_E_EXCEPTION               = MakeResult(0x80020009);  ///< A call by name failed; number and text tell why.
inline constexpr Result DISP_E_OVERFLOW                = MakeResult(0x8002000A);  ///< A number out of the range of its type.
inline constexpr Result DISP_E_BADPARAMCOUNT           = MakeResult(0x8002000E);  ///< Wrong number of arguments.
inline constexpr Result CLASS_E_CLASSNOTAVAILABLE      = MakeResult(0x80040154);  ///< No class is registered under that ProgID.

inline constexpr Result VEX_E_CONNECT_REFUSED          = MakeResult(0x80007001);  ///< The engine refused the connection.
inline constexpr Result VEX_E_CONNECT_FAILED           = MakeResult(0x80007002);  ///< The engine failed to connect.
inline constexpr Result VEX_E_BAD_PROPERTY_TYPE        = MakeResult(0x80007003);  ///< Add with an invalid data type.
inline constexpr Result VEX_E_NOT_BASE_PROPERTY        = MakeResult(0x80007005);  ///< A base name was asked of a property that has none.
inline constexpr Result VEX_E_BAD_RETURN_TYPE          = MakeResult(0x80007006);  ///< The return type isn't an entity.
inline constexpr Result VEX_E_BAD_QUERY_EXPRESSION     = MakeResult(0x80007007);  ///< The query expression was refused.
inline constexpr Result VEX_E_INSTANCE_PROPERTIES_OFF  = MakeResult(0x80007008);  ///< Instance properties while they aren't listed.
inline constexpr Result VEX_E_ADD_REFERENCE            = MakeResult(0x80007009);  ///< The reference couldn't be added.
inline constexpr Result VEX_E_REFERENCE_TYPE           = MakeResult(0x8000700A);  ///< The element's type doesn't match the reference.
inline constexpr Result VEX_E_REMOVE_REFERENCE         = MakeResult(0x8000700B);  ///< The reference couldn't be removed.
inline constexpr Result VEX_E_APPLICATION_PROPERTY     = MakeResult(0x8000700C);  ///< Attempt to remove an application property.
inline constexpr Result VEX_E_BAD_QUANTITY_TYPE        = MakeResult(0x8000700D);  ///< The measurement quantity's data type is invalid.
inline constexpr Result VEX_E_NOT_LOCAL_COLUMN         = MakeResult(0x8000700E);  ///< The element isn't derived from AoLocalColumn.
inline constexpr Result VEX_E_TYPE_ALREADY_SET         = MakeResult(0x8000700F);  ///< The local column's data type is already assigned.
inline constexpr Result VEX_E_ROOT_IS_AUTOMATIC        = MakeResult(0x80007010);  ///< Reference operations on the root elements.
inline constexpr Result VEX_E_EMPTY_NAME               = MakeResult(0x80007011);  ///< An element name that is empty.
inline constexpr Result VEX_E_EMPTY_QUERY              = MakeResult(0x80007012);  ///< Search with an empty query.
inline constexpr Result VEX_E_WRITE_PROTECTED          = MakeResult(0x80007013);  ///< The store refuses changes.
inline constexpr Result VEX_E_BROWSE_MODEL             = MakeResult(0x80007018);  ///< The browse configuration doesn't fit the store's model.
inline constexpr Result VEX_E_QUERY_BROWSE_PATH        = MakeResult(0x80007019);  ///< The query doesn't fit the browse path.

inline constexpr Result VEX_E_BAD_LOGIC                = MakeResult(0x80050001);  ///< A logic text that isn't valid.
inline constexpr Result VEX_E_LOGIC_UNSUPPORTED        = MakeResult(0x80050002);  ///< The store doesn't support a custom logic.
inline constexpr Result VEX_E_OR_UNSUPPORTED           = MakeResult(0x80050003);  ///< The store doesn't support several values joined with OR.
inline constexpr Result VEX_E_OR_OPERATOR              = MakeResult(0x80050005);  ///< The operator doesn't support several values joined with OR.
inline constexpr Result VEX_E_VALUE_TYPE               = MakeResult(0x80050006);  ///< A value's type doesn't fit.
inline constexpr Result VEX_E_VALUE_NOT_DATE           = MakeResult(0x80050007);  ///< A value can't be read as a date.
inline constexpr Result VEX_E_VALUE_DIMENSIONS         = MakeResult(0x80050008);  ///< An array of values with more than one dimension.
inline constexpr Result VEX_E_BAD_OPERATOR             = MakeResult(0x80050009);  ///< Not an operator, or none that the property takes.
inline constexpr Result VEX_E_VALUE_WAS_TEXT           = MakeResult(0x80050010);  ///< A warning: the date was given as a text.
inline constexpr Result VEX_E_BAD_VALUE                = MakeResult(0x80050011);  ///< A condition's value isn't valid.
inline constexpr Result VEX_E_BAD_TYPE_ARGUMENT        = MakeResult(0x80050021);  ///< The type argument is no valid one.
inline constexpr Result VEX_E_BAD_PARAMETER_TYPE       = MakeResult(0x80050022);  ///< A context parameter with an invalid type.
inline constexpr Result VEX_E_INVALID_PROPERTY         = MakeResult(0x80050023);  ///< The query holds an invalid property.
inline constexpr Result VEX_E_VALUE_TOO_LONG           = MakeResult(0x80050030);  ///< A value of a query is longer than the store allows.
inline constexpr Result VEX_E_NOT_STORE_QUERY          = MakeResult(0x80050100);  ///< The query object isn't a store query.
inline constexpr Result VEX_E_FOREIGN_ELEMENT          = MakeResult(0x80050103);  ///< The element isn't of this store, or the store has no context.
inline constexpr Result VEX_E_NO_STORE                 = MakeResult(0x80050104);  ///< No store is connected.
inline constexpr Result VEX_E_NOT_STORE_COLUMNS        = MakeResult(0x80050105);  ///< The object isn't a column collection of a store.
inline constexpr Result VEX_E_BAD_FILE                 = MakeResult(0x80050107);  ///< The file can't be read as what it should be.
inline constexpr Result VEX_E_NO_QUERY                 = MakeResult(0x80050108);  ///< The file holds no query.
inline constexpr Result VEX_E_NO_COLUMNS               = MakeResult(0x80050109);  ///< The file holds no columns.
inline constexpr Result VEX_E_OTHER_STORE              = MakeResult(0x80050110);  ///< A query or browse configuration of another store.
inline constexpr Result VEX_E_NO_FILE_NAME             = MakeResult(0x80050111);  ///< An empty file name, or a text with nothing to read.
inline constexpr Result VEX_E_OBJECT_GONE              = MakeResult(0x80060001);  ///< The object is no longer valid.
inline constexpr Result VEX_E_PARENT_GONE              = MakeResult(0x80060002);  ///< The parent object is no longer valid.
// clang-format on

}  // namespace hv

// storefabric/IQueryInfoSet.h - readers and writers of query files: a query, the columns in which
// its results are shown, or both. docs/formats/query-file.md tells the form.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class ITextStream;

/// The interface version that callers state.
inline constexpr std::int32_t kQueryInfoSetVersion = 101;

/// Reads a query file. From the exports `GetQueryInfoSetLoader` and
/// `GetQueryInfoSetLoaderByStream`, which open it; then any number of loads. Objects passed in are
/// borrowed for the call.
class IQueryInfoSetLoader : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IQueryInfoSetLoader");

  /// Replaces a query by the first one of the file. Names are found anew in the query's own store,
  /// which may be another one than that the query was saved from.
  /// \param query  a query of a store, that is bound to it; on failure it is as it was
  /// \return S_OK; E_UNEXPECTED if no file is open; E_POINTER for null; VEX_E_NO_QUERY for a file
  ///         without one; E_INVALIDARG for an object that is no query; VEX_E_NOT_STORE_QUERY for
  ///         something else in the query's place; VEX_E_NO_STORE for a query without a store;
  ///         VEX_E_BAD_FILE for an entity, property or operator that the store doesn't have.
  virtual Result LoadQuery(IUnknown* query) = 0;
  /// Replaces a column configuration by the first one of the file.
  /// \param columns  the columns of a results display
  /// \return S_OK; E_UNEXPECTED if no file is open; E_POINTER for null; VEX_E_NO_COLUMNS for a file
  ///         without one; E_INVALIDARG for an object of another kind; what the columns say.
  virtual Result LoadColumns(IUnknown* columns) = 0;
  /// Opens a file. What was open before stays open on failure.
  /// \param version  `kQueryInfoSetVersion`
  /// \return S_OK; E_INVALIDARG for a file that can't be read as a query file, and for another
  ///         version.
  virtual Result OpenByPath(std::u16string_view path, std::int32_t version) = 0;
  /// The same for the text that a stream holds.
  /// \return S_OK; E_INVALIDARG as above and for a null stream; VEX_E_NO_FILE_NAME for an empty
  ///         text; what the stream says.
  virtual Result OpenByStream(ITextStream* stream, std::int32_t version) = 0;
  /// S_OK if a file is open; E_UNEXPECTED.
  virtual Result CheckReady() = 0;
  /// The URI of the model that files are read with.
  virtual Result GetModelUri(WString* uri) = 0;

 protected:
  ~IQueryInfoSetLoader() = default;
};

/// Writes a query file. From the export `GetQueryInfoSetSaver`: take in a query, columns or both,
/// then save. Objects passed in are borrowed for the call.
class IQueryInfoSetSaver : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IQueryInfoSetSaver");

  /// Takes in a query. A second one stands behind the first; readers take the first.
  /// \return S_OK; E_INVALIDARG for null; VEX_E_NOT_STORE_QUERY for an object of another kind.
  virtual Result SaveQuery(IUnknown* query) = 0;
  /// Takes in a column configuration.
  /// \return S_OK; E_INVALIDARG for null; VEX_E_NOT_STORE_COLUMNS for an object of another kind.
  virtual Result SaveColumns(IUnknown* columns) = 0;
  /// Writes the file, whole or not at all: on failure the old one is as it was.
  /// \return S_OK; VEX_E_NO_FILE_NAME for an empty path; E_FAIL for a file that can't be written.
  virtual Result SaveToPath(std::u16string_view path) = 0;
  /// Hands the text of the file to a stream.
  /// \return S_OK; E_INVALIDARG for a null stream; E_FAIL for a text that can't be written; what
  ///         the stream says.
  virtual Result SaveToStream(ITextStream* stream) = 0;
  /// Starts anew, with nothing taken in. The export has done so.
  /// \param version  `kQueryInfoSetVersion`
  /// \return S_OK; E_INVALIDARG for another version; E_FAIL if the storage engine can't.
  virtual Result Init(std::int32_t version) = 0;
  /// The parameter text with which the engine makes the file: "<model>URI</model>".
  virtual Result GetModelParameter(WString* parameter) = 0;

 protected:
  ~IQueryInfoSetSaver() = default;
};

}  // namespace hv::vex

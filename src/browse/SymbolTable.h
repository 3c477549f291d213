// browse/SymbolTable.h - the symbols of a browse configuration: by key, as files store them, and by
// index, as trees and dialogs use them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include <storefabric/Ref.h>

#include "browse/SymbolImage.h"

namespace hv::vex {

/// Keys below 0 are the standard symbols, 0 means none, keys above 0 are customer symbols.
using SymbolKey = std::int64_t;

/// The standard symbols. Frozen: files store these numbers.
namespace symbol {
inline constexpr SymbolKey kLevel = -1;
inline constexpr SymbolKey kDataLevel = -2;
inline constexpr SymbolKey kMeasurement = -3;
inline constexpr SymbolKey kMeasurementQuantity = -4;
inline constexpr SymbolKey kSubmatrixFolder = -5;
inline constexpr SymbolKey kSubmatrix = -6;
inline constexpr SymbolKey kLocalColumn = -7;
}  // namespace symbol

/// Ordered by key.
using SymbolMap = std::map<SymbolKey, Ref<ISymbolImage>>;

/// Index 0 is the key 0, then come the standard symbols from -1 down to -7, then the customer
/// symbols by ascending key.
class SymbolTable {
 public:
  void LoadStandard();
  void Clear();
  /// Takes over the other table's symbols; the pictures are shared.
  void CopyFrom(const SymbolTable& source) { *this = source; }

  /// The picture at an index, the one for no symbol at a place whose key is 0.
  /// \return S_OK; E_POINTER; E_INVALIDARG with null for an index outside
  Result GetHandle(std::int32_t index, ISymbolImage** image) const;
  [[nodiscard]] std::int32_t GetCount() const { return static_cast<std::int32_t>(m_keys.size()); }
  [[nodiscard]] const SymbolMap& Standard() const { return m_standard; }
  [[nodiscard]] const SymbolMap& Customer() const { return m_customer; }
  /// \return S_OK; E_INVALIDARG for a null picture, a key that isn't above 0, or one in use
  Result Add(ISymbolImage* image, SymbolKey key);
  /// Under the key one above the largest, or 1. E_INVALIDARG for null.
  Result AddAuto(ISymbolImage* image);
  /// \return S_OK; E_INVALIDARG for null or an index outside; E_ACCESSDENIED for a standard symbol
  Result Replace(ISymbolImage* image, std::int32_t index);
  /// Takes a customer symbol out of the table. Index 0 isn't refused: the list then loses its first
  /// place, which hosts have come to know.
  /// \return S_OK; E_INVALIDARG for an index outside; E_ACCESSDENIED for a standard symbol
  Result DeleteAt(std::int32_t index);
  /// \return S_OK; E_ACCESSDENIED for a key below 0; E_INVALIDARG for an unknown key
  Result Delete(SymbolKey key);
  /// E_NOTIMPL if there are customer symbols already.
  Result Import(const SymbolMap& symbols);
  /// \return S_OK; E_POINTER; E_INVALIDARG with 0 for an unknown key
  Result GetIndex(SymbolKey key, std::int32_t* index) const;
  /// \return S_OK; E_POINTER; E_INVALIDARG for an index outside
  Result GetKey(std::int32_t index, SymbolKey* key) const;

 private:
  [[nodiscard]] bool IsIndex(std::int32_t index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_keys.size();
  }
  void InsertKey(SymbolKey key);

  Ref<ISymbolImage> m_noSymbol;
  SymbolMap m_standard;
  SymbolMap m_customer;
  std::vector<SymbolKey> m_keys;  // position is the index
};

}  // namespace hv::vex

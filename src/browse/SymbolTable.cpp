// browse/SymbolTable.cpp - the symbols of a browse configuration.
#include "browse/SymbolTable.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "automation/Guards.h"

namespace hv::vex {

namespace {

struct StandardSymbol {
  SymbolKey key;
  std::int32_t resource;
};
constexpr StandardSymbol kStandardSymbols[] = {
    {symbol::kLevel, 9002},           {symbol::kDataLevel, 9008},
    {symbol::kMeasurement, 9003},     {symbol::kMeasurementQuantity, 9004},
    {symbol::kSubmatrixFolder, 9007}, {symbol::kSubmatrix, 9005},
    {symbol::kLocalColumn, 9006},
};

}  // namespace

void SymbolTable::LoadStandard() {
  if (!m_noSymbol) m_noSymbol = LoadSymbolResource(kNoSymbolResource);
  m_standard.clear();
  m_keys.assign(1, 0);
  for (const StandardSymbol& row : kStandardSymbols) {
    m_standard.emplace(row.key, LoadSymbolResource(row.resource));
    m_keys.push_back(row.key);
  }
  for (const auto& [key, image] : m_customer) m_keys.push_back(key);
}

void SymbolTable::Clear() {
  m_standard.clear();
  m_customer.clear();
  m_keys.clear();
}

Result SymbolTable::GetHandle(std::int32_t index, ISymbolImage** image) const {
  HV_RETURN_IF_NULL(image);
  *image = nullptr;
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  const SymbolKey key = m_keys[static_cast<std::size_t>(index)];
  if (key == 0) return m_noSymbol.CopyTo(image);
  const SymbolMap& map = key < 0 ? m_standard : m_customer;
  const auto found = map.find(key);
  HV_RETURN_CODE_IF(found == map.end(), E_INVALIDARG);
  return found->second.CopyTo(image);
}

void SymbolTable::InsertKey(SymbolKey key) {
  const auto behind = std::find_if(m_keys.begin(), m_keys.end(),
                                   [key](SymbolKey other) { return other > 0 && other > key; });
  m_keys.insert(behind, key);
}

Result SymbolTable::Add(ISymbolImage* image, SymbolKey key) {
  HV_RETURN_CODE_IF(!image || key <= 0 || m_customer.contains(key), E_INVALIDARG);
  InsertKey(key);
  m_customer.emplace(key, Ref<ISymbolImage>::Share(image));
  return S_OK;
}

Result SymbolTable::AddAuto(ISymbolImage* image) {
  const SymbolKey largest = m_customer.empty() ? 0 : m_customer.rbegin()->first;
  HV_RETURN_CODE_IF(largest == std::numeric_limits<SymbolKey>::max(), E_INVALIDARG);
  return Add(image, largest + 1);
}

Result SymbolTable::Replace(ISymbolImage* image, std::int32_t index) {
  HV_RETURN_CODE_IF(!image || !IsIndex(index), E_INVALIDARG);
  const SymbolKey key = m_keys[static_cast<std::size_t>(index)];
  HV_RETURN_CODE_IF(key < 0, E_ACCESSDENIED);
  const auto found = m_customer.find(key);
  HV_RETURN_CODE_IF(found == m_customer.end(), E_INVALIDARG);
  found->second = Ref<ISymbolImage>::Share(image);
  return S_OK;
}

Result SymbolTable::DeleteAt(std::int32_t index) {
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  const SymbolKey key = m_keys[static_cast<std::size_t>(index)];
  HV_RETURN_CODE_IF(key < 0, E_ACCESSDENIED);
  m_customer.erase(key);
  m_keys.erase(m_keys.begin() + index);
  return S_OK;
}

Result SymbolTable::Delete(SymbolKey key) {
  HV_RETURN_CODE_IF(key < 0, E_ACCESSDENIED);
  const auto place = std::find(m_keys.begin(), m_keys.end(), key);
  // The key 0 has a place in the list, but no index to be looked up by.
  HV_RETURN_CODE_IF(key == 0 || place == m_keys.end(), E_INVALIDARG);
  return DeleteAt(static_cast<std::int32_t>(place - m_keys.begin()));
}

Result SymbolTable::Import(const SymbolMap& symbols) {
  HV_RETURN_CODE_IF(!m_customer.empty(), E_NOTIMPL);
  for (const auto& [key, image] : symbols) HV_RETURN_IF_FAILED(Add(image.Get(), key));
  return S_OK;
}

Result SymbolTable::GetIndex(SymbolKey key, std::int32_t* index) const {
  HV_RETURN_IF_NULL(index);
  *index = 0;
  if (key < 1) {
    const auto found = m_standard.find(key);
    HV_RETURN_CODE_IF(found == m_standard.end(), E_INVALIDARG);
    *index = static_cast<std::int32_t>(std::distance(found, m_standard.end()));
    return S_OK;
  }
  const auto found = m_customer.find(key);
  HV_RETURN_CODE_IF(found == m_customer.end(), E_INVALIDARG);
  *index = static_cast<std::int32_t>(m_standard.size()) + 1 +
           static_cast<std::int32_t>(std::distance(m_customer.begin(), found));
  return S_OK;
}

Result SymbolTable::GetKey(std::int32_t index, SymbolKey* key) const {
  HV_RETURN_IF_NULL(key);
  *key = 0;
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  *key = m_keys[static_cast<std::size_t>(index)];
  return S_OK;
}

}  // namespace hv::vex

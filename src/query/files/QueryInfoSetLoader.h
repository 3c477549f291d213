// query/files/QueryInfoSetLoader.h - reads query files for hosts.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/IQueryInfoSet.h>
#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"

namespace hv::vex {

/// Opens files and checks arguments; what is in the file is the derived class's.
class CQueryInfoSetLoader : private CoreBinding, public cor::Counted<IQueryInfoSetLoader> {
 public:
  Result LoadQuery(IUnknown* query) override;
  Result LoadColumns(IUnknown* columns) override;
  Result OpenByPath(std::u16string_view path, std::int32_t version) override;
  Result OpenByStream(ITextStream* stream, std::int32_t version) override;
  Result CheckReady() override;

 protected:
  CQueryInfoSetLoader() = default;
  ~CQueryInfoSetLoader() override = default;

  virtual Result LoadQueryFrom(IStore& document, IUnknown& query) = 0;
  virtual Result LoadColumnsFrom(IStore& document, IUnknown& columns) = 0;

 private:
  Ref<IStore> m_document;
};

/// Of the queries and columns of stores.
class CDataStoreQueryInfoSetLoader final : public CQueryInfoSetLoader {
 public:
  CDataStoreQueryInfoSetLoader() = default;

  Result GetModelUri(WString* uri) override;

 private:
  ~CDataStoreQueryInfoSetLoader() override = default;
  Result LoadQueryFrom(IStore& document, IUnknown& query) override;
  Result LoadColumnsFrom(IStore& document, IUnknown& columns) override;
};

}  // namespace hv::vex

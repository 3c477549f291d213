// query/files/QueryInfoSetSaver.h - writes query files for hosts.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/IQueryInfoSet.h>
#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"

namespace hv::vex {

/// Makes files and checks arguments; what goes into the file is the derived class's.
class CQueryInfoSetSaver : private CoreBinding, public cor::Counted<IQueryInfoSetSaver> {
 public:
  Result SaveQuery(IUnknown* query) override;
  Result SaveColumns(IUnknown* columns) override;
  Result SaveToPath(std::u16string_view path) override;
  Result SaveToStream(ITextStream* stream) override;
  Result Init(std::int32_t version) override;

 protected:
  CQueryInfoSetSaver() = default;
  ~CQueryInfoSetSaver() override = default;

  virtual Result WriteQuery(IStore& document, IUnknown& query) = 0;
  virtual Result WriteColumns(IStore& document, IUnknown& columns) = 0;
  virtual bool IsQueryOfKind(IUnknown& query) = 0;
  virtual bool IsColumnsOfKind(IUnknown& columns) = 0;

 private:
  /// Starts on its own where nobody has.
  Result MakeReady() { return m_document ? S_OK : Init(kQueryInfoSetVersion); }

  Ref<IStore> m_document;
};

/// Of the queries and columns of stores.
class CDataStoreQueryInfoSetSaver final : public CQueryInfoSetSaver {
 public:
  CDataStoreQueryInfoSetSaver() = default;

  Result GetModelParameter(WString* parameter) override;

 private:
  ~CDataStoreQueryInfoSetSaver() override = default;
  Result WriteQuery(IStore& document, IUnknown& query) override;
  Result WriteColumns(IStore& document, IUnknown& columns) override;
  bool IsQueryOfKind(IUnknown& query) override;
  bool IsColumnsOfKind(IUnknown& columns) override;
};

}  // namespace hv::vex

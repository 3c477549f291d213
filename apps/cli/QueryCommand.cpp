#include "apps/cli/Commands.h"
#include "apps/cli/HitTable.h"
#include "apps/cli/StoreAccess.h"
#include "apps/cli/TextFile.h"

namespace hv::cli {

using namespace hv::vex;

void RunQuery(const QueryOptions& options) {
  const WString text = ReadTextFile(options.expressionFile);
  Engine engine;
  const Ref<IStore> store = engine.Open(options.store);
  Explained("searching " + options.store, [&] {
    const Ref<IStoreQuery> query = store.As<IStoreQuery>();
    if (!query) throw Failure("searching " + options.store + ": the store can't search");
    const auto hits = Ref<IInstList>::Adopt(query->Execute(text));
    WriteHits(*store, *hits, options.columns, options.format);
  });
  TellRemarks(*store, options.warnings);
}

}  // namespace hv::cli

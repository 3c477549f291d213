// fuzz/QueryFileFuzz.cpp - query files from outside, loaded into a query of a store. What was
// loaded can be saved and loaded again, and comes to rest.
#include <fstream>

#include "core/objects/EnvironmentObject.h"
#include "core/plugins/atfx/AtfxPlugin.h"
#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/VexPlugin.h"
#include "fuzz/Fuzz.h"
#include "query/files/QueryFiles.h"
#include "query/objects/DataStoreAdvancedQueryImpl.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"

namespace {

using namespace hv;
using namespace hv::vex;

constexpr std::string_view kStore = R"(<atfx_file><base_model_version>asam31</base_model_version>
<application_model>
<application_element><name>Result</name><basetype>AoMeasurement</basetype>
<application_attribute><name>Id</name><base_attribute>id</base_attribute></application_attribute>
<application_attribute><name>Title</name><base_attribute>name</base_attribute></application_attribute>
<application_attribute><name>Size</name><datatype>DT_LONG</datatype></application_attribute>
<application_attribute><name>Weight</name><datatype>DT_DOUBLE</datatype></application_attribute>
<application_attribute><name>Time</name><datatype>DT_DATE</datatype></application_attribute>
<relation_attribute><name>Channels</name><ref_to>Channel</ref_to>
<base_relation>measurement_quantities</base_relation></relation_attribute>
</application_element>
<application_element><name>Channel</name><basetype>AoMeasurementQuantity</basetype>
<application_attribute><name>Id</name><base_attribute>id</base_attribute></application_attribute>
<application_attribute><name>Name</name><base_attribute>name</base_attribute></application_attribute>
<relation_attribute><name>Owner</name><ref_to>Result</ref_to><max_occurs>1</max_occurs>
<base_relation>measurement</base_relation></relation_attribute>
</application_element>
</application_model><instance_data/></atfx_file>)";

/// The engine linked into this program, with a store without records.
struct Ground {
  Ground() {
    KeepXml();
    HostInit();  // looks for the engine's module once instead of for every query
    const std::filesystem::path file = OwnFolder() / "s.atfx";
    std::ofstream(file) << kStore;
    static const engine::PluginInfo plugins[] = {engine::kAtfxPlugin, engine::kVexPlugin};
    environment = MakeRef<engine::EnvironmentObject>(std::span(plugins), engine::FindDocumentModel);
    store = Ref<IStore>::Adopt(environment->OpenStoreByParameter(
        u"", u"ATFX", cor::FromUtf8("<filename>" + file.string() + "</filename>"), 0));
  }
  Ref<IEnvironment> environment;
  Ref<IStore> store;
};

constexpr std::u16string_view kUri = u"/DataModels/VEX/Query/1_2";

Result Load(Ground& ground, std::u16string_view text, IAdvancedQueryImpl& query) {
  const auto document = Ref<IStore>::Adopt(ground.environment->OpenStoreText(
      u"VEX", u"<targetmodels>" + std::u16string(kUri) + u"</targetmodels>", text));
  return LoadStoredQuery(*document, &query);
}

WString Saved(Ground& ground, IAdvancedQueryImpl& query) {
  const auto document = Ref<IStore>::Adopt(ground.environment->CreateStore(
      u"VEX", u"<model>" + std::u16string(kUri) + u"</model>", u"", 0, CreateMode::Temporary));
  Require(!Failed(StoreQuery(query, *document)));
  WString text;
  ground.environment->GetStoreText(text, document.Get(), u"VEX");
  return text;
}

/// Loads a file of our own and saves it again.
WString Resaved(Ground& ground, const WString& text) {
  const auto query = MakeRef<CDataStoreAdvancedQueryImpl>(*ground.store, nullptr);
  Require(!Failed(Load(ground, text, *query)));
  return Saved(ground, *query);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Ground& ground = *new Ground;
  const WString text = cor::FromUtf8(TextOf(data, size));
  const auto query = MakeRef<CDataStoreAdvancedQueryImpl>(*ground.store, nullptr);
  Result rc = S_OK;
  if (!IsDone(errc::kBadFile, [&] { rc = Load(ground, text, *query); })) return 0;
  if (Failed(rc)) {
    Require((rc == VEX_E_BAD_FILE || rc == VEX_E_NO_QUERY) && query->IsEmpty());
    return 0;
  }
  // A value may be written another way once, as a number that was a text before; then it stays.
  const WString once = Resaved(ground, Saved(ground, *query));
  Require(Resaved(ground, once).EqualsExact(once));
  return 0;
}

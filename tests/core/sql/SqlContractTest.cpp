// tests/core/sql/SqlContractTest.cpp - the contract of all record stores, on a database.
#include "QueryContract.h"
#include "RecordStoreContract.h"
#include "ValuesContract.h"

#include "core/plugins/sql/SqlPlugin.h"

namespace hv::vex::engine::test {
namespace {

const StoreFactory kFactories[] = {
    {"SqliteInMemory",
     [](std::shared_ptr<const Model> model) {
       return kSqlPlugin.create(ConnectParameters(u""), std::move(model));
     }},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreContract, ::testing::ValuesIn(kFactories),
                         [](const auto& row) { return row.param.name; });
INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreQueryContract, ::testing::ValuesIn(kFactories),
                         [](const auto& row) { return row.param.name; });

}  // namespace hv::vex::engine::test

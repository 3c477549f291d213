// automation/ErrorTablesTest.cpp - every row of every wrapper's table fits its text.
#include <algorithm>
#include <string>

#include "ToyObjects.h"
#include "automation/MessageFormat.h"
#include "automation/rows/BrowseSettings.h"
#include "automation/rows/Collections.h"
#include "automation/rows/Conditions.h"
#include "automation/rows/ContextParameterSet.h"
#include "automation/rows/ContextParameters.h"
#include "automation/rows/DataStore.h"
#include "automation/rows/DataStoreContext.h"
#include "automation/rows/DataStoreEnvironment.h"
#include "automation/rows/DataStoreModel.h"
#include "automation/rows/GenericElements.h"
#include "automation/rows/StoreElement.h"
#include "automation/rows/StoreElementList.h"
#include "automation/rows/StoreElementWithBulk.h"
#include "automation/rows/StoreElements.h"
#include "automation/rows/StoreProperties.h"

namespace hv::automation::toys {
namespace {

using namespace rows;

#define HV_TABLE(name) \
  { #name, name }
struct TableCase {
  const char* name;
  MemberErrors errors;
};
const TableCase kTables[] = {
    HV_TABLE(kBrowseSettingsRootElements),
    HV_TABLE(kBrowseSettingsRootEntity),
    HV_TABLE(kBrowseSettingsGetBrowseEntity),
    HV_TABLE(kBrowseSettingsGetParent),
    HV_TABLE(kBrowseSettingsGetChildren),
    HV_TABLE(kCollectionItem),
    HV_TABLE(kElementsCount),
    HV_TABLE(kElementsNewEnum),
    HV_TABLE(kModelReferencesExists),
    HV_TABLE(kConditionsAdd),
    HV_TABLE(kConditionsItem),
    HV_TABLE(kConditionsRemove),
    HV_TABLE(kConditionsPutLogic),
    HV_TABLE(kConditionsAddOrderBy),
    HV_TABLE(kConditionValues),
    HV_TABLE(kContextParameterSetName),
    HV_TABLE(kContextParameterSetParameters),
    HV_TABLE(kContextParameterSetLoad),
    HV_TABLE(kContextParameterSetSave),
    HV_TABLE(kContextParametersItem),
    HV_TABLE(kContextParametersAdd),
    HV_TABLE(kContextParametersRemove),
    HV_TABLE(kContextParameterPutValue),
    HV_TABLE(kContextParameterPutValues),
    HV_TABLE(kDataStoreGetModel),
    HV_TABLE(kDataStoreGetRootElements),
    HV_TABLE(kDataStoreGetPluginName),
    HV_TABLE(kDataStoreGetParameters),
    HV_TABLE(kDataStoreCreateQuery),
    HV_TABLE(kDataStoreGetResults),
    HV_TABLE(kDataStoreIsQuerySupported),
    HV_TABLE(kDataStoreIsModified),
    HV_TABLE(kDataStoreRefresh),
    HV_TABLE(kDataStoreGetVexStore),
    HV_TABLE(kDataStoreCreateElement),
    HV_TABLE(kDataStoreGetElementByKey),
    HV_TABLE(kDataStoreCreateElementsByInstList),
    HV_TABLE(kDataStoreGetElementList),
    HV_TABLE(kDataStoreLoadQuery),
    HV_TABLE(kDataStoreSaveQuery),
    HV_TABLE(kDataStoreSearch),
    HV_TABLE(kDataStoreSave),
    HV_TABLE(kDataStoreDeleteElement),
    HV_TABLE(kDataStoreGetElementByDataChannel),
    HV_TABLE(kDataStoreGetContext),
    HV_TABLE(kDataStoreGetBrowseSettings),
    HV_TABLE(kDataStoreSetBrowseSettings),
    HV_TABLE(kDataStoreContextSetParameter),
    HV_TABLE(kDataStoreContextGetParameter),
    HV_TABLE(kDataStoreEnvironmentConnect),
    HV_TABLE(kDataStoreModelExport),
    HV_TABLE(kDataStoreModelGetEntities),
    HV_TABLE(kModelPropertyGetBaseName),
    HV_TABLE(kVexElementPutName),
    HV_TABLE(kVexElementsAdd),
    HV_TABLE(kVexElementsRemove),
    HV_TABLE(kVexElementsRemoveAll),
    HV_TABLE(kVexElementsSort),
    HV_TABLE(kPropertiesAdd),
    HV_TABLE(kPropertiesRemove),
    HV_TABLE(kPropertyPutValue),
    HV_TABLE(kPropertyGetValues),
    HV_TABLE(kPropertyPutValues),
    HV_TABLE(kStoreElementPutName),
    HV_TABLE(kStoreElementGetChildren),
    HV_TABLE(kStoreElementListItem),
    HV_TABLE(kStoreElementListGetMaxCount),
    HV_TABLE(kStoreElementListPutMaxCount),
    HV_TABLE(kStoreElementWithBulkGetValues),
    HV_TABLE(kStoreElementWithBulkPutValues),
    HV_TABLE(kStoreElementWithBulkGetFlags),
    HV_TABLE(kStoreElementWithBulkPutFlags),
    HV_TABLE(kStoreElementWithBulkPutDataType),
    HV_TABLE(kStoreElementWithBulkSetValues),
    HV_TABLE(kStoreElementsItem),
    HV_TABLE(kStoreElementsRemove),
    HV_TABLE(kStoreElementsRemoveAll),
    HV_TABLE(kStoreElementsRemoveAllReferences),
    HV_TABLE(kStoreElementsAdd),
    HV_TABLE(kStoreElementsAddReference),
    HV_TABLE(kStoreElementsRemoveReference),
    HV_TABLE(kStorePropertiesAdd),
    HV_TABLE(kStorePropertiesRemove),
    HV_TABLE(kStorePropertiesRemoveAll),
    HV_TABLE(kStorePropertyGetBaseName),
    HV_TABLE(kStorePropertyPutValue),
    HV_TABLE(kStorePropertyGetValues),
    HV_TABLE(kStorePropertyPutValues),
};
#undef HV_TABLE

class ErrorTables : public ::testing::TestWithParam<TableCase> {};

TEST_P(ErrorTables, GiveEachTextAsManyArgumentsAsItHasPlaces) {
  const MemberErrors& errors = GetParam().errors;
  EXPECT_FALSE(errors.method.empty());
  for (std::size_t i = 0; i < errors.rows.size(); ++i) {
    const ErrorRow& row = errors.rows[i];
    SCOPED_TRACE(row.textNumber);
    const std::optional<WString> text = TryLoadString(row.textNumber);
    ASSERT_TRUE(text.has_value());
    const auto places = std::ranges::count(text->view(), u'%');
    EXPECT_EQ(places, static_cast<std::ptrdiff_t>(row.ArgCount()));
    EXPECT_TRUE(row.nullArgument >= 0 || Failed(row.code));
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_FALSE(errors.rows[j].code == row.code &&
                   errors.rows[j].nullArgument == row.nullArgument)
          << "a row that is never reached";
    }
    // A place for a number gets a number, or the digits of one.
    const bool wantsNumber = text->view().find(u"%d") != std::u16string_view::npos ||
                             text->view().find(u"%1d") != std::u16string_view::npos;
    const ErrorArg& first = row.args[0];
    const bool isNumber = first.source == ErrorArg::Source::CallNumber ||
                          (first.source == ErrorArg::Source::ArgumentText &&
                           first.id == static_cast<std::uint8_t>(ObjectTextId::LongestValue));
    EXPECT_EQ(wantsNumber, isNumber);
  }
}
INSTANTIATE_TEST_SUITE_P(Wrappers, ErrorTables, ::testing::ValuesIn(kTables),
                         [](const auto& row) { return std::string(row.param.name); });

struct SelectionCase {
  const char* table;
  MemberErrors errors;
  Result code;
  std::int32_t number;
  std::int32_t textNumber;
};

TEST(ErrorTableSelection, FollowsThePublishedList) {
  const SelectionCase cases[] = {
      {"Connect", kDataStoreEnvironmentConnect, VEX_E_CONNECT_REFUSED, 0, 0},
      {"Connect", kDataStoreEnvironmentConnect, E_NOTIMPL, 0, 0},
      {"Connect", kDataStoreEnvironmentConnect, E_OUTOFMEMORY, 207, 207},
      {"Connect", kDataStoreEnvironmentConnect, E_ACCESSDENIED, 247, 247},
      {"Search", kDataStoreSearch, VEX_E_OR_UNSUPPORTED, 325, 326},
      {"Search", kDataStoreSearch, VEX_E_LOGIC_UNSUPPORTED, 325, 325},
      {"Search", kDataStoreSearch, S_OK, 250, 250},  // the row for a null query has no code
      {"Search", kDataStoreSearch, E_HANDLE, 222, 222},
      {"Item", kStoreElementsItem, E_NOTIMPL, 254, 254},
      {"Count", kElementsCount, E_NOTIMPL, 254, 254},
      {"Count", kElementsCount, E_FAIL, 0, 0},
      {"PutName", kStoreElementPutName, E_NOTIMPL, 254, 254},
      {"PutName", kStoreElementPutName, VEX_E_OBJECT_GONE, 323, 323},
      {"GetModel", kDataStoreGetModel, E_NOTIMPL, 245, 245},
      {"GetModel", kDataStoreGetModel, E_FAIL, 250, 250},
      {"PutValues", kStorePropertyPutValues, E_INVALIDARG, 211, 211},
  };
  for (const SelectionCase& c : cases) {
    SCOPED_TRACE(c.table);
    const ErrorRow row = SelectErrorRow(c.errors, c.code, u"member");
    EXPECT_EQ(c.number, row.number);
    EXPECT_EQ(c.textNumber, row.textNumber);
  }
}

TEST(ErrorTableSelection, TheKeyComesFirstInTheMessageForAnUnknownKey) {
  const ErrorRow row = SelectErrorRow(kDataStoreGetElementByKey, E_INVALIDARG, u"");
  ASSERT_EQ(ErrorArg::Source::CallText, row.args[0].source);
  const MessageArg args[] = {WString(u"AoTest:1"), row.args[1].text, row.args[2].text};
  EXPECT_EQ(
      "The text AoTest:1 is not a valid value for the argument GetElementByKey of the method Key.",
      Utf8(FormatTableMessage(row.textNumber, std::span<const MessageArg>(args))));
}

}  // namespace
}  // namespace hv::automation::toys

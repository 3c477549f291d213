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

template <class... Tables>
std::vector<MemberErrors> ListOf(const Tables&... tables) {
  return {tables...};
}
const std::vector<MemberErrors> kTables = ListOf(
    kBrowseSettingsRootElements, kBrowseSettingsRootEntity, kBrowseSettingsGetBrowseEntity,
    kBrowseSettingsGetParent, kBrowseSettingsGetChildren, kCollectionItem, kElementsCount,
    kElementsNewEnum, kModelReferencesExists, kConditionsAdd, kConditionsItem, kConditionsRemove,
    kConditionsPutLogic, kConditionsAddOrderBy, kConditionValues, kContextParameterSetName,
    kContextParameterSetParameters, kContextParameterSetLoad, kContextParameterSetSave,
    kContextParametersItem, kContextParametersAdd, kContextParametersRemove,
    kContextParameterPutValue, kContextParameterPutValues, kDataStoreGetModel,
    kDataStoreGetRootElements, kDataStoreGetPluginName, kDataStoreGetParameters,
    kDataStoreCreateQuery, kDataStoreGetResults, kDataStoreIsQuerySupported, kDataStoreIsModified,
    kDataStoreRefresh, kDataStoreGetVexStore, kDataStoreCreateElement, kDataStoreGetElementByKey,
    kDataStoreCreateElementsByInstList, kDataStoreGetElementList, kDataStoreLoadQuery,
    kDataStoreSaveQuery, kDataStoreSearch, kDataStoreSave, kDataStoreDeleteElement,
    kDataStoreGetElementByDataChannel, kDataStoreGetContext, kDataStoreGetBrowseSettings,
    kDataStoreSetBrowseSettings, kDataStoreContextSetParameter, kDataStoreContextGetParameter,
    kDataStoreEnvironmentConnect, kDataStoreModelExport, kDataStoreModelGetEntities,
    kModelPropertyGetBaseName, kVexElementPutName, kVexElementsAdd, kVexElementsRemove,
    kVexElementsRemoveAll, kVexElementsSort, kPropertiesAdd, kPropertiesRemove, kPropertyPutValue,
    kPropertyGetValues, kPropertyPutValues, kStoreElementPutName, kStoreElementGetChildren,
    kStoreElementListItem, kStoreElementListGetMaxCount, kStoreElementListPutMaxCount,
    kStoreElementWithBulkGetValues, kStoreElementWithBulkPutValues, kStoreElementWithBulkGetFlags,
    kStoreElementWithBulkPutFlags, kStoreElementWithBulkPutDataType, kStoreElementWithBulkSetValues,
    kStoreElementsItem, kStoreElementsRemove, kStoreElementsRemoveAll,
    kStoreElementsRemoveAllReferences, kStoreElementsAdd, kStoreElementsAddReference,
    kStoreElementsRemoveReference, kStorePropertiesAdd, kStorePropertiesRemove,
    kStorePropertiesRemoveAll, kStorePropertyGetBaseName, kStorePropertyPutValue,
    kStorePropertyGetValues, kStorePropertyPutValues);

TEST(ErrorTables, GiveEachTextAsManyArgumentsAsItHasPlaces) {
  for (const MemberErrors& errors : kTables) {
    SCOPED_TRACE("table " + std::to_string(&errors - kTables.data()) + " of " +
                 cor::ToUtf8(errors.method));
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
}

TEST(ErrorTables, SelectTheRowsOfThePublishedList) {
  const struct {
    MemberErrors errors;
    Result code;
    std::int32_t number;
    std::int32_t textNumber;
  } cases[] = {
      {kDataStoreEnvironmentConnect, E_NOTIMPL, 0, 0},
      {kDataStoreEnvironmentConnect, E_ACCESSDENIED, 247, 247},
      {kDataStoreSearch, S_OK, 250, 250},  // the row for a null query has no code
      {kStoreElementsItem, E_NOTIMPL, 254, 254},
      {kElementsCount, E_NOTIMPL, 254, 254},
      {kElementsCount, E_FAIL, 0, 0},
      {kStoreElementPutName, E_NOTIMPL, 254, 254},
      {kStorePropertyPutValues, E_INVALIDARG, 211, 211},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.errors.method) + " " + ::testing::PrintToString(c.code));
    const ErrorRow row = SelectErrorRow(c.errors, c.code, u"member");
    EXPECT_EQ(c.number, row.number);
    EXPECT_EQ(c.textNumber, row.textNumber);
  }
}

}  // namespace
}  // namespace hv::automation::toys

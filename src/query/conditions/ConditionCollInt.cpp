// query/conditions/ConditionCollInt.cpp - the conditions of a query by name.
#include "query/conditions/ConditionCollInt.h"

#include "automation/rows/Conditions.h"

namespace hv::vex {

namespace rows = automation::rows;
using automation::CallFrame;
using automation::Custom;
using automation::DispatchMap;
using automation::Get;
using automation::Method;
using automation::Put;

namespace {

constexpr std::int32_t kIdItem = 2;

/// An argument that can't be a text counts as one that was left out.
WString TextArgument(const CallFrame& frame, std::size_t index) {
  Variant text;
  if (Failed(frame.args[index].Dereferenced().ChangeType(VT_BSTR, &text))) return {};
  return text.AsText();
}

/// Names type, property and operator as the argument that is wrong also where they are no texts,
/// and tells apart what the typed member calls one and the same bad value.
template <class Self>
Result AddByName(Self& self, CallFrame& frame) {
  Ref<ISVEXCondition> condition;
  const Result rc = self.AddUntranslated(TextArgument(frame, 0), TextArgument(frame, 1),
                                         TextArgument(frame, 2), frame.args[3], condition.Put());
  *frame.result = Variant::Object(condition.Get());
  return rc;
}

template <class Self>
constexpr auto kRowsOf = automation::MakeRows(
    Custom<&AddByName<Self>>(u"Add", 1, CallKind::Method, 4, rows::kConditionsAdd),
    Method<static_cast<Result (ISVEXConditions::*)(std::int32_t, ISVEXCondition**)>(
        &ISVEXConditions::Item)>(u"Item", kIdItem, rows::kConditionsItem),
    Method<&ISVEXConditions::Remove>(u"Remove", 3, rows::kConditionsRemove),
    Get<&ISVEXConditions::get_Count>(u"Count", 4, rows::kConditionsOther),
    Method<&ISVEXConditions::RemoveAll>(u"RemoveAll", 5, rows::kConditionsOther),
    Get<&ISVEXConditions::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, rows::kConditionsOther),
    Get<&ISVEXConditions::get_Logic>(u"Logic", 6, rows::kConditionsOther),
    Put<&ISVEXConditions::put_Logic>(u"Logic", 6, rows::kConditionsPutLogic),
    Method<&ISVEXConditions::Renumber>(u"Renumber", 7, rows::kConditionsOther),
    Method<&ISVEXConditions::AddOrderBy>(u"AddOrderBy", 8, rows::kConditionsAddOrderBy));

template <class Self>
constexpr DispatchMap MapOf(std::u16string_view name) {
  return DispatchMap(name, kRowsOf<Self>)
      .WithDefault(kIdItem)
      .template WithObjectText<&Self::ObjectText>();
}

constexpr DispatchMap kMap = MapOf<CConditionCollInt>(u"Conditions");
constexpr DispatchMap kDataStoreMap = MapOf<CDataStoreConditionCollInt>(u"DataStoreConditions");

}  // namespace

const DispatchMap& CConditionCollInt::Map() { return kMap; }

const DispatchMap& CDataStoreConditionCollInt::Map() { return kDataStoreMap; }

}  // namespace hv::vex

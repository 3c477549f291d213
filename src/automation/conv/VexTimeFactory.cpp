// automation/conv/VexTimeFactory.cpp - the object by which scripts make times.
#include "automation/conv/VexTimeFactory.h"

#include "automation/Guards.h"
#include "automation/conv/VexTime.h"

namespace hv::vex {

namespace {

using automation::DispatchMap;
using automation::MakeRows;
using automation::Method;

constexpr auto kCreateTimeErrors =
    automation::Errors(u"CreateTime", automation::On(E_INVALIDARG, 60008));

constexpr auto kRows =
    MakeRows(Method<&IVexTimeFactory::CreateTime>(u"CreateTime", 1, kCreateTimeErrors).Optional(8));
constexpr DispatchMap kMap(u"VexTimeFactory", kRows);

}  // namespace

const DispatchMap& CVexTimeFactoryInt::Map() { return kMap; }

Result CVexTimeFactoryInt::Create(IVexTimeFactory** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  *out = MakeRef<CVexTimeFactoryInt>().Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CVexTimeFactoryInt::CreateObject(IDispatch** out) {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  Ref<IVexTimeFactory> made;
  HV_RETURN_IF_FAILED(Create(made.Put()));
  *out = made.Detach();
  return S_OK;
}

Result CVexTimeFactoryInt::CreateTime(std::int16_t year, std::int16_t month, std::int16_t day,
                                      std::int16_t hour, std::int16_t minute, std::int16_t second,
                                      std::int16_t millisecond, std::int16_t microsecond,
                                      std::int16_t nanosecond, IVexTimeDisp** time) {
  return vex::CreateTime(util::conv::TimeParts{year, month, day, hour, minute, second, millisecond,
                                               microsecond, nanosecond},
                         time);
}

}  // namespace hv::vex

// automation/conv/VexTime.h - the automation object of one time value, and how to make one.
#pragma once

#include <cstdint>

#include <storefabric/IVexTimeDisp.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "automation/ErrorRows.h"
#include "util/conv/TimeValue.h"

namespace hv::vex {

/// The library's own way to the value inside a time object.
class IVexTimeIntern : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVexTimeIntern");

  /// Gives the value itself, which lives as long as the object.
  /// \return S_OK; E_POINTER.
  virtual Result GetTimeValue(util::conv::TimeValue** time) = 0;

 protected:
  ~IVexTimeIntern() = default;
};

/// The automation object of one time value. Its properties may be used by several threads at once:
/// every read and write runs by itself, one at a time in the process.
class CVexTimeInt final
    : public automation::DispatchImpl<CVexTimeInt, IVexTimeDisp, IVexTimeIntern> {
 public:
  explicit CVexTimeInt(const util::conv::TimeValue& time) : m_time(time) {}
  static const automation::DispatchMap& Map();

  // IVexTimeDisp
  Result get_Year(std::int16_t* year) override;
  Result put_Year(std::int16_t year) override;
  Result get_Month(std::int16_t* month) override;
  Result put_Month(std::int16_t month) override;
  Result get_Day(std::int16_t* day) override;
  Result put_Day(std::int16_t day) override;
  Result get_Hour(std::int16_t* hour) override;
  Result put_Hour(std::int16_t hour) override;
  Result get_Minute(std::int16_t* minute) override;
  Result put_Minute(std::int16_t minute) override;
  Result get_Second(std::int16_t* second) override;
  Result put_Second(std::int16_t second) override;
  Result get_Millisecond(std::int16_t* millisecond) override;
  Result put_Millisecond(std::int16_t millisecond) override;
  Result get_Microsecond(std::int16_t* microsecond) override;
  Result put_Microsecond(std::int16_t microsecond) override;
  Result get_Nanosecond(std::int16_t* nanosecond) override;
  Result put_Nanosecond(std::int16_t nanosecond) override;
  Result get_VariantDate(double* date) override;
  Result put_VariantDate(double date) override;
  // IVexTimeIntern
  Result GetTimeValue(util::conv::TimeValue** time) override;

 private:
  using Field = std::int32_t util::conv::TimeParts::*;

  ~CVexTimeInt() override = default;

  Result GetField(Field field, std::int16_t* value) const;
  Result PutField(Field field, std::int16_t value);

  util::conv::TimeValue m_time;
};

/// A time object.
[[nodiscard]] Ref<IVexTimeDisp> CreateTime(const util::conv::TimeValue& time);

/// A time object from calendar fields.
/// \param time  receives the object with a reference for the caller; null on failure
/// \return S_OK; E_POINTER; E_INVALIDARG for a negative field other than the year.
Result CreateTime(const util::conv::TimeParts& parts, IVexTimeDisp** time);

/// The value that a time object shows, field by field, whoever made the object.
/// \return S_OK; E_POINTER; what a field answers.
Result ReadTimeObject(IVexTimeDisp& object, util::conv::TimeParts* parts);

}  // namespace hv::vex

// automation/ToyObjects.h - a small family of wrappers that stands for the real ones in tests.
#pragma once

#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <storefabric/Dispatch.h>

#include "automation/DispatchImpl.h"

namespace hv {

inline void PrintTo(Result rc, std::ostream* out) {
  *out << "0x" << std::hex << CodeOf(rc) << std::dec;
}
inline void PrintTo(const Variant& value, std::ostream* out) {
  Variant text;
  *out << "type " << value.Type();
  if (!Failed(value.ChangeType(VT_BSTR, &text))) *out << " \"" << cor::ToUtf8(text.AsText()) << '"';
}

}  // namespace hv

namespace hv::automation::toys {

enum enumColor : std::int32_t { eRed = 1, eGreen = 2 };

/// Fails every test that leaves an object behind.
class NoLeaks : public ::testing::Test {
 protected:
  void SetUp() override { m_before = cor::LiveObjectCount(); }
  void TearDown() override { EXPECT_EQ(m_before, cor::LiveObjectCount()); }

 private:
  std::int64_t m_before = 0;
};

/// A base face with a name.
class INamed : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("toys::INamed");
  virtual Result get_Name(WString* out) = 0;
  virtual Result put_Name(const WString& name) = 0;

 protected:
  ~INamed() = default;
};

/// The face that scripts see. `Fail` gives the code that it is told.
class IToy : public INamed {
 public:
  static constexpr Iid kIid = MakeIid("toys::IToy");
  virtual Result get_Friend(IToy** out) = 0;
  virtual Result put_Friend(IToy* toy) = 0;
  virtual Result get_Values(std::int32_t index, Variant* out) = 0;
  virtual Result put_Values(std::int32_t index, const Variant& value) = 0;
  virtual Result Join(const WString& first, const Variant& second, std::int32_t third,
                      WString* out) = 0;
  virtual Result Clear() = 0;

 protected:
  ~IToy() = default;
};

/// A face beside the late-bound one.
class IWeighed : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("toys::IWeighed");
  virtual Result GetWeight(std::int32_t* out) = 0;

 protected:
  ~IWeighed() = default;
};

class CToyInt final : public DispatchImpl<CToyInt, IToy, INamed, IWeighed> {
 public:
  static const DispatchMap& Map();

  explicit CToyInt(std::u16string_view name = u"toy") : m_name(name) {}

  Result get_Name(WString* out) override;
  Result put_Name(const WString& name) override;
  Result get_Friend(IToy** out) override { return m_friend.CopyTo(out); }
  Result put_Friend(IToy* toy) override;
  Result get_Values(std::int32_t index, Variant* out) override;
  Result put_Values(std::int32_t index, const Variant& value) override;
  Result Join(const WString& first, const Variant& second, std::int32_t third,
              WString* out) override;
  Result Clear() override;
  Result GetWeight(std::int32_t* out) override;

  /// Gives back what it was given.
  template <class T>
  Result Echo(T value, T* out) {
    *out = value;
    return S_OK;
  }
  Result EchoText(const WString& value, WString* out);
  Result EchoView(std::u16string_view value, WString* out);
  Result EchoVariant(const Variant& value, Variant* out);
  Result EchoObject(IDispatch* object, IDispatch** out);
  Result EchoUnknown(IUnknown* object, IUnknown** out);

  /// Fill the out value, then fail with the code; how a call by name sees it is up to the rows.
  Result FailText(std::int32_t code, WString* out);
  Result FailObject(std::int32_t code, IToy** out);
  Result FailNumber(std::int32_t code, std::int32_t* out);
  Result FailPlain(std::int32_t code);
  Result FailWithText(std::int32_t code, const WString& text);
  Result TakeToy(std::int32_t code, IToy* toy);
  Result ThrowIt(std::int32_t kind);
  Result Remark();
  /// Lets go of the reference that a test put into `m_held`, which is the last one.
  Result LetGo(WString* out);

  WString TextFor(ObjectTextId id) const;

  Ref<CToyInt> m_held;

 private:
  ~CToyInt() override = default;

  WString m_name;
  Ref<IToy> m_friend;
  Variant m_values[3];
};

/// Extends the map of the toy: one member is replaced, one added.
class CBigToyInt final : public DispatchImpl<CBigToyInt, IToy, INamed> {
 public:
  static const DispatchMap& Map();

  Result get_Name(WString* out) override;
  Result put_Name(const WString&) override { return E_ACCESSDENIED; }
  Result get_Friend(IToy** out) override;
  Result put_Friend(IToy*) override { return E_NOTIMPL; }
  Result get_Values(std::int32_t, Variant*) override { return E_NOTIMPL; }
  Result put_Values(std::int32_t, const Variant&) override { return E_NOTIMPL; }
  Result Join(const WString&, const Variant&, std::int32_t, WString*) override { return E_NOTIMPL; }
  Result Clear() override { return E_NOTIMPL; }
  Result get_Size(std::int32_t* out) const;

 private:
  ~CBigToyInt() override = default;
};

/// Calls a member as a script writes it: by name, method or property alike.
Result CallByName(IDispatch& object, std::u16string_view name, std::vector<Variant> args,
                  Variant* result = nullptr, ErrorInfo* error = nullptr);
Result PutByName(IDispatch& object, std::u16string_view name, std::vector<Variant> args,
                 ErrorInfo* error = nullptr);

inline std::string Utf8(const WString& text) { return cor::ToUtf8(text); }

/// The result code as scripts hand it on.
constexpr std::int32_t Number(Result rc) { return static_cast<std::int32_t>(rc); }

}  // namespace hv::automation::toys

// automation/ToyObjects.h - a small family of wrappers that stands for the real ones in tests.
#pragma once

#include <map>
#include <ostream>
#include <string>

#include <gtest/gtest.h>
#include <storefabric/Dispatch.h>

#include "automation/DispatchImpl.h"
#include "automation/Guards.h"

namespace hv {

inline std::string Utf8(const WString& text) { return cor::ToUtf8(text); }

/// The value as a text; empty if it has none.
inline std::string TextOf(const Variant& value) {
  Variant text;
  return Failed(value.ChangeType(VT_BSTR, &text)) ? "" : Utf8(text.AsText());
}
inline void PrintTo(Result rc, std::ostream* out) {
  *out << "0x" << std::hex << CodeOf(rc) << std::dec;
}
inline void PrintTo(const Variant& value, std::ostream* out) {
  *out << "type " << value.Type() << " \"" << TextOf(value) << '"';
}

}  // namespace hv

namespace hv::automation::toys {

enum enumColor : std::int32_t { eRed = 1, eGreen = 2 };

class INamed : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("toys::INamed");
  virtual Result get_Name(WString* out) = 0;
  virtual Result put_Name(const WString& name) = 0;

 protected:
  ~INamed() = default;
};

/// The face that scripts see.
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

 protected:
  ~IWeighed() = default;
};

/// Fills an out value.
template <class Value>
Result Give(Value* out, const auto& value) {
  *out = value;
  return S_OK;
}

class CToyInt final : public DispatchImpl<CToyInt, IToy, INamed, IWeighed> {
 public:
  static const DispatchMap& Map();

  explicit CToyInt(std::u16string_view name = u"toy") : m_name(name) {}

  Result get_Name(WString* out) override { return Give(out, m_name); }
  Result put_Name(const WString& name) override { return Give(&m_name, name); }
  Result get_Friend(IToy** out) override { return m_friend.CopyTo(out); }
  Result put_Friend(IToy* toy) override { return Give(&m_friend, Ref<IToy>::Share(toy)); }
  Result get_Values(std::int32_t index, Variant* out) override {
    return Give(out, m_values[index]);
  }
  Result put_Values(std::int32_t index, const Variant& value) override {
    return Give(&m_values[index], value);
  }
  Result Join(const WString& first, const Variant& second, std::int32_t third,
              WString* out) override {
    const std::string middle = second.IsMissing() ? "missing" : TextOf(second);
    return Give(out, first + cor::FromUtf8("|" + middle + "|" + std::to_string(third)));
  }
  Result Clear() override { return S_OK; }

  /// Gives back what it was given.
  template <class Value, class Out = std::remove_cvref_t<Value>>
  Result Echo(Value value, Out* out) {
    return Give(out, value);
  }
  template <class Face>
  Result EchoObject(Face* object, Face** out) {
    return Ref<Face>::Share(object).CopyTo(out);
  }

  /// Fill the out value, then fail with the code; how a call by name sees it is up to the rows.
  Result FailText(std::int32_t code, WString* out) {
    *out = u"half done";
    return static_cast<Result>(code);
  }
  Result FailObject(std::int32_t code, IToy** out) {
    *out = MakeRef<CToyInt>(u"half done").Detach();
    return static_cast<Result>(code);
  }
  Result FailNumber(std::int32_t code, std::int32_t* out) {
    *out = 77;
    return static_cast<Result>(code);
  }
  Result FailPlain(std::int32_t code) { return static_cast<Result>(code); }
  Result FailWithText(std::int32_t code, const WString&) { return static_cast<Result>(code); }
  Result TakeToy(std::int32_t code, IToy* toy) { return toy ? static_cast<Result>(code) : E_FAIL; }
  Result ThrowIt(std::int32_t kind);
  Result Remark() { return S_FALSE; }
  /// Lets go of the reference that a test put into `m_held`, which is the last one.
  Result LetGo(WString* out) {
    m_held.Reset();
    return get_Name(out);
  }

  [[nodiscard]] WString TextFor(ObjectTextId id) const {
    return id == ObjectTextId::StoreName ? m_name : WString(u"?");
  }

  Ref<CToyInt> m_held;

 private:
  ~CToyInt() override = default;

  WString m_name;
  Ref<IToy> m_friend;
  std::map<std::int32_t, Variant> m_values;
};

/// Extends the map of the toy: one member is replaced, one added.
class CBigToyInt final : public DispatchImpl<CBigToyInt, IToy, INamed> {
 public:
  static const DispatchMap& Map();

  Result get_Name(WString* out) override { return Give(out, u"big"); }
  Result put_Name(const WString&) override { return E_ACCESSDENIED; }
  Result get_Friend(IToy**) override { return E_NOTIMPL; }
  Result put_Friend(IToy*) override { return E_NOTIMPL; }
  Result get_Values(std::int32_t, Variant*) override { return E_NOTIMPL; }
  Result put_Values(std::int32_t, const Variant&) override { return E_NOTIMPL; }
  Result Join(const WString&, const Variant&, std::int32_t, WString*) override { return E_NOTIMPL; }
  Result Clear() override { return E_NOTIMPL; }
  Result get_Size(std::int32_t* out) const { return Give(out, 1000); }

 private:
  ~CBigToyInt() override = default;
};

/// A result code as scripts hand it on.
inline Variant CodeOfScript(Result rc) { return Variant::I4(static_cast<std::int32_t>(rc)); }

/// Fails every test that leaves an object behind.
class NoLeaks : public ::testing::Test {
 protected:
  ~NoLeaks() override { EXPECT_EQ(m_before, cor::LiveObjectCount()); }

 private:
  const std::int64_t m_before = cor::LiveObjectCount();
};

/// Calls members as a script writes it: by name. Keeps what the last call gave.
class ToyTest : public NoLeaks {
 protected:
  /// Methods and properties alike.
  Result Call(IDispatch& object, std::u16string_view name, std::vector<Variant> args = {}) {
    return Invoke(object, name, CallKind::Method | CallKind::Get, args);
  }
  Result Call(std::u16string_view name, std::vector<Variant> args = {}) {
    return Call(*m_toy, name, std::move(args));
  }
  Result Put(IDispatch& object, std::u16string_view name, std::vector<Variant> args) {
    return Invoke(object, name, CallKind::Put, args);
  }
  Result Put(std::u16string_view name, std::vector<Variant> args) {
    return Put(*m_toy, name, std::move(args));
  }

  Ref<CToyInt> m_toy = MakeRef<CToyInt>();
  Variant m_result;
  ErrorInfo m_error;

 private:
  Result Invoke(IDispatch& object, std::u16string_view name, CallKind kinds,
                std::span<const Variant> args) {
    m_result = Variant::I4(-1);
    std::int32_t id = 0;
    HV_RETURN_IF_FAILED(object.GetIdOfName(name, &id));
    return object.Invoke(id, kinds, args, kinds == CallKind::Put ? nullptr : &m_result, &m_error);
  }
};

}  // namespace hv::automation::toys

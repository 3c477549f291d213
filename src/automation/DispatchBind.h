// automation/DispatchBind.h - turns a typed member into a call by name.
// Small templates only: conversions live in ArgumentValues.h, decisions in DispatchInvoke.cpp.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include <storefabric/Dispatch.h>

#include "automation/ArgumentValues.h"
#include "automation/ErrorRows.h"

namespace hv::automation {

/// One call by name on its way to a typed member.
struct CallFrame {
  std::span<const Variant> args;
  std::size_t requiredCount = 0;  ///< from this argument on, a missing one is allowed
  Variant* result = nullptr;      ///< never null
  std::int32_t refusedArgument =
      -1;  ///< set if an argument couldn't be converted; no call was made
};

/// Calls a member of an object. Gives the member's code, or the conversion's with
/// `frame.refusedArgument` set. The result is filled in any case: after a failure of the member
/// with the null or zero value of its type.
using CallThunk = Result (*)(IDispatch& self, CallFrame& frame);

/// The object as the class whose member a row is bound to. A map that extends another must only
/// take over rows that its class has, which builds with assertions check at each call.
template <class B>
B& SelfAs(IDispatch& self) {
  assert(dynamic_cast<B*>(&self) && "a row of another class in this map");
  return static_cast<B&>(self);
}

/// Taken apart signature of a member: `Result B::M(P...)`.
template <auto Member>
struct Bind;

template <class B, auto Member, class... P>
struct BindBody {
  static constexpr std::size_t kCount = sizeof...(P);
  using Last = typename std::tuple_element<kCount, std::tuple<void, P...>>::type;
  static constexpr bool kHasOut = kIsOutParameter<Last>;
  static constexpr std::uint8_t kInputs = static_cast<std::uint8_t>(kCount - (kHasOut ? 1 : 0));

  static Result Call(IDispatch& self, CallFrame& frame) {
    return Run(SelfAs<B>(self), frame, std::make_index_sequence<kInputs>{});
  }

 private:
  template <std::size_t I>
  using Parameter = std::tuple_element_t<I, std::tuple<P...>>;

  template <std::size_t... I>
  static Result Run(B& self, CallFrame& frame, std::index_sequence<I...>) {
    [[maybe_unused]] std::tuple<InputValue<Parameter<I>>...> inputs;
    Result rc = S_OK;
    // The first argument that doesn't convert decides.
    (void)(... && !Failed(rc = Convert(frame, I, std::get<I>(inputs))));
    if (Failed(rc)) return rc;
    if constexpr (kHasOut) {
      OutValue<Last> out;
      rc = (self.*Member)(std::get<I>(inputs).Pass()..., out.Put());
      if (Failed(rc)) out.Clear();
      out.MoveTo(*frame.result);
    } else {
      rc = (self.*Member)(std::get<I>(inputs).Pass()...);
    }
    return rc;
  }

  template <class Input>
  static Result Convert(CallFrame& frame, std::size_t index, Input& input) {
    const Variant* arg = index < frame.args.size() ? &frame.args[index].Dereferenced() : nullptr;
    const bool missing = !arg || arg->IsMissing();
    Result rc = S_OK;
    if (missing && !Input::kTakesMissing) {
      if (index >= frame.requiredCount) return S_OK;  // stays zero, empty or null
      rc = DISP_E_PARAMNOTFOUND;
    } else if (arg) {
      rc = input.Set(*arg);
    }
    if (Failed(rc)) frame.refusedArgument = static_cast<std::int32_t>(index);
    return rc;
  }
};

template <class B, class... P, Result (B::*Member)(P...)>
struct Bind<Member> : BindBody<B, Member, P...> {};
template <class B, class... P, Result (B::*Member)(P...) const>
struct Bind<Member> : BindBody<B, Member, P...> {};

/// A plain function that serves a call by name: `Result F(Self&, CallFrame&)`.
template <auto Function>
struct BindCustom;
template <class Self, Result (*Function)(Self&, CallFrame&)>
struct BindCustom<Function> {
  static Result Call(IDispatch& self, CallFrame& frame) {
    return Function(SelfAs<Self>(self), frame);
  }
};

/// A member function that supplies texts for messages: `WString F(ObjectTextId) const`.
template <auto Member>
struct BindObjectText;
template <class Self, WString (Self::*Member)(ObjectTextId) const>
struct BindObjectText<Member> {
  static WString Call(IDispatch& self, ObjectTextId id) { return (SelfAs<Self>(self).*Member)(id); }
};

}  // namespace hv::automation

// storefabric/Dispatch.h - the late-bound face of automation objects, their enumerators and events.
// Scripts reach the system through this header alone. One thread, like everything else.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/Unknown.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv {

/// How a caller wants to use a member; a bit set. A script that writes `obj.Name` can't know
/// whether `Name` is a method or a property and sends `Method | Get`.
enum class CallKind : std::uint8_t { None = 0, Method = 1, Get = 2, Put = 4 };

constexpr CallKind operator|(CallKind a, CallKind b) {
  return static_cast<CallKind>(static_cast<std::uint8_t>(a) | static_cast<std::uint8_t>(b));
}
constexpr CallKind operator&(CallKind a, CallKind b) {
  return static_cast<CallKind>(static_cast<std::uint8_t>(a) & static_cast<std::uint8_t>(b));
}
constexpr CallKind& operator|=(CallKind& a, CallKind b) { return a = a | b; }
/// True if the two sets have a kind in common.
constexpr bool Intersects(CallKind a, CallKind b) { return (a & b) != CallKind::None; }

/// \name Dispatch ids with a fixed meaning
/// @{
inline constexpr std::int32_t kDispIdValue =
    0;  ///< the default member: `coll(1)` is `coll.Item(1)`
inline constexpr std::int32_t kDispIdNewEnum =
    -4;  ///< `_NewEnum`, which gives an `IVariantIterator`
inline constexpr std::int32_t kDispIdUnknown = -1;  ///< no member
/// @}

/// What is known of a failed call by name.
struct ErrorInfo {
  /// With DISP_E_EXCEPTION: the message number that a script sees.
  std::int32_t number = 0;
  /// With DISP_E_EXCEPTION: the message text.
  WString text;
  /// 0 for a text with arguments, -1 for a text taken from the string table as it stands.
  std::int32_t helpContext = 0;
  /// With DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, DISP_E_BADVARTYPE, E_INVALIDARG or
  /// DISP_E_PARAMNOTFOUND: which argument of the call was refused, from 0; -1 otherwise.
  std::int32_t argument = -1;
  /// The result code of the member itself, also where it raises no error.
  Result code = S_OK;
};

/// One member of an object, for listings and documentation.
struct MemberInfo {
  std::u16string_view name;  ///< as published; lives as long as the object's module
  std::int32_t id = kDispIdUnknown;
  CallKind kinds = CallKind::None;  ///< `Get | Put` for a property that can be written
  /// Arguments of a call, the new value of a put not counted.
  std::int32_t argumentCount = 0;
  std::int32_t requiredCount = 0;  ///< the ones that can't be left out
};

/// The late-bound face of every automation object. The typed interfaces derive from it.
class IDispatch : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::IDispatch");

  /// The dispatch id of a member, found without regard to case.
  /// \return S_OK; E_POINTER if `id` is null; DISP_E_UNKNOWNNAME with `*id` kDispIdUnknown.
  virtual Result GetIdOfName(std::u16string_view name, std::int32_t* id) = 0;

  /// Calls a member.
  /// \param kinds   the ways of calling that suit the caller
  /// \param args    the arguments in their order; a put has the indexes first, the new value
  ///                last. Borrowed for the call. A missing argument may stand for an optional one.
  /// \param result  receives what the member gives; null if unwanted. Empty after a failure. A
  ///                member's failure that raises no error gives S_OK and the null or zero value of
  ///                the result's type; `error->code` still tells the code.
  /// \param error   receives the details of a failure; null if unwanted.
  /// \return S_OK or the member's remark; DISP_E_MEMBERNOTFOUND for an unknown id or a way of
  ///         calling that the member doesn't have; DISP_E_BADPARAMCOUNT; DISP_E_TYPEMISMATCH,
  ///         DISP_E_OVERFLOW, DISP_E_BADVARTYPE, E_INVALIDARG or DISP_E_PARAMNOTFOUND with
  ///         `error->argument` for an argument that can't be converted; DISP_E_EXCEPTION with
  ///         number and text if the member failed.
  ///
  /// A property without arguments that gives an object takes arguments on behalf of that object's
  /// default member: `x.Properties("Id")` is `x.Properties.Item("Id")`.
  virtual Result Invoke(std::int32_t id, CallKind kinds, std::span<const Variant> args,
                        Variant* result, ErrorInfo* error) = 0;

  /// How many members `GetMember` lists; a property that is read and written is one.
  virtual std::uint32_t GetMemberCount() = 0;
  /// \return S_OK; E_POINTER if `info` is null; E_INVALIDARG for an index at or past the end.
  virtual Result GetMember(std::uint32_t index, MemberInfo* info) = 0;
  /// The name of the object's automation class, for instance u"DataStore". Never empty.
  virtual std::u16string_view GetClassName() = 0;

 protected:
  ~IDispatch() = default;
};

/// Walks a collection; what `_NewEnum` gives, as a VT_UNKNOWN value. It keeps alive what it walks.
class IVariantIterator : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::IVariantIterator");

  /// Gives the next item.
  /// \return S_OK; S_FALSE with an empty `*item` behind the last one; E_POINTER if `item` is null.
  virtual Result Next(Variant* item) = 0;
  /// Starts again with the first item.
  virtual Result Reset() = 0;

 protected:
  ~IVariantIterator() = default;
};

/// The listener's side of events. A host implements it.
class IEventSink : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::IEventSink");

  /// An event was raised.
  /// \param id, name  which one, as the source lists it
  /// \param args      borrowed for the call. An argument that the host may change is a by-reference
  ///                  variant: write to its target.
  /// \param result    where the source wants an answer; never null, empty on entry
  /// \return anything; a failure doesn't keep the other sinks from hearing the event.
  virtual Result OnEvent(std::int32_t id, std::u16string_view name, std::span<const Variant> args,
                         Variant* result) = 0;

 protected:
  ~IEventSink() = default;
};

/// The face of an object that raises events.
class IEventSource : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::IEventSource");

  /// Adds a listener, which the source holds until `Unadvise`. A sink added twice hears twice.
  /// \param cookie  receives the number to give to `Unadvise`; never 0
  /// \return S_OK; E_POINTER if an argument is null.
  virtual Result Advise(IEventSink* sink, std::uint32_t* cookie) = 0;
  /// Removes a listener; allowed at any time, also from within an event, which the listener then
  /// doesn't hear any more.
  /// \return S_OK; E_INVALIDARG for a cookie that isn't in use.
  virtual Result Unadvise(std::uint32_t cookie) = 0;
  /// How many events `GetEvent` lists.
  virtual std::uint32_t GetEventCount() = 0;
  /// Describes an event: name, id and argument count; its kind is `CallKind::Method`.
  /// \return S_OK; E_POINTER if `info` is null; E_INVALIDARG for an index at or past the end.
  virtual Result GetEvent(std::uint32_t index, MemberInfo* info) = 0;

 protected:
  ~IEventSource() = default;
};

}  // namespace hv

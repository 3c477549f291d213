// automation/DispatchImpl.h - the base class of automation wrappers.
#pragma once

#include <type_traits>

#include <storefabric/Dispatch.h>

#include "automation/DispatchMap.h"
#include "cor/Counted.h"

namespace hv::automation {

template <class... Faces>
struct FaceList {};

/// Moves the faces that `Main` doesn't derive from into the first list: a wrapper inherits those.
template <class Main, class Inherited, class... Faces>
struct SplitFaces;
template <class Main, class... Inherited>
struct SplitFaces<Main, FaceList<Inherited...>> {
  using Body = cor::Counted<Main, Inherited...>;
};
template <class Main, class... Inherited, class Face, class... More>
struct SplitFaces<Main, FaceList<Inherited...>, Face, More...>
    : std::conditional_t<std::is_base_of_v<Face, Main>,
                         SplitFaces<Main, FaceList<Inherited...>, More...>,
                         SplitFaces<Main, FaceList<Inherited..., Face>, More...>> {};

/// Gives a wrapper its counting, its faces and the late-bound operations:
///
///     class CFooInt final : public DispatchImpl<CFooInt, IFoo, IFooBase, IEventSource> {
///      public:
///       static const DispatchMap& Map();
///       Result get_Name(WString* out) override;
///     };
///
/// `Interface` is the typed face, derived from `IDispatch`. `Faces` are the other ones that the
/// object answers for: bases of `Interface` by name only, and faces of their own, which the wrapper
/// then implements. The object answers for `IDispatch` and `IUnknown` in any case.
template <class Derived, class Interface, class... Faces>
class DispatchImpl : public SplitFaces<Interface, FaceList<>, Faces...>::Body {
  using Body = typename SplitFaces<Interface, FaceList<>, Faces...>::Body;
  static_assert(std::is_base_of_v<IDispatch, Interface>);
  static_assert(((std::is_base_of_v<Faces, Interface> ||
                  !std::is_base_of_v<IDispatch, Faces>)&&...),
                "a wrapper has one late-bound face");

 public:
  Result GetIdOfName(std::u16string_view name, std::int32_t* id) override {
    return FindMemberId(Derived::Map(), name, id);
  }
  Result Invoke(std::int32_t id, CallKind kinds, std::span<const Variant> args, Variant* result,
                ErrorInfo* error) override {
    return InvokeMember(Derived::Map(), *this, id, kinds, args, result, error);
  }
  std::uint32_t GetMemberCount() override { return CountMembers(Derived::Map()); }
  Result GetMember(std::uint32_t index, MemberInfo* info) override {
    return DescribeMember(Derived::Map(), index, info);
  }
  std::u16string_view GetClassName() override { return Derived::Map().className; }

 protected:
  void* FindFace(const Iid& iid) override {
    static_assert(!(Interface::kIid == IDispatch::kIid) || std::is_same_v<Interface, IDispatch>,
                  "the interface must have an identifier of its own");
    if (void* face = Body::FindFace(iid)) return face;
    if (iid == IDispatch::kIid) return static_cast<IDispatch*>(this);
    void* found = nullptr;
    (void)((std::is_base_of_v<Faces, Interface> && iid == Faces::kIid
                ? (found = static_cast<Faces*>(this), true)
                : false) ||
           ...);
    return found;
  }
};

}  // namespace hv::automation

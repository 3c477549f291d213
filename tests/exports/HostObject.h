// tests/exports/HostObject.h - objects of a host, which has nothing but the public headers.
#pragma once

#include <storefabric/Dispatch.h>
#include <storefabric/Ref.h>

namespace hv::test {

/// A counted object with the one face `Face`.
template <class Face>
class HostObject : public Face {
 public:
  HostObject() = default;
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;

  Result QueryInterface(const Iid& iid, void** out) override {
    if (!out) return E_POINTER;
    *out = iid == Face::kIid || iid == IUnknown::kIid ? static_cast<Face*>(this) : nullptr;
    if (!*out) return E_NOINTERFACE;
    ++m_count;
    return S_OK;
  }
  std::uint32_t AddRef() override { return ++m_count; }
  std::uint32_t Release() override {
    const std::uint32_t left = --m_count;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~HostObject() = default;

 private:
  std::uint32_t m_count = 1;
};

/// A control without members.
template <class Face>
class HostControl final : public HostObject<Face> {
 public:
  Result GetIdOfName(std::u16string_view, std::int32_t* id) override {
    *id = kDispIdUnknown;
    return DISP_E_UNKNOWNNAME;
  }
  Result Invoke(std::int32_t, CallKind, std::span<const Variant>, Variant*, ErrorInfo*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
  std::uint32_t GetMemberCount() override { return 0; }
  Result GetMember(std::uint32_t, MemberInfo*) override { return E_INVALIDARG; }
  std::u16string_view GetClassName() override { return u"HostControl"; }
};

}  // namespace hv::test

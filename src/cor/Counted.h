// cor/Counted.h - the one body of reference counting.
#pragma once

#include <cstdint>

#include <storefabric/Unknown.h>

namespace hv::cor {

/// How many counted objects of this module are alive. A test that ends with another number than it
/// began with has found a leak.
std::int64_t LiveObjectCount();
void AddLiveObject(std::int64_t delta);

/// Implements `IUnknown` for a class that offers the faces `Faces...`; the first one also answers
/// for `IUnknown`. A face that derives from another interface of its own is answered for under its
/// own name only; name the base as well if it is asked for: `Counted<Faces<IInstance,
/// IContainer>>`. Counts are plain numbers: one thread.
template <class... Faces>
class Counted : public Faces... {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  Result QueryInterface(const Iid& iid, void** out) override {
    if (!out) return E_POINTER;
    *out = FindFace(iid);
    if (!*out) return E_NOINTERFACE;
    ++m_refCount;
    return S_OK;
  }
  std::uint32_t AddRef() override { return ++m_refCount; }
  std::uint32_t Release() override {
    const std::uint32_t left = --m_refCount;
    if (left == 0) {
      // An object that touches itself while it dies must not die a second time.
      m_refCount = 1;
      delete this;
    }
    return left;
  }

 protected:
  Counted() { AddLiveObject(1); }
  virtual ~Counted() { AddLiveObject(-1); }

  /// The face of that name, without a reference, or null. A class with faces of its own making
  /// (a base interface, a part that exists only sometimes) overrides it.
  virtual void* FindFace(const Iid& iid) {
    void* found = nullptr;
    if (iid == IUnknown::kIid) return First();
    (void)((iid == Faces::kIid ? (found = static_cast<Faces*>(this), true) : false) || ...);
    return found;
  }

 private:
  template <class F, class...>
  struct FirstOf {
    using Type = F;
  };
  void* First() { return static_cast<typename FirstOf<Faces...>::Type*>(this); }

  std::uint32_t m_refCount = 1;
};

}  // namespace hv::cor

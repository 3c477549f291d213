// storefabric/Unknown.h - the root of all interfaces, and their identifiers.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Result.h>

namespace hv {

/// Identifies an interface across modules. Made from the interface's full name at compile time, so
/// two modules agree on it without a registry.
struct Iid {
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  friend constexpr bool operator==(const Iid&, const Iid&) = default;
};

/// The identifier of the interface with that full name, for instance "hv::vex::IStore".
/// Two 64-bit FNV-1a hashes from different starting values (offset basis and prime: FNV, public
/// domain); every interface's name goes in once, at compile time.
constexpr Iid MakeIid(std::string_view name) {
  Iid iid{0xcbf29ce484222325ULL, 0x9ae16a3b2f90404fULL};
  for (const char c : name) {
    const auto byte = static_cast<std::uint64_t>(static_cast<unsigned char>(c));
    iid.high = (iid.high ^ byte) * 0x100000001b3ULL;
    iid.low = (iid.low ^ byte ^ 0x5c) * 0x100000001b3ULL;
  }
  return iid;
}

/// The root of all interfaces. Objects are counted by hand, on one thread; the first count is 1.
/// An interface `I` names itself with a public `static constexpr Iid kIid`.
class IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::IUnknown");

  /// Gives the object's face `iid` in `*out`, with one reference for the caller.
  /// \return S_OK; E_POINTER if `out` is null; E_NOINTERFACE with `*out` null if it has no such
  /// face.
  virtual Result QueryInterface(const Iid& iid, void** out) = 0;
  /// Adds a reference and gives the new count, which is of use for tests only.
  virtual std::uint32_t AddRef() = 0;
  /// Gives a reference back. The object dies with the last one. Gives the new count.
  virtual std::uint32_t Release() = 0;

 protected:
  ~IUnknown() = default;
};

}  // namespace hv

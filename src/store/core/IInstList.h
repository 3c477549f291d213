// store/core/IInstList.h - lists of instances, and iterators over them.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IInstance;

/// A forward iterator over instances.
class IInstIterator : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IInstIterator");

  /// The next instance, or null at the end.
  virtual IInstance* Next() = 0;

 protected:
  ~IInstIterator() = default;
};

/// A list of instances, by index and with a cursor of its own. Query results hold ids; an instance
/// is made when it is asked for.
class IInstList : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IInstList");

  virtual std::uint64_t GetCount() = 0;
  /// The next instance, null at the end.
  virtual IInstance* Next() = 0;
  /// The instance at `index`, counted from 0; null beyond the end.
  virtual IInstance* GetInstance(std::uint64_t index) = 0;
  /// Keeps the first `count` instances. A count at or beyond the end changes nothing.
  virtual void Truncate(std::uint64_t count) = 0;

  // Added behind the operations above.

  /// Puts the cursor back before the first instance.
  virtual void Reset() = 0;
  virtual void Append(IInstance* instance) = 0;
  virtual void Clear() = 0;
  /// The key of the instance at `index` without making the instance; empty beyond the end.
  virtual void GetKey(std::uint64_t index, WString& key) = 0;
  /// The address text of the list: one key a line.
  virtual void GetAddressText(WString& text) = 0;

 protected:
  ~IInstList() = default;
};

}  // namespace hv::vex

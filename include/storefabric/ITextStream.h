// storefabric/ITextStream.h - a text that a host keeps for the library: in a file of its own, a
// database, a message.
#pragma once

#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

/// A host implements it.
class ITextStream : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ITextStream");

  /// The whole text.
  virtual Result Read(WString* text) = 0;
  /// Replaces the whole text.
  virtual Result Write(std::u16string_view text) = 0;

 protected:
  ~ITextStream() = default;
};

}  // namespace hv::vex

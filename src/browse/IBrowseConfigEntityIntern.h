// browse/IBrowseConfigEntityIntern.h - what the library itself does with a level of a browse path.
#pragma once

#include <string_view>

#include <storefabric/IBrowseConfig.h>

#include "browse/SymbolTable.h"

namespace hv::vex {

class IRepresentedByPartsImpl;

/// Beyond the public face. Null arguments give E_POINTER, and so does what needs the configuration
/// once that is gone.
class IBrowseConfigEntityIntern : public IBrowseConfigEntity {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseConfigEntityIntern");

  virtual SymbolKey GetSymbolKey() = 0;
  /// The key is stored whether the configuration knows it or not; it no longer is the default.
  virtual void SetSymbolKey(SymbolKey key) = 0;
  virtual bool IsDefaultSymbol() = 0;
  virtual void ResetSymbol() = 0;
  /// The display name; one list for the level's life.
  virtual Result GetRepresentedByParts(IRepresentedByPartsImpl** parts) = 0;
  /// Back to the one property with the base name "name", or to none if the entity has no such.
  virtual Result ResetDisplayName() = 0;
  /// Makes the path longer by one level; behind a measurement by its quantities and the submatrix
  /// branch too.
  /// \return S_OK if the path is complete with that, S_FALSE if it isn't; E_POINTER; E_INVALIDARG
  ///         for a reference that doesn't exist; E_FAIL
  virtual Result AddChild(std::u16string_view reference, IBrowseConfigEntity** child) = 0;
  /// Takes everything below this level out of the path.
  /// \return S_OK; S_FALSE if there is nothing below; E_POINTER; E_UNEXPECTED
  virtual Result RemoveFirstChild() = 0;

 protected:
  ~IBrowseConfigEntityIntern() = default;
};

}  // namespace hv::vex

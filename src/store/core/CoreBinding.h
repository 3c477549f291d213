// store/core/CoreBinding.h - keeps the storage engine loaded while a logic object lives.
#pragma once

namespace hv::vex {

/// The base of every long-lived logic object. Attaches the engine when the object is made and lets
/// go of it when the object dies, so the engine stays loaded as long as any such object lives, also
/// without an `Init` of the host. Derive from it before the counted base, so that all references on
/// engine objects are gone when the engine may be unloaded:
///
///     class CDataStoreImpl final : private CoreBinding, public cor::Counted<IDataStoreImpl> {...};
///
/// An engine that can't be loaded is no error here: the first call into it raises an `Exception`.
class CoreBinding {
 public:
  CoreBinding(const CoreBinding&) = delete;
  CoreBinding& operator=(const CoreBinding&) = delete;

 protected:
  /// Attaches the engine, and starts it if all of its functions are bound.
  CoreBinding();
  /// Ends the engine's work for this object if that function is bound, and detaches it.
  ~CoreBinding();

  /// True if the engine was attached with all of its functions.
  [[nodiscard]] bool IsAttached() const { return m_attached; }

 private:
  bool m_attached = false;
};

}  // namespace hv::vex

// store/collections/ICollectionImpl.h - what every collection of the object model can do.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Result.h>
#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex::easyImpl {

/// The identifier of a template's face over an item interface.
constexpr Iid MakeTemplateIid(std::string_view name, const Iid& item) {
  const Iid own = MakeIid(name);
  return {own.high ^ item.high * 3, own.low ^ item.low * 3};
}

/// Walks over items, one counted reference at a time.
template <class T>
class tIIteratorImpl : public IUnknown {
 public:
  using Item = T;
  static constexpr Iid kIid = MakeTemplateIid("hv::vex::easyImpl::tIIteratorImpl", T::kIid);

  /// \return S_OK with the next item; S_FALSE with null at the end; E_POINTER for a null `out`;
  /// what
  ///         the collection said if it can't make the item, which is then stepped over
  virtual Result Next(T** out) = 0;
  /// Steps over `count` items.
  /// \return S_OK; S_FALSE if the end came first; E_INVALIDARG for a negative count
  virtual Result Skip(std::int32_t count) = 0;
  /// Goes back to the start.
  virtual Result Reset() = 0;
  /// A new iterator that stands at the same place.
  virtual Result Clone(tIIteratorImpl** out) = 0;

 protected:
  ~tIIteratorImpl() = default;
};

/// An ordered collection. Indexes count from 0. Null out pointers give E_POINTER; out pointers are
/// null after a failure.
template <class T>
class ICollectionImpl : public IUnknown {
 public:
  using Item = T;
  static constexpr Iid kIid = MakeTemplateIid("hv::vex::easyImpl::ICollectionImpl", T::kIid);

  /// \return S_OK with a reference for the caller; E_INVALIDARG for an index outside
  virtual Result GetItem(std::int32_t index, T** out) = 0;
  virtual Result GetCount(std::int32_t* out) = 0;
  /// A new iterator at the start. It keeps the collection alive and stays good while items come and
  /// go: none that stays is skipped or met twice.
  virtual Result GetIterator(tIIteratorImpl<T>** out) = 0;
  /// \return S_OK; E_INVALIDARG for an index outside
  virtual Result RemoveAt(std::int32_t index) = 0;
  virtual Result Clear() = 0;
  /// Exchanges two items.
  /// \return S_OK; E_INVALIDARG if an index is outside
  virtual Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) = 0;

 protected:
  ~ICollectionImpl() = default;
};

/// A collection whose items also have unique names. Names that differ in case only are different.
template <class T>
class INamedCollectionImpl : public ICollectionImpl<T> {
 public:
  static constexpr Iid kIid = MakeTemplateIid("hv::vex::easyImpl::INamedCollectionImpl", T::kIid);

  /// \return S_OK with a reference for the caller; E_INVALIDARG for an empty or unknown name
  virtual Result GetItemByName(std::u16string_view name, T** out) = 0;
  /// \return S_OK; E_INVALIDARG for an empty or unknown name
  virtual Result RemoveByName(std::u16string_view name) = 0;
  virtual Result Exists(std::u16string_view name, bool* out) = 0;
  /// Gives a member another name, which is made unique. Its place stays. The item itself isn't
  /// told: it is the one who asks. \param unique  receives the name that the member now has \return
  /// S_OK, also without effect for equal names, known or not; E_INVALIDARG for an unknown old
  ///         or an empty new name
  virtual Result Rename(std::u16string_view oldName, std::u16string_view newName,
                        WString* unique) = 0;

 protected:
  ~INamedCollectionImpl() = default;
};

}  // namespace hv::vex::easyImpl

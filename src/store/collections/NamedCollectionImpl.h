// store/collections/NamedCollectionImpl.h - the collection that keeps its items' names unique.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <type_traits>
#include <utility>

#include <storefabric/WString.h>

#include "store/collections/CollectionImpl.h"
#include "store/collections/SuffixCounters.h"

namespace hv::vex::easyImpl {

/// The body of a collection with unique names. `Face` is `INamedCollectionImpl<Item>`, an interface
/// derived from it, or one that declares the same operations beside other bases. Lookup by name
/// takes logarithmic time.
template <class Face, class... MoreFaces>
class tNamedCollectionImpl : public tCollectionImpl<Face, MoreFaces...> {
 public:
  using Collection = tCollectionImpl<Face, MoreFaces...>;
  using Item = typename Collection::Item;
  using NamedBase = INamedCollectionImpl<Item>;

  /// Forgets all names as well. The counters go on, so that a name once changed is counted further.
  Result Clear() override {
    m_members.clear();
    return Collection::Clear();
  }

  // INamedCollectionImpl
  Result GetItemByName(std::u16string_view name, Item** out) override {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    const Node* node = FindNode(name);
    HV_RETURN_CODE_IF(!node, E_INVALIDARG);
    return node->item.CopyTo(out);
  }
  Result RemoveByName(std::u16string_view name) override {
    const Node* node = FindNode(name);
    HV_RETURN_CODE_IF(!node, E_INVALIDARG);
    return this->RemoveAt(static_cast<std::int32_t>(this->PositionOf(*node)));
  }
  Result Exists(std::u16string_view name, bool* out) override {
    HV_RETURN_IF_NULL(out);
    *out = FindNode(name) != nullptr;
    return S_OK;
  }
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override
      try {
    HV_RETURN_IF_NULL(unique);
    unique->clear();
    if (oldName == newName) {
      *unique = newName;
      return S_OK;
    }
    const auto old = m_members.find(oldName);
    HV_RETURN_CODE_IF(old == m_members.end() || newName.empty(), E_INVALIDARG);
    // The old name is still taken while the new one is sought.
    WString name = MakeUnique(newName);
    *unique = name;
    auto entry = m_members.extract(old);
    entry.key() = std::move(name);
    const auto renamed = m_members.insert(std::move(entry)).position;
    renamed->second->name = &renamed->first;
    return S_OK;
  }
  HV_CATCH_RETURN()

 protected:
  using Node = typename Collection::Node;

  tNamedCollectionImpl() = default;
  ~tNamedCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override {
    if constexpr (std::is_base_of_v<NamedBase, Face>) {
      if (iid == NamedBase::kIid) return static_cast<NamedBase*>(this);
    }
    return Collection::FindFace(iid);
  }

// Faces may have an `Add` of their own for callers; this one is for bodies.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
  /// Puts an item at the end under the requested name made unique, and tells it that name.
  /// \param unique  if not null, receives the name
  /// \return S_OK; E_POINTER for a null item; E_FAIL if there is neither a requested nor a default
  ///         name; what the item said if it refused its name, and then it isn't a member;
  ///         E_OUTOFMEMORY
  Result Add(Item* item, std::u16string_view requested, WString* unique = nullptr) try {
    HV_RETURN_IF_NULL(item);
    const WString defaultName = requested.empty() ? DefaultName() : WString();
    const std::u16string_view wanted = requested.empty() ? defaultName.view() : requested;
    HV_RETURN_CODE_IF(wanted.empty(), E_FAIL);
    // A free name takes one look into the map.
    auto entry = m_members.lower_bound(wanted);
    if (entry == m_members.end() || entry->first.view() != wanted) {
      entry = m_members.emplace_hint(entry, wanted, nullptr);
    } else {
      entry = m_members.emplace(MakeUnique(wanted), nullptr).first;
    }
    try {
      entry->second = &this->AppendNode(*item);
    } catch (...) {
      m_members.erase(entry);
      throw;
    }
    entry->second->name = &entry->first;
    if (const Result told = OnNamed(*item, entry->first); Failed(told)) {
      (void)this->RemoveByName(WString(entry->first));
      return told;
    }
    if (unique) *unique = entry->first;
    return S_OK;
  }
  HV_CATCH_RETURN()
#pragma GCC diagnostic pop

  /// The name that a member gets if none is requested.
  virtual WString DefaultName() const { return SuffixCounters::kDefaultName; }

  /// Tells a new member its name: by its `SetName`, if it has one.
  virtual Result OnNamed(Item& item, const WString& name) {
    if constexpr (requires { Result(item.SetName(name)); }) {
      return item.SetName(name);
    } else {
      return S_OK;
    }
  }

  /// The requested name, or the first free one that the counters offer for it.
  WString MakeUnique(std::u16string_view requested) {
    return m_suffixCounters.MakeUnique(
        requested, [this](std::u16string_view name) { return m_members.contains(name); });
  }

  /// The name of the member at a position below `Size()`.
  [[nodiscard]] const WString& NameAt(std::size_t position) { return *this->NodeAt(position).name; }

  void OnRemove(std::size_t position) override {
    const auto entry = m_members.find(NameAt(position).view());
    this->NodeAt(position).name = nullptr;
    m_members.erase(entry);
  }
  void OnSwap(std::size_t first, std::size_t second) override {
    Node& a = this->NodeAt(first);
    Node& b = this->NodeAt(second);
    std::swap(m_members.find(a.name->view())->second, m_members.find(b.name->view())->second);
    std::swap(a.name, b.name);
  }

 private:
  [[nodiscard]] const Node* FindNode(std::u16string_view name) const {
    const auto found = m_members.find(name);
    return found != m_members.end() ? found->second : nullptr;
  }

  SuffixCounters m_suffixCounters;
  std::map<WString, Node*, cor::ExactLess> m_members;
};

}  // namespace hv::vex::easyImpl

// browse/RepresentedByParts.h - the display name of a browse entity's elements: parts in order,
// shown one behind the other with nothing in between.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "browse/RepresentedByPart.h"
#include "store/collections/CollectionImpl.h"
#include "store/core/IBulkReader.h"

namespace hv::vex {

class IEntity;
class IInstance;
class IInstList;
class IStore;
class IValueTable;

namespace easyImpl {
class IVEXElementImpl;
}

/// A column of values; without a table there is none yet.
struct ValueColumn {
  Ref<IValueTable> table;
  std::uint64_t column = 0;
};
/// Value columns by property key, without regard to case.
using ValueColumns = std::map<WString, ValueColumn, cor::NoCaseLess>;

/// The parts in order. What formats leaves out a value that can't be read or converted, and keeps
/// in `text` what came before a failure.
class IRepresentedByPartsImpl : public easyImpl::ICollectionImpl<IRepresentedByPartImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IRepresentedByPartsImpl");

  /// Takes over the other's parts; the properties are shared.
  virtual void CopyFrom(IRepresentedByPartsImpl* other) = 0;
  /// Takes over the other's parts with the properties of `entity` under the same keys.
  /// \return S_OK; E_POINTER; VEX_E_OTHER_STORE for a property that `entity` doesn't have or that
  ///         can't be shown; E_INVALIDARG for one that is only a name; E_UNEXPECTED
  virtual Result CopyResolved(IRepresentedByPartsImpl* other, IEntity* entity) = 0;
  /// Append a part and give it. `part` may be null.
  virtual Result AddProperty(IAttributeDefinition* property, IRepresentedByPartImpl** part) = 0;
  virtual Result AddFreeText(std::u16string_view text, IRepresentedByPartImpl** part) = 0;
  /// Names of properties and free texts, one behind the other: the list's own description.
  virtual void GetFormatText(WString& text) = 0;
  /// Enters every property's key that isn't in the map yet, with no column, and appends it to the
  /// list.
  virtual Result CollectProperties(ValueColumns& columns, std::vector<WString>* keys) = 0;
  /// The text of one row.
  /// \return S_OK; E_POINTER
  virtual Result FormatFromColumns(const ValueColumns& columns, std::uint64_t row,
                                   std::u16string_view timeFormat, WString* text) = 0;
  /// \return S_OK; E_POINTER; kPartialDisplayName if a property doesn't exist
  virtual Result FormatFromProperties(easyImpl::IVEXElementImpl* element,
                                      std::u16string_view timeFormat, WString* text) = 0;
  /// \return S_OK; E_POINTER; kPartialDisplayName if a property doesn't exist or can't be shown
  virtual Result FormatFromInstance(IInstance* instance, std::u16string_view timeFormat,
                                    WString* text) = 0;

 protected:
  ~IRepresentedByPartsImpl() = default;
};

class CRepresentedByPartsImpl final : public easyImpl::tCollectionImpl<IRepresentedByPartsImpl> {
 public:
  CRepresentedByPartsImpl() = default;

  // IRepresentedByPartsImpl
  void CopyFrom(IRepresentedByPartsImpl* other) override;
  Result CopyResolved(IRepresentedByPartsImpl* other, IEntity* entity) override;
  Result AddProperty(IAttributeDefinition* property, IRepresentedByPartImpl** part) override;
  Result AddFreeText(std::u16string_view text, IRepresentedByPartImpl** part) override;
  void GetFormatText(WString& text) override;
  Result CollectProperties(ValueColumns& columns, std::vector<WString>* keys) override;
  Result FormatFromColumns(const ValueColumns& columns, std::uint64_t row,
                           std::u16string_view timeFormat, WString* text) override;
  Result FormatFromProperties(easyImpl::IVEXElementImpl* element, std::u16string_view timeFormat,
                              WString* text) override;
  Result FormatFromInstance(IInstance* instance, std::u16string_view timeFormat,
                            WString* text) override;

 private:
  ~CRepresentedByPartsImpl() override = default;

  /// Runs through the parts: texts are appended, `appendProperty(key, text)` does the rest.
  template <class AppendProperty>
  Result Format(AppendProperty appendProperty, WString* text);
};

/// Names and display names of many elements.
struct DisplayNameTable {
  Ref<IValueTable> values;  ///< row for row the instances: `values->GetInstance(row)`
  std::vector<WString> names;
  std::vector<WString> displayNames;
};

/// Reads what the parts of one browse entity need for the instances that `reference` leads to from
/// `start` (null: all at the path `reference`), kept if they meet `filter`, with one question to
/// the engine, and makes their names.
/// \return S_OK; E_POINTER; E_NOTIMPL if the store reads nothing in bulk; E_FAIL
Result ReadDisplayNames(IStore* store, IInstance* start, std::u16string_view reference,
                        std::u16string_view filter, IRepresentedByPartsImpl* parts,
                        DisplayNameTable* table);
/// The same for instances at hand, all of one entity.
Result ReadDisplayNames(IStore* store, IInstList* instances, IRepresentedByPartsImpl* parts,
                        DisplayNameTable* table);

/// Takes the rows of `VisitDisplayNames`.
class IDisplayNameVisitor {
 public:
  /// \param values  row for row the instances; the same table at each call
  /// \param name, displayName  good until the call returns
  /// \return a failure ends the visit
  virtual Result OnRow(IValueTable& values, std::uint64_t row, std::u16string_view name,
                       std::u16string_view displayName) = 0;

 protected:
  ~IDisplayNameVisitor() = default;
};

/// As the first `ReadDisplayNames`, handing each row on as it is made.
/// \return those codes, and what the visitor returned
Result VisitDisplayNames(IStore* store, IInstance* start, std::u16string_view reference,
                         std::u16string_view filter, IRepresentedByPartsImpl* parts,
                         IDisplayNameVisitor& visitor);

}  // namespace hv::vex

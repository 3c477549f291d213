// browse/RepresentedByParts.cpp - display names: the parts, and the text of one element.
#include "browse/RepresentedByParts.h"

#include <storefabric/DataType.h>

#include "automation/Guards.h"
#include "browse/BrowseResults.h"
#include "browse/DisplayText.h"
#include "browse/FormatSteps.h"
#include "elements/IPropertyImpl.h"
#include "elements/IVEXElementImpl.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"

namespace hv::vex {

void CRepresentedByPartsImpl::CopyFrom(IRepresentedByPartsImpl* other) {
  if (!other || other == this) return;
  (void)Clear();
  std::int32_t count = 0;
  (void)other->GetCount(&count);
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IRepresentedByPartImpl> part;
    if (Failed(other->GetItem(i, part.Put()))) continue;
    Ref<IAttributeDefinition> property;
    WString text;
    if (!Failed(part->GetProperty(property.Put()))) {
      (void)AddProperty(property.Get(), nullptr);
    } else if (part->IsKind(PartKind::FreeText) && !Failed(part->GetFreeText(&text))) {
      (void)AddFreeText(text, nullptr);
    }
  }
}

Result CRepresentedByPartsImpl::CopyResolved(IRepresentedByPartsImpl* other, IEntity* entity) try {
  HV_RETURN_CODE_IF(!other || !entity, E_POINTER);
  HV_RETURN_CODE_IF(other == this, E_INVALIDARG);
  HV_RETURN_IF_FAILED(Clear());
  Ref<easyImpl::tIIteratorImpl<IRepresentedByPartImpl>> iterator;
  HV_RETURN_CODE_IF(Failed(other->GetIterator(iterator.Put())) || !iterator, E_UNEXPECTED);
  Ref<IRepresentedByPartImpl> part;
  while (iterator->Next(part.Put()) == S_OK) {
    if (part->IsKind(PartKind::FreeText)) {
      WString text;
      HV_RETURN_IF_FAILED(part->GetFreeText(&text));
      HV_RETURN_IF_FAILED(AddFreeText(text, nullptr));
      continue;
    }
    HV_RETURN_CODE_IF(!part->IsValid(), E_INVALIDARG);
    WString key;
    HV_RETURN_IF_FAILED(part->GetPropertyKey(&key));
    const auto property = FindAttributeDefinition(*entity, key);
    HV_RETURN_CODE_IF(!property || !IsPropertyType(property->GetDataType()), kModelMismatch);
    HV_RETURN_IF_FAILED(AddProperty(property.Get(), nullptr));
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CRepresentedByPartsImpl::AddProperty(IAttributeDefinition* property,
                                            IRepresentedByPartImpl** part) try {
  if (part) *part = nullptr;
  HV_RETURN_IF_NULL(property);
  const auto made = MakeRef<CRepresentedByPartImpl>(*property);
  HV_RETURN_IF_FAILED(Append(made.Get()));
  return part ? made.CopyTo(part) : S_OK;
}
HV_CATCH_RETURN()

Result CRepresentedByPartsImpl::AddFreeText(std::u16string_view text,
                                            IRepresentedByPartImpl** part) try {
  if (part) *part = nullptr;
  const auto made = MakeRef<CRepresentedByPartImpl>(text);
  HV_RETURN_IF_FAILED(Append(made.Get()));
  return part ? made.CopyTo(part) : S_OK;
}
HV_CATCH_RETURN()

void CRepresentedByPartsImpl::GetFormatText(WString& text) {
  text.clear();
  for (std::size_t i = 0; i < Size(); ++i) {
    IRepresentedByPartImpl& part = ItemAt(i);
    WString piece;
    const Result rc =
        part.IsKind(PartKind::FreeText) ? part.GetFreeText(&piece) : part.GetPropertyName(&piece);
    if (!Failed(rc)) text += piece;
  }
}

Result CRepresentedByPartsImpl::CollectProperties(ValueColumns& columns,
                                                  std::vector<WString>* keys) try {
  HV_RETURN_IF_NULL(keys);
  for (std::size_t i = 0; i < Size(); ++i) {
    IRepresentedByPartImpl& part = ItemAt(i);
    if (!part.IsKind(PartKind::Property)) continue;
    WString key;
    HV_RETURN_IF_FAILED(part.GetPropertyKey(&key));
    if (columns.try_emplace(key).second) keys->push_back(std::move(key));
  }
  return S_OK;
}
HV_CATCH_RETURN()

Result CRepresentedByPartsImpl::FormatFromColumns(const ValueColumns& columns, std::uint64_t row,
                                                  std::u16string_view timeFormat,
                                                  WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  const FormatSteps steps(*this, columns);
  steps.Append(row, DisplayFormat(timeFormat), *text);
  return S_OK;
}
HV_CATCH_RETURN()

template <class AppendProperty>
Result CRepresentedByPartsImpl::Format(AppendProperty appendProperty, WString* text) {
  for (std::size_t i = 0; i < Size(); ++i) {
    IRepresentedByPartImpl& part = ItemAt(i);
    WString piece;
    if (part.IsKind(PartKind::FreeText)) {
      HV_RETURN_IF_FAILED(part.GetFreeText(&piece));
      *text += piece;
    } else {
      HV_RETURN_IF_FAILED(part.GetPropertyKey(&piece));
      HV_RETURN_IF_FAILED(appendProperty(piece, text));
    }
  }
  return S_OK;
}

Result CRepresentedByPartsImpl::FormatFromProperties(easyImpl::IVEXElementImpl* element,
                                                     std::u16string_view timeFormat,
                                                     WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  HV_RETURN_IF_NULL(element);
  Ref<easyImpl::IPropertyCollectionImpl> properties;
  HV_RETURN_IF_FAILED(element->GetProperties(properties.Put()));
  const DisplayFormat format(timeFormat);
  return Format(
      [&](const WString& key, WString* out) {
        Ref<easyImpl::IPropertyImpl> property;
        if (Failed(properties->GetItemByName(key, property.Put()))) return kPartialDisplayName;
        Variant value;
        if (!Failed(property->GetValue(&value))) (void)format.AppendVariant(value, *out);
        return S_OK;
      },
      text);
}
HV_CATCH_RETURN()

Result CRepresentedByPartsImpl::FormatFromInstance(IInstance* instance,
                                                   std::u16string_view timeFormat,
                                                   WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  HV_RETURN_IF_NULL(instance);
  const DisplayFormat format(timeFormat);
  return Format(
      [&](const WString& key, WString* out) {
        const auto attribute = Ref<IAttribute>::Adopt(instance->GetAttributeValue(key));
        if (!attribute || !IsPropertyType(attribute->GetDataType())) return kPartialDisplayName;
        (void)format.AppendAttribute(*attribute, *out);
        return S_OK;
      },
      text);
}
HV_CATCH_RETURN()

}  // namespace hv::vex

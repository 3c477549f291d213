// core/model/OdsType.cpp - one table for the names and the seam's codes of the data types.
#include "core/model/OdsType.h"

#include "core/model/NameFold.h"

namespace hv::vex::engine {
namespace {

struct TypeRow {
  OdsType type;
  std::int32_t seam;
  StorageKind storage;
  std::u16string_view name;
  std::u16string_view sequenceName;  ///< empty: the standard has no sequence of this type
};

using enum StorageKind;
constexpr TypeRow kTypes[] = {
    {OdsType::Unknown, 0, Text, u"DT_UNKNOWN", u""},
    {OdsType::String, 23, Text, u"DT_STRING", u"DS_STRING"},
    {OdsType::Short, 2, Integer, u"DT_SHORT", u"DS_SHORT"},
    {OdsType::Float, 9, Real, u"DT_FLOAT", u"DS_FLOAT"},
    {OdsType::Boolean, 11, Integer, u"DT_BOOLEAN", u"DS_BOOLEAN"},
    {OdsType::Byte, 5, Integer, u"DT_BYTE", u"DS_BYTE"},
    {OdsType::Long, 3, Integer, u"DT_LONG", u"DS_LONG"},
    {OdsType::Double, 10, Real, u"DT_DOUBLE", u"DS_DOUBLE"},
    {OdsType::LongLong, 4, Integer, u"DT_LONGLONG", u"DS_LONGLONG"},
    {OdsType::Id, 4, Integer, u"DT_ID", u"DS_ID"},
    {OdsType::Date, 30, Text, u"DT_DATE", u"DS_DATE"},
    {OdsType::ByteStr, 101, Bytes, u"DT_BYTESTR", u"DS_BYTESTR"},
    {OdsType::Blob, 102, Bytes, u"DT_BLOB", u""},
    {OdsType::Complex, 103, Real, u"DT_COMPLEX", u"DS_COMPLEX"},
    {OdsType::DComplex, 104, Real, u"DT_DCOMPLEX", u"DS_DCOMPLEX"},
    {OdsType::ExternalReference, 41, Text, u"DT_EXTERNALREFERENCE", u"DS_EXTERNALREFERENCE"},
    {OdsType::Enum, 24, Integer, u"DT_ENUM", u"DS_ENUM"},
};

constexpr const TypeRow& RowOf(OdsType type) {
  for (const TypeRow& row : kTypes) {
    if (row.type == type) return row;
  }
  return kTypes[0];
}

}  // namespace

StorageKind StorageKindOf(OdsType type) { return RowOf(type).storage; }

std::int32_t SeamTypeOf(OdsType type) { return RowOf(type).seam; }

std::optional<OdsType> OdsTypeOfSeam(std::int32_t seamType) {
  if (seamType == 0) return std::nullopt;
  if (seamType == 1) return OdsType::Short;
  // The first row wins, so that code 4 is a LongLong and not an Id.
  for (const TypeRow& row : kTypes) {
    if (row.seam == seamType) return row.type;
  }
  return std::nullopt;
}

std::optional<TypeName> ParseTypeName(std::u16string_view name) {
  if (name.empty()) return std::nullopt;
  for (const TypeRow& row : kTypes) {
    if (EqualFolded(row.name, name)) return TypeName{row.type, false};
    if (EqualFolded(row.sequenceName, name)) return TypeName{row.type, true};
  }
  return std::nullopt;
}

std::u16string_view NameOfType(OdsType type, bool sequence) {
  const TypeRow& row = RowOf(type);
  return sequence && !row.sequenceName.empty() ? row.sequenceName : row.name;
}

}  // namespace hv::vex::engine

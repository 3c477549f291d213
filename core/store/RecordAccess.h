// core/store/RecordAccess.h - checks and rules that every kind of storage takes over as they are.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>

#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// The flags of a valid value, which is what one without flags of its own is: all four bits.
inline constexpr std::int16_t kFlagsOfValid = 15;

/// Throws with a message that begins with the record.
[[noreturn]] void FailAt(const RecordStore& store, RecordRef record, std::int32_t code,
                         std::initializer_list<std::u16string_view> parts);
/// For a store whose model was read again and has other entities or attributes in the places known.
[[noreturn]] void FailModelChanged();
/// Throw kUnknownName if the index isn't one of the entity's members.
const Attribute& AttributeOf(const Model& model, EntityId entity, std::int32_t attribute);
const Relation& RelationOf(const Model& model, EntityId entity, std::int32_t relation);

/// What an implicit local column (constant, linear, saw) without values of its own gives: its
/// generation parameters; null if it has none. The record must exist.
std::unique_ptr<ValueSource> OpenParameters(const RecordStore& store, RecordRef localColumn);

/// Checks what `RecordStore::PutValues` is given, except that each value fits its type.
/// \param type  of the `count` elements there are
void CheckPut(const RecordStore& store, RecordRef localColumn, ColumnPart part, OdsType type,
              std::uint64_t count, std::uint64_t first, const Value& values);

}  // namespace hv::vex::engine

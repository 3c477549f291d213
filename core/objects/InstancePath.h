// core/objects/InstancePath.h - the path language: which records a path leads to.
#pragma once

#include <optional>
#include <string_view>

#include "core/objects/RecordRuns.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// Follows a path and gives the records it leads to, each once, in the order in which they are
/// found.
///
///   path     = [ "/#" name | "/##" name ] { "." step }   (a path from a record starts with a step)
///   step     = relation [ "(" attribute "=" quoted ")" ]
///   quoted   = "'" text "'"                               (an apostrophe inside is doubled)
///
/// Names may hold dots: the longest existing name wins. "/#" takes an entity's exact name, "/##" a
/// name in any case; a base entity stands for all application entities derived from it. The
/// condition in parentheses compares without regard to case.
///
/// \param start  where a relative path begins; an absolute path ignores it.
/// Throws kInvalidArgument for a text that is no path and kUnknownName for names that don't exist.
RecordRuns FollowPath(const RecordStore& store, std::optional<RecordRef> start,
                      std::u16string_view path);

/// The relation of `entity` that a path consists of, if it is one step without a condition; else
/// kNone.
std::int32_t OnlyStep(const Entity& entity, std::u16string_view path);

}  // namespace hv::vex::engine

// core/model/ModelDraft.h - what a ModelBuilder has collected, before names are resolved.
#pragma once

#include <string>
#include <vector>

#include "core/model/ModelBuilder.h"

namespace hv::vex::engine {

struct EntityDraft {
  std::u16string name;
  std::u16string baseType;
  std::vector<AttributeSpec> attributes;
  std::vector<RelationSpec> relations;
  std::vector<MemberRef> members;
  ExactNameMap<char> memberNames;
};

struct ModelDraft {
  std::u16string versionText;
  int baseVersion = 0;  ///< 0: no base model
  std::vector<Enumeration> enumerations;
  std::vector<std::u16string> parts;
  std::vector<EntityDraft> entities;
  ExactNameMap<char> entityNames;
  bool isOpen = false;  ///< members go to the last of `entities`
};

/// The words with which every problem of a member begins.
std::u16string MemberText(std::u16string_view entity, std::u16string_view kind,
                          std::u16string_view member);

}  // namespace hv::vex::engine

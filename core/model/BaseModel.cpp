// core/model/BaseModel.cpp - look-ups in the tables of the base model.
#include "core/model/BaseModel.h"

#include "core/model/NameFold.h"

#include <algorithm>

namespace hv::vex::engine {
namespace {

template <class Row>
bool InVersion(const Row& row, int version) {
  return row.since <= version && version <= row.until;
}

template <class Row>
const Row* FindRow(std::span<const Row> rows, std::u16string_view name, int version) {
  for (const Row& row : rows) {
    if (InVersion(row, version) && EqualFolded(row.name, name)) return &row;
  }
  return nullptr;
}

template <class Row>
std::vector<const Row*> RowsOf(std::span<const Row> common, std::span<const Row> own, int version) {
  std::vector<const Row*> rows;
  rows.reserve(common.size() + own.size());
  for (const std::span<const Row> part : {common, own}) {
    for (const Row& row : part) {
      if (InVersion(row, version)) rows.push_back(&row);
    }
  }
  return rows;
}

}  // namespace

int ParseBaseVersion(std::u16string_view text) {
  const std::size_t first = text.find_first_of(u"0123456789");
  if (first == text.npos) return kNewestBaseVersion;
  int number = 0;
  for (const char16_t unit : text.substr(first)) {
    if (unit < u'0' || unit > u'9' || number > kNewestBaseVersion) break;
    number = number * 10 + (unit - u'0');
  }
  if (number < kOldestBaseVersion) return 30;
  return std::min(number, kNewestBaseVersion);
}

bool BaseTargets::Hold(BaseId id) const {
  return everything || std::find(ids.begin(), ids.begin() + count, id) != ids.begin() + count;
}

std::span<const BaseElement> BaseElements() { return base_tables::kElements; }

std::span<const BaseEnumeration> BaseEnumerations() { return base_tables::kEnumerations; }

BaseId IdOf(const BaseElement& element) {
  return static_cast<BaseId>(&element - base_tables::kElements.data());
}

const BaseElement* FindBaseElement(std::u16string_view name, int version) {
  for (const BaseElement& element : base_tables::kElements) {
    if (element.since <= version && EqualFolded(element.lowerName, name)) return &element;
  }
  return nullptr;
}

const BaseAttribute* FindBaseAttribute(const BaseElement& element, std::u16string_view name,
                                       int version) {
  const BaseAttribute* own = FindRow(element.ownAttributes, name, version);
  return own != nullptr ? own : FindRow(base_tables::kCommonAttributes, name, version);
}

const BaseRelation* FindBaseRelation(const BaseElement& element, std::u16string_view name,
                                     int version) {
  const BaseRelation* own = FindRow(element.ownRelations, name, version);
  return own != nullptr ? own : FindRow(base_tables::kCommonRelations, name, version);
}

std::vector<const BaseAttribute*> BaseAttributesOf(const BaseElement& element, int version) {
  return RowsOf(base_tables::kCommonAttributes, element.ownAttributes, version);
}

std::vector<const BaseRelation*> BaseRelationsOf(const BaseElement& element, int version) {
  return RowsOf(base_tables::kCommonRelations, element.ownRelations, version);
}

const BaseRelation* InverseOf(const BaseElement& source, const BaseRelation& relation,
                              const BaseElement& target, int version) {
  if (!relation.targets.Hold(IdOf(target))) return nullptr;
  if (!relation.inverse.empty()) return FindBaseRelation(target, relation.inverse, version);
  for (const BaseRelation* back : BaseRelationsOf(target, version)) {
    if (back->inverse == relation.name && back->targets.Hold(IdOf(source)) &&
        back->relationship == InverseOf(relation.relationship)) {
      return back;
    }
  }
  return nullptr;
}

Relationship InverseOf(Relationship relationship) {
  switch (relationship) {
    case Relationship::Father:
      return Relationship::Child;
    case Relationship::Child:
      return Relationship::Father;
    case Relationship::InfoTo:
      return Relationship::InfoFrom;
    case Relationship::InfoFrom:
      return Relationship::InfoTo;
    case Relationship::InfoRel:
    case Relationship::None:
      break;
  }
  return relationship;
}

}  // namespace hv::vex::engine

#include "core/objects/InstancePath.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "core/objects/ValueText.h"
#include "core/query/TextMatch.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

struct Filter {
  std::u16string attribute;
  std::u16string value;
};

/// A part of the path between two dots; the filter closes a step.
struct Part {
  std::u16string_view text;
  std::optional<Filter> filter;
};

[[noreturn]] void ThrowBadPath(std::u16string_view path, std::u16string_view reason) {
  throw Exception(errc::kInvalidArgument,
                  WString(u"path \"" + std::u16string(path) + u"\": " + std::u16string(reason)));
}

/// Reads "(attribute='value')" at `at` and moves behind it.
Filter ReadFilter(std::u16string_view path, std::size_t& at) {
  const std::size_t equals = path.find(u'=', at);
  if (equals == path.npos || equals + 1 >= path.size() || path[equals + 1] != u'\'') {
    ThrowBadPath(path, u"a condition has the form (attribute='value')");
  }
  Filter filter;
  filter.attribute = std::u16string(path.substr(at + 1, equals - at - 1));
  for (at = equals + 2;; ++at) {
    if (at >= path.size()) ThrowBadPath(path, u"a quoted value has no end");
    if (path[at] == u'\'') {
      if (at + 1 < path.size() && path[at + 1] == u'\'') {
        ++at;
      } else {
        break;
      }
    }
    filter.value += path[at];
  }
  ++at;
  if (at >= path.size() || path[at] != u')') ThrowBadPath(path, u"a condition has no end");
  ++at;
  return filter;
}

std::vector<Part> SplitPath(std::u16string_view path, std::size_t at) {
  std::vector<Part> parts;
  if (at == path.size()) return parts;
  for (;;) {
    const std::size_t end = std::min(path.find_first_of(u".(", at), path.size());
    Part part{path.substr(at, end - at), std::nullopt};
    at = end;
    if (part.text.empty()) ThrowBadPath(path, u"a name is missing");
    if (at < path.size() && path[at] == u'(') part.filter = ReadFilter(path, at);
    parts.push_back(std::move(part));
    if (at == path.size()) return parts;
    if (path[at] != u'.') ThrowBadPath(path, u"a dot is missing behind a condition");
    ++at;
  }
}

/// Finds the longest run of parts from `first` that names something; a part with a condition ends a
/// name. Gives what `find` gave and the number of parts used.
template <class Find>
auto LongestName(const std::vector<Part>& parts, std::size_t first, std::size_t* used, Find&& find)
    -> decltype(find(std::u16string_view())) {
  std::vector<std::u16string> names;
  std::u16string name;
  for (std::size_t i = first; i < parts.size(); ++i) {
    if (i > first) name += u'.';
    name += parts[i].text;
    names.push_back(name);
    if (parts[i].filter) break;
  }
  for (std::size_t count = names.size(); count > 0; --count) {
    if (auto found = find(names[count - 1])) {
      *used = count;
      return found;
    }
  }
  return {};
}

/// Keeps the records whose attribute has the value, compared as texts without regard to case.
std::vector<RecordId> Keep(const RecordStore& store, EntityId entityId, std::vector<RecordId> ids,
                           const Filter& filter) {
  const Entity& entity = store.GetModel()->At(entityId);
  const std::int32_t index = entity.FindAttribute(filter.attribute);
  if (index == kNone) {
    throw Exception(errc::kUnknownName,
                    WString(u"the entity \"" + entity.name + u"\" has no attribute \"" +
                            filter.attribute + u"\""));
  }
  const Attribute& attribute = entity.attributes[static_cast<std::size_t>(index)];
  const EnumPtr enumeration =
      attribute.enumeration == kNone
          ? nullptr
          : &store.GetModel()->Enumerations()[static_cast<std::size_t>(attribute.enumeration)];
  const std::u16string wanted = FoldCase(filter.value);
  const std::vector<ColumnBlock> blocks = store.ReadColumns(entityId, ids, {&index, 1});
  const ColumnBlock& block = blocks.front();
  std::vector<RecordId> kept;
  std::u16string buffer;
  std::u16string text;
  for (std::size_t row = 0; row < ids.size(); ++row) {
    if (block.isNull[row]) continue;
    std::u16string_view value;
    if (!block.textEnds.empty()) {
      value = block.TextAt(row);
    } else {
      text.clear();
      if (!block.integers.empty()) {
        IntegerAsText(attribute.type, block.integers[row], enumeration, text);
      } else if (!block.reals.empty()) {
        RealAsText(attribute.type, block.reals[row * PartsOf(attribute.type)], text);
      } else {
        continue;
      }
      value = text;
    }
    if (FoldCase(value, buffer) == wanted) kept.push_back(ids[row]);
  }
  return kept;
}

RecordRuns Filtered(const RecordStore& store, RecordRuns records,
                    const std::optional<Filter>& filter) {
  if (!filter) return records;
  RecordRuns kept;
  for (const RecordRuns::Run& run : records.Runs()) {
    kept.Append(run.entity, Keep(store, run.entity, run.ids, *filter));
  }
  return kept;
}

/// The condition as a query, which a store may answer from an index; nothing for values that are no
/// texts.
std::optional<BoundQuery> QueryOf(const Model& model, EntityId entity, const Filter& filter) {
  const std::int32_t attribute = model.At(entity).FindAttribute(filter.attribute);
  if (attribute == kNone) return std::nullopt;
  const Attribute& definition = model.At(entity).attributes[static_cast<std::size_t>(attribute)];
  if (definition.type != OdsType::String || definition.sequence) return std::nullopt;
  BoundQuery query;
  query.entity = entity;
  query.hasCondition = true;
  query.condition.kind = BoundNode::Kind::Compare;
  query.condition.op = QueryOp::Equal;
  query.condition.path.target = entity;
  query.condition.path.attribute = attribute;
  query.condition.constant.text = FoldCase(filter.value);
  query.condition.constant.ignoreCase = true;
  return query;
}

RecordRuns AllOfEntity(const RecordStore& store, EntityId entity,
                       const std::optional<Filter>& filter) {
  RecordRuns records;
  for (const EntityId id : store.GetModel()->ApplicationEntitiesOf(entity)) {
    const auto query = filter ? QueryOf(*store.GetModel(), id, *filter) : std::nullopt;
    if (query) {
      records.Append(id, store.Select(*query));
    } else {
      records.Append(id, filter ? Keep(store, id, store.AllOf(id), *filter) : store.AllOf(id));
    }
  }
  return records;
}

struct RecordHash {
  std::size_t operator()(const RecordRef& record) const {
    return std::hash<RecordId>()(record.id) * 31 + record.entity;
  }
};

/// What the references that the parts name from `at` on lead to, and what of that meets the
/// condition behind them.
RecordRuns Step(const RecordStore& store, const RecordRuns& from, const std::vector<Part>& parts,
                std::size_t at, std::size_t* used, std::u16string_view path) {
  RecordRuns reached;
  std::unordered_set<RecordRef, RecordHash> seen;
  *used = 1;
  for (const RecordRuns::Run& run : from.Runs()) {
    const Entity& entity = store.GetModel()->At(run.entity);
    const auto relation =
        LongestName(parts, at, used, [&](std::u16string_view name) -> std::optional<std::int32_t> {
          const std::int32_t found = entity.FindRelation(name);
          return found == kNone ? std::nullopt : std::optional(found);
        });
    if (!relation) {
      throw Exception(
          errc::kUnknownName,
          WString(u"path \"" + std::u16string(path) + u"\": the entity \"" + entity.name +
                  u"\" has no reference \"" + std::u16string(parts[at].text) + u"\""));
    }
    const std::optional<Filter>& filter = parts[at + *used - 1].filter;
    const EntityId target = entity.relations[static_cast<std::size_t>(*relation)].target;
    if (filter && from.Size() == 1 && !store.GetModel()->At(target).isBase) {
      if (auto query = QueryOf(*store.GetModel(), target, *filter)) {
        query->start = BoundStart{run.entity, *relation, run.ids.front()};
        reached.Append(target, store.Select(*query));
        return reached;
      }
    }
    const std::vector<Link> links = store.Follow(run.entity, *relation, run.ids);
    // One record's targets can't repeat; those of several may.
    const bool mayRepeat = from.Size() > 1;
    for (const Link& link : links) {
      if (!mayRepeat || seen.insert(link.target).second) reached.Append(link.target);
    }
  }
  return Filtered(store, std::move(reached), parts[at + *used - 1].filter);
}

}  // namespace

std::int32_t OnlyStep(const Entity& entity, std::u16string_view path) {
  if (path.starts_with(u"/#") || path.find(u'(') != path.npos) return kNone;
  return entity.FindRelation(path);
}

RecordRuns FollowPath(const RecordStore& store, std::optional<RecordRef> start,
                      std::u16string_view path) {
  const Model& model = *store.GetModel();
  RecordRuns records;
  std::vector<Part> parts;
  std::size_t at = 0;
  std::size_t used = 0;
  if (path.starts_with(u"/#")) {
    const bool anyCase = path.starts_with(u"/##");
    parts = SplitPath(path, anyCase ? 3 : 2);
    if (parts.empty()) ThrowBadPath(path, u"a name is missing");
    const Entity* entity = LongestName(parts, 0, &used, [&](std::u16string_view name) {
      return anyCase ? model.FindAnyCase(name) : model.Find(name);
    });
    if (!entity) {
      throw Exception(errc::kUnknownName,
                      WString(u"path \"" + std::u16string(path) + u"\": there is no such entity"));
    }
    records = AllOfEntity(store, entity->id, parts[used - 1].filter);
    at = used;
  } else {
    if (!start) ThrowBadPath(path, u"an absolute path begins with /# or /##");
    parts = SplitPath(path, 0);
    if (parts.empty()) ThrowBadPath(path, u"it is empty");
    records.Append(*start);
  }
  while (at < parts.size()) {
    records = Step(store, records, parts, at, &used, path);
    at += used;
  }
  return records;
}

}  // namespace hv::vex::engine

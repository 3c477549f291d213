// core/plugins/atfx/LocalColumns.cpp - where the values of a column are, decided in a fixed order.
#include "core/plugins/atfx/LocalColumns.h"

#include "core/plugins/atfx/AsciiText.h"
#include "core/plugins/atfx/Representation.h"
#include "core/plugins/atfx/WantedTypes.h"
#include "core/store/memory/Failure.h"

#include <algorithm>
#include <tuple>

namespace hv::vex::engine::atfx {

namespace {

bool AnyDiffers(const InlineValues& flags, std::int64_t from) {
  constexpr std::uint64_t kAtOnce = 1 << 16;
  const auto source = flags.Open();
  std::vector<std::int64_t> numbers;
  for (std::uint64_t first = 0; first < source->Count(); first += kAtOnce) {
    numbers.resize(static_cast<std::size_t>(std::min(kAtOnce, source->Count() - first)));
    source->ReadIntegers(first, numbers);
    if (std::any_of(numbers.begin(), numbers.end(), [&](std::int64_t n) { return n != from; })) {
      return true;
    }
  }
  return false;
}

std::u16string NumberText(std::uint64_t number) {
  return DecimalText(static_cast<std::int64_t>(number));
}

void NameFile(Component* component, const FileSection& files) {
  const auto found = files.find(component->fileName);
  if (found != files.end()) component->fileName = found->second;
}

}  // namespace

void LocalColumns::AddColumn(EntityId entity, Row row, RecordId id, Draft&& draft) {
  Column column{{entity, id}, row, draft.representation, std::move(draft.values), false, nullptr};
  column.hasOwnFlags = draft.flags || !draft.flagComponents.empty();
  if (draft.globalFlag && ((draft.flags && AnyDiffers(draft.flags, *draft.globalFlag)) ||
                           !draft.flagComponents.empty())) {
    m_context.Warn(Join({u"column '", draft.name, u"' has a global flag and single flags"}));
  }
  if (column.values) {
    column.values.GiveAsValues(m_builder, entity, row);
    ShowAsExplicit(column);
  }
  if (draft.flags) {
    draft.flags.GiveAsFlags(m_builder, entity, row);
    draft.flagComponents.clear();
  }
  if (column.values) draft.valueComponents.clear();
  if (!draft.valueComponents.empty() || !draft.flagComponents.empty()) {
    column.outside = std::make_shared<Outside>();
    column.outside->files = m_files;
    column.outside->values = std::move(draft.valueComponents);
    column.outside->flags = std::move(draft.flagComponents);
    column.outside->name = std::move(draft.name);
    column.outside->hasOwnValues = !column.outside->values.empty();
  }
  m_columns.push_back(std::move(column));
}

bool LocalColumns::SetExternalAttribute(External* external, std::u16string_view baseName,
                                        std::u16string_view text) {
  text = Trim(text);
  if (text.empty()) return true;
  Component& values = external->values;
  if (baseName == u"filename_url") {
    values.fileName = text;
    return true;
  }
  if (baseName == u"flags_filename_url") {
    external->flagsFile = text;
    return true;
  }
  const std::optional<std::int64_t> number = ParseInteger(text);
  if (baseName == u"value_type") {
    values.typespec = number ? FindTypespec(*number) : FindTypespec(text);
    return values.typespec != nullptr;
  }
  struct Row {
    std::u16string_view name;
    std::uint64_t* target;
  };
  std::uint64_t bitCount = values.bitCount;
  std::uint64_t bitOffset = values.bitOffset;
  std::uint64_t ordinal = 0;
  const Row rows[] = {
      {u"component_length", &values.length},  {u"start_offset", &values.offset},
      {u"block_size", &values.blockSize},     {u"valuesperblock", &values.valuesPerBlock},
      {u"value_offset", &values.valueOffset}, {u"flags_start_offset", &external->flagsOffset},
      {u"ao_bit_count", &bitCount},           {u"ao_bit_offset", &bitOffset},
      {u"ordinal_number", &ordinal},
  };
  for (const Row& row : rows) {
    if (row.name != baseName) continue;
    if (!number || *number < 0) return false;
    *row.target = static_cast<std::uint64_t>(*number);
    values.bitCount = static_cast<std::uint32_t>(std::min<std::uint64_t>(bitCount, 1000));
    values.bitOffset = static_cast<std::uint32_t>(std::min<std::uint64_t>(bitOffset, 1000));
    if (row.target == &ordinal) external->ordinal = *number;
    return true;
  }
  return true;
}

void LocalColumns::AddExternal(RecordRef record, External&& external) {
  // What an AoFile record told of this component before it came.
  if (const auto known = m_externals.find(record); known != m_externals.end()) {
    if (!external.valuesFile) external.valuesFile = known->second.valuesFile;
    if (!external.flagsFileRecord) external.flagsFileRecord = known->second.flagsFileRecord;
  }
  m_externals[record] = std::move(external);
}

void LocalColumns::LinkFile(RecordRef file, RecordRef external, bool isFlags) {
  External& known = m_externals[external];
  std::optional<RecordRef>& link = isFlags ? known.flagsFileRecord : known.valuesFile;
  if (!link) link = file;
}

void LocalColumns::SetFileLocation(RecordRef file, std::u16string_view location) {
  m_locations[file] = location;
}

void LocalColumns::ShowAsExplicit(const Column& column) {
  if (!column.representation) return;
  const std::int64_t shown = StoredInside(*column.representation);
  if (shown == *column.representation) return;
  const EntityId entity = column.record.entity;
  const std::int32_t attribute =
      m_builder.GetModel().At(entity).FindBaseAttribute(u"sequence_representation");
  if (attribute != kNone) m_builder.SetInteger(entity, column.row, attribute, shown);
}

void LocalColumns::AttachOutside(const FileSection& files) {
  for (Column& column : m_columns) {
    if (!column.outside) continue;
    for (Component& component : column.outside->values) NameFile(&component, files);
    for (Component& component : column.outside->flags) NameFile(&component, files);
  }
  AttachExternals();
  for (Column& column : m_columns) {
    if (!column.outside) continue;
    std::shared_ptr<const Outside> outside = column.outside;
    if (!outside->values.empty()) {
      m_builder.SetValues(column.record.entity, column.row, [outside] {
        return OpenComponents(*outside->files, outside->values, outside->wanted, outside->name);
      });
      ShowAsExplicit(column);
    }
    if (!outside->flags.empty()) {
      m_builder.SetFlags(column.record.entity, column.row,
                         [outside] { return OpenFlags(*outside); });
    }
  }
}

void LocalColumns::AttachExternals() {
  if (m_links.empty()) return;
  std::unordered_map<RecordRef, std::size_t, RefHash> positions;
  for (std::size_t i = 0; i < m_columns.size(); ++i) positions.emplace(m_columns[i].record, i);
  const auto orderOf = [&](const ExternalLink& link) {
    const auto found = m_externals.find(link.external);
    return found == m_externals.end() ? 0 : found->second.ordinal;
  };
  std::stable_sort(m_links.begin(), m_links.end(), [&](const auto& a, const auto& b) {
    return std::tuple(a.column.entity, a.column.id, orderOf(a), a.external.id) <
           std::tuple(b.column.entity, b.column.id, orderOf(b), b.external.id);
  });
  const ExternalLink* previous = nullptr;
  for (const ExternalLink& link : m_links) {
    const bool isRepeated =
        previous && previous->column == link.column && previous->external == link.external;
    previous = &link;
    if (isRepeated) continue;
    const auto column = positions.find(link.column);
    const auto external = m_externals.find(link.external);
    if (column == positions.end() || external == m_externals.end() ||
        !external->second.values.typespec) {
      m_context.WarnGenerally(Join({u"external component ", DecimalText(link.external.id),
                                    u" of column ", DecimalText(link.column.id), u" dropped"}));
      continue;
    }
    AttachExternal(&m_columns[column->second], external->second);
  }
}

void LocalColumns::ResolveFile(External* external) const {
  const auto locate = [&](const std::optional<RecordRef>& file, std::u16string* name) {
    if (!name->empty() || !file) return;
    const auto found = m_locations.find(*file);
    if (found != m_locations.end()) *name = found->second;
  };
  locate(external->valuesFile, &external->values.fileName);
  locate(external->flagsFileRecord, &external->flagsFile);
}

void LocalColumns::AttachExternal(Column* column, External external) {
  if (column->values) return;
  if (!column->outside) {
    column->outside = std::make_shared<Outside>();
    column->outside->files = m_files;
    column->outside->name = DecimalText(column->record.id);
  }
  Outside& outside = *column->outside;
  if (outside.hasOwnValues) return;
  ResolveFile(&external);
  const bool hasFlags = !external.flagsFile.empty();
  if (!column->hasOwnFlags && hasFlags && outside.flags.size() == outside.values.size()) {
    Component flags;
    flags.fileName = external.flagsFile;
    flags.typespec =
        FindTypespec(external.values.typespec->bigEndianFlags ? u"dt_short_beo" : u"dt_short");
    flags.offset = external.flagsOffset;
    outside.flags.push_back(std::move(flags));
    outside.countFlagsByValues = true;
  } else if (outside.countFlagsByValues) {
    m_context.WarnGenerally(
        Join({u"column ", DecimalText(column->record.id), u" has flags for a part of its values"}));
  }
  outside.values.push_back(std::move(external.values));
}

std::unique_ptr<ValueSource> LocalColumns::OpenFlags(const Outside& outside) {
  std::vector<Component> flags = outside.flags;
  if (outside.countFlagsByValues) {
    for (std::size_t i = 0; i < flags.size(); ++i) {
      const auto values =
          OpenComponents(*outside.files, {outside.values[i]}, outside.wanted, outside.name);
      flags[i].length = values->Count();
    }
  }
  return OpenComponents(*outside.files, flags, OdsType::Short, outside.name);
}

void LocalColumns::Complete(const MemoryStore& store) {
  std::map<EntityId, std::vector<std::size_t>> positions;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    if (!m_columns[i].values && !m_columns[i].outside) continue;
    positions[m_columns[i].record.entity].push_back(i);
  }
  for (const auto& [entity, list] : positions) {
    FindWantedTypes(store, list, entity);
    CheckRows(store, list, entity);
  }
}

void LocalColumns::FindWantedTypes(const MemoryStore& store,
                                   const std::vector<std::size_t>& positions, EntityId entity) {
  std::vector<std::size_t> outside;
  std::vector<RecordId> ids;
  for (const std::size_t position : positions) {
    if (!m_columns[position].outside) continue;
    outside.push_back(position);
    ids.push_back(m_columns[position].record.id);
  }
  const std::vector<OdsType> types = WantedTypes(store, entity, ids);
  for (std::size_t i = 0; i < outside.size(); ++i) m_columns[outside[i]].outside->wanted = types[i];
}

std::optional<std::uint64_t> LocalColumns::CountOf(const Column& column) {
  if (column.values) return column.values.Count();
  if (!column.outside) return std::nullopt;
  std::uint64_t count = 0;
  for (const Component& component : column.outside->values) {
    if (!component.typespec) return std::nullopt;
    const OdsType type =
        TypeOfStorage(*component.typespec, column.outside->wanted, component.bitCount);
    const std::optional<std::uint64_t> claimed = ClaimedCount(component, type);
    if (!claimed) return std::nullopt;
    count += *claimed;
  }
  return count;
}

void LocalColumns::CheckRows(const MemoryStore& store, const std::vector<std::size_t>& positions,
                             EntityId entity) {
  const Model& model = *store.GetModel();
  const std::int32_t relation = model.At(entity).FindBaseRelation(u"submatrix");
  if (relation == kNone) return;
  const EntityId matrices = model.At(entity).relations[static_cast<std::size_t>(relation)].target;
  const std::int32_t rows = model.At(matrices).FindBaseAttribute(u"number_of_rows");
  if (rows == kNone) return;
  std::vector<RecordId> ids;
  ids.reserve(positions.size());
  for (const std::size_t position : positions) ids.push_back(m_columns[position].record.id);
  const std::vector<Link> links = store.Follow(entity, relation, ids);
  std::vector<RecordId> targets;
  targets.reserve(links.size());
  for (const Link& link : links) targets.push_back(link.target.id);
  const std::int32_t attributes[] = {rows};
  const ColumnBlock block = store.ReadColumns(matrices, targets, attributes)[0];
  for (std::size_t i = 0; i < links.size() && i < block.integers.size(); ++i) {
    const Column& column = m_columns[positions[links[i].source]];
    if (block.isNull[i] != 0 || IsImplicit(column.representation.value_or(0))) continue;
    const std::optional<std::uint64_t> count = CountOf(column);
    if (!count || *count == static_cast<std::uint64_t>(block.integers[i])) continue;
    m_context.WarnGenerally(
        Join({u"column ", DecimalText(column.record.id), u" of ", model.At(entity).name, u" has ",
              NumberText(*count), u" values, its sub matrix tells ", DecimalText(block.integers[i]),
              u" rows"}));
  }
}

}  // namespace hv::vex::engine::atfx

#include "core/objects/BulkTable.h"

#include "core/objects/Guard.h"
#include "core/objects/InstanceKey.h"
#include "core/objects/InstanceLists.h"
#include "store/core/IInstance.h"

namespace hv::vex::engine {
namespace {

constexpr std::u16string_view kInstanceColumn = u"HV_VEX_INSTANCE";

EnumPtr EnumerationOf(const Model& model, EntityId entity, std::int32_t attribute) {
  const std::int32_t index =
      model.At(entity).attributes[static_cast<std::size_t>(attribute)].enumeration;
  return index == kNone ? nullptr : &model.Enumerations()[static_cast<std::size_t>(index)];
}

}  // namespace

BulkTable::BulkTable(Ref<StoreObject> store, RecordRuns rows,
                     const std::vector<std::u16string>& attributes)
    : BulkTable(std::move(store), std::move(rows), attributes, nullptr) {}

BulkTable::BulkTable(Ref<StoreObject> store, RecordRuns rows,
                     const std::vector<std::u16string>& attributes,
                     const std::function<Blocks(EntityId)>& blocksOf)
    : m_store(std::move(store)),
      m_readAt(m_store->Now()),
      m_batch(MakeRef<RecordBatch>(std::move(rows))),
      m_columns(attributes.size()) {
  const Model& model = m_store->GetCoreModel();
  for (const RecordRuns::Run& run : Rows().Runs()) {
    std::vector<std::int32_t> ownAttributes;  // read together, in one question to the store
    std::vector<std::size_t> ownColumns;
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      m_columns[i].pieces.emplace_back();
      if (attributes[i] == kInstanceColumn) continue;
      const auto path = model.Resolve(run.entity, attributes[i], true);
      if (!path) continue;
      m_columns[i].type =
          model.At(path->target).attributes[static_cast<std::size_t>(path->attribute)].type;
      if (path->steps.empty()) {
        ownAttributes.push_back(path->attribute);
        ownColumns.push_back(i);
      } else {
        m_columns[i].pieces.back() = ReadPiece(run, *path);
      }
    }
    if (ownAttributes.empty()) continue;
    TakeOwnColumns(run, ownAttributes, ownColumns,
                   blocksOf ? blocksOf(run.entity)
                            : m_store->Records().ReadColumns(run.entity, run.ids, ownAttributes));
  }
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (m_columns[i].type == OdsType::Unknown && attributes[i] != kInstanceColumn &&
        Rows().Size() > 0) {
      throw Exception(errc::kUnknownName,
                      WString(u"there is no attribute \"" + attributes[i] + u"\""));
    }
  }
}

std::vector<std::int32_t> BulkTable::OwnAttributes(const Model& model, EntityId entity,
                                                   const std::vector<std::u16string>& attributes) {
  std::vector<std::int32_t> own;
  for (const std::u16string& attribute : attributes) {
    if (attribute == kInstanceColumn) continue;
    const auto path = model.Resolve(entity, attribute, true);
    if (path && path->steps.empty()) own.push_back(path->attribute);
  }
  return own;
}

void BulkTable::TakeOwnColumns(const RecordRuns::Run& run,
                               const std::vector<std::int32_t>& attributes,
                               const std::vector<std::size_t>& columns, Blocks blocks) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    Piece& piece = m_columns[columns[i]].pieces.back();
    piece.block = std::move(blocks[i]);
    piece.enumeration = EnumerationOf(m_store->GetCoreModel(), run.entity, attributes[i]);
  }
}

BulkTable::Piece BulkTable::ReadPiece(const RecordRuns::Run& run, const ResolvedPath& path) {
  Piece piece;
  std::vector<RecordId> ids = run.ids;
  piece.rowOf.resize(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) piece.rowOf[i] = static_cast<std::uint32_t>(i);
  for (const PathStep& step : path.steps) {
    const std::vector<Link> links = m_store->Records().Follow(step.source, step.relation, ids);
    std::vector<RecordId> targets;
    std::vector<std::uint32_t> targetOf(ids.size(), kNoRow);
    for (const Link& link : links) {
      if (targetOf[link.source] != kNoRow) continue;
      targetOf[link.source] = static_cast<std::uint32_t>(targets.size());
      targets.push_back(link.target.id);
    }
    for (std::uint32_t& row : piece.rowOf) {
      if (row != kNoRow) row = targetOf[row];
    }
    ids = std::move(targets);
  }
  piece.block =
      std::move(m_store->Records().ReadColumns(path.target, ids, {&path.attribute, 1}).front());
  piece.enumeration = EnumerationOf(m_store->GetCoreModel(), path.target, path.attribute);
  return piece;
}

bool BulkTable::Find(std::uint64_t row, std::uint64_t column, Cell& cell) const {
  if (row >= Rows().Size() || column >= m_columns.size()) {
    throw Exception(errc::kInvalidArgument, u"row or column out of range");
  }
  const auto& runs = Rows().Runs();
  std::size_t at = 0;
  while (at + 1 < runs.size() && runs[at + 1].first <= row) ++at;
  const Piece& piece = m_columns[column].pieces[at];
  std::size_t inRun = static_cast<std::size_t>(row - runs[at].first);
  if (!piece.rowOf.empty()) {
    if (piece.rowOf[inRun] == kNoRow) return false;
    inRun = piece.rowOf[inRun];
  }
  if (inRun >= piece.block.Rows() || piece.block.isNull[inRun]) return false;
  cell = {&piece, inRun};
  return true;
}

std::int32_t BulkTable::GetColumnType(std::uint64_t column) {
  if (column >= m_columns.size()) {
    throw Exception(errc::kInvalidArgument, u"row or column out of range");
  }
  return SeamTypeOf(m_columns[column].type);
}

IInstance* BulkTable::GetInstance(std::uint64_t row) {
  if (row >= Rows().Size()) return nullptr;
  return Seam([&] { return m_store->InstanceAt(*m_batch, row, m_readAt); });
}

IInstList* BulkTable::GetInstances() {
  return Seam([&] { return new RecordList(m_store, m_batch); });
}

void BulkTable::GetKey(std::uint64_t row, WString& key) {
  key.clear();
  if (row >= Rows().Size()) return;
  Seam([&] {
    m_text.clear();
    AppendKey(m_store->GetCoreModel(), Rows().At(row), m_text);
    key = std::u16string_view(m_text);
  });
}

std::int32_t BulkTable::IsNull(std::uint64_t row, std::uint64_t column) {
  Cell cell;
  return Find(row, column, cell) ? 0 : 1;
}

std::u16string_view BulkTable::GetText(std::uint64_t row, std::uint64_t column) {
  return Seam([&]() -> std::u16string_view {
    Cell cell;
    if (!Find(row, column, cell)) return {};
    const ColumnBlock& block = cell.piece->block;
    if (!block.textEnds.empty()) return block.TextAt(cell.row);
    m_text.clear();
    if (!block.integers.empty()) {
      IntegerAsText(block.type, block.integers[cell.row], cell.piece->enumeration, m_text);
    } else if (!block.reals.empty()) {
      RealAsText(block.type, block.reals[cell.row * PartsOf(block.type)], m_text);
    } else {
      ElementAsText(block.others[cell.row], 0, cell.piece->enumeration, m_text);
    }
    return m_text;
  });
}

std::int64_t BulkTable::GetInteger(std::uint64_t row, std::uint64_t column) {
  return Seam([&]() -> std::int64_t {
    Cell cell;
    if (!Find(row, column, cell)) return 0;
    const ColumnBlock& block = cell.piece->block;
    if (!block.integers.empty()) return block.integers[cell.row];
    if (!block.reals.empty()) {
      return ElementAsInteger(
          Value::Real(OdsType::Double, block.reals[cell.row * PartsOf(block.type)]), 0);
    }
    if (!block.textEnds.empty()) {
      return ElementAsInteger(Value::Text(OdsType::String, std::u16string(block.TextAt(cell.row))),
                              0);
    }
    return ElementAsInteger(block.others[cell.row], 0);
  });
}

double BulkTable::GetReal(std::uint64_t row, std::uint64_t column) {
  return Seam([&]() -> double {
    Cell cell;
    if (!Find(row, column, cell)) return 0;
    const ColumnBlock& block = cell.piece->block;
    if (!block.reals.empty()) return block.reals[cell.row * PartsOf(block.type)];
    if (!block.integers.empty()) return static_cast<double>(block.integers[cell.row]);
    if (!block.textEnds.empty()) {
      return ElementAsReal(Value::Text(OdsType::String, std::u16string(block.TextAt(cell.row))), 0);
    }
    return ElementAsReal(block.others[cell.row], 0);
  });
}

void BulkTable::ReadScalar(std::uint64_t row, std::uint64_t column, ScalarValue* value) {
  Cell cell;
  const bool isSet = Find(row, column, cell);
  *value = {SeamTypeOf(m_columns[column].type), isSet};
  if (!isSet) return;
  const ColumnBlock& block = cell.piece->block;
  if (block.type == OdsType::Enum || !block.others.empty()) {
    value->text = GetText(row, column);
    if (StorageKindOf(block.type) == StorageKind::Integer) value->integer = GetInteger(row, column);
    if (StorageKindOf(block.type) == StorageKind::Real) value->real = GetReal(row, column);
  } else if (!block.textEnds.empty()) {
    value->text = block.TextAt(cell.row);
  } else if (!block.integers.empty()) {
    value->integer = block.integers[cell.row];
  } else {
    value->real = block.reals[cell.row * PartsOf(block.type)];
  }
}

}  // namespace hv::vex::engine

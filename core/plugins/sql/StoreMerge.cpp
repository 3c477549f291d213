// core/plugins/sql/StoreMerge.cpp - matches the models, then copies records, then links.
#include "core/plugins/sql/StoreMerge.h"

#include <algorithm>
#include <unordered_map>

#include "core/plugins/sql/Cells.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine::sql {
namespace {

constexpr std::size_t kBatch = 1024;

template <class Use>
void ForEachBatch(const std::vector<RecordId>& ids, Use use) {
  for (std::size_t at = 0; at < ids.size(); at += kBatch) {
    use(std::span(ids).subspan(at, std::min(kBatch, ids.size() - at)));
  }
}

std::int32_t ExactRelation(const Entity& entity, std::u16string_view name) {
  for (std::size_t r = 0; r < entity.relations.size(); ++r) {
    if (entity.relations[r].name == name) return static_cast<std::int32_t>(r);
  }
  return kNone;
}

std::int32_t ExactAttribute(const Entity& entity, std::u16string_view name) {
  for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
    if (entity.attributes[a].name == name) return static_cast<std::int32_t>(a);
  }
  return kNone;
}

class StoreMerger final {
 public:
  StoreMerger(const RecordStore& source, RecordStore& target)
      : m_source(source), m_target(target), m_model(*source.GetModel()) {}

  void Merge() {
    m_entities.resize(m_model.Entities().size());
    for (const Entity& entity : m_model.Entities()) {
      if (!entity.isBase && m_source.CountOf(entity.id) != 0) Match(entity);
    }
    if (!m_misfits.empty()) {
      Fail(errc::kWrongType, {u"the stores' models don't fit: ", m_misfits});
    }
    try {
      for (const Entity& entity : m_model.Entities()) CopyRecords(entity);
      for (const Entity& entity : m_model.Entities()) CopyLinks(entity);
      m_target.Save(u"");
    } catch (...) {
      m_target.Discard();
      throw;
    }
  }

 private:
  struct Counterpart {
    EntityId entity = kNoEntity;
    std::vector<std::int32_t> attributes, relations;  // of the target, by index in the source
    std::unordered_map<RecordId, RecordId> ids;
  };

  void Misfit(std::initializer_list<std::u16string_view> parts) {
    if (!m_misfits.empty()) m_misfits += u"; ";
    for (const std::u16string_view part : parts) m_misfits += part;
  }

  void Match(const Entity& entity) {
    const Entity* found = m_target.GetModel()->Find(entity.name);
    if (found == nullptr || found->isBase) return Misfit({u"there is no element ", entity.name});
    Counterpart& match = m_entities[entity.id];
    match.entity = found->id;
    for (const Attribute& attribute : entity.attributes) {
      const std::int32_t index = ExactAttribute(*found, attribute.name);
      match.attributes.push_back(index);
      if (index == kNone) {
        Misfit({entity.name, u" has no attribute ", attribute.name});
        continue;
      }
      const Attribute& other = found->attributes[static_cast<std::size_t>(index)];
      if (other.type == attribute.type && other.sequence == attribute.sequence) continue;
      Misfit({entity.name, u".", attribute.name, u" is of type ",
              NameOfType(other.type, other.sequence), u", not ",
              NameOfType(attribute.type, attribute.sequence)});
    }
    for (const Relation& relation : entity.relations) {
      const std::int32_t index = ExactRelation(*found, relation.name);
      match.relations.push_back(index);
      const std::u16string& target = m_model.At(relation.target).name;
      if (index == kNone) {
        Misfit({entity.name, u" has no relation ", relation.name});
        continue;
      }
      const Relation& other = found->relations[static_cast<std::size_t>(index)];
      if (m_target.GetModel()->At(other.target).name != target) {
        Misfit({entity.name, u".", relation.name, u" doesn't lead to ", target});
      } else if (relation.ToMany() && !other.ToMany()) {
        Misfit({entity.name, u".", relation.name, u" leads to one record only"});
      }
    }
  }

  void CopyRecords(const Entity& entity) {
    Counterpart& match = m_entities[entity.id];
    if (match.entity == kNoEntity) return;
    std::vector<std::int32_t> attributes;
    for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
      if (static_cast<std::int32_t>(a) != entity.idAttribute) {
        attributes.push_back(static_cast<std::int32_t>(a));
      }
    }
    const bool isLocalColumn = m_model.BaseNameOf(entity.id) == u"aolocalcolumn";
    ForEachBatch(m_source.AllOf(entity.id), [&](std::span<const RecordId> ids) {
      const std::vector<ColumnBlock> blocks = m_source.ReadColumns(entity.id, ids, attributes);
      for (std::size_t row = 0; row < ids.size(); ++row) {
        const RecordRef made{match.entity, m_target.Create(match.entity)};
        match.ids.emplace(ids[row], made.id);
        for (std::size_t b = 0; b < blocks.size(); ++b) {
          if (blocks[b].isNull[row] != 0) continue;
          m_target.Write(made, match.attributes[static_cast<std::size_t>(attributes[b])],
                         ValueAt(blocks[b], row));
        }
        for (const InstanceAttribute& attribute :
             m_source.InstanceAttributesOf({entity.id, ids[row]})) {
          m_target.SetInstanceAttribute(made, attribute);
        }
        if (isLocalColumn) CopyValues({entity.id, ids[row]}, made);
      }
    });
  }

  void CopyValues(RecordRef from, RecordRef to) {
    const auto values = m_source.OpenValues(from);
    // An implicit column gives its parameters, which were written as an attribute.
    if (values == nullptr || m_target.OpenValues(to) != nullptr) return;
    const auto flags = m_source.OpenFlags(from);
    constexpr std::uint64_t kPiece = 1 << 16;
    const std::uint64_t count = values->Count();
    const OdsType type = values->Type();
    std::uint64_t first = 0;
    do {
      const std::uint64_t size = std::min(kPiece, count - first);
      const Value piece = ReadPiece(*values, first, size);
      std::vector<std::int16_t> flagPiece;
      if (flags != nullptr && flags->Count() == count) {
        Value::Integers all(static_cast<std::size_t>(size));
        flags->ReadIntegers(first, all);
        for (const std::int64_t flag : all) flagPiece.push_back(static_cast<std::int16_t>(flag));
      }
      m_target.WriteValues(to, piece, flagPiece, first != 0);
      first += size;
    } while (first < count && type != OdsType::Unknown);
  }

  static Value ReadPiece(const ValueSource& source, std::uint64_t first, std::uint64_t size) {
    Value piece{source.Type(), true, {}};
    const std::size_t numbers = static_cast<std::size_t>(size) * PartsOf(source.Type());
    switch (StorageKindOf(source.Type())) {
      case StorageKind::Integer:
        source.ReadIntegers(first, piece.data.emplace<Value::Integers>(numbers));
        break;
      case StorageKind::Real:
        source.ReadReals(first, piece.data.emplace<Value::Reals>(numbers));
        break;
      case StorageKind::Text: {
        auto& texts = piece.data.emplace<Value::Texts>();
        source.ReadTexts(first, size, [&](std::u16string_view text) { texts.emplace_back(text); });
        break;
      }
      case StorageKind::Bytes: {
        auto& strings = piece.data.emplace<Value::ByteStrings>();
        source.ReadBytes(first, size, [&](std::span<const std::byte> bytes) {
          strings.emplace_back(bytes.begin(), bytes.end());
        });
        break;
      }
    }
    return piece;
  }

  void CopyLinks(const Entity& entity) {
    const Counterpart& match = m_entities[entity.id];
    if (match.entity == kNoEntity) return;
    for (std::size_t r = 0; r < entity.relations.size(); ++r) {
      const EntityId target = entity.relations[r].target;
      const Counterpart& other = m_entities[target];
      if (other.entity == kNoEntity) continue;
      ForEachBatch(m_source.AllOf(entity.id), [&](std::span<const RecordId> ids) {
        for (const Link& link : m_source.Follow(entity.id, static_cast<std::int32_t>(r), ids)) {
          m_target.Connect({match.entity, match.ids.at(ids[link.source])}, match.relations[r],
                           {other.entity, other.ids.at(link.target.id)});
        }
      });
    }
  }

  const RecordStore& m_source;
  RecordStore& m_target;
  const Model& m_model;
  std::vector<Counterpart> m_entities;  // by entity of the source
  std::u16string m_misfits;
};

}  // namespace

void MergeStore(const RecordStore& source, RecordStore& target) {
  StoreMerger(source, target).Merge();
}

}  // namespace hv::vex::engine::sql

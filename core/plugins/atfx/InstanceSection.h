// core/plugins/atfx/InstanceSection.h - reads the instances of an ATFX file into a store.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/plugins/atfx/ColumnContent.h"
#include "core/plugins/atfx/InstanceAttributeReader.h"
#include "core/plugins/atfx/InstanceFields.h"
#include "core/plugins/atfx/LocalColumns.h"
#include "core/plugins/atfx/ReadContext.h"
#include "core/plugins/atfx/TypedContent.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::atfx {

/// Takes the events inside `instance_data`.
class InstanceSection {
 public:
  InstanceSection(ReadContext& context, std::shared_ptr<const Model> model,
                  std::shared_ptr<ComponentFiles> files, std::shared_ptr<ValueSpool> spool);
  InstanceSection(const InstanceSection&) = delete;
  InstanceSection& operator=(const InstanceSection&) = delete;

  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes);
  void OnText(std::u16string_view text);
  void OnEnd();

  MemoryBuilder& Builder() { return m_builder; }
  /// Makes the store when the whole file is read.
  std::unique_ptr<MemoryStore> Finish(const FileSection& files, MemoryPersistence persistence);

 private:
  enum class Part : std::uint8_t { Between, Record, Scalar, Typed, Column, Attributes, Skipped };

  void BeginRecord(std::u16string_view name);
  void BeginField(std::u16string_view name);
  void EndRecord();
  void EndField();
  void EndScalar();
  void EndTyped();
  void EndColumnContent();
  void EndInteger(std::u16string_view text);
  void EndId(std::u16string_view text);
  void EndEnum(std::u16string_view text);
  void EndRelation(std::u16string_view text);
  void EndExternalField(std::u16string_view text);
  void Clear();
  void NoteText(std::u16string_view text);
  void NoteInteger(std::int64_t number);
  void LinkTo(RecordId target);
  std::u16string What() const;
  [[noreturn]] void RefuseValue(std::u16string_view text);

  ReadContext& m_context;
  MemoryBuilder m_builder;
  InstanceFields m_fields;
  TypedContent m_typed;
  ColumnContent m_columnContent;
  InstanceAttributeReader m_instanceAttributes;
  LocalColumns m_columns;

  Part m_part = Part::Between;
  Part m_skippedIn = Part::Between;  // where to go on behind a skipped tag
  int m_depth = 0;                   // inside the open field or skipped tag
  EntityFields* m_entity = nullptr;
  Field* m_field = nullptr;
  Row m_row = 0;
  std::optional<RecordId> m_id;
  std::u16string m_text;  // of the open scalar
  // Of the open record, until its id is known for sure.
  LocalColumns::Draft m_column;
  LocalColumns::External m_external;
  std::vector<std::pair<const Field*, RecordId>> m_hiddenLinks;
  std::u16string m_noted;  // name of a unit, location of a file
};

}  // namespace hv::vex::engine::atfx

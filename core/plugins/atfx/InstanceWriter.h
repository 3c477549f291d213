// core/plugins/atfx/InstanceWriter.h - writes the records of a store as ATFX.
#pragma once

#include <span>
#include <vector>

#include "core/plugins/atfx/ColumnPlan.h"
#include "core/plugins/atfx/XmlOutput.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::atfx {

/// Writes the section `instance_data`: all application elements in the order of the model, records
/// by id, read in batches.
class InstanceWriter {
 public:
  InstanceWriter(const RecordStore& source, const ColumnPlan& plan, XmlOutput& xml,
                 WatchedSteps& steps)
      : m_source(source), m_model(*source.GetModel()), m_plan(plan), m_xml(xml), m_steps(steps) {}
  InstanceWriter(const InstanceWriter&) = delete;
  InstanceWriter& operator=(const InstanceWriter&) = delete;

  void Write();

 private:
  /// One batch of records of one element with everything that was read of them.
  struct Batch;
  void WriteEntity(const Entity& entity);
  void WriteBatch(const Entity& entity, std::span<const RecordId> ids);
  void WriteRecord(Batch* batch, std::size_t row);
  void WriteAttribute(const Batch& batch, std::size_t position, std::size_t row);
  void WriteLinks(Batch* batch, std::size_t position, std::size_t row);
  void WriteColumn(const Entity& entity, RecordRef column);
  void WriteInstanceAttributes(Batch* batch, std::size_t row);
  [[nodiscard]] bool IsHidden(EntityId entity) const;

  const RecordStore& m_source;
  const Model& m_model;
  const ColumnPlan& m_plan;
  XmlOutput& m_xml;
  WatchedSteps& m_steps;
};

}  // namespace hv::vex::engine::atfx

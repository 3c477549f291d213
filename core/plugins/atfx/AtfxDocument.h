// core/plugins/atfx/AtfxDocument.h - the skeleton of an ATFX file: finds the sections and hands
// their events on.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/plugins/atfx/InstanceSection.h"
#include "core/plugins/atfx/ModelSection.h"
#include "core/plugins/atfx/ReadContext.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine::atfx {

class AtfxDocument final : public xml::ISaxHandler {
 public:
  /// \param spool  where long inline values go; null: they stay in memory.
  AtfxDocument(ReadContext& context, std::shared_ptr<ComponentFiles> files,
               std::shared_ptr<ValueSpool> spool = nullptr)
      : m_context(context),
        m_files(std::move(files)),
        m_spool(std::move(spool)),
        m_modelSection(context) {}
  AtfxDocument(const AtfxDocument&) = delete;
  AtfxDocument& operator=(const AtfxDocument&) = delete;

  // ISaxHandler
  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override;
  void OnText(std::u16string_view text) override;
  void OnEnd(std::u16string_view name) override;

  /// Makes the store when the document is read to its end.
  std::unique_ptr<MemoryStore> Finish(MemoryPersistence persistence);
  /// Names in the file section.
  [[nodiscard]] const FileSection& Files() const { return m_fileSection; }
  /// The exporter as the documentation tells it.
  [[nodiscard]] std::u16string_view Exporter() const;

 private:
  enum class Section : std::uint8_t {
    Outside,  // before the root element
    Root,
    Documentation,
    BaseVersion,
    Locale,
    Files,
    Model,
    Instances,
    Skipped,
  };

  void BeginSection(std::u16string_view name);
  void EndSection();
  void EndFileTag(std::u16string_view name);
  void EndDocumentationTag(std::u16string_view name);
  void PrepareInstances();

  ReadContext& m_context;
  std::shared_ptr<ComponentFiles> m_files;
  std::shared_ptr<ValueSpool> m_spool;
  Section m_section = Section::Outside;
  int m_depth = 0;        // inside the section
  bool m_isLeaf = false;  // no tag came since the last start tag
  bool m_hasModel = false;
  std::u16string m_text;  // since the last start tag
  std::u16string m_identifier, m_fileName;
  std::optional<std::u16string> m_baseVersion;
  std::vector<std::pair<std::u16string, std::u16string>> m_contextValues;
  FileSection m_fileSection;
  ModelSection m_modelSection;
  std::unique_ptr<InstanceSection> m_instances;
};

}  // namespace hv::vex::engine::atfx

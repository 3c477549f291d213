// core/plugins/atfx/AtfxDocument.cpp - tolerant of sections in another order, and of foreign ones.
#include "core/plugins/atfx/AtfxDocument.h"

#include "core/plugins/atfx/AsciiText.h"

namespace hv::vex::engine::atfx {

namespace {

constexpr std::u16string_view kRoot = u"atfx_file";

}  // namespace

void AtfxDocument::OnStart(std::u16string_view name,
                           std::span<const xml::AttributeView> attributes) {
  switch (m_section) {
    case Section::Outside:
      if (name != kRoot) {
        m_context.Refuse(Join({u"not an ATFX file: the root element is '", name, u"'"}));
      }
      m_section = Section::Root;
      return;
    case Section::Root:
      BeginSection(name);
      return;
    case Section::Instances:
      m_instances->OnStart(name, attributes);
      break;
    case Section::Model:
      m_modelSection.OnStart(name);
      break;
    case Section::Files:
      if (m_depth == 0) {
        m_identifier.clear();
        m_fileName.clear();
      }
      break;
    default:
      break;
  }
  ++m_depth;
  m_isLeaf = true;
  m_text.clear();
}

void AtfxDocument::OnText(std::u16string_view text) {
  switch (m_section) {
    case Section::Instances:
      m_instances->OnText(text);
      break;
    case Section::Model:
      m_modelSection.OnText(text);
      break;
    case Section::Documentation:
    case Section::BaseVersion:
    case Section::Locale:
    case Section::Files:
      m_text += text;
      break;
    default:
      break;
  }
}

void AtfxDocument::OnEnd(std::u16string_view name) {
  if (m_section == Section::Root) {
    m_context.NoteLine();
    m_section = Section::Outside;
    return;
  }
  if (m_depth == 0) {
    EndSection();
    m_section = Section::Root;
    return;
  }
  --m_depth;
  switch (m_section) {
    case Section::Instances:
      m_instances->OnEnd();
      break;
    case Section::Model:
      m_modelSection.OnEnd();
      break;
    case Section::Files:
      EndFileTag(name);
      break;
    case Section::Documentation:
      EndDocumentationTag(name);
      break;
    default:
      break;
  }
  m_isLeaf = false;
}

void AtfxDocument::BeginSection(std::u16string_view name) {
  struct Row {
    std::u16string_view name;
    Section section;
  };
  constexpr Row kSections[] = {
      {u"documentation", Section::Documentation},
      {u"base_model_version", Section::BaseVersion},
      {u"locale", Section::Locale},
      {u"files", Section::Files},
      {u"application_model", Section::Model},
      {u"instance_data", Section::Instances},
  };
  m_section = Section::Skipped;
  for (const Row& row : kSections) {
    if (row.name == name) m_section = row.section;
  }
  m_depth = 0;
  m_text.clear();
  if (m_section == Section::Skipped) {
    m_context.Warn(Join({u"unknown section '", name, u"'"}));
  } else if (m_section == Section::Model) {
    if (m_instances) m_context.Refuse(u"the application model stands behind the instance data");
    m_hasModel = true;
  } else if (m_section == Section::Instances) {
    PrepareInstances();
  }
}

void AtfxDocument::EndSection() {
  const std::u16string_view text = Trim(m_text);
  if (m_section == Section::BaseVersion) {
    m_baseVersion = text;
  } else if (m_section == Section::Locale && !text.empty()) {
    m_contextValues.emplace_back(u"locale", text);
  }
}

void AtfxDocument::EndFileTag(std::u16string_view name) {
  if (name == u"identifier") {
    m_identifier = Trim(m_text);
  } else if (name == u"filename") {
    m_fileName = Trim(m_text);
  } else if (name == u"component" && !m_fileName.empty()) {
    if (m_identifier.empty()) m_identifier = m_fileName;
    if (!m_fileSection.emplace(m_identifier, m_fileName).second) {
      m_context.Warn(Join({u"file identifier '", m_identifier, u"' given again is ignored"}));
    }
  }
}

void AtfxDocument::EndDocumentationTag(std::u16string_view name) {
  // Whatever is nested deeper is an exporter's own affair.
  if (m_depth != 0 || !m_isLeaf) return;
  const std::u16string_view text = Trim(m_text);
  if (!text.empty()) m_contextValues.emplace_back(Join({u"documentation_", name}), text);
}

void AtfxDocument::PrepareInstances() {
  if (m_instances) return;
  if (!m_hasModel) m_context.Refuse(u"the application model is missing");
  if (!m_baseVersion) m_context.Warn(u"no base model version is told; the newest one is taken");
  m_instances = std::make_unique<InstanceSection>(
      m_context, m_modelSection.Build(m_baseVersion.value_or(u"")), m_files, m_spool);
}

std::unique_ptr<MemoryStore> AtfxDocument::Finish(MemoryPersistence persistence) {
  PrepareInstances();
  for (const auto& [name, text] : m_contextValues) {
    m_instances->Builder().SetContextValue(name, text);
  }
  return m_instances->Finish(m_fileSection, std::move(persistence));
}

std::u16string_view AtfxDocument::Exporter() const {
  for (const auto& [name, text] : m_contextValues) {
    if (name == u"documentation_exporter") return text;
  }
  return {};
}

}  // namespace hv::vex::engine::atfx

// core/plugins/atfx/AtfxWriter.cpp - long columns first, then the XML, then the change of names.
#include "core/plugins/atfx/AtfxWriter.h"

#include "core/model/BaseModel.h"
#include "core/plugins/atfx/AtfxReader.h"
#include "core/plugins/atfx/ColumnPlan.h"
#include "core/plugins/atfx/ComponentWriter.h"
#include "core/plugins/atfx/InstanceWriter.h"
#include "core/plugins/atfx/ModelWriter.h"
#include "core/plugins/atfx/OwnFiles.h"
#include "core/plugins/atfx/XmlOutput.h"
#include "core/plugins/files/FileOutput.h"

#include <ctime>
#include <string>
#include <system_error>

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

constexpr std::u16string_view kContextPrefix = u"documentation_";

/// Fourteen digits, local time.
std::u16string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  localtime_r(&now, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &parts);
  return cor::FromUtf8(text).str();
}

/// Who writes now replaces who wrote before; descriptions stay.
void WriteDocumentation(const RecordStore& source, XmlOutput& xml) {
  const auto contextValues = source.ContextValues();
  xml.Start(u"documentation");
  const auto copy = [&](std::u16string_view tag) {
    for (const auto& [name, text] : contextValues) {
      if (name.size() == kContextPrefix.size() + tag.size() && name.starts_with(kContextPrefix) &&
          name.ends_with(tag)) {
        return xml.Leaf(tag, text);
      }
    }
  };
  copy(u"exported_by");
  xml.Leaf(u"exporter", kExporter);
  xml.Leaf(u"export_date_time", Now());
  xml.Leaf(u"exporter_version", kExporterVersion);
  copy(u"short_description");
  copy(u"long_description");
  xml.End();
  for (const auto& [name, text] : contextValues) {
    if (name == u"locale") xml.Leaf(u"locale", text);
  }
}

void WriteFiles(const std::vector<std::u16string>& names, XmlOutput& xml) {
  if (names.empty()) return;
  xml.Start(u"files");
  for (const std::u16string& name : names) {
    xml.Start(u"component");
    xml.Leaf(u"identifier", name);
    xml.Leaf(u"filename", name);
    xml.End();
  }
  xml.End();
}

void WriteDocument(const RecordStore& source, const ColumnPlan& plan,
                   const std::vector<std::u16string>& fileNames, FileOutput& file,
                   WatchedSteps& steps) {
  const Model& model = *source.GetModel();
  const int version = ParseBaseVersion(model.BaseModelVersion());
  file.Write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  XmlOutput xml(file);
  xml.Start(u"atfx_file");
  xml.Attribute("version", u"atfx_file: V1.3.1");
  xml.Attribute("xmlns", NamespaceOf(version));
  WriteDocumentation(source, xml);
  xml.Leaf(u"base_model_version", cor::FromUtf8("asam" + std::to_string(version)));
  WriteFiles(fileNames, xml);
  WriteModel(model, xml);
  InstanceWriter(source, plan, xml, steps).Write();
  xml.End();
  file.Write("\n");
}

/// Columns are looked at twice: for their long values, then as records.
std::uint64_t StepsOf(const RecordStore& source) {
  const Model& model = *source.GetModel();
  std::uint64_t steps = 0;
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    steps += source.CountOf(entity.id) * (model.BaseNameOf(entity.id) == u"aolocalcolumn" ? 2 : 1);
  }
  return steps;
}

}  // namespace

std::vector<std::filesystem::path> WriteAtfx(const RecordStore& source,
                                             const std::filesystem::path& target,
                                             const WriteOptions& options) {
  const std::filesystem::path real = ResolveTarget(target);
  const std::vector<std::filesystem::path> replaced = OwnComponentFilesOf(real);
  ComponentWriter components(real, options.largestComponentFile, replaced);
  FileOutput file = FileOutput::Beside(real);
  ColumnPlan plan;
  WatchedSteps steps(options.watch, StepsOf(source));
  plan.Make(source, options.mostInlineValues, components, steps);
  components.Close();
  WriteDocument(source, plan, components.FileNames(), file, steps);
  file.Close();
  file.RenameOver(real);
  components.Keep();
  // Whoever has them open keeps what is mapped.
  std::error_code ignored;
  for (const std::filesystem::path& old : replaced) std::filesystem::remove(old, ignored);
  return components.Paths();
}

}  // namespace hv::vex::engine::atfx

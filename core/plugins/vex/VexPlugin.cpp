// core/plugins/vex/VexPlugin.cpp - documents are read whole, held in memory and written whole.
#include "core/plugins/vex/VexPlugin.h"

#include <filesystem>

#include "core/plugins/PluginCall.h"
#include "core/plugins/files/FileOutput.h"
#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/VexReader.h"
#include "core/plugins/vex/VexWriter.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine {

namespace {

vexdoc::VexReadOptions OptionsFor(const ConnectParameters& parameters) {
  vexdoc::VexReadOptions options;
  options.targetModel = parameters.GetTrimmed(u"targetmodels").value_or(std::u16string());
  options.models = FindDocumentModel;
  return options;
}

void WriteFile(const RecordStore& source, const std::filesystem::path& path) {
  // The text first: what can't be written leaves nothing behind, not even for a moment.
  const std::string text = vexdoc::WriteVexText(source);
  const std::filesystem::path target = ResolveTarget(path);
  FileOutput file = FileOutput::Beside(target);
  file.Write(text);
  file.Close();
  file.RenameOver(target);
}

MemoryPersistence PersistenceFor(const std::filesystem::path& path, bool isReadOnly,
                                 const vexdoc::VexReadOptions& options) {
  MemoryPersistence persistence;
  persistence.reload = [path, options](bool onlyIfChanged) -> std::unique_ptr<MemoryStore> {
    if (onlyIfChanged) return nullptr;
    return vexdoc::ReadVexFile(path, options);
  };
  if (!isReadOnly) {
    persistence.save = [path](const MemoryStore& store, std::u16string_view) {
      WriteFile(store, path);
      return false;
    };
  }
  return persistence;
}

std::unique_ptr<RecordStore> Open(const ConnectParameters& parameters) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    const std::filesystem::path path = FileNameOf(parameters);
    vexdoc::VexReadOptions options = OptionsFor(parameters);
    options.persistence = PersistenceFor(path, parameters.IsReadOnly(), options);
    return vexdoc::ReadVexFile(path, std::move(options));
  });
}

std::unique_ptr<RecordStore> OpenText(const ConnectParameters& parameters,
                                      std::u16string_view text) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    return vexdoc::ReadVexText(text, "text", OptionsFor(parameters));
  });
}

std::unique_ptr<RecordStore> Create(const ConnectParameters& parameters,
                                    std::shared_ptr<const Model> model) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    if (!model || PathOfDocumentModel(*model).empty()) {
      Fail(errc::kInvalidArgument, {u"a new document needs the model of one"});
    }
    MemoryPersistence persistence;
    if (parameters.GetTrimmed(u"filename")) {
      const std::filesystem::path path = FileNameOf(parameters);
      if (NameIsTaken(path)) {
        Fail(errc::kNotUnique, {cor::FromUtf8(path.string()), u": exists already"});
      }
      persistence.save = [path](const MemoryStore& store, std::u16string_view) {
        WriteFile(store, path);
        return false;
      };
    } else {
      persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
    }
    return std::make_unique<MemoryStore>(std::move(model), std::move(persistence));
  });
}

void Write(const RecordStore& source, const ConnectParameters& parameters) {
  Guarded([&] { WriteFile(source, FileNameOf(parameters)); });
}

std::u16string WriteText(const RecordStore& source) {
  return Guarded([&] { return cor::FromUtf8(vexdoc::WriteVexText(source)).str(); });
}

}  // namespace

const PluginInfo kVexPlugin = {
    .name = u"VEX",
    .supportsQueries = true,
    .fileExtensions = u"",
    .open = Open,
    .create = Create,
    .write = Write,
    .openText = OpenText,
    .writeText = WriteText,
};

}  // namespace hv::vex::engine

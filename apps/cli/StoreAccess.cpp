#include "apps/cli/StoreAccess.h"

#include <cstdio>
#include <filesystem>

#include "apps/cli/Failure.h"
#include "store/core/CoreLibrary.h"
#include "xml/ConnectParams.h"

namespace hv::cli {
namespace {

std::string LowerExtension(const std::string& file) {
  std::string extension = std::filesystem::path(file).extension().string();
  for (char& c : extension) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return extension.empty() ? extension : extension.substr(1);
}

/// The plug-in that opens files of that ending; empty if there is none.
WString PluginForFile(vex::IEnvironment& environment, const std::string& file) {
  const std::string wanted = LowerExtension(file);
  if (wanted.empty()) return {};
  const auto plugins = Ref<vex::IPluginList>::Adopt(environment.GetPlugins());
  WString extensions;
  WString name;
  for (std::uint64_t i = 0; i < plugins->GetCount(); ++i) {
    const auto plugin = Ref<vex::IPluginInfo>::Adopt(plugins->GetPluginAt(i));
    plugin->GetFileExtensions(extensions);
    const std::string all = ";" + cor::ToUtf8(extensions) + ";";
    if (all.find(";" + wanted + ";") == std::string::npos) continue;
    plugin->GetName(name);
    return name;
  }
  return {};
}

}  // namespace

Engine::Engine() {
  try {
    m_environment = vex::GetEngineEnvironment();
  } catch (const vex::Exception& exception) {
    throw Failure("the storage engine vexex.so can't be loaded: " + cor::ToUtf8(exception.message));
  }
}

Engine::~Engine() = default;

Ref<vex::IStore> Engine::Open(const std::string& store, vex::IProgress* progress) {
  return OpenWith(store, {}, progress);
}

Ref<vex::IStore> Engine::OpenToCopy(const std::string& store, std::string_view folder,
                                    vex::IProgress& progress) {
  xml::ConnectParams spool;
  xml::AppendTextTag(spool, u"spool", cor::FromUtf8(folder));
  return OpenWith(store, spool, &progress);
}

Ref<vex::IStore> Engine::OpenWith(const std::string& store, const WString& more,
                                  vex::IProgress* progress) {
  return Explained("opening " + store, [&] {
    const WString plugin = PluginForFile(*m_environment, store);
    if (plugin.empty()) {
      try {
        return Ref<vex::IStore>::Adopt(m_environment->OpenStore(cor::FromUtf8(store), 0));
      } catch (vex::Exception& exception) {
        exception.message += u"; names of files end in .atfx or .sqlite";
        throw;
      }
    }
    std::error_code unused;
    if (!std::filesystem::exists(store, unused)) {
      throw Failure("opening " + store + ": there is no such file");
    }
    WString parameters = FilenameParameter(store);
    parameters += more;
    return Ref<vex::IStore>::Adopt(
        progress ? m_environment->OpenStoreWatched(u"", plugin, parameters, *progress)
                 : m_environment->OpenStoreByParameter(u"", plugin, parameters, 0));
  });
}

void TellRemarks(vex::IStore& store, bool list) {
  Explained("reading the remarks", [&] {
    const auto remarks = Ref<vex::IAttribute>::Adopt(store.GetWarnings());
    const std::uint64_t count = remarks->GetCount();
    if (count == 0) return;
    if (!list) {
      std::fprintf(stderr, "storefabric: %llu remark%s; see --warnings\n",
                   static_cast<unsigned long long>(count), count == 1 ? "" : "s");
      return;
    }
    WString text;
    for (std::uint64_t i = 0; i < count; ++i) {
      remarks->GetText(i, text);
      std::fprintf(stderr, "%s\n", cor::ToUtf8(text).c_str());
    }
  });
}

WString FilenameParameter(std::string_view file) {
  xml::ConnectParams parameters;
  xml::AppendFilenameTag(parameters, cor::FromUtf8(file));
  return parameters;
}

void CheckTarget(const std::string& target, bool force) {
  std::error_code error;
  const std::filesystem::path path(target);
  if (LowerExtension(target) != "atfx") {
    throw Failure("writing " + target + ": the name of an exchange file ends in .atfx");
  }
  if (std::filesystem::is_directory(path, error)) {
    throw Failure("writing " + target + ": it is a folder");
  }
  if (!force && std::filesystem::exists(path, error)) {
    throw Failure("writing " + target + ": the file exists; --force replaces it");
  }
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, error)) {
    throw Failure("writing " + target + ": there is no folder " + folder.string());
  }
}

}  // namespace hv::cli

// apps/cli/main.cpp - the command-line program: reads its arguments, runs a verb, tells failures.
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "apps/cli/Commands.h"
#include "apps/cli/Failure.h"
#include "apps/cli/Interruption.h"
#include "apps/cli/Terminal.h"
#include "storefabric/WString.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

const std::map<std::string, hv::cli::Format> kFormats = {{"lines", hv::cli::Format::Lines},
                                                         {"table", hv::cli::Format::Table},
                                                         {"csv", hv::cli::Format::Csv},
                                                         {"json", hv::cli::Format::Json}};

// The parser's own checks tell their numbers and ranges; these tell what an option takes.

std::string ReadFormat(std::string& text) {
  const auto format = kFormats.find(CLI::detail::to_lower(text));
  if (format == kFormats.end()) return "\"" + text + "\" is none of lines, table, csv and json";
  text = std::to_string(static_cast<int>(format->second));
  return {};
}

std::string CheckCount(std::string& text) {
  int count = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, count);
  if (error == std::errc() && rest == end && count >= 0) return {};
  return "\"" + text + "\" is no whole number, or too large";
}

std::string Trim(std::string& text) {
  CLI::detail::trim(text);
  return {};
}

bool IsUtf8(const std::string& text) { return hv::cor::ToUtf8(hv::cor::FromUtf8(text)) == text; }

template <class Options>
void AddCommon(CLI::App& command, Options& options) {
  command.add_option("STORE", options.store, "A file (*.atfx, *.sqlite)")->required();
  command.add_flag("--warnings", options.warnings, "List what was odd in the store");
}

template <class Options>
void AddFormat(CLI::App& command, Options& options) {
  const auto standard = std::find_if(kFormats.begin(), kFormats.end(), [&](const auto& format) {
    return format.second == options.format;
  });
  command
      .add_option("--format", options.format, "lines, table, csv or json (" + standard->first + ")")
      ->type_name("FORM")
      ->transform(CLI::Validator(ReadFormat, ""));
}

template <class Options>
void AddColumns(CLI::App& command, Options& options) {
  command
      .add_option("--columns", options.columns,
                  "More columns: attributes or paths, joined by commas")
      ->delimiter(',')
      ->transform(CLI::Validator(Trim, ""));
}

/// The verbs with their options, which outlive the parsing; a verb only notes that it was chosen,
/// so that no failure of its work passes through the parser.
struct Arguments {
  hv::cli::ModelOptions model;
  hv::cli::QueryOptions query;
  hv::cli::SearchOptions search;
  hv::cli::TreeOptions tree;
  hv::cli::ShowOptions show;
  hv::cli::ExportOptions exporting;
  hv::cli::ImportOptions importing;
  hv::cli::DemoOptions demo;
  std::function<void()> verb;
};

void AddVerbs(CLI::App& app, Arguments& arguments) {
  const auto add = [&](const char* name, const char* text, auto& options, auto run) {
    CLI::App* command = app.add_subcommand(name, text)->group("Verbs");
    command->callback(
        [&arguments, &options, run] { arguments.verb = [&options, run] { run(options); }; });
    return command;
  };

  CLI::App* command =
      add("model", "Entities, or one entity's members", arguments.model, &hv::cli::RunModel);
  AddCommon(*command, arguments.model);
  CLI::Option* entity =
      command->add_option("ENTITY", arguments.model.entity, "Application name or base name");
  command
      ->add_flag("--all", arguments.model.everything,
                 "All entities with their members, and the enumerations")
      ->excludes(entity);
  AddFormat(*command, arguments.model);

  command = add("query", "Hits of a query expression: key, tab, name", arguments.query,
                &hv::cli::RunQuery);
  AddCommon(*command, arguments.query);
  command
      ->add_option("EXPRESSION", arguments.query.expressionFile, "An XML file; - is standard input")
      ->required();
  AddColumns(*command, arguments.query);
  AddFormat(*command, arguments.query);

  command = add("search", "Elements of a type that meet conditions", arguments.search,
                &hv::cli::RunSearch);
  AddCommon(*command, arguments.search);
  command
      ->add_option("TYPE", arguments.search.type, "What is searched for: an entity, or a base name")
      ->required();
  command
      ->add_option("-w,--where", arguments.search.where,
                   "A condition \"Entity.Property OP value\"; may come several times")
      ->allow_extra_args(false);
  command->add_option("--logic", arguments.search.logic,
                      "How they are joined: \"(C1 AND C2) OR C3\" (all with AND)");
  AddColumns(*command, arguments.search);
  command->add_option("--limit", arguments.search.limit, "Most hits to show (200); 0 for all")
      ->check(CLI::Validator(CheckCount, ""));
  AddFormat(*command, arguments.search);

  command = add("tree", "The browse path from the top, or below an element", arguments.tree,
                &hv::cli::RunTree);
  AddCommon(*command, arguments.tree);
  command->add_option("KEY", arguments.tree.key, "The element's key, as other verbs print it");
  command->add_option("--depth", arguments.tree.depth, "How many levels (1); 0 for all")
      ->check(CLI::Validator(CheckCount, ""));
  AddFormat(*command, arguments.tree);

  command =
      add("show", "One element: its properties and references", arguments.show, &hv::cli::RunShow);
  AddCommon(*command, arguments.show);
  command->add_option("KEY", arguments.show.key, "The element's key, as other verbs print it")
      ->required();
  AddFormat(*command, arguments.show);

  command = add("export", "The whole store as an exchange file", arguments.exporting,
                &hv::cli::RunExport);
  AddCommon(*command, arguments.exporting);
  command->add_option("OUT", arguments.exporting.target, "The file to write (*.atfx)")->required();
  command->add_flag("--force", arguments.exporting.force, "Replace an existing file");

  command = add("import", "A store's records into a database, all or none", arguments.importing,
                &hv::cli::RunImport);
  AddCommon(*command, arguments.importing);
  command
      ->add_option("OUT", arguments.importing.target,
                   "The database (*.sqlite); records are added to one that exists")
      ->required();
  command->add_flag("--replace", arguments.importing.replace, "Replace an existing database");

  command = add("demo", "A believable test-bench campaign to try things on", arguments.demo,
                &hv::cli::RunDemo);
  command->add_option("OUT", arguments.demo.target, "The file to write (*.atfx)")->required();
  command->add_flag("--force", arguments.demo.force, "Replace an existing file");
}

/// What is wrong, then the usage of the program or of the verb concerned.
std::string UsageMessage(const CLI::App* app, const CLI::Error& error) {
  std::string message = error.what();
  const CLI::App* concerned = app;
  for (const CLI::App* chosen : app->get_subcommands()) concerned = chosen;
  if (concerned == app && app->remaining_size() > 0) {
    message = "there is no verb \"" + app->remaining().front() + "\"";
  }
  const std::string help = concerned->help(concerned == app ? "" : app->get_name());
  const std::size_t usage = help.find("Usage:");
  return "storefabric: " + message + "\n" + help.substr(usage == help.npos ? 0 : usage);
}

int Run(int argc, char** argv) {
  CLI::App app("Looks into stores of measurement data.", "storefabric");
  app.require_subcommand(1);
  app.get_formatter()->label("SUBCOMMAND", "VERB");
  app.set_version_flag("--version", "storefabric " HV_VERSION);
  app.failure_message(&UsageMessage);
  Arguments arguments;
  AddVerbs(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int code = app.exit(error);  // help and version are no failures
    return code == 0 ? 0 : kWrongUsage;
  }
  for (int i = 1; i < argc; ++i) {
    if (!IsUtf8(argv[i])) {
      throw hv::cli::Failure("the argument \"" + hv::cor::ToUtf8(hv::cor::FromUtf8(argv[i])) +
                             "\" isn't UTF-8");
    }
  }
  arguments.verb();
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    throw hv::cli::Failure("writing the result: the output is full or gone");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that has enough ends the program without a word, whatever the parent process thinks
  // of that signal.
  std::signal(SIGPIPE, SIG_DFL);
  // A limit on the size of files is told as a failure like a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "storefabric: %s\n", hv::cli::OneLine(error.what()).c_str());
    if (hv::cli::Interruption::Caught() != 0) hv::cli::Interruption::EndByIt();
    return kFailed;
  }
}

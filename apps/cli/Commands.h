// apps/cli/Commands.h - the verbs of the program. Each writes to standard output and throws
// Failure.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace hv::cli {

enum class Format { Lines, Table, Csv, Json };

struct ModelOptions {
  std::string store;
  std::string entity;       ///< empty: all entities
  bool everything = false;  ///< the properties and references of all entities
  Format format = Format::Table;
  bool warnings = false;
};
void RunModel(const ModelOptions& options);

struct QueryOptions {
  std::string store;
  std::string expressionFile;        ///< "-" is standard input
  std::vector<std::string> columns;  ///< attributes, or paths along references to one
  Format format = Format::Lines;
  bool warnings = false;
};
void RunQuery(const QueryOptions& options);

struct SearchOptions {
  std::string store;
  std::string type;
  std::vector<std::string> where;    ///< "Entity.Property OP value"
  std::string logic;                 ///< empty: all conditions
  std::vector<std::string> columns;  ///< as for a query
  int limit = 200;                   ///< 0: all hits
  Format format = Format::Table;
  bool warnings = false;
};
void RunSearch(const SearchOptions& options);

struct TreeOptions {
  std::string store;
  std::string key;  ///< empty: from the top
  int depth = 1;    ///< levels; 0 for all
  Format format = Format::Table;
  bool warnings = false;
};
void RunTree(const TreeOptions& options);

struct ShowOptions {
  std::string store;
  std::string key;
  Format format = Format::Table;
  bool warnings = false;
};
void RunShow(const ShowOptions& options);

struct ExportOptions {
  std::string store;
  std::string target;
  bool force = false;
  bool warnings = false;
};
void RunExport(const ExportOptions& options);

struct ImportOptions {
  std::string store;
  std::string target;    ///< a database; records are added to those of one that is there already
  bool replace = false;  ///< a new database instead
  bool warnings = false;
};
void RunImport(const ImportOptions& options);

struct DemoOptions {
  std::string target;
  bool force = false;
};
void RunDemo(const DemoOptions& options);

}  // namespace hv::cli

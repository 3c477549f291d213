// bench/BenchDatabase.h - databases of many records, filled without a store.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

/// Local columns' records of each measurement.
inline constexpr int kColumnsEach = 10;

/// What programs on such a database are called with: [runs] [rounds] [folder].
struct BenchArguments {
  std::int64_t runs;
  long long rounds;
  std::filesystem::path folder = std::filesystem::temp_directory_path();
  bool keepsDatabase = false;  ///< with a folder of its own it stays there for the next time

  BenchArguments(int argc, char** argv);
  /// The database of all runs.
  [[nodiscard]] std::filesystem::path Database() const;
};

/// A statement that inserts `rows`, "TABLE(COLUMNS) SELECT VALUES" of a counter `i`.
std::string InsertNumbered(long long count, const std::string& rows, long long first = 1);

/// Makes a database of a model (in the notation of tests/core/model/ModelText.h), and lets
/// statements fill its tables.
void FillDatabase(const std::filesystem::path& path, const std::string& model,
                  const std::string& statements);

/// Makes a database of tests, operators, measurements ("Run") and their columns. The first test has
/// a tenth of all runs, the others share the rest.
void MakeBenchDatabase(const std::filesystem::path& path, std::int64_t runs);

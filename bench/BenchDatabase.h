// bench/BenchDatabase.h - a database of many measurements, filled without a store.
#pragma once

#include <cstdint>
#include <filesystem>

/// Local columns' records of each measurement.
inline constexpr int kColumnsEach = 10;

/// What programs on such a database are called with: [runs] [rounds] [folder].
struct BenchArguments {
  std::int64_t runs = 100'000;
  int rounds = 7;
  std::filesystem::path folder = std::filesystem::temp_directory_path();
  bool keepsDatabase = false;  ///< with a folder of its own it stays there for the next time

  BenchArguments(int argc, char** argv);
  /// The database of all runs.
  [[nodiscard]] std::filesystem::path Database() const;
};

/// Makes a database of tests, operators, measurements ("Run") and their columns. The first test has
/// a tenth of all runs, the others share the rest.
void MakeBenchDatabase(const std::filesystem::path& path, std::int64_t runs);

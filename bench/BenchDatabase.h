// bench/BenchDatabase.h - a database of many measurements, filled without a store.
#pragma once

#include <cstdint>
#include <filesystem>

/// Local columns' records of each measurement.
inline constexpr int kColumnsEach = 10;

/// Makes a database of tests, operators, measurements ("Run") and their columns. The first test has
/// a tenth of all runs, the others share the rest.
void MakeBenchDatabase(const std::filesystem::path& path, std::int64_t runs);

// fuzz/AtfxFuzz.cpp - exchange files from outside: reading, and every value in component files.
#include <fstream>
#include <vector>

#include "core/plugins/atfx/AtfxReader.h"
#include "fuzz/Fuzz.h"

namespace {

using namespace hv::vex::engine;

/// The own folder with a small component file "d" that inputs may name.
const std::filesystem::path& MakeComponent() {
  const std::filesystem::path& folder = OwnFolder();
  std::ofstream out(folder / "d", std::ios::binary);
  for (int i = 0; i < 48; ++i) out.put(static_cast<char>(i % 5 == 0 ? 0 : i * 37));
  out << "text" << '\0' << "\xC3\xA4" << '\0';
  return folder;
}

void ReadAll(const ValueSource& source) {
  constexpr std::uint64_t kMost = 100000;
  const std::uint64_t count = std::min(source.Count(), kMost);
  const std::uint64_t first = source.Count() - count;
  std::size_t units = 0;
  switch (StorageKindOf(source.Type())) {
    case StorageKind::Integer: {
      std::vector<std::int64_t> numbers(count);
      source.ReadIntegers(first, numbers);
      break;
    }
    case StorageKind::Real: {
      std::vector<double> numbers(count * PartsOf(source.Type()));
      source.ReadReals(first, numbers);
      break;
    }
    case StorageKind::Text:
      source.ReadTexts(first, count, [&](std::u16string_view text) { units += text.size(); });
      break;
    case StorageKind::Bytes:
      source.ReadBytes(first, count,
                       [&](std::span<const std::byte> bytes) { units += bytes.size(); });
      break;
  }
  // Every byte that is promised must be there.
  for (const std::byte byte : source.Contiguous()) units += std::to_integer<std::size_t>(byte);
  asm volatile("" : : "r"(units));  // what was read counts as used
}

void ReadColumn(const RecordStore& store, RecordRef column, bool flags) {
  IsDone(hv::vex::errc::kBadFile, [&] {
    const auto source = flags ? store.OpenFlags(column) : store.OpenValues(column);
    if (source) ReadAll(*source);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  KeepXml();
  static const std::filesystem::path& folder = MakeComponent();
  atfx::ReadOptions options;
  if (size % 2 == 0) options.spoolFolder = folder;  // the other way for inline values
  IsDone(hv::vex::errc::kBadFile, [&] {
    const auto store =
        atfx::ReadAtfxBytes(std::as_bytes(std::span(data, size)), "fuzz.atfx", folder, options);
    for (const Entity& entity : store->GetModel()->Entities()) {
      if (entity.isBase) continue;
      for (const RecordId id : store->AllOf(entity.id)) {
        ReadColumn(*store, {entity.id, id}, false);
        ReadColumn(*store, {entity.id, id}, true);
      }
    }
  });
  return 0;
}

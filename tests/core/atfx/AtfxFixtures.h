// tests/core/atfx/AtfxFixtures.h - small ATFX documents and folders for them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/plugins/atfx/AtfxReader.h"

namespace hv::vex::engine::test {

/// A document whose model has Test, Measurement, Quantity, Matrix, Column, Extern, File and Unit
/// (each on the base element that its name suggests), with these files and instances.
std::string Document(std::string_view instances, std::string_view files = {});
/// One column with everything around it: quantity of type `quantityType`, a matrix of `rows` rows,
/// and `content` inside the column's instance (id 1).
std::string ColumnInstances(std::string_view content, std::string_view quantityType = "DT_DOUBLE",
                            int rows = 4);

/// Reads a document from memory; its component files would lie in `folder`.
std::unique_ptr<MemoryStore> ReadText(std::string_view document,
                                      const std::filesystem::path& folder = "/nowhere");

/// What reading throws: "code message"; "no error" if it doesn't.
std::string ErrorOf(std::string_view document);

/// A folder of its own that goes with the object.
class TempFolder final {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
  /// Writes a file and gives its path.
  std::filesystem::path Write(std::string_view name, std::string_view contents) const;
  [[nodiscard]] std::string Read(std::string_view name) const;
  /// Names of all files, sorted, with blanks between them.
  [[nodiscard]] std::string Listing() const;

 private:
  std::filesystem::path m_path;
};

/// An application element's record by name; the store must have it.
RecordRef Ref(const RecordStore& store, std::u16string_view entity, RecordId id);
/// An attribute of a record as text.
std::string AttributeText(const RecordStore& store, RecordRef record,
                          std::u16string_view attribute);
/// Ids that a relation leads to, with blanks between them.
std::string LinksText(const RecordStore& store, RecordRef record, std::u16string_view relation);
/// All warnings, one per line.
std::string WarningsText(const RecordStore& store);
/// Runs `use` and gives "code message" of what it throws, or "no error".
template <class Use>
std::string Thrown(Use use);

}  // namespace hv::vex::engine::test

#include <storefabric/WString.h>

#include "store/core/Exception.h"

template <class Use>
std::string hv::vex::engine::test::Thrown(Use use) {
  try {
    use();
  } catch (const Exception& error) {
    return std::to_string(error.code) + " " + cor::ToUtf8(error.message);
  }
  return "no error";
}

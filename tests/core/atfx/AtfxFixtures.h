// tests/core/atfx/AtfxFixtures.h - small ATFX documents, and what became of them as text.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "core/plugins/atfx/AtfxReader.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Thrown.h"

namespace hv::vex::engine::test {

using hv::test::TempFolder;

/// "a=1 b=2" as "<a>1</a><b>2</b>".
std::string Tags(const std::string& words);
/// A document whose model has Test, Measurement, Quantity, Matrix, Column, Extern, File and Unit
/// (each on the base element that its name suggests), with these files and instances.
std::string Document(std::string_view instances, std::string_view files = {});
/// One column with everything around it: quantity of type `quantityType`, a matrix of `rows` rows,
/// and `content` inside the column's instance (id 1).
std::string ColumnInstances(std::string_view content, std::string_view quantityType = "DT_DOUBLE",
                            int rows = 4);
/// Content of a column: values in the document, or in a component file.
std::string Inline(std::string_view tag, std::string_view values);
std::string Component(const std::string& words);

/// Reads a document from memory; its component files would lie in `folder`.
std::unique_ptr<MemoryStore> ReadText(std::string_view document,
                                      const std::filesystem::path& folder = "/nowhere");
/// The same for a document of one column.
std::unique_ptr<MemoryStore> ReadColumn(std::string_view content,
                                        std::string_view quantityType = "DT_DOUBLE", int rows = 4,
                                        const std::filesystem::path& folder = "/nowhere");

/// A record by the name of its application element; the store must have it.
RecordRef Ref(const RecordStore& store, std::u16string_view entity, RecordId id = 1);
/// The values or flags of the column 1, or what opening them throws.
std::string ColumnText(const RecordStore& store);
std::string FlagsText(const RecordStore& store);
/// An attribute of a record as text.
std::string AttributeText(const RecordStore& store, RecordRef record,
                          std::u16string_view attribute);
/// All warnings, one per line.
std::string WarningsText(const RecordStore& store);

}  // namespace hv::vex::engine::test

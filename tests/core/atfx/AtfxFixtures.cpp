// tests/core/atfx/AtfxFixtures.cpp - the shared model in few lines.
#include "AtfxFixtures.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "DumpStore.h"

namespace hv::vex::engine::test {

namespace {

struct Element {
  const char* name;
  const char* base;
  std::vector<const char*> attributes;  // application name and base name in turn
};

struct Relation2 {
  const char *from, *name, *base, *to, *inverse, *inverseBase;
  bool inverseToOne;
};

const std::vector<Element> kElements = {
    {"Test", "AoTest", {"Id", "id", "Name", "name"}},
    {"Measurement", "AoMeasurement", {"Id", "id", "Name", "name"}},
    {"Quantity", "AoMeasurementQuantity", {"Id", "id", "Name", "name", "DataType", "datatype"}},
    {"Matrix", "AoSubmatrix", {"Id", "id", "Name", "name", "Rows", "number_of_rows"}},
    {"Column",
     "AoLocalColumn",
     {"Id", "id", "Name", "name", "Independent", "independent", "Representation",
      "sequence_representation", "Parameters", "generation_parameters", "RawType", "raw_datatype",
      "GlobalFlag", "global_flag", "Flags", "flags", "Values", "values"}},
    {"Extern", "AoExternalComponent", {"Id",          "id",
                                       "Name",        "name",
                                       "File",        "filename_url",
                                       "Type",        "value_type",
                                       "Length",      "component_length",
                                       "Offset",      "start_offset",
                                       "Block",       "block_size",
                                       "PerBlock",    "valuesperblock",
                                       "ValueOffset", "value_offset",
                                       "Ordinal",     "ordinal_number",
                                       "FlagsFile",   "flags_filename_url",
                                       "FlagsOffset", "flags_start_offset",
                                       "BitCount",    "ao_bit_count",
                                       "BitOffset",   "ao_bit_offset"}},
    {"File", "AoFile", {"Id", "id", "Name", "name", "Location", "ao_location"}},
    {"Unit", "AoUnit", {"Id", "id", "Name", "name"}},
};

const Relation2 kRelations[] = {
    {"Test", "Measurements", "children", "Measurement", "Test", "test", true},
    {"Measurement", "Quantities", "measurement_quantities", "Quantity", "Measurement",
     "measurement", true},
    {"Measurement", "Matrices", "submatrices", "Matrix", "Measurement", "measurement", true},
    {"Matrix", "Columns", "local_columns", "Column", "Matrix", "submatrix", true},
    {"Quantity", "Columns", "local_columns", "Column", "Quantity", "measurement_quantity", true},
    {"Column", "Externs", "external_component", "Extern", "Column", "local_column", true},
    {"File", "ValuesOf", "ao_extcomp_values", "Extern", "ValuesFile", "ao_values_file", true},
    {"File", "FlagsOf", "ao_extcomp_flags", "Extern", "FlagsFileRecord", "ao_flags_file", true},
};

void WriteRelation(std::ostream& out, const char* name, const char* to, const char* base,
                   bool toOne, const char* inverse) {
  out << "<relation_attribute><name>" << name << "</name><ref_to>" << to
      << "</ref_to><base_relation>" << base << "</base_relation><min_occurs>0</min_occurs>"
      << "<max_occurs>" << (toOne ? "1" : "Many") << "</max_occurs><inverse_name>" << inverse
      << "</inverse_name></relation_attribute>\n";
}

std::string ModelText() {
  std::ostringstream out;
  for (const Element& element : kElements) {
    out << "<application_element><name>" << element.name << "</name><basetype>" << element.base
        << "</basetype>\n";
    for (std::size_t i = 0; i < element.attributes.size(); i += 2) {
      out << "<application_attribute><name>" << element.attributes[i] << "</name><base_attribute>"
          << element.attributes[i + 1] << "</base_attribute></application_attribute>\n";
    }
    for (const Relation2& r : kRelations) {
      if (std::string_view(element.name) == r.from) {
        WriteRelation(out, r.name, r.to, r.base, false, r.inverse);
      }
      if (std::string_view(element.name) == r.to) {
        WriteRelation(out, r.inverse, r.from, r.inverseBase, r.inverseToOne, r.name);
      }
    }
    out << "</application_element>\n";
  }
  return out.str();
}

}  // namespace

std::string Document(std::string_view instances, std::string_view files) {
  std::ostringstream out;
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<atfx_file>"
      << "<base_model_version>asam36</base_model_version>";
  if (!files.empty()) out << "<files>" << files << "</files>";
  out << "<application_model>" << ModelText() << "</application_model>\n<instance_data>\n"
      << instances << "</instance_data></atfx_file>\n";
  return out.str();
}

std::string ColumnInstances(std::string_view content, std::string_view quantityType, int rows) {
  std::ostringstream out;
  out << "<Column><Id>1</Id><Name>col</Name>" << content
      << "</Column>\n<Quantity><Id>1</Id><Name>q</Name><DataType>" << quantityType
      << "</DataType><Columns>1</Columns></Quantity><Matrix><Id>1</Id><Rows>" << rows
      << "</Rows><Columns>1</Columns></Matrix>\n";
  return out.str();
}

std::unique_ptr<MemoryStore> ReadText(std::string_view document,
                                      const std::filesystem::path& folder) {
  return atfx::ReadAtfxBytes(std::as_bytes(std::span(document)), "x.atfx", folder, {});
}

std::string ErrorOf(std::string_view document) {
  return Thrown([&] { ReadText(document); });
}

TempFolder::TempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "atfxtestXXXXXX").string();
  m_path = mkdtemp(name.data());
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path TempFolder::Write(std::string_view name, std::string_view contents) const {
  const std::filesystem::path path = m_path / name;
  std::ofstream(path, std::ios::binary) << contents;
  return path;
}

std::string TempFolder::Read(std::string_view name) const {
  std::ifstream in(m_path / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string TempFolder::Listing() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  std::string result;
  for (const std::string& name : names) result += (result.empty() ? "" : " ") + name;
  return result;
}

RecordRef Ref(const RecordStore& store, std::u16string_view entity, RecordId id) {
  return {store.GetModel()->Find(entity)->id, id};
}

std::string AttributeText(const RecordStore& store, RecordRef record,
                          std::u16string_view attribute) {
  const std::int32_t index = store.GetModel()->At(record.entity).FindAttribute(attribute);
  return index == kNone ? "no such attribute" : ValueText(store.ReadValue(record, index));
}

std::string LinksText(const RecordStore& store, RecordRef record, std::u16string_view relation) {
  const std::int32_t index = store.GetModel()->At(record.entity).FindRelation(relation);
  if (index == kNone) return "no such relation";
  const RecordId ids[] = {record.id};
  std::string result;
  for (const Link& link : store.Follow(record.entity, index, ids)) {
    result += (result.empty() ? "" : " ") + std::to_string(link.target.id);
  }
  return result;
}

std::string WarningsText(const RecordStore& store) {
  std::string result;
  for (const std::u16string& line : store.Warnings()) result += cor::ToUtf8(line) + "\n";
  return result;
}

}  // namespace hv::vex::engine::test

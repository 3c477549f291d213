// tests/core/atfx/AtfxFixtures.cpp - the shared model in few lines.
#include "AtfxFixtures.h"

#include <sstream>

#include "DumpStore.h"

namespace hv::vex::engine::test {

namespace {

/// Elements with their base elements, attributes (name=base) and relations (name>target=base).
constexpr const char* kModel = R"(
Test AoTest Id=id Name=name Measurements>Measurement=children/Test
Measurement AoMeasurement Id=id Name=name Test>Test=test/Measurements
  Quantities>Quantity=measurement_quantities/Measurement Matrices>Matrix=submatrices/Measurement
Quantity AoMeasurementQuantity Id=id Name=name DataType=datatype
  Measurement>Measurement=measurement/Quantities Columns>Column=local_columns/Quantity
Matrix AoSubmatrix Id=id Name=name Rows=number_of_rows
  Measurement>Measurement=measurement/Matrices Columns>Column=local_columns/Matrix
Column AoLocalColumn Id=id Name=name Independent=independent RawType=raw_datatype
  Representation=sequence_representation Parameters=generation_parameters Flags=flags
  GlobalFlag=global_flag Values=values Matrix>Matrix=submatrix/Columns
  Quantity>Quantity=measurement_quantity/Columns Externs>Extern=external_component/Column
Extern AoExternalComponent Id=id Name=name File=filename_url Type=value_type
  Length=component_length Offset=start_offset Block=block_size PerBlock=valuesperblock
  ValueOffset=value_offset Ordinal=ordinal_number FlagsFile=flags_filename_url
  FlagsOffset=flags_start_offset BitCount=ao_bit_count BitOffset=ao_bit_offset
  Column>Column=local_column/Externs ValuesFile>File=ao_values_file/ValuesOf
  FlagsFileRecord>File=ao_flags_file/FlagsOf
File AoFile Id=id Name=name Location=ao_location ValuesOf>Extern=ao_extcomp_values/ValuesFile
  FlagsOf>Extern=ao_extcomp_flags/FlagsFileRecord
Unit AoUnit Id=id Name=name)";

std::string ModelText() {
  std::istringstream words(kModel);
  std::string text, name;
  for (std::string word; words >> word;) {
    const std::size_t is = word.find('='), to = word.find('>'), back = word.find('/');
    if (is == word.npos) {
      text +=
          text.empty() ? "<application_element>" : "</application_element>\n<application_element>";
      words >> name;
      text += Tags("name=" + word + " basetype=" + name) + "\n";
    } else if (to == word.npos) {
      text += "<application_attribute>" +
              Tags("name=" + word.substr(0, is) + " base_attribute=" + word.substr(is + 1)) +
              "</application_attribute>\n";
    } else {
      text += "<relation_attribute>" +
              Tags("name=" + word.substr(0, to) + " ref_to=" + word.substr(to + 1, is - to - 1) +
                   " base_relation=" + word.substr(is + 1, back - is - 1) +
                   " min_occurs=0 inverse_name=" + word.substr(back + 1)) +
              "</relation_attribute>\n";
    }
  }
  return text + "</application_element>\n";
}

}  // namespace

std::string Tags(const std::string& words) {
  std::istringstream in(words);
  std::string text;
  for (std::string word; in >> word;) {
    const std::string tag = word.substr(0, word.find('='));
    text += "<" + tag + ">" + word.substr(tag.size() + 1) + "</" + tag + ">";
  }
  return text;
}

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

std::string Inline(std::string_view tag, std::string_view values) {
  return "<Values><" + std::string(tag) + ">" + std::string(values) + "</" + std::string(tag) +
         "></Values>";
}

std::string Component(const std::string& words) {
  return "<Values><component>" + Tags(words) + "</component></Values>";
}

std::unique_ptr<MemoryStore> ReadText(std::string_view document,
                                      const std::filesystem::path& folder) {
  return atfx::ReadAtfxBytes(std::as_bytes(std::span(document)), "x.atfx", folder, {});
}

std::unique_ptr<MemoryStore> ReadColumn(std::string_view content, std::string_view quantityType,
                                        int rows, const std::filesystem::path& folder) {
  return ReadText(Document(ColumnInstances(content, quantityType, rows)), folder);
}

RecordRef Ref(const RecordStore& store, std::u16string_view entity, RecordId id) {
  return {store.GetModel()->Find(entity)->id, id};
}

std::string ColumnText(const RecordStore& store) {
  std::string text;
  const std::string error =
      Thrown([&] { text = ValuesText(store.OpenValues(Ref(store, u"Column")).get()); });
  return error == "no error" ? text : error;
}

std::string FlagsText(const RecordStore& store) {
  std::string text;
  const std::string error =
      Thrown([&] { text = ValuesText(store.OpenFlags(Ref(store, u"Column")).get()); });
  return error == "no error" ? text : error;
}

std::string AttributeText(const RecordStore& store, RecordRef record,
                          std::u16string_view attribute) {
  const std::int32_t index = store.GetModel()->At(record.entity).FindAttribute(attribute);
  return index == kNone ? "no such attribute" : ValueText(store.ReadValue(record, index));
}

std::string WarningsText(const RecordStore& store) {
  std::string result;
  for (const std::u16string& line : store.Warnings()) result += cor::ToUtf8(line) + "\n";
  return result;
}

}  // namespace hv::vex::engine::test

// bench/AtfxBench.cpp - reading an exchange file, beside a bare parser pass over the same file.
// Usage: atfx_bench [megabytes] [rounds] [file]. Makes a believable file (a quarter meta data,
// three quarters inline values) unless one is named. Rounds of both alternate; the medians count.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "Bench.h"
#include "core/plugins/atfx/AtfxReader.h"

namespace {

constexpr const char* kModel = R"(<?xml version="1.0" encoding="UTF-8"?>
<atfx_file version="atfx_file: V1.3.1"><base_model_version>asam36</base_model_version>
<application_model>
@Test AoTest id name; Measurements children Measurement Many Test
@Measurement AoMeasurement id name measurement_begin description; Test test Test 1 Measurements; Quantities measurement_quantities Quantity Many Measurement; Matrices submatrices Matrix Many Measurement
@Quantity AoMeasurementQuantity id name datatype minimum maximum average; Measurement measurement Measurement 1 Quantities; Columns local_columns Column Many Quantity
@Matrix AoSubmatrix id name number_of_rows; Measurement measurement Measurement 1 Matrices; Columns local_columns Column Many Matrix
@Column AoLocalColumn id name global_flag independent sequence_representation values; Quantity measurement_quantity Quantity 1 Columns; Matrix submatrix Matrix 1 Columns
</application_model>
<instance_data>
)";

/// Writes the elements of the short notation above.
void WriteElement(const std::string& line, std::ostream& out) {
  std::istringstream parts(line.substr(1));
  std::string part, name, base, target, most, inverse;
  std::getline(parts, part, ';');
  std::istringstream head(part);
  head >> name >> base;
  out << "<application_element><name>" << name << "</name><basetype>" << base << "</basetype>\n";
  while (head >> name) {
    out << "<application_attribute><name>" << name << "</name><base_attribute>" << name
        << "</base_attribute></application_attribute>\n";
  }
  while (std::getline(parts, part, ';')) {
    std::istringstream(part) >> name >> base >> target >> most >> inverse;
    out << "<relation_attribute><name>" << name << "</name><ref_to>" << target
        << "</ref_to><base_relation>" << base << "</base_relation><min_occurs>0</min_occurs>"
        << "<max_occurs>" << most << "</max_occurs><inverse_name>" << inverse
        << "</inverse_name></relation_attribute>\n";
  }
  out << "</application_element>\n";
}

void WriteColumn(int id, int measurement, int rows, std::ostream& out) {
  out << "    <Quantity>\n      <id>" << id << "</id>\n      <name>Channel_" << id % 500
      << "</name>\n      <datatype>" << (id % 3 == 0 ? "DT_LONG" : "DT_DOUBLE")
      << "</datatype>\n      <minimum>-" << id % 97 << ".25</minimum>\n      <maximum>" << id
      << ".5</maximum>\n      <average>0.125</average>\n      <Measurement>" << measurement
      << "</Measurement>\n      <Columns>" << id << "</Columns>\n    </Quantity>\n";
  out << "    <Column>\n      <id>" << id << "</id>\n      <name>Channel_" << id % 500
      << "</name>\n      <global_flag>15</global_flag>\n      <independent>0</independent>\n"
      << "      <sequence_representation>explicit</sequence_representation>\n      <Quantity>" << id
      << "</Quantity>\n      <Matrix>" << measurement << "</Matrix>\n      <values>\n";
  char number[40];
  if (id % 3 == 0) {
    out << "        <A_INT32>";
    for (int i = 0; i < rows; ++i) out << (i * 37 + id) % 100000 << ' ';
    out << "</A_INT32>\n";
  } else {
    out << "        <A_FLOAT64>";
    for (int i = 0; i < rows; ++i) {
      std::snprintf(number, sizeof number, "%.10g ", std::sin(0.001 * i + id) * (1 + id % 50));
      out << number;
    }
    out << "</A_FLOAT64>\n";
  }
  out << "      </values>\n    </Column>\n";
}

void MakeFile(const std::filesystem::path& path, std::uintmax_t bytes) {
  std::ofstream out(path, std::ios::binary);
  std::istringstream model(kModel);
  for (std::string line; std::getline(model, line);) {
    line[0] == '@' ? WriteElement(line, out) : void(out << line << '\n');
  }
  out << "    <Test><id>1</id><name>Bench</name></Test>\n";
  int column = 0;
  for (int measurement = 1; static_cast<std::uintmax_t>(out.tellp()) < bytes; ++measurement) {
    out << "    <Measurement>\n      <id>" << measurement << "</id>\n      <name>Run "
        << measurement
        << "</name>\n      <measurement_begin>20240131120000000</measurement_begin>\n"
        << "      <description>Warm &amp; cold start, track " << measurement % 7
        << "</description>\n      <Test>1</Test>\n    </Measurement>\n"
        << "    <Matrix>\n      <id>" << measurement << "</id>\n      <name>Matrix</name>\n"
        << "      <number_of_rows>120</number_of_rows>\n      <Measurement>" << measurement
        << "</Measurement>\n    </Matrix>\n";
    for (int i = 0; i < 12; ++i) WriteColumn(++column, measurement, 120, out);
  }
  out << "</instance_data></atfx_file>\n";
}

/// Takes every event and does nothing with it.
class BareHandler final : public xercesc::HandlerBase {
 public:
  void startElement(const XMLCh*, xercesc::AttributeList&) override { ++count; }
  void characters(const XMLCh*, const XMLSize_t length) override { count += length; }
  void endElement(const XMLCh*) override { ++count; }
  std::uint64_t count = 0;
};

std::uint64_t BarePass(const std::string& path) {
  xercesc::SAXParser parser;
  parser.setValidationScheme(xercesc::SAXParser::Val_Never);
  parser.setDoNamespaces(false);
  parser.setDoSchema(false);
  parser.setLoadExternalDTD(false);
  BareHandler handler;
  parser.setDocumentHandler(&handler);
  parser.parse(path.c_str());
  return handler.count;
}

}  // namespace

int main(int argc, char** argv) {
  const auto megabytes = static_cast<std::uintmax_t>(Argument(argc, argv, 1, 50));
  const bool isGiven = argc > 3;
  const std::filesystem::path path =
      isGiven ? std::filesystem::path(argv[3])
              : std::filesystem::temp_directory_path() / "storefabric_bench.atfx";
  if (!isGiven) MakeFile(path, megabytes * 1'000'000);
  const double size = static_cast<double>(std::filesystem::file_size(path)) / 1e6;

  xercesc::XMLPlatformUtils::Initialize();
  std::uint64_t events = 0;
  std::size_t records = 0;
  std::unique_ptr<hv::vex::engine::MemoryStore> store;
  const auto times = InTurns(
      Argument(argc, argv, 2, 5), [&] { events = BarePass(path.string()); },
      [&] { store = hv::vex::engine::atfx::ReadAtfxFile(path, {}); },
      [&] {
        records = 0;
        for (const auto& entity : store->GetModel()->Entities()) {
          if (!entity.isBase) records += store->CountOf(entity.id);
        }
        store.reset();
      });
  xercesc::XMLPlatformUtils::Terminate();
  const double bare = Median(times[0]) / 1e3, ours = Median(times[1]) / 1e3;
  std::printf("file       %8.1f MB, %zu records, %llu events and characters\n", size, records,
              static_cast<unsigned long long>(events));
  std::printf("bare pass  %8.3f s  %7.1f MB/s\n", bare, size / bare);
  std::printf("read       %8.3f s  %7.1f MB/s\n", ours, size / ours);
  std::printf("ratio      %8.2f\n", ours / bare);
  if (!isGiven) std::filesystem::remove(path);
}

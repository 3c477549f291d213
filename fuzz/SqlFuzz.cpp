// fuzz/SqlFuzz.cpp - database files of foreign making: opened, and everything in them read.
//
// The first byte of an input says what becomes of a sound database before that: 0 replaces it by
// the rest of the input, 1 cuts it off and overwrites bytes, other odd numbers put other values
// into cells, so that the database stays sound and its content makes no sense. Even numbers do that
// to the tables of records alone, under a store that is open already: opening takes most of the
// time, and would read the same model each time.
#include <fstream>
#include <vector>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include "core/plugins/atfx/AtfxReader.h"
#include "core/plugins/sql/SqlPlugin.h"
#include "fuzz/Fuzz.h"

namespace {

using namespace hv::vex::engine;

/// A few elements with a relation of each kind, an enumeration, sequences, and a column with flags.
constexpr std::string_view kSource = R"(<atfx_file><base_model_version>asam36</base_model_version>
<application_model>
<application_enumeration><name>e</name><item><name>a</name><value>0</value></item></application_enumeration>
<application_element><name>T</name><basetype>AoTest</basetype>
<application_attribute><name>id</name><base_attribute>id</base_attribute></application_attribute>
<application_attribute><name>name</name><base_attribute>name</base_attribute></application_attribute>
<application_attribute><name>s</name><datatype>DS_STRING</datatype></application_attribute>
<application_attribute><name>b</name><datatype>DT_BLOB</datatype></application_attribute>
<application_attribute><name>c</name><datatype>DT_COMPLEX</datatype></application_attribute>
<application_attribute><name>d</name><datatype>DT_DATE</datatype></application_attribute>
<application_attribute><name>e</name><datatype>DT_ENUM</datatype><enumeration_type>e</enumeration_type></application_attribute>
<relation_attribute><name>others</name><ref_to>T</ref_to><min_occurs>0</min_occurs><max_occurs>Many</max_occurs><inverse_name>back</inverse_name></relation_attribute>
<relation_attribute><name>back</name><ref_to>T</ref_to><min_occurs>0</min_occurs><max_occurs>Many</max_occurs><inverse_name>others</inverse_name></relation_attribute>
</application_element>
<application_element><name>C</name><basetype>AoLocalColumn</basetype>
<application_attribute><name>id</name><base_attribute>id</base_attribute></application_attribute>
<application_attribute><name>name</name><base_attribute>name</base_attribute></application_attribute>
<application_attribute><name>r</name><base_attribute>sequence_representation</base_attribute></application_attribute>
<application_attribute><name>g</name><base_attribute>generation_parameters</base_attribute></application_attribute>
<application_attribute><name>v</name><base_attribute>values</base_attribute></application_attribute>
<application_attribute><name>f</name><base_attribute>flags</base_attribute></application_attribute>
<relation_attribute><name>t</name><ref_to>T</ref_to><min_occurs>0</min_occurs><max_occurs>1</max_occurs><inverse_name>cs</inverse_name></relation_attribute>
</application_element></application_model><instance_data>
<T><id>1</id><name>One</name><s><s>x</s><s>y</s></s><c>1 2</c><d>2024</d><e>a</e><others>2</others>
<instance_attributes><inst_attr_asciistring name="i">z</inst_attr_asciistring></instance_attributes></T>
<T><id>2</id><name>Zw&#xf6;lf</name></T>
<C><id>1</id><name>n</name><t>1</t><v><A_INT16>1 2 3</A_INT16></v><f>15 0 15</f></C>
<C><id>2</id><v><A_UTF8STRING><s>a</s><s>bc</s></A_UTF8STRING></v></C>
<C><id>3</id><v><A_BYTEFIELD><length>2</length><sequence>1 2</sequence></A_BYTEFIELD></v></C>
<C><id>4</id><r>implicit_linear</r><g>1 2</g></C></instance_data></atfx_file>)";

/// The file that each input works on, and a sound database's content.
struct Ground {
  std::filesystem::path file = OwnFolder() / "fuzz.sqlite";
  std::string sound;
  // UPDATE of one column of one table, up to the value.
  std::vector<std::string> cells;
  std::vector<std::string> recordCells;  // those that tell nothing of the model

  Ground() {
    const auto source =
        atfx::ReadAtfxBytes(std::as_bytes(std::span(kSource)), "seed.atfx", OwnFolder(), {});
    sql::WriteDatabase(*source, file);
    ListCells();
    std::ifstream in(file, std::ios::binary);
    sound.assign(std::istreambuf_iterator<char>(in), {});
  }
  void ListCells() {
    sqlite3* database = nullptr;
    if (sqlite3_open(file.c_str(), &database) != SQLITE_OK) std::abort();
    // Small pages, so that bytes overwritten at random more often mean something.
    sqlite3_exec(database, "PRAGMA journal_mode=DELETE; PRAGMA page_size=512; VACUUM", nullptr,
                 nullptr, nullptr);
    const auto add = [](void* list, int, char** texts, char**) {
      static_cast<std::vector<std::string>*>(list)->emplace_back(texts[0]);
      return 0;
    };
    const std::string list =
        "SELECT 'UPDATE \"'||m.name||'\" SET \"'||c.name||'\"=' FROM sqlite_master AS m,"
        " pragma_table_info(m.name) AS c WHERE m.type='table' AND m.name NOT LIKE 'SF_TEXT%'";
    sqlite3_exec(database, (list + " ORDER BY 1").c_str(), add, &cells, nullptr);
    sqlite3_exec(database,
                 (list + " AND m.name NOT LIKE 'SVC%' AND m.name NOT LIKE 'sqlite%'"
                         " AND m.name NOT IN ('SF_META','SF_RELATION') ORDER BY 1")
                     .c_str(),
                 add, &recordCells, nullptr);
    sqlite3_close(database);
    if (recordCells.empty()) std::abort();
  }
  void Write(std::string_view bytes) const {
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
};

std::uint32_t Take(std::span<const std::uint8_t>& input, int bytes) {
  std::uint32_t number = 0;
  for (; bytes > 0 && !input.empty(); --bytes, input = input.subspan(1)) {
    number = number << 8 | input[0];
  }
  return number;
}

void Overwrite(const Ground& ground, std::span<const std::uint8_t> input) {
  std::string bytes = ground.sound;
  if (const std::uint32_t kept = Take(input, 2); kept % 4 == 0) {
    bytes.resize(std::min<std::size_t>(bytes.size(), kept * 4));
  }
  while (input.size() >= 4 && !bytes.empty()) {
    const std::size_t at = Take(input, 3) % bytes.size();
    bytes[at] = static_cast<char>(Take(input, 1));
  }
  ground.Write(bytes);
}

/// A value of any kind, as SQL.
std::string Literal(std::span<const std::uint8_t>& input) {
  const std::uint32_t kind = Take(input, 1);
  switch (kind % 8) {
    case 0:
      return "NULL";
    case 1:
      return std::to_string(static_cast<std::int8_t>(Take(input, 1)));
    case 2:
      return std::to_string(static_cast<std::int32_t>(Take(input, 4)));
    case 3:
      return std::to_string(
          static_cast<std::int64_t>(std::uint64_t{Take(input, 4)} << 32 | Take(input, 4)));
    case 4:
      return "1e300";
    case 5:
      return "'NaN'";
    default: {
      const std::size_t size = std::min<std::size_t>(Take(input, 1) % 32, input.size());
      std::string text = kind % 8 == 6 ? "x'" : "CAST(x'";
      for (const std::uint8_t byte : input.first(size)) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
      }
      input = input.subspan(size);
      return text + (kind % 8 == 6 ? "'" : "' AS TEXT)");
    }
  }
}

sqlite3* OpenToChange(const std::filesystem::path& file) {
  sqlite3* database = nullptr;
  if (sqlite3_open(file.c_str(), &database) != SQLITE_OK) std::abort();
  sqlite3_exec(database, "PRAGMA journal_mode=MEMORY; PRAGMA synchronous=OFF", nullptr, nullptr,
               nullptr);
  return database;
}

void ChangeCells(sqlite3* database, const std::vector<std::string>& cells,
                 std::span<const std::uint8_t> input) {
  sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
  // One by one: those that break a rule of the tables are left out.
  for (int changes = 0; changes < 8 && !input.empty(); ++changes) {
    std::string statement = cells[Take(input, 2) % cells.size()];
    const std::uint32_t row = Take(input, 1);
    statement += Literal(input);
    if (row % 4 != 0) statement += " WHERE rowid%7=" + std::to_string(row % 7);
    sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr);
  }
  sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
  if (sqlite3_get_autocommit(database) == 0) {
    sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
  }
}

template <class Use>
void Allowing(Use use) {
  try {
    use();
  } catch (const hv::vex::Exception&) {
    // A refusal with a reason; anything else ends the program.
  }
}

void ReadValues(const ValueSource* source) {
  if (source == nullptr) return;
  constexpr std::uint64_t kMost = 10000;
  const std::uint64_t count = std::min(source->Count(), kMost);
  for (const std::uint64_t first : {std::uint64_t{0}, source->Count() - count}) {
    std::vector<std::int64_t> integers(count * PartsOf(source->Type()));
    std::vector<double> reals(integers.size());
    Allowing([&] { source->ReadIntegers(first, integers); });
    Allowing([&] { source->ReadReals(first, reals); });
    Allowing([&] { source->ReadTexts(first, count, [](std::u16string_view) {}); });
    Allowing([&] { source->ReadBytes(first, count, [](std::span<const std::byte>) {}); });
  }
}

void ReadEntity(const RecordStore& store, const Entity& entity) {
  std::vector<RecordId> ids = store.AllOf(entity.id);
  ids.resize(std::min<std::size_t>(ids.size(), 16));
  std::vector<std::int32_t> attributes(entity.attributes.size());
  for (std::size_t a = 0; a < attributes.size(); ++a) {
    attributes[a] = static_cast<std::int32_t>(a);
    Allowing([&] { (void)store.Distinct(entity.id, attributes[a], nullptr, 10); });
    Allowing([&] { (void)store.BoundsOf(entity.id, attributes[a], nullptr); });
  }
  Allowing([&] { (void)store.ReadColumns(entity.id, ids, attributes); });
  Allowing([&] { (void)store.ReadInstanceAttributes(entity.id, ids); });
  for (std::size_t r = 0; r < entity.relations.size(); ++r) {
    Allowing([&] { (void)store.Follow(entity.id, static_cast<std::int32_t>(r), ids); });
  }
  for (const RecordId id : ids) {
    Allowing([&] { ReadValues(store.OpenValues({entity.id, id}).get()); });
    Allowing([&] { ReadValues(store.OpenFlags({entity.id, id}).get()); });
  }
}

void ReadStore(const RecordStore& store) {
  for (const Entity& entity : store.GetModel()->Entities()) {
    if (!entity.isBase) Allowing([&] { ReadEntity(store, entity); });
  }
}

std::unique_ptr<RecordStore> Open(const std::filesystem::path& file) {
  const std::u16string parameters =
      u"<filename readonly='yes'>" + hv::cor::FromUtf8(file.string()).str() + u"</filename>";
  return kSqlPlugin.open(ConnectParameters(parameters));
}

/// A database that stays open while its records are changed and put right again.
class OpenGround final {
 public:
  explicit OpenGround(const Ground& ground) : m_ground(ground) {
    const std::filesystem::path file = OwnFolder() / "open.sqlite";
    m_file = open(file.c_str(), O_RDWR | O_CREAT, 0600);
    PutRight();
    m_database = OpenToChange(file);
    m_store = Open(file);
  }
  void Run(std::span<const std::uint8_t> input) {
    ChangeCells(m_database, m_ground.recordCells, input);
    ReadStore(*m_store);
    PutRight();
  }

 private:
  /// The database keeps pages for as long as the number of changes in its file stands. So each time
  /// gets numbers of its own: one for the sound content, the next one for the changed.
  void PutRight() {
    std::string bytes = m_ground.sound;
    m_changes += 2;
    constexpr std::size_t kCounter = 24;
    constexpr std::size_t kCounterOfSize = 92;
    for (const std::size_t at : {kCounter, kCounterOfSize}) {
      for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(m_changes >> (24 - 8 * i));
      }
    }
    if (pwrite(m_file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()) ||
        ftruncate(m_file, static_cast<off_t>(bytes.size())) != 0) {
      std::abort();
    }
  }

  const Ground& m_ground;
  int m_file = -1;
  std::uint32_t m_changes = 1000;
  sqlite3* m_database = nullptr;
  std::unique_ptr<RecordStore> m_store;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  KeepXml();
  // Nothing here is shared between threads, and nobody asks how much memory is used.
  static const int configured =
      sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) | sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(configured);
  static const Ground& ground = *new Ground;
  std::span<const std::uint8_t> input(data, size);
  const std::uint32_t kind = Take(input, 1);
  if (kind == 0) {
    ground.Write(TextOf(input.data(), input.size()));
  } else if (kind == 1) {
    Overwrite(ground, input);
  } else if (kind % 2 == 0) {
    static OpenGround& opened = *new OpenGround(ground);
    opened.Run(input);
    return 0;
  } else {
    ground.Write(ground.sound);
    sqlite3* const database = OpenToChange(ground.file);
    ChangeCells(database, ground.cells, input);
    sqlite3_close(database);
  }
  Allowing([&] { ReadStore(*Open(ground.file)); });
  return 0;
}

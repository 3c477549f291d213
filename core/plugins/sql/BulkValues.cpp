// core/plugins/sql/BulkValues.cpp - writing segments, and reading them by range.
#include "core/plugins/sql/BulkValues.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "core/plugins/sql/TextKey.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine::sql {
namespace {

constexpr std::size_t kSegmentBytes = std::size_t{512} << 10;
/// A last segment up to this size is written anew with what is added, so that many small additions
/// don't make many small segments.
constexpr std::size_t kSmallSegment = std::size_t{32} << 10;

std::size_t WidthOf(OdsType type) {
  std::size_t width = 0;
  switch (type) {
    case OdsType::Boolean:
    case OdsType::Byte:
      width = 1;
      break;
    case OdsType::Short:
      width = 2;
      break;
    case OdsType::Long:
    case OdsType::Enum:
    case OdsType::Float:
    case OdsType::Complex:
      width = 4;
      break;
    default:
      width = 8;
  }
  return width * PartsOf(type);
}

bool IsNumber(OdsType type) {
  const StorageKind kind = StorageKindOf(type);
  return kind == StorageKind::Integer || kind == StorageKind::Real;
}

/// Databases may come from anywhere.
[[noreturn]] void FailDamaged() {
  Fail(errc::kBadFile, {u"the stored values of a column don't fit together"});
}

/// True if a segment with that many elements may be of that size.
bool IsSize(OdsType type, std::int64_t count, std::int64_t size) {
  const auto width =
      static_cast<std::int64_t>(IsNumber(type) ? WidthOf(type) : sizeof(std::uint32_t));
  if (count < 0 || count > size / width) return false;
  return !IsNumber(type) || count * width == size;
}

/// What a segment is made of while it is collected.
class SegmentBuffer final {
 public:
  explicit SegmentBuffer(OdsType type) : m_type(type) {}
  void Add(std::span<const std::byte> bytes) {
    m_data.insert(m_data.end(), bytes.begin(), bytes.end());
    m_ends.push_back(static_cast<std::uint32_t>(m_data.size()));
  }
  void AddNumbers(std::span<const std::byte> bytes) {
    m_data.insert(m_data.end(), bytes.begin(), bytes.end());
  }
  std::size_t Size() const { return m_data.size() + m_ends.size() * sizeof(std::uint32_t); }
  std::uint64_t Count() const {
    return IsNumber(m_type) ? m_data.size() / WidthOf(m_type) : m_ends.size();
  }
  Bytes Take() {
    Bytes all(m_ends.size() * sizeof(std::uint32_t));
    if (!m_ends.empty()) std::memcpy(all.data(), m_ends.data(), all.size());
    all.insert(all.end(), m_data.begin(), m_data.end());
    m_data.clear();
    m_ends.clear();
    return all;
  }
  /// Takes the content of a stored segment up again.
  void Restore(std::span<const std::byte> stored, std::uint64_t count) {
    if (IsNumber(m_type)) return AddNumbers(stored);
    m_ends.resize(static_cast<std::size_t>(count));
    const std::size_t head = m_ends.size() * sizeof(std::uint32_t);
    if (head != 0) std::memcpy(m_ends.data(), stored.data(), head);
    AddNumbers(stored.subspan(head));
  }

 private:
  OdsType m_type;
  Bytes m_data;
  std::vector<std::uint32_t> m_ends;
};

void InsertSegment(Connection& connection, const BulkKey& key, OdsType type, std::int64_t number,
                   std::int64_t first, std::int64_t count, std::span<const std::byte> data) {
  Run run(connection,
          "INSERT INTO SF_BULK(AID,IID,PART,SEG,TYPE,FIRST,NVAL,DATA) VALUES(?,?,?,?,?,?,?,?)");
  run.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part)).Add(number);
  run.Add(std::int64_t{static_cast<int>(type)}).Add(first).Add(count);
  run->BindBytes(run.Next(), data);
  run.Finish();
}

/// Writes segments one behind the other.
class SegmentWriter final {
 public:
  SegmentWriter(Connection& connection, const BulkKey& key, OdsType type)
      : m_connection(connection), m_key(key), m_type(type), m_buffer(type) {
    Run last(connection,
             "SELECT SEQ, SEG, FIRST, NVAL, DATA FROM SF_BULK WHERE AID=? AND IID=? AND PART=?"
             " ORDER BY SEG DESC LIMIT 1");
    last.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part));
    if (!last->Step()) return;
    m_segment = last->Integer(1) + 1;
    m_first = last->Integer(2) + last->Integer(3);
    const std::span<const std::byte> data = last->Bytes(4);
    if (!IsSize(type, last->Integer(3), static_cast<std::int64_t>(data.size()))) FailDamaged();
    if (data.size() > kSmallSegment) return;
    m_replaced = last->Integer(0);
    m_segment = last->Integer(1);
    m_first = last->Integer(2);
    m_buffer.Restore(data, static_cast<std::uint64_t>(last->Integer(3)));
  }

  void AddPacked(std::span<const std::byte> bytes) {
    const std::size_t room = kSegmentBytes / WidthOf(m_type) * WidthOf(m_type);
    while (!bytes.empty()) {
      const std::size_t taken = std::min(bytes.size(), room - std::min(room, m_buffer.Size()));
      m_buffer.AddNumbers(bytes.first(taken));
      bytes = bytes.subspan(taken);
      if (m_buffer.Size() >= room) Flush();
    }
  }
  void Add(std::span<const std::byte> bytes) {
    m_buffer.Add(bytes);
    if (m_buffer.Size() >= kSegmentBytes) Flush();
  }
  void Finish(bool mayBeEmpty) {
    if (m_buffer.Count() != 0 || (mayBeEmpty && m_segment == 0)) Flush();
  }

 private:
  void Flush() {
    if (m_replaced != 0) {
      Run(m_connection, "DELETE FROM SF_BULK WHERE SEQ=?").Add(m_replaced).Finish();
      m_replaced = 0;
    }
    const auto count = static_cast<std::int64_t>(m_buffer.Count());
    const Bytes data = m_buffer.Take();
    InsertSegment(m_connection, m_key, m_type, m_segment, m_first, count, data);
    m_first += count;
    ++m_segment;
  }

  Connection& m_connection;
  BulkKey m_key;
  OdsType m_type;
  SegmentBuffer m_buffer;
  std::int64_t m_segment = 0;
  std::int64_t m_first = 0;
  std::int64_t m_replaced = 0;  // row of the small last segment
};

// --- changing in place -------------------------------------------------------------------------

struct StoredSegment {
  std::int64_t row = 0;
  std::int64_t number = 0;
  std::uint64_t first = 0;
  std::uint64_t count = 0;
};

StoredSegment ReadSegment(Connection& connection, const BulkKey& key, OdsType type,
                          std::int64_t number) {
  Run run(connection,
          "SELECT SEQ, FIRST, NVAL, TYPE, length(DATA) FROM SF_BULK"
          " WHERE AID=? AND IID=? AND PART=? AND SEG=?");
  run.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part)).Add(number);
  if (!run->Step() || run->Integer(3) != static_cast<std::int64_t>(type) ||
      !IsSize(type, run->Integer(2), run->Integer(4))) {
    FailDamaged();
  }
  return {run->Integer(0), number, static_cast<std::uint64_t>(run->Integer(1)),
          static_cast<std::uint64_t>(run->Integer(2))};
}

/// The segment that a value lies in. Segments differ in size, but are counted without gaps.
StoredSegment FindSegment(Connection& connection, const BulkKey& key, OdsType type,
                          std::uint64_t value) {
  std::int64_t low = 0;
  std::int64_t high = 0;
  {
    Run last(connection, "SELECT max(SEG) FROM SF_BULK WHERE AID=? AND IID=? AND PART=?");
    last.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part));
    if (last->Step()) high = last->Integer(0);
  }
  while (low <= high) {
    const std::int64_t middle = low + (high - low) / 2;
    const StoredSegment segment = ReadSegment(connection, key, type, middle);
    if (value < segment.first) {
      high = middle - 1;
    } else if (value - segment.first >= segment.count) {
      low = middle + 1;
    } else {
      return segment;
    }
  }
  FailDamaged();
}

/// Makes room for more segments behind one.
void ShiftSegments(Connection& connection, const BulkKey& key, std::int64_t behind,
                   std::int64_t by) {
  // Numbers are unique at every moment, so they move by way of the negative ones.
  Run(connection, "UPDATE SF_BULK SET SEG=-SEG-? WHERE AID=? AND IID=? AND PART=? AND SEG>?")
      .Add(by)
      .Add(key.aid)
      .Add(key.id)
      .Add(static_cast<std::int64_t>(key.part))
      .Add(behind)
      .Finish();
  Run(connection, "UPDATE SF_BULK SET SEG=-SEG WHERE AID=? AND IID=? AND PART=? AND SEG<0")
      .Add(key.aid)
      .Add(key.id)
      .Add(static_cast<std::int64_t>(key.part))
      .Finish();
}

/// Writes a segment of texts or byte strings with `pieces` in place of those from `offset` on. It
/// gets a new row, so that whoever opened it notices that ends have moved.
void ReplacePieces(Connection& connection, const BulkKey& key, OdsType type,
                   const StoredSegment& segment, std::size_t offset,
                   std::span<const std::span<const std::byte>> pieces) {
  Bytes stored;
  {
    Run run(connection, "SELECT DATA FROM SF_BULK WHERE SEQ=?");
    run.Add(segment.row);
    if (!run->Step()) FailDamaged();
    const std::span<const std::byte> data = run->Bytes(0);
    stored.assign(data.begin(), data.end());
  }
  const auto count = static_cast<std::size_t>(segment.count);
  std::vector<std::uint32_t> ends(count + 1);
  const std::size_t head = count * sizeof(std::uint32_t);
  std::copy_n(stored.begin(), head, std::as_writable_bytes(std::span(ends).subspan(1)).begin());
  const std::span<const std::byte> content = std::span(stored).subspan(head);
  if (!std::is_sorted(ends.begin(), ends.end()) || ends.back() > content.size()) FailDamaged();
  const auto pieceAt = [&](std::size_t i) {
    const bool isNew = i >= offset && i - offset < pieces.size();
    return isNew ? pieces[i - offset] : content.subspan(ends[i], ends[i + 1] - ends[i]);
  };
  std::size_t size = head;
  for (std::size_t i = 0; i < count; ++i) size += pieceAt(i).size();
  // A segment may grow to twice its size before it is cut up, so that this comes seldom.
  const std::size_t most = size > 2 * kSegmentBytes ? kSegmentBytes : size;
  struct Part {
    std::int64_t count;
    Bytes data;
  };
  std::vector<Part> parts;
  SegmentBuffer buffer(type);
  for (std::size_t i = 0; i < count; ++i) {
    buffer.Add(pieceAt(i));
    if (buffer.Size() < most && i + 1 != count) continue;
    const auto taken = static_cast<std::int64_t>(buffer.Count());
    parts.push_back({taken, buffer.Take()});
  }
  Run(connection, "DELETE FROM SF_BULK WHERE SEQ=?").Add(segment.row).Finish();
  const auto more = static_cast<std::int64_t>(parts.size()) - 1;
  if (more > 0) ShiftSegments(connection, key, segment.number, more);
  auto first = static_cast<std::int64_t>(segment.first);
  std::int64_t number = segment.number;
  for (const Part& part : parts) {
    InsertSegment(connection, key, type, number++, first, part.count, part.data);
    first += part.count;
  }
}

// --- reading -----------------------------------------------------------------------------------

class BulkSource final : public ValueSource {
 public:
  struct Segment {
    std::int64_t row;
    std::uint64_t first;
    std::uint64_t count;
    std::uint64_t size;  // bytes
  };
  BulkSource(std::shared_ptr<Connection> connection, OdsType type, std::vector<Segment> segments)
      : m_connection(std::move(connection)), m_type(type), m_segments(std::move(segments)) {}

  OdsType Type() const override { return m_type; }
  std::uint64_t Count() const override { return m_segments.back().first + m_segments.back().count; }
  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    ReadNumbers(first, out, m_type == OdsType::LongLong || m_type == OdsType::Id,
                [](const InMemoryValues& v, std::span<std::int64_t> to) { v.ReadIntegers(0, to); });
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    ReadNumbers(first, out, m_type == OdsType::Double || m_type == OdsType::DComplex,
                [](const InMemoryValues& v, std::span<double> to) { v.ReadReals(0, to); });
  }
  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const override {
    CheckKind(StorageKind::Text);
    std::u16string text;
    ReadPieces(first, count, [&](std::span<const std::byte> bytes) {
      text.clear();
      AppendUtf16({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, text);
      sink(text);
    });
  }
  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const override {
    CheckKind(StorageKind::Bytes);
    ReadPieces(first, count, sink);
  }

 private:
  void CheckKind(StorageKind kind) const {
    if (StorageKindOf(m_type) != kind) {
      Fail(errc::kWrongType, {u"the values are of type ", NameOfType(m_type, true)});
    }
  }
  void CheckRange(std::uint64_t first, std::uint64_t count) const {
    if (first <= Count() && count <= Count() - first) return;
    Fail(errc::kInvalidArgument,
         {u"there are only ", DecimalText(static_cast<std::int64_t>(Count())), u" values"});
  }
  void MoveTo(const Segment& segment) const {
    if (m_blob == nullptr) {
      m_blob = m_connection->OpenBlob("SF_BULK", "DATA", segment.row);
    } else if (m_row != segment.row) {
      m_blob->MoveTo(segment.row);
    }
    m_row = segment.row;
  }
  std::size_t SegmentOf(std::uint64_t first) const {
    const auto behind = std::upper_bound(
        m_segments.begin(), m_segments.end(), first,
        [](std::uint64_t value, const Segment& segment) { return value < segment.first; });
    return static_cast<std::size_t>(behind - m_segments.begin()) - 1;
  }
  /// Calls `take(segment, first, count)` for each part of a range, both counted in the segment.
  template <class Take>
  void ForEachPart(std::uint64_t first, std::uint64_t count, Take take) const {
    if (count == 0) return;
    for (std::size_t i = SegmentOf(first); count != 0; ++i) {
      const Segment& segment = m_segments[i];
      const std::uint64_t offset = first - segment.first;
      const std::uint64_t part = std::min(count, segment.count - offset);
      if (part == 0) continue;
      MoveTo(segment);
      take(segment, static_cast<std::size_t>(offset), static_cast<std::size_t>(part));
      first += part;
      count -= part;
    }
    // An open blob holds a state of the database; nobody else may wait for it.
    m_blob.reset();
  }

  template <class Number, class Convert>
  void ReadNumbers(std::uint64_t first, std::span<Number> out, bool isSame, Convert convert) const {
    if (!IsNumber(m_type)) CheckKind(StorageKind::Real);
    const std::size_t parts = PartsOf(m_type);
    const std::uint64_t count = out.size() / parts;
    CheckRange(first, count);
    const std::size_t width = WidthOf(m_type);
    Bytes packed;
    ForEachPart(first, count, [&](const Segment&, std::size_t offset, std::size_t part) {
      const std::span<Number> to = out.first(part * parts);
      if (isSame) {
        m_blob->Read(offset * width, std::as_writable_bytes(to));
      } else {
        packed.resize(part * width);
        m_blob->Read(offset * width, packed);
        InMemoryValues values(m_type);
        values.AddPacked(packed.data(), part * parts);
        convert(values, to);
      }
      out = out.subspan(part * parts);
    });
  }

  template <class Sink>
  void ReadPieces(std::uint64_t first, std::uint64_t count, const Sink& sink) const {
    CheckRange(first, count);
    Bytes data;
    std::vector<std::uint32_t> ends;
    ForEachPart(first, count, [&](const Segment& segment, std::size_t offset, std::size_t part) {
      const std::size_t head = static_cast<std::size_t>(segment.count) * sizeof(std::uint32_t);
      const std::size_t skipped = offset == 0 ? 0 : 1;  // the end before is the first one's begin
      ends.assign(part + 1, 0);
      m_blob->Read((offset - skipped) * sizeof(std::uint32_t),
                   std::as_writable_bytes(std::span(ends).subspan(1 - skipped)));
      if (!std::is_sorted(ends.begin(), ends.end()) || ends.back() > segment.size - head) {
        FailDamaged();
      }
      data.resize(ends.back() - ends.front());
      m_blob->Read(head + ends.front(), data);
      for (std::size_t i = 0; i < part; ++i) {
        sink(std::span<const std::byte>(data).subspan(ends[i] - ends[0], ends[i + 1] - ends[i]));
      }
    });
  }

  std::shared_ptr<Connection> m_connection;
  OdsType m_type;
  std::vector<Segment> m_segments;
  mutable std::unique_ptr<BlobReader> m_blob;
  mutable std::int64_t m_row = 0;
};

}  // namespace

void DeleteBulk(Connection& connection, const BulkKey& key) {
  Run(connection, "DELETE FROM SF_BULK WHERE AID=? AND IID=? AND PART=?")
      .Add(key.aid)
      .Add(key.id)
      .Add(static_cast<std::int64_t>(key.part))
      .Finish();
}

std::uint64_t CountBulk(Connection& connection, const BulkKey& key, OdsType* type) {
  Run run(connection,
          "SELECT FIRST+NVAL, TYPE FROM SF_BULK WHERE AID=? AND IID=? AND PART=?"
          " ORDER BY SEG DESC LIMIT 1");
  run.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part));
  if (!run->Step()) return 0;
  if (type != nullptr) *type = static_cast<OdsType>(run->Integer(1));
  return static_cast<std::uint64_t>(run->Integer(0));
}

void AppendBulk(Connection& connection, const BulkKey& key, const Value& values) {
  SegmentWriter writer(connection, key, values.type);
  if (const auto* texts = std::get_if<Value::Texts>(&values.data)) {
    for (const std::u16string& text : *texts) {
      const std::string stored = ToStored(text);
      writer.Add(std::as_bytes(std::span(stored)));
    }
  } else if (const auto* strings = std::get_if<Value::ByteStrings>(&values.data)) {
    for (const Bytes& bytes : *strings) writer.Add(bytes);
  } else {
    writer.AddPacked(InMemoryValues::FromValue(values)->Packed());
  }
  writer.Finish(true);
}

void OverwriteBulk(Connection& connection, const BulkKey& key, std::uint64_t first,
                   const Value& values) {
  const OdsType type = values.type;
  const std::size_t width = WidthOf(type);
  std::vector<std::string> stored;
  std::vector<std::span<const std::byte>> pieces;
  std::shared_ptr<const InMemoryValues> numbers;
  if (const auto* texts = std::get_if<Value::Texts>(&values.data)) {
    stored.reserve(texts->size());
    for (const std::u16string& text : *texts) {
      pieces.push_back(std::as_bytes(std::span(stored.emplace_back(ToStored(text)))));
    }
  } else if (const auto* strings = std::get_if<Value::ByteStrings>(&values.data)) {
    pieces.assign(strings->begin(), strings->end());
  } else {
    numbers = InMemoryValues::FromValue(values);
  }
  const auto count = static_cast<std::size_t>(values.Count());
  for (std::size_t done = 0; done < count;) {
    const StoredSegment segment = FindSegment(connection, key, type, first + done);
    const auto offset = static_cast<std::size_t>(first + done - segment.first);
    const std::size_t part =
        std::min(count - done, static_cast<std::size_t>(segment.count) - offset);
    if (numbers != nullptr) {
      connection.OpenBlobToWrite("SF_BULK", "DATA", segment.row)
          ->Write(offset * width, numbers->Packed().subspan(done * width, part * width));
    } else {
      ReplacePieces(connection, key, type, segment, offset, std::span(pieces).subspan(done, part));
    }
    done += part;
  }
}

void CopyBulk(Connection& connection, const BulkKey& key, const ValueSource& source) {
  const OdsType type = source.Type();
  SegmentWriter writer(connection, key, type);
  const std::span<const std::byte> whole = source.Contiguous();
  const std::uint64_t count = source.Count();
  const StorageKind kind = StorageKindOf(type);
  // Nobody reads the source a second time, and it may be larger than memory.
  constexpr std::size_t kMostHeld = std::size_t{16} << 20;
  std::size_t held = 0;
  const auto note = [&](std::size_t bytes) {
    if ((held += bytes) < kMostHeld) return;
    source.Forget();
    held = 0;
  };
  if (kind == StorageKind::Text) {
    source.ReadTexts(0, count, [&](std::u16string_view text) {
      const std::string stored = ToStored(text);
      writer.Add(std::as_bytes(std::span(stored)));
      note(stored.size());
    });
  } else if (kind == StorageKind::Bytes) {
    source.ReadBytes(0, count, [&](std::span<const std::byte> bytes) {
      writer.Add(bytes);
      note(bytes.size());
    });
  } else if (!whole.empty()) {
    for (std::size_t at = 0; at < whole.size(); at += kMostHeld) {
      const auto piece = whole.subspan(at, std::min(kMostHeld, whole.size() - at));
      writer.AddPacked(piece);
      note(piece.size());
    }
  } else {
    constexpr std::uint64_t kPiece = 1 << 16;
    const std::size_t parts = PartsOf(type);
    for (std::uint64_t first = 0; first < count; first += kPiece) {
      const auto size = static_cast<std::size_t>(std::min(kPiece, count - first));
      Value piece{type, true, {}};
      if (kind == StorageKind::Integer) {
        source.ReadIntegers(first, piece.data.emplace<Value::Integers>(size * parts));
      } else {
        source.ReadReals(first, piece.data.emplace<Value::Reals>(size * parts));
      }
      writer.AddPacked(InMemoryValues::FromValue(piece)->Packed());
      note(size * parts * sizeof(double));
    }
  }
  source.Forget();
  writer.Finish(true);
}

std::unique_ptr<ValueSource> OpenBulk(std::shared_ptr<Connection> connection, const BulkKey& key) {
  std::vector<BulkSource::Segment> segments;
  auto type = OdsType::Unknown;
  {
    Run run(*connection,
            "SELECT SEQ, FIRST, NVAL, TYPE, length(DATA), typeof(DATA) FROM SF_BULK"
            " WHERE AID=? AND IID=? AND PART=? ORDER BY SEG");
    run.Add(key.aid).Add(key.id).Add(static_cast<std::int64_t>(key.part));
    std::int64_t next = 0;
    while (run->Step()) {
      const std::int64_t number = run->Integer(3);
      const std::int64_t count = run->Integer(2);
      const std::int64_t size = run->Integer(4);
      if (segments.empty()) type = static_cast<OdsType>(number);
      if (SeamTypeOf(type) == 0 || number != static_cast<std::int64_t>(type) ||
          run->Integer(1) != next || run->Text(5) != "blob" || !IsSize(type, count, size)) {
        FailDamaged();
      }
      segments.push_back({run->Integer(0), static_cast<std::uint64_t>(next),
                          static_cast<std::uint64_t>(count), static_cast<std::uint64_t>(size)});
      next += count;
    }
  }
  if (segments.empty()) return nullptr;
  return std::make_unique<BulkSource>(std::move(connection), type, std::move(segments));
}

}  // namespace hv::vex::engine::sql

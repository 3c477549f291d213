// core/plugins/atfx/ValueSpool.cpp - blocks of packed values in an unlinked file.
#include "core/plugins/atfx/ValueSpool.h"

#include "core/store/memory/Failure.h"

#include "storefabric/WString.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace hv::vex::engine::atfx {

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 20;

/// -1 and errno for a folder in which no file can be made.
int MakeNamelessFile(const std::filesystem::path& folder) {
  const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (file >= 0 || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)) return file;
  // Not every file system can do that.
  std::string name = (folder / "storefabric-XXXXXX").string();
  const int named = mkostemp(name.data(), O_CLOEXEC);
  if (named >= 0) unlink(name.c_str());
  return named;
}

/// Keeps the block that was read last: most readers go from the first value to the last.
class SpooledSource final : public ValueSource {
 public:
  explicit SpooledSource(std::shared_ptr<const SpooledValues> values)
      : m_values(std::move(values)), m_loaded(m_values->Type()) {}

  [[nodiscard]] OdsType Type() const override { return m_values->Type(); }
  [[nodiscard]] std::uint64_t Count() const override { return m_values->Count(); }
  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    const std::size_t width = PartsOf(Type());
    ForEachPart(first, out.size() / width, [&](std::uint64_t at, std::uint64_t done, auto count) {
      m_loaded.ReadIntegers(at, out.subspan(done * width, count * width));
    });
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    const std::size_t width = PartsOf(Type());
    ForEachPart(first, out.size() / width, [&](std::uint64_t at, std::uint64_t done, auto count) {
      m_loaded.ReadReals(at, out.subspan(done * width, count * width));
    });
  }
  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const override {
    ForEachPart(first, count, [&](std::uint64_t at, std::uint64_t, std::uint64_t number) {
      m_loaded.ReadTexts(at, number, sink);
    });
  }
  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const override {
    ForEachPart(first, count, [&](std::uint64_t at, std::uint64_t, std::uint64_t number) {
      m_loaded.ReadBytes(at, number, sink);
    });
  }

 private:
  /// Calls `use(first, done, count)` for each part of a range with its block loaded; `first` counts
  /// in the block.
  template <class Use>
  void ForEachPart(std::uint64_t first, std::uint64_t count, Use use) const {
    if (first > Count() || count > Count() - first) {
      Fail(errc::kInvalidArgument,
           {u"there are only ", DecimalText(static_cast<std::int64_t>(Count())), u" values"});
    }
    for (std::uint64_t done = 0; done < count;) {
      const std::size_t block = m_values->BlockOf(first + done);
      if (m_block != block) {
        m_loaded = m_values->Load(block);
        m_block = block;
      }
      const std::uint64_t at = first + done - m_values->FirstOf(block);
      const std::uint64_t number = std::min(count - done, m_loaded.Count() - at);
      use(at, done, number);
      done += number;
    }
  }

  std::shared_ptr<const SpooledValues> m_values;
  mutable InMemoryValues m_loaded;
  mutable std::optional<std::size_t> m_block;
};

}  // namespace

ValueSpool::ValueSpool(const std::filesystem::path& folder) : m_folder(folder) {
  m_file = MakeNamelessFile(folder);
  if (m_file < 0) FailNow(errno);
}

ValueSpool::~ValueSpool() { close(m_file); }

void ValueSpool::FailNow(int error) const {
  Fail(errc::kWriteFailed, {u"a temporary file in ", cor::FromUtf8(m_folder.string()), u": ",
                            cor::FromUtf8(std::generic_category().message(error))});
}

std::uint64_t ValueSpool::Add(std::span<const std::byte> bytes) {
  const std::uint64_t at = m_written + m_pending.size();
  m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
  if (m_pending.size() >= kPiece) Flush();
  return at;
}

void ValueSpool::Flush() {
  std::span<const std::byte> rest(m_pending);
  while (!rest.empty()) {
    const ssize_t done = pwrite(m_file, rest.data(), rest.size(), static_cast<off_t>(m_written));
    if (done < 0) {
      if (errno == EINTR) continue;
      FailNow(errno);
    }
    m_written += static_cast<std::uint64_t>(done);
    rest = rest.subspan(static_cast<std::size_t>(done));
  }
  m_pending.clear();
}

void ValueSpool::Read(std::uint64_t at, std::span<std::byte> out) const {
  while (!out.empty() && at < m_written) {
    const std::size_t most =
        static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), m_written - at));
    const ssize_t done = pread(m_file, out.data(), most, static_cast<off_t>(at));
    if (done < 0 && errno == EINTR) continue;
    if (done <= 0) FailNow(done < 0 ? errno : EIO);
    at += static_cast<std::uint64_t>(done);
    out = out.subspan(static_cast<std::size_t>(done));
  }
  if (out.empty()) return;
  const std::size_t pending = static_cast<std::size_t>(at - m_written);
  std::copy_n(m_pending.begin() + static_cast<std::ptrdiff_t>(pending), out.size(), out.begin());
}

void SpooledValues::Add(const InMemoryValues& block) {
  if (block.Count() == 0) return;
  const Bytes image = block.Image();
  const std::uint64_t at = m_spool->Add(image);
  m_blocks.push_back({at, m_count, image.size(), block.Count(), block.Type()});
  m_count += block.Count();
  m_type = block.Type();
}

std::size_t SpooledValues::BlockOf(std::uint64_t value) const {
  const auto behind =
      std::upper_bound(m_blocks.begin(), m_blocks.end(), value,
                       [](std::uint64_t at, const Block& block) { return at < block.first; });
  return static_cast<std::size_t>(behind - m_blocks.begin()) - 1;
}

InMemoryValues SpooledValues::Load(std::size_t block) const {
  const Block& stored = m_blocks[block];
  Bytes image(static_cast<std::size_t>(stored.size));
  m_spool->Read(stored.at, image);
  return InMemoryValues::FromImage(stored.type, stored.count, image);
}

std::unique_ptr<ValueSource> SpooledValues::Open(std::shared_ptr<const SpooledValues> values) {
  return std::make_unique<SpooledSource>(std::move(values));
}

}  // namespace hv::vex::engine::atfx

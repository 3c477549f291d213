// core/plugins/atfx/ComponentValues.cpp - opens components and joins those of one column.
#include "core/plugins/atfx/ComponentValues.h"

#include "core/plugins/atfx/FixedWidthValues.h"
#include "core/plugins/atfx/PackedTextValues.h"

#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"

#include <algorithm>

namespace hv::vex::engine::atfx {

namespace {

bool HasByteLength(Layout layout) {
  return layout == Layout::Latin1Texts || layout == Layout::Utf8Texts ||
         layout == Layout::ByteStrings;
}

/// Several sources of one type, one after the other.
class JoinedValues final : public ValueSource {
 public:
  explicit JoinedValues(std::vector<std::unique_ptr<ValueSource>> parts)
      : m_parts(std::move(parts)) {
    std::uint64_t count = 0;
    for (const auto& part : m_parts) m_ends.push_back(count += part->Count());
  }

  [[nodiscard]] OdsType Type() const override { return m_parts.front()->Type(); }
  [[nodiscard]] std::uint64_t Count() const override { return m_ends.back(); }
  void Forget() const override {
    for (const auto& part : m_parts) part->Forget();
  }
  void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const override {
    const std::size_t width = PartsOf(Type());
    ForEachPart(
        first, out.size() / width,
        [&](const ValueSource& part, std::uint64_t at, std::size_t done, std::size_t count) {
          part.ReadIntegers(at, out.subspan(done * width, count * width));
        });
  }
  void ReadReals(std::uint64_t first, std::span<double> out) const override {
    const std::size_t width = PartsOf(Type());
    ForEachPart(
        first, out.size() / width,
        [&](const ValueSource& part, std::uint64_t at, std::size_t done, std::size_t count) {
          part.ReadReals(at, out.subspan(done * width, count * width));
        });
  }
  void ReadTexts(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::u16string_view)>& sink) const override {
    ForEachPart(first, count,
                [&](const ValueSource& part, std::uint64_t at, std::size_t, std::size_t number) {
                  part.ReadTexts(at, number, sink);
                });
  }
  void ReadBytes(std::uint64_t first, std::uint64_t count,
                 const std::function<void(std::span<const std::byte>)>& sink) const override {
    ForEachPart(first, count,
                [&](const ValueSource& part, std::uint64_t at, std::size_t, std::size_t number) {
                  part.ReadBytes(at, number, sink);
                });
  }

 private:
  template <class Use>
  void ForEachPart(std::uint64_t first, std::uint64_t count, Use use) const {
    std::size_t index = static_cast<std::size_t>(
        std::upper_bound(m_ends.begin(), m_ends.end(), first) - m_ends.begin());
    std::uint64_t done = 0;
    for (; done < count; ++index) {
      const std::uint64_t begin = index == 0 ? 0 : m_ends[index - 1];
      const std::uint64_t at = first + done - begin;
      const std::uint64_t number = std::min(count - done, m_ends[index] - begin - at);
      if (number != 0) {
        use(*m_parts[index], at, static_cast<std::size_t>(done), static_cast<std::size_t>(number));
      }
      done += number;
    }
  }

  std::vector<std::unique_ptr<ValueSource>> m_parts;
  std::vector<std::uint64_t> m_ends;
};

std::u16string Complaint(const Component& component, std::u16string_view columnName,
                         std::u16string_view reason) {
  std::u16string text(component.fileName);
  text.append(u": values of column '").append(columnName).append(u"': ").append(reason);
  return text;
}

/// Opens one component and tells in `isCut` whether the file ends early.
std::unique_ptr<ValueSource> OpenOne(ComponentFiles& files, const Component& component,
                                     OdsType wanted, std::u16string_view columnName, bool* isCut) {
  if (!component.typespec) {
    Fail(errc::kBadFile, {Complaint(component, columnName, u"unknown storage type")});
  }
  std::shared_ptr<const ComponentFile> file = files.Open(component.fileName);
  std::unique_ptr<ValueSource> source;
  if (component.typespec->layout == Layout::ByteStrings) {
    source = OpenByteStrings(std::move(file), component, isCut);
  } else if (HasByteLength(component.typespec->layout)) {
    source = OpenTexts(std::move(file), component, wanted, isCut);
  } else {
    std::u16string_view problem;
    source = OpenFixedWidth(std::move(file), component, wanted, isCut, &problem);
    if (!source) Fail(errc::kBadFile, {Complaint(component, columnName, problem)});
  }
  if (*isCut && source->Count() == 0) {
    Fail(errc::kBadFile, {Complaint(component, columnName, u"the file is too short")});
  }
  if (*isCut) {
    files.Warn(Complaint(component, columnName, u"the file ends early, the rest is missing"));
  }
  return source;
}

}  // namespace

std::optional<std::uint64_t> ClaimedCount(const Component& component, OdsType type) {
  if (!component.typespec || HasByteLength(component.typespec->layout)) return std::nullopt;
  return component.length / PartsOf(type);
}

std::unique_ptr<ValueSource> OpenComponents(ComponentFiles& files,
                                            const std::vector<Component>& components,
                                            OdsType wanted, std::u16string_view columnName) {
  std::vector<std::unique_ptr<ValueSource>> parts;
  for (const Component& component : components) {
    bool isCut = false;
    parts.push_back(OpenOne(files, component, wanted, columnName, &isCut));
    if (parts.back()->Type() != parts.front()->Type()) {
      Fail(errc::kBadFile,
           {Complaint(component, columnName, u"its components are of different types")});
    }
    // Values behind a gap would stand in the wrong rows.
    if (isCut) break;
  }
  if (parts.empty()) return nullptr;
  if (parts.size() == 1) return std::move(parts.front());
  return std::make_unique<JoinedValues>(std::move(parts));
}

}  // namespace hv::vex::engine::atfx

// core/plugins/atfx/ColumnContent.cpp - inline values and component descriptions.
#include "core/plugins/atfx/ColumnContent.h"

#include "core/plugins/atfx/AsciiText.h"
#include "core/store/memory/Column.h"

#include <algorithm>
#include <limits>

namespace hv::vex::engine::atfx {

namespace {

constexpr TypedContent::Rules Plain(OdsType type) { return {type, nullptr, false, false}; }

// Reading takes any row, writing the first one of a type.
constexpr InlineForm kInlineForms[] = {
    {u"A_UTF8STRING", Plain(OdsType::String)},
    {u"A_ASCIISTRING", Plain(OdsType::String)},
    {u"A_TIMESTRING", Plain(OdsType::Date)},
    {u"A_INT8", {OdsType::Byte, nullptr, true, false}},
    {u"A_UINT8", Plain(OdsType::Byte)},
    {u"A_INT16", Plain(OdsType::Short)},
    {u"A_INT32", Plain(OdsType::Long)},
    {u"A_UINT16", Plain(OdsType::Long)},
    {u"A_INT64", Plain(OdsType::LongLong)},
    {u"A_UINT32", Plain(OdsType::LongLong)},
    {u"A_UINT64", Plain(OdsType::LongLong)},
    {u"A_FLOAT32", Plain(OdsType::Float)},
    {u"A_FLOAT64", Plain(OdsType::Double)},
    {u"A_COMPLEX32", Plain(OdsType::Complex)},
    {u"A_COMPLEX64", Plain(OdsType::DComplex)},
    {u"A_BOOLEAN", Plain(OdsType::Boolean)},
    {u"A_BYTEFIELD", {OdsType::ByteStr, nullptr, false, true}},
    {u"Bytestream", {OdsType::ByteStr, nullptr, false, true}},
    {u"A_BLOB", Plain(OdsType::Blob)},
    {u"A_EXTERNALREFERENCE", Plain(OdsType::ExternalReference)},
    {u"A_ENUM", Plain(OdsType::Enum)},
};

/// A block of this size goes to the spool while the element is still open.
constexpr std::size_t kSpoolBlock = std::size_t{1} << 20;
/// Less than that isn't worth the description of a place in the spool.
constexpr std::size_t kLeastSpooled = 256;
constexpr std::uint64_t kFlagsAtOnce = std::uint64_t{1} << 18;

bool AllFit(const InMemoryValues& block, OdsType type) {
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(block.Count()));
  block.ReadIntegers(0, numbers);
  return std::all_of(numbers.begin(), numbers.end(),
                     [&](std::int64_t number) { return IntegerFits(type, number); });
}

}  // namespace

const InlineForm* FindInlineForm(std::u16string_view tag) {
  for (const InlineForm& form : kInlineForms) {
    if (EqualsIgnoringAsciiCase(tag, form.tag)) return &form;
  }
  return nullptr;
}

std::u16string_view InlineTagOf(OdsType type) {
  if (type == OdsType::Id) type = OdsType::LongLong;
  for (const InlineForm& form : kInlineForms) {
    if (form.rules.type == type) return form.tag;
  }
  return {};
}

void ColumnContent::Begin(bool isFlags, std::u16string_view what) {
  m_isFlags = isFlags;
  m_what = what;
  m_part = Part::Top;
  m_depth = 0;
  inlineValues = {};
  components.clear();
  m_isOwnText = isFlags;
  if (isFlags) BeginTyped(Plain(OdsType::Short));
}

void ColumnContent::OnStart(std::u16string_view name) {
  switch (m_part) {
    case Part::Typed:
      ++m_depth;
      m_typed.OnStart(name);
      return;
    case Part::Unknown:
      ++m_depth;
      return;
    case Part::Component:
      m_part = Part::Leaf;
      m_tag = name;
      m_text.clear();
      return;
    case Part::Leaf:
      m_context.Refuse(Join({u"tag '", name, u"' inside '", m_tag, u"' of a component"}));
    case Part::Top:
      break;
  }
  if (name == u"component") {
    m_part = Part::Component;
    components.emplace_back();
    m_valueScale = 0;
  } else if (const InlineForm* const form = FindInlineForm(name)) {
    m_part = Part::Typed;
    m_isOwnText = false;
    BeginTyped(form->rules);
  } else {
    m_context.Warn(Join({u"unknown tag '", name, u"' in ", m_what}));
    m_part = Part::Unknown;
  }
}

void ColumnContent::OnText(std::u16string_view text) {
  if (m_part == Part::Leaf) {
    m_text += text;
  } else if (m_part == Part::Typed || (m_part == Part::Top && m_isOwnText)) {
    m_typed.OnText(text);
    if (m_spool) SpoolIfLarge(kSpoolBlock);
  }
}

void ColumnContent::OnEnd() {
  switch (m_part) {
    case Part::Typed:
      if (m_depth != 0) {
        --m_depth;
        m_typed.OnEnd();
        if (m_spool) SpoolIfLarge(kSpoolBlock);
        return;
      }
      EndTyped();
      break;
    case Part::Unknown:
      if (m_depth != 0) {
        --m_depth;
        return;
      }
      break;
    case Part::Leaf:
      EndLeaf();
      m_part = Part::Component;
      return;
    case Part::Component:
      // Some exporters tell the values per block as a scale.
      if (m_valueScale > 1 && components.back().valuesPerBlock <= 1) {
        components.back().valuesPerBlock = m_valueScale;
      }
      break;
    case Part::Top:
      break;
  }
  m_part = Part::Top;
}

void ColumnContent::End() {
  if (m_isOwnText) EndTyped();
  if (m_isFlags && inlineValues && inlineValues.Type() != OdsType::Short) MakeFlags();
}

void ColumnContent::BeginTyped(const TypedContent::Rules& rules) {
  m_spooled.reset();
  m_mayBeSigned = rules.mayBeSigned;
  m_hadSigned = false;
  m_typed.Begin(rules, m_what);
}

void ColumnContent::SpoolIfLarge(std::size_t size) {
  InMemoryValues* const block = m_typed.TakeIfLarge(size);
  if (!block) return;
  if (m_mayBeSigned && !m_hadSigned) m_hadSigned = !AllFit(*block, OdsType::Byte);
  if (!m_spooled) m_spooled = std::make_shared<SpooledValues>(m_spool);
  m_spooled->Add(*block);
  block->Clear();
}

void ColumnContent::EndTyped() {
  std::shared_ptr<InMemoryValues> rest = m_typed.End();
  if (!m_spool || (!m_spooled && (!rest || rest->SizeInBytes() < kLeastSpooled))) {
    inlineValues = InlineValues(std::shared_ptr<const InMemoryValues>(std::move(rest)));
    return;
  }
  if (!m_spooled) m_spooled = std::make_shared<SpooledValues>(m_spool);
  const OdsType restType = rest ? rest->Type() : OdsType::Byte;
  if (rest) m_spooled->Add(*rest);
  // Bytes come as Shorts until the last of them has shown whether they are signed.
  if (m_mayBeSigned) {
    const bool isSigned = m_hadSigned || restType == OdsType::Short;
    if (m_hadSigned && restType != OdsType::Short) m_typed.WarnOfSignedBytes();
    m_spooled->ShowAs(isSigned ? OdsType::Short : OdsType::Byte);
  }
  inlineValues = InlineValues(std::shared_ptr<const SpooledValues>(std::move(m_spooled)));
}

void ColumnContent::MakeFlags() {
  if (StorageKindOf(inlineValues.Type()) != StorageKind::Integer) {
    m_context.Refuse(Join({m_what, u" aren't integers"}));
  }
  const auto source = inlineValues.Open();
  const auto make = [&](const auto& add) {
    std::vector<std::int64_t> numbers;
    for (std::uint64_t first = 0; first < source->Count(); first += kFlagsAtOnce) {
      numbers.resize(static_cast<std::size_t>(std::min(kFlagsAtOnce, source->Count() - first)));
      source->ReadIntegers(first, numbers);
      InMemoryValues flags(OdsType::Short);
      for (const std::int64_t number : numbers) {
        if (!flags.AddInteger(number)) m_context.Refuse(Join({m_what, u" are out of range"}));
      }
      add(flags);
    }
  };
  if (m_spool) {
    auto flags = std::make_shared<SpooledValues>(m_spool);
    make([&](const InMemoryValues& piece) { flags->Add(piece); });
    inlineValues = InlineValues(std::shared_ptr<const SpooledValues>(std::move(flags)));
  } else {
    auto flags = std::make_shared<InMemoryValues>(OdsType::Short);
    make([&](const InMemoryValues& piece) {
      flags->AddPacked(piece.Packed().data(), static_cast<std::size_t>(piece.Count()));
    });
    inlineValues = InlineValues(std::shared_ptr<const InMemoryValues>(std::move(flags)));
  }
}

std::uint64_t ColumnContent::ReadCount(std::u16string_view text) {
  if (text.empty()) return 0;
  const std::optional<std::int64_t> number = ParseInteger(text);
  if (!number || *number < 0) {
    m_context.Refuse(
        Join({u"'", text, u"' in '", m_tag, u"' of a component is not a count of something"}));
  }
  return static_cast<std::uint64_t>(*number);
}

void ColumnContent::EndLeaf() {
  Component& component = components.back();
  const std::u16string_view text = Trim(m_text);
  const auto small = [](std::uint64_t number) {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(number, std::numeric_limits<std::uint32_t>::max()));
  };
  if (m_tag == u"identifier") {
    component.fileName = text;
  } else if (m_tag == u"datatype") {
    component.typespec = FindTypespec(text);
    if (!component.typespec) {
      m_context.Warn(Join({u"unknown storage type '", text, u"' in ", m_what}));
    }
  } else if (m_tag == u"length") {
    component.length = ReadCount(text);
  } else if (m_tag == u"inioffset") {
    component.offset = ReadCount(text);
  } else if (m_tag == u"blocksize") {
    component.blockSize = ReadCount(text);
  } else if (m_tag == u"valperblock") {
    component.valuesPerBlock = ReadCount(text);
  } else if (m_tag == u"valoffsets") {
    component.valueOffset = ReadCount(text);
  } else if (m_tag == u"valscale") {
    m_valueScale = ReadCount(text);
  } else if (m_tag == u"bitcount") {
    component.bitCount = small(ReadCount(text));
  } else if (m_tag == u"bitoffset") {
    component.bitOffset = small(ReadCount(text));
  } else if (m_tag != u"description") {
    m_context.Warn(Join({u"unknown tag '", m_tag, u"' in a component"}));
  }
}

}  // namespace hv::vex::engine::atfx

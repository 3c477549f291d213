// core/plugins/atfx/TypedContent.cpp - the value forms of the format, as a small state machine.
#include "core/plugins/atfx/TypedContent.h"

#include "core/plugins/atfx/AsciiText.h"
#include "core/store/memory/Failure.h"

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

bool IsNumericType(const TypedContent::Rules& rules) {
  const StorageKind kind = StorageKindOf(rules.type);
  return kind == StorageKind::Real || (kind == StorageKind::Integer && rules.type != OdsType::Enum);
}

}  // namespace

void TypedContent::Begin(const Rules& rules, std::u16string_view what) {
  m_rules = rules;
  m_what = what;
  m_isNumeric = IsNumericType(rules);
  m_hadItem = false;
  m_hadUnknownItem = false;
  m_wasTaken = false;
  m_part = Part::Direct;
  m_outer.clear();
  m_text.clear();
  m_direct.clear();
  m_blobHeader.clear();
  m_claimedLength = -1;
  m_values = std::make_shared<InMemoryValues>(rules.mayBeSigned ? OdsType::Short : rules.type);
  if (m_isNumeric) m_numbers.Begin(*m_values);
}

TypedContent::Part TypedContent::PartOfTag(std::u16string_view name) const {
  const OdsType type = m_rules.type;
  const bool isBlob = type == OdsType::Blob;
  switch (m_part) {
    case Part::Direct:
      if (name == u"s") return Part::Item;
      if (isBlob && name == u"text") return Part::BlobText;
      if (isBlob && name == u"bytefield") return Part::ByteField;
      if (type == OdsType::ExternalReference && name == u"external_reference") {
        return Part::Reference;
      }
      [[fallthrough]];
    case Part::ByteField:
      if (StorageKindOf(type) == StorageKind::Bytes) {
        if (name == u"length") return Part::Length;
        if (name == u"sequence") return Part::Sequence;
      }
      return Part::Unknown;
    case Part::Reference:
      if (name == u"description") return Part::Description;
      if (name == u"mimetype") return Part::MimeType;
      if (name == u"location") return Part::Location;
      return Part::Unknown;
    default:
      return Part::Unknown;
  }
}

void TypedContent::OnStart(std::u16string_view name) {
  const Part part = PartOfTag(name);
  if (part == Part::Unknown && m_part != Part::Unknown) {
    m_context.Warn(Join({u"unknown tag '", name, u"' in ", m_what}));
  }
  m_outer.push_back(m_part);
  m_part = part;
  m_text.clear();
  switch (part) {
    case Part::Item:
      m_hadItem = true;
      m_direct.clear();
      break;
    case Part::Sequence:
      BeginSequence();
      break;
    case Part::Reference:
      for (std::u16string& text : m_reference) text.clear();
      break;
    default:
      break;
  }
}

void TypedContent::OnText(std::u16string_view text) {
  switch (m_part) {
    case Part::Direct:
      if (m_isNumeric) {
        Feed(text);
      } else if (!m_hadItem && !IsBlankBetweenBytes(text)) {
        m_direct += text;
      }
      break;
    case Part::Item:
      m_isNumeric ? Feed(text) : void(m_text += text);
      break;
    case Part::Sequence:
      Feed(text);
      break;
    case Part::ByteField:
    case Part::Reference:
    case Part::Unknown:
      break;
    default:
      m_text += text;
      break;
  }
}

void TypedContent::OnEnd() {
  switch (m_part) {
    case Part::Item:
      EndItem();
      break;
    case Part::Length:
      m_claimedLength = ParseInteger(m_text).value_or(-1);
      break;
    case Part::Sequence:
      EndSequence();
      break;
    case Part::BlobText:
      m_blobHeader = m_text;
      break;
    case Part::Description:
      m_reference[0] = m_text;
      break;
    case Part::MimeType:
      m_reference[1] = m_text;
      break;
    case Part::Location:
      m_reference[2] = m_text;
      break;
    case Part::Reference: {
      const std::u16string_view separator(&kReferenceSeparator, 1);
      m_values->AddText(
          Join({m_reference[0], separator, m_reference[1], separator, m_reference[2]}));
      break;
    }
    default:
      break;
  }
  m_part = m_outer.back();
  m_outer.pop_back();
}

std::shared_ptr<InMemoryValues> TypedContent::End() {
  if (m_isNumeric) {
    if (!m_numbers.End()) RefuseNumber();
    if (m_numbers.Count() % PartsOf(m_rules.type) != 0) {
      m_context.Refuse(Join({m_what, u" holds a complex number with only one part"}));
    }
    if (m_rules.mayBeSigned) NarrowBytes();
  } else if (StorageKindOf(m_rules.type) == StorageKind::Bytes) {
    EndDirectBytes();
    if (!m_blobHeader.empty()) AddBlob({});
  } else {
    EndDirectText();
  }
  if (m_values->Count() == 0) m_values.reset();
  return std::move(m_values);
}

/// Byte strings come in many pairs of tags, and what separates those must not pile up.
bool TypedContent::IsBlankBetweenBytes(std::u16string_view text) const {
  return m_direct.empty() && StorageKindOf(m_rules.type) == StorageKind::Bytes && IsAllBlank(text);
}

InMemoryValues* TypedContent::TakeIfLarge(std::size_t size) {
  if (m_values->SizeInBytes() < size) return nullptr;
  // Half a complex number waits for the other half.
  if (m_isNumeric && m_numbers.Count() % PartsOf(m_rules.type) != 0) return nullptr;
  m_wasTaken = true;
  return m_values.get();
}

void TypedContent::Feed(std::u16string_view text) {
  if (!m_numbers.Feed(text)) RefuseNumber();
}

void TypedContent::RefuseNumber() {
  m_context.Refuse(Join({u"'", cor::FromUtf8(m_numbers.BadNumber()), u"' in ", m_what,
                         u" is not a value of ", NameOfType(m_rules.type, false)}));
}

void TypedContent::EndItem() {
  if (m_isNumeric) {
    Feed(u" ");
  } else if (m_rules.type == OdsType::String) {
    m_values->AddText(m_text);
  } else if (StorageKindOf(m_rules.type) != StorageKind::Bytes) {
    AddWord(Trim(m_text));
  }
}

void TypedContent::EndDirectText() {
  if (m_hadItem || IsAllBlank(m_direct)) return;
  switch (m_rules.type) {
    case OdsType::Date:
      AddEachWord(m_direct);
      break;
    case OdsType::Enum:
      // An item's name may hold blanks, so the whole text has the first chance.
      if (m_rules.enumeration && m_rules.enumeration->ValueOf(Trim(m_direct))) {
        AddWord(Trim(m_direct));
      } else {
        AddEachWord(m_direct);
      }
      break;
    case OdsType::ExternalReference:
      break;
    default:
      m_values->AddText(m_direct);
      break;
  }
}

void TypedContent::EndDirectBytes() {
  if (m_wasTaken || m_values->Count() != 0 || IsAllBlank(m_direct)) return;
  BeginSequence();
  Feed(m_direct);
  if (m_rules.plainBytesAreNumbers) {
    if (!m_numbers.End()) RefuseNumber();
    m_values = std::move(m_sequence);
  } else {
    EndSequence();
  }
}

void TypedContent::AddEachWord(std::u16string_view text) {
  while (!(text = Trim(text)).empty()) {
    std::size_t length = 0;
    while (length < text.size() && !IsBlank(text[length])) ++length;
    AddWord(text.substr(0, length));
    text.remove_prefix(length);
  }
}

void TypedContent::AddWord(std::u16string_view word) {
  if (m_rules.type != OdsType::Enum) return m_values->AddText(word);
  std::optional<std::int64_t> value;
  if (m_rules.enumeration) value = m_rules.enumeration->ValueOf(word);
  if (!value) value = ParseInteger(word);
  if (value && m_values->AddInteger(*value)) return;
  m_hadUnknownItem = true;
  m_context.Warn(Join({u"unknown item '", word, u"' in ", m_what}));
}

void TypedContent::BeginSequence() {
  m_sequence = std::make_shared<InMemoryValues>(OdsType::Byte);
  m_numbers.Begin(*m_sequence);
}

void TypedContent::EndSequence() {
  if (!m_numbers.End()) RefuseNumber();
  const std::span<const std::byte> bytes = m_sequence->Packed();
  m_rules.type == OdsType::Blob ? AddBlob(bytes) : m_values->AddBytes(bytes);
  if (m_claimedLength >= 0 && static_cast<std::uint64_t>(m_claimedLength) != bytes.size()) {
    m_context.Warn(Join({m_what, u" tells a length of ", DecimalText(m_claimedLength), u" for ",
                         DecimalText(static_cast<std::int64_t>(bytes.size())), u" bytes"}));
  }
  m_claimedLength = -1;
  m_sequence.reset();
}

void TypedContent::AddBlob(std::span<const std::byte> bytes) {
  const std::string header = cor::ToUtf8(m_blobHeader);
  Bytes blob;
  for (const char c : header) blob.push_back(static_cast<std::byte>(c));
  blob.push_back(std::byte{0});
  blob.insert(blob.end(), bytes.begin(), bytes.end());
  m_values->AddBytes(blob);
  m_blobHeader.clear();
}

void TypedContent::WarnOfSignedBytes() {
  m_context.Warn(Join({m_what, u" holds signed bytes; read as short integers"}));
}

void TypedContent::NarrowBytes() {
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(m_values->Count()));
  m_values->ReadIntegers(0, numbers);
  auto bytes = std::make_shared<InMemoryValues>(OdsType::Byte);
  bytes->Reserve(numbers.size());
  for (const std::int64_t number : numbers) {
    if (!bytes->AddInteger(number)) {
      WarnOfSignedBytes();
      return;
    }
  }
  m_values = std::move(bytes);
}

}  // namespace hv::vex::engine::atfx

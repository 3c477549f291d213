#include "core/plugins/vex/DocumentContext.h"

namespace hv::vex::engine::vexdoc {

namespace {

constexpr std::size_t kMostWarnings = 100;

std::u16string Joined(std::u16string text, std::initializer_list<std::u16string_view> parts) {
  for (const std::u16string_view part : parts) text += part;
  return text;
}

}  // namespace

void DocumentContext::RefuseAt(std::uint64_t line,
                               std::initializer_list<std::u16string_view> reason) const {
  std::u16string place = m_sourceName;
  if (line != 0) place.append(u":").append(DecimalText(static_cast<std::int64_t>(line)));
  Fail(errc::kBadFile, {Joined(place.append(u": "), reason)});
}

void DocumentContext::Warn(std::initializer_list<std::u16string_view> text) {
  if (m_warnings.size() >= kMostWarnings) return;
  const auto line = static_cast<std::int64_t>(Line());
  m_warnings.push_back(Joined(DecimalText(line).append(u": "), text));
}

const std::u16string_view* FindTagValue(std::span<const xml::AttributeView> attributes,
                                        std::u16string_view name) {
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == name) return &attribute.value;
  }
  return nullptr;
}

bool IsBlank(std::u16string_view text) { return text.find_first_not_of(u" \t\r\n") == text.npos; }

}  // namespace hv::vex::engine::vexdoc

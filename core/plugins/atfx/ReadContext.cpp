// core/plugins/atfx/ReadContext.cpp - messages of the reader.
#include "core/plugins/atfx/ReadContext.h"

#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"

namespace hv::vex::engine::atfx {

namespace {

std::u16string LineText(std::uint64_t line) { return DecimalText(static_cast<std::int64_t>(line)); }

}  // namespace

void ReadContext::RefuseAt(std::uint64_t line, std::u16string_view reason) const {
  Fail(errc::kBadFile, {m_fileName, u":", LineText(line), u": ", reason});
}

void ReadContext::WarnAt(std::uint64_t line, std::u16string_view text) {
  m_warnings.Add(Join({u"line ", LineText(line), u": ", text}));
}

std::u16string Join(std::initializer_list<std::u16string_view> parts) {
  std::u16string text;
  for (const std::u16string_view part : parts) text += part;
  return text;
}

}  // namespace hv::vex::engine::atfx

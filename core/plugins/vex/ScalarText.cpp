#include "core/plugins/vex/ScalarText.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "core/store/memory/Failure.h"

namespace hv::vex::engine::vexdoc {

namespace {

/// The text without white space around it, as bytes; anything beyond ASCII becomes a byte that no
/// number has.
std::string NumberBytes(std::u16string_view text) {
  std::string bytes;
  const std::size_t first = text.find_first_not_of(u" \t\r\n");
  if (first == text.npos) return bytes;
  text = text.substr(first, text.find_last_not_of(u" \t\r\n") - first + 1);
  for (const char16_t c : text) bytes += c < 0x80 ? static_cast<char>(c) : '?';
  return bytes;
}

template <class Number>
std::optional<Number> Parse(std::string_view bytes) {
  Number number{};
  const char* const end = bytes.data() + bytes.size();
  const auto [stop, error] = std::from_chars(bytes.data(), end, number);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::optional<std::int64_t> ReadWhole(std::u16string_view text, OdsType type) {
  const std::string bytes = NumberBytes(text);
  if (type != OdsType::Boolean) return Parse<std::int64_t>(bytes);
  if (bytes == "true" || bytes == "1") return 1;
  if (bytes == "false" || bytes == "0") return 0;
  return std::nullopt;
}

}  // namespace

bool HasText(OdsType type) {
  switch (type) {
    case OdsType::String:
    case OdsType::Short:
    case OdsType::Float:
    case OdsType::Boolean:
    case OdsType::Byte:
    case OdsType::Long:
    case OdsType::Double:
    case OdsType::LongLong:
    case OdsType::Date:
      return true;
    default:
      return false;
  }
}

void AppendElement(const Value& value, std::size_t index, std::u16string& to) {
  char buffer[40];
  char* const limit = buffer + sizeof buffer;
  if (const auto* whole = std::get_if<Value::Integers>(&value.data)) {
    const std::int64_t number = (*whole)[index];
    to += value.type == OdsType::Boolean ? (number ? u"true" : u"false") : DecimalText(number);
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    const double number = (*reals)[index];
    const char* const end = value.type == OdsType::Float
                                ? std::to_chars(buffer, limit, static_cast<float>(number)).ptr
                                : std::to_chars(buffer, limit, number).ptr;
    to.append(static_cast<const char*>(buffer), end);
  } else {
    to += std::get<Value::Texts>(value.data)[index];
  }
}

bool ReadElement(std::u16string_view text, Value& value) {
  const auto add = [&value](auto element) {
    using Elements = std::vector<decltype(element)>;
    if (!value.IsSet()) value.data = Elements();
    std::get<Elements>(value.data).push_back(std::move(element));
    return true;
  };
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer: {
      const std::optional<std::int64_t> number = ReadWhole(text, value.type);
      return number && add(*number);
    }
    case StorageKind::Real: {
      const std::optional<double> number = Parse<double>(NumberBytes(text));
      return number && add(*number);
    }
    default:
      return add(std::u16string(text));
  }
}

}  // namespace hv::vex::engine::vexdoc

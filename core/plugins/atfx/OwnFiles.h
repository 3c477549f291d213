// core/plugins/atfx/OwnFiles.h - which files beside an ATFX file this system wrote itself.
#pragma once

#include <string>
#include <string_view>

namespace hv::vex::engine::atfx {

/// How this system names itself in the documentation of the files it writes.
inline constexpr std::u16string_view kExporter = u"StoreFabric";
inline constexpr std::u16string_view kExporterVersion = u"0.1.0";
inline constexpr std::u16string_view kComponentExtension = u".btf";

/// "<stem>_<number>.btf", without any folder.
inline std::u16string OwnComponentName(std::u16string_view stem, unsigned number) {
  std::u16string name(stem);
  const std::string digits = std::to_string(number);
  name.append(1, u'_').append(digits.begin(), digits.end()).append(kComponentExtension);
  return name;
}

/// The number in such a name; 0 for any other name.
inline unsigned NumberOfOwnComponent(std::u16string_view name, std::u16string_view stem) {
  constexpr std::size_t kMostDigits = 9;
  if (!name.starts_with(stem) || !name.ends_with(kComponentExtension)) return 0;
  if (name.size() <= stem.size() + 1 + kComponentExtension.size()) return 0;
  name.remove_prefix(stem.size());
  name.remove_suffix(kComponentExtension.size());
  if (name[0] != u'_' || name.size() > 1 + kMostDigits) return 0;
  unsigned number = 0;
  for (const char16_t c : name.substr(1)) {
    if (c < u'0' || c > u'9') return 0;
    number = number * 10 + (c - u'0');
  }
  return number;
}

}  // namespace hv::vex::engine::atfx

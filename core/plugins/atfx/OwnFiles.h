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

inline bool IsOwnComponentName(std::u16string_view name, std::u16string_view stem) {
  if (!name.starts_with(stem) || !name.ends_with(kComponentExtension)) return false;
  if (name.size() <= stem.size() + 1 + kComponentExtension.size()) return false;
  name.remove_prefix(stem.size());
  name.remove_suffix(kComponentExtension.size());
  if (name[0] != u'_') return false;
  for (const char16_t c : name.substr(1)) {
    if (c < u'0' || c > u'9') return false;
  }
  return true;
}

}  // namespace hv::vex::engine::atfx

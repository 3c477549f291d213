#include "apps/cli/TextFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "apps/cli/Failure.h"

namespace hv::cli {
namespace {

std::string ReadAll(std::FILE* file, const std::string& name) {
  std::string bytes;
  char buffer[65536];
  while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, file)) {
    bytes.append(buffer, size);
  }
  if (std::ferror(file)) throw Failure("reading " + name + ": " + std::strerror(errno));
  return bytes;
}

WString FromUtf16(std::string_view bytes, bool isBigEndian, const std::string& name) {
  if (bytes.size() % 2 != 0) throw Failure("reading " + name + ": half a character at its end");
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
  }
  return WString(text);
}

}  // namespace

WString ReadTextFile(const std::string& name) {
  std::string bytes;
  if (name == "-") {
    bytes = ReadAll(stdin, "standard input");
  } else {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                               &std::fclose);
    if (!file) throw Failure("reading " + name + ": " + std::strerror(errno));
    bytes = ReadAll(file.get(), name);
  }
  const std::string_view view = bytes;
  if (view.starts_with("\xFF\xFE")) return FromUtf16(view.substr(2), false, name);
  if (view.starts_with("\xFE\xFF")) return FromUtf16(view.substr(2), true, name);
  return cor::FromUtf8(view.starts_with("\xEF\xBB\xBF") ? view.substr(3) : view);
}

}  // namespace hv::cli

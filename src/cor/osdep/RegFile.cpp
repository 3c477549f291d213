// cor/osdep/RegFile.cpp - keys and values: the tree, and reading its notation.
#include "cor/osdep/RegFile.h"

#include "cor/osdep/OSException.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace hv::cor::osdep {

namespace {

constexpr const char* kSourceFile = "cor/osdep/regkey";
constexpr int kDeepestKey = 512;

/// Takes the next component off a path; false at its end.
bool NextComponent(std::u16string_view* path, std::u16string_view* component) {
  while (path->starts_with(u'\\')) path->remove_prefix(1);
  if (path->empty()) return false;
  *component = path->substr(0, path->find(u'\\'));
  path->remove_prefix(component->size());
  return true;
}

/// True for a text that UTF-8 can't hold.
bool HasLoneSurrogate(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < 0xD800 || text[i] > 0xDFFF) continue;
    const bool isPair =
        text[i] < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (!isPair) return true;
    ++i;
  }
  return false;
}

/// Files exported from a registry name its root; here each root is a file of its own.
std::u16string_view WithoutRoot(std::u16string_view path) {
  for (const std::u16string_view root : {u"HKEY_CURRENT_USER\\", u"HKEY_LOCAL_MACHINE\\"}) {
    if (path.starts_with(root)) return path.substr(root.size());
  }
  return path;
}

std::u16string_view Trimmed(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u" \t");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(u" \t") - first + 1);
}

int HexDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  return -1;
}

/// The content as wide text, whichever of the two encodings it is in.
WString Decode(std::string_view content) {
  if (!content.starts_with("\xFF\xFE")) {
    if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
    return FromUtf8(content);
  }
  WString text;
  text.reserve(content.size() / 2);
  for (std::size_t i = 2; i + 1 < content.size(); i += 2) {
    text += static_cast<char16_t>(static_cast<unsigned char>(content[i]) |
                                  static_cast<unsigned char>(content[i + 1]) << 8);
  }
  return text;
}

class RegReader final {
 public:
  RegReader(std::u16string_view text, std::string_view sourceName)
      : m_rest(text), m_sourceName(sourceName) {}

  std::unique_ptr<RegNode> Read();

 private:
  [[noreturn]] void Raise(std::string_view reason) const;
  bool NextLine(std::u16string_view* line);
  void ReadSection(std::u16string_view line);
  void ReadValue(std::u16string_view line);
  WString ReadQuoted(std::u16string_view* line);
  RegValue ReadData(std::u16string_view data);
  RegValue ReadNumber(std::u16string_view digits);
  RegValue ReadBytes(std::u16string_view data);
  RegType ReadType(std::u16string_view* data);

  std::u16string_view m_rest;
  std::string m_sourceName;
  int m_line = 0;
  std::unique_ptr<RegNode> m_root = std::make_unique<RegNode>();
  RegNode* m_section = nullptr;  // null before the first section, and behind one that removes a key
  bool m_removing = false;
};

void RegReader::Raise(std::string_view reason) const {
  throw WinError(kErrorCorrupt,
                 m_sourceName + ":" + std::to_string(m_line) + ": " + std::string(reason),
                 kSourceFile, __LINE__);
}

bool RegReader::NextLine(std::u16string_view* line) {
  if (m_rest.empty()) return false;
  const std::size_t end = m_rest.find(u'\n');
  *line = m_rest.substr(0, end);
  m_rest.remove_prefix(end == m_rest.npos ? m_rest.size() : end + 1);
  if (line->ends_with(u'\r')) line->remove_suffix(1);
  *line = Trimmed(*line);
  ++m_line;
  if (line->find(u'\0') != line->npos) Raise("a zero character");
  // Written as UTF-8 it would become another character, and a name another name.
  if (HasLoneSurrogate(*line)) Raise("half of a surrogate pair");
  return true;
}

std::unique_ptr<RegNode> RegReader::Read() {
  std::u16string_view line;
  while (NextLine(&line)) {
    if (line.empty() || line.front() == u';') continue;
    if (line.front() == u'[') {
      ReadSection(line);
    } else if (line.front() == u'"' || line.front() == u'@') {
      ReadValue(line);
    } else if (m_line != 1) {
      Raise("neither a key, a value nor a comment");
    }
  }
  return std::move(m_root);
}

void RegReader::ReadSection(std::u16string_view line) {
  if (line.back() != u']') Raise("a key without a closing bracket");
  std::u16string_view path = line.substr(1, line.size() - 2);
  m_removing = path.starts_with(u'-');
  if (m_removing) {
    m_root->Remove(WithoutRoot(path.substr(1)));
    m_section = nullptr;
    return;
  }
  try {
    m_section = &m_root->FindOrMake(WithoutRoot(path));
  } catch (const WinError&) {
    Raise("a key too deep");
  }
}

void RegReader::ReadValue(std::u16string_view line) {
  WString name;
  if (line.front() == u'@') {
    line.remove_prefix(1);
  } else {
    name = ReadQuoted(&line);
  }
  line = Trimmed(line);
  if (!line.starts_with(u'=')) Raise("a value without an equals sign");
  const std::u16string_view data = Trimmed(line.substr(1));
  if (!m_section) {
    if (m_removing) Raise("a value in a key that is removed");
    Raise("a value outside of a key");
  }
  if (data == u"-") {
    const auto found = m_section->values.find(name);
    if (found != m_section->values.end()) m_section->values.erase(found);
    return;
  }
  m_section->values.insert_or_assign(std::move(name), ReadData(data));
}

WString RegReader::ReadQuoted(std::u16string_view* line) {
  WString text;
  std::size_t pos = 1;
  for (;;) {
    const std::size_t special = line->find_first_of(u"\\\"", pos);
    if (special == line->npos) Raise("a text without a closing quotation mark");
    text.append(line->substr(pos, special - pos));
    pos = special + 1;
    if ((*line)[special] == u'"') break;
    if (pos == line->size() || ((*line)[pos] != u'\\' && (*line)[pos] != u'"')) {
      Raise("a backslash that isn't followed by a backslash or a quotation mark");
    }
    text += (*line)[pos++];
  }
  line->remove_prefix(pos);
  return text;
}

RegValue RegReader::ReadData(std::u16string_view data) {
  if (data.starts_with(u'"')) {
    RegValue value{RegType::Sz, ReadQuoted(&data), {}};
    const std::u16string_view behind = Trimmed(data);
    if (!behind.empty() && behind.front() != u';') Raise("more than a text");
    return value;
  }
  if (data.starts_with(u"dword:")) return ReadNumber(data.substr(6));
  if (data.starts_with(u"hex")) return ReadBytes(data.substr(3));
  Raise("data of no known kind");
}

RegValue RegReader::ReadNumber(std::u16string_view digits) {
  digits = Trimmed(digits.substr(0, digits.find(u';')));
  if (digits.empty() || digits.size() > 8) Raise("a number must have one to eight digits");
  std::uint32_t number = 0;
  for (const char16_t unit : digits) {
    const int digit = HexDigit(unit);
    if (digit < 0) Raise("a number with a character that is no digit");
    number = number << 4 | static_cast<std::uint32_t>(digit);
  }
  RegValue value{RegType::DWord, {}, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    value.bytes.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
  }
  return value;
}

RegType RegReader::ReadType(std::u16string_view* data) {
  std::uint32_t type = static_cast<std::uint32_t>(RegType::Binary);
  if (data->starts_with(u'(')) {
    const std::size_t end = data->find(u')');
    if (end == data->npos || end < 2 || end > 9) Raise("a type that isn't one to eight digits");
    type = 0;
    for (const char16_t unit : data->substr(1, end - 1)) {
      const int digit = HexDigit(unit);
      if (digit < 0) Raise("a type with a character that is no digit");
      type = type << 4 | static_cast<std::uint32_t>(digit);
    }
    data->remove_prefix(end + 1);
  }
  if (!data->starts_with(u':')) Raise("bytes without a colon");
  data->remove_prefix(1);
  return static_cast<RegType>(type);
}

RegValue RegReader::ReadBytes(std::u16string_view data) {
  RegValue value;
  value.type = ReadType(&data);
  for (;;) {
    const bool goesOn = data.ends_with(u'\\');
    if (goesOn) data = Trimmed(data.substr(0, data.size() - 1));
    while (!data.empty() && data.front() != u';') {
      const int high = HexDigit(data.front());
      const int low = data.size() > 1 ? HexDigit(data[1]) : -1;
      if (high < 0 || low < 0) Raise("a byte that isn't two digits");
      value.bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
      data = Trimmed(data.substr(2));
      if (data.empty() || data.front() == u';') break;
      if (data.front() != u',') Raise("bytes without a comma between them");
      data = Trimmed(data.substr(1));
    }
    if (!goesOn) break;
    if (!NextLine(&data)) Raise("bytes that go on behind the end");
  }
  if (!value.IsText()) return value;
  if (value.bytes.size() % 2 != 0) Raise("a text with half a character");
  for (std::size_t i = 0; i + 1 < value.bytes.size(); i += 2) {
    value.text += static_cast<char16_t>(value.bytes[i] | value.bytes[i + 1] << 8);
  }
  if (value.text.view().ends_with(u'\0')) {
    value.text = value.text.Substr(0, value.text.size() - 1);
  }
  value.bytes.clear();
  return value;
}

void WriteQuoted(std::string* out, std::u16string_view text) {
  *out += '"';
  for (const char c : ToUtf8(text)) {
    if (c == '\\' || c == '"') *out += '\\';
    *out += c;
  }
  *out += '"';
}

void WriteHex(std::string* out, std::uint32_t number, int digits) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) *out += kDigits[number >> shift & 0xF];
}

void WriteBytes(std::string* out, RegType type, const std::vector<std::uint8_t>& bytes) {
  *out += "hex";
  if (type != RegType::Binary) {
    char digits[8];
    const auto end = std::to_chars(digits, digits + 8, static_cast<std::uint32_t>(type), 16).ptr;
    *out += "(" + std::string(digits, end) + ")";
  }
  *out += ":";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i != 0) *out += i % 25 == 0 ? ",\\\n  " : ",";
    WriteHex(out, bytes[i], 2);
  }
}

void WriteData(std::string* out, const RegValue& value) {
  if (value.type == RegType::Sz && IsPlainRegText(value.text)) {
    WriteQuoted(out, value.text);
  } else if (value.IsText()) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i <= value.text.size(); ++i) {  // with the terminator
      const char16_t unit = value.text.c_str()[i];
      bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
      bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    WriteBytes(out, value.type, bytes);
  } else if (value.type == RegType::DWord && value.bytes.size() == 4) {
    *out += "dword:";
    for (std::size_t i = 4; i-- > 0;) WriteHex(out, value.bytes[i], 2);
  } else {
    WriteBytes(out, value.type, value.bytes);
  }
}

void WriteNode(std::string* out, const RegNode& node, const std::string& path) {
  if (!path.empty() && (!node.values.empty() || node.keys.empty())) {
    *out += (out->empty() ? "[" : "\n[") + path + "]\n";
    for (const auto& [name, value] : node.values) {
      if (name.empty()) {
        *out += '@';
      } else {
        WriteQuoted(out, name);
      }
      *out += '=';
      WriteData(out, value);
      *out += '\n';
    }
  }
  for (const auto& [name, key] : node.keys) {
    // A first name that means something in the notation hides behind a backslash.
    const bool isPlain = !name.view().starts_with(u'-') && !name.view().starts_with(u"HKEY_");
    WriteNode(out, *key, path.empty() && isPlain ? ToUtf8(name) : path + "\\" + ToUtf8(name));
  }
}

}  // namespace

bool IsPlainRegText(std::u16string_view text) {
  return std::ranges::none_of(text, [](char16_t unit) { return unit < 0x20; }) &&
         !HasLoneSurrogate(text);
}

const RegNode* RegNode::Find(std::u16string_view path) const {
  const RegNode* node = this;
  std::u16string_view component;
  while (node && NextComponent(&path, &component)) {
    const auto found = node->keys.find(component);
    node = found == node->keys.end() ? nullptr : found->second.get();
  }
  return node;
}

RegNode& RegNode::FindOrMake(std::u16string_view path, bool* made) {
  RegNode* node = this;
  std::u16string_view component;
  for (int depth = 0; NextComponent(&path, &component); ++depth) {
    if (depth == kDeepestKey) throw WinError(kErrorInvalidParameter, kSourceFile, __LINE__);
    auto found = node->keys.find(component);
    if (found == node->keys.end()) {
      found = node->keys.emplace(component, std::make_unique<RegNode>()).first;
      if (made) *made = true;
    }
    node = found->second.get();
  }
  return *node;
}

void RegNode::Remove(std::u16string_view path) {
  RegNode* node = this;
  std::u16string_view component;
  if (!NextComponent(&path, &component)) return;
  for (;;) {
    const auto found = node->keys.find(component);
    if (found == node->keys.end()) return;
    if (!NextComponent(&path, &component)) {
      node->keys.erase(found);
      return;
    }
    node = found->second.get();
  }
}

std::unique_ptr<RegNode> ParseRegFile(std::string_view content, std::string_view sourceName) {
  const WString text = Decode(content);
  return RegReader(text, sourceName).Read();
}

std::string WriteRegFile(const RegNode& root) {
  std::string out;
  WriteNode(&out, root, {});
  return out;
}

}  // namespace hv::cor::osdep

#include "core/query/QueryReader.h"

#include <optional>
#include <span>
#include <string>
#include <utility>

#include "core/query/TextMatch.h"
#include "store/core/Exception.h"
#include "xml/Escape.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine {
namespace {

constexpr std::u16string_view kBlanks = u" \t\r\n";

struct FunctionName {
  std::u16string_view name;
  QueryOp op;
};
constexpr FunctionName kFunctions[] = {
    {u"and", QueryOp::And},         {u"or", QueryOp::Or},        {u"=", QueryOp::Equal},
    {u"==", QueryOp::Equal},        {u"<>", QueryOp::NotEqual},  {u"!=", QueryOp::NotEqual},
    {u"<", QueryOp::Less},          {u"<=", QueryOp::LessEqual}, {u">", QueryOp::Greater},
    {u">=", QueryOp::GreaterEqual},
};

enum class Tag : std::uint8_t {
  Document,  // stands for what surrounds the root element
  Query,
  FreeText,
  Entity,
  Order,
  Expression,
  Function,
  Identifier,
  Constant,
};
struct TagName {
  std::u16string_view name;
  Tag tag;
};
constexpr TagName kTags[] = {
    {u"query", Tag::Query},           {u"ftsexpression", Tag::FreeText},
    {u"entity", Tag::Entity},         {u"order", Tag::Order},
    {u"expression", Tag::Expression}, {u"function", Tag::Function},
    {u"identifier", Tag::Identifier}, {u"constant", Tag::Constant},
};

constexpr bool HoldsText(Tag tag) {
  return tag == Tag::FreeText || tag == Tag::Identifier || tag == Tag::Constant;
}

bool MayStandIn(Tag tag, Tag parent) {
  switch (tag) {
    case Tag::Query:
      return parent == Tag::Document;
    case Tag::FreeText:
    case Tag::Entity:
      return parent == Tag::Query;
    case Tag::Order:
    case Tag::Expression:
      return parent == Tag::Entity;
    case Tag::Function:
      return parent == Tag::Expression || parent == Tag::Function;
    case Tag::Identifier:
    case Tag::Constant:
      return parent == Tag::Function;
    case Tag::Document:
      break;
  }
  return false;
}

// Cuts what a message repeats of the text: it may be of any length.
std::u16string Quote(std::u16string_view text) {
  constexpr std::size_t kLongest = 60;
  std::u16string quoted = u"\"";
  quoted += text.substr(0, kLongest);
  if (text.size() > kLongest) quoted += u"...";
  quoted += u'"';
  return quoted;
}

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

class Handler final : public xml::ISaxHandler {
 public:
  explicit Handler(const xml::SaxParser& parser) : m_parser(parser) {}

  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override;
  void OnText(std::u16string_view text) override;
  void OnEnd(std::u16string_view name) override;
  ParsedQuery Take();

 private:
  // A function that is still open.
  struct Frame {
    ParsedNode node;
    bool hasIdentifier = false;
    bool hasConstant = false;
  };
  using Attributes = std::span<const xml::AttributeView>;

  [[noreturn]] void Fail(std::u16string_view reason) const { throw QueryError(Here(), reason); }
  [[nodiscard]] QueryPosition Here() const {
    const xml::Position place = m_parser.CurrentPosition();
    return {place.line, place.column};
  }
  [[nodiscard]] bool YesOrNo(const xml::AttributeView& attribute) const;
  void StartEntity(Attributes attributes);
  void StartOrder(Attributes attributes);
  void StartExpression(Attributes attributes);
  void StartFunction(Attributes attributes);
  void StartConstant(Attributes attributes);
  void EndFunction();

  const xml::SaxParser& m_parser;
  ParsedQuery m_query;
  bool m_hasEntity = false;
  bool m_hasExpression = false;
  std::vector<Tag> m_open{Tag::Document};
  std::vector<Frame> m_functions;
  std::u16string m_text;
};

void Handler::OnStart(std::u16string_view name, Attributes attributes) {
  std::optional<Tag> tag;
  for (const TagName& row : kTags) {
    if (row.name == name) tag = row.tag;
  }
  if (!tag || !MayStandIn(*tag, m_open.back())) {
    Fail(u"unexpected element " + Quote(name));
  }
  m_text.clear();
  switch (*tag) {
    case Tag::Entity:
      StartEntity(attributes);
      break;
    case Tag::Order:
      StartOrder(attributes);
      break;
    case Tag::Expression:
      StartExpression(attributes);
      break;
    case Tag::Function:
      StartFunction(attributes);
      break;
    case Tag::Identifier:
      if (m_functions.back().node.IsLogic()) Fail(u"unexpected element \"identifier\"");
      if (m_functions.back().hasIdentifier) Fail(u"a function has two identifiers");
      break;
    case Tag::Constant:
      StartConstant(attributes);
      break;
    default:
      break;
  }
  m_open.push_back(*tag);
}

void Handler::StartEntity(Attributes attributes) {
  if (m_hasEntity) Fail(u"a query has one entity only");
  m_hasEntity = true;
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == u"name") m_query.returnType = attribute.value;
  }
  m_query.position = Here();
  if (m_query.returnType.empty()) Fail(u"the entity has no name");
}

void Handler::StartOrder(Attributes attributes) {
  ParsedOrder order;
  order.position = Here();
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == u"name") {
      order.identifier = attribute.value;
    } else if (attribute.name == u"descending") {
      order.descending = YesOrNo(attribute);
    }
  }
  if (order.identifier.empty()) Fail(u"an order has no name");
  m_query.order.push_back(std::move(order));
}

void Handler::StartExpression(Attributes attributes) {
  if (m_hasExpression) Fail(u"an entity has one expression only");
  m_hasExpression = true;
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name != u"limit") continue;
    constexpr std::size_t kMostDigits = 18;
    std::int64_t limit = 0;
    bool isNumber = !attribute.value.empty() && attribute.value.size() <= kMostDigits;
    for (const char16_t unit : attribute.value) {
      if (!isNumber) break;
      isNumber = unit >= u'0' && unit <= u'9';
      limit = limit * 10 + (unit - u'0');
    }
    if (!isNumber) Fail(u"the limit " + Quote(attribute.value) + u" is not a number");
    m_query.limit = limit;
  }
}

void Handler::StartFunction(Attributes attributes) {
  if (!m_functions.empty() && !m_functions.back().node.IsLogic()) {
    Fail(u"a function stands inside a comparison");
  }
  if (m_functions.size() >= kDeepestLogic) {
    Fail(u"more than " + Widen(std::to_string(kDeepestLogic)) + u" functions inside each other");
  }
  std::u16string_view name;
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == u"name") name = attribute.value;
  }
  Frame frame;
  frame.node.position = Here();
  const std::u16string folded = FoldCase(name);
  bool known = false;
  for (const FunctionName& row : kFunctions) {
    if (row.name != folded) continue;
    frame.node.op = row.op;
    known = true;
  }
  if (!known) Fail(u"unknown function " + Quote(name));
  m_functions.push_back(std::move(frame));
}

void Handler::StartConstant(Attributes attributes) {
  Frame& frame = m_functions.back();
  if (frame.node.IsLogic()) Fail(u"unexpected element \"constant\"");
  if (!frame.hasIdentifier) Fail(u"a constant stands before the identifier");
  if (frame.hasConstant) Fail(u"a function has two constants");
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == u"wildcards") {
      const bool isKnown = attribute.value == u"?*" || attribute.value == u"*?";
      if (!isKnown && !attribute.value.empty()) {
        Fail(u"unknown wildcards " + Quote(attribute.value) + u"; only \"?*\" are supported");
      }
      frame.node.constant.wildcards = isKnown;
    } else if (attribute.name == u"caseinsensitive") {
      frame.node.constant.ignoreCase = YesOrNo(attribute);
    }
  }
}

bool Handler::YesOrNo(const xml::AttributeView& attribute) const {
  const std::u16string value = FoldCase(attribute.value);
  if (value == u"yes" || value == u"true" || value == u"1") return true;
  if (value == u"no" || value == u"false" || value == u"0") return false;
  Fail(std::u16string(attribute.name) + u" is " + Quote(attribute.value) +
       u" instead of \"yes\" or \"no\"");
}

void Handler::OnText(std::u16string_view text) {
  if (HoldsText(m_open.back())) {
    m_text += text;
    return;
  }
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first != std::u16string_view::npos) Fail(u"unexpected text " + Quote(text.substr(first)));
}

void Handler::OnEnd(std::u16string_view) {
  const Tag tag = m_open.back();
  m_open.pop_back();
  switch (tag) {
    case Tag::FreeText:
      m_query.freeText = std::exchange(m_text, {});
      break;
    case Tag::Identifier:
      if (m_text.find_first_not_of(kBlanks) == std::u16string::npos) {
        Fail(u"an identifier is empty");
      }
      m_functions.back().node.identifier = std::exchange(m_text, {});
      m_functions.back().hasIdentifier = true;
      break;
    case Tag::Constant:
      m_functions.back().node.constant.text = std::exchange(m_text, {});
      m_functions.back().hasConstant = true;
      break;
    case Tag::Function:
      EndFunction();
      break;
    default:
      break;
  }
}

void Handler::EndFunction() {
  Frame frame = std::move(m_functions.back());
  m_functions.pop_back();
  ParsedNode& node = frame.node;
  if (!node.IsLogic()) {
    if (!frame.hasIdentifier) Fail(u"a function has no identifier");
    if (!frame.hasConstant) Fail(u"a function has no constant");
  }
  auto& siblings = m_functions.empty() ? m_query.root.children : m_functions.back().node.children;
  if (!node.IsLogic() || node.children.size() > 1) {
    siblings.push_back(std::move(node));
  } else if (node.children.size() == 1) {
    ParsedNode only = std::move(node.children.front());
    siblings.push_back(std::move(only));
  }
}

ParsedQuery Handler::Take() {
  if (!m_hasEntity) throw QueryError({1, 1}, u"the query has no entity");
  // One logic function around everything is the usual form; it needs no other around it.
  ParsedNode& root = m_query.root;
  if (root.children.size() == 1 && root.children.front().IsLogic()) {
    ParsedNode only = std::move(root.children.front());
    root = std::move(only);
  }
  return std::move(m_query);
}

ParsedQuery ReadStrictly(std::u16string_view text) {
  // Query, entity and expression stand around the functions, identifier or constant within.
  xml::Limits limits;
  limits.depth = kDeepestLogic + 8;
  limits.entityExpansions = 1;
  xml::SaxParser parser(limits);
  Handler handler(parser);
  parser.ParseMemory(text, handler, "query expression");
  return handler.Take();
}

// The entity tag is written without escaping its name and, where there is one, with a bare uri. The
// tag is the only text between its start and the next tag, so its end is found from there. Gives
// nothing if there is no such tag.
std::optional<std::u16string> RepairEntityTag(std::u16string_view text) {
  constexpr std::u16string_view kStart = u"<entity name=\"";
  constexpr std::u16string_view kUri = u"\" uri=";
  constexpr auto kNone = std::u16string_view::npos;
  const std::size_t start = text.find(kStart);
  if (start == kNone) return std::nullopt;
  const std::size_t nameStart = start + kStart.size();
  std::size_t next = text.find(u"<expression", nameStart);
  next = std::min(next, text.find(u"<order ", nameStart));
  if (next == kNone) return std::nullopt;
  std::size_t end = text.find_last_not_of(kBlanks, next - 1);
  if (end == kNone || end < nameStart || text[end] != u'>') return std::nullopt;

  const std::u16string_view rest = text.substr(nameStart, end - nameStart);
  std::size_t nameEnd = rest.find(kUri);
  if (nameEnd == kNone) nameEnd = rest.rfind(u'"');
  if (nameEnd == kNone) return std::nullopt;
  std::u16string repaired(text.substr(0, nameStart));
  xml::AppendEscaped(repaired, rest.substr(0, nameEnd), u"&<\"");
  repaired += u"\" >";
  repaired += text.substr(end + 1);
  return repaired;
}

}  // namespace

Exception QueryError(QueryPosition position, std::u16string_view reason) {
  std::u16string message = u"query expression";
  if (position.line != 0) {
    message += u", line " + Widen(std::to_string(position.line)) + u", column " +
               Widen(std::to_string(position.column));
  }
  message += u": ";
  message += reason;
  return Exception(errc::kBadQuery, std::u16string_view(message));
}

ParsedQuery ReadQuery(std::u16string_view text) {
  std::optional<xml::XmlError> problem;
  try {
    return ReadStrictly(text);
  } catch (const xml::XmlError& e) {
    problem = e;
  }
  if (const std::optional<std::u16string> repaired = RepairEntityTag(text)) {
    try {
      return ReadStrictly(*repaired);
    } catch (const xml::XmlError& e) {
      problem = e;
    }
  }
  throw QueryError({problem->Where().line, problem->Where().column},
                   cor::FromUtf8(problem->Reason()).view());
}

}  // namespace hv::vex::engine

#include "core/query/QueryWriter.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/query/ConstantBinder.h"
#include "core/query/ParsedQuery.h"
#include "core/query/TextMatch.h"
#include "store/core/Exception.h"
#include "xml/Escape.h"

namespace hv::vex::engine {
namespace {

struct Token {
  enum class Kind : std::uint8_t { Word, Name, Text, Operator, Open, Close, End };
  Kind kind = Kind::End;
  std::u16string text;     // without its quotes
  std::size_t column = 1;  // from 1
};

[[noreturn]] void Fail(std::size_t column, std::u16string_view reason) {
  const std::string digits = std::to_string(column);
  std::u16string message = u"expression, column ";
  message.append(digits.begin(), digits.end());
  message += u": ";
  message += reason;
  throw Exception(errc::kBadQuery, std::u16string_view(message));
}

constexpr bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}
constexpr bool IsOperator(char16_t unit) {
  return unit == u'=' || unit == u'<' || unit == u'>' || unit == u'!';
}
constexpr bool EndsWord(char16_t unit) {
  return IsBlank(unit) || IsOperator(unit) || unit == u'(' || unit == u')' || unit == u'\'' ||
         unit == u'"';
}

bool IsWord(const Token& token, std::u16string_view folded) {
  return token.kind == Token::Kind::Word && FoldCase(token.text) == folded;
}

class Lexer final {
 public:
  explicit Lexer(std::u16string_view text) : m_text(text) {}
  Token Next();

 private:
  void Quoted(Token& token);

  std::u16string_view m_text;
  std::size_t m_pos = 0;
};

Token Lexer::Next() {
  while (m_pos < m_text.size() && IsBlank(m_text[m_pos])) ++m_pos;
  Token token;
  token.column = m_pos + 1;
  if (m_pos == m_text.size()) return token;
  const char16_t first = m_text[m_pos];
  if (first == u'(' || first == u')') {
    token.kind = first == u'(' ? Token::Kind::Open : Token::Kind::Close;
    token.text = m_text.substr(m_pos++, 1);
  } else if (first == u'\'' || first == u'"') {
    token.kind = first == u'\'' ? Token::Kind::Text : Token::Kind::Name;
    Quoted(token);
  } else {
    const bool isOperator = IsOperator(first);
    token.kind = isOperator ? Token::Kind::Operator : Token::Kind::Word;
    const std::size_t start = m_pos;
    while (m_pos < m_text.size() &&
           (isOperator ? IsOperator(m_text[m_pos]) : !EndsWord(m_text[m_pos]))) {
      ++m_pos;
    }
    token.text = m_text.substr(start, m_pos - start);
  }
  return token;
}

// Two quotes in a row stand for one.
void Lexer::Quoted(Token& token) {
  const char16_t quote = m_text[m_pos++];
  for (;;) {
    const std::size_t end = m_text.find(quote, m_pos);
    if (end == std::u16string_view::npos) Fail(token.column, u"a quote is not closed");
    token.text += m_text.substr(m_pos, end - m_pos);
    m_pos = end + 1;
    if (m_pos == m_text.size() || m_text[m_pos] != quote) return;
    token.text += quote;
    ++m_pos;
  }
}

struct OperatorName {
  std::u16string_view written;
  std::u16string_view forText;    // the function's name with a text
  std::u16string_view forNumber;  // and with a number
};
constexpr OperatorName kOperators[] = {
    {u"=", u"=", u"="},    {u"==", u"=", u"="},   {u"<>", u"!=", u"<>"},
    {u"!=", u"!=", u"<>"}, {u"<", u"<", u"<"},    {u"<=", u"<=", u"<="},
    {u">", u">", u">"},    {u">=", u">=", u">="}, {u"like", u"=", u"="},
};

// Reads conditions and writes them, the inner functions first.
class ConditionWriter final {
 public:
  ConditionWriter(std::u16string_view text, bool odsConform)
      : m_lexer(text), m_odsConform(odsConform) {
    Advance();
  }

  /// The functions of the whole text, inside one logic function.
  std::u16string Write();
  static std::u16string Condition(std::u16string_view function, std::u16string_view identifier,
                                  std::u16string_view constant, bool isNumber);
  static std::u16string Translate(std::u16string_view text, bool odsConform);

 private:
  // Functions of one level, to be put inside a function "AND" or "OR" where there are several.
  struct Part {
    std::u16string body;
    bool isLogic = false;
  };
  Part Chain(std::u16string_view word, std::size_t depth);
  Part Factor(std::size_t depth);
  Part Comparison();
  void Advance() { m_token = m_lexer.Next(); }

  Lexer m_lexer;
  Token m_token;
  bool m_odsConform;
};

std::u16string Function(std::u16string_view name, std::u16string_view body) {
  std::u16string text = u"<q:function name=\"";
  xml::AppendEscaped(text, name);
  text += u"\">\n";
  text += body;
  text += u"</q:function>\n";
  return text;
}

std::u16string ConditionWriter::Condition(std::u16string_view function,
                                          std::u16string_view identifier,
                                          std::u16string_view constant, bool isNumber) {
  std::u16string body = u"<q:identifier>";
  xml::AppendEscaped(body, identifier);
  body += u"</q:identifier>\n";
  body += isNumber ? u"<q:constant>" : u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">";
  xml::AppendEscaped(body, constant);
  body += u"</q:constant>\n";
  return Function(function, body);
}

std::u16string ConditionWriter::Translate(std::u16string_view text, bool odsConform) {
  std::u16string translated(text);
  if (odsConform) return translated;
  std::ranges::replace(translated, u'%', u'*');
  std::ranges::replace(translated, u'_', u'?');
  return translated;
}

std::u16string ConditionWriter::Write() {
  Part all = Chain(u"or", 0);
  if (m_token.kind != Token::Kind::End) {
    Fail(m_token.column, u"expected AND, OR or the end instead of \"" + m_token.text + u"\"");
  }
  return all.isLogic ? std::move(all.body) : Function(u"AND", all.body);
}

// AND binds more tightly than OR.
ConditionWriter::Part ConditionWriter::Chain(std::u16string_view word, std::size_t depth) {
  const bool isOr = word == u"or";
  const auto next = [&] { return isOr ? Chain(u"and", depth) : Factor(depth); };
  Part part = next();
  if (!IsWord(m_token, word)) return part;
  std::u16string body = std::move(part.body);
  while (IsWord(m_token, word)) {
    Advance();
    body += next().body;
  }
  return {Function(isOr ? u"OR" : u"AND", body), true};
}

ConditionWriter::Part ConditionWriter::Factor(std::size_t depth) {
  if (m_token.kind != Token::Kind::Open) return Comparison();
  // Each pair of parentheses may hold an OR with an AND inside it.
  if (depth >= kDeepestLogic / 2 - 2)
    Fail(m_token.column, u"too many parentheses inside each other");
  Advance();
  Part part = Chain(u"or", depth + 1);
  if (m_token.kind != Token::Kind::Close) Fail(m_token.column, u"a closing parenthesis is missing");
  Advance();
  return part;
}

ConditionWriter::Part ConditionWriter::Comparison() {
  const Token identifier = std::exchange(m_token, {});
  if ((identifier.kind != Token::Kind::Word && identifier.kind != Token::Kind::Name) ||
      identifier.text.empty()) {
    Fail(identifier.column, u"a property is missing");
  }
  Advance();
  const Token op = std::exchange(m_token, {});
  const OperatorName* known = nullptr;
  if (op.kind == Token::Kind::Operator || op.kind == Token::Kind::Word) {
    const std::u16string folded = FoldCase(op.text);
    for (const OperatorName& row : kOperators) {
      if (row.written == folded) known = &row;
    }
  }
  if (!known) Fail(op.column, u"an operator is missing behind \"" + identifier.text + u"\"");
  Advance();
  const Token value = std::exchange(m_token, {});
  if (value.kind != Token::Kind::Text && value.kind != Token::Kind::Word) {
    Fail(value.column, u"a value is missing behind \"" + op.text + u"\"");
  }
  Advance();
  const bool isNumber = value.kind == Token::Kind::Word && ParseNumber(value.text).has_value();
  const std::u16string constant = isNumber ? value.text : Translate(value.text, m_odsConform);
  return {
      Condition(isNumber ? known->forNumber : known->forText, identifier.text, constant, isNumber),
      false};
}

// Conditions have an operator somewhere outside of quotes; anything else is a name.
bool HoldsConditions(std::u16string_view text) {
  // A name may hold a single quote, so a text without an operator isn't a bad expression.
  char16_t quote = 0;
  bool found = false;
  std::size_t word = 0;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    const char16_t unit = i < text.size() ? text[i] : u' ';
    if (quote == 0 && EndsWord(unit)) {
      found |= word < i && FoldCase(text.substr(word, i - word)) == u"like";
      found |= IsOperator(unit) && unit != u'!';
    }
    if (EndsWord(unit)) word = i + 1;
    if (quote != 0) {
      if (unit == quote) quote = 0;
    } else if (unit == u'\'' || unit == u'"') {
      quote = unit;
    }
  }
  return found;
}

std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::u16string NamePattern(std::u16string_view text) {
  if (text.starts_with(u'\'')) {
    Lexer lexer(text);
    const bool closed = text.size() > 1 && text.ends_with(u'\'');
    if (closed) {
      Token token = lexer.Next();
      if (lexer.Next().kind == Token::Kind::End) return std::move(token.text);
    }
  }
  return std::u16string(text);
}

}  // namespace

std::u16string BuildQueryText(std::u16string_view returnType, bool odsConform,
                              std::u16string_view expression) {
  if (returnType.empty()) Fail(1, u"the return type is empty");
  std::u16string text =
      u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n<query>\n<entity name=\"";
  text += returnType;  // the format has it unescaped
  text += u"\" >\n<expression>\n";
  const std::u16string_view trimmed = Trim(expression);
  if (HoldsConditions(trimmed)) {
    text += ConditionWriter(expression, odsConform).Write();
  } else if (!trimmed.empty()) {
    const std::u16string name = ConditionWriter::Translate(NamePattern(trimmed), odsConform);
    text += Function(u"AND", ConditionWriter::Condition(u"=", u"name", name, false));
  }
  text += u"</expression></entity></query>";
  return text;
}

}  // namespace hv::vex::engine

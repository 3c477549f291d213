// core/store/memory/ValueTest.cpp - numbers against folded ranges, texts without allocation.
#include "core/store/memory/ValueTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace hv::vex::engine {
namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr double kBeyond = 9223372036854775808.0;  // 2^63

bool Holds(QueryOp op, int order) {
  switch (op) {
    case QueryOp::Equal:
      return order == 0;
    case QueryOp::NotEqual:
      return order != 0;
    case QueryOp::Less:
      return order < 0;
    case QueryOp::LessEqual:
      return order <= 0;
    case QueryOp::Greater:
      return order > 0;
    case QueryOp::GreaterEqual:
      return order >= 0;
    default:
      return false;
  }
}

IntegerTest CompareWith(QueryOp op, std::int64_t c) {
  switch (op) {
    case QueryOp::Equal:
      return {c, c, false};
    case QueryOp::NotEqual:
      return {c, c, true};
    case QueryOp::Less:
      return c == kLowest ? IntegerTest() : IntegerTest{kLowest, c - 1, false};
    case QueryOp::LessEqual:
      return {kLowest, c, false};
    case QueryOp::Greater:
      return c == kHighest ? IntegerTest() : IntegerTest{c + 1, kHighest, false};
    case QueryOp::GreaterEqual:
      return {c, kHighest, false};
    default:
      return {};
  }
}

// For a constant between two whole numbers, or beyond all of them: `below` is the last one below
// it.
IntegerTest CompareBetween(QueryOp op, std::optional<std::int64_t> below) {
  switch (op) {
    case QueryOp::NotEqual:
      return {kLowest, kHighest, false};
    case QueryOp::Less:
    case QueryOp::LessEqual:
      return below ? IntegerTest{kLowest, *below, false} : IntegerTest();
    case QueryOp::Greater:
    case QueryOp::GreaterEqual:
      if (!below) return {kLowest, kHighest, false};
      return *below == kHighest ? IntegerTest() : IntegerTest{*below + 1, kHighest, false};
    default:
      return {};
  }
}

char16_t LowerAscii(char c) {
  return static_cast<char16_t>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

}  // namespace

IntegerTest IntegerTest::Make(QueryOp op, const BoundConstant& constant) {
  const IntegerTest all{kLowest, kHighest, false};
  if (constant.isNever) return op == QueryOp::NotEqual ? all : IntegerTest();
  if (!constant.isReal) return CompareWith(op, constant.integer);
  const double real = constant.real;
  if (std::isnan(real)) return op == QueryOp::NotEqual ? all : IntegerTest();
  if (real >= kBeyond) return CompareBetween(op, kHighest);
  if (real < -kBeyond) return CompareBetween(op, std::nullopt);
  const auto below = static_cast<std::int64_t>(std::floor(real));
  if (std::floor(real) == real) return CompareWith(op, below);
  return CompareBetween(op, below);
}

RealTest RealTest::Make(QueryOp op, const BoundConstant& constant, bool isFloat) {
  double real = constant.isReal ? constant.real : static_cast<double>(constant.integer);
  if (constant.isNever || std::isnan(real)) {
    return {op == QueryOp::NotEqual ? Kind::Any : Kind::Never, op, 0};
  }
  if (isFloat && std::abs(real) <= static_cast<double>(std::numeric_limits<float>::max())) {
    real = static_cast<double>(static_cast<float>(real));
  }
  return {Kind::Compare, op, real};
}

bool RealTest::operator()(double value) const {
  if (std::isnan(value) || kind == Kind::Never) return false;
  if (kind == Kind::Any) return true;
  return Holds(op, value < constant ? -1 : (value > constant ? 1 : 0));
}

TextTest::TextTest(QueryOp op, const BoundConstant& constant, bool isDate)
    : m_kind(Kind::Equal),
      m_op(op),
      m_fold(constant.ignoreCase),
      m_isAscii(std::all_of(constant.text.begin(), constant.text.end(),
                            [](char16_t unit) { return unit < 0x80; })),
      m_constant(constant.text) {
  const bool isEquality = op == QueryOp::Equal || op == QueryOp::NotEqual;
  if (constant.isNever) {
    m_kind = op == QueryOp::NotEqual ? Kind::Any : Kind::Never;
  } else if (isDate) {
    m_kind = Kind::Date;
  } else if (!isEquality) {
    m_kind = Kind::Order;
  } else if (constant.wildcards) {
    m_kind = Kind::Pattern;
    m_pattern.emplace(m_constant);
  }
}

bool TextTest::operator()(const StoredText& text) const {
  switch (m_kind) {
    case Kind::Never:
      return false;
    case Kind::Any:
      return true;
    case Kind::Equal:
      return IsEqual(text) == (m_op == QueryOp::Equal);
    case Kind::Date:
      return Holds(m_op, CompareDate(text));
    case Kind::Pattern:
    case Kind::Order:
      break;
  }
  const std::u16string_view view = m_fold ? text.Fold(m_buffer) : text.Widen(m_buffer);
  if (m_kind == Kind::Pattern) return m_pattern->Matches(view) == (m_op == QueryOp::Equal);
  return Holds(m_op, view.compare(m_constant));
}

bool TextTest::IsEqual(const StoredText& text) const {
  if (!text.isAscii) {
    return m_fold ? text.Fold(m_buffer) == m_constant : text.wide == m_constant;
  }
  // Folding keeps plain ASCII plain ASCII.
  if (!m_isAscii || text.ascii.size() != m_constant.size()) return false;
  if (m_fold) {
    return std::equal(text.ascii.begin(), text.ascii.end(), m_constant.begin(),
                      [](char a, char16_t b) { return LowerAscii(a) == b; });
  }
  return std::equal(text.ascii.begin(), text.ascii.end(), m_constant.begin(),
                    [](char a, char16_t b) { return static_cast<char16_t>(a) == b; });
}

// Only texts of digits are let in as dates, so one that is long enough needs no normalising.
int TextTest::CompareDate(const StoredText& text) const {
  std::array<char16_t, 14> digits{};
  if (text.isAscii && text.ascii.size() >= digits.size()) {
    std::copy_n(text.ascii.begin(), digits.size(), digits.begin());
  } else if (const auto normal = NormalizeDate14(text.Widen(m_buffer))) {
    digits = *normal;
  }
  return std::u16string_view(digits.data(), digits.size()).compare(m_constant);
}

int TextTest::Cost() const {
  switch (m_kind) {
    case Kind::Never:
    case Kind::Any:
      return 5;
    case Kind::Equal:
      return 20;
    case Kind::Date:
      return 25;
    case Kind::Order:
      return 40;
    case Kind::Pattern:
      return 60;
  }
  return 0;
}

}  // namespace hv::vex::engine

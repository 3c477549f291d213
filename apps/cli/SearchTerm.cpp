#include "apps/cli/SearchTerm.h"

#include <algorithm>

#include "apps/cli/Failure.h"
#include "automation/conv/AutomationDate.h"
#include "util/conv/TimeValue.h"

namespace hv::cli {
namespace {

constexpr std::string_view kOperators[] = {"<=", ">=", "<>", "!=", "=", "<", ">", "#"};

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether a text is the beginning of the shape, in which "0" stands for any digit and "_" for a
/// blank or "T".
bool HasShape(std::string_view text, std::string_view shape) {
  return text.size() <= shape.size() &&
         std::equal(text.begin(), text.end(), shape.begin(), [](char c, char wanted) {
           if (wanted == '0') return IsDigit(c);
           if (wanted == '_') return c == ' ' || c == 'T';
           return c == wanted;
         });
}

}  // namespace

SearchTerm ParseSearchTerm(std::string_view text) {
  const std::string where = "the condition \"" + std::string(text) + "\": ";
  const std::size_t begin = text.find_first_of("<>=!#");
  if (begin == text.npos) {
    throw Failure(where + "there is no operator; there are = <> < <= > >= #");
  }
  SearchTerm term;
  term.path = Trimmed(text.substr(0, begin));
  if (term.path.empty()) throw Failure(where + "there is no property before the operator");
  const std::string_view rest = text.substr(begin);
  const auto* const op = std::find_if(std::begin(kOperators), std::end(kOperators),
                                      [&](std::string_view o) { return rest.starts_with(o); });
  if (op == std::end(kOperators)) throw Failure(where + "\"!\" alone is no operator");
  term.op = *op == "!=" ? "<>" : *op;
  const std::string_view behind = rest.substr(op->size());
  if (!behind.empty() && std::string_view("=<>!").find(behind.front()) != behind.npos) {
    throw Failure(where + "there is no operator \"" + std::string(*op) + behind.front() +
                  "\"; there are = <> < <= > >= #");
  }
  term.value = Trimmed(behind);
  if (term.value.empty()) throw Failure(where + "there is no value behind the operator");
  return term;
}

std::optional<Variant> ParseDate(std::string_view text) {
  const bool isPlain = HasShape(text, "00000000000000") &&
                       (text.size() == 8 || text.size() == 12 || text.size() == 14);
  const bool isDashed = HasShape(text, "0000-00-00_00:00:00") &&
                        (text.size() == 10 || text.size() == 16 || text.size() == 19);
  if (!isPlain && !isDashed) return std::nullopt;
  std::string digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits), IsDigit);
  const auto time = util::conv::TimeValue::FromText(digits);
  // What comes back as something else was out of the calendar.
  if (time.ToText().substr(0, digits.size()) != digits) return std::nullopt;
  return Variant::Date(util::conv::ToAutomationDate(time));
}

}  // namespace hv::cli

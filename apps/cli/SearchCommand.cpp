#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "apps/cli/Commands.h"
#include "apps/cli/Failure.h"
#include "apps/cli/HitTable.h"
#include "apps/cli/SearchTerm.h"
#include "apps/cli/Session.h"
#include "apps/cli/Values.h"
#include "query/conditions/IConditionCollImpl.h"
#include "query/objects/IAdvancedQueryImpl.h"
#include "query/objects/SessionQueries.h"
#include "query/values/OrList.h"
#include "storefabric/IBrowseConfig.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

/// A property of an entity, both by the names that the store has for them.
struct Target {
  std::string entity;
  std::string property;
};

/// A condition as it was written, and what became of it.
struct Term {
  std::string text;
  SearchTerm parts;
  Target target;
};

std::string PathOf(const Target& target) { return target.entity + "." + target.property; }

bool IsNumber(const std::string& text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end;
}

/// Makes the query of a search, and finds what it finds.
class Searcher final {
 public:
  Searcher(Session& session, const SearchOptions& options)
      : m_session(session),
        m_options(options),
        m_what("searching " + options.store),
        m_model(Ref<IModel>::Adopt(session.Store().GetModel())) {}

  Ref<IInstList> Run() {
    Check(m_session.DataStore().CreateQuery(m_query.Put()), m_what);
    Check(m_query->GetConditions(m_conditions.Put()), m_what);
    m_type = EntityName(m_options.type);
    if (m_type.empty() || Failed(m_query->SetReturnType(cor::FromUtf8(m_type)))) {
      throw Failure(m_what + ": the store has no entity \"" + m_options.type + "\"");
    }
    for (const std::string& text : m_options.where) AddCondition(text);
    // A query has at least one condition: everything has a name.
    if (m_options.where.empty()) AddCondition("name=*");
    SetLogic();
    return Execute();
  }

  /// The number of hits that were left out is unknown; there are some if this is true.
  [[nodiscard]] bool HasMore() const { return m_hasMore; }

 private:
  /// The application's name for an entity that is given by that or by its base name; empty if there
  /// is none.
  std::string EntityName(const std::string& name) {
    auto entity = Ref<IEntity>::Adopt(m_model->GetEntityByName(cor::FromUtf8(name)));
    if (!entity) return {};
    if (!Ref<IEntity>::Adopt(entity->GetApplicationElement())) {
      WString base;
      entity->GetName(base);
      entity = Ref<IEntity>::Adopt(m_model->GetApplicationEntityOfBase(base));
      if (!entity) return {};
    }
    WString found;
    entity->GetName(found);
    return cor::ToUtf8(found);
  }

  /// Names may hold points: the last one whose left side is an entity parts the two.
  Target FindTarget(const std::string& path) {
    for (std::size_t point = path.rfind('.'); point != path.npos && point > 0;
         point = path.rfind('.', point - 1)) {
      const std::string entity = EntityName(path.substr(0, point));
      if (!entity.empty()) return {entity, path.substr(point + 1)};
    }
    return {m_type, path};
  }

  void AddCondition(const std::string& text) {
    const SearchTerm term = ParseSearchTerm(text);
    const Target target = FindTarget(term.path);
    CheckItems(text, term, target);
    m_terms.push_back({text, term, target});
    const WString entity = cor::FromUtf8(target.entity);
    const WString property = cor::FromUtf8(target.property);
    Variant value = Variant::Text(cor::FromUtf8(term.value));
    if (term.op != "#" && m_conditions->IsDateProperty(entity, property)) {
      if (const auto date = ParseDate(term.value)) value = *date;
    }
    Ref<easyImpl::IConditionImpl> condition;
    const Result rc =
        m_conditions->Add(entity, property, cor::FromUtf8(term.op), value, condition.Put());
    if (Failed(rc) && rc != VEX_E_VALUE_WAS_TEXT) Refuse(text, term, target, rc);
  }

  /// The definition of an attribute or reference; null if there is none.
  Ref<IAttributeDefinition> DefinitionOf(const Target& target) const {
    return Explained(m_what, [&] {
      const auto entity =
          Ref<IEntity>::Adopt(m_model->GetEntityByName(cor::FromUtf8(target.entity)));
      const auto found =
          Ref<IAttribute>::Adopt(entity->GetAttribute(cor::FromUtf8(target.property)));
      return found.As<IAttributeDefinition>();
    });
  }

  [[nodiscard]] std::string Where(const std::string& text) const {
    return m_what + ": the condition \"" + text + "\": ";
  }

  /// Refuses a text that no item of an enumeration is: it would quietly find nothing.
  void CheckItems(const std::string& text, const SearchTerm& term, const Target& target) const {
    const Ref<IAttributeDefinition> definition = DefinitionOf(target);
    if (!definition || definition->GetEnumerationCount() == 0) return;
    std::vector<WString> items(definition->GetEnumerationCount());
    std::int64_t number = 0;
    for (std::uint64_t i = 0; i < items.size(); ++i) {
      definition->GetEnumerationItem(i, items[i], &number);
    }
    for (const WString& value : SplitValues(cor::FromUtf8(term.value), true, true)) {
      const std::string piece = cor::ToUtf8(value);
      if (piece.find_first_of("*?") != piece.npos || IsNumber(piece) ||
          std::find(items.begin(), items.end(), value) != items.end()) {
        continue;
      }
      std::string known;
      for (const WString& item : items) known += (known.empty() ? "" : ", ") + cor::ToUtf8(item);
      throw Failure(Where(text) + "\"" + piece + "\" is no value for " + PathOf(target) +
                    ", which has " + known);
    }
  }

  /// Finds the condition that a query failed for which was accepted as such. Returns if it isn't
  /// one of those.
  void ExplainTerms() const {
    for (const auto& [text, term, target] : m_terms) {
      const Ref<IAttributeDefinition> definition = DefinitionOf(target);
      const std::int32_t type = definition ? definition->GetDataType() : kDateType;
      if (TypeName(type) == "any") {
        throw Failure(Where(text) + PathOf(target) + " can't be searched");
      }
      if (!IsNumberType(type)) continue;
      for (const WString& value : SplitValues(cor::FromUtf8(term.value), true, true)) {
        const std::string piece = cor::ToUtf8(value);
        if (!IsNumber(piece)) throw Failure(Where(text) + "\"" + piece + "\" is no number");
      }
    }
  }

  [[noreturn]] void Refuse(const std::string& text, const SearchTerm& term, const Target& target,
                           Result rc) const {
    const std::string where = Where(text);
    const std::string property = PathOf(target);
    if (rc == VEX_E_INVALID_PROPERTY) {
      if (DefinitionOf(target)) throw Failure(where + property + " can't be searched");
      const std::size_t point = term.path.rfind('.');
      if (target.property == term.path && point != term.path.npos) {
        throw Failure(where + "the store has no entity \"" + term.path.substr(0, point) + "\"");
      }
      throw Failure(where + "there is no property " + property);
    }
    const bool isDate =
        m_conditions->IsDateProperty(cor::FromUtf8(target.entity), cor::FromUtf8(target.property));
    if (rc == VEX_E_BAD_OPERATOR) {
      throw Failure(where + property + " doesn't take the operator " + term.op +
                    (isDate ? "; a date takes = <= >= #" : ""));
    }
    if (rc == VEX_E_OR_OPERATOR) throw Failure(where + "only = takes several values");
    if (rc == VEX_E_OR_UNSUPPORTED) throw Failure(where + "the store takes one value only");
    if (rc == VEX_E_VALUE_NOT_DATE || rc == VEX_E_BAD_VALUE || rc == VEX_E_VALUE_TYPE) {
      const char* known = "";
      if (isDate) known = ", which takes 2025-09-01, 2025-09-01 14:30:00 or digits alone";
      if (isDate && term.op == "#") known = ", which takes a range like Today or LastSevenDays";
      throw Failure(where + "\"" + term.value + "\" is no value for " + property + known);
    }
    Check(rc, m_what);
    throw Failure(where + "it can't be used");
  }

  void SetLogic() {
    if (m_options.logic.empty()) return;
    const Result rc = m_conditions->SetLogic(cor::FromUtf8(m_options.logic));
    if (rc == VEX_E_LOGIC_UNSUPPORTED) {
      throw Failure(m_what + ": the store joins conditions with AND only");
    }
    if (Failed(rc)) {
      throw Failure(m_what + ": the logic \"" + m_options.logic +
                    "\" isn't valid; conditions are " +
                    "C1, C2 ... in their order, joined by AND, OR and parentheses");
    }
  }

  Ref<IInstList> Execute() {
    Ref<IBrowseConfig> config;
    Check(m_session.Provider().GetBrowseConfig(config.Put()), m_what);
    const std::int32_t limit =
        m_options.limit > 0 ? m_options.limit : std::numeric_limits<std::int32_t>::max();
    WString text;
    const Result rc =
        StoreQueries().WriteText({m_session.Store(), *config}, *m_query, limit, &text);
    if (rc == VEX_E_INVALID_PROPERTY || rc == VEX_E_VALUE_TOO_LONG || rc == E_INVALIDARG ||
        rc == VEX_E_VALUE_TYPE) {
      const std::uint32_t failed = m_query->GetFailedCondition();
      throw Failure(m_what + ": the condition C" + std::to_string(std::max(failed, 1U)) +
                    " can't be used" +
                    (rc == VEX_E_VALUE_TOO_LONG ? ": its value is too long" : ""));
    }
    Check(rc, m_what);
    return Explained(m_what, [&] {
      const auto query = QueryRef<IStoreQuery>(&m_session.Store());
      if (!query) throw Failure(m_what + ": the store can't search");
      Ref<IInstList> hits;
      try {
        hits = Ref<IInstList>::Adopt(query->Execute(text));
      } catch (const Exception&) {
        ExplainTerms();
        throw;
      }
      const auto most = static_cast<std::uint64_t>(limit);
      m_hasMore = hits->GetCount() > most;
      if (m_hasMore) hits->Truncate(most);
      return hits;
    });
  }

  Session& m_session;
  const SearchOptions& m_options;
  std::string m_what;
  Ref<IModel> m_model;
  std::string m_type;
  std::vector<Term> m_terms;
  Ref<IAdvancedQueryImpl> m_query;
  Ref<easyImpl::IConditionCollImpl> m_conditions;
  bool m_hasMore = false;
};

}  // namespace

void RunSearch(const SearchOptions& options) {
  Session session(options.store);
  Searcher searcher(session, options);
  const Ref<IInstList> hits = searcher.Run();
  Explained("searching " + options.store,
            [&] { WriteHits(session.Store(), *hits, options.columns, options.format); });
  if (searcher.HasMore()) {
    std::fflush(stdout);
    std::fprintf(stderr, "storefabric: there are more than %d hits; --limit 0 shows all\n",
                 options.limit);
  }
  TellRemarks(session.Store(), options.warnings);
}

}  // namespace hv::cli

#include "core/plugins/vex/DocumentPlan.h"

#include <algorithm>

namespace hv::vex::engine::vexdoc {

namespace {

/// Instances inside each other; readers bound the depth of tags, of which each level takes two.
constexpr std::size_t kDeepest = 100;

}  // namespace

DocumentPlan::DocumentPlan(const RecordStore& source) {
  Collect(source);
  const auto placeAll = [this](bool parts) {
    for (Node node = 0; node < m_nodes.size(); ++node) {
      if (!m_nodes[node].isWritten && m_nodes[node].isPart == parts) Place(node, 0);
      // Those come to the top, and may postpone others.
      for (std::size_t i = 0; i < m_postponed.size(); ++i) {
        if (!m_nodes[m_postponed[i]].isWritten) Place(m_postponed[i], 0);
      }
      m_postponed.clear();
    }
  };
  placeAll(false);
  placeAll(true);  // what is left are rings
}

void DocumentPlan::Collect(const RecordStore& source) {
  const Model& model = *source.GetModel();
  std::vector<std::vector<RecordId>> ids(model.Entities().size());
  std::vector<Node> firsts(model.Entities().size());
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    firsts[entity.id] = static_cast<Node>(m_nodes.size());
    ids[entity.id] = source.AllOf(entity.id);
    for (std::size_t row = 0; row < ids[entity.id].size(); ++row) {
      m_nodes.push_back({{entity.id, ids[entity.id][row]}, row, {}});
    }
  }
  for (const Entity& entity : model.Entities()) {
    if (ids[entity.id].empty()) continue;
    for (std::size_t r = 0; r < entity.relations.size(); ++r) {
      if (!entity.relations[r].isDeclared) continue;
      const auto relation = static_cast<std::int32_t>(r);
      for (const Link& link : source.Follow(entity.id, relation, ids[entity.id])) {
        const std::vector<RecordId>& others = ids[link.target.entity];
        const auto found = std::lower_bound(others.begin(), others.end(), link.target.id);
        const Node target = firsts[link.target.entity] + static_cast<Node>(found - others.begin());
        m_nodes[firsts[entity.id] + link.source].targets.push_back({relation, target});
        m_nodes[target].isPart = true;
      }
    }
  }
}

void DocumentPlan::Place(Node node, std::size_t depth) {
  m_nodes[node].isWritten = true;
  m_steps.push_back({Step::Kind::Begin, node});
  std::int32_t open = -1;
  for (const Target& target : m_nodes[node].targets) {
    if (target.relation != open) {
      if (open >= 0) m_steps.push_back({Step::Kind::EndReference, node, open});
      m_steps.push_back({Step::Kind::BeginReference, node, target.relation});
      open = target.relation;
    }
    NodeFacts& facts = m_nodes[target.node];
    if (!facts.isWritten && depth + 1 < kDeepest) {
      Place(target.node, depth + 1);
      continue;
    }
    if (!facts.isWritten) m_postponed.push_back(target.node);
    facts.isMentioned = true;
    m_steps.push_back({Step::Kind::Mention, target.node});
  }
  if (open >= 0) m_steps.push_back({Step::Kind::EndReference, node, open});
  m_steps.push_back({Step::Kind::End, node});
}

}  // namespace hv::vex::engine::vexdoc

// core/plugins/vex/DocumentPlan.h - in which order and inside which others the instances of a
// document are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/store/RecordStore.h"

namespace hv::vex::engine::vexdoc {

/// All records of a store as a forest along the declared references. Nobody's part is a tree of its
/// own; what is the part of several is written inside the first and mentioned by id in the others,
/// and so is what would lie too deep.
class DocumentPlan final {
 public:
  using Node = std::uint32_t;
  /// What comes next in the document.
  struct Step {
    enum class Kind : std::uint8_t { Begin, End, BeginReference, EndReference, Mention };
    Kind kind;
    Node node = 0;               ///< Begin, End, Mention
    std::int32_t relation = -1;  ///< BeginReference, EndReference
  };

  explicit DocumentPlan(const RecordStore& source);

  [[nodiscard]] const std::vector<Step>& Steps() const { return m_steps; }
  [[nodiscard]] RecordRef At(Node node) const { return m_nodes[node].record; }
  /// Row of the node among the records of its entity, as `AllOf` gives them.
  [[nodiscard]] std::size_t RowOf(Node node) const { return m_nodes[node].row; }
  [[nodiscard]] bool IsMentioned(Node node) const { return m_nodes[node].isMentioned; }

 private:
  struct Target {
    std::int32_t relation;
    Node node;
  };
  struct NodeFacts {
    RecordRef record;
    std::size_t row = 0;
    std::vector<Target> targets;  // by relation in the model's order
    bool isPart = false;          // of another one
    bool isWritten = false;
    bool isMentioned = false;
  };
  void Collect(const RecordStore& source);
  void Place(Node node, std::size_t depth);

  std::vector<NodeFacts> m_nodes;
  std::vector<Node> m_postponed;
  std::vector<Step> m_steps;
};

}  // namespace hv::vex::engine::vexdoc

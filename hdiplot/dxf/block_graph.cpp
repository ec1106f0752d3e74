#include "hdiplot/dxf/block_graph.h"

#include <algorithm>
#include <limits>

namespace hdiplot {
namespace {

constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();

uint64_t CappedProduct(uint64_t a, uint64_t b) { return b != 0 && a > kMost / b ? kMost : a * b; }

uint64_t CappedSum(uint64_t a, uint64_t b) { return a > kMost - b ? kMost : a + b; }

}  // namespace

void BlockGraph::AddInsert(const std::string& within, const std::string& block, uint64_t copies, size_t id) {
  nodes_[within].inserts.push_back({block, copies, id});
}

std::vector<size_t> BlockGraph::CircularInserts() const {
  std::vector<size_t> circular;
  InnermostFirst(circular);
  return circular;
}

// Depth first, on a stack of our own: how deep blocks are nested is up to the file.
std::vector<std::string> BlockGraph::InnermostFirst(std::vector<size_t>& circular) const {
  enum class State { kUnseen, kOpen, kDone };
  struct Step {
    std::map<std::string, Node>::const_iterator node;
    size_t next = 0;
  };
  std::map<std::string_view, State> states;
  std::vector<std::string> order;
  for (auto start = nodes_.begin(); start != nodes_.end(); ++start) {
    if (states[start->first] != State::kUnseen) continue;
    states[start->first] = State::kOpen;
    for (std::vector<Step> path = {{start}}; !path.empty();) {
      Step& step = path.back();
      const Node& node = step.node->second;
      if (step.next == node.inserts.size()) {
        states[step.node->first] = State::kDone;
        order.push_back(step.node->first);
        path.pop_back();
        continue;
      }
      const Insert& insert = node.inserts[step.next++];
      const auto inner = nodes_.find(insert.block);
      if (inner == nodes_.end()) continue;
      State& state = states[inner->first];
      if (state == State::kOpen) circular.push_back(insert.id);
      if (state == State::kUnseen) {
        state = State::kOpen;
        path.push_back({inner});
      }
    }
  }
  return order;
}

TypeCounts BlockGraph::SkippedIn(const std::string& name) const {
  std::map<std::string, TypeCounts> totals;
  std::vector<size_t> circular;
  for (const std::string& block : InnermostFirst(circular)) {
    const Node& node = nodes_.at(block);
    TypeCounts total = node.skipped;
    for (const Insert& insert : node.inserts) {
      for (const auto& [type, count] : totals[insert.block]) {
        total[type] = CappedSum(total[type], CappedProduct(count, insert.copies));
      }
    }
    totals[block] = std::move(total);
  }
  return totals[name];
}

}  // namespace hdiplot

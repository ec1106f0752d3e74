#include "hdiplot/dxf/block_graph.h"

#include <limits>

namespace hdiplot {
namespace {

constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();

uint64_t CappedProduct(uint64_t a, uint64_t b) { return b != 0 && a > kMost / b ? kMost : a * b; }

uint64_t CappedSum(uint64_t a, uint64_t b) { return a > kMost - b ? kMost : a + b; }

}  // namespace

void BlockGraph::AddInsert(const std::string& within, const std::string& block, uint64_t copies) {
  const bool isLast = last_ != nullptr && last_->first == block && *lastWithin_ == within;
  if (!isLast) {
    const auto node = nodes_.try_emplace(within).first;
    lastWithin_ = &node->first;
    last_ = &*node->second.inserts.try_emplace(block, 0).first;
  }
  last_->second = CappedSum(last_->second, copies);
}

std::set<std::string> BlockGraph::InsertedBlocks() const {
  std::set<std::string> blocks;
  for (const auto& [name, node] : nodes_) {
    for (const auto& [block, copies] : node.inserts) blocks.insert(block);
  }
  return blocks;
}

std::set<BlockGraph::Insert> BlockGraph::CircularInserts() const {
  std::set<Insert> circular;
  InnermostFirst(circular);
  return circular;
}

// Depth first, with an explicit stack, since a file determines how deep blocks are nested.
std::vector<std::string> BlockGraph::InnermostFirst(std::set<Insert>& circular) const {
  enum class State { kUnseen, kOpen, kDone };
  struct Step {
    std::map<std::string, Node>::const_iterator node;
    std::map<std::string, uint64_t>::const_iterator next;
  };
  std::map<std::string_view, State> states;
  std::vector<std::string> order;
  for (auto start = nodes_.begin(); start != nodes_.end(); ++start) {
    if (states[start->first] != State::kUnseen) continue;
    states[start->first] = State::kOpen;
    for (std::vector<Step> path = {{start, start->second.inserts.begin()}}; !path.empty();) {
      const auto& [name, node] = *path.back().node;
      if (path.back().next == node.inserts.end()) {
        states[name] = State::kDone;
        order.push_back(name);
        path.pop_back();
        continue;
      }
      const std::string& block = (path.back().next++)->first;
      const auto inner = nodes_.find(block);
      if (inner == nodes_.end()) continue;
      State& state = states[inner->first];
      if (state == State::kOpen) circular.emplace(name, block);
      if (state == State::kUnseen) {
        state = State::kOpen;
        path.push_back({inner, inner->second.inserts.begin()});
      }
    }
  }
  return order;
}

TypeCounts BlockGraph::SkippedIn(const std::string& name) const {
  std::map<std::string, TypeCounts> totals;
  std::set<Insert> circular;
  for (const std::string& within : InnermostFirst(circular)) {
    const Node& node = nodes_.at(within);
    TypeCounts total = node.skipped;
    for (const auto& [block, copies] : node.inserts) {
      for (const auto& [type, count] : totals[block]) {
        total[type] = CappedSum(total[type], CappedProduct(count, copies));
      }
    }
    totals[within] = std::move(total);
  }
  return totals[name];
}

}  // namespace hdiplot

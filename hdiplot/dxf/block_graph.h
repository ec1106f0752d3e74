// Which block is inserted where: finds blocks that contain themselves, and counts how often the content of a
// block appears in the drawing.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hdiplot {

using TypeCounts = std::map<std::string, uint64_t>;  // by entity type

// The model and the paper are nodes of the graph, under names that no block can have.
inline const std::string kModelName;
inline const std::string kPaperName = "\n";

class BlockGraph {
 public:
  using Insert = std::pair<std::string, std::string>;  // within which block, and of which

  void AddInsert(const std::string& within, const std::string& block, uint64_t copies);
  void AddSkipped(const std::string& within, std::string_view type) {
    ++nodes_[within].skipped[std::string(type)];
  }

  [[nodiscard]] std::set<std::string> InsertedBlocks() const;

  // The inserts that close a circle.
  [[nodiscard]] std::set<Insert> CircularInserts() const;

  // The entities counted as skipped in a node, those of each block once for every time that it appears there;
  // at most UINT64_MAX. Inserts that close a circle do not count.
  [[nodiscard]] TypeCounts SkippedIn(const std::string& name) const;

 private:
  struct Node {
    std::map<std::string, uint64_t> inserts;  // the copies by block
    TypeCounts skipped;
  };

  // All nodes, each after those that it contains, except along `circular` inserts, which are added to the
  // set.
  std::vector<std::string> InnermostFirst(std::set<Insert>& circular) const;

  std::map<std::string, Node> nodes_;
  // The latest insert, since they come in runs of one block.
  const std::string* lastWithin_ = nullptr;
  std::pair<const std::string, uint64_t>* last_ = nullptr;
};

}  // namespace hdiplot

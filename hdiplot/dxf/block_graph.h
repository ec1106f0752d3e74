// Which block is inserted where: finds blocks that contain themselves, and how often what stands in a block
// appears in the drawing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

using TypeCounts = std::map<std::string, uint64_t>;  // by entity type

// The model and the paper take part under names that no block can have.
inline constexpr const char* kModelName = "";
inline constexpr const char* kPaperName = "\n";

class BlockGraph {
 public:
  void AddInsert(const std::string& within, const std::string& block, uint64_t copies, size_t id);
  void AddSkipped(const std::string& within, std::string_view type) {
    ++nodes_[within].skipped[std::string(type)];
  }

  // The inserts that close a circle, by the numbers that they were added with.
  [[nodiscard]] std::vector<size_t> CircularInserts() const;

  // The entities counted as skipped in the model or on the paper, those of each block once for every time
  // that it appears there. Stays at the largest number where they are more. Inserts that
  // close a circle do not count.
  TypeCounts SkippedIn(const std::string& name) const;

 private:
  struct Insert {
    std::string block;
    uint64_t copies;
    size_t id;
  };
  struct Node {
    std::vector<Insert> inserts;
    TypeCounts skipped;
  };

  // All blocks, each after those that it contains, but for what closes a circle.
  std::vector<std::string> InnermostFirst(std::vector<size_t>& circular) const;

  std::map<std::string, Node> nodes_;
};

}  // namespace hdiplot

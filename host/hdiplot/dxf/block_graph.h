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
  void AddInsert(const std::string& within, const std::string& block, uint64_t copies, size_t line);
  void AddSkipped(const std::string& within, std::string_view type) {
    ++nodes_[within].skipped[std::string(type)];
  }

  // Throws DxfFault at an insert that closes a circle.
  void CheckForCircles() const;

  // The entities counted as skipped in the model or on the paper, those of each block once for every time
  // that it appears there. Stays at the largest number where they are more. Only without circles.
  TypeCounts SkippedIn(const std::string& name) const;

 private:
  struct Insert {
    std::string block;
    uint64_t copies;
    size_t line;
  };
  struct Node {
    std::vector<Insert> inserts;
    TypeCounts skipped;
  };

  // All blocks, each after those that it contains.
  std::vector<std::string> InnermostFirst() const;

  std::map<std::string, Node> nodes_;
};

}  // namespace hdiplot

// Goes through a drawing in its order, into the blocks that it inserts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/styles.h"

namespace hdiplot {

// From the model's coordinates to those of the viewport's layout.
[[nodiscard]] Affine ModelToSheet(const ViewportEntity& viewport);

// Takes what is plotted. `map` leads from the shape's coordinates to those that the walk was given.
class ShapeSink {
 public:
  virtual ~ShapeSink() = default;

  // `shape` is no InsertEntity.
  virtual void Put(const Shape& shape, const Affine& map, const Style& style) = 0;
  // What is put in between leads to `target`. Links do not nest: within a block that is linked as a whole,
  // its own links do not count.
  virtual void BeginLink(const std::string& target, const Shape& shape) {
    static_cast<void>(target);
    static_cast<void>(shape);
  }
  virtual void EndLink() {}
  // What is put in between is the model as `viewport` shows it; `map` leads from the layout's coordinates.
  // False when that is not asked for; then there is no end.
  virtual bool BeginViewport(const ViewportEntity& viewport, const Affine& map) {
    static_cast<void>(viewport), static_cast<void>(map);
    return false;
  }
  virtual void EndViewport() {}
  // Behind each entity of the drawing itself: how many of them are done.
  virtual void Done(size_t entities) { static_cast<void>(entities); }
};

// What is in the drawing's blocks and not walked, by the bounds below.
struct UnwalkedInserts {
  uint64_t tooDeep = 0;  // each time that one would appear
  uint64_t cutOff = 0;   // of the drawing itself, whose blocks do not appear or not as a whole
};

// Model space is walked, or a layout with the model in its viewports. Left out are invisible entities,
// layers that are not plotted, blocks inserted on frozen layers and inserts of blocks that are missing, are
// open already or stand more than kDeepestInsert deep. Nothing more comes from blocks once kMostFromBlocks
// entities have: a small file can ask for any number of them.
class DrawingWalk {
 public:
  static constexpr size_t kDeepestInsert = 16;
  static constexpr size_t kMostFromBlocks = 10'000'000;

  // Refers to all of them from then on.
  DrawingWalk(const Drawing& drawing, const PlotOptions& options, ShapeSink& sink);
  DrawingWalk(const DrawingWalk&) = delete;
  DrawingWalk& operator=(const DrawingWalk&) = delete;

  // Null: the model.
  void Run(const Affine& map, const Layout* layout = nullptr);

  // Behind Run.
  [[nodiscard]] const UnwalkedInserts& Unwalked() const { return unwalked_; }

 private:
  void Visit(const Entity& entity, const Affine& map, const Style* insert);
  void VisitModel(const Affine& map);
  void VisitOnSheet(const Entity& entity, const Affine& map);
  void VisitShown(const Entity& entity, const Affine& map, const Style& style);
  void VisitInsert(const InsertEntity& insert, const Affine& map, const Style& style);
  void VisitCopies(const InsertEntity& insert, const Block& block, const Affine& map, const Style& style);
  [[nodiscard]] bool TakeFromBlocks();
  void VisitBlock(const Block& block, const Affine& map, const Style& style);
  [[nodiscard]] bool IsOpen(const Block& block) const;

  const Drawing& drawing_;
  ShapeSink& sink_;
  const PlotOptions& options_;
  StyleResolver sheetStyles_;
  StyleResolver* styles_ = &sheetStyles_;  // of the viewport being walked, where it has its own
  std::vector<const Block*> open_;
  size_t leftFromBlocks_ = kMostFromBlocks;
  bool isCutOff_ = false;  // the insert being walked, which is one of the drawing itself
  bool isLinked_ = false;
  UnwalkedInserts unwalked_;
};

}  // namespace hdiplot

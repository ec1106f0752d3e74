// Walks a drawing in its order, including the blocks that it inserts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/styles.h"

namespace hdiplot {

// The map from the model to the viewport's layout.
[[nodiscard]] Affine ModelToSheet(const ViewportEntity& viewport);

// Receives what is plotted. `map` takes the shape's coordinates to those of the walk's own map.
class ShapeSink {
 public:
  virtual ~ShapeSink() = default;

  // `shape` is never an InsertEntity.
  virtual void Put(const Shape& shape, const Affine& map, const Style& style) = 0;
  // What is put in between links to `target`. Links do not nest: links within a linked block are ignored.
  virtual void BeginLink(const std::string& target, const Shape& shape) {
    static_cast<void>(target);
    static_cast<void>(shape);
  }
  virtual void EndLink() {}
  // What is put in between is the model as `viewport` shows it; `map` takes the layout's coordinates. False
  // to skip it; then EndViewport is not called.
  virtual bool BeginViewport(const ViewportEntity& viewport, const Affine& map) {
    static_cast<void>(viewport), static_cast<void>(map);
    return false;
  }
  virtual void EndViewport() {}
  // Of what is put in between, only the part within the clip is seen; `map` takes the clip's coordinates.
  // False if that is nothing; then EndClip is not called. Clips nest.
  virtual bool BeginClip(const BlockClip& clip, const Affine& map) = 0;
  virtual void EndClip() = 0;
  // After each entity of the drawing itself: how many of them are done.
  virtual void Done(size_t entities) { static_cast<void>(entities); }
};

// What the limits below have excluded of the drawing's blocks.
struct UnwalkedInserts {
  uint64_t tooDeep = 0;  // counted for each copy
  uint64_t cutOff = 0;   // inserts of the drawing itself that are missing or incomplete
};

// Walks model space, or a layout with the model in its viewports. Skips invisible entities, layers that are
// not plotted, blocks inserted on frozen layers, and inserts of blocks that are missing, recursive or nested
// deeper than kDeepestInsert. Stops walking blocks after kMostFromBlocks entities: a small file can insert
// any number of them.
class DrawingWalk {
 public:
  static constexpr size_t kDeepestInsert = 16;
  static constexpr size_t kMostFromBlocks = 10'000'000;

  // Keeps references to all of them.
  DrawingWalk(const Drawing& drawing, const PlotOptions& options, ShapeSink& sink);
  DrawingWalk(const DrawingWalk&) = delete;
  DrawingWalk& operator=(const DrawingWalk&) = delete;

  // Null: the model.
  void Run(const Affine& map, const Layout* layout = nullptr);

  // After Run.
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
  StyleResolver* styles_ = &sheetStyles_;  // or those of the current viewport
  std::vector<const Block*> open_;
  size_t leftFromBlocks_ = kMostFromBlocks;
  bool isCutOff_ = false;  // the current insert of the drawing itself
  bool isLinked_ = false;
  UnwalkedInserts unwalked_;
};

}  // namespace hdiplot

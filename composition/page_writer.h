// The page writer: the only object between the replay and the engine.
//
// It owns the document and the open page, and holds the graphics state that records change step by step. Page
// objects have no current colour, so the current values are copied to each object when it is finished; the
// object's bytes then go into the page's stream at once. Everything is in dots of the page's dot space. The
// only scaling is the matrix that FinishPage wraps around the page: a page coordinate is `pointScale` times
// the dot plus the origin, in points.
//
// An operation that throws std::bad_alloc leaves the writer and the document unchanged, except that one which
// ends the path still ends it, and that a font already embedded stays.
//
// Failures are not reported. Operations without a page or a path do nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "composition/content_generator.h"
#include "composition/page_contents.h"
#include "composition/page_objects.h"
#include "composition/page_resources.h"
#include "document/comments.h"
#include "document/layers.h"
#include "engine/document.h"
#include "engine/library.h"
#include "engine/page.h"
#include "fonts/font_cache.h"
#include "fonts/text_geometry.h"
#include "platform/files.h"
#include "platform/host_library.h"
#include "recording/command_list.h"

namespace hdi {

// Rounding of boxes in points.
enum class Bounds : uint8_t { kWholePoints, kExact };

// Invisible text makes what the host draws over it searchable and selectable.
enum class TextVisibility : uint8_t { kVisible, kInvisible };

// Lower left corner and size of an image, in dots.
struct ImageBox {
  double x;
  double y;
  double width;
  double height;
};

class PageWriter final : private engine::BlockSink {
 public:
  PageWriter();
  PageWriter(const PageWriter&) = delete;
  PageWriter& operator=(const PageWriter&) = delete;
  // Closes everything still open, the output last.
  ~PageWriter() = default;

  // Opens the output. Removes an existing file first; returns false if it cannot be removed or the output not
  // opened.
  [[nodiscard]] bool OpenOutput(const std::u16string& path);
  // Starts a new document, replacing an existing one; pages may begin. If it throws, there is no document. Up
  // to `workers` threads compress its streams beside the caller's.
  void StartDocument(std::u16string_view creator,
                     engine::Compression compression = engine::Compression::kNormal,
                     unsigned workers = engine::DefaultWorkers());
  // Saves the document to the output. A full disk is not reported; any other failure of the output throws
  // std::system_error.
  void Save();

  // Setters only store. A value applies to the objects finished after it and, except for the origin, carries
  // over to later pages. Unknown cap and join codes (operators J and j) count as 0, a negative width as 1.
  void SetLineWidth(float width) { path_.attributes.lineWidth = width < 0 ? 1.0F : width; }
  void SetLineCap(uint32_t cap) { path_.attributes.lineCap = LineCode(cap); }
  void SetLineJoin(uint32_t join) { path_.attributes.lineJoin = LineCode(join); }
  // Either call sets the blend mode of the paths that follow.
  void SetStrokeColor(Color color, BlendMode mode);
  void SetFillColor(Color color, BlendMode mode);
  // Lengths in points, as pens give them; empty for a solid line.
  void SetDashArray(std::vector<float> points);
  void SetAlpha(uint8_t alpha) { alpha_ = alpha; }
  [[nodiscard]] uint8_t Alpha() const { return alpha_; }
  // Applies to all pages that follow.
  void SetBackground(Color color);
  // Offset of dot space on the page, in points.
  void SetOrigin(float x, float y);
  // Dots per inch, above 0. Call before the first page; a dash array already set keeps its lengths in dots.
  void SetPointScale(int32_t dotsPerInch);
  void SetBounds(Bounds bounds) { bounds_ = bounds; }
  // The host's divisor for the scale of the drawing. Used for the page's measure.
  void SetLineScale(double scale) { lineScale_ = scale; }

  // `pageNumber` counts from 1; the size is in points. Discards a page that is still open and resets clip and
  // origin.
  void BeginPage(uint32_t pageNumber, double width, double height);
  // Sets the open page's measure for that resolution. Written by FinishPage.
  void SetPageScaleInfo(int32_t dotsPerInch);
  void FinishPage();

  // The path under construction. Lines and curves before the first MoveTo are dropped.
  void MoveTo(float x, float y) { path_.points.push_back({x, y, PointType::kMove, false}); }
  void LineTo(float x, float y) {
    if (!path_.points.empty()) path_.points.push_back({x, y, PointType::kLine, false});
  }
  void CurveTo(float x1, float y1, float x2, float y2, float x3, float y3) {
    if (path_.points.empty()) return;
    path_.points.insert(path_.points.end(), {{x1, y1, PointType::kBezier, false},
                                             {x2, y2, PointType::kBezier, false},
                                             {x3, y3, PointType::kBezier, false}});
  }

  // These paint the path and end it. Fill modes: 1 even-odd, 2 nonzero winding.
  void StrokePath();
  // An opaque fill in any mode but winding is closed and outlined with a zero-width line in the stroke
  // colour.
  void FillPath(uint32_t fillMode);
  void FillAndStrokePath(uint32_t fillMode);

  // Makes the path the clip of all later objects on the page, replacing the previous one. Without a path,
  // removes the clip.
  void MakeClipFromPath();
  // Stored but never applied: the first clip of a page is the page itself.
  void SetPageClipRect(const engine::Rectangle& rect) { pageClipRect_ = rect; }

  // The characters that the job uses in each font. Call before the first text; must outlive the last.
  void SetCharacters(const FontUsage& fontUsage) { fonts_.SetCharacters(fontUsage); }

  // Writes a text whose baseline starts at x, y, as one text object a run. Advances only position the next
  // run and size the link area; within a run the font's own widths apply. The text's colour is the fill
  // colour. A run whose font cannot be loaded is left out.
  void WriteTextRuns(const HT_Text& text, float x, float y, const TextShapeData& shape,
                     TextVisibility visibility);

  // Places a raster of 1 or 8 bits a pixel, whose palette follows `header` in memory, under the current
  // opacity. The box is in dots. Ignores other bit counts and rasters without bits.
  void PlaceIndexedBitmap(const uint8_t* bits, const BITMAPINFOHEADER* header, const ImageBox& box);
  // Places a JPEG; `plane` holds the pixels' opacities and is empty for an opaque image.
  void PlaceJpeg(std::span<const uint8_t> jpeg, std::span<const uint8_t> plane, const ImageBox& box);

  // The layer of later objects; empty for none. Carries over to later pages.
  void SetCurrentLayer(std::u16string name) { currentLayer_ = std::move(name); }

  // Adds a comment to the open page.
  void WriteShxComment(std::u16string_view text, const CommentRectangle& rect, uint32_t flags);

  // Opens a link to `target`, replacing an open one. An empty target ends the link and writes its annotation
  // around everything drawn since.
  void SetLinkTarget(std::u16string target);

 private:
  static uint8_t LineCode(uint32_t code) { return code < 3 ? static_cast<uint8_t>(code) : 0; }

  class Attempt;

  bool WriteBlock(const void* data, size_t size) override;
  void ResetPageState();
  void ClosePage();
  // Closes an unfinished page and discards its content and images.
  void DropPage();
  void CommitPath(FillType fill, bool stroke);
  void ClosePath();
  // Whether an image with that matrix is visible: on an open page, with a width and a height.
  [[nodiscard]] bool Shows(const Matrix& matrix) const;
  // `makeImage` returns the object number of an image that will belong to the page, 0 for none.
  template <typename MakeImage>
  void PlaceImage(const ImageBox& box, MakeImage makeImage);
  // Returns the group of the current layer on the open page, creating it if needed; 0 for none.
  [[nodiscard]] uint32_t CurrentGroup();
  void WriteTextRun(std::u16string_view units, const engine::Font& font, const TextShapeData& shape,
                    const Matrix& matrix, TextVisibility visibility);
  void ExtendLinkRect(const engine::Rectangle& rect);

  // Bounds of the path's points, in points of the page; nothing for a path without points.
  [[nodiscard]] std::optional<engine::Rectangle> ObjectBounds(const PathObject& object) const;
  // Bounds of an image with that matrix, in points of the page.
  [[nodiscard]] engine::Rectangle ImageBounds(const Matrix& matrix) const;
  // Bounds of a text at x, y with that extent in dots, in points of the page.
  [[nodiscard]] engine::Rectangle TextBounds(float x, float y, const engine::Rectangle& extent) const;
  // Rounds the box outward to whole points, unless bounds are exact.
  [[nodiscard]] engine::Rectangle Rounded(const engine::Rectangle& box) const;

  std::u16string portDir_;  // a temporary directory of the driver; never read
  // Destroyed from last to first: resource names, page, fonts, document, engine, file.
  OutputFile outputFile_;
  std::optional<engine::Library> library_;
  std::unique_ptr<engine::Document> document_;
  std::optional<Layers> layers_;
  FontCache fonts_;
  std::unique_ptr<engine::Page> page_;
  std::optional<PageResources> resources_;
  std::optional<PageContents> contents_;
  std::optional<ContentGenerator> content_;
  std::vector<uint32_t> pageImages_;  // of the open page; 0 for none

  // The path under construction together with the state that carries over to the next one: colours, line
  // attributes, blend mode, dashes and clip. Without points no path is open.
  PathObject path_;
  TextObject text_;  // the last one written, kept for its capacity
  uint8_t alpha_ = 255;
  Color background_{255, 255, 255};
  bool hasBackground_ = false;
  engine::Rectangle pageClipRect_{};
  std::optional<float> pageScale_;  // factor of the open page's measure
  std::u16string currentLayer_;
  std::u16string linkTarget_;  // empty: no link is open
  engine::Rectangle linkRect_{};
  float originX_ = 0;
  float originY_ = 0;
  float pointScale_ = 0.24F;
  Bounds bounds_ = Bounds::kWholePoints;
  double lineScale_ = 1;
};

// Undoes the object written since its construction, with the image and the layer group created for it, unless
// Keep is called.
class PageWriter::Attempt {
 public:
  explicit Attempt(PageWriter& writer)
      : writer_(writer),
        images_(writer.pageImages_.size()),
        groups_(writer.layers_ ? writer.layers_->Count() : 0) {
    if (writer.content_) content_.emplace(*writer.content_);
  }
  Attempt(const Attempt&) = delete;
  Attempt& operator=(const Attempt&) = delete;
  ~Attempt() {
    if (!isKept_) Undo();
  }

  void Keep() noexcept {
    if (content_) content_->Keep();
    isKept_ = true;
  }

 private:
  void Undo() noexcept;

  PageWriter& writer_;
  size_t images_;
  size_t groups_;
  std::optional<ContentGenerator::Attempt> content_;
  bool isKept_ = false;
};

}  // namespace hdi

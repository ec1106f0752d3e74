// The page writer: the one object between the replay and the engine.
//
// It owns the document and the open page, and it holds the graphic state that the command list changes step
// by step. Page objects have no current colour of their own, so the values in force are stamped on each
// object at the moment it is finished; the object's bytes go into the page's stream at once and the object is
// gone. Everything is in dots of the page's dot space. The only scaling is the matrix that FinishPage lays
// over the page: a point of the page is `pointScale` times a dot plus the origin.
//
// An operation that throws std::bad_alloc has changed nothing, in the writer or in the document; a step that
// ends the path has ended it. A font that has been embedded stays.
//
// Nothing is reported. Without a page or a path, operations do nothing.
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
#include "engine/page.h"
#include "fonts/font_cache.h"
#include "fonts/text_geometry.h"
#include "platform/files.h"
#include "platform/host_library.h"
#include "recording/command_list.h"

namespace hdi {

// How boxes in points come out.
enum class Bounds : uint8_t { kWholePoints, kExact };

// Invisible text can be searched and selected under what the host draws in its place.
enum class TextVisibility : uint8_t { kVisible, kInvisible };

// Where an image lies: its lower left corner and its size, in dots.
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
  // Closes what is still open, the output last.
  ~PageWriter() = default;

  // Opens the output: an existing file is removed first, and one that can't be removed is a failure.
  [[nodiscard]] bool OpenOutput(const std::u16string& path);
  // Makes the document, in place of one that is there; pages may begin. There is none when it throws. Up to
  // `workers` threads compress its streams beside the caller's.
  void StartDocument(std::u16string_view creator,
                     engine::Compression compression = engine::Compression::kNormal,
                     unsigned workers = engine::DefaultWorkers());
  // Saves the document into the output. A full disk is silent; any other failure of the output throws
  // std::system_error.
  void Save();

  // State setters only store. What they set counts for the next object finished and, but for the origin, from
  // page to page. Cap and join codes that the operators J and j don't know count as 0, a negative width as 1.
  void SetLineWidth(float width) { path_.attributes.lineWidth = width < 0 ? 1.0F : width; }
  void SetLineCap(uint32_t cap) { path_.attributes.lineCap = LineCode(cap); }
  void SetLineJoin(uint32_t join) { path_.attributes.lineJoin = LineCode(join); }
  // Both colours carry the blend mode of the paths that follow.
  void SetStrokeColor(Color color, BlendMode mode);
  void SetFillColor(Color color, BlendMode mode);
  // Lengths in points, as pens give them; none for a solid line.
  void SetDashArray(std::vector<float> points);
  void SetAlpha(uint8_t alpha) { alpha_ = alpha; }
  [[nodiscard]] uint8_t Alpha() const { return alpha_; }
  // Once set, the background stays for all pages that follow.
  void SetBackground(Color color);
  // Offset of the dot space on the page, in points.
  void SetOrigin(float x, float y);
  // Dots per inch, above 0. Before the first page; a dash array that has been set keeps its lengths in dots.
  void SetPointScale(int32_t dotsPerInch);
  void SetBounds(Bounds bounds) { bounds_ = bounds; }
  // The divisor that the host gives for the drawing's scale. Stored for the page's measure.
  void SetLineScale(double scale) { lineScale_ = scale; }

  // Pages. `pageNumber` counts from 1; the size is in points. What is still open is thrown away, and the clip
  // and the origin start anew.
  void BeginPage(uint32_t pageNumber, double width, double height);
  // Gives the open page its measure for that resolution, which comes with its contents.
  void SetPageScaleInfo(int32_t dotsPerInch);
  void FinishPage();

  // The path under construction. Lines and curves before the first move are dropped.
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

  // Paint the path and end it. Fill modes: 1 even-odd, 2 nonzero winding.
  void StrokePath();
  // An opaque fill in any mode but winding is closed and outlined with a line of width 0 in the stroke
  // colour.
  void FillPath(uint32_t fillMode);
  void FillAndStrokePath(uint32_t fillMode);

  // Makes the path the clip of all objects that follow on the page, in place of the one before. No path: no
  // clip.
  void MakeClipFromPath();
  // Kept and never applied: the page's own extent stands in for the first clip of a page.
  void SetPageClipRect(const engine::Rectangle& rect) { pageClipRect_ = rect; }

  // The characters that the job plots in each font. Before the first text; must outlive the last.
  void SetCharacters(const FontUsage& fontUsage) { fonts_.SetCharacters(fontUsage); }

  // Writes a text whose base line starts at x, y: each run as a text object that shows all its characters at
  // once. Advances only move the next run and size the link's area; within a run the font's own widths count.
  // The text's colour is the fill colour. A run whose font can't be had is left out.
  void WriteTextRuns(const HT_Text& text, float x, float y, const TextShapeData& shape,
                     TextVisibility visibility);

  // Places a raster of 8 bits or 1 bit a pixel in a box given in dots, under the opacity in force; what has
  // no such bit count, or no bits, is left out. In memory its palette stands right behind `header`.
  void PlaceIndexedBitmap(const uint8_t* bits, const BITMAPINFOHEADER* header, const ImageBox& box);
  // Places a JPEG with the opacities of its pixels, none for an opaque one.
  void PlaceJpeg(std::span<const uint8_t> jpeg, std::span<const uint8_t> plane, const ImageBox& box);

  // The layer that the next objects belong to; none for an empty name. Kept from page to page.
  void SetCurrentLayer(std::u16string name) { currentLayer_ = std::move(name); }

  // Lays a comment over the open page.
  void WriteShxComment(std::u16string_view text, const CommentRectangle& rect, uint32_t flags);

  // Opens a link to `target`, or takes its place when one is open; an empty target ends the link and writes
  // its annotation around what has been drawn since.
  void SetLinkTarget(std::u16string target);

 private:
  static uint8_t LineCode(uint32_t code) { return code < 3 ? static_cast<uint8_t>(code) : 0; }

  class Attempt;

  bool WriteBlock(const void* data, size_t size) override;
  void ResetPageState();
  void ClosePage();
  // Closes a page that is not finished; its content and what was made for it are gone.
  void DropPage();
  void CommitPath(FillType fill, bool stroke);
  void ClosePath();
  // Whether an image under that matrix shows: on an open page, and with a width and a height.
  [[nodiscard]] bool Shows(const Matrix& matrix) const;
  // `makeImage` gives the object number of an image that belongs to the page, 0 for none.
  template <typename MakeImage>
  void PlaceImage(const ImageBox& box, MakeImage makeImage);
  // The group of the layer in force on the open page, 0 for none; made when it is new.
  [[nodiscard]] uint32_t CurrentGroup();
  void WriteTextRun(std::u16string_view units, const engine::Font& font, const TextShapeData& shape,
                    const Matrix& matrix, TextVisibility visibility);
  void ExtendLinkRect(const engine::Rectangle& rect);

  // Bounds of a path's points, in points of the page; nothing for a path without points.
  [[nodiscard]] std::optional<engine::Rectangle> ObjectBounds(const PathObject& object) const;
  // The same for an image with that matrix.
  [[nodiscard]] engine::Rectangle ImageBounds(const Matrix& matrix) const;
  // The same for a text with that extent in dots around x, y.
  [[nodiscard]] engine::Rectangle TextBounds(float x, float y, const engine::Rectangle& extent) const;
  // The box with whole sides around `box`, unless boxes are exact.
  [[nodiscard]] engine::Rectangle Rounded(const engine::Rectangle& box) const;

  std::u16string portDir_;  // a temporary directory of ours; nothing reads it
  // Destroyed from the last to the first: what names resources, the page, the fonts, the document, the
  // engine, the file.
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

  // The path under construction, and with it the state that the next one carries: colours, line attributes,
  // blend mode, dashes and clip. No path is open while it has no points.
  PathObject path_;
  TextObject text_;  // the last one written, kept for its memory
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

// Takes the object that has been written since its making away again, with the image and the layer's group
// that were made for it, unless it is to be kept.
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

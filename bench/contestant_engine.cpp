// The engine's own page objects and content generator, through its public functions.
#include <public/fpdf_edit.h>
#include <public/fpdf_save.h>
#include <public/fpdf_transformpage.h>
#include <public/fpdfview.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <vector>

#include "bench/contestant.h"
#include "bench/text_fonts.h"

namespace bench {
namespace {

struct FileWriter : FPDF_FILEWRITE {
  FILE* file = nullptr;
  static int Write(FPDF_FILEWRITE* self, const void* data, unsigned long size) {
    return fwrite(data, 1, size, static_cast<FileWriter*>(self)->file) == size ? 1 : 0;
  }
};

using FontFiles = std::vector<std::vector<char>>;

FontFiles ReadFontFiles(const TextFonts& fonts) {
  FontFiles files(fonts.Count());
  for (size_t i = 0; i < files.size(); ++i) {
    std::ifstream file(fonts.Path(i), std::ios::binary);
    files[i].assign(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

// The fonts of a document. The engine embeds whole fonts.
class DocumentFonts {
 public:
  DocumentFonts(FPDF_DOCUMENT document, const FontFiles& files) {
    for (const std::vector<char>& file : files) {
      fonts_.push_back(FPDFText_LoadFont(document, reinterpret_cast<const uint8_t*>(file.data()),
                                         static_cast<uint32_t>(file.size()), FPDF_FONT_TRUETYPE, 1));
      if (fonts_.back() == nullptr) throw std::runtime_error("the engine rejects a font");
    }
  }
  DocumentFonts(const DocumentFonts&) = delete;
  DocumentFonts& operator=(const DocumentFonts&) = delete;
  ~DocumentFonts() {
    for (FPDF_FONT font : fonts_) FPDFFont_Close(font);
  }
  [[nodiscard]] FPDF_FONT operator[](size_t index) const { return fonts_[index]; }

 private:
  std::vector<FPDF_FONT> fonts_;
};

// Inserts the objects of one page.
class PageFiller {
 public:
  // The arguments must outlive the filler.
  PageFiller(FPDF_DOCUMENT document, FPDF_PAGE page, const Scene& scene, const DocumentFonts& fonts)
      : document_(document), page_(page), scene_(scene), fonts_(fonts) {}

  void Fill(size_t page) {
    switch (scene_.kind) {
      case Kind::kStrokes:
        for (size_t i = 0; i < scene_.ShapeCount(); ++i) InsertStroke(NewPath(scene_.Shape(i)));
        break;
      case Kind::kCurves:
        for (size_t i = 0; i < scene_.ShapeCount(); ++i) InsertStroke(NewCurves(scene_.Shape(i)));
        break;
      case Kind::kClipped:
        break;  // excluded by CanPlot
      case Kind::kTexts:
        for (const Text& text : scene_.texts) InsertText(text);
        break;
      case Kind::kMixed:
        for (const Step& step : scene_.pages[page]) InsertStep(step);
        break;
    }
  }

 private:
  [[nodiscard]] static float X(const Point& point) { return static_cast<float>(point.x); }
  [[nodiscard]] float Y(const Point& point) const {
    return static_cast<float>(scene_.sheet.areaHeight - point.y);
  }

  void AddLines(FPDF_PAGEOBJECT path, std::span<const Point> points) const {
    for (const Point& point : points) FPDFPath_LineTo(path, X(point), Y(point));
  }

  [[nodiscard]] FPDF_PAGEOBJECT NewPath(std::span<const Point> shape) const {
    FPDF_PAGEOBJECT path = FPDFPageObj_CreateNewPath(X(shape[0]), Y(shape[0]));
    AddLines(path, shape.subspan(1));
    return path;
  }

  [[nodiscard]] FPDF_PAGEOBJECT NewCurves(std::span<const Point> p) const {
    FPDF_PAGEOBJECT path = FPDFPageObj_CreateNewPath(X(p[0]), Y(p[0]));
    for (size_t i = 1; i + 2 < p.size(); i += 3) {
      FPDFPath_BezierTo(path, X(p[i]), Y(p[i]), X(p[i + 1]), Y(p[i + 1]), X(p[i + 2]), Y(p[i + 2]));
    }
    return path;
  }

  void InsertStroke(FPDF_PAGEOBJECT path) {
    FPDFPageObj_SetStrokeColor(path, pen_.color.red, pen_.color.green, pen_.color.blue, 255);
    FPDFPageObj_SetStrokeWidth(path, static_cast<float>(pen_.width));
    if (pen_.isRound) {
      FPDFPageObj_SetLineCap(path, FPDF_LINECAP_ROUND);
      FPDFPageObj_SetLineJoin(path, FPDF_LINEJOIN_ROUND);
    }
    if (!pen_.dashes.empty()) {
      const std::vector<float> dashes(pen_.dashes.begin(), pen_.dashes.end());
      FPDFPageObj_SetDashArray(path, dashes.data(), dashes.size(), 0);
    }
    FPDFPath_SetDrawMode(path, FPDF_FILLMODE_NONE, 1);
    FPDFPage_InsertObject(page_, path);
  }

  void InsertPolygons(const Polygons& polygons) {
    const std::span<const Point> points = std::span(scene_.points).subspan(polygons.first);
    FPDF_PAGEOBJECT path = NewPath(points.first(polygons.counts[0]));
    FPDFPath_Close(path);
    size_t first = polygons.counts[0];
    for (size_t i = 1; i < polygons.counts.size(); ++i) {
      FPDFPath_MoveTo(path, X(points[first]), Y(points[first]));
      AddLines(path, points.subspan(first + 1, polygons.counts[i] - 1));
      FPDFPath_Close(path);
      first += polygons.counts[i];
    }
    FPDFPageObj_SetFillColor(path, brush_.red, brush_.green, brush_.blue, 255);
    FPDFPath_SetDrawMode(path, FPDF_FILLMODE_ALTERNATE, 0);
    FPDFPage_InsertObject(page_, path);
  }

  // The engine uses the font's own advance widths.
  void InsertText(const Text& text) {
    FPDF_PAGEOBJECT object =
        FPDFPageObj_CreateTextObj(document_, fonts_[text.font], static_cast<float>(text.height));
    FPDFText_SetText(object, reinterpret_cast<FPDF_WIDESTRING>(text.units.c_str()));
    FPDFPageObj_SetFillColor(object, text.color.red, text.color.green, text.color.blue, 255);
    const Point way = DirectionOf(text);
    FPDFPageObj_Transform(object, way.x, -way.y, way.y, way.x, text.start.x,
                          scene_.sheet.areaHeight - text.start.y);
    FPDFPage_InsertObject(page_, object);
  }

  void InsertStep(const Step& step) {
    switch (step.kind) {
      case Step::Kind::kPen:
        pen_ = scene_.pens[step.index];
        break;
      case Step::Kind::kBrush:
        brush_ = scene_.brushes[step.index];
        break;
      case Step::Kind::kPolyline:
        InsertStroke(NewPath(scene_.Points(step)));
        break;
      case Step::Kind::kCurves:
        InsertStroke(NewCurves(scene_.Points(step)));
        break;
      case Step::Kind::kPolygons:
        InsertPolygons(scene_.polygons[step.index]);
        break;
      case Step::Kind::kText:
        InsertText(scene_.texts[step.index]);
        break;
    }
  }

  FPDF_DOCUMENT document_;
  FPDF_PAGE page_;
  const Scene& scene_;
  const DocumentFonts& fonts_;
  Pen pen_{kLineWidth, {}, false, {}};
  Color brush_{};
};

void AddPages(FPDF_DOCUMENT document, const Scene& scene, const FontFiles& fontFiles) {
  const DocumentFonts fonts(document, fontFiles);
  for (size_t i = 0; i < scene.PageCount(); ++i) {
    FPDF_PAGE page =
        FPDFPage_New(document, static_cast<int>(i), scene.sheet.WidthPoints(), scene.sheet.HeightPoints());
    PageFiller(document, page, scene, fonts).Fill(i);
    FPDFPage_GenerateContent(page);
    const auto scale = static_cast<float>(kPointsPerDot);
    const FS_MATRIX matrix = {scale, 0, 0, scale, 0, 0};
    FPDFPage_TransFormWithClip(page, &matrix, nullptr);
    FPDF_ClosePage(page);
  }
}

}  // namespace

// The public functions cannot set the clip of a page object.
bool CanPlot(const Scene& scene) { return scene.kind != Kind::kClipped; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  const FPDF_LIBRARY_CONFIG config = {2, nullptr, nullptr, 0, nullptr, FPDF_RENDERERTYPE_AGG};
  FPDF_InitLibraryWithConfig(&config);
  const TextFonts fonts(scene);
  const FontFiles fontFiles = ReadFontFiles(fonts);
  start();
  FPDF_DOCUMENT document = FPDF_CreateNewDocument();
  AddPages(document, scene, fontFiles);

  FileWriter writer;
  writer.version = 1;
  writer.WriteBlock = &FileWriter::Write;
  writer.file = std::fopen(path.c_str(), "wb");
  if (writer.file == nullptr) throw std::runtime_error("cannot write " + path);
  const bool saved = FPDF_SaveAsCopy(document, &writer, 0) != 0;
  const bool closed = std::fclose(writer.file) == 0;
  FPDF_CloseDocument(document);
  FPDF_DestroyLibrary();
  if (!saved || !closed) throw std::runtime_error("cannot write " + path);
}

}  // namespace bench

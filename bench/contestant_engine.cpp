// The engine's own page objects and content generator, through its public functions.
#include <public/fpdf_edit.h>
#include <public/fpdf_save.h>
#include <public/fpdf_transformpage.h>
#include <public/fpdfview.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
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

float X(const Point& point) { return static_cast<float>(point.x); }
float Y(const Point& point) { return static_cast<float>(kAreaHeight - point.y); }

FPDF_PAGEOBJECT NewShape(const Scene& scene, size_t index) {
  const auto shape = scene.Shape(index);
  FPDF_PAGEOBJECT path = FPDFPageObj_CreateNewPath(X(shape[0]), Y(shape[0]));
  if (scene.kind == Kind::kCurves) {
    FPDFPath_BezierTo(path, X(shape[1]), Y(shape[1]), X(shape[2]), Y(shape[2]), X(shape[3]), Y(shape[3]));
  } else {
    for (const Point& point : shape.subspan(1)) FPDFPath_LineTo(path, X(point), Y(point));
  }
  FPDFPageObj_SetStrokeColor(path, 0, 0, 0, 255);
  FPDFPageObj_SetStrokeWidth(path, static_cast<float>(kLineWidth));
  FPDFPath_SetDrawMode(path, FPDF_FILLMODE_NONE, 1);
  return path;
}

using FontFiles = std::array<std::vector<char>, kFontFamilies.size()>;

FontFiles ReadFontFiles(const TextFonts& fonts) {
  FontFiles files;
  for (size_t i = 0; !fonts.IsEmpty() && i < files.size(); ++i) {
    std::ifstream file(fonts.Path(i), std::ios::binary);
    files[i].assign(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

// The engine embeds a font whole and sets a text in the font's own widths.
void InsertTexts(FPDF_DOCUMENT document, FPDF_PAGE page, const Scene& scene, const FontFiles& files) {
  std::array<FPDF_FONT, kFontFamilies.size()> fonts{};
  for (size_t i = 0; i < fonts.size(); ++i) {
    fonts[i] = FPDFText_LoadFont(document, reinterpret_cast<const uint8_t*>(files[i].data()),
                                 static_cast<uint32_t>(files[i].size()), FPDF_FONT_TRUETYPE, 1);
    if (fonts[i] == nullptr) throw std::runtime_error("the engine refuses a font");
  }
  for (const Text& text : scene.texts) {
    FPDF_PAGEOBJECT object =
        FPDFPageObj_CreateTextObj(document, fonts[text.font], static_cast<float>(text.height));
    FPDFText_SetText(object, reinterpret_cast<FPDF_WIDESTRING>(text.units.c_str()));
    FPDFPageObj_SetFillColor(object, text.color.red, text.color.green, text.color.blue, 255);
    const Point way = DirectionOf(text);
    FPDFPageObj_Transform(object, way.x, -way.y, way.y, way.x, text.start.x, kAreaHeight - text.start.y);
    FPDFPage_InsertObject(page, object);
  }
  for (FPDF_FONT font : fonts) FPDFFont_Close(font);
}

}  // namespace

// The public functions give a page object no clip.
bool CanPlot(const Scene& scene) { return scene.kind != Kind::kClipped; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  const FPDF_LIBRARY_CONFIG config = {2, nullptr, nullptr, 0, nullptr, FPDF_RENDERERTYPE_AGG};
  FPDF_InitLibraryWithConfig(&config);
  const TextFonts fonts(scene);
  const FontFiles fontFiles = ReadFontFiles(fonts);
  start();
  FPDF_DOCUMENT document = FPDF_CreateNewDocument();
  FPDF_PAGE page = FPDFPage_New(document, 0, kSheetWidthPoints, kSheetHeightPoints);
  if (scene.kind == Kind::kTexts) {
    InsertTexts(document, page, scene, fontFiles);
  } else {
    for (size_t i = 0; i < scene.ShapeCount(); ++i) FPDFPage_InsertObject(page, NewShape(scene, i));
  }
  FPDFPage_GenerateContent(page);
  const auto scale = static_cast<float>(kPointsPerDot);
  const FS_MATRIX matrix = {scale, 0, 0, scale, 0, 0};
  FPDFPage_TransFormWithClip(page, &matrix, nullptr);
  FPDF_ClosePage(page);

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

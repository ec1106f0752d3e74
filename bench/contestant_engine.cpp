// The engine's own page objects and content generator, through its public functions.
#include <public/fpdf_edit.h>
#include <public/fpdf_save.h>
#include <public/fpdf_transformpage.h>
#include <public/fpdfview.h>

#include <cstdio>
#include <stdexcept>

#include "bench/contestant.h"

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

}  // namespace

// The public functions give a page object no clip.
bool CanPlot(const Scene& scene) { return scene.kind != Kind::kClipped; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  const FPDF_LIBRARY_CONFIG config = {2, nullptr, nullptr, 0, nullptr, FPDF_RENDERERTYPE_AGG};
  FPDF_InitLibraryWithConfig(&config);
  start();
  FPDF_DOCUMENT document = FPDF_CreateNewDocument();
  FPDF_PAGE page = FPDFPage_New(document, 0, kSheetWidthPoints, kSheetHeightPoints);
  for (size_t i = 0; i < scene.ShapeCount(); ++i) FPDFPage_InsertObject(page, NewShape(scene, i));
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

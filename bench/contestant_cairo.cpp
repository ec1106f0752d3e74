// cairo's PDF surface.
#include <cairo-pdf.h>

#include <memory>
#include <stdexcept>

#include "bench/contestant.h"

namespace bench {
namespace {

void AddShape(cairo_t* cairo, std::span<const Point> shape) {
  cairo_move_to(cairo, shape[0].x, shape[0].y);
  for (const Point& point : shape.subspan(1)) cairo_line_to(cairo, point.x, point.y);
}

void Strokes(cairo_t* cairo, const Scene& scene) {
  for (size_t i = 0; i < scene.ShapeCount(); ++i) {
    AddShape(cairo, scene.Shape(i));
    cairo_stroke(cairo);
  }
}

void Curves(cairo_t* cairo, const Scene& scene) {
  for (size_t i = 0; i < scene.ShapeCount(); ++i) {
    const auto p = scene.Shape(i);
    cairo_move_to(cairo, p[0].x, p[0].y);
    cairo_curve_to(cairo, p[1].x, p[1].y, p[2].x, p[2].y, p[3].x, p[3].y);
    cairo_stroke(cairo);
  }
}

void Clipped(cairo_t* cairo, const Scene& scene) {
  size_t shape = 0;
  for (const Clip& clip : scene.clips) {
    cairo_save(cairo);
    AddShape(cairo, clip.corners);
    cairo_close_path(cairo);
    cairo_clip(cairo);
    cairo_set_source_rgb(cairo, clip.color.red / 255.0, clip.color.green / 255.0, clip.color.blue / 255.0);
    for (size_t i = 0; i < scene.shapesPerClip; ++i) {
      AddShape(cairo, scene.Shape(shape++));
      cairo_fill(cairo);
    }
    cairo_restore(cairo);
  }
}

}  // namespace

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  start();
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_pdf_surface_create(path.c_str(), kSheetWidthPoints, kSheetHeightPoints), &cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface.get()), &cairo_destroy);
  cairo_translate(cairo.get(), 0, kSheetHeightPoints - kAreaHeight * kPointsPerDot);
  cairo_scale(cairo.get(), kPointsPerDot, kPointsPerDot);
  cairo_set_line_width(cairo.get(), kLineWidth);
  switch (scene.kind) {
    case Kind::kStrokes:
      Strokes(cairo.get(), scene);
      break;
    case Kind::kCurves:
      Curves(cairo.get(), scene);
      break;
    case Kind::kClipped:
      Clipped(cairo.get(), scene);
      break;
  }
  cairo_show_page(cairo.get());
  cairo_surface_finish(surface.get());
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(cairo_status_to_string(cairo_surface_status(surface.get())));
  }
}

}  // namespace bench

// cairo's PDF surface.
#include <cairo-ft.h>
#include <cairo-pdf.h>

#include <memory>
#include <stdexcept>
#include <vector>

#include "bench/contestant.h"
#include "bench/text_fonts.h"

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

// The faces and what else a program has before it draws texts.
class TextPainter {
 public:
  explicit TextPainter(const Scene& scene) : scene_(scene), fonts_(scene) {
    if (fonts_.IsEmpty()) return;
    for (size_t i = 0; i < kFontFamilies.size(); ++i) {
      faces_.emplace_back(cairo_ft_font_face_create_for_ft_face(fonts_.Face(i), FT_LOAD_NO_HINTING),
                          &cairo_font_face_destroy);
    }
    for (const Text& text : scene.texts) bytes_.push_back(ToUtf8(text.units));
  }

  // The operation that keeps the characters beside their glyphs.
  void Texts(cairo_t* cairo) {
    const std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
        cairo_font_options_create(), &cairo_font_options_destroy);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options.get());
    for (size_t i = 0; i < scene_.texts.size(); ++i) {
      const Text& text = scene_.texts[i];
      cairo_set_source_rgb(cairo, text.color.red / 255.0, text.color.green / 255.0, text.color.blue / 255.0);
      cairo_set_font_face(cairo, faces_[text.font].get());
      SetGlyphs(text, fonts_.Advances(i));
      const Point way = DirectionOf(text);
      const double x = way.x * text.height;
      const double y = way.y * text.height;
      const cairo_matrix_t matrix = {x, y, -y, x, 0, 0};
      cairo_set_font_matrix(cairo, &matrix);
      const auto count = static_cast<int>(glyphs_.size());
      cairo_show_text_glyphs(cairo, bytes_[i].data(), static_cast<int>(bytes_[i].size()), glyphs_.data(),
                             count, clusters_.data(), count, {});
    }
  }

 private:
  using FontFace = std::unique_ptr<cairo_font_face_t, decltype(&cairo_font_face_destroy)>;

  void SetGlyphs(const Text& text, const std::vector<double>& advances) {
    const Point way = DirectionOf(text);
    Point at = text.start;
    glyphs_.clear();
    clusters_.clear();
    for (size_t i = 0; i < text.units.size(); ++i) {
      glyphs_.push_back({FT_Get_Char_Index(fonts_.Face(text.font), text.units[i]), at.x, at.y});
      clusters_.push_back({Utf8Length(text.units[i]), 1});
      at.x += way.x * advances[i];
      at.y += way.y * advances[i];
    }
  }

  const Scene& scene_;
  TextFonts fonts_;
  std::vector<FontFace> faces_;
  std::vector<std::string> bytes_;  // of each text
  std::vector<cairo_glyph_t> glyphs_;
  std::vector<cairo_text_cluster_t> clusters_;
};

}  // namespace

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  TextPainter textPainter(scene);
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
    case Kind::kTexts:
      textPainter.Texts(cairo.get());
      break;
  }
  cairo_show_page(cairo.get());
  cairo_surface_finish(surface.get());
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(cairo_status_to_string(cairo_surface_status(surface.get())));
  }
}

}  // namespace bench

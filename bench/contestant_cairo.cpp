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

void SetSource(cairo_t* cairo, Color color) {
  cairo_set_source_rgb(cairo, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

void AddShape(cairo_t* cairo, std::span<const Point> shape) {
  cairo_move_to(cairo, shape[0].x, shape[0].y);
  for (const Point& point : shape.subspan(1)) cairo_line_to(cairo, point.x, point.y);
}

void AddCurves(cairo_t* cairo, std::span<const Point> p) {
  cairo_move_to(cairo, p[0].x, p[0].y);
  for (size_t i = 1; i + 2 < p.size(); i += 3) {
    cairo_curve_to(cairo, p[i].x, p[i].y, p[i + 1].x, p[i + 1].y, p[i + 2].x, p[i + 2].y);
  }
}

void Strokes(cairo_t* cairo, const Scene& scene) {
  for (size_t i = 0; i < scene.ShapeCount(); ++i) {
    AddShape(cairo, scene.Shape(i));
    cairo_stroke(cairo);
  }
}

void Curves(cairo_t* cairo, const Scene& scene) {
  for (size_t i = 0; i < scene.ShapeCount(); ++i) {
    AddCurves(cairo, scene.Shape(i));
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
    SetSource(cairo, clip.color);
    for (size_t i = 0; i < scene.shapesPerClip; ++i) {
      AddShape(cairo, scene.Shape(shape++));
      cairo_fill(cairo);
    }
    cairo_restore(cairo);
  }
}

// The faces and the rest that a program sets up before it draws texts.
class TextPainter {
 public:
  explicit TextPainter(const Scene& scene) : scene_(scene), fonts_(scene) {
    for (size_t i = 0; i < fonts_.Count(); ++i) {
      faces_.emplace_back(cairo_ft_font_face_create_for_ft_face(fonts_.Face(i), FT_LOAD_NO_HINTING),
                          &cairo_font_face_destroy);
    }
    for (const Text& text : scene.texts) bytes_.push_back(ToUtf8(text.units));
  }

  // Options for all texts of a page.
  static void SetOptions(cairo_t* cairo) {
    const std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
        cairo_font_options_create(), &cairo_font_options_destroy);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(cairo, options.get());
  }

  // The call that keeps the text along with the glyphs.
  void ShowText(cairo_t* cairo, size_t index) {
    const Text& text = scene_.texts[index];
    SetSource(cairo, text.color);
    cairo_set_font_face(cairo, faces_[text.font].get());
    SetGlyphs(text, fonts_.Advances(index));
    const Point way = DirectionOf(text);
    const double x = way.x * text.height;
    const double y = way.y * text.height;
    const cairo_matrix_t matrix = {x, y, -y, x, 0, 0};
    cairo_set_font_matrix(cairo, &matrix);
    const std::string& bytes = bytes_[index];
    const auto count = static_cast<int>(glyphs_.size());
    cairo_show_text_glyphs(cairo, bytes.data(), static_cast<int>(bytes.size()), glyphs_.data(), count,
                           clusters_.data(), count, {});
  }

  void Texts(cairo_t* cairo) {
    SetOptions(cairo);
    for (size_t i = 0; i < scene_.texts.size(); ++i) ShowText(cairo, i);
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

// Draws the steps of one page.
class StepPainter {
 public:
  StepPainter(cairo_t* cairo, const Scene& scene, TextPainter& textPainter)
      : cairo_(cairo), scene_(scene), textPainter_(textPainter) {
    cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_EVEN_ODD);
    TextPainter::SetOptions(cairo_);
  }

  void Paint(const Step& step) {
    switch (step.kind) {
      case Step::Kind::kPen:
        SetPen(scene_.pens[step.index]);
        break;
      case Step::Kind::kBrush:
        fillColor_ = scene_.brushes[step.index];
        break;
      case Step::Kind::kPolyline:
        AddShape(cairo_, scene_.Points(step));
        Stroke();
        break;
      case Step::Kind::kCurves:
        AddCurves(cairo_, scene_.Points(step));
        Stroke();
        break;
      case Step::Kind::kPolygons:
        Fill(scene_.polygons[step.index]);
        break;
      case Step::Kind::kText:
        textPainter_.ShowText(cairo_, step.index);
        break;
    }
  }

 private:
  void SetPen(const Pen& pen) {
    strokeColor_ = pen.color;
    cairo_set_line_width(cairo_, pen.width);
    cairo_set_line_cap(cairo_, pen.isRound ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cairo_, pen.isRound ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
    const std::vector<double> dashes(pen.dashes.begin(), pen.dashes.end());
    cairo_set_dash(cairo_, dashes.data(), static_cast<int>(dashes.size()), 0);
  }

  void Stroke() {
    SetSource(cairo_, strokeColor_);
    cairo_stroke(cairo_);
  }

  void Fill(const Polygons& polygons) {
    size_t first = polygons.first;
    for (const uint32_t count : polygons.counts) {
      AddShape(cairo_, {&scene_.points[first], count});
      cairo_close_path(cairo_);
      first += count;
    }
    SetSource(cairo_, fillColor_);
    cairo_fill(cairo_);
  }

  cairo_t* cairo_;
  const Scene& scene_;
  TextPainter& textPainter_;
  Color strokeColor_{};
  Color fillColor_{};
};

void PaintPage(cairo_t* cairo, const Scene& scene, size_t page, TextPainter& textPainter) {
  cairo_save(cairo);
  cairo_translate(cairo, 0, scene.sheet.TopMarginPoints());
  cairo_scale(cairo, kPointsPerDot, kPointsPerDot);
  cairo_set_line_width(cairo, kLineWidth);
  switch (scene.kind) {
    case Kind::kStrokes:
      Strokes(cairo, scene);
      break;
    case Kind::kCurves:
      Curves(cairo, scene);
      break;
    case Kind::kClipped:
      Clipped(cairo, scene);
      break;
    case Kind::kTexts:
      textPainter.Texts(cairo);
      break;
    case Kind::kMixed: {
      StepPainter painter(cairo, scene, textPainter);
      for (const Step& step : scene.pages[page]) painter.Paint(step);
      break;
    }
  }
  cairo_restore(cairo);
  cairo_show_page(cairo);
}

}  // namespace

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  TextPainter textPainter(scene);
  start();
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_pdf_surface_create(path.c_str(), scene.sheet.WidthPoints(), scene.sheet.HeightPoints()),
      &cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cairo(cairo_create(surface.get()), &cairo_destroy);
  for (size_t page = 0; page < scene.PageCount(); ++page) PaintPage(cairo.get(), scene, page, textPainter);
  cairo_surface_finish(surface.get());
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(cairo_status_to_string(cairo_surface_status(surface.get())));
  }
}

}  // namespace bench

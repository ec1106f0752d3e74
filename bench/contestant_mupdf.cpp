// MuPDF's PDF device for page contents, with compressed streams.
extern "C" {
#include <mupdf/fitz.h>
#include <mupdf/pdf.h>
}

#include <span>
#include <stdexcept>
#include <vector>

#include "bench/contestant.h"
#include "bench/text_fonts.h"

namespace bench {
namespace {

// The fonts of a scene's families.
using Fonts = std::vector<fz_font*>;

struct Rgb {
  explicit Rgb(Color color)
      : channels{static_cast<float>(color.red) / 255, static_cast<float>(color.green) / 255,
                 static_cast<float>(color.blue) / 255} {}
  float channels[3];
};

// Draws a page on a device. MuPDF reports errors by longjmp, so no object here may need a destructor.
class Painter {
 public:
  Painter(fz_context* context, fz_device* device, const Scene& scene, const TextFonts& textFonts,
          const Fonts& fonts)
      : context_(context),
        device_(device),
        scene_(scene),
        textFonts_(textFonts),
        fonts_(fonts),
        matrix_{static_cast<float>(kPointsPerDot), 0, 0,
                static_cast<float>(kPointsPerDot), 0, static_cast<float>(scene.sheet.TopMarginPoints())},
        stroke_(fz_new_stroke_state(context)),
        space_(fz_device_rgb(context)) {
    stroke_->linewidth = static_cast<float>(kLineWidth);
  }

  void Page(size_t page) {
    switch (scene_.kind) {
      case Kind::kStrokes:
        for (size_t i = 0; i < scene_.ShapeCount(); ++i) Stroke(NewPath(scene_.Shape(i)));
        break;
      case Kind::kCurves:
        for (size_t i = 0; i < scene_.ShapeCount(); ++i) Stroke(NewCurves(scene_.Shape(i)));
        break;
      case Kind::kClipped:
        Clipped();
        break;
      case Kind::kTexts:
        for (size_t i = 0; i < scene_.texts.size(); ++i) FillText(i);
        break;
      case Kind::kMixed:
        for (const Step& step : scene_.pages[page]) PaintStep(step);
        break;
    }
    fz_drop_stroke_state(context_, stroke_);
  }

 private:
  static float X(const Point& point) { return static_cast<float>(point.x); }
  static float Y(const Point& point) { return static_cast<float>(point.y); }

  void AddShape(fz_path* path, std::span<const Point> shape) {
    fz_moveto(context_, path, X(shape[0]), Y(shape[0]));
    for (const Point& point : shape.subspan(1)) fz_lineto(context_, path, X(point), Y(point));
  }

  fz_path* NewPath(std::span<const Point> shape) {
    fz_path* path = fz_new_path(context_);
    AddShape(path, shape);
    return path;
  }

  fz_path* NewCurves(std::span<const Point> p) {
    fz_path* path = fz_new_path(context_);
    fz_moveto(context_, path, X(p[0]), Y(p[0]));
    for (size_t i = 1; i + 2 < p.size(); i += 3) {
      fz_curveto(context_, path, X(p[i]), Y(p[i]), X(p[i + 1]), Y(p[i + 1]), X(p[i + 2]), Y(p[i + 2]));
    }
    return path;
  }

  // These two take ownership of the path.
  void Stroke(fz_path* path) {
    fz_stroke_path(context_, device_, path, stroke_, matrix_, space_, strokeColor_.channels, 1,
                   fz_default_color_params);
    fz_drop_path(context_, path);
  }

  void Fill(fz_path* path, bool evenOdd, const Rgb& color) {
    fz_fill_path(context_, device_, path, evenOdd ? 1 : 0, matrix_, space_, color.channels, 1,
                 fz_default_color_params);
    fz_drop_path(context_, path);
  }

  void Clipped() {
    size_t shape = 0;
    for (const Clip& clip : scene_.clips) {
      fz_path* outline = NewPath(clip.corners);
      fz_closepath(context_, outline);
      fz_clip_path(context_, device_, outline, 0, matrix_, fz_infinite_rect);
      fz_drop_path(context_, outline);
      const Rgb color(clip.color);
      for (size_t i = 0; i < scene_.shapesPerClip; ++i) Fill(NewPath(scene_.Shape(shape++)), false, color);
      fz_pop_clip(context_, device_);
    }
  }

  fz_text* NewText(size_t index) {
    const Text& text = scene_.texts[index];
    const Point way = DirectionOf(text);
    const auto x = static_cast<float>(text.height * way.x);
    const auto y = static_cast<float>(text.height * way.y);
    fz_font* font = fonts_[text.font];
    const double* advance = textFonts_.Advances(index).data();
    Point at = text.start;
    fz_text* made = fz_new_text(context_);
    for (const char16_t unit : text.units) {
      const fz_matrix matrix = {x, y, y, -x, static_cast<float>(at.x), static_cast<float>(at.y)};
      fz_show_glyph(context_, made, font, matrix, fz_encode_character(context_, font, unit), unit, 0, 0,
                    FZ_BIDI_LTR, FZ_LANG_UNSET);
      at.x += way.x * *advance;
      at.y += way.y * *advance;
      ++advance;
    }
    return made;
  }

  void FillText(size_t index) {
    const Rgb color(scene_.texts[index].color);
    fz_text* text = NewText(index);
    fz_fill_text(context_, device_, text, matrix_, space_, color.channels, 1, fz_default_color_params);
    fz_drop_text(context_, text);
  }

  void SetPen(const Pen& pen) {
    fz_drop_stroke_state(context_, stroke_);
    stroke_ = fz_new_stroke_state_with_dash_len(context_, static_cast<int>(pen.dashes.size()));
    stroke_->linewidth = static_cast<float>(pen.width);
    stroke_->start_cap = stroke_->dash_cap = stroke_->end_cap =
        pen.isRound ? FZ_LINECAP_ROUND : FZ_LINECAP_BUTT;
    stroke_->linejoin = pen.isRound ? FZ_LINEJOIN_ROUND : FZ_LINEJOIN_MITER;
    stroke_->dash_len = static_cast<int>(pen.dashes.size());
    for (size_t i = 0; i < pen.dashes.size(); ++i) stroke_->dash_list[i] = static_cast<float>(pen.dashes[i]);
    strokeColor_ = Rgb(pen.color);
  }

  void FillPolygons(const Polygons& polygons) {
    fz_path* path = fz_new_path(context_);
    size_t first = polygons.first;
    for (const uint32_t count : polygons.counts) {
      AddShape(path, {&scene_.points[first], count});
      fz_closepath(context_, path);
      first += count;
    }
    Fill(path, true, fillColor_);
  }

  void PaintStep(const Step& step) {
    switch (step.kind) {
      case Step::Kind::kPen:
        SetPen(scene_.pens[step.index]);
        break;
      case Step::Kind::kBrush:
        fillColor_ = Rgb(scene_.brushes[step.index]);
        break;
      case Step::Kind::kPolyline:
        Stroke(NewPath(scene_.Points(step)));
        break;
      case Step::Kind::kCurves:
        Stroke(NewCurves(scene_.Points(step)));
        break;
      case Step::Kind::kPolygons:
        FillPolygons(scene_.polygons[step.index]);
        break;
      case Step::Kind::kText:
        FillText(step.index);
        break;
    }
  }

  fz_context* context_;
  fz_device* device_;
  const Scene& scene_;
  const TextFonts& textFonts_;
  const Fonts& fonts_;
  const fz_matrix matrix_;  // device space: points, Y down
  fz_stroke_state* stroke_;
  fz_colorspace* space_;
  Rgb strokeColor_{Color{}};
  Rgb fillColor_{Color{}};
};

// `fonts` has an element per family.
void OpenFonts(fz_context* context, const TextFonts& textFonts, Fonts& fonts) {
  for (size_t i = 0; i < fonts.size(); ++i) {
    fonts[i] = fz_new_font_from_file(context, nullptr, textFonts.Path(i).c_str(), 0, 0);
  }
}

void AddPage(fz_context* context, pdf_document* document, const Scene& scene, size_t index,
             const TextFonts& textFonts, const Fonts& fonts) {
  const fz_rect sheet = {0, 0, static_cast<float>(scene.sheet.WidthPoints()),
                         static_cast<float>(scene.sheet.HeightPoints())};
  pdf_obj* resources = nullptr;
  fz_buffer* contents = nullptr;
  fz_device* device = pdf_page_write(context, document, sheet, &resources, &contents);
  Painter(context, device, scene, textFonts, fonts).Page(index);
  fz_close_device(context, device);
  fz_drop_device(context, device);

  pdf_obj* page = pdf_add_page(context, document, sheet, 0, resources, contents);
  pdf_insert_page(context, document, -1, page);
  pdf_drop_obj(context, page);
  pdf_drop_obj(context, resources);
  fz_drop_buffer(context, contents);
}

void WriteDocument(fz_context* context, const Scene& scene, const TextFonts& textFonts, const Fonts& fonts,
                   const char* path) {
  pdf_document* document = pdf_create_document(context);
  for (size_t i = 0; i < scene.PageCount(); ++i) AddPage(context, document, scene, i, textFonts, fonts);
#if FZ_VERSION_MAJOR > 1 || FZ_VERSION_MINOR >= 24
  pdf_subset_fonts(context, document, 0, nullptr);  // older releases embed whole fonts
#endif
  pdf_write_options options = pdf_default_write_options;
  options.do_compress = 1;
  options.do_compress_fonts = 1;
  pdf_save_document(context, document, path, &options);
  pdf_drop_document(context, document);
}

// Returns an error message, empty on success.
std::string TryPlot(fz_context* context, const Scene& scene, const TextFonts& textFonts, Fonts& fonts,
                    const std::string& path, const std::function<void()>& start) {
  fz_try(context) {
    OpenFonts(context, textFonts, fonts);
    start();
    WriteDocument(context, scene, textFonts, fonts, path.c_str());
  }
  fz_catch(context) return fz_caught_message(context);
  return {};
}

}  // namespace

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  fz_context* context = fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT);
  if (context == nullptr) throw std::runtime_error("no context");
  const TextFonts textFonts(scene);
  Fonts fonts(textFonts.Count());
  const std::string message = TryPlot(context, scene, textFonts, fonts, path, start);
  for (fz_font* font : fonts) fz_drop_font(context, font);
  fz_drop_context(context);
  if (!message.empty()) throw std::runtime_error(message);
}

}  // namespace bench

// MuPDF's PDF writer: a page's device that writes a content stream, saved with compressed streams.
extern "C" {
#include <mupdf/fitz.h>
#include <mupdf/pdf.h>
}

#include <array>
#include <stdexcept>

#include "bench/contestant.h"
#include "bench/text_fonts.h"

namespace bench {
namespace {

// The fonts of a scene of texts, as MuPDF opens them; none for another scene.
using Fonts = std::array<fz_font*, kFontFamilies.size()>;

// Draws on a device. MuPDF reports errors by longjmp, so nothing here may need a destructor.
class Painter {
 public:
  Painter(fz_context* context, fz_device* device, const Scene& scene, const TextFonts& textFonts,
          const Fonts& fonts)
      : context_(context),
        device_(device),
        scene_(scene),
        textFonts_(textFonts),
        fonts_(fonts),
        stroke_(fz_new_stroke_state(context)),
        space_(fz_device_rgb(context)) {
    stroke_->linewidth = static_cast<float>(kLineWidth);
  }

  void Page() {
    if (scene_.kind == Kind::kClipped) {
      Clipped();
    } else if (scene_.kind == Kind::kTexts) {
      Texts();
    } else {
      Strokes();
    }
    fz_drop_stroke_state(context_, stroke_);
  }

 private:
  static constexpr float kBlack[3] = {0, 0, 0};

  // The device space of a page has Y down and its unit is the point.
  const fz_matrix matrix_ = {static_cast<float>(kPointsPerDot),
                             0,
                             0,
                             static_cast<float>(kPointsPerDot),
                             0,
                             static_cast<float>(kSheetHeightPoints - kAreaHeight * kPointsPerDot)};

  fz_path* NewPath(std::span<const Point> shape) {
    const auto x = [&](size_t i) { return static_cast<float>(shape[i].x); };
    const auto y = [&](size_t i) { return static_cast<float>(shape[i].y); };
    fz_path* path = fz_new_path(context_);
    fz_moveto(context_, path, x(0), y(0));
    if (scene_.kind == Kind::kCurves) {
      fz_curveto(context_, path, x(1), y(1), x(2), y(2), x(3), y(3));
    } else {
      for (size_t i = 1; i < shape.size(); ++i) fz_lineto(context_, path, x(i), y(i));
    }
    return path;
  }

  void Strokes() {
    for (size_t i = 0; i < scene_.ShapeCount(); ++i) {
      fz_path* path = NewPath(scene_.Shape(i));
      fz_stroke_path(context_, device_, path, stroke_, matrix_, space_, kBlack, 1, fz_default_color_params);
      fz_drop_path(context_, path);
    }
  }

  void Clipped() {
    size_t shape = 0;
    for (const Clip& clip : scene_.clips) {
      fz_path* outline = NewPath(clip.corners);
      fz_closepath(context_, outline);
      fz_clip_path(context_, device_, outline, 0, matrix_, fz_infinite_rect);
      fz_drop_path(context_, outline);
      const float color[3] = {static_cast<float>(clip.color.red) / 255,
                              static_cast<float>(clip.color.green) / 255,
                              static_cast<float>(clip.color.blue) / 255};
      for (size_t i = 0; i < scene_.shapesPerClip; ++i) {
        fz_path* path = NewPath(scene_.Shape(shape++));
        fz_fill_path(context_, device_, path, 0, matrix_, space_, color, 1, fz_default_color_params);
        fz_drop_path(context_, path);
      }
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

  void Texts() {
    for (size_t i = 0; i < scene_.texts.size(); ++i) {
      const Color& wanted = scene_.texts[i].color;
      const float color[3] = {static_cast<float>(wanted.red) / 255, static_cast<float>(wanted.green) / 255,
                              static_cast<float>(wanted.blue) / 255};
      fz_text* text = NewText(i);
      fz_fill_text(context_, device_, text, matrix_, space_, color, 1, fz_default_color_params);
      fz_drop_text(context_, text);
    }
  }

  fz_context* context_;
  fz_device* device_;
  const Scene& scene_;
  const TextFonts& textFonts_;
  const Fonts& fonts_;
  fz_stroke_state* stroke_;
  fz_colorspace* space_;
};

Fonts OpenFonts(fz_context* context, const TextFonts& textFonts) {
  Fonts fonts{};
  for (size_t i = 0; !textFonts.IsEmpty() && i < fonts.size(); ++i) {
    fonts[i] = fz_new_font_from_file(context, nullptr, textFonts.Path(i).c_str(), 0, 0);
  }
  return fonts;
}

void WriteDocument(fz_context* context, const Scene& scene, const TextFonts& textFonts, const Fonts& fonts,
                   const char* path) {
  pdf_document* document = pdf_create_document(context);
  const fz_rect sheet = {0, 0, static_cast<float>(kSheetWidthPoints), static_cast<float>(kSheetHeightPoints)};
  pdf_obj* resources = nullptr;
  fz_buffer* contents = nullptr;
  fz_device* device = pdf_page_write(context, document, sheet, &resources, &contents);
  Painter(context, device, scene, textFonts, fonts).Page();
  fz_close_device(context, device);
  fz_drop_device(context, device);

  pdf_obj* page = pdf_add_page(context, document, sheet, 0, resources, contents);
  pdf_insert_page(context, document, -1, page);
  pdf_drop_obj(context, page);
  pdf_drop_obj(context, resources);
  fz_drop_buffer(context, contents);
#if FZ_VERSION_MAJOR > 1 || FZ_VERSION_MINOR >= 24
  pdf_subset_fonts(context, document, 0, nullptr);  // older ones embed fonts whole
#endif
  pdf_write_options options = pdf_default_write_options;
  options.do_compress = 1;
  options.do_compress_fonts = 1;
  pdf_save_document(context, document, path, &options);
  pdf_drop_document(context, document);
}

}  // namespace

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  fz_context* context = fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT);
  if (context == nullptr) throw std::runtime_error("no context");
  const TextFonts textFonts(scene);
  Fonts fonts{};
  bool failed = false;
  fz_var(fonts);
  fz_try(context) {
    fonts = OpenFonts(context, textFonts);
    start();
    WriteDocument(context, scene, textFonts, fonts, path.c_str());
  }
  fz_catch(context) failed = true;
  const std::string message = failed ? fz_caught_message(context) : "";
  for (fz_font* font : fonts) fz_drop_font(context, font);
  fz_drop_context(context);
  if (failed) throw std::runtime_error(message);
}

}  // namespace bench

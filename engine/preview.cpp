#include "engine/preview.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "engine/library.h"
#include "public/cpp/fpdf_scopers.h"
#include "public/fpdfview.h"

namespace hdi::engine {
namespace {

constexpr double kPointsPerInch = 72;
constexpr double kMostPixels = 200e6;
constexpr double kLongestSide = 65500;

PagePicture BlankPicture(double width, double height) {
  if (width > kLongestSide || height > kLongestSide || width * height > kMostPixels) {
    throw PreviewError("the page is too large for a preview: " + std::to_string(std::llround(width)) + " x " +
                       std::to_string(std::llround(height)) + " pixels");
  }
  constexpr uint8_t kWhite = 255;
  PagePicture picture;
  picture.width = static_cast<int32_t>(width);
  picture.height = static_cast<int32_t>(height);
  picture.stride = (picture.width * 3 + 3) / 4 * 4;
  picture.pixels.assign(static_cast<size_t>(picture.stride) * static_cast<size_t>(picture.height), kWhite);
  return picture;
}

}  // namespace

PagePicture PaintFirstPage(const std::filesystem::path& pdf, double dotsPerInch) {
  const Library library;
  // The engine takes UTF-8 on Windows and a native path elsewhere, which u8string returns unchanged.
  const std::u8string path = pdf.u8string();
  const ScopedFPDFDocument document(FPDF_LoadDocument(reinterpret_cast<const char*>(path.c_str()), nullptr));
  if (!document) throw PreviewError("cannot be read for a preview");
  const ScopedFPDFPage page(FPDF_LoadPage(document.get(), 0));
  if (!page) throw PreviewError("has no page for a preview");

  const auto pixels = [dotsPerInch](double points) {
    return std::max(std::round(points * dotsPerInch / kPointsPerInch), 1.0);
  };
  PagePicture picture =
      BlankPicture(pixels(FPDF_GetPageWidthF(page.get())), pixels(FPDF_GetPageHeightF(page.get())));
  const ScopedFPDFBitmap bitmap(FPDFBitmap_CreateEx(picture.width, picture.height, FPDFBitmap_BGR,
                                                    picture.pixels.data(), picture.stride));
  if (!bitmap) throw PreviewError("the page is too large for a preview");
  FPDF_RenderPageBitmap(bitmap.get(), page.get(), 0, 0, picture.width, picture.height, 0, 0);
  return picture;
}

}  // namespace hdi::engine

#include "hdiplot/image/image_book.h"

#include <algorithm>
#include <exception>
#include <system_error>

#include "hdiplot/image/image_file.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

// Paths in drawings may have backslashes, and drives that do not exist here.
std::filesystem::path FileOf(const std::filesystem::path& folder, std::string name) {
  std::ranges::replace(name, '\\', '/');
  const std::filesystem::path path = PathFromUtf8(name);
  const std::filesystem::path named = folder / path;  // `path` alone when it is absolute
  std::error_code unknown;
  if (std::filesystem::exists(named, unknown)) return named.lexically_normal();
  const std::filesystem::path beside = folder / path.filename();
  return (std::filesystem::exists(beside, unknown) ? beside : named).lexically_normal();
}

// Whether the look leaves the image as it is.
bool IsPlain(Raster& raster, const ImageLook& look) {
  if (look != ImageLook{look.transparent}) return false;
  const bool isBitonal = raster.GetImageHeader()->biBitCount == 1;
  return raster.HasAlphaChannel() != 0 ? look.transparent : !look.transparent || !isBitonal;
}

}  // namespace

Raster* ImageBook::Find(const std::filesystem::path& folder, const std::string& name, const ImageLook& look,
                        const ImageTurn& turn) {
  Raster* decoded = Decoded(FileOf(folder, name));
  if (decoded == nullptr) return nullptr;
  const auto [entry, isNew] = changed_.try_emplace({decoded, look, turn}, decoded);
  if (!isNew) return entry->second;
  if (IsPlain(*decoded, look) && turn == ImageTurn{}) return decoded;
  ImageData image = DescribeRaster(*decoded);
  ApplyLook(look, image);
  if (turn != ImageTurn{}) image = Turned(image, turn);
  return entry->second = &Keep(std::move(image));
}

Raster* ImageBook::Decoded(const std::filesystem::path& file) {
  const auto [entry, isNew] = decoded_.try_emplace(file, nullptr);
  if (!isNew) return entry->second;
  try {
    DecodedImage decoded = ReadImageFile(file);
    entry->second = &Keep(std::move(decoded.image));
    if (!decoded.isWhole) {
      ReportUnusable(FileError(file, 0, "the image is damaged; what can be read of it is plotted").what());
    }
  } catch (const FileError& error) {
    ReportUnusable(error.what());
  } catch (const std::bad_alloc&) {
    ReportUnusable(FileError(file, 0, "there is no memory for the image").what());
  }
  return entry->second;
}

void ImageBook::ReportUnusable(const std::string& message) {
  if (unusable_.insert(message).second && report_) report_(message);
}

}  // namespace hdiplot

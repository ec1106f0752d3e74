// The PNG is made in memory: the library that writes it would not tell of a full disk.
#include "host/hdiplot/preview.h"

#include <FreeImage.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>

#include "engine/preview.h"
#include "host/hdiplot/errors.h"
#include "host/hdiplot/output_file.h"

namespace hdiplot {

namespace {

using hdi::engine::PagePicture;

struct Release {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
  void operator()(FIMEMORY* memory) const { FreeImage_CloseMemory(memory); }
};
using Memory = std::unique_ptr<FIMEMORY, Release>;

Memory EncodePng(PagePicture picture, int dotsPerInch) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  // Refers to the pixels, which it turns upside down.
  const std::unique_ptr<FIBITMAP, Release> bitmap(FreeImage_ConvertFromRawBitsEx(
      FALSE, picture.pixels.data(), FIT_BITMAP, picture.width, picture.height, picture.stride, 24,
      FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK, TRUE));
  Memory memory(FreeImage_OpenMemory());
  if (!bitmap || !memory) throw std::bad_alloc();
  const auto dotsPerMetre = static_cast<unsigned>(std::lround(dotsPerInch * kInchesPerMetre));
  FreeImage_SetDotsPerMeterX(bitmap.get(), dotsPerMetre);
  FreeImage_SetDotsPerMeterY(bitmap.get(), dotsPerMetre);
  if (FreeImage_SaveToMemory(FIF_PNG, bitmap.get(), memory.get(), PNG_DEFAULT) == FALSE) {
    throw std::bad_alloc();
  }
  return memory;
}

std::span<const uint8_t> BytesOf(const Memory& memory) {
  BYTE* data = nullptr;
  DWORD size = 0;
  FreeImage_AcquireMemory(memory.get(), &data, &size);
  return {data, size};
}

// Empty when all has been written.
std::string WriteBytes(const std::filesystem::path& file, std::span<const uint8_t> bytes) {
  std::FILE* stream = std::fopen(file.c_str(), "wb");
  if (stream == nullptr) return std::strerror(errno);
  std::string problem;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size()) problem = std::strerror(errno);
  // Some file systems tell only at the end that they had no room.
  if (std::fclose(stream) != 0 && problem.empty()) problem = std::strerror(errno);
  return problem;
}

std::string Replace(const std::filesystem::path& file, std::span<const uint8_t> bytes) {
  const std::filesystem::path place = WithoutLinks(file);
  const std::filesystem::path temporary =
      place.parent_path() / (".hdiplot." + std::to_string(getpid()) + ".png.tmp");
  std::string problem = WriteBytes(temporary, bytes);
  std::error_code error;
  if (problem.empty()) {
    std::filesystem::rename(temporary, place, error);
    if (error) problem = error.message();
  }
  if (!problem.empty()) std::filesystem::remove(temporary, error);
  return problem;
}

PagePicture Paint(const std::filesystem::path& pdf, int dotsPerInch) {
  try {
    return hdi::engine::PaintFirstPage(pdf, dotsPerInch);
  } catch (const hdi::engine::PreviewError& error) {
    throw InputError(pdf, 0, error.what());
  }
}

}  // namespace

void WritePreview(const std::filesystem::path& pdf, const std::filesystem::path& file, int dotsPerInch) {
  std::string problem;
  try {
    const Memory png = EncodePng(Paint(pdf, dotsPerInch), dotsPerInch);
    problem = Replace(file, BytesOf(png));
  } catch (const std::bad_alloc&) {
    problem = "out of memory";
  }
  if (!problem.empty()) throw InputError(file, 0, "cannot be written: " + problem);
}

}  // namespace hdiplot

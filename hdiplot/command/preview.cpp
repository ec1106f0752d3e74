// The picture is whole before the file is touched, and the file before it takes its place.
#include "hdiplot/command/preview.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <span>
#include <string>

#include "engine/preview.h"
#include "hdiplot/image/png_encoder.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/process.h"

namespace hdiplot {

namespace {

using hdi::engine::PagePicture;

// Empty when all has been written.
std::string WriteBytes(const std::filesystem::path& file, std::span<const uint8_t> bytes) {
  FileStream stream = CreateNew(file);
  if (!stream) return std::strerror(errno);
  std::string problem;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream.get()) != bytes.size()) {
    problem = std::strerror(errno);
  }
  // Some file systems tell only at the end that they had no room.
  if (std::fclose(stream.release()) != 0 && problem.empty()) problem = std::strerror(errno);
  return problem;
}

std::string Replace(const std::filesystem::path& file, std::span<const uint8_t> bytes) {
  const std::filesystem::path place = WithoutLinks(file);
  const std::filesystem::path temporary = place.parent_path() / (".hdiplot." + ProcessNumber() + ".png.tmp");
  std::string problem = WriteBytes(temporary, bytes);
  if (problem.empty()) problem = MoveOver(temporary, place);
  std::error_code ignored;
  if (!problem.empty()) std::filesystem::remove(temporary, ignored);
  return problem;
}

PagePicture Paint(const std::filesystem::path& pdf, int dotsPerInch) {
  try {
    return hdi::engine::PaintFirstPage(pdf, dotsPerInch);
  } catch (const hdi::engine::PreviewError& error) {
    throw FileError(pdf, 0, error.what());
  }
}

}  // namespace

void WritePreview(const std::filesystem::path& pdf, const std::filesystem::path& file, int dotsPerInch) {
  std::string problem;
  try {
    problem = Replace(file, EncodePng(Paint(pdf, dotsPerInch), dotsPerInch));
  } catch (const std::bad_alloc&) {
    problem = "out of memory";
  }
  if (!problem.empty()) throw FileError(file, 0, "cannot be written: " + problem);
}

}  // namespace hdiplot

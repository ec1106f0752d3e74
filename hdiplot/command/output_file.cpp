// Looking at the output's place before the plot and at the output behind it.
#include "hdiplot/command/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

fs::path DirectoryOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// Permission bits tell nothing to a superuser, nor of a read-only or full file system: only making a file
// does.
void RequireCreatable(const fs::path& probe, const fs::path& file) {
  if (!CreateNew(probe)) throw FileError(file, 0, std::string("cannot be written: ") + std::strerror(errno));
  std::error_code ignored;
  fs::remove(probe, ignored);
}

}  // namespace

bool AsksForFile(const std::u16string& output) { return EqualWithoutCase(hdi::ToUtf8(output), "file:"); }

std::optional<fs::path> OutputFile(const std::optional<std::u16string>& output,
                                   const std::u16string& defaultOutput) {
  if (!output || output->empty()) return PathFromUtf8(hdi::ToUtf8(defaultOutput));
  if (AsksForFile(*output)) return std::nullopt;
  std::string name = hdi::ToUtf8(*output);
  if (!LowerCase(name).ends_with(".pdf")) name += ".pdf";
  return PathFromUtf8(name);
}

void RequireReplaceable(const fs::path& file) {
  std::error_code error;
  const fs::path directory = DirectoryOf(file);
  // Made absolute, as a drive's letter alone is none.
  if (!fs::is_directory(fs::absolute(directory, error), error)) {
    throw FileError(file, 0, "cannot be written: there is no directory " + PathText(directory));
  }
  const fs::file_status status = fs::status(file, error);
  if (fs::is_directory(status)) throw FileError(file, 0, "cannot be written: it is a directory");
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw FileError(file, 0, "cannot be written: it is no regular file");
  }
}

void RequireWritable(const fs::path& file) {
  RequireReplaceable(file);
  std::error_code error;
  const bool isThere = fs::exists(fs::symlink_status(file, error));
  RequireCreatable(isThere ? DirectoryOf(file) / (".hdiplot." + ProcessNumber() + ".tmp") : file, file);
}

void RequireComplete(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  if (!stream) throw FileError(file, 0, "has not been written");
  // The last line of a file is the end mark (ISO 32000-1:2008, 7.5.5).
  const std::streamoff size = stream.tellg();
  std::string tail(static_cast<size_t>(std::min<std::streamoff>(size, 32)), '\0');
  stream.seekg(size - static_cast<std::streamoff>(tail.size()));
  stream.read(tail.data(), static_cast<std::streamsize>(tail.size()));
  if (tail.find("%%EOF") == std::string::npos) throw FileError(file, 0, "is not whole; is the disk full?");
}

}  // namespace hdiplot

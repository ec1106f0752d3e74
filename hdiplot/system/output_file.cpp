#include "hdiplot/system/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

fs::path DirectoryOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

fs::path TemporaryBeside(const fs::path& file) {
  static int count = 0;
  return DirectoryOf(file) / (".hdiplot." + ProcessNumber() + "." + std::to_string(++count) + ".tmp");
}

// Throws FileError when the directory of `file` is missing, or `file` exists and is not a regular file.
void RequireReplaceable(const fs::path& file) {
  std::error_code error;
  const fs::path directory = DirectoryOf(file);
  // Made absolute, as a drive letter alone is not a directory.
  if (!fs::is_directory(fs::absolute(directory, error), error)) {
    throw FileError(file, 0, "cannot be written: there is no directory " + PathText(directory));
  }
  const fs::file_status status = fs::status(file, error);
  if (fs::is_directory(status)) throw FileError(file, 0, "cannot be written: it is a directory");
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw FileError(file, 0, "cannot be written: it is not a regular file");
  }
}

FileStream Create(const fs::path& file, const fs::path& named) {
  FileStream stream = CreateNew(file);
  if (!stream) throw FileError(named, 0, std::string("cannot be written: ") + std::strerror(errno));
  return stream;
}

}  // namespace

std::optional<fs::path> DriverOutput(const std::optional<std::u16string>& output,
                                     const std::u16string& defaultOutput) {
  if (!output || output->empty()) return PathFromUtf8(hdi::ToUtf8(defaultOutput));
  std::string name = hdi::ToUtf8(*output);
  if (EqualWithoutCase(name, "file:")) return std::nullopt;
  if (!LowerCase(name).ends_with(".pdf")) name += ".pdf";
  return PathFromUtf8(name);
}

void RequireWritable(const fs::path& file) {
  RequireReplaceable(file);
  std::error_code error;
  const bool exists = fs::exists(fs::symlink_status(file, error));
  // Permission bits do not apply to a superuser, nor show a read-only or full file system: only creating a
  // file is a test.
  const fs::path probe = exists ? TemporaryBeside(file) : file;
  Create(probe, file).reset();
  fs::remove(probe, error);
}

void RequireComplete(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  if (!stream) throw FileError(file, 0, "has not been written");
  // The last line of a file is the end mark (ISO 32000-1:2008, 7.5.5).
  const std::streamoff size = stream.tellg();
  std::string tail(static_cast<size_t>(std::min<std::streamoff>(size, 32)), '\0');
  stream.seekg(size - static_cast<std::streamoff>(tail.size()));
  stream.read(tail.data(), static_cast<std::streamsize>(tail.size()));
  if (tail.find("%%EOF") == std::string::npos) throw FileError(file, 0, "is incomplete; is the disk full?");
}

FileReplacement::FileReplacement(fs::path file) : file_(std::move(file)), place_(WithoutLinks(file_)) {
  RequireReplaceable(place_);
  temporary_ = TemporaryBeside(place_);
  stream_ = Create(temporary_, file_);
}

FileReplacement::~FileReplacement() {
  if (temporary_.empty()) return;
  stream_.reset();
  std::error_code ignored;
  fs::remove(temporary_, ignored);
}

void FileReplacement::Write(std::string_view bytes) {
  if (problem_.empty() && std::fwrite(bytes.data(), 1, bytes.size(), stream_.get()) != bytes.size()) {
    Fail(std::strerror(errno));
  }
}

void FileReplacement::Fail(std::string_view problem) {
  if (problem_.empty()) problem_ = problem;
}

void FileReplacement::Commit() {
  // Some file systems report only at the end that they had no room.
  if (std::fclose(stream_.release()) != 0) Fail(std::strerror(errno));
  if (problem_.empty()) problem_ = MoveOver(temporary_, place_);
  if (!problem_.empty()) throw FileError(file_, 0, "cannot be written: " + problem_);
  temporary_.clear();
}

}  // namespace hdiplot

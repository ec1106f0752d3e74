// Loading, and telling a DXF from what is often taken for one.
#include "host/hdiplot/dxf/dxf_text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

#include "host/hdiplot/dxf/group_reader.h"
#include "host/hdiplot/errors.h"
#include "host/hdiplot/system/files.h"

namespace hdiplot {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view start;
  std::string_view message;
};

constexpr std::array kOtherFiles = {
    Signature{"AC10"sv, "this is a DWG drawing, no DXF; save the drawing as a DXF"sv},
    Signature{"%PDF"sv, "this is a PDF, no DXF"sv},
    Signature{"\x89PNG"sv, "this is a PNG image, no DXF"sv},
    Signature{"\xff\xd8\xff"sv, "this is a JPEG image, no DXF"sv},
    Signature{"PK\x03\x04"sv, "this is a zip archive, no DXF; take the drawing out of it"sv},
    Signature{"\x1f\x8b"sv, "this is a compressed file, no DXF; unpack it"sv},
    Signature{"\xff\xfe"sv, "this is UTF-16 text; a DXF is ASCII, UTF-8 or in a code page"sv},
    Signature{"\xfe\xff"sv, "this is UTF-16 text; a DXF is ASCII, UTF-8 or in a code page"sv},
};

std::string ReadWhole(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error))
    throw FileError(file, 0, "this is a directory, no DXF file");
  const FileStream stream = OpenToRead(file);
  if (!stream) {
    throw FileError(file, 0, "cannot be opened: " + std::generic_category().message(errno));
  }
  std::string text;
  const auto size = std::filesystem::file_size(file, error);
  constexpr size_t kPiece = 1 << 16;
  if (!error) text.reserve(size + kPiece);
  for (size_t got = 1; got > 0;) {
    const size_t before = text.size();
    text.resize(before + kPiece);
    got = std::fread(text.data() + before, 1, kPiece, stream.get());
    text.resize(before + got);
  }
  if (std::ferror(stream.get())) throw FileError(file, 0, "cannot be read");
  return text;
}

// A DXF starts with the group code of a section or of a comment.
bool StartsLikeDxf(std::string_view firstLine) {
  const size_t first = firstLine.find_first_not_of(" \t");
  const size_t last = firstLine.find_last_not_of(" \t");
  if (first == std::string_view::npos) return false;
  const std::string_view code = firstLine.substr(first, last - first + 1);
  return code == "0" || code == "999";
}

}  // namespace

std::string LoadDxfText(const std::filesystem::path& file) {
  std::string text = ReadWhole(file);
  if (text.empty()) throw FileError(file, 0, "the file is empty");
  for (const Signature& other : kOtherFiles) {
    if (text.starts_with(other.start)) throw FileError(file, 0, std::string(other.message));
  }
  if (text.starts_with("\xef\xbb\xbf")) text.erase(0, 3);
  const std::string_view firstLine = std::string_view(text).substr(0, text.find_first_of("\r\n"));
  if (firstLine.ends_with(" Binary DXF")) {
    throw FileError(
        file, 0,
        "this is a binary DXF, only text ones are read; save the drawing again as a text (ASCII) DXF");
  }
  if (!StartsLikeDxf(firstLine)) {
    throw FileError(file, 1,
                    "this is no DXF: the group code 0 should stand here, but it is " + Quoted(firstLine));
  }
  if (const size_t zero = text.find('\0'); zero != std::string::npos) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(zero);
    const auto lineEnds = std::count(text.begin(), end, text.find('\n') == std::string::npos ? '\r' : '\n');
    throw FileError(file, static_cast<size_t>(lineEnds) + 1,
                    "there is a zero byte here, so this is no text DXF");
  }
  return text;
}

}  // namespace hdiplot

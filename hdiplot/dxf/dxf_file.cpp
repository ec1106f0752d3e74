// Loading, and telling a DXF from what is often taken for one.
#include "hdiplot/dxf/dxf_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

#include "hdiplot/dxf/binary_groups.h"
#include "hdiplot/dxf/text_groups.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"

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

// A text DXF starts with the group code of a section or of a comment.
bool StartsLikeDxf(std::string_view text) {
  const std::string_view code = Trimmed(text.substr(0, text.find_first_of("\r\n")));
  return code == "0" || code == "999";
}

bool HoldsObjects(std::string_view text) {
  TextGroups groups(text);
  groups.SkipDamage();
  return groups.Position() < text.size();
}

}  // namespace

std::string LoadDxf(const std::filesystem::path& file, bool isStrict) {
  std::string bytes = ReadWhole(file);
  if (bytes.empty()) throw FileError(file, 0, "the file is empty");
  for (const Signature& other : kOtherFiles) {
    if (bytes.starts_with(other.start)) throw FileError(file, 0, std::string(other.message));
  }
  if (IsBinaryDxf(bytes)) return bytes;
  if (bytes.starts_with("\xef\xbb\xbf")) bytes.erase(0, 3);
  if (!StartsLikeDxf(bytes) && (isStrict || !HoldsObjects(bytes))) {
    const std::string firstLine = bytes.substr(0, bytes.find_first_of("\r\n"));
    throw FileError(file, 1,
                    "this is no DXF: the group code 0 should stand here, but it is " + Quoted(firstLine));
  }
  return bytes;
}

bool LooksLikeDxf(std::string_view start) { return IsBinaryDxf(start) || StartsLikeDxf(start); }

}  // namespace hdiplot

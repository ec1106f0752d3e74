#include "hdiplot/dxf/dxf_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/group_source.h"
#include "hdiplot/dxf/structure_reader.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {
namespace {

// What other files start with, and what to say of them.
constexpr std::pair<std::string_view, const char*> kOtherFiles[] = {
    {"AC10", "this is a DWG drawing, no DXF; save the drawing as a DXF"},
    {"%PDF", "this is a PDF, no DXF"},
    {"\x89PNG", "this is a PNG image, no DXF"},
    {"\xff\xd8\xff", "this is a JPEG image, no DXF"},
    {"PK\x03\x04", "this is a zip archive, no DXF; take the drawing out of it"},
    {"\x1f\x8b", "this is a compressed file, no DXF; unpack it"},
    {"\xff\xfe", "this is UTF-16 text; a DXF is ASCII, UTF-8 or in a code page"},
    {"\xfe\xff", "this is UTF-16 text; a DXF is ASCII, UTF-8 or in a code page"},
};

// The content of a file. Unlike a string, it is not zeroed before it is read.
struct FileBytes {
  std::unique_ptr<char[]> data;
  size_t size = 0;
};

FileBytes ReadWhole(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error))
    throw FileError(file, 0, "this is a directory, no DXF file");
  const FileStream stream = OpenToRead(file);
  if (!stream) {
    throw FileError(file, 0, "cannot be opened: " + std::generic_category().message(errno));
  }
  constexpr size_t kSmallest = 1 << 16;
  const auto expected = std::filesystem::file_size(file, error);
  size_t capacity = kSmallest + (error ? 0 : static_cast<size_t>(expected));
  FileBytes bytes{std::make_unique_for_overwrite<char[]>(capacity)};
  while (const size_t got = std::fread(&bytes.data[bytes.size], 1, capacity - bytes.size, stream.get())) {
    bytes.size += got;
    if (bytes.size < capacity) continue;
    capacity *= 2;  // a pipe, or a file that grows
    auto larger = std::make_unique_for_overwrite<char[]>(capacity);
    std::copy_n(bytes.data.get(), bytes.size, larger.get());
    bytes.data = std::move(larger);
  }
  if (std::ferror(stream.get())) throw FileError(file, 0, "cannot be read");
  return bytes;
}

// A text DXF starts with the group code of a section or of a comment.
bool StartsLikeDxf(std::string_view text) {
  const std::string_view code = Trimmed(text.substr(0, text.find_first_of("\r\n")));
  return code == "0" || code == "999";
}

bool HoldsObjects(std::string_view text) {
  const std::unique_ptr<GroupSource> groups = MakeTextGroups(text);
  groups->SkipDamage();
  return groups->Position() < text.size();
}

// Returns the source of the groups in `bytes`. Throws FileError for what is no DXF; strict: also for text
// that does not start like one.
std::unique_ptr<GroupSource> OpenDxf(const std::filesystem::path& file, std::string_view bytes,
                                     bool isStrict) {
  if (bytes.empty()) throw FileError(file, 0, "the file is empty");
  for (const auto& [start, message] : kOtherFiles) {
    if (bytes.starts_with(start)) throw FileError(file, 0, message);
  }
  if (IsBinaryDxf(bytes)) return MakeBinaryGroups(bytes);
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  if (!StartsLikeDxf(bytes) && (isStrict || !HoldsObjects(bytes))) {
    throw FileError(file, 1,
                    "this is no DXF: the group code 0 should stand here, but it is " +
                        Quoted(bytes.substr(0, bytes.find_first_of("\r\n"))));
  }
  return MakeTextGroups(bytes);
}

FileError ErrorAt(const std::filesystem::path& file, const DxfFault& fault, bool isBinary) {
  if (!isBinary) return {file, fault.place, fault.message};
  return {file, 0, "byte " + std::to_string(fault.place) + ": " + fault.message};
}

bool IsEmpty(const Drawing& drawing) {
  return drawing.entities.empty() && std::ranges::all_of(drawing.layouts, [&drawing](const Layout& layout) {
           const auto block = drawing.blocks.find(layout.block);
           return block == drawing.blocks.end() || block->second.entities.empty();
         });
}

}  // namespace

Drawing ReadDxf(const std::filesystem::path& file, Strictness strictness, Progress& progress) {
  const bool isStrict = strictness == Strictness::kStrict;
  const FileBytes content = ReadWhole(file);
  const std::string_view bytes(content.data.get(), content.size);
  const std::unique_ptr<GroupSource> source = OpenDxf(file, bytes, isStrict);
  const bool isBinary = IsBinaryDxf(bytes);
  FaultLog faults(isStrict);
  try {
    progress.Start(bytes.size());
    DrawingBuilder builder(faults);
    StructureReader(*source, builder, faults, progress).Read();
    Drawing drawing = builder.Finish();
    if (faults.Count() > 0 && IsEmpty(drawing)) throw DxfFault(faults.First().front());
    drawing.name = PathText(file.filename());
    drawing.folder = file.parent_path();
    for (const DxfFault& fault : faults.First()) {
      drawing.losses.emplace_back(ErrorAt(file, fault, isBinary).what());
    }
    if (const size_t more = faults.Count() - faults.First().size(); more > 0) {
      drawing.losses.emplace_back(FileError(file, 0, "and " + std::to_string(more) + " more").what());
    }
    return drawing;
  } catch (const DxfFault& fault) {
    throw ErrorAt(file, fault, isBinary);
  }
}

bool LooksLikeDxf(std::string_view start) { return IsBinaryDxf(start) || StartsLikeDxf(start); }

}  // namespace hdiplot

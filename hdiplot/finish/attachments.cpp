#include "hdiplot/finish/attachments.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <qpdf/QPDFEFStreamObjectHelper.hh>
#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFFileSpecObjectHelper.hh>
#include <string>
#include <string_view>
#include <utility>

#include "hdiplot/finish/objects.h"
#include "hdiplot/finish/text.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// By the end of the name, as registered with IANA.
std::string MimeType(const fs::path& file) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kTypes = {{
      {".csv", "text/csv"},
      {".dwg", "image/vnd.dwg"},
      {".dxf", "image/vnd.dxf"},
      {".jpg", "image/jpeg"},
      {".json", "application/json"},
      {".pdf", "application/pdf"},
      {".png", "image/png"},
      {".txt", "text/plain"},
      {".xml", "application/xml"},
  }};
  const std::string extension = LowerCase(PathText(file.extension()));
  const auto type =
      std::ranges::find(kTypes, extension, &std::pair<std::string_view, std::string_view>::first);
  return std::string(type != kTypes.end() ? type->second : "application/octet-stream");
}

std::string ReadFile(const fs::path& file) {
  const FileStream stream = OpenToRead(file);
  if (!stream) throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  std::string bytes;
  std::array<char, size_t{1} << 16> piece{};
  while (const size_t count = std::fread(piece.data(), 1, piece.size(), stream.get())) {
    bytes.append(piece.data(), count);
  }
  if (std::ferror(stream.get()) != 0) {
    throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  }
  return bytes;
}

std::string DateOf(const fs::path& file, std::optional<int64_t> latestDate) {
  const auto changed = std::chrono::file_clock::to_sys(fs::last_write_time(file));
  const int64_t seconds = std::chrono::floor<std::chrono::seconds>(changed).time_since_epoch().count();
  return PdfDate(latestDate ? std::min(seconds, *latestDate) : seconds);
}

// A name that the document does not have yet: several directories may hold a file of one name.
std::string FreeName(QPDFEmbeddedFileDocumentHelper& files, const fs::path& file) {
  std::string name = CleanText(PathText(file.filename()));
  for (int number = 2; files.getEmbeddedFile(name) != nullptr; ++number) {
    name =
        CleanText(PathText(file.stem()) + " (" + std::to_string(number) + ")" + PathText(file.extension()));
  }
  return name;
}

}  // namespace

void Attach(QPDF& pdf, const fs::path& file, std::optional<int64_t> latestDate) {
  QPDFEmbeddedFileDocumentHelper files(pdf);
  const std::string name = FreeName(files, file);
  const std::string bytes = ReadFile(file);
  auto stream = QPDFEFStreamObjectHelper::createEFStream(pdf, bytes);
  SetCompressedData(stream.getObjectHandle(), bytes);
  stream.setSubtype(MimeType(file));
  stream.setModDate(DateOf(file, latestDate));
  auto specification = QPDFFileSpecObjectHelper::createFileSpec(pdf, name, stream);
  specification.setDescription("Source of this document: " + name);
  QPDFObjectHandle dictionary = specification.getObjectHandle();
  dictionary.replaceKey("/AFRelationship", QPDFObjectHandle::newName("/Source"));
  files.replaceEmbeddedFile(name, specification);

  QPDFObjectHandle associated = pdf.getRoot().getKey("/AF");
  if (!associated.isArray()) {
    associated = pdf.getRoot().replaceKeyAndGetNew("/AF", QPDFObjectHandle::newArray());
  }
  associated.appendItem(dictionary);
}

}  // namespace hdiplot

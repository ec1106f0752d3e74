// One pass over a PDF that the driver has finished: outline, page labels, metadata, PDF/A, attachments, size,
// linearization and encryption. Knows nothing of drawings but the names it is given. All text is UTF-8.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace hdiplot {

// What the outline and the page labels call a page.
struct PageName {
  std::string drawing;
  std::string page;  // the layout's name, or the drawing's once more
};

// Entries of the information dictionary (ISO 32000-1:2008, 14.3.3). Without a value the file's own stays.
struct Properties {
  std::optional<std::string> title;
  std::optional<std::string> author;
  std::optional<std::string> subject;
  std::optional<std::string> keywords;
  std::optional<std::string> creator;
  std::optional<std::string> language;  // RFC 3066, as in "de-CH"; in the catalog

  bool operator==(const Properties&) const = default;
};

enum class PdfA { kNone, k2b, k3b };

// AES-256. The password opens the file; what a reader may do then are requests that readers honour.
struct Encryption {
  std::string password;
  bool mayPrint = true;
  bool mayCopy = true;
};

struct FinishOptions {
  // An outline entry and a label for each page. Pages without a name are called by their number.
  std::optional<std::vector<PageName>> bookmarks;
  Properties properties;
  PdfA pdfA = PdfA::kNone;
  std::vector<std::filesystem::path> attachments;
  bool compact = false;
  bool linearize = false;
  std::optional<Encryption> encryption;
  // Seconds since 1970. With it, equal inputs and options give equal files: it takes the place of all dates,
  // and the identifier is a digest. Encrypted files differ all the same.
  std::optional<int64_t> sourceDateEpoch;
};

// Whether the options ask for a pass at all.
[[nodiscard]] inline bool AsksForPass(const FinishOptions& options) {
  return options.bookmarks || options.properties != Properties() || options.pdfA != PdfA::kNone ||
         !options.attachments.empty() || options.compact || options.linearize || options.encryption;
}

// Why the options exclude each other, as a message; empty when they do not.
[[nodiscard]] std::string Contradiction(const FinishOptions& options);

// Writes `input`, changed as the options say, to `output`, which may be the same file and is replaced in one
// step. Returns what was lost on the way, a message each. Throws FileError when there is no such result; then
// `output` is as it was.
[[nodiscard]] std::vector<std::string> FinishFile(const std::filesystem::path& input,
                                                  const std::filesystem::path& output,
                                                  const FinishOptions& options);

}  // namespace hdiplot

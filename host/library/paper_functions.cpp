// The paper functions of the host's support library.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "host/library/paper_file.h"
#include "platform/host_library.h"

namespace {

using hdi::PaperFile;
using hdi::PaperSize;

// The platform's DC_ numbers, then the host's own.
constexpr uint16_t kPaperIds = 2;
constexpr uint16_t kPaperSizes = 3;
constexpr uint16_t kPaperNames = 16;
constexpr uint16_t kPaperRecords = 19;
constexpr uint16_t kUnused = 20;

constexpr int32_t kUnknownCapability = -1;
constexpr int32_t kFirstNewId = 256;

std::u16string FileName(const char16_t* file) { return file == nullptr ? u"" : file; }

const PaperSize* FindPaper(const std::vector<PaperSize>& papers, int32_t id) {
  const auto found =
      std::find_if(papers.begin(), papers.end(), [id](const PaperSize& paper) { return paper.id == id; });
  return found == papers.end() ? nullptr : &*found;
}

bool HasSize(const PaperSize& paper) { return paper.width > 0 && paper.height > 0; }

// Writes `part` of each paper, a trivially copyable value, to `output`, which may be unaligned or null.
// Returns the number of papers.
template <typename Part>
int32_t Answer(const std::vector<PaperSize>& papers, char* output, Part part) {
  for (const PaperSize& paper : papers) {
    if (output == nullptr) break;
    const auto value = part(paper);
    std::memcpy(output, &value, sizeof value);
    output += sizeof value;
  }
  return static_cast<int32_t>(papers.size());
}

struct SheetSize {
  int32_t width;
  int32_t height;
};

struct SheetName {
  char16_t units[64];
};

}  // namespace

int32_t HT_DefaultDeviceCapabilities(uint16_t capability, char* output, const void* /*devMode*/,
                                     const char16_t* file) {
  if (capability == kUnused) return 0;
  const uint16_t known[] = {kPaperIds, kPaperSizes, kPaperNames, kPaperRecords};
  if (std::find(std::begin(known), std::end(known), capability) == std::end(known)) return kUnknownCapability;

  const PaperFile paperFile(FileName(file));
  const std::vector<PaperSize>& papers = paperFile.Papers();
  switch (capability) {
    case kPaperIds:
      return Answer(papers, output, [](const PaperSize& paper) { return static_cast<uint16_t>(paper.id); });
    case kPaperSizes:
      return Answer(papers, output, [](const PaperSize& paper) {
        return SheetSize{paper.width, paper.height};
      });
    case kPaperNames:
      return Answer(papers, output, [](const PaperSize& paper) {
        SheetName name;
        std::copy(std::begin(paper.name), std::end(paper.name), name.units);
        return name;
      });
    default:
      return Answer(papers, output, [](const PaperSize& paper) { return paper; });
  }
}

int32_t HT_DefaultCreatePaper(const void* /*devMode*/, const PaperSize& paper, const char16_t* file) {
  if (!HasSize(paper)) return 0;
  PaperFile papers(FileName(file));
  PaperSize added = paper;
  added.id = kFirstNewId;
  while (FindPaper(papers.Papers(), added.id) != nullptr) ++added.id;
  return papers.Put(added) ? added.id : 0;
}

int32_t HT_DefaultModifyPaper(const void* /*devMode*/, const PaperSize& paper, const char16_t* file) {
  if (!HasSize(paper)) return 0;
  PaperFile papers(FileName(file));
  if (FindPaper(papers.Papers(), paper.id) == nullptr) return 0;
  return papers.Put(paper) ? paper.id : 0;
}

int32_t HT_DefaultDeletePaper(const void* /*devMode*/, const int32_t& id, const char16_t* file) {
  PaperFile papers(FileName(file));
  if (FindPaper(papers.Papers(), id) == nullptr) return 0;
  return papers.Remove(id) ? 1 : 0;
}

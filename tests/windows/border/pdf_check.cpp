// What can be said of a PDF without a reader for it: that its cross-reference table leads to its objects.
#include <fstream>
#include <sstream>
#include <string>

#include "tests/border/border.h"

namespace border {
namespace fs = std::filesystem;
namespace {

// Empty when the file is sound.
std::string FaultOf(const std::string& pdf) {
  const std::string end = "%%EOF";
  const size_t last = pdf.find_last_not_of("\r\n");
  if (!pdf.starts_with("%PDF-")) return "no header";
  if (last == pdf.npos || last + 1 < end.size() || pdf.compare(last + 1 - end.size(), end.size(), end) != 0) {
    return "no end";
  }
  const size_t pointer = pdf.rfind("startxref");
  if (pointer == pdf.npos) return "no pointer to the table";
  size_t position = 0;
  std::istringstream(pdf.substr(pointer + 9)) >> position;
  if (position >= pdf.size() || pdf.compare(position, 4, "xref") != 0) return "the pointer misses the table";

  std::istringstream table(pdf.substr(position + 4, pointer - position - 4));
  size_t first = 0;
  size_t count = 0;
  while (table >> first >> count) {
    for (size_t number = first; number < first + count; ++number) {
      size_t offset = 0;
      std::string generation;
      std::string kind;
      if (!(table >> offset >> generation >> kind)) return "the table is cut";
      const std::string head = std::to_string(number) + " 0 obj";
      if (kind == "n" && (offset >= pdf.size() || pdf.compare(offset, head.size(), head) != 0)) {
        return "object " + std::to_string(number) + " is not at its place";
      }
    }
  }
  table.clear();
  std::string word;
  table >> word;
  return word == "trailer" ? "" : "no trailer";
}

}  // namespace

testing::AssertionResult IsSoundPdf(const fs::path& file) {
  const std::string fault = FaultOf(ReadFile(file));
  if (fault.empty()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << file << ": " << fault;
}

int PageCount(const fs::path& file) {
  const std::string pdf = ReadFile(file);
  const std::string type = "/Type/Page";
  int count = 0;
  for (size_t at = 0; (at = pdf.find(type, at)) != pdf.npos; at += type.size()) {
    if (pdf.compare(at + type.size(), 1, "s") != 0 && pdf.compare(at + type.size(), 1, "L") != 0) ++count;
  }
  return count;
}

}  // namespace border

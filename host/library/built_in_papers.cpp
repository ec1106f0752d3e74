// The built-in paper list, the same as in host/library/data/papers.ini.
#include "host/library/built_in_papers.h"

#include <algorithm>
#include <string_view>

namespace hdi {
namespace {

struct BuiltInPaper {
  int32_t id;  // the platform's DMPAPER_ number if there is one, otherwise from 200
  std::u16string_view name;
  int32_t width;
  int32_t height;
};

constexpr BuiltInPaper kPapers[] = {
    {200, u"A0", 8410, 11890},    {201, u"A1", 5940, 8410},      {66, u"A2", 4200, 5940},
    {8, u"A3", 2970, 4200},       {9, u"A4", 2100, 2970},        {11, u"A5", 1480, 2100},
    {70, u"A6", 1050, 1480},      {1, u"Letter", 2159, 2794},    {5, u"Legal", 2159, 3556},
    {3, u"Tabloid", 2794, 4318},  {202, u"ANSI A", 2159, 2794},  {17, u"ANSI B", 2794, 4318},
    {24, u"ANSI C", 4318, 5588},  {25, u"ANSI D", 5588, 8636},   {26, u"ANSI E", 8636, 11176},
    {203, u"Arch A", 2286, 3048}, {204, u"Arch B", 3048, 4572},  {205, u"Arch C", 4572, 6096},
    {206, u"Arch D", 6096, 9144}, {207, u"Arch E", 9144, 12192}, {208, u"Arch E1", 7620, 10668},
};

// Tenths of a millimetre.
constexpr int32_t kSideMargin = 50;
constexpr int32_t kEndMargin = 170;

}  // namespace

std::vector<PaperSize> BuiltInPapers() {
  std::vector<PaperSize> papers;
  for (const BuiltInPaper& row : kPapers) {
    PaperSize paper = {};
    paper.id = row.id;
    std::copy(row.name.begin(), row.name.end(), paper.name);
    paper.width = row.width;
    paper.height = row.height;
    paper.left = paper.right = kSideMargin;
    paper.top = paper.bottom = kEndMargin;
    papers.push_back(paper);
  }
  return papers;
}

}  // namespace hdi

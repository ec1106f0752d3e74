// Drawings through the driver itself: paper, orientation, margins, pages, and the recorded plot.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <string_view>
#include <utility>

#include "hdiplot/image/image_file.h"
#include "tests/hdiplot/command.h"
#include "tests/support/rows.h"

namespace {

using command::LineDrawing;
using command::Outcome;
using command::Workplace;
using testing::HasSubstr;
using testing::Not;

// Without what depends on the time: the creation date and the file identifier.
std::string Timeless(std::string pdf) {
  pdf = std::regex_replace(pdf, std::regex(R"(D:\d{14})"), "D:");
  return std::regex_replace(pdf, std::regex(R"(/ID\s*\[[^\]]*\])"), "/ID");
}

class Drawings : public testing::Test {
 protected:
  Drawings() {
    place.Write("wide.dxf", LineDrawing("200", "10"));
    place.Write("tall.dxf", LineDrawing("10", "200"));
    for (const char* name : {"image.dxf", "rich.dxf", "sheets.dxf", "words.dxf", "listed.txt"})
      place.Fetch(name);
  }

  // The PDF of the words without an outline, which is also that of their recorded trace.
  [[nodiscard]] std::string Plotted(const std::string& words) const {
    const Outcome plotted = place.RunReal(words + " -o out.pdf --no-bookmarks --record out.jsonl");
    EXPECT_EQ(plotted.status, 0) << plotted.err;
    EXPECT_EQ(place.RunReal("out.jsonl -o again.pdf").status, 0);
    std::string pdf = place.Read("out.pdf");
    EXPECT_EQ(Timeless(place.Read("again.pdf")), Timeless(pdf)) << words;
    return pdf;
  }

  // The pages' sizes in whole points and the first one's measure, such as "841x595 595x841, 50 mm a unit".
  [[nodiscard]] std::string Pages(const std::string& words) const {
    constexpr double kMillimetresPerPoint = 25.4 / 72;
    const std::string pdf = Plotted(words);
    std::string pages;
    const std::regex box(R"(/MediaBox\s*\[\s*0 0 ([0-9]+)[0-9.]* ([0-9]+)[0-9.]*\s*\])");
    for (std::sregex_iterator match(pdf.begin(), pdf.end(), box), end; match != end; ++match) {
      pages += (pages.empty() ? "" : " ") + (*match)[1].str() + "x" + (*match)[2].str();
    }
    std::smatch measure;
    if (!std::regex_search(pdf, measure, std::regex(R"(/X\s*\[\s*<<[^>]*/C\s+([0-9.]+))"))) return pages;
    return fmt::format("{}, {:.5g} mm a unit", pages, std::stod(measure[1]) / kMillimetresPerPoint);
  }

  // Of the preview.
  [[nodiscard]] size_t InkedPixels(const std::string& words) const {
    (void)place.RunReal(words + " --preview out.png --preview-dpi 50");
    const hdiplot::ImageData image = hdiplot::ReadImageFile(place.Path("out.png")).image;
    size_t inked = 0;
    for (size_t i = 0; i < image.pixels.size(); i += 4) inked += image.pixels[i] < 128 ? 1 : 0;
    return inked;
  }

  Workplace place;
};

TEST_F(Drawings, NeedNoFontsThatTheyName) {
  const Outcome plain = place.RunReal("words.dxf -o a.pdf -v");
  EXPECT_THAT(plain.err, HasSubstr("font \"Arial\" is not installed; using \"Liberation Sans\"\n"));
  place.Write("none.conf", "<fontconfig></fontconfig>");
  const Outcome bare = place.RunReal("words.dxf -o b.pdf -v", "FONTCONFIG_FILE=" + place.Path("none.conf"));
  EXPECT_EQ(bare.status, 0);
  EXPECT_THAT(bare.err, HasSubstr("font \"Arial\" is not installed; using \"rowmans\"\n"));

  place.Write("fonts.map", "# ours\narial.ttf = DejaVu Sans, bold\n");
  EXPECT_EQ(place.RunReal("words.dxf -o c.pdf --font-map fonts.map").err, "");
  EXPECT_THAT(place.Read("c.pdf"), HasSubstr("DejaVuSans-Bold"));
}

TEST_F(Drawings, HaveTextAsGeometryWhenAskedTo) {
  const size_t text = InkedPixels("words.dxf -o a.pdf");
  const size_t shapes = InkedPixels("words.dxf -o b.pdf --text-as-geometry");
  EXPECT_GT(text, 1000U);
  EXPECT_NEAR(static_cast<double>(shapes), static_cast<double>(text), 0.05 * static_cast<double>(text));
  EXPECT_THAT(place.Read("a.pdf"), HasSubstr("/Font"));
  EXPECT_THAT(place.Read("b.pdf"), Not(HasSubstr("/Font")));
}

TEST_F(Drawings, DoWithoutAnImageButSaySo) {
  using namespace std::string_view_literals;
  command::ExpectFailure(place.RunReal("image.dxf -o a.pdf --quiet"), "D:/a.png: no such image file", 1);
  EXPECT_GT(InkedPixels("image.dxf -o a.pdf"), 100U) << "the frame";
  EXPECT_THAT(place.Read("a.pdf"), Not(HasSubstr("/Subtype /Image")));

  constexpr std::string_view kGif = "GIF87a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"sv;
  place.Write("a.png", std::string(kGif));
  const Outcome with = place.RunReal("image.dxf -o b.pdf --quiet");
  EXPECT_EQ(with.err, "");
  EXPECT_EQ(with.status, 0);
  EXPECT_THAT(place.Read("b.pdf"), HasSubstr("/Image"));
}

TEST_F(Drawings, HavePagesAndAMeasure) {
  place.Write("half.dxf", LineDrawing("100", "5"));
  std::string noModel = place.Read("sheets.dxf");
  const std::string line = "0\nLINE\n10\n0\n20\n0\n11\n10000\n21\n0\n";
  noModel.erase(noModel.find(line), line.size());
  place.Write("paper.dxf", noModel);
  for (const auto& [words, pages] : rows::Read("hdiplot/pages.txt")) EXPECT_EQ(Pages(words), pages) << words;
}

// At 254 dots an inch a dot is a tenth of a millimetre.
TEST_F(Drawings, KeepThePapersMarginsOrTheUsers) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "2970 2100 170 50 2630 2000 "},
      {"--margins 1,2,4,8 --portrait", "2100 2970 10 20 2050 2870 "},
      {"--margins 1,2,4,8", "2970 2100 10 20 2920 2000 "},
      {"--paper 600x300 --margins 0", "6000 3000 0 0 6000 3000 "},
      {"--paper 300x600", "6000 3000 50 50 5900 2900 "},
      {"--paper 40x20", "400 200 20 20 360 160 "},
  };
  for (const auto& [words, capabilities] : rows) {
    (void)Plotted(std::string("wide.dxf --dpi 254 ") + words);
    const std::string recorded = place.Read("out.jsonl");
    std::string trace = recorded.substr(0, recorded.find('\n') + 1);
    for (const char* index : {"110", "111", "112", "113", "8", "10"}) {
      trace += std::string("{\"call\": \"DevGetCaps\", \"index\": ") + index + "}\n";
    }
    place.Write("caps.jsonl", trace);
    const std::string out = place.RunReal("caps.jsonl -o caps.pdf --results").out;
    EXPECT_EQ(std::regex_replace(out, std::regex(R"(\d+ DevGetCaps (\d+)\n)"), "$1 "), capabilities) << words;
  }
}

TEST_F(Drawings, GetAnOutputNamedLikeThemInTheCurrentDirectory) {
  std::filesystem::create_directory(place.Path("in"));
  place.Write("in/plan.v2.dxf", LineDrawing("1", "1"));
  const Outcome outcome = place.RunReal("in/plan.v2.dxf -v");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, testing::StartsWith("plan.v2.pdf: 1 page, 1 object, "));
  EXPECT_THAT(outcome.err, HasSubstr("page 1: plan.v2.dxf, A4 portrait, 1 objects\n"));
  EXPECT_TRUE(place.Has("plan.v2.pdf"));
}

TEST_F(Drawings, AreTakenFromADirectoryAndPlottedIntoOne) {
  std::filesystem::create_directory(place.Path("in"));
  std::filesystem::create_directory(place.Path("out"));
  for (const char* name : {"in/b.dxf", "in/A.DXF", "in/note.txt"}) place.Write(name, LineDrawing("1", "1"));
  const Outcome all = place.RunReal("in wide.dxf -o all.pdf -v");
  EXPECT_THAT(all.err, testing::ContainsRegex("page 1: A.DXF, .*\npage 2: b.dxf, .*\npage 3: wide.dxf, "));
  EXPECT_EQ(place.RunReal("in/b.dxf -o out --record out/ --preview ./out -q").status, 0);
  EXPECT_EQ(place.RunReal("out/b.jsonl -o in -q").status, 0);
  for (const char* name : {"out/b.pdf", "out/b.jsonl", "out/b.png", "in/b.pdf"})
    EXPECT_TRUE(place.Has(name)) << name;
}

TEST_F(Drawings, HaveLayersLinksTransparencyAndComments) {
  const std::string all = Plotted("rich.dxf");
  for (const char* part : {"(Doors)", "(http://example.com/)", "/ca "}) EXPECT_THAT(all, HasSubstr(part));
  EXPECT_THAT(all, Not(HasSubstr("/Square")));
  const std::string others = Plotted("rich.dxf --no-layers --no-links --shx-comments");
  for (const char* part : {"/OCG", "/Link"}) EXPECT_THAT(others, Not(HasSubstr(part)));
  for (const char* part : {"/Square", "(words)"}) EXPECT_THAT(others, HasSubstr(part));
}

TEST_F(Drawings, AreListed) {
  const Outcome listed = place.RunReal("rich.dxf missing.dxf sheets.dxf --list");
  EXPECT_EQ(listed.status, 1);
  EXPECT_EQ(listed.out, place.Read("listed.txt"));
  EXPECT_THAT(listed.err, HasSubstr("missing.dxf"));
  EXPECT_FALSE(place.Has("rich.pdf"));
  EXPECT_EQ(place.RunReal("missing.dxf --list").status, 2);
  EXPECT_EQ(place.RunReal("rich.dxf --list").status, 0);
}

// Half red, half of it seen through; a second page is empty.
TEST_F(Drawings, HaveAPictureOfTheirFirstPage) {
  place.Fetch("half_red.jsonl");
  const Outcome outcome = place.RunReal("half_red.jsonl -o job.pdf --preview job.png --preview-dpi 50");
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const hdiplot::ImageData image = hdiplot::ReadImageFile(place.Path("job.png")).image;
  ASSERT_EQ(image.bitCount, 32);
  EXPECT_EQ(std::pair(image.width, image.height), std::pair(200, 100));
  const auto blueAt = [&image](size_t column) { return image.pixels[(size_t{200} * 50 + column) * 4]; };
  EXPECT_NEAR(blueAt(50), 127, 2);
  EXPECT_EQ(blueAt(150), 255);
}

}  // namespace

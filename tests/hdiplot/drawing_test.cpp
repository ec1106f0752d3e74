// Drawings through the driver itself: paper, orientation, margins, pages, and the recorded plot.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;
using testing::ElementsAre;
using testing::HasSubstr;

// A drawing of one line from the origin to (width, height).
std::string LineDrawing(const std::string& width, const std::string& height) {
  return "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n" + width + "\n21\n" + height +
         "\n0\nENDSEC\n0\nEOF\n";
}

// The pages' sizes in whole points, in the order of the file.
std::vector<std::string> MediaBoxes(const std::string& pdf) {
  std::vector<std::string> boxes;
  const std::regex pattern(R"(/MediaBox\s*\[\s*0 0 ([0-9]+)[0-9.]* ([0-9]+)[0-9.]*\s*\])");
  for (std::sregex_iterator match(pdf.begin(), pdf.end(), pattern), end; match != end; ++match) {
    boxes.push_back((*match)[1].str() + "x" + (*match)[2].str());
  }
  return boxes;
}

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
  }

  // The capabilities of the page that `arguments` plot wide.dxf on.
  std::string Capabilities(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"wide.dxf", "-o", "out.pdf", "--record", "out.jsonl"});
    const Outcome plotted = place.RunReal(arguments);
    EXPECT_EQ(plotted.status, 0) << plotted.err;
    const std::string recorded = place.Read("out.jsonl");
    std::string trace = recorded.substr(0, recorded.find('\n') + 1);
    for (const char* index : {"110", "111", "112", "113", "8", "10"}) {
      trace += std::string("{\"call\": \"DevGetCaps\", \"index\": ") + index + "}\n";
    }
    place.Write("caps.jsonl", trace);
    const std::string out = place.RunReal({"caps.jsonl", "-o", "caps.pdf", "--results"}).out;
    return std::regex_replace(out, std::regex(R"(\d+ DevGetCaps (\d+)\n)"), "$1 ");
  }

  Workplace place;
};

std::string TextDrawing() {
  return "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nSTYLE\n0\nSTYLE\n2\nSTANDARD\n70\n0\n3\narial."
         "ttf\n0\nENDTAB\n0\n"
         "ENDSEC\n0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n0\n10\n0\n20\n0\n40\n5\n1\nwords\n0\nENDSEC\n0\nEOF\n";
}

TEST_F(Drawings, NeedNoFontsThatTheyName) {
  place.Write("text.dxf", TextDrawing());
  place.Write("none.conf", "<fontconfig></fontconfig>");
  const Outcome plain = place.RunReal({"text.dxf", "-o", "a.pdf", "-v"});
  EXPECT_THAT(plain.err, HasSubstr("font \"Arial\" is not installed; using \"Liberation Sans\"\n"));
  const Outcome bare = place.RunReal({"text.dxf", "-o", "b.pdf", "-v"},
                                     {{"FONTCONFIG_FILE", place.Path("none.conf").string()}});
  EXPECT_EQ(bare.status, 0);
  EXPECT_THAT(bare.err, HasSubstr("font \"Arial\" is not installed; using \"rowmans\"\n"));

  place.Write("fonts.map", "# ours\narial.ttf = DejaVu Sans, bold\n");
  EXPECT_EQ(place.RunReal({"text.dxf", "-o", "c.pdf", "--font-map", "fonts.map"}).err, "");
  EXPECT_THAT(place.Read("c.pdf"), HasSubstr("DejaVuSans-Bold"));
  place.Write("fonts.map", "arial.ttf = DejaVu Sans\nsimplex\n");
  const Outcome broken = place.RunReal({"text.dxf", "-o", "d.pdf", "--font-map", "fonts.map"});
  EXPECT_EQ(broken.status, 2);
  EXPECT_EQ(broken.err, "hdiplot: fonts.map:2: a line is NAME = FONT\n");
  EXPECT_FALSE(place.Has("d.pdf"));
}

TEST_F(Drawings, HaveTextAsGeometryWhenAskedTo) {
  place.Write("text.dxf", TextDrawing());
  const Outcome plotted = place.RunReal({"text.dxf", "-o", "a.pdf", "--text-as-geometry"});
  EXPECT_EQ(plotted.status, 0);
  EXPECT_THAT(place.Read("a.pdf"), testing::Not(HasSubstr("/Font")));
}

TEST_F(Drawings, DoWithoutAnImageButSaySo) {
  std::string drawing = "0\nSECTION\n2\nENTITIES\n";
  const std::string image = "0\nIMAGE\n10\n0\n20\n0\n11\n1\n21\n0\n12\n0\n22\n1\n13\n9\n23\n9\n340\nA\n";
  drawing += image + image + "0\nENDSEC\n0\nSECTION\n2\nOBJECTS\n0\nIMAGEDEF\n5\nA\n1\nD:\\a.png\n";
  place.Write("image.dxf", drawing + "0\nENDSEC\n0\nEOF\n");
  const Outcome without = place.RunReal({"image.dxf", "-o", "a.pdf", "--quiet"});
  EXPECT_EQ(without.status, 1);
  EXPECT_EQ(without.err, "hdiplot: D:/a.png: no such image file\n");
  EXPECT_TRUE(place.Has("a.pdf"));
  EXPECT_THAT(place.Read("a.pdf"), testing::Not(HasSubstr("/Subtype /Image")));

  using namespace std::string_view_literals;
  constexpr std::string_view kGif = "GIF87a\1\0\1\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\1\0\1\0\0\2\2D\1\0;"sv;
  place.Write("a.png", std::string(kGif));
  const Outcome with = place.RunReal({"image.dxf", "-o", "b.pdf", "--quiet"});
  EXPECT_EQ(with.err, "");
  EXPECT_EQ(with.status, 0);
  EXPECT_THAT(place.Read("b.pdf"), HasSubstr("/Image"));
}

TEST_F(Drawings, EachPageTakesTheOrientationThatFits) {
  EXPECT_EQ(place.RunReal({"wide.dxf", "tall.dxf", "wide.dxf", "-o", "out.pdf"}).status, 0);
  EXPECT_THAT(MediaBoxes(place.Read("out.pdf")), ElementsAre("841x595", "595x841", "841x595"));
  EXPECT_EQ(place.RunReal({"wide.dxf", "-o", "out.pdf", "--portrait", "--paper", "a3"}).status, 0);
  EXPECT_THAT(MediaBoxes(place.Read("out.pdf")), ElementsAre("841x1190"));
}

TEST_F(Drawings, KeepThePapersMarginsOrTheUsers) {
  // At 254 dots an inch a dot is a tenth of a millimetre.
  EXPECT_EQ(Capabilities({"--dpi", "254"}), "2970 2100 170 50 2630 2000 ");
  EXPECT_EQ(Capabilities({"--dpi", "254", "--margins", "1,2,4,8", "--portrait"}),
            "2100 2970 10 20 2050 2870 ");
  EXPECT_EQ(Capabilities({"--dpi", "254", "--margins", "1,2,4,8"}), "2970 2100 10 20 2920 2000 ");
  EXPECT_EQ(Capabilities({"--dpi", "254", "--paper", "600x300", "--margins", "0"}),
            "6000 3000 0 0 6000 3000 ");
  EXPECT_EQ(Capabilities({"--dpi", "254", "--paper", "300x600"}), "6000 3000 50 50 5900 2900 ");
}

TEST_F(Drawings, ThatCannotBePlacedAreRefused) {
  const Outcome paper = place.RunReal({"wide.dxf", "--paper", "A99"});
  EXPECT_EQ(paper.status, 2);
  EXPECT_THAT(paper.err, HasSubstr("no paper \"A99\"; there are: A0, A1"));
  const Outcome margins = place.RunReal({"wide.dxf", "--margins", "105"});
  EXPECT_EQ(margins.status, 2);
  EXPECT_THAT(margins.err, HasSubstr("leave nothing"));
  EXPECT_THAT(place.Names(), ElementsAre("tall.dxf", "wide.dxf"));
}

TEST_F(Drawings, GetAnOutputNamedLikeThemInTheCurrentDirectory) {
  std::filesystem::create_directory(place.Path("in"));
  place.Write("in/plan.v2.dxf", LineDrawing("1", "1"));
  const Outcome outcome = place.RunReal({"in/plan.v2.dxf"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, testing::StartsWith("plan.v2.pdf: 1 page, 1 object, "));
  EXPECT_TRUE(place.Has("plan.v2.pdf"));
}

// A transparent line on a layer, with a link, and a word in strokes.
std::string RichDrawing() {
  return "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n0\nLAYER\n2\nWalls\n70\n0\n62\n-"
         "3\n0\nENDTAB\n0\nENDSEC\n0\n"
         "SECTION\n2\nENTITIES\n0\nLINE\n8\nDoors\n440\n33554559\n10\n0\n20\n0\n11\n90\n21\n9\n1001\nPE_URL\n"
         "1000\nhttp://example.com/"
         "\n0\nTEXT\n8\n0\n10\n0\n20\n0\n40\n5\n1\nwords\n0\nLINE\n8\nWALLS\n67\n1\n10\n"
         "0\n20\n0\n11\n1\n21\n1\n0\nENDSEC\n0\nEOF\n";
}

TEST_F(Drawings, HaveLayersLinksTransparencyAndComments) {
  place.Write("rich.dxf", RichDrawing());
  ASSERT_EQ(place.RunReal({"rich.dxf", "-o", "a.pdf"}).status, 0);
  const std::string all = place.Read("a.pdf");
  for (const char* part : {"(Doors)", "(http://example.com/)", "/ca "}) EXPECT_THAT(all, HasSubstr(part));
  EXPECT_THAT(all, testing::Not(HasSubstr("/Square")));
  ASSERT_EQ(place.RunReal({"rich.dxf", "-o", "b.pdf", "--no-layers", "--no-links", "--shx-comments"}).status,
            0);
  const std::string others = place.Read("b.pdf");
  for (const char* part : {"/OCG", "/Link"}) EXPECT_THAT(others, testing::Not(HasSubstr(part)));
  for (const char* part : {"/Square", "(words)"}) EXPECT_THAT(others, HasSubstr(part));
}

// Of the first page's measure: drawing units a point.
double UnitsPerPoint(const std::string& pdf) {
  std::smatch match;
  const bool found = std::regex_search(pdf, match, std::regex(R"(/X\s*\[\s*<<[^>]*/C\s+([0-9.]+))"));
  return found ? std::stod(match[1]) : 0;
}

TEST_F(Drawings, CanBeMeasured) {
  constexpr double kMillimetresPerPoint = 25.4 / 72;
  const auto measured = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-o", "out.pdf"});
    EXPECT_EQ(place.RunReal(arguments).status, 0);
    return UnitsPerPoint(place.Read("out.pdf")) / kMillimetresPerPoint;
  };
  constexpr double kRoom = 1e-5;  // 0.001 mm on 100 mm
  EXPECT_NEAR(measured({"wide.dxf", "--scale", "1:1"}), 1, kRoom);
  EXPECT_NEAR(measured({"wide.dxf", "--scale", "1:50", "--dpi", "400"}), 50, 50 * kRoom);
  EXPECT_NEAR(measured({"wide.dxf", "tall.dxf", "--scale", "1:2"}), 2, 2 * kRoom);
  // Fitted, and twice as large as the other.
  place.Write("half.dxf", LineDrawing("100", "5"));
  EXPECT_GT(measured({"half.dxf"}), 0.1);
  EXPECT_NEAR(measured({"wide.dxf", "half.dxf"}), 1, kRoom) << "on paper, where the scales differ";
}

TEST_F(Drawings, AreListed) {
  place.Write("rich.dxf", RichDrawing());
  const Outcome listed = place.RunReal({"rich.dxf", "missing.dxf", "--list"});
  EXPECT_EQ(listed.status, 1);
  EXPECT_EQ(
      listed.out,
      "rich.dxf\n  model space: 1 LINE, 1 TEXT\n  paper space: 1 LINE\n"
      "  layouts:\n    Layout1                  no paper, 0 viewports\n  layers:\n"
      "    0                        on\n    Doors                    on\n    Walls                    off\n");
  EXPECT_THAT(listed.err, HasSubstr("missing.dxf"));
  EXPECT_FALSE(place.Has("rich.pdf"));
}

// A model of a line of ten metres, and three sheets: A4 with a viewport at 1:50, A2 upright with a line, and
// A5 with nothing but itself.
std::string LayoutDrawing() {
  std::string text =
      "0|SECTION|2|TABLES|0|TABLE|2|BLOCK_RECORD|0|BLOCK_RECORD|5|A1|2|*Paper_Space|0|BLOCK_RECORD|5|A2|2|"
      "*Paper_Space0|0|BLOCK_RECORD|5|A3|2|*Paper_Space1|0|ENDTAB|0|ENDSEC|0|SECTION|2|BLOCKS|0|BLOCK|2|*"
      "Paper_Space0|10|0|20|0|0|LINE|10|0|20|0|"
      "11|9|21|9|0|ENDBLK|0|BLOCK|2|*Paper_Space1|10|0|20|0|0|VIEWPORT|69|1|0|ENDBLK|0|ENDSEC|0|SECTION|2|"
      "ENTITIES|0|LINE|10|0|20|0|11|10000|21|0|0|VIEWPORT|67|1|69|2|"
      "10|140|20|100|40|250|41|100|12|5000|22|0|45|5000|0|ENDSEC|0|SECTION|2|OBJECTS|"
      "0|LAYOUT|44|210|45|297|73|1|100|AcDbLayout|1|Plan|71|1|330|A1|"
      "0|LAYOUT|44|420|45|594|73|0|100|AcDbLayout|1|Details|71|2|330|A2|"
      "0|LAYOUT|44|148|45|210|73|0|100|AcDbLayout|1|Spare|71|3|330|A3|0|ENDSEC|0|EOF|";
  std::ranges::replace(text, '|', '\n');
  return text;
}

TEST_F(Drawings, HaveTheirLayoutsAsPages) {
  place.Write("sheets.dxf", LayoutDrawing());
  const auto boxes = [this](std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-o", "out.pdf", "--record", "out.jsonl"});
    EXPECT_EQ(place.RunReal(arguments).status, 0);
    const std::string pdf = place.Read("out.pdf");
    EXPECT_EQ(place.RunReal({"out.jsonl", "-o", "again.pdf"}).status, 0);
    EXPECT_EQ(Timeless(place.Read("again.pdf")), Timeless(pdf));
    return MediaBoxes(pdf);
  };
  EXPECT_THAT(boxes({"sheets.dxf", "--layout", "all"}), ElementsAre("841x595", "1190x1683"));
  EXPECT_THAT(boxes({"sheets.dxf", "--layout", "model", "--portrait"}), ElementsAre("595x841"));
  EXPECT_THAT(boxes({"sheets.dxf", "--layout", "details", "--paper", "A3"}), ElementsAre("841x1190"));
  EXPECT_THAT(boxes({"sheets.dxf", "--layout", "PLAN"}), ElementsAre("841x595"));
  EXPECT_NEAR(UnitsPerPoint(place.Read("out.pdf")) / (25.4 / 72), 50, 50e-5);
  EXPECT_THAT(boxes({"sheets.dxf", "--layout", "spare"}), ElementsAre("419x595"));

  // Sheets among pages of the paper that is asked for, which comes back behind them.
  std::string noModel = LayoutDrawing();
  const std::string line = "0\nLINE\n10\n0\n20\n0\n11\n10000\n21\n0\n";
  noModel.erase(noModel.find(line), line.size());
  place.Write("paper.dxf", noModel);
  EXPECT_THAT(boxes({"wide.dxf", "paper.dxf", "wide.dxf"}),
              ElementsAre("841x595", "841x595", "1190x1683", "841x595"));

  const Outcome missing = place.RunReal({"sheets.dxf", "--layout", "Attic", "-o", "none.pdf"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.err, "hdiplot: sheets.dxf: has no layout \"Attic\"; there are: Plan, Details, Spare\n");
  EXPECT_FALSE(place.Has("none.pdf"));
  EXPECT_THAT(place.RunReal({"sheets.dxf", "--list"}).out,
              HasSubstr("Plan                     297 x 210 mm, 1 viewport\n"));
}

TEST_F(Drawings, PlayTheSameFromTheirRecordedTrace) {
  place.Write("rich.dxf", RichDrawing());
  for (const std::vector<std::string>& options :
       std::vector<std::vector<std::string>>{{},
                                             {"--paper", "Letter", "--dpi", "300", "--background", "black"},
                                             {"--margins", "3,4,5,6"},
                                             {"--shx-comments"},
                                             {"--no-layers", "--no-links"}}) {
    std::vector<std::string> arguments = {"wide.dxf", "rich.dxf", "-o", "a.pdf", "--record", "a.jsonl"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ASSERT_EQ(place.RunReal(arguments).status, 0);
    ASSERT_EQ(place.RunReal({"a.jsonl", "-o", "b.pdf"}).status, 0);
    EXPECT_EQ(Timeless(place.Read("b.pdf")), Timeless(place.Read("a.pdf")));
  }
  EXPECT_THAT(place.Read("a.jsonl"), HasSubstr("\"docName\": \"wide.dxf\""));
}

}  // namespace

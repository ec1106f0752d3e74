// Whole drawings: what is walked, in which order and which style.
#include <gtest/gtest.h>

#include "host/hdiplot/plot/walk.h"
#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using hdi::HT_Double_Point;

constexpr double kPi = 3.14159265358979;

InsertEntity Insert(const std::string& block, Vec2 at) {
  InsertEntity insert;
  insert.block = block;
  insert.at = at;
  return insert;
}

Entity Colored(Entity entity, uint32_t index) {
  entity.attributes.color = {EntityColor::Kind::kIndex, index};
  return entity;
}

void ExpectPoint(HT_Double_Point p, double x, double y) {
  EXPECT_NEAR(p.x, x, 1e-6);
  EXPECT_NEAR(p.y, y, 1e-6);
}

TEST(PlotDrawing, KeepsTheOrderAndThePen) {
  Drawing drawing = SheetDrawing();
  for (const uint32_t color : {1U, 1U, 3U, 1U}) {
    drawing.entities.push_back(Colored(Thing(LineEntity{{100, 100}, {200, color * 10.0}}), color));
  }
  const auto calls = PlotOnSheet(drawing);
  std::string names;
  for (const LoggedCall& call : calls) names += call.name + " ";
  EXPECT_EQ(names, "SetPen Polyline Polyline SetPen Polyline SetPen Polyline ");
  EXPECT_EQ(calls[0].pen.color, (Rgb{255, 0, 0}));
  EXPECT_EQ(calls[0].pen.width, 3U);  // 0.25 mm, rounded away from zero
  ExpectPoint(calls[1].points[0][1], 200, 2990);
  EXPECT_EQ(calls[3].pen.color, (Rgb{0, 255, 0}));
}

TEST(PlotDrawing, PensHaveWidthsAndDashesInDots) {
  Drawing drawing = SheetDrawing();
  drawing.lineTypes["DASHED"] = {{60, -30}};
  drawing.lineTypeScale = 2;
  Entity line = Thing(LineEntity{{0, 0}, {9, 9}});
  line.attributes.lineType = "DASHED";
  line.attributes.lineTypeScale = 0.25;
  line.attributes.lineWeight = 200;
  drawing.entities.push_back(line);
  const auto pens = Named(PlotOnSheet(drawing), "SetPen");
  ASSERT_EQ(pens.size(), 1U);
  EXPECT_EQ(pens[0].pen.width, 20U);
  EXPECT_EQ(pens[0].pen.style, hdi::kPenGeometric | hdi::kPenUserStyle);
  EXPECT_EQ(pens[0].pen.entries, (std::vector<uint32_t>{30, 15}));
}

TEST(PlotDrawing, PlacesInserts) {
  Drawing drawing = SheetDrawing();
  drawing.blocks["B"].base = {10, 0};
  drawing.blocks["B"].entities = {Thing(LineEntity{{10, 0}, {20, 5}})};
  InsertEntity insert = Insert("B", {1000, 1000});
  insert.scaleX = 2;
  insert.scaleY = -4;
  insert.rotation = kPi / 2;
  insert.columns = insert.rows = 2;
  insert.columnSpacing = 100;
  insert.rowSpacing = 300;
  drawing.entities.push_back(Thing(insert));
  const auto lines = Named(PlotOnSheet(drawing), "Polyline");
  ASSERT_EQ(lines.size(), 4U);
  // (10, 5) becomes (20, -20) by the scale and (20, 20) by the turn; columns run up, rows to the left.
  ExpectPoint(lines[0].points[0][0], 1000, 2000);
  ExpectPoint(lines[0].points[0][1], 1020, 1980);
  ExpectPoint(lines[1].points[0][0], 1000, 1900);
  ExpectPoint(lines[2].points[0][0], 700, 2000);

  insert = Insert("B", {-500, 100});
  insert.mirrored = true;
  drawing.entities.back() = Thing(insert);
  const auto mirrored = Named(PlotOnSheet(drawing), "Polyline");
  ASSERT_EQ(mirrored.size(), 1U);
  ExpectPoint(mirrored[0].points[0][0], 500, 2900);
  ExpectPoint(mirrored[0].points[0][1], 490, 2895);
}

TEST(PlotDrawing, StopsAtEndlessBlocks) {
  Drawing drawing = SheetDrawing();
  const Entity line = Thing(LineEntity{{0, 0}, {9, 9}});
  drawing.blocks["SELF"].entities = {line, Thing(Insert("SELF", {1, 1}))};
  drawing.blocks["A"].entities = {line, Thing(Insert("B", {1, 1}))};
  drawing.blocks["B"].entities = {line, Thing(Insert("A", {1, 1}))};
  for (const char* block : {"SELF", "A", "MISSING"}) drawing.entities.push_back(Thing(Insert(block, {})));
  EXPECT_EQ(Named(PlotOnSheet(drawing), "Polyline").size(), 3U);

  // Deeper and wider than anybody nests.
  for (int i = 0; i < 30; ++i) {
    drawing.blocks["N" + std::to_string(i)].entities = {line, Thing(Insert("N" + std::to_string(i + 1), {}))};
  }
  drawing.entities = SheetDrawing().entities;
  drawing.entities.push_back(Thing(Insert("N0", {0, 0})));
  InsertEntity many = Insert("EMPTY", {0, 0});
  many.columns = many.rows = 30000;
  drawing.blocks["EMPTY"];
  drawing.entities.push_back(Thing(many));
  EXPECT_EQ(Named(PlotOnSheet(drawing), "Polyline").size(), DrawingWalk::kDeepestInsert);
}

TEST(PlotDrawing, HidesLayersInBlocks) {
  Drawing drawing = SheetDrawing();
  drawing.layers["Off"].off = true;
  drawing.layers["Frozen"].frozen = true;
  drawing.blocks["B"].entities = {Thing(LineEntity{{0, 0}, {1, 9}}),
                                  Thing(LineEntity{{0, 0}, {2, 9}}, "Other"),
                                  Thing(LineEntity{{0, 0}, {3, 9}}, "off")};
  drawing.entities.push_back(Thing(Insert("B", {0, 0}), "Off"));
  const auto ofOff = Named(PlotOnSheet(drawing), "Polyline");
  ASSERT_EQ(ofOff.size(), 1U);
  ExpectPoint(ofOff[0].points[0][1], 2, 2991);

  drawing.entities.back().attributes.layer = "Frozen";
  EXPECT_TRUE(PlotOnSheet(drawing).empty());

  drawing.entities.back().attributes.layer = "Seen";
  PlotOptions options = OneToOne();
  options.skipLayers = {"oth*"};
  EXPECT_EQ(Named(PlotOnSheet(drawing, options), "Polyline").size(), 1U);
  drawing.entities.back().attributes.visible = false;
  EXPECT_TRUE(PlotOnSheet(drawing).empty());
}

TEST(PlotDrawing, TellsLayersTransparencyAndLinksWhereTheyChange) {
  Drawing drawing;
  drawing.layers["A"].alpha = 50;
  const auto linked = [](Entity entity, const char* target) {
    entity.attributes.link = target;
    return entity;
  };
  const Shape line = LineEntity{{0, 0}, {9, 9}};
  Entity clear = linked(Thing(line), "inner");
  clear.attributes.alpha = {EntityAlpha::Kind::kOwn, 200};
  drawing.blocks["B"].entities = {Thing(line), Thing(line, "B"), clear};
  drawing.layers["Off"].off = true;
  drawing.entities = {Thing(line, "A"),
                      Thing(line, "a"),
                      linked(Thing(Insert("B", {0, 0}), "A"), "outer"),
                      linked(Thing(line, "Off"), "unseen"),
                      linked(Thing(line, "B"), "line"),
                      Thing(Insert("B", {0, 0}), "A")};
  std::vector<std::string> course = PlotThrough(drawing, OneToOne()).course;
  std::erase(course, "SetPen");
  EXPECT_EQ(course,
            (std::vector<std::string>{
                "Layer A",         "Alpha 50",       "Polyline",  "Polyline",  "BeginLink outer", "Polyline",
                "Layer B",         "Alpha 255",      "Polyline",  "Layer A",   "Alpha 200",       "Polyline",
                "EndLink",         "BeginLink line", "Layer B",   "Alpha 255", "Polyline",        "EndLink",
                "Layer A",         "Alpha 50",       "Polyline",  "Layer B",   "Alpha 255",       "Polyline",
                "BeginLink inner", "Layer A",        "Alpha 200", "Polyline",  "EndLink"}));
}

TEST(PlotDrawing, ClipsWhatIsLargerThanTheSheet) {
  Drawing drawing;
  drawing.entities = {Thing(LineEntity{{0, 0}, {900, 9}})};
  EXPECT_TRUE(Named(PlotToLog(drawing), "SetClip").empty());
  const auto clips = Named(PlotToLog(drawing, OneToOne()), "SetClip");
  ASSERT_EQ(clips.size(), 2U);  // the page's own and the one that counts
  EXPECT_EQ(clips[1].points[0].size(), 4U);
  ExpectPoint(clips[1].points[0][2], 2000, 3000);
}

TEST(PlotDrawing, PassesOverWhatIsNoNumber) {
  Drawing drawing = SheetDrawing();
  drawing.entities.push_back(Thing(LineEntity{{std::nan(""), 0}, {9, 9}}));
  drawing.entities.push_back(Thing(ArcEntity{{0, 0}, HUGE_VAL, 0, 1}));
  drawing.entities.push_back(Thing(PolylineEntity{{{{0, 0}, 1, 0, 0}, {{1e300, 0}, 1, 0, 0}}, true}));
  drawing.entities.push_back(Thing(LineEntity{{5, 5}, {9, 9}}));
  // The polyline's far end belongs to the extents, and takes everything else off the sheet.
  EXPECT_NO_THROW(static_cast<void>(PlotToLog(drawing, OneToOne())));
  drawing.entities.erase(drawing.entities.end() - 2);
  EXPECT_EQ(Named(PlotOnSheet(drawing), "Polyline").size(), 1U);
}

}  // namespace
}  // namespace hdiplot

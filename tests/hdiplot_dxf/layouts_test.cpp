// Sheets and their viewports, and which entities are on them.
#include <gtest/gtest.h>

#include <numbers>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::ErrorOf;
using dxf_writing::Read;
using dxf_writing::WithEntities;
using dxf_writing::WithObjects;
using dxf_writing::WithSections;

using Skipped = std::map<std::string, uint64_t>;

constexpr const char* kTables =
    "0 TABLE|2 BLOCK_RECORD|5 1|0 BLOCK_RECORD|5 A0|2 *Model_Space|0 BLOCK_RECORD|5 A1|2 *Paper_Space|"
    "0 BLOCK_RECORD|5 a2|2 *Paper_Space0|0 ENDTAB|"
    "0 TABLE|2 LAYER|70 1|0 LAYER|5 b1|2 Walls|70 0|62 3|0 ENDTAB";

constexpr const char* kViewport =
    "67 1|10 100|20 50|40 80|41 40|68 1|69 2|90 32768|12 7|22 8|16 0|26 0|36 1|17 1|27 2|45 20|51 90";

std::string LayoutObject(const std::string& name, const std::string& settings, const std::string& own) {
  return "0 LAYOUT|5 F|102 {ACAD_REACTORS|330 1A|102 }|330 1A|100 AcDbPlotSettings|1 setup|" + settings +
         "|100 AcDbLayout|1 " + name + "|10 1e20|" + own;
}

// What the entity is as a viewport on a sheet; the first viewport there is the sheet's own.
std::vector<Entity> OnSheet(const std::string& viewport) {
  return Read(WithEntities("0 VIEWPORT|67 1|69 1|10 0|20 0|40 9|41 9|45 9|0 VIEWPORT|" + viewport)).entities;
}

TEST(Layouts, HaveTheirPaperAndTheirEntities) {
  const std::string objects =
      LayoutObject("Plan", "40 5|41 6|42 7|43 8|44 210|45 297|46 3|47 4|142 1|143 10|72 1|73 1|74 5",
                   "71 2|330 A2") +
      "|" + LayoutObject("Front", "44 0|45 0|142 1|143 1|72 0|73 0", "71 1|330 a1") + "|" +
      LayoutObject("Model", "44 210|45 297", "71 0|330 A0") + "|" + LayoutObject("Lost", "44 9", "330 FF");
  const Drawing drawing =
      Read(WithObjects(WithSections("", kTables,
                                    "0 BLOCK|2 *Paper_Space0|10 0|20 0|0 VIEWPORT|69 1|0 VIEWPORT|" +
                                        std::string(kViewport) + "|0 XLINE|0 POINT|10 0|20 0|0 ENDBLK",
                                    "0 POINT|10 0|20 0|0 POINT|67 1|10 0|20 0|0 RAY|67 1"),
                       objects));
  ASSERT_EQ(drawing.layouts.size(), 2U);
  const Layout& front = drawing.layouts[0];
  EXPECT_EQ(front.name, "Front");
  EXPECT_FALSE(front.sheet);
  EXPECT_EQ(front.millimetresPerUnit, 25.4);
  EXPECT_EQ(front.skipped, (Skipped{{"RAY", 1}}));
  const Layout& plan = drawing.layouts[1];
  EXPECT_EQ(plan.sheet, (LayoutSheet{297, 210, 6, 5, 8, 7})) << "left, top, right, bottom of the turned one";
  EXPECT_EQ(plan.millimetresPerUnit, 0.1);
  EXPECT_EQ(plan.origin, (Vec2{3, 4}));
  EXPECT_EQ(plan.viewports, 1U);
  EXPECT_EQ(plan.skipped, (Skipped{{"XLINE", 1}}));
  const auto count = [&drawing](const Layout& layout) {
    int entities = 0;
    ForEachEntity(drawing, layout, [&entities](const Entity&) { ++entities; });
    return entities;
  };
  EXPECT_EQ(count(front), 1);
  EXPECT_EQ(count(plan), 2);
}

TEST(Layouts, AreOneWhereAFileHasNoObjects) {
  const Drawing drawing = Read(WithEntities("0 POINT|67 1|10 0|20 0"));
  ASSERT_EQ(drawing.layouts.size(), 1U);
  EXPECT_FALSE(drawing.layouts[0].sheet);
  EXPECT_TRUE(Read(WithEntities("0 POINT|10 0|20 0")).layouts.empty());
  EXPECT_EQ(ErrorOf(WithObjects(WithEntities("0 POINT|10 0|20 0"), "0 LAYOUT|44 wide")),
            "drawing.dxf:20: group 44 takes a number, but its value is \"wide\"");
}

TEST(Viewports, TellTheirViewFrozenLayersAndOutline) {
  const Drawing drawing =
      Read(WithSections("", kTables, "",
                        "0 VIEWPORT|" + std::string(kViewport) +
                            "|331 B1|341 77|340 c1|0 CIRCLE|5 C1|67 1|10 100|20 50|40 20"));
  ASSERT_EQ(drawing.entities.size(), 2U);
  const auto& viewport = std::get<ViewportEntity>(drawing.entities[0].shape);
  EXPECT_EQ(viewport.center, (Vec2{100, 50}));
  EXPECT_EQ(viewport.scale, 2);
  EXPECT_EQ(viewport.viewCenter, (Vec2{7, 8}));
  EXPECT_EQ(viewport.target, (Vec2{1, 2}));
  EXPECT_NEAR(viewport.twist, std::numbers::pi / 2, 1e-12);
  EXPECT_EQ(viewport.frozenLayers, (std::vector<std::string>{"Walls"}));
  ASSERT_EQ(viewport.clip.edges.size(), 1U);
  EXPECT_EQ(std::get<ArcEntity>(viewport.clip.edges[0]).radius, 20);
}

TEST(Viewports, OfOldFilesHaveTheirViewInExtendedData) {
  const std::string viewport =
      "67 1|10 100|20 50|40 80|41 40|68 1|69 2|1001 ACAD|1000 MVIEW|1002 {|1070 16|1010 1|1020 2|1030 3|"
      "1010 0|1020 0|1030 1|1040 1.5|1040 20|1040 7|1040 8|1040 50|1040 0|1040 0|1070 0|1070 100|"
      "1002 {|1003 Walls|1003 Roof|1002 }|1002 }";
  const std::vector<Entity> entities = OnSheet(viewport);
  ASSERT_EQ(entities.size(), 1U);
  const auto& seen = std::get<ViewportEntity>(entities[0].shape);
  EXPECT_EQ(seen.target, (Vec2{1, 2}));
  EXPECT_EQ(seen.twist, 1.5);
  EXPECT_EQ(seen.scale, 2);
  EXPECT_EQ(seen.viewCenter, (Vec2{7, 8}));
  EXPECT_EQ(seen.frozenLayers, (std::vector<std::string>{"Walls", "Roof"}));
  EXPECT_TRUE(OnSheet(viewport.substr(0, viewport.find("|1040 20"))).empty()) << "a list that is cut off";
  EXPECT_TRUE(OnSheet(viewport.substr(0, viewport.find("|1001"))).empty());
}

TEST(Viewports, OffOrFromTheSideAreABorderAndWithoutAViewNothing) {
  const std::string viewport = kViewport;
  EXPECT_EQ(OnSheet(viewport).size(), 1U);
  const struct {
    const char* change;
    size_t entities;
  } kRows[] = {
      {"|90 32768>|90 163840", 1}, {"|90 32768|>|68 0|", 1}, {"|45 20>|45 0", 0},    {"69 2>69 1", 0},
      {"|36 1>|36 0", 1},          {"|16 0>|16 1", 1},       {"|90 32768>|90 1", 1}, {"67 1|>67 0|", 0}};
  for (const auto& row : kRows) {
    const std::string_view text = row.change;
    const auto split = text.find('>');
    std::string changed = viewport;
    if (text.starts_with("|90 32768|")) changed.replace(changed.find("|68 1"), 5, "");
    changed.replace(changed.find(text.substr(0, split)), split, text.substr(split + 1));
    const std::vector<Entity> entities = OnSheet(changed);
    ASSERT_EQ(entities.size(), row.entities) << changed;
    for (const Entity& entity : entities)
      EXPECT_FALSE(std::get<ViewportEntity>(entity.shape).showsModel) << changed;
  }
}

}  // namespace
}  // namespace hdiplot

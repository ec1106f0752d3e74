// Texts: what the driver is given to show, and what is drawn in its place.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "host/hdiplot/plot/extents.h"
#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using hdi::HT_Double_Point;

constexpr double kCapHeight = 1409.0 / 2048;  // of Liberation Sans, in ems

std::vector<LoggedCall> PlotText(const TextEntity& text, const TextStyle& style, bool showsText = true) {
  Drawing drawing = SheetDrawing();
  drawing.textStyles["STANDARD"] = style;
  drawing.entities.push_back(Thing(text));
  return PlotOnSheet(drawing, OneToOne(), showsText);
}

TextEntity TextAt(Vec2 place, const std::string& words) {
  TextEntity text;
  text.text = words;
  text.place = place;
  text.height = 100;
  return text;
}

TextStyle Outlines() {
  TextStyle style;
  style.family = "Liberation Sans";
  return style;
}

Box BoxOf(const std::vector<LoggedCall>& calls) {
  Box box;
  for (const LoggedCall& call : calls) {
    for (const auto& points : call.points) {
      for (const HT_Double_Point& p : points) box.Add({p.x, p.y});
    }
  }
  return box;
}

double WidthOf(FontBook& fonts, const std::string& family, std::u16string_view text) {
  double width = 0;
  for (const char16_t unit : text) width += fonts.FontFor({family, "", "", false, false}).Advance(unit);
  return width;
}

TEST(PlotText, WithOutlinesIsTextForTheDriver) {
  TextEntity text = TextAt({500, 1000}, "Hi g");
  text.widthFactor = 0.8;
  text.oblique = 0.25;
  text.right = {std::cos(0.5236), std::sin(0.5236)};
  text.up = {-text.right.y, text.right.x};
  const auto calls = PlotText(text, Outlines());
  const auto texts = Named(calls, "Text");
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_TRUE(Named(calls, "PolyBezier").empty());
  const LoggedCall& call = texts[0];
  EXPECT_EQ(call.text, u"Hi g");
  EXPECT_EQ(std::u16string(call.font.lfFaceName), u"Liberation Sans");
  EXPECT_EQ(call.font.lfEscapement, 300);
  EXPECT_EQ(call.font.lfHeight, -145);
  EXPECT_NEAR(call.points[0][0].x, 500, 1e-6);
  EXPECT_NEAR(call.points[0][0].y, 2000, 1e-6);
  EXPECT_NEAR(call.numbers[0], 100 / kCapHeight, 0.1);
  EXPECT_NEAR(call.numbers[1], 0.25, 1e-6);
  EXPECT_EQ(call.numbers[2], 1);
  EXPECT_NEAR(call.numbers[3], 0.8, 1e-9);
  ASSERT_EQ(call.advances.size(), 4U);
  EXPECT_NEAR(call.advances[0], 1479.0 / 2048 * call.numbers[0] * 0.8, 0.01);  // of H
}

TEST(PlotText, ThatTheDriverDoesNotShowIsFilledOutlines) {
  const auto calls = PlotText(TextAt({500, 1000}, "HI"), Outlines(), false);
  ASSERT_EQ(Named(calls, "Text").size(), 1U);
  EXPECT_EQ(Named(calls, "FillPath").size(), 2U);
  const Box box = BoxOf(Named(calls, "PolyBezier"));
  EXPECT_NEAR(box.low.y, 1900, 0.5);
  EXPECT_NEAR(box.high.y, 2000, 0.5);
  FontBook fonts;
  EXPECT_GT(box.low.x, 500);
  EXPECT_LT(box.high.x, 500 + 100 * WidthOf(fonts, "Liberation Sans", u"HI"));
}

TEST(PlotText, ThatIsMirroredLiesOverHiddenText) {
  TextEntity text = TextAt({500, 1000}, "HI");
  text.backwards = true;
  const auto calls = PlotText(text, Outlines());
  const auto texts = Named(calls, "Text");
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_NE(texts[0].numbers[2], 1);
  const Box box = BoxOf(Named(calls, "PolyBezier"));
  EXPECT_LT(box.low.x, 500);
  EXPECT_NEAR(box.low.y, 1900, 0.5);
  // The hidden text is upside down, from the upper right corner on.
  EXPECT_EQ(std::abs(texts[0].font.lfEscapement), 1800);
  EXPECT_NEAR(texts[0].points[0][0].x, 500, 1e-6);
  EXPECT_NEAR(texts[0].points[0][0].y, 1900, 1e-6);
}

TEST(PlotText, InStrokesLiesOverHiddenTextOfTheSameWidth) {
  TextEntity text = TextAt({500, 1000}, "HOLE 中");
  text.widthFactor = 0.7;
  TextStyle style;
  style.fontFile = "romans.shx";
  const auto calls = PlotText(text, style);
  const auto texts = Named(calls, "Text");
  ASSERT_FALSE(texts.empty());
  EXPECT_TRUE(texts[0].advances.empty());
  EXPECT_EQ(calls.front().name, "Text");
  EXPECT_FALSE(Named(calls, "PolyBezier").empty());  // of the character without strokes

  FontBook fonts;
  ASSERT_NE(fonts.InterfaceFont(), nullptr);
  std::u16string all;
  double x = 500;
  for (const LoggedCall& call : texts) {
    all += call.text;
    EXPECT_NEAR(call.points[0][0].x, x, 1e-6);
    for (const char16_t unit : call.text) {
      x += fonts.InterfaceFont()->Advance(unit) / fonts.InterfaceFont()->EmSize() * call.numbers[0] *
           call.numbers[3];
    }
  }
  EXPECT_EQ(all, u"HOLE 中");
  const StrokeFont& strokes = *fonts.Find({"", "romans.shx", "", false, false}).stroke;
  double width = 0;
  for (const char16_t unit : all) width += strokes.Advance(unit);
  EXPECT_NEAR(x, 500 + width * 70, 1e-6);
  EXPECT_NEAR(BoxOf(Named(calls, "Polyline")).low.y, 1900, 1e-6);
}

TEST(PlotText, InStrokesHasItsWordsInOneComment) {
  MTextEntity text;
  text.text = "HI{\\C1;HI}\\PHI";
  text.place = {500, 1000};
  text.height = 100;
  Drawing drawing = SheetDrawing();
  drawing.textStyles["STANDARD"].fontFile = "romans.shx";
  drawing.textStyles["OUTLINES"] = Outlines();
  drawing.entities.push_back(Thing(text));
  text.style = "OUTLINES";
  drawing.entities.push_back(Thing(text));

  PlotOptions options = OneToOne();
  const auto comments = [&] {
    std::vector<std::string> course = PlotThrough(drawing, options).course;
    std::erase_if(course, [](const std::string& call) { return !call.starts_with("Comment"); });
    return course;
  };
  EXPECT_TRUE(comments().empty());
  options.strokeComments = true;
  ASSERT_EQ(comments().size(), 1U);
  int left = 0;
  int right = 0;
  int top = 0;
  int bottom = 0;
  char words[16]{};
  ASSERT_EQ(std::sscanf(comments()[0].c_str(), "Comment %d %d %d %d 0 %15[^\n]", &left, &right, &top, &bottom,
                        words),
            5);
  EXPECT_STREQ(words, "HIHI HI");
  // Two lines of capitals, 5/3 of their height apart, and half a pen around.
  EXPECT_EQ(top, 2000 - 2);
  EXPECT_NEAR(bottom, 2000 + 267 + 2, 1);
  FontBook fonts;
  const StrokeFont& strokes = *fonts.Find({"", "romans.shx", "", false, false}).stroke;
  EXPECT_GT(left, 490);
  EXPECT_LT(right, 500 + 200 * (strokes.Advance(u'H') + strokes.Advance(u'I')));
}

TEST(PlotText, InStrokesThatIsTurnedLiesOverHiddenTextThatIsTurned) {
  TextEntity text = TextAt({500, 1000}, "HOLE 中");
  text.right = {0, 1};
  text.up = {-1, 0};
  TextStyle style;
  style.fontFile = "romans.shx";
  const auto calls = PlotText(text, style);
  const auto texts = Named(calls, "Text");
  ASSERT_FALSE(texts.empty());
  FontBook fonts;
  const OutlineFont& interface = *fonts.InterfaceFont();
  const StrokeFont& strokes = *fonts.Find({"", "romans.shx", "", false, false}).stroke;
  double y = 2000;
  for (const LoggedCall& call : texts) {
    EXPECT_EQ(call.font.lfEscapement, 900);
    EXPECT_EQ(std::u16string(call.font.lfFaceName), interface.Selection().lfFaceName);
    ASSERT_EQ(call.advances.size(), call.text.size()) << "or the driver takes its own font, which is level";
    EXPECT_GT(std::abs(call.numbers[2] - 1), 1e-4) << "or it is seen";
    EXPECT_NEAR(call.points[0][0].y, y, 1e-6);
    // As wide as the strokes, by what the driver does and by what it is told.
    double width = 0;
    double advance = 0;
    for (const char16_t unit : call.text) {
      width += interface.Advance(unit) / interface.EmSize() + (call.numbers[2] - 1) / 2;
      y -= strokes.Advance(unit) * 100;
    }
    for (const double units : call.advances) advance += units;
    EXPECT_NEAR(call.points[0][0].y - width * call.numbers[0] * call.numbers[3], y, 1e-6);
    EXPECT_NEAR(call.points[0][0].y - advance, y, 1e-6);
  }
}

TEST(PlotText, WithTrackingIsDrawnAsWideAsItsHiddenText) {
  MTextEntity text;
  text.text = "\\T1.5;HIH";
  text.place = {500, 1000};
  text.height = 100;
  Drawing drawing = SheetDrawing();
  drawing.textStyles["STANDARD"] = Outlines();
  drawing.entities.push_back(Thing(text));
  const auto calls = PlotOnSheet(drawing);
  const auto texts = Named(calls, "Text");
  ASSERT_EQ(texts.size(), 1U);
  EXPECT_EQ(Named(calls, "FillPath").size(), 3U);
  FontBook fonts;
  const double width = 100 * WidthOf(fonts, "Liberation Sans", u"HIH");
  // The driver spaces the characters by half of what is over 1 of the font's size.
  const double spacing = (texts[0].numbers[2] - 1) * texts[0].numbers[0] * 0.5;
  EXPECT_NEAR(width + 3 * spacing, 1.5 * width, 1e-6);
}

TEST(PlotText, TakesItsColoursAndReportsWhatHasNoSize) {
  Drawing drawing = SheetDrawing();
  drawing.textStyles["STANDARD"] = Outlines();
  MTextEntity text;
  text.text = "a{\\C1;b}";
  text.place = {500, 1000};
  text.height = 100;
  drawing.entities.push_back(Thing(text));
  const auto pens = Named(PlotOnSheet(drawing), "SetPen");
  ASSERT_FALSE(pens.empty());
  EXPECT_EQ(pens.back().pen.color, (Rgb{255, 0, 0}));

  text.right = {0, 0};
  drawing.entities = {Thing(text)};
  LoggingDriver driver;
  PlotDevice device(driver);
  Progress progress(ProgressDisplay::kOff);
  FontBook fonts;
  ImageBook images;
  const DrawingPart part = MeasuredPart(drawing, OneToOne(), fonts);
  EXPECT_EQ(
      PlotDrawing(part, OneToOne(), MakeSheet(device), fonts, images, device, progress).leftOut.tooFarOff,
      1U);
}

TEST(PlotText, CountsInTheExtents) {
  Drawing drawing;
  drawing.textStyles["STANDARD"] = Outlines();
  drawing.entities = {Thing(TextAt({500, 1000}, "HI"))};
  FontBook fonts;
  const Box box = MeasuredPart(drawing, {}, fonts).extents;
  EXPECT_NEAR(box.low.x, 500, 1e-6);
  EXPECT_NEAR(box.Width(), 100 * WidthOf(fonts, "Liberation Sans", u"HI"), 1e-6);
  EXPECT_LT(box.low.y, 1000);
  EXPECT_GE(box.high.y, 1100);
}

}  // namespace
}  // namespace hdiplot

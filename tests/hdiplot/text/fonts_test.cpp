// Fonts of a plot: names in drawings, strokes, substitutes, and right-to-left scripts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/text/font_book.h"
#include "hdiplot/text/font_table.h"
#include "hdiplot/text/stroke_glyphs.h"
#include "hdiplot/text/text_shaping.h"
#include "platform/unicode.h"
#include "tests/support/scratch.h"

namespace hdiplot {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

Box BoxOf(const StrokeGlyph& glyph) {
  Box box;
  for (const auto& stroke : glyph.strokes) {
    for (const Vec2& p : stroke) box.Add(p);
  }
  return box;
}

TEST(FontMap, KnowsFilesAndTakesTheUsersWordFirst) {
  FontMap map;
  EXPECT_EQ(map.OfFile("C:\\Fonts\\ARIALBD.TTF"), (MappedFont{"Arial", false, true}));
  EXPECT_EQ(map.OfFile("romanc"), (MappedFont{"timesr", true}));
  EXPECT_EQ(map.OfFile("romanc.ttf"), std::nullopt);
  const scratch::Directory place;
  map.Read(place.Write("fonts.map",
                       "\xEF\xBB\xBFtimes.ttf = Verdana\n# ours\n\n"
                       "  Roman C.shx = stroke:ScriptC # curly\r\n"
                       "swiss = DejaVu Sans , Bold,italic\n"
                       "arial.ttf=Verdana\n"));
  EXPECT_EQ(map.OfFile("fonts/ROMAN C.SHX"), (MappedFont{"scriptc", true}));
  EXPECT_EQ(map.OfFile("Swiss.ttf"), (MappedFont{"DejaVu Sans", false, true, true}));
  EXPECT_EQ(map.OfFamily("SWISS"), map.OfFile("swiss.shx"));
  EXPECT_EQ(map.OfFile("Arial.ttf")->name, "Verdana");
  EXPECT_EQ(map.OfFile("arial")->name, "Arial");
  EXPECT_EQ(map.OfFile("times.ttf")->name, "Verdana") << "behind a byte order mark";
}

TEST(FontMap, TellsWhereALineIsBroken) {
  const scratch::Directory place;
  for (const auto& [line, message] : {std::pair{"arial.ttf", "NAME = FONT"},
                                      {"= Arial", "no name"},
                                      {"a.ttf =", "no font"},
                                      {"a.ttf = Arial, heavy", "\"heavy\" is neither"},
                                      {"a.shx = stroke:nothing", "no stroke font \"nothing\""},
                                      {"a.shx = stroke:rowmans, bold", "\"bold\" is neither"},
                                      {"a.shx = stroke:../rowmans", "no stroke font"}}) {
    FontMap map;
    const std::string file = place.Write("fonts.map", "a = Arial\n" + std::string(line) + "\n");
    const auto read = [&] { map.Read(file); };
    EXPECT_THAT(read, ThrowsMessage<FileError>(AllOf(HasSubstr(":2: "), HasSubstr(message)))) << line;
    EXPECT_EQ(map.OfFamily("a"), std::nullopt);
  }
  EXPECT_THROW(FontMap().Read(place.Path("none.map")), FileError);
}

TEST(StrokeFont, StandsOnTheBaseLineAsHighAsItsCapitals) {
  for (const StrokeFileEntry& entry : StrokeFileTable()) {
    if (entry.isFamily) continue;
    const StrokeFont font(std::string(entry.font), entry.monospaced, nullptr);
    ASSERT_NE(font.Strokes(u'0'), nullptr) << entry.font;
    EXPECT_NEAR(BoxOf(*font.Strokes(u'0')).high.y, 1, 0.01) << entry.font;
    EXPECT_NEAR(BoxOf(*font.Strokes(u'0')).low.y, 0, 0.01) << entry.font;
    EXPECT_EQ(font.Advance(u'i') == font.Advance(u'W'), entry.monospaced) << entry.font;
  }
}

// A blank, and an L whose second stroke follows a line end.
TEST(HersheyFont, IsReadAsFarAsItIsWhole) {
  const scratch::Directory folder;
  const scratch::Variable variable("HERSHEY_FONTS_DIR", folder.Path().c_str());
  const std::string whole = "  699  1JZ\n  700  6HVIFI[ R\nI[T[\n";
  for (const std::string rest : {"", "  701  3JZR", "  702  ?JZRFR[", "7"}) {
    folder.Write("small.jhf", whole + rest);
    const std::vector<StrokeGlyph> glyphs = ReadHersheyFont("small");
    ASSERT_EQ(glyphs.size(), 2) << rest;
    EXPECT_EQ(glyphs[0].advance * 21, 16);
    ASSERT_EQ(glyphs[1].strokes.size(), 2);
    EXPECT_EQ(glyphs[1].strokes[0].size() * 10 + glyphs[1].strokes[1].size(), 22);
    EXPECT_EQ(glyphs[1].strokes[0][0].y, 1);
    EXPECT_EQ(glyphs[1].strokes[1][1].x * 21, 12);
  }
}

TEST(StrokeFont, DrawsLettersBeyondAscii) {
  const StrokeFont font("rowmans", false, nullptr);
  for (const char16_t unit : std::u16string(u"°±Ø⌀×ÄéñÇŽőΑΩαωςάЙЁАЩЪЯйёэъяµ–’")) {
    ASSERT_NE(font.Strokes(unit), nullptr) << static_cast<uint32_t>(unit);
    EXPECT_FALSE(font.Strokes(unit)->strokes.empty()) << static_cast<uint32_t>(unit);
  }
  EXPECT_EQ(font.Advance(u'Ä'), font.Advance(u'A'));
  EXPECT_GT(BoxOf(*font.Strokes(u'Ä')).high.y, 1.05);
  EXPECT_LT(BoxOf(*font.Strokes(u'Ç')).low.y, -0.1);
  EXPECT_NEAR(BoxOf(*font.Strokes(u'э')).high.y, BoxOf(*font.Strokes(u'е')).high.y, 0.01);
  EXPECT_EQ(font.Strokes(u'中'), nullptr);
  EXPECT_GT(font.Advance(u'中'), 0);
}

TEST(FontBook, GivesOneFontForAChoiceAndNamesStandInsOnce) {
  std::vector<std::string> messages;
  FontBook book(
      {}, [&](const std::string& name, const std::string& by) { messages.push_back(name + ", " + by); });
  const FontChoice arial{"Arial", "", "", true, false};
  const PlotFont font = book.Find(arial);
  ASSERT_NE(font.outline, nullptr);
  EXPECT_EQ(font.outline->Face().FullName(), u"Liberation Sans Bold");
  EXPECT_EQ(&book.FontFor({"", "arialbd.ttf", "", false, false}), font.outline);
  EXPECT_EQ(&book.FontFor(arial), font.outline);
  EXPECT_EQ(book.Find({"", "mystery.shx", "", false, false}).outline, nullptr);
  EXPECT_THAT(messages, ElementsAre("Arial, Liberation Sans", "mystery.shx, rowmans"));
}

TEST(FontBook, TakesTheFontThatIsInTheFileOfAStyle) {
  FontBook book;
  for (const auto& [file, name] :
       {std::pair{"C:\\Fonts\\dejavusanscondensed-boldoblique.TTF", u"DejaVu Sans Condensed Bold Oblique"},
        {"DejaVuSans-ExtraLight.ttf", u"DejaVu Sans ExtraLight"},
        {"wqy-zenhei.ttc", u"WenQuanYi Zen Hei"}}) {
    EXPECT_EQ(book.Find({"", file, "", false, false}).outline->Face().FullName(), name) << file;
  }
}

TEST(FontBook, DrawsWhatStrokesLackWithTheBigFont) {
  FontBook book;
  const PlotFont font = book.Find({"", "txt.shx", "gbcbig.shx", false, false});
  ASSERT_NE(font.stroke->BigFont(), nullptr);
  EXPECT_EQ(font.stroke->BigFont()->Face().Family(), u"WenQuanYi Zen Hei");
  EXPECT_FALSE(font.stroke->BigFont()->Outline(u'中').empty());
  EXPECT_DOUBLE_EQ(font.stroke->Advance(u'中'), 1);
}

// The offset to the right of the top of a letter, compared with an upright font.
double Lean(FontBook& book, const std::string& family, char16_t unit) {
  const auto top = [&](bool italic) {
    hdi::GlyphPoint highest{0, -1};
    for (const auto& contour : book.Find({family, "", "", false, italic}).outline->Outline(unit)) {
      for (const hdi::GlyphPoint& p : contour) highest = p.y > highest.y ? p : highest;
    }
    return highest.x;
  };
  return top(true) - top(false);
}

TEST(OutlineFont, LeansWhereTheDriverSlants) {
  FontBook book;
  EXPECT_GT(Lean(book, "WenQuanYi Zen Hei", u'中'), 0.2);
  // The upright face of a family that also has an italic one.
  EXPECT_EQ(Lean(book, "WenQuanYi Zen Hei", u'س'), 0);
}

TEST(OutlineFont, TakesLettersThatItLacksFromAnotherFace) {
  FontBook book;
  const OutlineFont& font = *book.Find({"Webdings", "", "", false, false}).outline;
  EXPECT_EQ(font.FaceOf(u'0'), &font.Face());
  for (const char16_t unit : std::u16string(u"éא")) {
    EXPECT_EQ(font.Drawn(unit), unit);
    EXPECT_TRUE(font.FaceOf(unit)->HasCharacter(unit));
  }
}

// The parts as passed to the driver, and as they look when it has reversed right-to-left runs.
TEST(TextShaping, StandsInVisualOrderBehindTheDriver) {
  const auto parts = [](std::u16string_view text) {
    std::string words;
    for (const DriverPart& part : DriverParts(text)) {
      words += "[" + hdi::ToUtf8(part.text) + ">" + hdi::ToUtf8(part.visual) + "]";
    }
    return words;
  };
  EXPECT_EQ(parts(u"plain (text) 12"), "[plain (text) 12>plain (text) 12]");
  EXPECT_EQ(parts(u"אבג דה"), "[אבג דה>הד גבא]");
  EXPECT_EQ(parts(u"a אב c"), "[a אב>a בא][ c> c]");
  EXPECT_EQ(parts(u"אב abc 12 גד "), "[ גד> דג][ abc 12 אב> abc 12 בא]");
  EXPECT_EQ(parts(u"אב (גד) 3.5"), "[3.5 (גד) אב>3.5 (דג) בא]");
}

TEST(TextShaping, JoinsArabicLettersThatTheFontHas) {
  const auto all = [](char16_t) { return true; };
  EXPECT_EQ(JoinedLetters(u"سلام x", all), u"\uFEB3\uFEFC\uFEE1 x");
  EXPECT_EQ(JoinedLetters(u"سلام", [](char16_t unit) { return unit != 0xFEFC; }), u"سلام");
}

}  // namespace
}  // namespace hdiplot

// The codes of single lines and of paragraphs.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "hdiplot/text/font_book.h"
#include "hdiplot/text/mtext_parser.h"
#include "hdiplot/text/text_block.h"
#include "platform/unicode.h"

namespace hdiplot {
namespace {

std::string Dump(LineMarks marks) {
  return std::string(marks.under ? "u" : "") + (marks.over ? "o" : "") + (marks.strike ? "k" : "");
}

std::string Dump(const std::vector<MarkedText>& pieces) {
  std::string words;
  for (const MarkedText& piece : pieces) words += "[" + Dump(piece.marks) + "]" + hdi::ToUtf8(piece.text);
  return words;
}

TEST(TextLineCodes, BecomeCharactersAndMarks) {
  const std::pair<const char*, const char*> cases[] = {
      {"%%c5 %%D %%p1 50%%%", "[]Ø5 ° ±1 50%"},
      {"a%%ub%%oc%%Ud%%kE", "[]a[u]b[uo]c[o]d[ok]E"},
      {"%%u%%uplain", "[]plain"},
      {"%%065%%127%%128%%150%%233%%007", "[]A°±–é"},
      {"%%12 %%999 %%z %%", "[]12 999 z %%"},  // no codes
      {"a^ b^Ic^Jd^Me^Xf^", "[]a^b c de^Xf^"},
      {"100% of %d", "[]100% of %d"},
      {"", "[]"},
  };
  for (const auto& [text, wanted] : cases) EXPECT_EQ(Dump(ReadTextLine(text)), wanted) << text;
}

std::string Dump(const EntityColor& color) {
  constexpr const char* kKinds[] = {"layer", "block", "index", "true"};
  return fmt::format("{}{:x}", kKinds[static_cast<int>(color.kind)], color.value);
}

// Rounded to significant digits.
std::string Number(double value) { return fmt::format("{}", std::round(value * 1000) / 1000); }

// Differences from `start` in brackets, then the text.
std::string Dump(const MTextSpan& span, const TextLook& start) {
  std::string words = Dump(span.marks);
  const auto add = [&](bool changed, const std::string& word) { words += changed ? " " + word : ""; };
  const TextLook& look = span.look;
  add(look.height != start.height, "H" + Number(look.height));
  add(look.widthFactor != start.widthFactor, "W" + Number(look.widthFactor));
  add(look.tracking != start.tracking, "T" + Number(look.tracking));
  add(look.oblique != start.oblique, "Q" + Number(look.oblique));
  add(look.color.has_value(), look.color ? Dump(*look.color) : "");
  add(span.level != SpanLevel::kBottom, "A" + std::to_string(static_cast<int>(span.level)));
  const FontChoice& font = look.font;
  add(font != start.font, font.family + "/" + font.fontFile + "/" + font.bigFontFile + "/" +
                              (font.bold ? "b" : "") + (font.italic ? "i" : ""));
  std::string text = hdi::ToUtf8(span.text);
  if (span.stack) {
    text += "<" + hdi::ToUtf8(span.stack->upper) + "^/#"[static_cast<int>(span.stack->form)] +
            hdi::ToUtf8(span.stack->lower) + ">";
  }
  return (words.empty() ? "" : "[" + words + "]") + text;
}

std::string DumpMText(const std::string& text) {
  TextLook start;
  start.height = 2;
  start.font.fontFile = "txt";
  std::string words;
  for (const MTextParagraph& paragraph : ParseMText(text, start)) {
    if (!words.empty()) words += "¶";
    for (const MTextSpan& span : paragraph.spans) words += "·" + Dump(span, start);
    if (paragraph.spans.empty()) words += "·";
  }
  return words;
}

TEST(MTextCodes, BecomeSpans) {
  const std::pair<const char*, const char*> cases[] = {
      {R"(a\Pb\Nc^Jd^M^Je\P\P)", "·a¶·b¶·c¶·d¶·e¶·¶·"},
      {R"(\{x\}\\y\~z %%d%%c^I.)", "·{x}\\y\u00a0z °Ø·\t·."},
      {R"(\La\lb\O\Kc\o\kd%%ue)", "·[u]a·b·[ok]c·d·[u]e"},
      {R"(\H5;a\H0.5x;b\h{\H1x;\C1;c}d)", "·[ H5]a·[ H2.5]bh·[ H2.5 index1]c·[ H2.5]d"},
      {R"(\W0.5;a\T2;b\Q30;c\A1;d)", "·[ W0.5]a·[ W0.5 T2]b·[ W0.5 T2 Q0.524]c·[ W0.5 T2 Q0.524 A1]d"},
      {R"(\C0;a\C256;b\c255;c\c16711680;d)", "·[ block7]a·[ layer7]b·[ trueff0000]c·[ trueff]d"},
      {R"({\fArial Narrow|b1|i1|c0|p34;a}{\Fromans.shx,big;b}\FisoCP;c)",
       "·[ Arial Narrow///bi]a·[ /romans.shx/big/]b·[ /isoCP//]c"},
      {R"(1\S1/2;\S+0.1^ -0.2;\S3#4;\S2^;\S\P1\/2/%%c;\Sx;)", "·1·<1/2>·<+0.1^-0.2>·<3#4>·<2^>·<P1/2/Ø>·x"},
      {R"(\U+00e9\U+20\M+1abcd\zq)", "·éU+20\ufffdzq"},
      // Values that are missing, invalid or unterminated.
      {R"(\H;a\Hb\H-1;c\H0x;d\fArial)", "·ab·c·dArial"},
      {R"(}a{{b}\C2;c)", "·ab·[ index2]c"},
      {R"(a\)", "·a\\"},
      {R"(a\S1/2)", "·a·<1/2>"},
      {"", "·"},
  };
  for (const auto& [text, wanted] : cases) EXPECT_EQ(DumpMText(text), wanted) << text;
}

TEST(MTextCodes, FormatParagraphs) {
  const auto dump = [](const ParagraphFormat& format) {
    std::string words = fmt::format("{} {} {} {}", Number(format.first), Number(format.left),
                                    Number(format.right), "-lcrjd"[static_cast<int>(format.align)]);
    for (const TabStop& tab : format.tabs) words += " " + Number(tab.at) + "lcr"[static_cast<int>(tab.kind)];
    return words;
  };
  const std::vector<MTextParagraph> paragraphs =
      ParseMText(R"(\pxi-2,l3.5,r1,qj,t4,c8,r12,z;a\Pb{\pqc;c}\Pd\P\psm1.5,i*,q*;e\P\p*,se;f)", {});
  const char* wanted[] = {"-2 3.5 1 j 4l 8c 12r", "-2 3.5 1 c 4l 8c 12r", "-2 3.5 1 j 4l 8c 12r",
                          "0 3.5 1 - 4l 8c 12r", "0 0 0 -"};
  ASSERT_EQ(paragraphs.size(), std::size(wanted));
  for (size_t i = 0; i < paragraphs.size(); ++i) EXPECT_EQ(dump(paragraphs[i].format), wanted[i]) << i;
}

// Must terminate, in little memory, for any input.
TEST(MTextCodes, HostileTextsAreRead) {
  const auto repeated = [](std::string_view part) {
    std::string text;
    for (int i = 0; i < 100000; ++i) text += part;
    return text;
  };
  FontBook fonts;
  for (const char* part : {"{", "}", "\\H100x;a", "\\W1e9x;a", "\\P", "\\pt1,2,3", "\\pi1e300;a^I", "{\\C1;",
                           "\\S^", "a ", "%%u%", "\\L^I", "\xff\xf0"}) {
    MTextEntity entity;
    entity.text = repeated(part);
    entity.wrapWidth = 10;
    for (const TextPiece& piece : LayOutMText(entity, {}, fonts).pieces) {
      ASSERT_TRUE(IsFinite(piece.at) && std::isfinite(piece.width)) << part;
    }
  }
}

}  // namespace
}  // namespace hdiplot

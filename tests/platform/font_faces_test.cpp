// The system's faces: selection, metrics and font data. The fonts are those of tests/fonts.conf, which Wine
// offers, too. On Linux every case runs in its own process, since the list of faces is built once.
#include "platform/font_faces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "platform/unicode.h"
#include "tests/support/log_font.h"

#if !defined(_WIN32)
#include <fontconfig/fontconfig.h>

#include "platform/font_names.h"
#include "platform/font_services.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"
#include "tests/support/font_files.h"
#include "tests/support/scratch.h"
#endif

namespace hdi {
namespace {

std::string NameOf(const FontFace* face) { return face == nullptr ? "none" : ToUtf8(face->FullName()); }

TEST(FontFaces, MatchTheRequest) {
  const struct {
    const char16_t* family;
    FontStyle style;
    const char* name;
  } kRows[] = {
    {u"liberation SANS", {700, true}, "Liberation Sans Bold Italic"},
    {u"Liberation Sans", {0}, "Liberation Sans"},
    {u"Liberation Sans", {600}, "Liberation Sans Bold"},
    {u"Tahoma", {700, true}, "Tahoma Bold"},
    {u"DejaVu Sans", {200}, "DejaVu Sans"},  // its typographic family has a light face
    {u"DejaVu Sans Light", {}, "DejaVu Sans ExtraLight"},
    {u"DejaVu Sans Condensed", {700}, "DejaVu Sans Condensed Bold"},
    {u"DejaVu Serif Bold Italic", {}, "DejaVu Serif Bold Italic"},  // by full name
    {u"@WenQuanYi Zen Hei Sharp", {}, "WenQuanYi Zen Hei Sharp"},
    {u"Wingdings", {}, "Wingdings"},
    {u"Liberation Sans", {400, false, 161}, "Liberation Sans"},
    {u"Liberation Sans", {400, false, 134}, "WenQuanYi Zen Hei"},  // lacks the letters
    {u"Liberation Sans", {400, false, 222}, "Liberation Sans"},    // so do all others
    // Missing families.
    {u"Arial", {700}, "Liberation Sans Bold"},
    {u"", {400, false, 136}, "WenQuanYi Zen Hei"},
#if !defined(_WIN32)
    {u"文泉驿等宽正黑", {}, "WenQuanYi Zen Hei Mono"},
    {u"Wingdings", {400, false, 0}, "Wingdings"},
    {u"Times New Roman", {400, true}, "Liberation Serif Italic"},
    {u"Arial", {400, false, 134}, "WenQuanYi Zen Hei"},
    {u"No Such Family", {400, false, 2}, "Wingdings"},
    {u"No Such Family", {400, false, 1, 0x12}, "DejaVu Serif"},
    {u"No Such Family", {700, true, 1, 0x01}, "DejaVu Sans Mono Bold Oblique"},
    {u"No Such Family", {400, false, 1, 0x30}, "DejaVu Sans Mono"},
#endif
  };
  for (const auto& row : kRows) {
    const FontFace* face = FindFace(MakeLogFont(row.family, row.style));
    ASSERT_EQ(NameOf(face), row.name) << ToUtf8(row.family);
    for (const LOGFONTW& asked : {MakeLogFont(u"x"), MakeLogFont(u"", {700, true, 134})}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face) << row.name;
    }
  }
  EXPECT_TRUE(HasFamily(u"DEJAVU sans"));
  EXPECT_FALSE(HasFamily(u"Arial"));
  // A face without italics is still selected for italics.
  EXPECT_EQ(SelectingFont(MakeLogFont(u"x", {400, true}), *FindFace(MakeLogFont(u"Tahoma"))).lfItalic, 1);
}

TEST(FontFaces, SubstituteMissingCharacters) {
  const LOGFONTW like = MakeLogFont(u"Liberation Sans", {700});
  EXPECT_EQ(NameOf(FindFaceWith(u'中', like)), "WenQuanYi Zen Hei");
  EXPECT_EQ(NameOf(FindFaceWith(u'ع', like)), "DejaVu Sans Bold");
  EXPECT_EQ(NameOf(FindFaceWith(0xF0FE, like)), "Wingdings");
  EXPECT_EQ(FindFaceWith(0xD800, like), nullptr);
  EXPECT_EQ(FindFaceWith(0xFFFF, like), nullptr);

  const FontFace* symbols = FindFace(MakeLogFont(u"Wingdings"));
  EXPECT_TRUE(symbols->HasCharacter(0xF0FC));
  EXPECT_TRUE(symbols->HasCharacter(0xFC));
  EXPECT_FALSE(symbols->HasCharacter(u'中'));
  EXPECT_EQ(symbols->Outline(0xFC).size(), symbols->Outline(0xF0FC).size());
  // Symbols do not substitute for letters.
  EXPECT_TRUE(FindFaceWith(u'A', MakeLogFont(u"Wingdings"))->HasCharacter(u'é'));
}

TEST(FontFaces, HaveMetricsAndOutlinesInEms) {
  const FontFace* face = FindFace(MakeLogFont(u"DejaVu Sans"));
  EXPECT_DOUBLE_EQ(face->CapHeight(), 1493.0 / 2048);
  EXPECT_NEAR(face->Ascent(), 0.76, 0.001);
  EXPECT_NEAR(face->Descent(), -0.208, 0.001);
  EXPECT_DOUBLE_EQ(face->Advance(u'A'), 1401.0 / 2048);
  EXPECT_DOUBLE_EQ(face->Advance(0xD800), face->Advance(0xFFFF));
  // A monospaced font stores only its first advances.
  EXPECT_DOUBLE_EQ(FindFace(MakeLogFont(u"Liberation Mono"))->Advance(u'ж'), 1229.0 / 2048);
  // Members of a collection have their own characters.
  EXPECT_EQ(FindFace(MakeLogFont(u"WenQuanYi Zen Hei Mono"))->Advance(u'i'), 0.5);

  EXPECT_TRUE(face->Outline(u' ').empty());
  const std::vector<GlyphContour> outline = face->Outline(u'Ä');  // a composite of two glyphs
  EXPECT_EQ(outline.size(), face->Outline(u'A').size() + 2);
  double highest = 0;
  for (const GlyphContour& contour : outline) {
    ASSERT_EQ(contour.size() % 3, 1U);
    EXPECT_EQ(contour.front().x, contour.back().x);
    EXPECT_EQ(contour.front().y, contour.back().y);
    for (const GlyphPoint& point : contour) highest = std::max(highest, point.y);
  }
  EXPECT_NEAR(highest, 0.913, 0.001);

  // The ring starts and ends with control points, so it starts halfway between them.
  const std::vector<GlyphContour> bullseye = face->Outline(u'ʘ');
  ASSERT_EQ(bullseye.size(), 3U);
  EXPECT_NEAR(bullseye[1].front().x, 1155.5 / 2048, 0.5 / 2048);
  EXPECT_NEAR(bullseye[1].front().y, 1192.0 / 2048, 0.5 / 2048);
}

#if !defined(_WIN32)

constexpr const char* kCollection = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kPlain = "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf";
constexpr const char* kSymbols = "/usr/share/wine/fonts/webdings.ttf";

// Empty if there is none.
std::string Data(const LOGFONTW& font, uint32_t table) {
  const auto platformFont = SystemFontServices().CreateFontIndirect(font);
  const uint32_t size = platformFont->GetFontData(table, nullptr, 0);
  if (size == kNoFontData) return {};
  std::string bytes(size + 1, 'x');
  EXPECT_EQ(platformFont->GetFontData(table, reinterpret_cast<uint8_t*>(bytes.data()), size + 1), size);
  EXPECT_EQ(bytes.back(), 'x');
  bytes.pop_back();
  return bytes;
}

// A system with only the fonts in the folder.
class SmallSystem {
 public:
  const scratch::Directory folder;

 private:
  const scratch::Variable configuration_{
      "FONTCONFIG_FILE", folder.Write("fonts.conf", "<fontconfig><dir>" + folder.Path() + "</dir><cachedir>" +
                                                        folder.Path("cache") + "</cachedir></fontconfig>")};
};

TEST(Fontconfig, EveryFaceCanBeSelected) {
  const auto& faces = FaceList::Get().Faces();
  ASSERT_GT(faces.size(), 30U);
  std::set<std::u16string> names;
  for (const auto& face : faces) {
    SCOPED_TRACE(NameOf(face.get()));
    EXPECT_TRUE(names.insert(face->FullName()).second);
    for (const LOGFONTW& asked : {MakeLogFont(u"x"), MakeLogFont(u"", {700, true, 134, 0x31})}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face.get());
    }
    // The first member of the collection with that name must be the face itself.
    const FontFile file(face->Path());
    const std::vector<uint32_t> offsets = file.MemberOffsets();
    const auto isNamedSo = [&](uint32_t offset) {
      const auto families = FontNames(file.Read(*file.Member(offset).Find(FontTag("name"))), 1);
      return std::ranges::find(families, face->Family()) != families.end();
    };
    EXPECT_EQ(std::ranges::find_if(offsets, isNamedSo) - offsets.begin(), face->MemberIndex());
  }
}

TEST(Fontconfig, HasAnInterfaceFont) {
  const auto interfaceFont = SystemFontServices().DefaultInterfaceFont();
  ASSERT_TRUE(interfaceFont);
  EXPECT_EQ(std::u16string(interfaceFont->lfFaceName), u"DejaVu Sans");
  EXPECT_EQ(interfaceFont->lfHeight, -11);
  EXPECT_EQ(interfaceFont->lfWeight, 400);
}

TEST(FontData, IsTheFileOrTheCollection) {
  const LOGFONTW plain = MakeLogFont(u"Liberation Sans");
  EXPECT_EQ(Data(plain, kWholeFontFile), font_files::Read(kPlain));
  EXPECT_EQ(Data(plain, kFontCollection), "");
  EXPECT_EQ(Data(plain, 0x64616568).size(), 54U);  // "head"
  EXPECT_EQ(Data(plain, 0x58585858), "");

  // A member is also available as a plain font with the same tables.
  const LOGFONTW member = MakeLogFont(u"WenQuanYi Zen Hei Mono");
  EXPECT_EQ(Data(member, kFontCollection), font_files::Read(kCollection));
  const scratch::Directory folder;
  const FontFile alone(folder.Write("alone.ttf", Data(member, kWholeFontFile)));
  const FontFile collection(kCollection);
  const FontMember source = collection.Member(collection.MemberOffsets().at(1));
  const FontMember copy = alone.Member(0);
  EXPECT_EQ(copy.tables.size(), source.tables.size());
  for (const FontTable& table : copy.tables) {
    const bool isHead = table.tag == FontTag("head");  // holds the checksum of the whole file
    EXPECT_EQ(alone.Read(table) == collection.Read(*source.Find(table.tag)), !isHead) << table.tag;
  }
  const std::vector<uint8_t> bytes = alone.Read(0, alone.Size());
  uint32_t sum = 0;
  for (size_t i = 0; i < bytes.size(); i += 4) sum += ReadU32(bytes, i);
  EXPECT_EQ(sum, 0xB1B0AFBA);

  const std::pair<LOGFONTW, int32_t> kAngles[] = {{plain, 0},
                                                  {MakeLogFont(u"Liberation Sans", {400, true}), -120},
                                                  {MakeLogFont(u"Liberation Serif", {400, true}), -163},
                                                  {MakeLogFont(u"Tahoma", {400, true}), 0}};
  for (const auto& [font, angle] : kAngles) {
    EXPECT_EQ(SystemFontServices().CreateFontIndirect(font)->ItalicAngle(), angle);
  }
}

TEST(FontData, IsMissingWithoutTheFile) {
  const SmallSystem system;
  const std::string kept = system.folder.Write("a.ttf", font_files::Read(kPlain));
  const std::string cut = system.folder.Write("b.ttf", font_files::Read(kSymbols));
  system.folder.Write("copy.ttf", font_files::Read(kPlain));
  system.folder.Write("junk.ttf", "no font");
  ASSERT_NE(FcConfigGetCurrent(), nullptr);  // lists the fonts present now
  std::filesystem::resize_file(cut, 2000);

  ASSERT_EQ(FaceList::Get().Faces().size(), 1U);
  const LOGFONTW font = MakeLogFont(u"Liberation Sans");
  const FontFace* face = FindFace(font);
  EXPECT_EQ(face->Outline(u'A').size(), 2U);
  EXPECT_EQ(FindFace(MakeLogFont(u"Webdings")), face);

  std::filesystem::resize_file(kept, 60000);
  const auto platformFont = SystemFontServices().CreateFontIndirect(font);
  EXPECT_EQ(platformFont->GetFontData(kWholeFontFile, nullptr, 0), kNoFontData);
  EXPECT_EQ(platformFont->ItalicAngle(), std::nullopt);
  std::filesystem::remove(kept);
  EXPECT_EQ(Data(font, kWholeFontFile), "");
}

TEST(Fontconfig, WorksWithoutFaces) {
  const SmallSystem system;
  const LOGFONTW font = MakeLogFont(u"Arial");
  EXPECT_EQ(FindFace(font), nullptr);
  EXPECT_EQ(FindFaceWith(u'A', font), nullptr);
  EXPECT_FALSE(HasFamily(u"Arial"));
  EXPECT_EQ(SystemFontServices().CreateFontIndirect(font), nullptr);
  EXPECT_EQ(SystemFontServices().DefaultInterfaceFont(), std::nullopt);
}

#endif

}  // namespace
}  // namespace hdi

// The faces that fontconfig offers, beyond what font_faces_test.cpp asks of every platform, and the data of
// their files. Every case runs in a process of its own, as the list of faces is made once.
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/font_faces.h"
#include "platform/font_names.h"
#include "platform/font_services.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"
#include "tests/support/font_files.h"
#include "tests/support/log_font.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

constexpr const char* kCollection = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kPlain = "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf";
constexpr const char* kSymbols = "/usr/share/wine/fonts/webdings.ttf";

std::string NameOf(const FontFace* face) { return face == nullptr ? "none" : ToUtf8(face->FullName()); }

// Empty when there is none.
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

// A system of its own for one test, with the fonts that lie in the folder.
class SmallSystem {
 public:
  const scratch::Directory folder;

 private:
  const scratch::Variable configuration_{
      "FONTCONFIG_FILE", folder.Write("fonts.conf", "<fontconfig><dir>" + folder.Path() + "</dir><cachedir>" +
                                                        folder.Path("cache") + "</cachedir></fontconfig>")};
};

TEST(Fontconfig, EachFaceIsSelectedByAFontOfItsOwn) {
  const auto& faces = FaceList::Get().Faces();
  ASSERT_GT(faces.size(), 30U);
  std::set<std::u16string> names;
  for (const auto& face : faces) {
    SCOPED_TRACE(NameOf(face.get()));
    EXPECT_TRUE(names.insert(face->FullName()).second);
    for (const LOGFONTW& asked : {MakeLogFont(u"x"), MakeLogFont(u"", {700, true, 134, 0x31})}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face.get());
    }
    // The first member of the collection that has the name must be the face's own.
    const FontFile file(face->Path());
    const std::vector<uint32_t> offsets = file.MemberOffsets();
    const auto isNamedSo = [&](uint32_t offset) {
      const auto families = FontNames(file.Read(*file.Member(offset).Find(FontTag("name"))), 1);
      return std::ranges::find(families, face->Family()) != families.end();
    };
    EXPECT_EQ(std::ranges::find_if(offsets, isNamedSo) - offsets.begin(), face->MemberIndex());
  }
}

TEST(Fontconfig, FollowsTheRequest) {
  const struct {
    const char16_t* family;
    FontStyle style;
    const char* name;
  } kRows[] = {
      {u"文泉驿等宽正黑", {}, "WenQuanYi Zen Hei Mono"},
      {u"Wingdings", {400, false, 0}, "Wingdings"},
      // Families that are not there.
      {u"Times New Roman", {400, true}, "Liberation Serif Italic"},
      {u"Arial", {400, false, 134}, "WenQuanYi Zen Hei"},
      {u"No Such Family", {400, false, 2}, "Wingdings"},
      {u"No Such Family", {400, false, 1, 0x12}, "DejaVu Serif"},
      {u"No Such Family", {700, true, 1, 0x01}, "DejaVu Sans Mono Bold Oblique"},
      {u"No Such Family", {400, false, 1, 0x30}, "DejaVu Sans Mono"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(NameOf(FindFace(MakeLogFont(row.family, row.style))), row.name) << ToUtf8(row.family);
  }
  EXPECT_TRUE(HasFamily(u"文泉驿正黑"));
  EXPECT_EQ(NameOf(FindFaceWith(u'A', MakeLogFont(u"Wingdings"))), "DejaVu Sans");

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

  // A member is also to be had as a font of its own.
  const LOGFONTW member = MakeLogFont(u"WenQuanYi Zen Hei Mono");
  EXPECT_EQ(Data(member, kFontCollection), font_files::Read(kCollection));
  const scratch::Directory folder;
  const FontGlyphs alone(folder.Write("alone.ttf", Data(member, kWholeFontFile)), 0);
  const FontFace* face = FindFace(member);
  EXPECT_EQ(alone.Outline(alone.GlyphOf(u'中')).size(), face->Outline(u'中').size());
  EXPECT_EQ(alone.Advance(alone.GlyphOf(u'A')), face->Advance(u'A'));

  const std::pair<LOGFONTW, int32_t> kAngles[] = {{plain, 0},
                                                  {MakeLogFont(u"Liberation Sans", {400, true}), -120},
                                                  {MakeLogFont(u"Liberation Serif", {400, true}), -163},
                                                  {MakeLogFont(u"Tahoma", {400, true}), 0}};
  for (const auto& [font, angle] : kAngles) {
    EXPECT_EQ(SystemFontServices().CreateFontIndirect(font)->ItalicAngle(), angle);
  }
}

TEST(FontData, EndsWithTheFile) {
  const SmallSystem system;
  const std::string kept = system.folder.Write("a.ttf", font_files::Read(kPlain));
  const std::string cut = system.folder.Write("b.ttf", font_files::Read(kSymbols));
  system.folder.Write("copy.ttf", font_files::Read(kPlain));
  system.folder.Write("junk.ttf", "no font");
  ASSERT_NE(FcConfigGetCurrent(), nullptr);  // lists what is there now
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

TEST(Fontconfig, NeedsNoFaces) {
  const SmallSystem system;
  const LOGFONTW font = MakeLogFont(u"Arial");
  EXPECT_EQ(FindFace(font), nullptr);
  EXPECT_EQ(FindFaceWith(u'A', font), nullptr);
  EXPECT_FALSE(HasFamily(u"Arial"));
  EXPECT_EQ(SystemFontServices().CreateFontIndirect(font), nullptr);
  EXPECT_EQ(SystemFontServices().DefaultInterfaceFont(), std::nullopt);
}

// Whatever the bytes are, nothing is read that is not there; the sanitizers look on.
TEST(FontFiles, MayHoldAnything) {
  const scratch::Directory folder;
  const std::string font = font_files::Read(kSymbols);
  // The same font as the only member of a collection, but for the last two, which are not there.
  const std::string collection =
      std::string("ttcf\0\1\0\0\0\0\0\3\0\0\0\x18\0\0\xFF\xFF\xFF\xFF\xFF\xFF", 24);
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    std::string bytes = round % 2 == 0 ? font : collection + font;
    for (int changes = 0; changes < 4; ++changes) {
      bytes[random() % (changes < 2 ? 400 : bytes.size())] = static_cast<char>(random());
    }
    if (round % 5 == 0) bytes.resize(random() % bytes.size());
    const std::string path = folder.Write("font.ttf", bytes);
    const FontFile file(path);
    for (const uint32_t offset : file.MemberOffsets()) {
      const FontMember member = file.Member(offset);
      if (const auto* table = member.Find(FontTag("name"))) {
        for (const auto& name : FontNames(file.Read(*table), 1)) EXPECT_LE(name.size(), bytes.size());
      }
      EXPECT_LE(PlainFont(file, member).size(), 2 * bytes.size());
    }
    const FontGlyphs glyphs(path, 0);
    for (char16_t unit = 0x20; unit < 0x100; ++unit) {
      for (const GlyphContour& contour : glyphs.Outline(glyphs.GlyphOf(unit))) {
        EXPECT_EQ(contour.size() % 3, 1U);
      }
    }
  }
}

}  // namespace
}  // namespace hdi

// The faces that the system offers, how they are chosen, and the data of their files. Every case runs in a
// process of its own, as the list of faces is made once.
#include "platform/font_services.h"

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/font_faces.h"
#include "platform/font_names.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"
#include "tests/support/scratch.h"

namespace {

using hdi::FontFace;
using hdi::LOGFONTW;
using std::u16string;

constexpr const char* kCollection = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc";
constexpr const char* kPlain = "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf";
constexpr const char* kSymbols = "/usr/share/wine/fonts/webdings.ttf";

LOGFONTW Font(const u16string& family, int32_t weight = 400, bool isItalic = false, uint8_t charSet = 1,
              uint8_t pitchAndFamily = 0) {
  LOGFONTW font = {};
  font.lfWeight = weight;
  font.lfItalic = isItalic ? 1 : 0;
  font.lfCharSet = charSet;
  font.lfPitchAndFamily = pitchAndFamily;
  std::copy(family.begin(), family.end(), font.lfFaceName);
  return font;
}

std::string NameOf(const FontFace* face) { return face == nullptr ? "none" : hdi::ToUtf8(face->FullName()); }

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Empty when there is none.
std::string Data(const LOGFONTW& font, uint32_t table) {
  const auto platformFont = hdi::SystemFontServices().CreateFontIndirect(font);
  const uint32_t size = platformFont->GetFontData(table, nullptr, 0);
  if (size == hdi::kNoFontData) return {};
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

TEST(FontFaces, EachIsSelectedByAFontOfItsOwn) {
  const auto& faces = hdi::FaceList::Get().Faces();
  ASSERT_GT(faces.size(), 30U);
  std::set<u16string> names;
  for (const auto& face : faces) {
    SCOPED_TRACE(NameOf(face.get()));
    EXPECT_TRUE(names.insert(face->FullName()).second);
    for (const LOGFONTW& asked : {Font(u"x"), Font(u"", 700, true, 134, 0x31)}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face.get());
    }
    // The first member of the collection that has the name must be the face's own.
    const hdi::FontFile file(face->Path());
    const std::vector<uint32_t> offsets = file.MemberOffsets();
    const auto isNamedSo = [&](uint32_t offset) {
      const auto families = hdi::FontNames(file.Read(*file.Member(offset).Find(hdi::FontTag("name"))), 1);
      return std::find(families.begin(), families.end(), face->Family()) != families.end();
    };
    EXPECT_EQ(std::find_if(offsets.begin(), offsets.end(), isNamedSo) - offsets.begin(), face->MemberIndex());
  }
  // A face without italics stays the one for italics.
  EXPECT_EQ(SelectingFont(Font(u"x", 400, true), *hdi::FindFace(Font(u"Tahoma"))).lfItalic, 1);
}

// Beyond what font_faces_test.cpp asks of every platform.
TEST(FontFaces, FollowTheRequestOnLinux) {
  const struct {
    LOGFONTW font;
    const char* name;
  } kRows[] = {
      {Font(u"文泉驿等宽正黑"), "WenQuanYi Zen Hei Mono"},
      {Font(u"Wingdings", 400, false, 0), "Wingdings"},
      // Families that are not there.
      {Font(u"Times New Roman", 400, true), "Liberation Serif Italic"},
      {Font(u"Arial", 400, false, 134), "WenQuanYi Zen Hei"},
      {Font(u"No Such Family", 400, false, 2), "Wingdings"},
      {Font(u"No Such Family", 400, false, 1, 0x12), "DejaVu Serif"},
      {Font(u"No Such Family", 700, true, 1, 0x01), "DejaVu Sans Mono Bold Oblique"},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(NameOf(FindFace(row.font)), row.name) << hdi::ToUtf8(row.font.lfFaceName);
  }
  EXPECT_TRUE(hdi::HasFamily(u"文泉驿正黑"));
  EXPECT_EQ(NameOf(hdi::FindFaceWith(u'A', Font(u"Wingdings"))), "DejaVu Sans");

  const auto interfaceFont = hdi::SystemFontServices().DefaultInterfaceFont();
  ASSERT_TRUE(interfaceFont);
  EXPECT_EQ(u16string(interfaceFont->lfFaceName), u"DejaVu Sans");
  EXPECT_EQ(interfaceFont->lfHeight, -11);
  EXPECT_EQ(interfaceFont->lfWeight, 400);
}

TEST(FontData, IsTheFileOrTheCollection) {
  const LOGFONTW plain = Font(u"Liberation Sans");
  EXPECT_EQ(Data(plain, hdi::kWholeFontFile), ReadFile(kPlain));
  EXPECT_EQ(Data(plain, hdi::kFontCollection), "");
  EXPECT_EQ(Data(plain, 0x64616568).size(), 54U);  // "head"
  EXPECT_EQ(Data(plain, 0x58585858), "");

  // A member is also to be had as a font of its own.
  const LOGFONTW member = Font(u"WenQuanYi Zen Hei Mono");
  EXPECT_EQ(Data(member, hdi::kFontCollection), ReadFile(kCollection));
  const scratch::Directory folder;
  const hdi::FontGlyphs alone(folder.Write("alone.ttf", Data(member, hdi::kWholeFontFile)), 0);
  const FontFace* face = hdi::FindFace(member);
  EXPECT_EQ(alone.Outline(alone.GlyphOf(u'中')).size(), face->Outline(u'中').size());
  EXPECT_EQ(alone.Advance(alone.GlyphOf(u'A')), face->Advance(u'A'));

  const auto angle = [](const LOGFONTW& font) {
    return hdi::SystemFontServices().CreateFontIndirect(font)->ItalicAngle();
  };
  EXPECT_EQ(angle(plain), 0);
  EXPECT_EQ(angle(Font(u"Liberation Sans", 400, true)), -120);
  EXPECT_EQ(angle(Font(u"Liberation Serif", 400, true)), -163);
  EXPECT_EQ(angle(Font(u"Tahoma", 400, true)), 0);
}

TEST(FontData, EndsWithTheFile) {
  const SmallSystem system;
  const std::string kept = system.folder.Write("a.ttf", ReadFile(kPlain));
  const std::string cut = system.folder.Write("b.ttf", ReadFile(kSymbols));
  system.folder.Write("copy.ttf", ReadFile(kPlain));
  system.folder.Write("junk.ttf", "no font");
  ASSERT_NE(FcConfigGetCurrent(), nullptr);  // lists what is there now
  std::filesystem::resize_file(cut, 2000);

  ASSERT_EQ(hdi::FaceList::Get().Faces().size(), 1U);
  const LOGFONTW font = Font(u"Liberation Sans");
  const FontFace* face = hdi::FindFace(font);
  EXPECT_EQ(face->Outline(u'A').size(), 2U);
  EXPECT_EQ(hdi::FindFace(Font(u"Webdings")), face);

  std::filesystem::resize_file(kept, 60000);
  const auto platformFont = hdi::SystemFontServices().CreateFontIndirect(font);
  EXPECT_EQ(platformFont->GetFontData(hdi::kWholeFontFile, nullptr, 0), hdi::kNoFontData);
  EXPECT_EQ(platformFont->ItalicAngle(), std::nullopt);
  std::filesystem::remove(kept);
  EXPECT_EQ(Data(font, hdi::kWholeFontFile), "");
}

TEST(FontFaces, NoneAreNeeded) {
  const SmallSystem system;
  const LOGFONTW font = Font(u"Arial");
  EXPECT_EQ(hdi::FindFace(font), nullptr);
  EXPECT_EQ(hdi::FindFaceWith(u'A', font), nullptr);
  EXPECT_FALSE(hdi::HasFamily(u"Arial"));
  EXPECT_EQ(hdi::SystemFontServices().CreateFontIndirect(font), nullptr);
  EXPECT_EQ(hdi::SystemFontServices().DefaultInterfaceFont(), std::nullopt);
}

// Whatever the bytes are, nothing is read that is not there; the sanitizers look on.
TEST(FontFiles, MayHoldAnything) {
  const scratch::Directory folder;
  const std::string font = ReadFile(kSymbols);
  // The same font as the only member of a collection, but for the last two, which are not there.
  std::string collection("ttcf\0\1\0\0\0\0\0\3\0\0\0\x18\0\0\xFF\xFF\xFF\xFF\xFF\xFF", 24);
  collection += font;
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    std::string bytes = round % 2 == 0 ? font : collection;
    for (int changes = 0; changes < 4; ++changes) {
      bytes[random() % (changes < 2 ? 400 : bytes.size())] = static_cast<char>(random());
    }
    if (round % 5 == 0) bytes.resize(random() % bytes.size());
    const std::string path = folder.Write("font.ttf", bytes);
    const hdi::FontFile file(path);
    for (const uint32_t offset : file.MemberOffsets()) {
      const hdi::FontMember member = file.Member(offset);
      if (const auto* table = member.Find(hdi::FontTag("name"))) {
        for (const u16string& name : hdi::FontNames(file.Read(*table), 1))
          EXPECT_LE(name.size(), bytes.size());
      }
      EXPECT_LE(PlainFont(file, member).size(), 2 * bytes.size());
    }
    const hdi::FontGlyphs glyphs(path, 0);
    for (char16_t unit = 0x20; unit < 0x100; ++unit) {
      for (const hdi::GlyphContour& contour : glyphs.Outline(glyphs.GlyphOf(unit))) {
        EXPECT_EQ(contour.size() % 3, 1U);
      }
    }
  }
}

}  // namespace

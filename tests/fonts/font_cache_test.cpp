// The font cache with fake font services, font names and a fake subsetter.
#include "fonts/font_cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/library.h"
#include "platform/host_library.h"
#include "tests/support/font_files.h"
#include "tests/support/log_font.h"
#include "tests/support/saved_document.h"

namespace hdi {

// Replaces the host library's function: a font's name is its face name, and "nameless" has none.
bool GetFontFullName(const LOGFONTW* font, std::u16string& name) {
  const std::u16string face = font->lfFaceName;
  if (face == u"nameless") return false;
  name = face;
  return true;
}

namespace {

using testing::ElementsAre;

struct FakeServices final : FontServices {
  struct Font final : PlatformFont {
    explicit Font(const FakeServices& services) : all(services) {}
    uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
      const std::string& data = table == kWholeFontFile ? all.file : all.collection;
      if (data.empty()) return kNoFontData;
      if (buffer == nullptr) return static_cast<uint32_t>(data.size() + all.excess);
      return static_cast<uint32_t>(data.copy(reinterpret_cast<char*>(buffer), size));
    }
    std::optional<int32_t> ItalicAngle() const override { return all.italicAngle; }
    const FakeServices& all;
  };

  std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& /*font*/) const override {
    ++created;
    return canCreate ? std::make_unique<Font>(*this) : nullptr;
  }
  std::optional<LOGFONTW> DefaultInterfaceFont() const override { return std::nullopt; }

  std::string file;
  std::string collection;
  size_t excess = 0;  // by which the reported size exceeds the bytes read
  std::optional<int32_t> italicAngle;
  bool canCreate = true;
  mutable int created = 0;
};

// The fake subsetter's result, none if empty, and its calls: the size of the source, the arguments from flags
// to encoding, and the characters to keep.
std::string subsetPackage;
std::vector<std::vector<uint32_t>> subsetCalls;

// Returns 0 for failure and 1000 for success, since only the package may count.
uint32_t Subset(const uint8_t* /*source*/, uint32_t sourceSize, uint8_t** package, uint32_t* packageSize,
                uint32_t* written, uint16_t flags, uint16_t collectionIndex, uint16_t format,
                uint16_t language, uint16_t platform, uint16_t encoding, const uint16_t* keepList,
                uint16_t keepCount, AllocateFunction allocate, ReallocateFunction reallocate,
                FreeFunction /*free*/, void* /*reserved*/) {
  subsetCalls.push_back({sourceSize, flags, collectionIndex, format, language, platform, encoding});
  subsetCalls.back().insert(subsetCalls.back().end(), keepList, keepList + keepCount);
  if (subsetPackage.empty()) return 0;
  const size_t size = subsetPackage.size();
  *package = static_cast<uint8_t*>(reallocate(allocate(1), size + 5));
  std::ranges::copy(subsetPackage, *package);
  *packageSize = static_cast<uint32_t>(size + 5);
  *written = static_cast<uint32_t>(size);
  return 1000;
}

CreateFontPackageFunction* FindSubset() { return Subset; }
CreateFontPackageFunction* FindNothing() { return nullptr; }

class FontCacheTest : public testing::Test {
 protected:
  FontCacheTest() {
    subsetPackage.clear();
    subsetCalls.clear();
    CharacterSet characters;
    for (const char16_t unit : std::u16string_view(u"zA\xD834\xDD1EgA")) characters.Add(unit);
    usage_[u"Serif"] = characters;
    cache_.SetCharacters(usage_);
    EXPECT_FALSE(whole_.empty());
  }

  const engine::Font* Handle(std::u16string_view face, const FontStyle& style = {}) {
    const LOGFONTW font = MakeLogFont(face, style);
    return cache_.GetFontHandle(document_, &font);
  }

  bool NeedsSyntheticItalic(std::u16string_view face, bool isItalic = true) {
    return cache_.NeedsSyntheticItalic(MakeLogFont(face, {.isItalic = isItalic}));
  }

  std::vector<std::string> SavedFontFiles() {
    cache_.Clear();
    engine::SavedDocument saved(document_);
    std::vector<std::string> files;
    for (auto& object : saved.Objects()) {
      if (object.isDictionary() && object.hasKey("/FontFile2")) {
        files.push_back(engine::StreamData(object.getKey("/FontFile2")));
      }
    }
    return files;
  }

  const std::string whole_ = font_files::ReadLiberationSerif();
  // Valid like a subset, but distinguishable from the whole font.
  const std::string subset_ = whole_ + std::string(4, '\0');
  FakeServices services_;
  FontUsage usage_;
  engine::Library library_;
  engine::Document document_;
  FontCache cache_{services_, FindSubset};
};

TEST_F(FontCacheTest, SubsetsAFontOncePerName) {
  services_.file = whole_;
  services_.excess = 10;
  subsetPackage = subset_;
  const engine::Font* font = Handle(u"Serif");
  ASSERT_NE(font, nullptr);
  EXPECT_EQ(Handle(u"Serif", {.height = 90}), font);
  const size_t size = whole_.size();  // as read, not as reported
  EXPECT_THAT(subsetCalls,
              ElementsAre(ElementsAre(size, 1, 0, 0, 0, 3, 65535, 'A', 'g', 'z', 0xD834, 0xDD1E)));
  EXPECT_EQ(SavedFontFiles(), std::vector<std::string>{subset_});
}

TEST_F(FontCacheTest, ReturnsNullWithoutCharactersOrData) {
  EXPECT_EQ(Handle(u"Serif"), nullptr);
  services_.collection = font_files::Collection({font_files::NamedFont({{1, 1, "Sans"}})});
  EXPECT_EQ(Handle(u"Serif"), nullptr);
  services_.canCreate = false;
  EXPECT_EQ(Handle(u"Serif"), nullptr);
  services_.created = 0;

  usage_[u"nameless"] = {};
  cache_.SetCharacters(usage_);
  EXPECT_EQ(cache_.GetFontHandle(document_, nullptr), nullptr);
  EXPECT_EQ(Handle(u"nameless"), nullptr);
  EXPECT_EQ(Handle(u"Other"), nullptr);
  EXPECT_EQ(services_.created, 0);
  EXPECT_TRUE(subsetCalls.empty());
}

TEST_F(FontCacheTest, EmbedsTheWholeFontWithoutASubset) {
  services_.file = whole_;
  EXPECT_NE(Handle(u"Serif"), nullptr);
  EXPECT_EQ(subsetCalls.size(), 1U);
  FontCache withoutSubsetter(services_, FindNothing);
  withoutSubsetter.SetCharacters(usage_);
  const LOGFONTW serif = MakeLogFont(u"Serif");
  EXPECT_NE(withoutSubsetter.GetFontHandle(document_, &serif), nullptr);
  withoutSubsetter.Clear();
  EXPECT_EQ(SavedFontFiles(), (std::vector<std::string>{whole_, whole_}));
}

TEST_F(FontCacheTest, RefusedSubsetBlocksTheNameUnlikeARefusedFont) {
  services_.file = "no font";
  EXPECT_EQ(Handle(u"Serif"), nullptr);
  services_.file = whole_;
  EXPECT_NE(Handle(u"Serif"), nullptr);

  usage_[u"Barred"] = usage_[u"Serif"];
  cache_.SetCharacters(usage_);
  subsetPackage = "no font";
  EXPECT_EQ(Handle(u"Barred"), nullptr);
  subsetPackage = subset_;
  EXPECT_EQ(Handle(u"Barred"), nullptr);
  EXPECT_EQ(subsetCalls.size(), 4U);  // every run tries again
}

TEST_F(FontCacheTest, SubsetsACollectionMemberByIndex) {
  services_.collection = font_files::Collection(
      {font_files::NamedFont({{1, 1, "Serif Bold"}}), font_files::NamedFont({{1, 1, "Serif"}})});
  subsetPackage = subset_;
  EXPECT_NE(Handle(u"Serif"), nullptr);
  const size_t size = services_.collection.size();
  EXPECT_THAT(subsetCalls,
              ElementsAre(ElementsAre(size, 5, 1, 0, 0, 3, 65535, 'A', 'g', 'z', 0xD834, 0xDD1E)));
}

TEST_F(FontCacheTest, EmbedsTheWholeCollectionWithoutASubset) {
  services_.collection = font_files::Collection({whole_, font_files::NamedFont({{1, 1, "Serif"}})});
  const engine::Font* font = Handle(u"Serif");
  ASSERT_NE(font, nullptr);
  std::vector<uint16_t> codes;
  font->AppendCodes(u"A", codes);
  EXPECT_NE(codes, std::vector<uint16_t>{0});  // the second face has no characters
  EXPECT_EQ(SavedFontFiles(), std::vector<std::string>{services_.collection});
}

TEST_F(FontCacheTest, CachesSyntheticItalicByFaceName) {
  services_.italicAngle = 0;
  EXPECT_FALSE(NeedsSyntheticItalic(u"Upright", false));
  EXPECT_EQ(services_.created, 0);
  EXPECT_TRUE(NeedsSyntheticItalic(u"Upright"));
  services_.italicAngle = -120;
  EXPECT_TRUE(NeedsSyntheticItalic(u"Upright"));
  EXPECT_FALSE(NeedsSyntheticItalic(u"Slanted"));
  const std::u16string longName(32, u'x');  // fills the field, unterminated
  EXPECT_FALSE(NeedsSyntheticItalic(longName));
  services_.italicAngle.reset();
  EXPECT_FALSE(NeedsSyntheticItalic(u"Bitmap"));
  services_.italicAngle = 0;
  EXPECT_FALSE(NeedsSyntheticItalic(u"Bitmap"));
  EXPECT_TRUE(NeedsSyntheticItalic(longName.substr(1)));
  EXPECT_EQ(services_.created, 5);
}

}  // namespace
}  // namespace hdi

// Fonts of a job, with font services, font names and a subsetter that the tests make up.
#include "fonts/font_cache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>

#include "engine/document.h"
#include "platform/host_library.h"
#include "tests/support/font_files.h"

namespace hdi {

// In place of the host library's own: a font's name is its face's, and "nameless" has none.
bool GetFontFullName(const LOGFONTW* font, std::u16string& name) {
  const std::u16string face = font->lfFaceName;
  if (face == u"nameless") return false;
  name = face;
  return true;
}

namespace {

struct FakeServices final : FontServices {
  struct Font final : PlatformFont {
    explicit Font(const FakeServices& services) : all(services) {}
    uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
      const std::string& data = table == kWholeFontFile ? all.file : all.collection;
      if (data.empty()) return kNoFontData;
      if (buffer != nullptr) std::memcpy(buffer, data.data(), size);
      return static_cast<uint32_t>(data.size());
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
  std::optional<int32_t> italicAngle;
  bool canCreate = true;
  mutable int created = 0;
};

// The subsetter's calls and what it gives; no package when that is empty. Its result is upside down, as only
// the package counts.
struct Subsetting {
  struct Call {
    uint32_t sourceSize;
    std::vector<uint16_t> numbers;  // flags to encoding
    std::vector<uint16_t> keepList;
  };
  std::vector<Call> calls;
  std::string package;
} subsetting;

uint32_t Subset(const uint8_t* /*source*/, uint32_t sourceSize, uint8_t** package, uint32_t* packageSize,
                uint32_t* written, uint16_t flags, uint16_t collectionIndex, uint16_t format,
                uint16_t language, uint16_t platform, uint16_t encoding, const uint16_t* keepList,
                uint16_t keepCount, AllocateFunction allocate, ReallocateFunction reallocate,
                FreeFunction /*free*/, void* /*reserved*/) {
  subsetting.calls.push_back({sourceSize,
                              {flags, collectionIndex, format, language, platform, encoding},
                              {keepList, keepList + keepCount}});
  if (subsetting.package.empty()) return 0;
  const size_t size = subsetting.package.size();
  *package = static_cast<uint8_t*>(reallocate(allocate(1), size + 5));
  std::ranges::copy(subsetting.package, *package);
  *packageSize = static_cast<uint32_t>(size + 5);
  *written = static_cast<uint32_t>(size);
  return 1000;
}

CreateFontPackageFunction* FindSubset() { return Subset; }
CreateFontPackageFunction* FindNothing() { return nullptr; }

LOGFONTW Named(std::u16string_view face, uint8_t italic = 0) {
  LOGFONTW font{};
  std::ranges::copy(face, font.lfFaceName);
  font.lfItalic = italic;
  return font;
}

struct StringSink final : engine::BlockSink {
  bool WriteBlock(const void* data, size_t size) override {
    bytes.append(static_cast<const char*>(data), size);
    return true;
  }
  std::string bytes;
};

class FontCacheTest : public testing::Test {
 protected:
  FontCacheTest() {
    subsetting = {};
    CharacterSet characters;
    for (const char16_t unit : std::u16string_view(u"zA\xD834\xDD1EgA")) characters.Add(unit);
    usage_[u"Serif"] = characters;
    cache_.SetCharacters(usage_);
  }
  void SetUp() override {
    if (whole_.empty()) GTEST_SKIP() << "no LiberationSerif-Regular.ttf";
  }

  const engine::Font* Handle(const LOGFONTW& font) { return cache_.GetFontHandle(document_, &font); }

  // The embedded font files.
  std::vector<std::string> SavedFontFiles() {
    cache_.Clear();
    StringSink sink;
    document_.Save(sink);
    QPDF saved;
    saved.processMemoryFile("saved", sink.bytes.data(), sink.bytes.size());
    std::vector<std::string> files;
    for (auto& object : saved.getAllObjects()) {
      if (!object.isDictionary() || !object.hasKey("/FontFile2")) continue;
      const auto data = object.getKey("/FontFile2").getStreamData();
      files.emplace_back(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    }
    return files;
  }

  const std::string whole_ = font_files::ReadLiberationSerif();
  // As good as a subset, and to be told from the whole font.
  const std::string subset_ = whole_ + std::string(4, '\0');
  FakeServices services_;
  FontUsage usage_;
  engine::Library library_;
  engine::Document document_;
  FontCache cache_{services_, FindSubset};
};

TEST_F(FontCacheTest, AFontIsSubsetOnceForItsName) {
  services_.file = whole_;
  subsetting.package = subset_;
  const engine::Font* font = Handle(Named(u"Serif"));
  ASSERT_NE(font, nullptr);
  LOGFONTW larger = Named(u"Serif");
  larger.lfHeight = 90;
  EXPECT_EQ(Handle(larger), font);
  ASSERT_EQ(subsetting.calls.size(), 1U);
  EXPECT_EQ(subsetting.calls[0].sourceSize, whole_.size());
  EXPECT_EQ(subsetting.calls[0].numbers, (std::vector<uint16_t>{1, 0, 0, 0, 3, 65535}));
  EXPECT_EQ(subsetting.calls[0].keepList, (std::vector<uint16_t>{u'A', u'g', u'z', 0xD834, 0xDD1E}));
  EXPECT_EQ(SavedFontFiles(), std::vector<std::string>{subset_});
}

TEST_F(FontCacheTest, WithoutARecordedNameThereIsNoFont) {
  services_.file = whole_;
  usage_[u"nameless"] = {};
  cache_.SetCharacters(usage_);
  EXPECT_EQ(cache_.GetFontHandle(document_, nullptr), nullptr);
  EXPECT_EQ(Handle(Named(u"nameless")), nullptr);
  EXPECT_EQ(Handle(Named(u"Other")), nullptr);
  EXPECT_EQ(Handle(Named(u"Other")), nullptr);
  EXPECT_EQ(services_.created, 0);
}

TEST_F(FontCacheTest, WithoutASubsetTheWholeFontIsEmbedded) {
  services_.file = whole_;
  EXPECT_NE(Handle(Named(u"Serif")), nullptr);
  FontCache withoutSubsetter(services_, FindNothing);
  withoutSubsetter.SetCharacters(usage_);
  const LOGFONTW serif = Named(u"Serif");
  EXPECT_NE(withoutSubsetter.GetFontHandle(document_, &serif), nullptr);
  EXPECT_EQ(subsetting.calls.size(), 1U);
  withoutSubsetter.Clear();
  EXPECT_EQ(SavedFontFiles(), (std::vector<std::string>{whole_, whole_}));
}

TEST_F(FontCacheTest, ARefusedSubsetBarsTheNameAndARefusedWholeFontDoesNot) {
  services_.file = "no font";
  EXPECT_EQ(Handle(Named(u"Serif")), nullptr);
  services_.file = whole_;
  EXPECT_NE(Handle(Named(u"Serif")), nullptr);

  usage_[u"Barred"] = usage_[u"Serif"];
  cache_.SetCharacters(usage_);
  subsetting.package = "no font";
  EXPECT_EQ(Handle(Named(u"Barred")), nullptr);
  subsetting.package = subset_;
  EXPECT_EQ(Handle(Named(u"Barred")), nullptr);
  EXPECT_EQ(subsetting.calls.size(), 4U);  // every run tries again
}

TEST_F(FontCacheTest, AMemberOfACollectionIsSubsetByItsIndex) {
  services_.file = whole_;
  services_.collection =
      font_files::Collection({{{1, 1, "Sans"}}, {{3, 1, font_files::Utf16BigEndian(u"Serif")}}});
  subsetting.package = subset_;
  EXPECT_NE(Handle(Named(u"Serif")), nullptr);
  ASSERT_EQ(subsetting.calls.size(), 1U);
  EXPECT_EQ(subsetting.calls[0].numbers, (std::vector<uint16_t>{5, 1, 0, 0, 3, 65535}));
  EXPECT_EQ(subsetting.calls[0].sourceSize, services_.collection.size());
}

TEST_F(FontCacheTest, AFontThatCannotBeReadIsNone) {
  EXPECT_EQ(Handle(Named(u"Serif")), nullptr);
  services_.collection = font_files::Collection({{{1, 1, "Sans"}}});
  EXPECT_EQ(Handle(Named(u"Serif")), nullptr);
  services_.canCreate = false;
  EXPECT_EQ(Handle(Named(u"Serif")), nullptr);
  EXPECT_TRUE(subsetting.calls.empty());
}

TEST_F(FontCacheTest, TheFirstItalicFontOfAFaceSettlesItsSlant) {
  services_.italicAngle = 0;
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(u"Upright", 0)));
  EXPECT_EQ(services_.created, 0);
  EXPECT_TRUE(cache_.NeedsSyntheticItalic(Named(u"Upright", 1)));
  services_.italicAngle = -120;
  EXPECT_TRUE(cache_.NeedsSyntheticItalic(Named(u"Upright", 255)));
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(u"Upright", 0)));
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(u"Slanted", 1)));
  const std::u16string longName(32, u'x');  // without a zero at its end
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(longName, 1)));
  services_.italicAngle.reset();
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(u"Bitmap", 1)));
  services_.italicAngle = 0;
  EXPECT_FALSE(cache_.NeedsSyntheticItalic(Named(u"Bitmap", 1)));
  EXPECT_TRUE(cache_.NeedsSyntheticItalic(Named(longName.substr(1), 1)));
  EXPECT_EQ(services_.created, 5);
}

}  // namespace
}  // namespace hdi

// Font data for the driver, and the interface font.
#include "platform/font_services.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/face_name.h"
#include "platform/font_faces.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"
#include "platform/linux/font_patterns.h"

namespace hdi {
namespace {

class SystemFont final : public PlatformFont {
 public:
  explicit SystemFont(const SystemFace& face) : face_(face) {}

  uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
    if (table == kFontCollection && !face_.IsInCollection()) return kNoFontData;
    const FontFile file(face_.Path());
    const FontMember member = Member(file);
    if (member.tables.empty()) return kNoFontData;
    const bool isWholeFile = table == (face_.IsInCollection() ? kFontCollection : kWholeFontFile);
    if (isWholeFile) return CopyFile(file, buffer, size);
    const std::vector<uint8_t> data =
        table == kWholeFontFile ? PlainFont(file, member) : ReadTable(file, member, table);
    if (data.empty() || data.size() >= kNoFontData) return kNoFontData;
    const auto available = static_cast<uint32_t>(data.size());
    if (buffer == nullptr) return available;
    const uint32_t count = std::min(size, available);
    std::memcpy(buffer, data.data(), count);
    return count;
  }

  std::optional<int32_t> ItalicAngle() const override {
    constexpr uint32_t kAngle = 4;  // offset in "post"; 16.16 degrees
    const FontFile file(face_.Path());
    const FontMember member = Member(file);
    if (member.tables.empty()) return std::nullopt;
    const FontTable* table = member.Find(FontTag("post"));
    if (table == nullptr) return 0;
    const std::vector<uint8_t> bytes = file.Read(*table);
    if (bytes.size() < kAngle + 4) return 0;
    return static_cast<int32_t>(std::lround(static_cast<int32_t>(ReadU32(bytes, kAngle)) * 10.0 / 0x10000));
  }

 private:
  // Without tables if the file is not the one that was listed.
  FontMember Member(const FontFile& file) const {
    if (file.Size() != face_.FileSize()) return {};
    const std::vector<uint32_t> offsets = file.MemberOffsets();
    return face_.MemberIndex() < offsets.size() ? file.Member(offsets[face_.MemberIndex()]) : FontMember();
  }

  static uint32_t CopyFile(const FontFile& file, uint8_t* buffer, uint32_t size) {
    if (file.Size() >= kNoFontData) return kNoFontData;
    const auto available = static_cast<uint32_t>(file.Size());
    if (buffer == nullptr) return available;
    const uint32_t count = std::min(size, available);
    return file.Read(0, {buffer, count}) ? count : kNoFontData;
  }

  static std::vector<uint8_t> ReadTable(const FontFile& file, const FontMember& member, uint32_t tag) {
    const uint32_t bigEndian = (tag & 0xFF) << 24 | (tag & 0xFF00) << 8 | (tag >> 8 & 0xFF00) | tag >> 24;
    const FontTable* found = member.Find(bigEndian);
    return found == nullptr ? std::vector<uint8_t>() : file.Read(*found);
  }

  const SystemFace& face_;
};

std::optional<LOGFONTW> ChooseInterfaceFont() {
  LOGFONTW font = {};
  font.lfHeight = -11;
  font.lfWeight = 400;
  font.lfCharSet = kDefaultCharSet;
  SetFaceName(font, u"system-ui");
  const FontFace* face = FindFace(font);
  if (face == nullptr) return std::nullopt;
  return SelectingFont(font, *face);
}

class SystemServices final : public FontServices {
 public:
  std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const override {
    const FontFace* face = FindFace(font);
    if (face == nullptr) return nullptr;
    return std::make_unique<SystemFont>(static_cast<const SystemFace&>(*face));
  }

  std::optional<LOGFONTW> DefaultInterfaceFont() const override {
    static const std::optional<LOGFONTW> kFont = ChooseInterfaceFont();
    return kFont;
  }
};

}  // namespace

const FontServices& SystemFontServices() {
  static const SystemServices kServices;
  return kServices;
}

}  // namespace hdi

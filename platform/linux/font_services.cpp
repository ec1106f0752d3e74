// Font data for the driver, and the interface font.
#include "platform/font_services.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/font_faces.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"

namespace hdi {
namespace {

// The data is read when it is first asked for and kept for the second question, which fetches it.
class SystemFont final : public PlatformFont {
 public:
  explicit SystemFont(const SystemFace& face) : face_(face) {}

  uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
    if (!isRead_ || table != table_) {
      data_ = Read(table);
      table_ = table;
      isRead_ = true;
    }
    if (data_.empty() || data_.size() >= kNoFontData) return kNoFontData;
    const auto available = static_cast<uint32_t>(data_.size());
    if (buffer == nullptr) return available;
    const uint32_t count = std::min(size, available);
    std::memcpy(buffer, data_.data(), count);
    return count;
  }

  std::optional<int32_t> ItalicAngle() const override {
    constexpr uint32_t kAngle = 4;  // place in the table "post", in degrees with 16 bits of fraction
    const FontFile file(face_.Path());
    const FontMember member = Member(file);
    if (member.tables.empty()) return std::nullopt;
    const FontTable* table = member.Find(FontTag("post"));
    if (table == nullptr) return 0;
    const std::vector<uint8_t> bytes = file.Read(*table);
    if (bytes.size() < kAngle + 4) return 0;
    return static_cast<int32_t>(std::lround(static_cast<int32_t>(FontU32(&bytes[kAngle])) * 10.0 / 0x10000));
  }

 private:
  // Without tables when the file is not the one that was listed.
  FontMember Member(const FontFile& file) const {
    if (file.Size() != face_.FileSize()) return {};
    const std::vector<uint32_t> offsets = file.MemberOffsets();
    return face_.MemberIndex() < offsets.size() ? file.Member(offsets[face_.MemberIndex()]) : FontMember();
  }

  std::vector<uint8_t> Read(uint32_t table) const {
    if (table == kFontCollection && !face_.IsInCollection()) return {};
    const FontFile file(face_.Path());
    const FontMember member = Member(file);
    if (member.tables.empty()) return {};
    if (table == kWholeFontFile && face_.IsInCollection()) return PlainFont(file, member);
    if (table == kWholeFontFile || table == kFontCollection) return file.Read(0, file.Size());
    const uint32_t bigEndian =
        (table & 0xFF) << 24 | (table & 0xFF00) << 8 | (table >> 8 & 0xFF00) | table >> 24;
    const FontTable* found = member.Find(bigEndian);
    return found == nullptr ? std::vector<uint8_t>() : file.Read(*found);
  }

  const SystemFace& face_;
  mutable std::vector<uint8_t> data_;
  mutable uint32_t table_ = 0;
  mutable bool isRead_ = false;
};

class SystemServices final : public FontServices {
 public:
  std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const override {
    const FontFace* face = FindFace(font);
    if (face == nullptr) return nullptr;
    return std::make_unique<SystemFont>(static_cast<const SystemFace&>(*face));
  }

  std::optional<LOGFONTW> DefaultInterfaceFont() const override {
    constexpr std::u16string_view kGenericName = u"system-ui";
    LOGFONTW font = {};
    font.lfHeight = -11;
    font.lfWeight = 400;
    font.lfCharSet = 1;  // the default one
    std::copy(kGenericName.begin(), kGenericName.end(), font.lfFaceName);
    const FontFace* face = FindFace(font);
    if (face == nullptr) return std::nullopt;
    return SelectingFont(font, *face);
  }
};

}  // namespace

const FontServices& SystemFontServices() {
  static const SystemServices kServices;
  return kServices;
}

}  // namespace hdi

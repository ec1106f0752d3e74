// Font data for the driver, and the interface font, from GDI.
#include <windows.h>
// A macro of <windows.h> that would rename our function.
#undef CreateFontIndirect

#include <bit>
#include <cstdlib>
#include <memory>

#include "platform/font_services.h"
#include "platform/memory.h"
#include "platform/windows/selected_font.h"

namespace hdi {
namespace {

class SystemFont final : public PlatformFont {
 public:
  explicit SystemFont(const ::LOGFONTW& font) : font_(font) {}

  [[nodiscard]] bool IsMade() const { return font_.IsMade(); }

  uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
    static_assert(kNoFontData == GDI_ERROR);
    return ::GetFontData(font_.Device(), table, 0, buffer, buffer == nullptr ? 0 : size);
  }

  std::optional<int32_t> ItalicAngle() const override {
    const UINT size = GetOutlineTextMetricsW(font_.Device(), 0, nullptr);
    if (size == 0) return std::nullopt;
    const std::unique_ptr<OUTLINETEXTMETRICW, MallocDeleter> metrics(
        static_cast<OUTLINETEXTMETRICW*>(std::calloc(1, size)));
    if (!metrics || GetOutlineTextMetricsW(font_.Device(), size, metrics.get()) == 0) return std::nullopt;
    return metrics->otmItalicAngle;
  }

 private:
  SelectedFont font_;
};

class SystemServices final : public FontServices {
 public:
  std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const override {
    auto made = std::make_unique<SystemFont>(std::bit_cast<::LOGFONTW>(font));
    if (!made->IsMade()) return nullptr;
    return made;
  }

  std::optional<LOGFONTW> DefaultInterfaceFont() const override {
    const HGDIOBJ font = GetStockObject(DEFAULT_GUI_FONT);
    if (font == nullptr) return std::nullopt;
    ::LOGFONTW record = {};
    GetObjectW(font, sizeof record, &record);
    DeleteObject(font);  // has no effect on a stock object
    return std::bit_cast<LOGFONTW>(record);
  }
};

}  // namespace

const FontServices& SystemFontServices() {
  static const SystemServices kServices;
  return kServices;
}

}  // namespace hdi

// Font data for the driver, and the interface font, from GDI.
#include <windows.h>
// A macro of the header above, which would give our function of that name another one here.
#undef CreateFontIndirect

#include <bit>
#include <cstdlib>
#include <memory>

#include "platform/font_services.h"

namespace hdi {
namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

// A font selected into a memory context of its own.
class SystemFont final : public PlatformFont {
 public:
  // Takes the font over; the screen's context only makes the new one compatible.
  SystemFont(HDC screen, HFONT font)
      : context_(CreateCompatibleDC(screen)), font_(font), before_(SelectObject(context_, font)) {}
  SystemFont(const SystemFont&) = delete;
  SystemFont& operator=(const SystemFont&) = delete;
  ~SystemFont() override {
    SelectObject(context_, before_);
    DeleteObject(font_);
    DeleteDC(context_);
  }

  uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const override {
    static_assert(kNoFontData == GDI_ERROR);
    return ::GetFontData(context_, table, 0, buffer, buffer == nullptr ? 0 : size);
  }

  std::optional<int32_t> ItalicAngle() const override {
    const UINT size = GetOutlineTextMetricsW(context_, 0, nullptr);
    if (size == 0) return std::nullopt;
    const std::unique_ptr<OUTLINETEXTMETRICW, Free> metrics(
        static_cast<OUTLINETEXTMETRICW*>(std::calloc(1, size)));
    if (!metrics || GetOutlineTextMetricsW(context_, size, metrics.get()) == 0) return std::nullopt;
    return metrics->otmItalicAngle;
  }

 private:
  HDC context_;
  HFONT font_;
  HGDIOBJ before_;
};

class SystemServices final : public FontServices {
 public:
  std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const override {
    const auto record = std::bit_cast<::LOGFONTW>(font);
    const HFONT handle = CreateFontIndirectW(&record);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return nullptr;
    const HWND desktop = GetDesktopWindow();
    const HDC screen = GetDC(desktop);
    auto created = std::make_unique<SystemFont>(screen, handle);
    ReleaseDC(desktop, screen);
    return created;
  }

  std::optional<LOGFONTW> DefaultInterfaceFont() const override {
    const HGDIOBJ font = GetStockObject(DEFAULT_GUI_FONT);
    if (font == nullptr) return std::nullopt;
    ::LOGFONTW record = {};
    GetObjectW(font, sizeof record, &record);
    return std::bit_cast<LOGFONTW>(record);
  }
};

}  // namespace

const FontServices& SystemFontServices() {
  static const SystemServices kServices;
  return kServices;
}

}  // namespace hdi

#include "hdiplot/text/text_shaping.h"

#include <unicode/ubidi.h>
#include <unicode/ushape.h>

#include <algorithm>
#include <memory>

namespace hdiplot {

namespace {

// The driver's definition of a right-to-left unit.
bool IsRightToLeft(char16_t unit) {
  return (unit >= 0x0590 && unit <= 0x08FF) || (unit >= 0xFB50 && unit <= 0xFDFF) ||
         (unit >= 0xFE70 && unit <= 0xFEFF);
}

bool IsArabicLetter(char16_t unit) { return unit >= 0x0600 && unit <= 0x06FF; }

bool IsArabicForm(char16_t unit) { return unit >= 0xFB50 && unit != 0xFEFF && IsRightToLeft(unit); }

struct CloseBidi {
  void operator()(UBiDi* bidi) const { ubidi_close(bidi); }
};

// The text in visual order, or unchanged if ICU fails.
std::u16string VisualOrder(std::u16string_view text) {
  const std::unique_ptr<UBiDi, CloseBidi> bidi(ubidi_open());
  std::u16string visual(text.size(), u' ');
  UErrorCode status = U_ZERO_ERROR;
  const auto size = static_cast<int32_t>(text.size());
  ubidi_setPara(bidi.get(), text.data(), size, UBIDI_DEFAULT_LTR, nullptr, &status);
  const int32_t written = ubidi_writeReordered(bidi.get(), visual.data(), size, UBIDI_DO_MIRRORING, &status);
  if (U_FAILURE(status)) return std::u16string(text);
  visual.resize(static_cast<size_t>(written));
  return visual;
}

}  // namespace

bool IsPlainLeftToRight(std::u16string_view text) { return std::ranges::none_of(text, IsRightToLeft); }

std::u16string JoinedLetters(std::u16string_view text, const std::function<bool(char16_t)>& hasForm) {
  std::u16string plain(text);
  if (std::ranges::none_of(text, IsArabicLetter)) return plain;
  std::u16string joined(text.size(), u' ');
  UErrorCode status = U_ZERO_ERROR;
  const auto size = static_cast<int32_t>(text.size());
  // Keeps the logical order. Ligatures make the text shorter.
  const int32_t written =
      u_shapeArabic(text.data(), size, joined.data(), size, U_SHAPE_LETTERS_SHAPE, &status);
  if (U_FAILURE(status)) return plain;
  joined.resize(static_cast<size_t>(written));
  const bool hasAll = std::ranges::all_of(joined, [&](char16_t u) { return !IsArabicForm(u) || hasForm(u); });
  return hasAll ? joined : plain;
}

std::vector<DriverPart> DriverParts(std::u16string_view text) {
  if (IsPlainLeftToRight(text)) return {{std::u16string(text), std::u16string(text)}};
  const std::u16string visual = VisualOrder(text);
  std::vector<DriverPart> parts(1);
  for (size_t i = 0; i < visual.size();) {
    if (!IsRightToLeft(visual[i])) {
      parts.back().text += visual[i];
      parts.back().visual += visual[i++];
      continue;
    }
    // The run with the spaces inside it; `end` is behind its last letter.
    size_t end = i + 1;
    size_t next = end;
    for (; next < visual.size() && (visual[next] == u' ' || IsRightToLeft(visual[next])); ++next) {
      if (visual[next] != u' ') end = next + 1;
    }
    const std::u16string stretch = visual.substr(i, end - i);
    parts.back().text.append(stretch.rbegin(), stretch.rend());
    parts.back().visual += stretch;
    if (next > end) parts.emplace_back();
    i = end;
  }
  return parts;
}

}  // namespace hdiplot

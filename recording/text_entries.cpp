// The text entry. Records the text and collects the characters that each font of the job needs.
#include <algorithm>
#include <memory>
#include <new>
#include <span>

#include "platform/host_library.h"
#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"
#include "recording/right_to_left.h"
#include "recording/side_writer.h"

namespace hdi {
namespace {

// Null if out of memory.
template <typename Value>
std::unique_ptr<Value[]> Copy(std::span<const Value> values) {
  std::unique_ptr<Value[]> copy(new (std::nothrow) Value[values.size()]);
  if (copy != nullptr) std::ranges::copy(values, copy.get());
  return copy;
}

// Collects every character, blanks and controls included, for the font that the host library chose for its
// run. Throws std::bad_alloc, with no character added.
void CollectCharacters(const HT_Text& text, FontUsage& fontUsage) {
  FontUsage newFonts;
  for (const HT_TextRun* run = text.runs->next; run != text.runs; run = run->next) {
    if (run->count > 0 && !fontUsage.contains(run->fontName)) newFonts.try_emplace(run->fontName);
  }
  fontUsage.merge(newFonts);
  for (const HT_TextRun* run = text.runs->next; run != text.runs; run = run->next) {
    if (run->count <= 0) continue;
    CharacterSet& characters = fontUsage.find(run->fontName)->second;
    for (int32_t i = 0; i < run->count; ++i) characters.Add(run->text[i]);
  }
}

}  // namespace

int32_t DevText(HostDevice* device, const LOGFONTW* font, const HT_Double_Point* position,
                const char16_t* text, int32_t count, const double* advances, double textHeight,
                double obliqueAngle, double trackingFactor, double widthFactor) {
  FlushPath(device);
  PlotJob* job = JobOf(device);
  const DriverDevMode* settings = SettingsOf(device);
  if (job == nullptr || settings == nullptr || settings->textAsGeometry != 0) return 0;
  if (count < 0) return 1;  // more units than could be copied; text that cannot be copied is dropped

  const auto length = static_cast<size_t>(count);
  const auto units = Copy(std::span(text, length));
  if (units == nullptr) return 1;
  const auto widths = advances == nullptr ? nullptr : Copy(std::span(advances, length));
  if (advances != nullptr && widths == nullptr) return 1;
  ReverseRightToLeft(units.get(), count, widths.get());

  try {
    CollectCharacters(HT_Text(font, text, count, advances), job->fontUsage);
  } catch (const std::bad_alloc&) {
    return 1;
  }

  const HT_Double_Point at = PathRecorder(*job, settings).MapPoint(*position);
  const std::span<const double> advancesDrawn(widths.get(), widths == nullptr ? 0 : length);
  PlotCommand* record = AllocRecord();
  record->SetOpcode(OP_TEXT);
  record->data = AllocSide(static_cast<uint32_t>(sizeof(TextData) + length * sizeof(char16_t) +
                                                 advancesDrawn.size_bytes() + sizeof(TextShapeData)));
  SideWriter side(record->data);
  side.Append(TextData{.font = *font,
                       .x = static_cast<float>(at.x),
                       .y = static_cast<float>(at.y),
                       .hasAdvances = advances != nullptr ? uint8_t{1} : uint8_t{0},
                       .count = static_cast<uint32_t>(count)});
  side.Append(std::u16string_view(units.get(), length));
  side.Append(advancesDrawn);
  side.Append(TextShapeData{.textHeight = textHeight,
                            .obliqueAngle = obliqueAngle,
                            .trackingFactor = trackingFactor,
                            .widthFactor = widthFactor});
  AppendRecord(*job, record);
  return advances != nullptr && isEqual(trackingFactor, kNormalTracking, kTrackingTolerance) ? 1 : 0;
}

}  // namespace hdi

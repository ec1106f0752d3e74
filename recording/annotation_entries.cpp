// Entries for links and comments.
#include <algorithm>
#include <string_view>

#include "platform/truncation.h"
#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"
#include "recording/side_writer.h"

namespace hdi {
namespace {

using namespace std::string_view_literals;

bool IsLetter(char16_t unit) { return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z'); }

// Only a path with a drive and a bare web address get a scheme; other targets are passed on as they are.
std::u16string_view PrefixFor(std::u16string_view target) {
  if (target.size() >= 2 && IsLetter(target[0]) && target[1] == u':') return u"file:///"sv;
  const auto isW = [](char16_t unit) { return unit == u'W' || unit == u'w'; };
  if (target.size() >= 4 && std::ranges::all_of(target.substr(0, 3), isW) && target[3] == u'.') {
    return u"http://"sv;
  }
  return {};
}

// An empty target ends the open link.
void RecordLink(PlotJob& job, std::u16string_view prefix, std::u16string_view target) {
  const LinkData data{.count = static_cast<uint32_t>(prefix.size() + target.size())};
  PlotCommand* record = AllocRecord();
  record->SetOpcode(OP_LINK);
  record->data = AllocSide(static_cast<uint32_t>(sizeof data + data.count * sizeof(char16_t)));
  SideWriter side(record->data);
  side.Append(data);
  side.Append(prefix);
  side.Append(target);
  AppendRecord(job, record);
}

bool LinksAreOff(const HostDevice* device) {
  const DriverDevMode* settings = SettingsOf(device);
  return settings != nullptr && settings->linksEnabled == 0;
}

}  // namespace

int32_t DevBeginLink(HostDevice* device, const char16_t* target) {
  FlushPath(device);
  if (LinksAreOff(device)) return 1;
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  RecordLink(*job, PrefixFor(target), target);
  return 1;
}

int32_t DevEndLink(HostDevice* device) {
  FlushPath(device);
  if (LinksAreOff(device)) return 1;
  PlotJob* job = JobOf(device);
  if (job == nullptr) return 0;
  RecordLink(*job, {}, {});
  return 1;
}

int32_t DevShxComment(HostDevice* device, const char16_t* text, const int32_t* rect, uint32_t flags) {
  FlushPath(device);
  PlotJob* job = JobWithWriter(device);
  const DriverDevMode* settings = SettingsOf(device);
  const std::u16string_view words(text);
  if (settings == nullptr || job == nullptr || words.empty()) return 0;

  // The corners come as both X, then both Y.
  const PathRecorder path(*job, settings);
  const HT_Double_Point a = path.MapPoint({static_cast<double>(rect[0]), static_cast<double>(rect[2])});
  const HT_Double_Point b = path.MapPoint({static_cast<double>(rect[1]), static_cast<double>(rect[3])});
  const CommentData data{.left = Truncate(std::min(a.x, b.x)),
                         .bottom = Truncate(std::min(a.y, b.y)),
                         .right = Truncate(std::max(a.x, b.x)),
                         .top = Truncate(std::max(a.y, b.y)),
                         .flags = flags,
                         .dotsPerInch = DotsPerInch(*settings)};
  const uint64_t count = words.size();
  PlotCommand* record = AllocRecord();
  record->SetOpcode(OP_SHX_COMMENT);
  record->data = AllocSide(static_cast<uint32_t>(sizeof count + count * sizeof(char16_t) + sizeof data));
  SideWriter side(record->data);
  side.Append(count);
  side.Append(words);
  side.Append(data);
  AppendRecord(*job, record);
  return 1;
}

}  // namespace hdi

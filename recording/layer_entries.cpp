// The layer entry: one record per change of layer.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "recording/path.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"
#include "recording/side_writer.h"

namespace hdi {

int32_t DevSetLayer(HostDevice* device, int64_t /*reserved*/, const char16_t* name) {
  FlushPath(device);
  const DriverDevMode* settings = SettingsOf(device);
  if (settings == nullptr || settings->layersEnabled == 0) return 0;
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr) return 0;
  const std::u16string_view layer(name);
  if (layer.empty()) return 0;
  if (layer == job->layerName) return 1;

  // Longer names are a host error; the bounded copy of the host's runtime ends the process for them.
  if (layer.size() >= std::size(job->layerName)) std::abort();
  *std::ranges::copy(layer, job->layerName).out = u'\0';

  const LayerData data{.count = layer.size()};
  PlotCommand* record = AllocRecord();
  record->SetOpcode(OP_LAYER);
  record->data = AllocSide(static_cast<uint32_t>(sizeof data + layer.size() * sizeof(char16_t)));
  SideWriter side(record->data);
  side.Append(data);
  side.Append(layer);
  AppendRecord(*job, record);
  return 1;
}

}  // namespace hdi

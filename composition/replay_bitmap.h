// Replays raster records. The only place that reads pixels from the host's objects.
#pragma once

#include "composition/page_writer.h"
#include "recording/command_list.h"

namespace hdi {

enum class BitmapOutcome : uint8_t { kGoOn, kRasterIsGone };

// Places the raster of a record, or skips it if the pixels are unavailable. A raster without a header means
// that the host has taken back its objects.
BitmapOutcome PlayBitmap(const BitmapData& data, PageWriter& writer);

}  // namespace hdi

// The replay's rasters: pixels are fetched from the host's object here and nowhere else.
#pragma once

#include "composition/page_writer.h"
#include "recording/command_list.h"

namespace hdi {

enum class BitmapOutcome : uint8_t { kGoOn, kRasterIsGone };

// Places the raster of a record, or leaves it out when it can't be had. A raster that has lost its header
// means that the host has taken its objects back.
BitmapOutcome PlayBitmap(const BitmapData& data, PageWriter& writer);

}  // namespace hdi

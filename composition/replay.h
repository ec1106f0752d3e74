// The replay: one pass over the command list, from records to calls on the page writer.
#pragma once

#include <cstdint>

#include "composition/page_writer.h"
#include "platform/border.h"
#include "platform/character_set.h"
#include "recording/command_list.h"

namespace hdi {

// Plays the list from `head`, which may be null, and returns 1, or 0 when a raster of the host's is gone,
// with which the replay ends. Every value that survives from one record to the next is the writer's; the list
// and the arenas stay as they are. `fontUsage` is what the whole list plots in each font. `settings` are the
// driver's, read live; null without any.
int32_t ReplayCommands(const PlotCommand* head, const FontUsage& fontUsage, const DriverDevMode* settings,
                       PageWriter& writer);

}  // namespace hdi

// The replay: one pass over the command list that turns records into calls on the page writer.
#pragma once

#include <cstdint>

#include "composition/page_writer.h"
#include "platform/border.h"
#include "platform/character_set.h"
#include "recording/command_list.h"

namespace hdi {

// Plays the list from `head`, which may be null. Returns 1, or 0 if a raster of the host is gone, which ends
// the replay. State between records is the writer's; the list and its arenas are not changed. `fontUsage`
// holds the characters that the whole list uses in each font. `settings` are the driver's, read live; may be
// null.
int32_t ReplayCommands(const PlotCommand* head, const FontUsage& fontUsage, const DriverDevMode* settings,
                       PageWriter& writer);

}  // namespace hdi

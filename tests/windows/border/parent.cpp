// On Windows a companion's parent is a record: its size and version, and the window handle behind them.
#include "tests/border/parent.h"

#include <cstring>

namespace border {

uint64_t WindowOf(const void* parent) {
  struct {
    uint32_t size;
    uint32_t version;
    uint64_t window;
  } record;
  std::memcpy(&record, parent, sizeof record);
  return record.size == sizeof record && record.version == 1 ? record.window : ~uint64_t{0};
}

}  // namespace border

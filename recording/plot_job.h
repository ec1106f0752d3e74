// A job's state between DevOpen and DevClose: the command list, the recording state and the output. Owned
// through HostDevice.job.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "platform/border.h"
#include "platform/character_set.h"
#include "recording/command_list.h"

namespace hdi {

// The page writer's setters that recording calls ahead of the replay.
class RecordedWriter {
 public:
  virtual void SetLineWidth(float width) = 0;  // dots
  virtual void SetLineScale(double scale) = 0;

 protected:
  ~RecordedWriter() = default;
};

// If both coordinates of the current point have this value, no path is pending.
inline constexpr double kNoPoint = std::numeric_limits<double>::max();

struct PlotJob {
  PlotCommand* head = nullptr;
  PlotCommand* tail = nullptr;
  RecordedWriter* pageWriter = nullptr;  // set from DevOpenOutput to DevFinish, which own it
  std::u16string outputPath;
  char16_t layerName[1024] = {};  // the current layer, kept across pages
  int32_t loneMove = 0;           // 1 if the last path record is a move without a segment
  uint32_t fillMode = kFillAlternate;
  double printableHeight = 0;  // dots
  uint32_t pageCounter = 0;
  void* ownerWindow = nullptr;
  double currentX = kNoPoint;  // current point of the pending path, record coordinates
  double currentY = kNoPoint;
  uint8_t mergeFlag = 0;
  int32_t pageClipSeen = 0;
  FontUsage fontUsage;  // characters the job uses in each font

  [[nodiscard]] bool HasPendingPath() const { return currentX != kNoPoint || currentY != kNoPoint; }
};

// Appends a complete record to the list.
inline void AppendRecord(PlotJob& job, PlotCommand* record) {
  record->next = nullptr;
  job.tail->next = record;
  job.tail = record;
}

// Appends a record without side data.
inline void Record(PlotJob& job, Opcode opcode) {
  PlotCommand* record = AllocRecord();
  record->SetOpcode(opcode);
  AppendRecord(job, record);
}

// Appends a record whose side data is `data`.
template <typename Data>
void Record(PlotJob& job, Opcode opcode, const Data& data) {
  PlotCommand* record = AllocRecord();
  record->SetOpcode(opcode);
  record->data = AllocSide(sizeof data);
  std::memcpy(record->data, &data, sizeof data);
  AppendRecord(job, record);
}

// The driver's settings, read live; null without a driver.
[[nodiscard]] inline const DriverDevMode* SettingsOf(const HostDevice* device) {
  return device == nullptr || device->driver == nullptr ? nullptr : device->driver->GetDevModePointer();
}

// The device's job; null without a device or a job.
[[nodiscard]] inline PlotJob* JobOf(const HostDevice* device) {
  return device == nullptr ? nullptr : device->job;
}

// The device's job if its output is open; otherwise null.
[[nodiscard]] inline PlotJob* JobWithWriter(const HostDevice* device) {
  PlotJob* job = JobOf(device);
  return job == nullptr || job->pageWriter == nullptr ? nullptr : job;
}

}  // namespace hdi

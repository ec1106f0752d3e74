// Entries that open and close a device, choose the output, replay the list and save.
//
// During the job the output file exists but stays empty; DevEndDoc writes it at once. States: closed, open
// (DevOpen), document (DevStartDoc returned 1), finished (DevEndDoc), closed (DevClose).
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Creates the job with an empty command list. Drops the records of any earlier job in the process. Always 1.
int32_t DevOpen(HostDevice* device);
// Frees the job, the list and its side data. A page writer that DevEndDoc has not released is leaked. Always
// 1.
int32_t DevClose(HostDevice* device);
// Does nothing.
void DevPrepare(HostDevice* device);

// Determines the output path, asking the user if it is "FILE:", and creates the empty output and the
// document. Returns 0 if the job cannot start; the device then stays open and no file has been touched.
int32_t DevStartDoc(HostDevice* device, const DOCINFOW* docInfo);
// Returns the job's page writer, created with its output file by the first call. Null if the file cannot be
// created, which is shown to the user.
void* DevOpenOutput(HostDevice* device);
// Creates the empty document of a started job. Takes the address of the driver's device field.
int32_t DevCreateDocument(HostDevice** deviceField);

// Replays the list, saves and closes. Always 1. Throws std::system_error if the output cannot be written,
// except for a full disk.
int32_t DevEndDoc(HostDevice* device);
// Saves and closes the output of a started job and, if the settings ask for it, opens it in the viewer. Takes
// the address of the driver's device field.
int32_t DevFinish(HostDevice** deviceField);

}  // namespace hdi

// The job's frame: the entries that open and close a device, settle the output, start the replay and save.
//
// During the job the output file exists but stays empty; it gets its bytes in one go when DevEndDoc saves.
// States: closed, open (DevOpen), document (DevStartDoc gave 1), finished (DevEndDoc), closed again
// (DevClose).
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Makes the job with an empty command list. Drops the records of any earlier job in the process. Always 1.
int32_t DevOpen(HostDevice* device);
// Frees the job, the list and its side data. A page writer that DevEndDoc never got to see is lost. Always 1.
int32_t DevClose(HostDevice* device);
// Does nothing.
void DevPrepare(HostDevice* device);

// Settles the output path, with the user when it is "FILE:", creates the empty output and the document. 0
// when there is no job to go on with; the device then stays open and no file has been touched.
int32_t DevStartDoc(HostDevice* device, const DOCINFOW* docInfo);
// The job's page writer, made together with its output file at the first call; null when the file can't be
// created, which the user is told.
void* DevOpenOutput(HostDevice* device);
// Makes the empty document of a started job. Takes the address of the driver's device field.
int32_t DevCreateDocument(HostDevice** deviceField);

// Replays the list, saves and closes. Always 1. Throws std::system_error when the output can't be written for
// another reason than a full disk.
int32_t DevEndDoc(HostDevice* device);
// Saves and closes the output of a started job, and opens it in the viewer when the settings ask for it.
// Takes the address of the driver's device field.
int32_t DevFinish(HostDevice** deviceField);

}  // namespace hdi

// The entries from DevOpen to DevClose that do not draw.
#include "driver/job.h"

#include <memory>
#include <string>

#include "composition/page_writer.h"
#include "composition/replay.h"
#include "driver/creator.h"
#include "driver/output_path.h"
#include "driver/pdf_driver.h"
#include "platform/dialogs.h"
#include "platform/message_texts.h"
#include "recording/plot_job.h"

namespace hdi {
namespace {

// The page writer behind the interface for recording.
class JobWriter final : public RecordedWriter {
 public:
  void SetLineWidth(float width) override { pageWriter.SetLineWidth(width); }
  void SetLineScale(double scale) override { pageWriter.SetLineScale(scale); }

  PageWriter pageWriter;
};

JobWriter* WriterOf(const PlotJob& job) { return static_cast<JobWriter*>(job.pageWriter); }

// The job refers to its writer until the writer has closed everything: a host whose message loop runs
// meanwhile can see it.
struct ReleaseWriter {
  PlotJob* job;
  void operator()(JobWriter* writer) const {
    delete writer;
    job->pageWriter = nullptr;
  }
};
using OwnedWriter = std::unique_ptr<JobWriter, ReleaseWriter>;

// Entries call each other through the table, whose positions the host may have wrapped.
const DeviceTable& TableOf(const HostDevice& device) { return *device.table; }

PlotCommand* NewListHead() {
  PlotCommand* head = AllocRecord();
  head->SetOpcode(OP_LIST_HEAD);
  head->next = nullptr;
  return head;
}

}  // namespace

int32_t DevOpen(HostDevice* device) {
  device->job = new PlotJob;
  ReleaseChunks(recordArena);
  recordArena.AddChunk(CommandArena::kChunkSize);
  device->job->head = NewListHead();
  device->job->tail = device->job->head;
  return 1;
}

int32_t DevClose(HostDevice* device) {
  if (device == nullptr) return 1;
  delete device->job;
  ReleaseChunks(recordArena);
  ReleaseChunks(sideArena);
  device->job = nullptr;
  return 1;
}

void DevPrepare(HostDevice* /*device*/) {}

int32_t DevStartDoc(HostDevice* device, const DOCINFOW* docInfo) {
  PlotJob* job = JobOf(device);
  if (job == nullptr || device->driver == nullptr) return 0;
  auto* driver = static_cast<CPDFDriver*>(device->driver);
  if (SettleOutputPath(*device, docInfo, *driver, *job) == OutputChoice::kNone) return 0;

  const DeviceTable& table = TableOf(*device);
  table.At<entry::Prepare>(Position::kPrepare)(device);
  if (table.At<entry::OpenOutput>(Position::kOpenOutput)(device) == nullptr) return 0;
  device->started = 1;
  device->driver->NormalizeDevMode(device->driver->GetDevModePointer());
  table.At<entry::CreateDocument>(Position::kCreateDocument)(driver->DeviceField());
  return 1;
}

void* DevOpenOutput(HostDevice* device) {
  PlotJob* job = JobOf(device);
  if (job == nullptr) return nullptr;
  if (device->started != 0) return job->pageWriter;

  OwnedWriter writer(new JobWriter, {job});
  job->pageWriter = writer.get();
  if (!writer->pageWriter.OpenOutput(job->outputPath)) {
    ShowMessage(job->outputPath + MessageText(kTextFileInUse));
    return nullptr;
  }
  if (const DriverDevMode* settings = SettingsOf(device)) {
    writer->pageWriter.SetPointScale(DotsPerInch(*settings));
    writer->pageWriter.SetBounds(settings->keepFractions != 0 ? Bounds::kExact : Bounds::kWholePoints);
  }
  return writer.release();  // DevFinish takes it back
}

int32_t DevCreateDocument(HostDevice** deviceField) {
  const HostDevice* device = *deviceField;
  const PlotJob* job = JobWithWriter(device);
  if (job == nullptr || device->started == 0) return 1;
  const auto* driver = static_cast<const CPDFDriver*>(device->driver);
  WriterOf(*job)->pageWriter.StartDocument(CreatorName(), driver->StreamCompression());
  return 1;
}

int32_t DevEndDoc(HostDevice* device) {
  if (const PlotJob* job = JobWithWriter(device)) {
    ReplayCommands(job->head, job->fontUsage, SettingsOf(device), WriterOf(*job)->pageWriter);
    DevFinish(static_cast<CPDFDriver*>(device->driver)->DeviceField());
  }
  return 1;
}

int32_t DevFinish(HostDevice** deviceField) {
  const HostDevice* device = *deviceField;
  PlotJob* job = JobWithWriter(device);
  if (job == nullptr || device->started == 0) return 1;
  {
    // If Save throws, the writer still closes its document, the engine and the file.
    const OwnedWriter writer(WriterOf(*job), {job});
    writer->pageWriter.Save();
  }
  const DriverDevMode* settings = SettingsOf(device);
  if (settings != nullptr && settings->openAfterPlot != 0) OpenInViewer(job->outputPath);
  return 1;
}

}  // namespace hdi

// The page writer's life: output, document, state and pages.
#include "composition/page_writer.h"

#include <array>
#include <exception>
#include <utility>

#include "composition/number_writer.h"
#include "composition/path_writer.h"
#include "document/information.h"
#include "document/page_background.h"
#include "platform/border.h"

namespace hdi {
namespace {

std::u16string MakePortDirectory() {
  std::u16string directory = TemporaryDirectory();
  if (directory.empty() || directory.back() != kPathSeparator) directory += kPathSeparator;
  directory += u"ORVANE-PORT";
  directory += kPathSeparator;
  MakeDirectory(directory);
  return directory;
}

std::string ScaleWrapper(float scale, float originX, float originY) {
  std::array<char, 6 * kMaxNumberLength> text{};
  char* end = WriteMatrix(text.data(), {scale, 0, 0, scale, originX, originY});
  return "q " + std::string(text.data(), end) + " cm ";
}

}  // namespace

PageWriter::PageWriter() : portDir_(MakePortDirectory()) {}

PageWriter::~PageWriter() = default;

bool PageWriter::OpenOutput(const std::u16string& path) {
  if (FileExists(path) && !RemoveFile(path)) return false;
  return outputFile_.Open(path);
}

void PageWriter::StartDocument(std::u16string_view creator) {
  library_.emplace();
  document_ = CreateDocument(creator);
}

void PageWriter::SaveAndClose() {
  std::exception_ptr failure;
  if (document_ != nullptr) {
    try {
      document_->Save(*this);
    } catch (...) {
      failure = std::current_exception();
    }
  }
  ResetPageState();
  page_.reset();
  document_.reset();
  library_.reset();
  outputFile_.Close();
  if (failure != nullptr) std::rethrow_exception(failure);
}

void PageWriter::WriteBlock(const void* data, size_t size) { outputFile_.Write(data, size); }

void PageWriter::SetStrokeColor(Color color, bool merge) {
  state_.strokeColor = color;
  merge_ = merge;
}

void PageWriter::SetFillColor(Color color, bool merge) {
  state_.fillColor = color;
  merge_ = merge;
}

void PageWriter::SetDashArray(std::vector<float> points) {
  dashArray_ = std::move(points);
  for (float& length : dashArray_) length /= pointScale_;
}

void PageWriter::SetBackground(Color color) {
  background_ = color;
  hasBackground_ = true;
}

void PageWriter::SetOrigin(float x, float y) {
  originX_ = x;
  originY_ = y;
}

void PageWriter::SetPointScale(int32_t dotsPerInch) {
  pointScale_ = static_cast<float>(kPointsPerInch / static_cast<double>(dotsPerInch));
}

void PageWriter::ResetPageState() {
  ClearPath();
  clip_.reset();
  pageClipRect_ = {};
  linkRect_ = {};
  originX_ = 0;
  originY_ = 0;
  content_.reset();
  resources_.reset();
}

void PageWriter::BeginPage(uint32_t pageNumber, double width, double height) {
  ResetPageState();
  page_.reset();
  if (document_ == nullptr) return;
  page_ = document_->NewPage(static_cast<int>(pageNumber) - 1, width, height);
  if (page_ == nullptr) return;
  resources_.emplace(*page_);
  content_.emplace(*resources_);
}

// From here to the next page there is no page: what is drawn in between leaves no trace.
void PageWriter::FinishPage() {
  if (page_ == nullptr) return;
  const std::string_view content = content_->Finish();
  if (!content.empty()) {
    page_->SetContents(content);
    page_->WrapContents(ScaleWrapper(pointScale_, originX_, originY_), " Q");
    if (hasBackground_) SetPageBackground(*page_, background_.red, background_.green, background_.blue);
  }
  content_.reset();
  resources_.reset();
  page_.reset();
}

}  // namespace hdi

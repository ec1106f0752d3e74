// The page writer's output, document, state and pages.
#include "composition/page_writer.h"

#include <array>
#include <utility>

#include "composition/number_writer.h"
#include "composition/path_writer.h"
#include "document/information.h"
#include "document/page_background.h"
#include "document/viewport.h"
#include "engine/image.h"
#include "platform/border.h"

namespace hdi {
namespace {

std::u16string MakePortDirectory() {
  std::u16string directory = TemporaryDirectory();
  if (directory.empty()) return directory;
  if (directory.back() != kPathSeparator) directory += kPathSeparator;
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

PageWriter::PageWriter() : portDir_(MakePortDirectory()) {
  path_.attributes.strokeColor = {255, 255, 255};
  path_.attributes.fillColor = {255, 255, 255};
}

bool PageWriter::OpenOutput(const std::u16string& path) {
  if (FileExists(path) && !RemoveFile(path)) return false;
  return outputFile_.Open(path);
}

void PageWriter::StartDocument(std::u16string_view creator, engine::Compression compression,
                               unsigned workers) {
  DropPage();
  fonts_.Clear();
  layers_.reset();
  document_.reset();
  if (!library_) library_.emplace();
  document_ = CreateDocument(creator, compression, workers);
  layers_.emplace(*document_);
}

void PageWriter::Save() {
  DropPage();
  if (document_ != nullptr) document_->Save(*this);
}

bool PageWriter::WriteBlock(const void* data, size_t size) {
  if (!outputFile_.IsOpen()) return false;
  outputFile_.Write(data, size);
  return true;
}

void PageWriter::SetStrokeColor(Color color, BlendMode mode) {
  path_.attributes.strokeColor = color;
  path_.attributes.blendMode = mode;
}

void PageWriter::SetFillColor(Color color, BlendMode mode) {
  path_.attributes.fillColor = color;
  path_.attributes.blendMode = mode;
}

void PageWriter::SetDashArray(std::vector<float> points) {
  for (float& length : points) length /= pointScale_;
  path_.dashArray = points.empty() ? nullptr : std::make_shared<const std::vector<float>>(std::move(points));
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
  path_.points.clear();
  path_.attributes.clip.reset();
  pageClipRect_ = {};
  pageScale_.reset();
  linkRect_ = {};
  originX_ = 0;
  originY_ = 0;
}

// Without a page, nothing drawn has an effect.
void PageWriter::ClosePage() {
  content_.reset();
  contents_.reset();
  resources_.reset();
  page_.reset();
  pageImages_.clear();
}

void PageWriter::DropPage() {
  for (const uint32_t image : pageImages_) engine::RemoveImage(*document_, image);
  ClosePage();
}

void PageWriter::Attempt::Undo() noexcept {
  content_.reset();
  for (; writer_.pageImages_.size() > images_; writer_.pageImages_.pop_back()) {
    engine::RemoveImage(*writer_.document_, writer_.pageImages_.back());
  }
  if (writer_.layers_ && writer_.layers_->Count() > groups_) writer_.layers_->RemoveLast();
}

void PageWriter::BeginPage(uint32_t pageNumber, double width, double height) {
  std::unique_ptr<engine::Page> page;
  if (document_ != nullptr) page = document_->NewPage(static_cast<int>(pageNumber) - 1, width, height);
  ResetPageState();
  DropPage();
  page_ = std::move(page);
  if (page_ == nullptr) return;
  resources_.emplace(*page_);
  contents_.emplace(*page_);
  content_.emplace(*resources_, &*contents_);
}

void PageWriter::SetPageScaleInfo(int32_t dotsPerInch) {
  if (page_ != nullptr) pageScale_ = static_cast<float>(dotsPerInch / kPointsPerInch / lineScale_);
}

uint32_t PageWriter::CurrentGroup() {
  if (page_ == nullptr || currentLayer_.empty()) return 0;
  return layers_->GetLayerGroup(page_->ObjectNumber(), currentLayer_);
}

void PageWriter::FinishPage() {
  if (page_ == nullptr) return;
  ContentGenerator::Attempt contentAttempt(*content_);
  engine::Page::Attempt pageAttempt(*page_);
  if (pageScale_) SetPageViewport(*page_, *pageScale_);
  const std::string_view content = content_->Finish();
  if (!content.empty()) {
    page_->SetContents(content_->Owner(), content);
    page_->WrapContents(ScaleWrapper(pointScale_, originX_, originY_), " Q");
    if (hasBackground_) SetPageBackground(*page_, background_.red, background_.green, background_.blue);
  }
  pageAttempt.Keep();
  contentAttempt.Keep();
  ClosePage();
}

}  // namespace hdi

// Image dictionaries, with the same keys as the engine's own images.
#include "engine/image.h"

#include <array>
#include <optional>
#include <utility>

#include "core/fpdfapi/page/cpdf_image.h"
#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_name.h"
#include "core/fpdfapi/parser/cpdf_number.h"
#include "core/fpdfapi/parser/cpdf_reference.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "core/fpdfapi/parser/cpdf_string.h"
#include "core/fxcodec/jpeg/jpegmodule.h"
#include "engine/document_implementation.h"
#include "engine/new_objects.h"
#include "engine/streams.h"

namespace hdi::engine {
namespace {

using JpegInfo = JpegModule::ImageInfo;

RetainPtr<CPDF_Dictionary> ImageDictionary(CPDF_Document& document, int width, int height,
                                           int bitsPerComponent) {
  auto dictionary = document.New<CPDF_Dictionary>();
  dictionary->SetNewFor<CPDF_Name>("Type", "XObject");
  dictionary->SetNewFor<CPDF_Name>("Subtype", "Image");
  dictionary->SetNewFor<CPDF_Number>("Width", width);
  dictionary->SetNewFor<CPDF_Number>("Height", height);
  dictionary->SetNewFor<CPDF_Number>("BitsPerComponent", bitsPerComponent);
  return dictionary;
}

void SetSoftMask(Document::Implementation& document, CPDF_Dictionary& image, int width, int height,
                 std::span<const uint8_t> alpha) {
  auto mask = ImageDictionary(*document.document, width, height, 8);
  mask->SetNewFor<CPDF_Name>("ColorSpace", "DeviceGray");
  image.SetNewFor<CPDF_Reference>("SMask", document.document,
                                  AddCompressedStream(document, alpha, std::move(mask)));
}

// Null for component counts without a colour space.
const char* ColorSpaceOf(const JpegInfo& info) {
  switch (info.num_components) {
    case 1:
      return "DeviceGray";
    case 3:
      return "DeviceRGB";
    case 4:
      return "DeviceCMYK";
    default:
      return nullptr;
  }
}

RetainPtr<CPDF_Dictionary> JpegDictionary(CPDF_Document& document, const JpegInfo& info) {
  auto dictionary = ImageDictionary(document, static_cast<int>(info.width), static_cast<int>(info.height),
                                    info.bits_per_components);
  dictionary->SetNewFor<CPDF_Name>("ColorSpace", ColorSpaceOf(info));
  dictionary->SetNewFor<CPDF_Name>("Filter", "DCTDecode");
  if (info.num_components == 4) {
    const auto decode = dictionary->SetNewFor<CPDF_Array>("Decode");
    for (int component = 0; component < 4; ++component) {
      decode->AppendNew<CPDF_Number>(1);
      decode->AppendNew<CPDF_Number>(0);
    }
  }
  if (!info.color_transform) {
    const auto parameters = dictionary->SetNewFor<CPDF_Dictionary>("DecodeParms");
    parameters->SetNewFor<CPDF_Number>("ColorTransform", 0);
  }
  return dictionary;
}

bool HasSize(std::span<const uint8_t> bytes, size_t rowLength, int32_t height) {
  return bytes.size() / rowLength == static_cast<size_t>(height) && bytes.size() % rowLength == 0;
}

}  // namespace

uint32_t AddJpegImage(Document& document, std::span<const uint8_t> jpeg, std::span<const uint8_t> alpha) {
  if (jpeg.empty()) return 0;
  CPDF_Document& pdf = *document.Internals().document;
  const std::optional<JpegInfo> info = JpegModule::LoadInfo(jpeg);
  if (!info || ColorSpaceOf(*info) == nullptr ||
      !CPDF_Image::IsValidJpegBitsPerComponent(info->bits_per_components)) {
    return 0;
  }
  NewObjects objects(pdf);
  auto dictionary = JpegDictionary(pdf, *info);
  const size_t maskSize = static_cast<size_t>(info->width) * static_cast<size_t>(info->height);
  if (!alpha.empty() && alpha.size() >= maskSize) {
    SetSoftMask(document.Internals(), *dictionary, static_cast<int>(info->width),
                static_cast<int>(info->height), alpha.first(maskSize));
  }
  const uint32_t image = AddStream(pdf, jpeg, std::move(dictionary));
  objects.Keep();
  return image;
}

uint32_t AddColorImage(Document& document, int32_t width, int32_t height, std::span<const uint8_t> rgb,
                       std::span<const uint8_t> alpha) {
  if (width <= 0 || height <= 0) return 0;
  const auto pixels = static_cast<size_t>(width);
  if (!HasSize(rgb, 3 * pixels, height) || !HasSize(alpha, pixels, height)) return 0;
  CPDF_Document& pdf = *document.Internals().document;
  NewObjects objects(pdf);
  auto dictionary = ImageDictionary(pdf, width, height, 8);
  dictionary->SetNewFor<CPDF_Name>("ColorSpace", "DeviceRGB");
  SetSoftMask(document.Internals(), *dictionary, width, height, alpha);
  const uint32_t image = AddCompressedStream(document.Internals(), rgb, std::move(dictionary));
  objects.Keep();
  return image;
}

uint32_t AddBlackAndWhiteImage(Document& document, int32_t width, int32_t height,
                               std::span<const uint8_t> bits) {
  if (width <= 0 || height <= 0 || !HasSize(bits, (static_cast<size_t>(width) + 7) / 8, height)) return 0;
  CPDF_Document& pdf = *document.Internals().document;
  auto dictionary = ImageDictionary(pdf, width, height, 1);
  const auto colorSpace = dictionary->SetNewFor<CPDF_Array>("ColorSpace");
  colorSpace->AppendNew<CPDF_Name>("Indexed");
  colorSpace->AppendNew<CPDF_Name>("DeviceRGB");
  colorSpace->AppendNew<CPDF_Number>(1);
  constexpr std::array<uint8_t, 6> kBlackWhite = {0, 0, 0, 255, 255, 255};
  colorSpace->AppendNew<CPDF_String>(kBlackWhite, CPDF_String::DataType::kIsHex);
  NewObjects objects(pdf);
  const uint32_t image = AddCompressedStream(document.Internals(), bits, std::move(dictionary));
  objects.Keep();
  return image;
}

void RemoveImage(Document& document, uint32_t image) noexcept {
  CPDF_Document& pdf = *document.Internals().document;
  const RetainPtr<const CPDF_Object> stream = pdf.GetIndirectObject(image);
  if (stream == nullptr) return;
  const RetainPtr<const CPDF_Stream> mask = stream->GetDict()->GetStreamFor("SMask");
  if (mask != nullptr) RemoveObject(pdf, mask->GetObjNum());
  RemoveObject(pdf, image);
}

}  // namespace hdi::engine

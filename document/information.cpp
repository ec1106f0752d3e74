// The document's information entries.
#include "document/information.h"

#include <array>
#include <ctime>
#include <string>

namespace hdi {
namespace {

constexpr std::u16string_view kProducer = u"pdf-ov.hdi";

// The current time as "D:YYYYMMDDHHMMSS" (ISO 32000-1:2008, 7.9.4), empty if the clock cannot be read.
std::string CreationDate() {
  const std::time_t now = std::time(nullptr);
  if (now == static_cast<std::time_t>(-1)) return {};
  std::tm local{};
#if defined(_WIN32)
  if (localtime_s(&local, &now) != 0) return {};
#else
  if (localtime_r(&now, &local) == nullptr) return {};
#endif
  std::array<char, 32> text{};
  const size_t length = std::strftime(text.data(), text.size(), "D:%Y%m%d%H%M%S", &local);
  return {text.data(), length};
}

}  // namespace

std::unique_ptr<engine::Document> CreateDocument(std::u16string_view creator, engine::Compression compression,
                                                 unsigned workers) {
  auto document = std::make_unique<engine::Document>(compression, workers);
  document->SetInformationBytes("CreationDate", CreationDate());
  document->SetInformationText("Creator", creator);
  document->SetInformationText("Producer", kProducer);
  return document;
}

}  // namespace hdi

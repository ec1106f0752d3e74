// Reads a saved document back with qpdf.
#pragma once

#include <qpdf/QPDF.hh>
#include <string>
#include <utility>
#include <vector>

#include "engine/document.h"

namespace hdi::engine {

struct StringSink final : BlockSink {
  bool WriteBlock(const void* data, size_t size) override {
    bytes.append(static_cast<const char*>(data), size);
    return true;
  }
  std::string bytes;
};

// Returns the uncompressed data of a stream; JPEG data is left as it is.
inline std::string StreamData(QPDFObjectHandle stream) {
  const bool isJpeg = stream.getDict().getKey("/Filter").isNameAndEquals("/DCTDecode");
  const auto data = isJpeg ? stream.getRawStreamData() : stream.getStreamData(qpdf_dl_generalized);
  return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
}

class SavedDocument {
 public:
  explicit SavedDocument(Document& document) : SavedDocument(BytesOf(document)) {}
  explicit SavedDocument(std::string bytes) : bytes_(std::move(bytes)) {
    pdf_.processMemoryFile("saved", bytes_.data(), bytes_.size());
  }

  QPDFObjectHandle Object(uint32_t number) { return pdf_.getObjectByID(static_cast<int>(number), 0); }
  std::vector<QPDFObjectHandle> Objects() { return pdf_.getAllObjects(); }
  QPDFObjectHandle Catalog() { return pdf_.getRoot(); }
  size_t PageCount() { return pdf_.getAllPages().size(); }
  QPDFObjectHandle Page(size_t index) { return pdf_.getAllPages().at(index); }

  // One item per stream.
  std::vector<std::string> PageContents(size_t index) {
    std::vector<std::string> contents;
    for (auto& stream : Page(index).getPageContents()) contents.push_back(StreamData(stream));
    return contents;
  }

 private:
  static std::string BytesOf(Document& document) {
    StringSink sink;
    document.Save(sink);
    return sink.bytes;
  }

  std::string bytes_;
  QPDF pdf_;
};

}  // namespace hdi::engine

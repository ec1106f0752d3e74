// A document as another library reads it back.
#pragma once

#include <qpdf/QPDF.hh>
#include <string>

#include "engine/document.h"

namespace hdi::engine {

struct StringSink final : BlockSink {
  bool WriteBlock(const void* data, size_t size) override {
    bytes.append(static_cast<const char*>(data), size);
    return true;
  }
  std::string bytes;
};

class SavedDocument {
 public:
  explicit SavedDocument(Document& document) {
    document.Save(sink_);
    pdf_.processMemoryFile("saved", sink_.bytes.data(), sink_.bytes.size());
  }

  QPDFObjectHandle Object(uint32_t number) { return pdf_.getObjectByID(static_cast<int>(number), 0); }
  QPDFObjectHandle Catalog() { return pdf_.getRoot(); }
  QPDFObjectHandle Page(size_t index) { return pdf_.getAllPages().at(index); }

 private:
  StringSink sink_;
  QPDF pdf_;
};

// The data of a stream without its compression; a JPEG stays what it is.
inline std::string StreamData(QPDFObjectHandle stream) {
  const bool isJpeg = stream.getDict().getKey("/Filter").isNameAndEquals("/DCTDecode");
  const auto data = isJpeg ? stream.getRawStreamData() : stream.getStreamData(qpdf_dl_generalized);
  return {reinterpret_cast<const char*>(data->getBuffer()), data->getSize()};
}

}  // namespace hdi::engine

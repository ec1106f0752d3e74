// What a new document says about itself.
#pragma once

#include <memory>
#include <string_view>

#include "engine/document.h"

namespace hdi {

// An empty document whose information dictionary (ISO 32000-1:2008, 14.3.3) holds "CreationDate", the local
// time without a zone; "Creator", the application that plots; and "Producer", this driver. Nothing else goes
// in: the drawing's name does not reach the document. Its streams are compressed by up to `workers` threads
// beside the caller's.
[[nodiscard]] std::unique_ptr<engine::Document> CreateDocument(std::u16string_view creator,
                                                               engine::Compression compression,
                                                               unsigned workers);

}  // namespace hdi

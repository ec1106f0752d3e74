// Creates the document and its information dictionary.
#pragma once

#include <memory>
#include <string_view>

#include "engine/document.h"

namespace hdi {

// Returns an empty document whose information dictionary (ISO 32000-1:2008, 14.3.3) holds "CreationDate", the
// local time without a zone; "Creator", the plotting application; and "Producer", this driver. The drawing's
// name is not included. Up to `workers` threads compress its streams beside the caller's.
[[nodiscard]] std::unique_ptr<engine::Document> CreateDocument(std::u16string_view creator,
                                                               engine::Compression compression,
                                                               unsigned workers);

}  // namespace hdi

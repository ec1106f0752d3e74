// Optional content (ISO 32000-1:2008, 8.11): groups, and the catalog's properties that list them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace hdi::engine {

class Document;

// Adds a group as the last of the groups and at `orderIndex` of the order that readers show, at most the
// number of groups. Groups are initially visible. Returns the object number of its dictionary. Throws
// std::bad_alloc, with nothing added.
[[nodiscard]] uint32_t AddOptionalContentGroup(Document& document, std::u16string_view name,
                                               size_t orderIndex);

// Removes a group from the lists and the document. Nothing may refer to it.
void RemoveOptionalContentGroup(Document& document, uint32_t group) noexcept;

}  // namespace hdi::engine

// Optional content of the document (ISO 32000-1:2008, 8.11): the groups and the catalog's properties that
// list them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace hdi::engine {

class Document;

// Makes a group and lists it: last among the groups, and at `orderIndex`, which is no higher than their
// count, in the order in which readers show them. All groups start visible. The object number of its
// dictionary. When it throws std::bad_alloc, it has made and listed nothing.
[[nodiscard]] uint32_t AddOptionalContentGroup(Document& document, std::u16string_view name,
                                               size_t orderIndex);

// Takes a group that nothing refers to out of the lists and out of the document.
void RemoveOptionalContentGroup(Document& document, uint32_t group) noexcept;

}  // namespace hdi::engine

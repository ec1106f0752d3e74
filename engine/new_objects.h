// Rollback of new objects in the engine's document. Private to this folder.
#pragma once

#include <cstdint>

#include "core/fpdfapi/parser/cpdf_document.h"

namespace hdi::engine {

// Removes an indirect object that nothing refers to. The trailer's Size counts up to the last object number,
// which must be in use (ISO 32000-1:2008, table 15).
inline void RemoveObject(CPDF_Document& document, uint32_t number) noexcept {
  document.DeleteIndirectObject(number);
  while (document.GetIndirectObject(document.GetLastObjNum()) == nullptr) {
    document.SetLastObjNum(document.GetLastObjNum() - 1);
  }
}

// Removes all objects with numbers above `last`.
inline void RemoveObjectsAfter(CPDF_Document& document, uint32_t last) noexcept {
  for (uint32_t number = document.GetLastObjNum(); number > last; --number) {
    document.DeleteIndirectObject(number);
  }
  document.SetLastObjNum(last);
}

// Removes the indirect objects added since its construction, unless Keep is called.
class NewObjects {
 public:
  explicit NewObjects(CPDF_Document& document) : document_(document), last_(document.GetLastObjNum()) {}
  NewObjects(const NewObjects&) = delete;
  NewObjects& operator=(const NewObjects&) = delete;
  ~NewObjects() {
    if (!areKept_) RemoveObjectsAfter(document_, last_);
  }

  void Keep() noexcept { areKept_ = true; }

 private:
  CPDF_Document& document_;
  uint32_t last_;
  bool areKept_ = false;
};

}  // namespace hdi::engine

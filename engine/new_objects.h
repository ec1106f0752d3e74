// Ways back for steps that make objects of the engine's document; seen by this folder only.
#pragma once

#include <cstdint>

#include "core/fpdfapi/parser/cpdf_document.h"

namespace hdi::engine {

// Takes an indirect object that nothing refers to out of the document. The file's trailer counts up to the
// last number, which must be in use (ISO 32000-1:2008, table 15).
inline void RemoveObject(CPDF_Document& document, uint32_t number) noexcept {
  document.DeleteIndirectObject(number);
  while (document.GetIndirectObject(document.GetLastObjNum()) == nullptr) {
    document.SetLastObjNum(document.GetLastObjNum() - 1);
  }
}

// Takes all objects with numbers above `last` out of the document.
inline void RemoveObjectsBehind(CPDF_Document& document, uint32_t last) noexcept {
  for (uint32_t number = document.GetLastObjNum(); number > last; --number) {
    document.DeleteIndirectObject(number);
  }
  document.SetLastObjNum(last);
}

// Takes the indirect objects that have been made since its making out of the document again, unless they are
// to be kept.
class NewObjects {
 public:
  explicit NewObjects(CPDF_Document& document) : document_(document), last_(document.GetLastObjNum()) {}
  NewObjects(const NewObjects&) = delete;
  NewObjects& operator=(const NewObjects&) = delete;
  ~NewObjects() {
    if (!areKept_) RemoveObjectsBehind(document_, last_);
  }

  void Keep() noexcept { areKept_ = true; }

 private:
  CPDF_Document& document_;
  uint32_t last_;
  bool areKept_ = false;
};

}  // namespace hdi::engine

// The engine's objects behind Document and Page; seen by this folder only.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "core/fpdfapi/page/cpdf_page.h"
#include "core/fpdfapi/parser/cpdf_document.h"
#include "engine/document.h"
#include "engine/page.h"
#include "public/cpp/fpdf_scopers.h"

namespace hdi::engine {

struct Document::Implementation {
  ScopedFPDFDocument handle;
  CPDF_Document* document = nullptr;  // the object behind the handle
};

struct Page::Implementation {
  ScopedFPDFPage handle;
  CPDF_Page* page = nullptr;  // the object behind the handle
  CPDF_Document* document = nullptr;

  // Names given so far: the last counter and the objects of each category.
  struct Names {
    int last = 0;
    std::map<uint32_t, std::string> byObject;
  };
  std::map<ResourceCategory, Names> names;
  std::map<std::string, uint32_t> standardFonts;
};

}  // namespace hdi::engine

// The engine's objects behind Document and Page; seen by this folder only.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

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

  // Resources named so far, by category. They become the page's, and dictionaries without an object number
  // indirect objects, when it gets its contents.
  struct Resource {
    std::string name;
    uint32_t objectNumber;
    RetainPtr<CPDF_Dictionary> dictionary;
  };
  std::map<ResourceCategory, std::vector<Resource>> resources;
  std::map<ResourceCategory, std::map<uint32_t, std::string>> namesByObject;
  std::map<std::string, std::string> standardFonts;  // from base font to name

  // Enters a resource; its name.
  std::string Add(ResourceCategory category, uint32_t objectNumber, RetainPtr<CPDF_Dictionary> dictionary);
  void PutResources();
};

}  // namespace hdi::engine

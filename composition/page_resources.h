// The page's resources as ResourceNames.
#pragma once

#include <cstdint>
#include <string>

#include "composition/content_generator.h"
#include "engine/page.h"

namespace hdi {

class PageResources final : public ResourceNames {
 public:
  // `page` must outlive the object.
  explicit PageResources(engine::Page& page) : page_(page) {}

  std::string AddExtGState(const ExtGStateEntries& entries) override;
  std::string FontName(uint32_t objectNumber) override;
  std::string XObjectName(uint32_t objectNumber) override;
  std::string PropertiesName(uint32_t objectNumber) override;
  [[nodiscard]] size_t Count() const override { return page_.ResourceCount(); }
  void KeepFirst(size_t count) noexcept override { page_.KeepFirstResources(count); }

 private:
  engine::Page& page_;
};

}  // namespace hdi

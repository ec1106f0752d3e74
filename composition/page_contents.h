// The page's content stream as a ContentSink.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "composition/content_generator.h"
#include "engine/page.h"

namespace hdi {

class PageContents final : public ContentSink {
 public:
  // `page` must outlive the object.
  explicit PageContents(engine::Page& page) : page_(page) {}

  [[nodiscard]] size_t PieceSize() const override { return page_.ContentsPieceSize(); }
  void Take(const std::shared_ptr<const char[]>& owner, std::string_view bytes) override {
    page_.AppendContents(owner, bytes);
  }
  [[nodiscard]] size_t Size() const override { return page_.ContentsSize(); }
  void KeepFirst(size_t size) noexcept override { page_.KeepFirstContents(size); }

 private:
  engine::Page& page_;
};

}  // namespace hdi

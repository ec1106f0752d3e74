// Comments are square annotations with contents and no appearance stream.
#include "document/comments.h"

namespace hdi {
namespace {

constexpr std::u16string_view kTitle = u"Orvane SHX Text";

}  // namespace

// Annotations are not affected by the matrix that wraps the page's content, so the rectangle is converted to
// points here.
void WriteShxComment(engine::Page& page, std::u16string_view text, const CommentRectangle& dots,
                     uint32_t flags, float pointScale, float originX, float originY) {
  const engine::Rectangle points{static_cast<float>(dots.left) * pointScale + originX,
                                 static_cast<float>(dots.bottom) * pointScale + originY,
                                 static_cast<float>(dots.right) * pointScale + originX,
                                 static_cast<float>(dots.top) * pointScale + originY};
  page.AddSquareAnnotation(points, text, kTitle, flags);
}

}  // namespace hdi

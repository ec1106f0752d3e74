// A page under construction: its content streams and resources. Resources are added together with the
// contents, so a page without contents leaves none in the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace hdi::engine {

enum class ResourceCategory : uint8_t { kExtGState, kFont, kProperties, kXObject };

// Entries of a graphics state parameter dictionary (ISO 32000-1:2008, 8.4.5). Absent entries are not written.
struct GraphicsState {
  std::optional<float> fillAlpha;             // ca
  std::optional<float> strokeAlpha;           // CA
  std::optional<std::string_view> blendMode;  // BM
};

// In points.
struct Rectangle {
  float left, bottom, right, top;
};

class Page {
 public:
  struct Implementation;

  explicit Page(std::unique_ptr<Implementation> implementation);
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page();  // releases the engine's page object; the page stays in the document

  // Undoes everything added to a page without contents since its construction, unless Keep is called. One at
  // a time.
  class Attempt;

  // Object number of the page dictionary. Later pages have higher numbers.
  [[nodiscard]] uint32_t ObjectNumber() const;

  [[nodiscard]] float Width() const;
  [[nodiscard]] float Height() const;

  // Whether the page has a "Contents" entry (ISO 32000-1:2008, 7.7.3.3).
  [[nodiscard]] bool HasContents() const;
  // The page has one content stream, which is appended in pieces and compressed meanwhile. ContentsPieceSize
  // is the size from which the next bytes are worth a piece; ContentsSize is the number of bytes appended.
  // `owner` keeps the bytes alive while they are needed. AppendContents throws std::bad_alloc, with nothing
  // appended.
  [[nodiscard]] size_t ContentsPieceSize() const;
  [[nodiscard]] size_t ContentsSize() const;
  void AppendContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes);
  // Drops all after the first `size` bytes, which must be a piece boundary.
  void KeepFirstContents(size_t size) noexcept;
  // Appends the last piece, makes the stream the page's contents and adds all resources named so far.
  void SetContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes);
  // Adds a stream before and one after the page's contents. Does nothing for a page without contents.
  void WrapContents(std::string_view before, std::string_view after);
  // Adds a stream before the page's contents. Does nothing for a page without contents.
  void PrependContents(std::string_view bytes);

  // Adds a new graphics state dictionary as a resource and returns its name.
  std::string AddGraphicsState(const GraphicsState& state);
  // Returns the resource name of an indirect object, adding the resource if needed.
  std::string ResourceName(ResourceCategory category, uint32_t objectNumber);
  // Returns the resource name of a standard font (9.6.2.2) with WinAnsiEncoding, adding it if needed.
  std::string StandardFontName(const std::string& baseFont);

  // The number of resources named, and a way to drop all after the first `count`.
  [[nodiscard]] size_t ResourceCount() const;
  void KeepFirstResources(size_t count) noexcept;

  // Annotations are added completely, or std::bad_alloc is thrown and none is added.

  // Adds a link annotation without a visible border (12.5.6.5) whose action resolves `uri` (12.6.4.7).
  void AddLinkAnnotation(const Rectangle& rectangle, const std::string& uri);
  // Adds a square annotation without a visible border (12.5.6.8). Contents and title are text strings up to
  // the first NUL; the flags are written as a signed 32-bit integer.
  void AddSquareAnnotation(const Rectangle& rectangle, std::u16string_view contents,
                           std::u16string_view title, uint32_t flags);

  // Sets the page's only viewport, with a rectilinear measure (12.9.1). `scale` is the factor of the number
  // format along x; the units have no names and the viewport has no extent. Here and in annotations, numbers
  // beyond 64 bits are clamped.
  void SetMeasureViewport(float scale);

 private:
  std::unique_ptr<Implementation> implementation_;
};

class Page::Attempt {
 public:
  explicit Attempt(Page& page);
  Attempt(const Attempt&) = delete;
  Attempt& operator=(const Attempt&) = delete;
  ~Attempt() {
    if (!isKept_) Undo();
  }

  void Keep() noexcept { isKept_ = true; }

 private:
  void Undo() noexcept;

  Implementation& page_;
  uint32_t lastObject_;  // of the document
  size_t contentsSize_;
  size_t pendingStreams_;
  size_t annotations_;
  bool isKept_ = false;
};

// Formats a number as the engine does, with all digits of an f32.
[[nodiscard]] std::string NumberText(float value);

}  // namespace hdi::engine

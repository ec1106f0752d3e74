// A page of the engine's document while it is being made: its contents as streams of our own bytes, and its
// resources, which come with the contents: a page that gets none leaves nothing of them in the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace hdi::engine {

enum class ResourceCategory : uint8_t { kExtGState, kFont, kProperties, kXObject };

// Entries of a graphics state parameter dictionary (ISO 32000-1:2008, 8.4.5); what is absent is not written.
struct GraphicsState {
  std::optional<float> fillAlpha;             // ca
  std::optional<float> strokeAlpha;           // CA
  std::optional<std::string_view> blendMode;  // BM
};

// Left, bottom, right, top in points.
struct Rectangle {
  float left, bottom, right, top;
};

class Page {
 public:
  struct Implementation;

  explicit Page(std::unique_ptr<Implementation> implementation);
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page();  // releases the page's objects; the page stays in the document

  // Takes all that a page without contents has got since its making away again, unless that is to be kept.
  // One at a time.
  class Attempt;

  // Of the page's dictionary. Later pages have higher numbers.
  [[nodiscard]] uint32_t ObjectNumber() const;

  [[nodiscard]] float Width() const;
  [[nodiscard]] float Height() const;

  // Whether the page has a "Contents" entry (ISO 32000-1:2008, 7.7.3.3).
  [[nodiscard]] bool HasContents() const;
  // The page's one content stream comes in pieces, which are compressed meanwhile. `owner` keeps the bytes as
  // long as they are needed. From this size on the next bytes are worth a piece; when AppendContents throws
  // std::bad_alloc, it has taken nothing.
  [[nodiscard]] size_t ContentsPieceSize() const;
  [[nodiscard]] size_t ContentsSize() const;
  void AppendContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes);
  // Goes back to the first `size` bytes, which end with a piece.
  void KeepFirstContents(size_t size) noexcept;
  // Makes what has been appended, and the last piece, the page's contents, and all that has been named so far
  // its resources.
  void SetContents(const std::shared_ptr<const char[]>& owner, std::string_view bytes);
  // Puts a stream before everything that the page's contents hold, and one behind. Nothing for a page without
  // contents.
  void WrapContents(std::string_view before, std::string_view behind);
  // Puts a stream before everything that the page's contents hold. Nothing for a page without contents.
  void PrependContents(std::string_view bytes);

  // A new graphics state dictionary as a resource of the page; its name.
  std::string AddGraphicsState(const GraphicsState& state);
  // The name under which an indirect object is a resource of the page; becomes one if it is not yet.
  std::string ResourceName(ResourceCategory category, uint32_t objectNumber);
  // The same for a font that every reader has (9.6.2.2), with WinAnsiEncoding.
  std::string StandardFontName(const std::string& baseFont);

  // How many resources have been named, and the way back to the first `count` of them.
  [[nodiscard]] size_t ResourceCount() const;
  void KeepFirstResources(size_t count) noexcept;

  // An annotation is appended whole, or std::bad_alloc is thrown and there is none.

  // Appends a link annotation without a visible border (12.5.6.5) whose action resolves `uri` (12.6.4.7).
  void AddLinkAnnotation(const Rectangle& rectangle, const std::string& uri);
  // Appends a square annotation without a visible border (12.5.6.8): text strings for its contents and its
  // title, each up to its first zero unit, and the flags as the 32 bits of a signed integer.
  void AddSquareAnnotation(const Rectangle& rectangle, std::u16string_view contents,
                           std::u16string_view title, uint32_t flags);

  // Gives the page one viewport with a rectilinear measure (12.9.1), in place of any that it has. `scale` is
  // the factor of the number format along x; the units have no names and the viewport has no extent. Here and
  // in annotations a number beyond 64 bits is written as the largest within them.
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

// A number in the engine's own form, with all the digits of an f32.
[[nodiscard]] std::string NumberText(float value);

}  // namespace hdi::engine

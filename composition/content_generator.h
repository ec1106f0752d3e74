// The content generator writes page objects, one after the other, to the page's content stream (ISO
// 32000-1:2008, 7.8.2).
//
// All objects share one graphics state, and an operator is written only if its value differs from what the
// stream has set, so a run of lines in one pen costs only its geometry. The clip is a property of each
// object; clipping operators are written where it changes between neighbours. An object's bytes are written
// at once and nothing else of it is kept.
//
// Independent of the engine: resources are named through ResourceNames, and the bytes go to a ContentSink.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "composition/byte_buffer.h"
#include "composition/page_objects.h"

namespace hdi {

// Entries of a graphics state parameter dictionary (ISO 32000-1:2008, 8.4.5). Absent entries are not written.
struct ExtGStateEntries {
  std::optional<float> fillAlpha;    // ca
  std::optional<float> strokeAlpha;  // CA
  std::optional<BlendMode> blendMode;
  bool operator==(const ExtGStateEntries&) const = default;
};

// Adds resources to the page's dictionary and returns their names in the content stream.
class ResourceNames {
 public:
  // Adds a new dictionary with these entries.
  virtual std::string AddExtGState(const ExtGStateEntries& entries) = 0;
  // Return the resource name of an object, adding the resource if needed; the same object always gets the
  // same name. Font 0 is the standard font Helvetica.
  virtual std::string FontName(uint32_t objectNumber) = 0;
  virtual std::string XObjectName(uint32_t objectNumber) = 0;
  virtual std::string PropertiesName(uint32_t objectNumber) = 0;

  // The number of resources named, and a way to drop all after the first `count`.
  [[nodiscard]] virtual size_t Count() const = 0;
  virtual void KeepFirst(size_t count) noexcept = 0;

 protected:
  ~ResourceNames() = default;
};

// Consumes a stream piece by piece.
class ContentSink {
 public:
  // The size from which a piece is worth handing over.
  [[nodiscard]] virtual size_t PieceSize() const = 0;
  // `owner` keeps the bytes alive. Throws std::bad_alloc, with nothing taken.
  virtual void Take(const std::shared_ptr<const char[]>& owner, std::string_view bytes) = 0;

  // The number of bytes taken, and a way to drop all after the first `size`, which must be a piece boundary.
  [[nodiscard]] virtual size_t Size() const = 0;
  virtual void KeepFirst(size_t size) noexcept = 0;

 protected:
  ~ContentSink() = default;
};

class ContentGenerator {
 public:
  // Both must outlive the generator. Without a sink the generator keeps all bytes.
  explicit ContentGenerator(ResourceNames& names, ContentSink* sink = nullptr) : names_(names), sink_(sink) {}

  // Undoes everything written since its construction, in the stream and the names, unless Keep is called. One
  // at a time.
  class Attempt;

  // If one of these throws, what it has written so far stays in the stream; see Attempt.
  void Write(const PathObject& object);
  void Write(const TextObject& object);
  void Write(const ImageObject& object);

  // Ends the stream and returns the bytes not yet handed to the sink; empty if no object was written.
  [[nodiscard]] std::string_view Finish();
  // Keeps the bytes that Finish returned alive.
  [[nodiscard]] std::shared_ptr<const char[]> Owner() const { return out_.Owner(); }

 private:
  // What the stream has set so far.
  struct ContentState {
    bool hasHead = false;
    uint32_t layer = 0;  // the group of the open marked content, 0 if none is open
    Color fillColor;
    Color strokeColor;
    float lineWidth = 1.0F;
    uint8_t lineCap = 0;
    uint8_t lineJoin = 0;
    float fillAlpha = 1.0F;
    float strokeAlpha = 1.0F;
    BlendMode blendMode = BlendMode::kNormal;
    SharedClip clip;
    SharedDashes dashArray;
    float dashPhase = 0.0F;
  };
  using TransparencyKey = std::tuple<float, float, BlendMode>;
  struct NamedExtGState {
    std::string name;
    size_t index;  // among all resources
  };

  void BeginObject(const ObjectAttributes& attributes);
  void WriteHead();
  void WriteClip(const SharedClip& clip);
  void WriteMarks(uint32_t layer);
  void WriteColorsAndLine(const ObjectAttributes& attributes);
  void WriteDash(const SharedDashes& dashArray, float dashPhase);
  void WriteTransparency(const ObjectAttributes& attributes);
  // Returns the name of the dictionary for these values; a new one gets `entries`.
  const std::string& ExtGStateName(const TransparencyKey& values, const ExtGStateEntries& entries);
  void WritePoints(const PathPoints& points);
  void WriteMatrix(const Matrix& matrix);
  void WriteSmallInteger(int value);
  void WriteNumber(float value, int precision);
  void WritePlainNumber(float value);
  void WriteColor(const Color& color, std::string_view op);
  // Hands the bytes to the sink once they are enough for a piece.
  void PassOn();

  ResourceNames& names_;
  ContentSink* sink_;
  ByteBuffer out_;
  std::optional<ByteBuffer> passed_;  // the first bytes handed to the sink since the attempt began
  ContentState state_;
  std::map<TransparencyKey, NamedExtGState> extGStates_;
};

class ContentGenerator::Attempt {
 public:
  explicit Attempt(ContentGenerator& content);
  Attempt(const Attempt&) = delete;
  Attempt& operator=(const Attempt&) = delete;
  ~Attempt() {
    if (!isKept_) Undo();
  }

  void Keep() noexcept { isKept_ = true; }

 private:
  void Undo() noexcept;

  ContentGenerator& content_;
  ContentState state_;
  size_t size_;
  size_t sinkSize_;
  size_t names_;
  bool isKept_ = false;
};

}  // namespace hdi

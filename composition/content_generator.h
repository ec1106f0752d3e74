// The content generator: a page's objects, one after the other, as the bytes of its content stream (ISO
// 32000-1:2008, 7.8.2).
//
// All objects stand in one graphic state, and an operator is written only when its value differs from what
// the stream has set, so that a run of lines in one pen costs nothing but its geometry. The clip is a
// property of each object: the stream gets clipping operators where it changes between neighbours. An
// object's bytes are written when it is finished; nothing of it is kept.
//
// Knows nothing of the engine: resources are asked for by name through ResourceNames, and what is written
// goes to a ContentSink.
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

// Entries of a graphics state parameter dictionary (ISO 32000-1:2008, 8.4.5); what is absent is not written.
struct ExtGStateEntries {
  std::optional<float> fillAlpha;    // ca
  std::optional<float> strokeAlpha;  // CA
  std::optional<BlendMode> blendMode;
  bool operator==(const ExtGStateEntries&) const = default;
};

// Puts resources into the page's dictionary and tells the names that the stream calls them by.
class ResourceNames {
 public:
  // A new dictionary with these entries.
  virtual std::string AddExtGState(const ExtGStateEntries& entries) = 0;
  // The name of an object that is or becomes a resource of its category; the same object gives the same name.
  // Font 0 is the base font Helvetica.
  virtual std::string FontName(uint32_t objectNumber) = 0;
  virtual std::string XObjectName(uint32_t objectNumber) = 0;
  virtual std::string PropertiesName(uint32_t objectNumber) = 0;

  // How many resources have been named, and the way back to the first `count` of them.
  [[nodiscard]] virtual size_t Count() const = 0;
  virtual void KeepFirst(size_t count) noexcept = 0;

 protected:
  ~ResourceNames() = default;
};

// Takes a stream in pieces.
class ContentSink {
 public:
  // From this size on bytes are worth a piece.
  [[nodiscard]] virtual size_t PieceSize() const = 0;
  // `owner` keeps the bytes. When it throws std::bad_alloc, it has taken nothing.
  virtual void Take(const std::shared_ptr<const char[]>& owner, std::string_view bytes) = 0;

  // How many bytes have been taken, and the way back to the first `size` of them, which end with a piece.
  [[nodiscard]] virtual size_t Size() const = 0;
  virtual void KeepFirst(size_t size) noexcept = 0;

 protected:
  ~ContentSink() = default;
};

class ContentGenerator {
 public:
  // Both must outlive the generator. Without a sink all bytes stay with the generator.
  explicit ContentGenerator(ResourceNames& names, ContentSink* sink = nullptr) : names_(names), sink_(sink) {}

  // Takes all that has been written since its making out of the stream and the names again, unless that is to
  // be kept. One at a time.
  class Attempt;

  // When one throws, what it has written so far stands in the stream.
  void Write(const PathObject& object);
  void Write(const TextObject& object);
  void Write(const ImageObject& object);

  // Ends the stream and returns the bytes that the sink has not got; empty when no object was written.
  [[nodiscard]] std::string_view Finish();
  // Keeps the bytes that Finish has returned.
  [[nodiscard]] std::shared_ptr<const char[]> Owner() const { return out_.Owner(); }

 private:
  // What the stream has set so far.
  struct ContentState {
    bool hasHead = false;
    uint32_t layer = 0;  // the group of the open mark, 0 when none is open
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
  // The name of the dictionary for these values; it gets `entries` when it is new.
  const std::string& ExtGStateName(const TransparencyKey& values, const ExtGStateEntries& entries);
  void WritePoints(const PathPoints& points);
  void WriteMatrix(const Matrix& matrix);
  void WriteSmallInteger(int value);
  void WriteNumber(float value, int precision);
  void WritePlainNumber(float value);
  void WriteColor(const Color& color, std::string_view op);
  // Hands the bytes to the sink when they are enough for a piece.
  void PassOn();

  ResourceNames& names_;
  ContentSink* sink_;
  ByteBuffer out_;
  std::optional<ByteBuffer> passed_;  // the first bytes that went to the sink since the attempt began
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

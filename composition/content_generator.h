// The content generator: a page's objects, one after the other, as the bytes of its content stream (ISO
// 32000-1:2008, 7.8.2).
//
// All objects stand in one graphic state, and an operator is written only when its value differs from what
// the stream has set, so that a run of lines in one pen costs nothing but its geometry. The clip is a
// property of each object: the stream gets clipping operators where it changes between neighbours. An
// object's bytes are written when it is finished; nothing of it is kept.
//
// Knows nothing of the engine: resources are asked for by name through ResourceNames.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

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

 protected:
  ~ResourceNames() = default;
};

class ContentGenerator {
 public:
  // `names` must outlive the generator.
  explicit ContentGenerator(ResourceNames& names) : names_(names) {}

  void Write(const PathObject& object);
  void Write(const TextObject& object);
  void Write(const ImageObject& object);

  // The stream's bytes so far, but for those that have been dropped.
  [[nodiscard]] const ByteBuffer& Bytes() const { return out_; }
  void DropBytes() { out_.StartAnew(); }

  // Ends the stream and returns the bytes that it still has, which belong to the generator; empty when no
  // object was written.
  [[nodiscard]] std::string_view Finish();

 private:
  // What the stream has set so far.
  struct ContentState {
    Color fillColor;
    Color strokeColor;
    float lineWidth = 1.0F;
    uint8_t lineCap = 0;
    uint8_t lineJoin = 0;
    float fillAlpha = 1.0F;
    float strokeAlpha = 1.0F;
    BlendMode blendMode = BlendMode::kNormal;
    SharedClip clip;
    std::vector<float> dashArray;
    float dashPhase = 0.0F;
  };
  using TransparencyKey = std::tuple<float, float, BlendMode>;

  void BeginObject(const ObjectAttributes& attributes);
  void WriteHead();
  void WriteClip(const SharedClip& clip);
  void WriteMarks(uint32_t layer);
  void WriteColorsAndLine(const ObjectAttributes& attributes);
  void WriteDash(const std::vector<float>& dashArray, float dashPhase);
  void WriteTransparency(const ObjectAttributes& attributes);
  void WritePoints(const PathPoints& points);
  void WriteMatrix(const Matrix& matrix);
  void WriteSmallInteger(int value);
  void WriteNumber(float value, int precision);
  void WritePlainNumber(float value);
  void WriteColor(const Color& color, std::string_view op);

  ResourceNames& names_;
  ByteBuffer out_;
  bool hasHead_ = false;
  ContentState state_;
  uint32_t layer_ = 0;  // the group of the open mark, 0 when none is open
  std::map<TransparencyKey, std::string> extGStates_;
};

}  // namespace hdi

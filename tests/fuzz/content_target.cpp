// Feeds the content generator with arbitrary page objects. Checks that it writes tokens of a content stream
// with valid numbers and balanced levels and marks.
#include <algorithm>
#include <bitset>
#include <memory>
#include <set>
#include <string>

#include "composition/content_generator.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

using fuzzing::ByteSource;
using fuzzing::Require;

class PlainNames final : public hdi::ResourceNames {
 public:
  std::string AddExtGState(const hdi::ExtGStateEntries&) override { return "E" + std::to_string(++states_); }
  std::string FontName(uint32_t number) override { return "F" + std::to_string(number); }
  std::string XObjectName(uint32_t number) override { return "X" + std::to_string(number); }
  std::string PropertiesName(uint32_t number) override { return "P" + std::to_string(number); }
  [[nodiscard]] size_t Count() const override { return 0; }
  void KeepFirst(size_t /*count*/) noexcept override {}

 private:
  int states_ = 0;
};

hdi::PathPoints TakePoints(ByteSource& source) {
  hdi::PathPoints points(source.TakeUpTo(12));
  for (hdi::PathPoint& point : points) {
    const uint8_t kind = source.TakeUpTo(5);
    point = {source.TakeNumber(), source.TakeNumber(), static_cast<hdi::PointType>(kind % 3), kind > 2};
  }
  return points;
}

hdi::Color TakeColor(ByteSource& source) {
  return {source.Take<uint8_t>(), source.Take<uint8_t>(), source.Take<uint8_t>()};
}

// As in real pages, each object changes only some of the previous one's attributes.
void Change(hdi::ObjectAttributes& attributes, ByteSource& source) {
  const std::bitset<8> changes(source.Take<uint8_t>());
  if (changes[0]) attributes.clip = std::make_shared<hdi::Clip>(TakePoints(source));
  if (changes[1]) attributes.layer = source.TakeUpTo(3);
  if (changes[2]) attributes.blendMode = static_cast<hdi::BlendMode>(source.TakeUpTo(1));
  if (changes[3]) attributes.strokeAlpha = attributes.fillAlpha = source.TakeNumber();
  if (changes[4]) attributes.strokeColor = TakeColor(source);
  if (changes[5]) attributes.fillColor = TakeColor(source);
  if (changes[6]) {
    attributes.lineWidth = source.TakeNumber();
    attributes.lineCap = source.Take<uint8_t>();
    attributes.lineJoin = source.Take<uint8_t>();
  }
  if (changes[7]) attributes.clip = nullptr;
}

hdi::Matrix TakeMatrix(ByteSource& source) {
  hdi::Matrix matrix{};
  for (float& number : matrix) number = source.TakeNumber();
  return matrix;
}

hdi::PathObject TakePath(ByteSource& source) {
  hdi::PathObject object;
  object.points = TakePoints(source);
  std::vector<float> dashes(source.TakeUpTo(4));
  for (float& dash : dashes) dash = source.TakeNumber();
  if (!dashes.empty()) object.dashArray = std::make_shared<const std::vector<float>>(std::move(dashes));
  object.dashPhase = source.TakeNumber();
  object.fill = static_cast<hdi::FillType>(source.TakeUpTo(2));
  object.stroke = source.TakeUpTo(1) != 0;
  return object;
}

hdi::TextObject TakeText(ByteSource& source) {
  hdi::TextObject object;
  object.matrix = TakeMatrix(source);
  object.font = source.TakeUpTo(3);
  object.fontSize = source.TakeNumber();
  object.charSpace = source.TakeNumber();
  object.horizontalScale = source.TakeNumber();
  object.renderMode = source.TakeUpTo(7);
  object.codes.resize(source.TakeUpTo(8));
  for (uint16_t& code : object.codes) code = source.Take<uint16_t>();
  return object;
}

hdi::ImageObject TakeImage(ByteSource& source) {
  return {.attributes = {}, .matrix = TakeMatrix(source), .image = source.TakeUpTo(3)};
}

void WriteObject(hdi::ContentGenerator& generator, const hdi::ObjectAttributes& attributes,
                 ByteSource& source) {
  const auto write = [&](auto object) {
    object.attributes = attributes;
    generator.Write(object);
  };
  const uint8_t kind = source.TakeUpTo(2);
  if (kind == 0) write(TakePath(source));
  if (kind == 1) write(TakeText(source));
  if (kind == 2) write(TakeImage(source));
}

bool IsOperator(std::string_view token) {
  static const std::set<std::string_view> kOperators = {
      "q", "Q", "RG", "rg", "w", "J",  "j",  "d",  "gs", "cm", "m",  "l",  "c",  "h",  "re", "W",   "n",
      "S", "s", "f",  "f*", "B", "B*", "BT", "ET", "Tm", "Tc", "Tz", "Tf", "Tr", "Tj", "Do", "BDC", "EMC"};
  return kOperators.contains(token);
}

bool IsOperand(std::string_view token) {
  const bool isHexString = token.starts_with('<') && token.ends_with('>') &&
                           token.find_first_not_of("0123456789ABCDEF", 1) == token.size() - 1;
  return token.starts_with('/') || token == "[" || token == "]" || token == "[]" || isHexString ||
         fuzzing::IsPdfNumber(token);
}

void CheckStream(std::string_view stream) {
  int levels = 0;
  int marks = 0;
  while (!stream.empty()) {
    const size_t end = std::min(stream.find_first_of(" \n"), stream.size());
    const std::string_view token = stream.substr(0, end);
    stream.remove_prefix(std::min(end + 1, stream.size()));
    if (token.empty()) continue;
    Require(IsOperator(token) || IsOperand(token), "not a token of a content stream", token);
    levels += token == "q" ? 1 : token == "Q" ? -1 : 0;
    marks += token == "BDC" ? 1 : token == "EMC" ? -1 : 0;
    Require(levels >= 0 && marks >= 0 && marks <= 1, "closes what is not open", stream);
  }
  Require(marks == 0, "a mark stays open", "");
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ByteSource source(data, size);
  PlainNames names;
  hdi::ContentGenerator generator(names);
  hdi::ObjectAttributes attributes;
  while (!source.Rest().empty()) {
    Change(attributes, source);
    WriteObject(generator, attributes, source);
  }
  CheckStream(generator.Finish());
  return 0;
}

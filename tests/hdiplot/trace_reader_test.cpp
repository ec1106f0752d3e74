// Reading traces: what is refused, where, and with which words.
#include "host/hdiplot/trace_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>
#include <string>

#include "host/hdiplot/errors.h"
#include "tests/hdiplot/command.h"

namespace hdiplot {
namespace {

using testing::HasSubstr;

// The message of reading `text` as a trace, without the file's directory; empty when it is read.
std::string MessageOf(const std::string& text) {
  const command::Workplace place;
  place.Write("job.jsonl", text);
  try {
    (void)ReadTrace(place.Path("job.jsonl"));
  } catch (const FileError& error) {
    const std::string message = error.what();
    return message.substr(message.find("job.jsonl"));
  }
  return "";
}

struct BadLine {
  const char* line;
  const char* message;  // a part of it
};

// Each line as the third of a trace is refused with the file, the line and its message.
void ExpectRefused(std::span<const BadLine> lines) {
  for (const BadLine& bad : lines) {
    SCOPED_TRACE(bad.line);
    const std::string message = MessageOf("{\"job\": {}}\r\n\r\n" + std::string(bad.line) + "\n");
    EXPECT_THAT(message, testing::StartsWith("job.jsonl:3: "));
    EXPECT_THAT(message, HasSubstr(bad.message));
  }
}

constexpr BadLine kNoCalls[] = {
    {"hello", "invalid JSON: column 1"},
    {"{\"call\": \"DevEndPage\"", "invalid JSON"},
    {"{\"call\": \"DevSetLayer\", \"name\": \"\xff\"}", "ill-formed UTF-8"},
    {R"({"call": "DevSetLayer", "name": "\ud800"})", "invalid JSON"},
    {R"({"call": "DevSetLineScale", "scale": 1e999})", "number overflow"},
    {R"({"call": "DevSetAlpha", "alpha": 1, "alpha": 2})", "key \"alpha\" is there twice"},
    {"{}", "must be an object with the key \"call\""},
    {R"({"job": {}})", "a job line must be the first"},
    {R"({"call": 7})", "call: must be a string"},
    {R"({"call": "DevSetOwnerWindow"})", "unknown call \"DevSetOwnerWindow\""},
    {R"({"call": "DevEndPage", "page": 1})", "DevEndPage: unknown key \"page\""},
    {R"({"call": "DevSetAlpha"})", "DevSetAlpha: key \"alpha\" is missing"},
};
TEST(TraceReader, RefusesLinesThatAreNoCalls) { ExpectRefused(kNoCalls); }

constexpr BadLine kBadValues[] = {
    {R"({"call": "DevSetAlpha", "alpha": 1.0})", "alpha: must be an integer"},
    {R"({"call": "DevSetAlpha", "alpha": 4294967296})", "alpha: must be from 0 to 4294967295"},
    {R"({"call": "DevGetCaps", "index": 2147483648})", "index: must be from -2147483648 to 2147483647"},
    {R"({"call": "DevSetLineScale", "scale": null})", "scale: must be a number"},
    {R"({"call": "DevSetPen", "style": 0, "width": 1, "color": [1, 2]})", "color: must be an array of 3"},
    {R"({"call": "DevSetPen", "style": 0, "width": 1, "color": [1, 2, 256]})",
     "color[2]: must be from 0 to 255"},
    {R"({"call": "DevSetPen", "style": 0, "width": 1, "color": [0, 0, 0], "entries": [1, -1]})",
     "entries[1]: must"},
    {R"({"call": "DevSetBrush", "color": [0, 0, 0], "hatch": -1})",
     "hatch: must be an integer that is not negative"},
    {R"({"call": "DevPolyline", "points": [[1, 2], [3]]})", "points[1]: must be an array of two numbers"},
    {R"({"call": "DevPolyline", "points": [[1, "2"]]})", "points[0]: must be an array of two numbers"},
    {R"({"call": "DevPolyPolygon", "polygons": [[[1, 2]], [[1, 2, 3]]]})",
     "polygons[1][0]: must be an array"},
    {R"({"call": "DevPolyPolygon", "polygons": null})", "polygons: must be an array"},
    {R"({"call": "DevSetLayer", "name": "a\u0000b"})", "name: holds a zero character"},
    {R"({"call": "DevShxComment", "text": "a", "rect": [1, 2, 3], "flags": 0})",
     "rect: must be an array of 4"},
    {R"({"call": "DevShxComment", "text": "a", "rect": [1, 2, 3, 4.5], "flags": 0})",
     "rect[3]: must be an integer"},
    {R"({"call": "DevStartPage", "devMode": null})", "devMode: must be an object"},
    {R"({"call": "DevStartPage", "devMode": {"dmPaper": 1}})", "devMode: unknown field \"dmPaper\""},
    {R"({"call": "DevStartPage", "devMode": {"dmPaperSize": 32768}})",
     "dmPaperSize: must be from -32768 to 32767"},
    {R"({"call": "DevStartPage", "devMode": {"dmSize": 221}})", "dmSize: must be from 0 to 220"},
    {R"({"call": "DevStartPage", "devMode": {"dmDriverExtra": 1025}})",
     "dmDriverExtra: must be from 0 to 1024"},
};
TEST(TraceReader, RefusesValuesOfTheWrongTypeSizeOrRange) { ExpectRefused(kBadValues); }

constexpr BadLine kBadTextsAndImages[] = {
    {R"({"call": "DevText", "font": {"lfHeigth": 1}, "position": [0, 0], "text": "", "advances": null, "textHeight": 1, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1})",
     "font: unknown field \"lfHeigth\""},
    {R"({"call": "DevText", "font": {"lfFaceName": "12345678901234567890123456789012"}, "position": [0, 0], "text": "", "advances": null, "textHeight": 1, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1})",
     "lfFaceName: has more than 31 units"},
    {R"({"call": "DevText", "font": {}, "position": [0, 0], "text": "a\ud83d\ude00", "advances": [1, 2], "textHeight": 1, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1})",
     "advances: has 2 numbers, but text has 3 units"},
    {R"({"call": "DevBitmap", "image": {"width": 1, "height": 1, "bitCount": 4, "pixels": "AAAAAA=="}, "originX": 0, "originY": 0, "scaleX": 1, "scaleY": 1})",
     "bitCount: must be 1, 8, 24 or 32"},
    {R"({"call": "DevBitmap", "image": {"width": 33, "height": -1, "bitCount": 1, "pixels": "AAAAAAAAAA=="}, "originX": 0, "originY": 0, "scaleX": 1, "scaleY": 1})",
     "pixels: has 7 bytes, but the rows take 8"},
    {R"({"call": "DevBitmap", "image": {"width": 2147483647, "height": 2147483647, "bitCount": 32, "pixels": ""}, "originX": 0, "originY": 0, "scaleX": 1, "scaleY": 1})",
     "pixels: has 0 bytes"},
    {R"({"call": "DevBitmap", "image": {"width": 1, "height": 1, "bitCount": 1, "pixels": "AAAA=AAA"}, "originX": 0, "originY": 0, "scaleX": 1, "scaleY": 1})",
     "pixels: must be a base64 string"},
    {R"({"call": "DevBitmap", "image": {"width": 1, "height": 1, "bitCount": 1, "palette": [[0,0,0,0],[0,0,0,0],[0,0,0,0]], "pixels": "AAAAAA=="}, "originX": 0, "originY": 0, "scaleX": 1, "scaleY": 1})",
     "palette: has more than 2 entries"},
};
TEST(TraceReader, RefusesTextsAndImagesThatTheDriverWouldReadBeyond) { ExpectRefused(kBadTextsAndImages); }

TEST(TraceReader, RefusesBadJobLines) {
  const std::pair<const char*, const char*> jobs[] = {
      {"[]", "job.jsonl:1: job: must be an object"},
      {R"({"docname": "x"})", "job: unknown key \"docname\""},
      {R"({"docName": null})", "docName: must be a string"},
      {R"({"devMode": {"dmPrintQuality": 40000}})", "devMode: dmPrintQuality: must be"},
      {R"({"customPaper": {"name": "x", "width": 1}})", "customPaper: key \"height\" is missing"},
  };
  for (const auto& [job, message] : jobs)
    EXPECT_THAT(MessageOf("{\"job\": " + std::string(job) + "}\n"), HasSubstr(message));
  EXPECT_THAT(MessageOf(R"({"job": {}, "call": "DevEndPage"})"), HasSubstr("must be the line's only key"));
}

TEST(TraceReader, RefusesFilesThatHoldNoTraceAndNamesThatAreTooLong) {
  EXPECT_EQ(MessageOf(""), "job.jsonl: is empty");
  EXPECT_EQ(MessageOf("\r\n \n"), "job.jsonl: is empty");
  EXPECT_THAT(MessageOf(std::string("\0\1\2", 3)), HasSubstr("job.jsonl:1: invalid JSON"));
  const auto layer = [](size_t units) {
    return R"({"call": "DevSetLayer", "name": ")" + std::string(units, 'x') + "\"}";
  };
  EXPECT_THAT(MessageOf(layer(1024)), HasSubstr("name: has more than 1023 units"));
  EXPECT_EQ(MessageOf(layer(1023)), "");
  const command::Workplace place;
  EXPECT_THROW((void)ReadTrace(place.Path("missing.jsonl")), FileError);
  EXPECT_THROW((void)ReadTrace(place.Path(".")), FileError);
}

}  // namespace
}  // namespace hdiplot

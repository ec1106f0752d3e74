// Playing a trace: every call reaches its position with its arguments, in the order of a job.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;

// A job with every call, in the form in which hdiplot records it; keys that may be left out are there once
// and left out once.
constexpr const char* kEveryCall =
    R"({"job": {"device": "Zweites Gerät", "docName": "plän.dwg", "devMode": {"backgroundColor": 4294967295, "dmPrintQuality": -3, "keepFractions": 1}, "customPaper": {"name": "roll", "width": 1000.5, "height": 2000, "left": 1, "right": 2, "top": 3, "bottom": 4}, "lineScale": 2.5}}
{"call": "DevGetCaps", "index": -5}
{"call": "DevStartPage"}
{"call": "DevSetPen", "style": 65543, "width": 4294967295, "color": [1, 2, 3], "entries": [10, 20, 30]}
{"call": "DevSetPen", "style": 0, "width": 2, "color": [255, 0, 0]}
{"call": "DevSetBrush", "color": [9, 8, 7]}
{"call": "DevSetBrush", "color": [9, 8, 7], "style": 2, "hatch": 18446744073709551615}
{"call": "DevSetAlpha", "alpha": 300}
{"call": "DevSetRasterOp", "code": 9}
{"call": "DevSetFillMode", "mode": 2}
{"call": "DevSetLineScale", "scale": 0.1}
{"call": "DevPolyline", "points": [[1, 2.5], [-0.0, 1e-300]]}
{"call": "DevPolyline", "points": []}
{"call": "DevPolygon", "points": [[1, 2]]}
{"call": "DevPolyBezier", "points": [[0, 0], [1, 1], [2, 2], [3, 3]]}
{"call": "DevPolyPolygon", "polygons": [[[1, 2], [3, 4]], [], [[5, 6]]]}
{"call": "DevArc", "center": [1, 2], "a": 3, "b": 4, "c": 5, "d": 6, "e": 7}
{"call": "DevBeginPath"}
{"call": "DevEndPath"}
{"call": "DevFillPath"}
{"call": "DevStrokeFillPath"}
{"call": "DevSetClip", "polygons": [[[1, 2]], [[3, 4], [5, 6]]]}
{"call": "DevSetClip", "polygons": [[[1, 2]]], "apply": 0}
{"call": "DevSetClip", "polygons": []}
{"call": "DevBeginLink", "target": "www.täst"}
{"call": "DevEndLink"}
{"call": "DevSetLayer", "name": "Wände"}
{"call": "DevText", "font": {"lfHeight": -2, "lfItalic": 255, "lfFaceName": "Ä"}, "position": [1, 2], "text": "a\u0000😀", "advances": [1, 2, 3, 4], "textHeight": 5, "obliqueAngle": 6, "trackingFactor": 7, "widthFactor": 8}
{"call": "DevText", "font": {}, "position": [1, 2], "text": "b", "advances": null, "textHeight": 5, "obliqueAngle": 6, "trackingFactor": 7, "widthFactor": 8}
{"call": "DevBitmap", "image": {"width": 9, "height": -2, "bitCount": 1, "palette": [[1, 2, 3, 4], [5, 6, 7, 8]], "pixels": "AQIDBAUGBwg="}, "originX": 1, "originY": 2, "scaleX": 3, "scaleY": 4}
{"call": "DevBitmap", "image": {"width": 1, "height": 1, "bitCount": 32, "hasAlpha": true, "pixels": "CQoLDA=="}, "originX": 1, "originY": 2, "scaleX": 3, "scaleY": 4}
{"call": "DevShxComment", "text": "ABC", "rect": [1, -2, 3, -4], "flags": 5}
{"call": "DevEndPage"}
{"call": "DevStartPage", "devMode": {"dmOrientation": 2, "dmPaperSize": 8}}
{"call": "DevStartPage", "devMode": {}}
)";

constexpr const char* kCourse = R"(SetCustomPaper 'roll' 1000.5 2000 1 2 3 4
OpenDevice Zweites Gerät quality -3 orientation 0 paper 0 background 4294967295 open 0 fractions 1
StartDoc 'plän.dwg' output ''
StartPage null
StartPage quality -3 orientation 2 paper 8 background 4294967295 open 0 fractions 1
StartPage quality -3 orientation 0 paper 0 background 4294967295 open 0 fractions 1
EndDoc
CloseDevice
Destroy First
Destroy Zweites Gerät
)";

TEST(Playing, RecordsWhatItPlays) {
  const Workplace place;
  place.Write("job.jsonl", kEveryCall);
  const Outcome outcome = place.RunFake({"job.jsonl", "-o", "out", "--record", "again.jsonl"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, testing::StartsWith("out.pdf: 3 pages, 11 objects, 15 bytes, "));
  EXPECT_EQ(place.TakeLog(), kCourse);
  EXPECT_EQ(place.Read("again.jsonl"), kEveryCall);
}

TEST(Playing, OutputAndDeviceOfTheCommandLineGoFirst) {
  const Workplace place;
  place.Write("job.jsonl",
              R"({"job": {"device": "Zweites Gerät", "output": "own", "defaultOutput": "default"}})");
  EXPECT_EQ(place.RunFake({"job.jsonl", "-o", "given", "--device", "First"}).status, 0);
  EXPECT_THAT(place.TakeLog(), testing::StartsWith("OpenDevice First "));
  EXPECT_EQ(place.RunFake({"job.jsonl"}).status, 0);
  EXPECT_EQ(place.Names(), (std::vector<std::string>{"given.pdf", "job.jsonl", "own.pdf"}));

  // A null output is null for the driver, too, and nothing is appended to the default.
  place.Write("job.jsonl", R"({"job": {"output": null, "defaultOutput": "default"}})");
  EXPECT_EQ(place.RunFake({"job.jsonl"}).status, 0);
  EXPECT_THAT(place.TakeLog(), testing::HasSubstr("StartDoc '' null 'default'"));
  EXPECT_TRUE(place.Has("default"));
}

TEST(Playing, OpensTheViewerOnlyWhenAskedTo) {
  const Workplace place;
  place.Write("asked.jsonl", R"({"job": {"devMode": {"openAfterPlot": 1}}})");
  place.Write("plain.jsonl", R"({"job": {}})");
  (void)place.RunFake({"asked.jsonl", "-o", "out.pdf"});
  (void)place.RunFake({"plain.jsonl", "-o", "out.pdf"});
  (void)place.RunFake({"plain.jsonl", "-o", "out.pdf", "--open"});
  std::string opens;
  const std::string log = place.TakeLog();
  for (size_t at = 0; (at = log.find(" open ", at)) != std::string::npos; ++at) opens += log[at + 6];
  EXPECT_EQ(opens, "101");
}

}  // namespace

// The exact content stream of each kind of object.
#include "composition/content_generator.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace hdi {
namespace {

// Numbers names in order of use and keeps the dictionaries.
class CountingNames final : public ResourceNames {
 public:
  std::string AddExtGState(const ExtGStateEntries& entries) override {
    states.push_back(entries);
    return "FXE" + std::to_string(states.size());
  }
  std::string FontName(uint32_t objectNumber) override { return Name("FXF", fonts, objectNumber); }
  std::string XObjectName(uint32_t objectNumber) override { return Name("FXX", images, objectNumber); }
  std::string PropertiesName(uint32_t objectNumber) override { return Name("FXP", layers, objectNumber); }

  [[nodiscard]] size_t Count() const override {
    return states.size() + fonts.size() + images.size() + layers.size();
  }
  void KeepFirst(size_t /*count*/) noexcept override {}

  std::vector<ExtGStateEntries> states;
  std::map<uint32_t, std::string> fonts, images, layers;

 private:
  static std::string Name(const char* prefix, std::map<uint32_t, std::string>& names, uint32_t objectNumber) {
    std::string& name = names[objectNumber];
    if (name.empty()) name = prefix + std::to_string(names.size());
    return name;
  }
};

const std::string kHead = "q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/FXE1 gs ";

PathPoints Line(float x1, float y1, float x2, float y2) {
  return {{x1, y1, PointType::kMove, false}, {x2, y2, PointType::kLine, false}};
}

PathObject Stroked(PathPoints points) {
  PathObject object;
  object.points = std::move(points);
  object.stroke = true;
  return object;
}

class ContentTest : public testing::Test {
 protected:
  // Returns the stream between its head and its end.
  std::string Body(std::string_view end = "Q\n") {
    const std::string_view stream = content_.Finish();
    EXPECT_EQ(stream.substr(0, kHead.size()), kHead);
    EXPECT_EQ(stream.substr(stream.size() - end.size()), end);
    return std::string(stream.substr(kHead.size(), stream.size() - kHead.size() - end.size()));
  }

  CountingNames names_;
  ContentGenerator content_{names_};
};

TEST_F(ContentTest, IsEmptyWithoutObjects) {
  EXPECT_TRUE(content_.Finish().empty());
  EXPECT_TRUE(names_.states.empty());
}

TEST_F(ContentTest, WritesStateOnlyOnce) {
  PathObject line = Stroked(Line(100, 200, 300, 400));
  line.attributes.fillColor = {255, 255, 255};
  line.attributes.strokeColor = {255, 0, 0};
  line.attributes.lineWidth = 2;
  content_.Write(line);
  content_.Write(line);
  EXPECT_EQ(Body(), "1 1 1 rg 1 0 0 RG 2 w 100 200 m 300 400 l S\n100 200 m 300 400 l S\n");
  ASSERT_EQ(names_.states.size(), 1U);
  EXPECT_EQ(names_.states[0],
            (ExtGStateEntries{.fillAlpha = 1.0F, .strokeAlpha = 1.0F, .blendMode = BlendMode::kNormal}));
}

TEST_F(ContentTest, WritesEachLineAttributeOnChange) {
  PathObject line = Stroked(Line(0, 0, 1, 1));
  line.attributes.lineCap = 1;
  line.attributes.lineJoin = 2;
  line.attributes.lineWidth = 0.25F;
  line.dashArray = std::make_shared<const std::vector<float>>(std::vector{62.5F, 41.6667F});
  content_.Write(line);
  line.attributes.lineWidth = 12.3456789F;  // with all its digits
  line.dashArray.reset();
  content_.Write(line);
  EXPECT_EQ(Body(),
            ".25 w 1 J 2 j [ 62.5 41.6667 ] 0 d\n0 0 m 1 1 l S\n12.3456793 w \n[] 0 d\n0 0 m 1 1 l S\n");
}

TEST_F(ContentTest, PaintingOperators) {
  PathObject object = Stroked(Line(0, 0, 1, 1));
  for (const FillType fill : {FillType::kNone, FillType::kEvenOdd, FillType::kWinding}) {
    object.fill = fill;
    object.stroke = false;
    content_.Write(object);
    object.stroke = true;
    content_.Write(object);
  }
  std::string body;
  for (const char* op : {"n", "S", "f*", "B*", "f", "B"}) body += std::string("0 0 m 1 1 l ") + op + "\n";
  EXPECT_EQ(Body(), body);
}

TEST_F(ContentTest, RectanglesAndNearRectangles) {
  const auto path = [](std::initializer_list<std::pair<float, float>> corners, bool close) {
    PathPoints points;
    for (const auto& [x, y] : corners) points.push_back({x, y, PointType::kLine, false});
    points.front().type = PointType::kMove;
    points.back().close = close;
    return Stroked(points);
  };
  content_.Write(path({{1, 2}, {5, 2}, {5, 9}, {1, 9}, {1, 2}}, false));
  content_.Write(path({{5, 9}, {5, 2}, {1, 2}, {1, 9}}, true));  // negative height, no "h" after it
  PathObject byMove = path({{1, 2}, {5, 2}, {5, 9}, {1, 9}, {1, 2}}, false);
  byMove.points[4].type = PointType::kMove;  // the fifth point may be of any type
  content_.Write(byMove);
  content_.Write(path({{1, 2}, {5, 2}, {5, 9}, {1, 9}}, false));
  content_.Write(path({{1, 2}, {5, 3}, {5, 9}, {1, 9}}, true));
  content_.Write(path({{1, 2}, {5, 2}, {1, 2}, {1, 9}}, true));  // first and third point are the same
  EXPECT_EQ(Body(),
            "1 2 4 7 re S\n5 9 -4 -7 re S\n1 2 4 7 re S\n1 2 m 5 2 l 5 9 l 1 9 l S\n"
            "1 2 m 5 3 l 5 9 l 1 9 l h S\n1 2 m 5 2 l 1 2 l 1 9 l h S\n");
}

TEST_F(ContentTest, CurvesAndCloseFlags) {
  PathPoints points = {{0, 0, PointType::kMove, false}};
  for (const float t : {0.5F, 1.25F, 2.0F}) points.push_back({t, t, PointType::kBezier, false});
  PathPoints closed = points;
  closed[3].close = true;
  content_.Write(Stroked(closed));
  PathPoints cut = points;  // a curve without its end point
  cut.resize(3);
  content_.Write(Stroked(cut));
  PathPoints closedEarly = points;
  closedEarly[2].close = true;
  content_.Write(Stroked(closedEarly));
  PathPoints mixed = points;
  mixed[2].type = PointType::kLine;
  content_.Write(Stroked(mixed));
  content_.Write(Stroked({{3, 4, PointType::kMove, true}}));  // a move closes nothing
  const std::string broken = "0 0 m .5 .5 h S\n";
  EXPECT_EQ(Body(), "0 0 m .5 .5 1.25 1.25 2 2 c h S\n" + broken + broken + broken + "3 4 m S\n");
}

TEST_F(ContentTest, WritesClipsWhereTheirPointsChange) {
  PathObject line = Stroked(Line(0, 0, 1, 1));
  line.attributes.strokeColor = {255, 0, 0};
  const auto writeUnder = [&](const PathPoints& points) {
    line.attributes.clip = std::make_shared<const Clip>(points);
    content_.Write(line);
  };
  content_.Write(line);
  writeUnder(Line(5, 5, 6, 6));
  writeUnder(Line(5, 5, 6, 6));                                                  // a different object
  writeUnder({{5, 5, PointType::kLine, true}, {6, 6, PointType::kMove, true}});  // flags do not count
  line.attributes.clip = nullptr;
  content_.Write(line);
  writeUnder(Line(std::numeric_limits<float>::quiet_NaN(), 5, 6, 6));
  content_.Write(line);  // never equal to itself
  const std::string red = "1 0 0 RG 0 0 m 1 1 l S\n";
  EXPECT_EQ(Body("Q\nQ\n"), red + "q\n5 5 m 6 6 l W n " + red + "0 0 m 1 1 l S\n0 0 m 1 1 l S\nQ\nq\n" + red +
                                "q\n0 5 m 6 6 l W n " + red + "Q\nq\n0 5 m 6 6 l W n " + red);
}

TEST_F(ContentTest, TextUsesItsOwnLineAttributesAndImagesNone) {
  PathObject line = Stroked(Line(0, 0, 1, 1));
  line.attributes.lineWidth = 2;
  TextObject text;
  text.matrix = {0, 1, -1, 0, 50.25F, 60};
  text.font = 4;
  text.fontSize = 12.3456F;
  text.renderMode = 3;
  text.codes = {0x41, 0xBEEF};
  ImageObject image;
  image.matrix = {30, 0, 0, 40, 5, 6};
  image.image = 8;
  content_.Write(line);
  content_.Write(text);
  content_.Write(line);
  content_.Write(image);
  content_.Write(line);
  image.matrix = {0, 0, 0, 40, 5, 6};  // no width: not visible
  content_.Write(image);
  EXPECT_EQ(
      Body(),
      "2 w 0 0 m 1 1 l S\n1 w BT 0 1 -1 0 50.25 60 Tm 0 Tc 100 Tz /FXF1 12.346 Tf 3 Tr <0041BEEF> Tj ET\n"
      "2 w 0 0 m 1 1 l S\nq 30 0 0 40 5 6 cm /FXX1 Do Q\n0 0 m 1 1 l S\n");
}

TEST_F(ContentTest, WritesLongPathsCompletely) {
  PathPoints points = {{0, 0, PointType::kMove, false}};
  std::string expected = "0 0 m ";
  for (int i = 1; i < 1000; ++i) {
    points.push_back({static_cast<float>(i), 7, PointType::kLine, false});
    expected += std::to_string(i) + " 7 l ";
  }
  content_.Write(Stroked(points));
  EXPECT_EQ(Body(), expected + "S\n");
}

// Keeps pieces of a few bytes.
class PieceSink final : public ContentSink {
 public:
  [[nodiscard]] size_t PieceSize() const override { return 100; }
  void Take(const std::shared_ptr<const char[]>& /*owner*/, std::string_view bytes) override {
    taken += bytes;
  }
  [[nodiscard]] size_t Size() const override { return taken.size(); }
  void KeepFirst(size_t size) noexcept override { taken.resize(size); }

  std::string taken;
};

TEST_F(ContentTest, AttemptUndoesWhatTheSinkHasTaken) {
  PieceSink sink;
  ContentGenerator content(names_, &sink);
  content.Write(Stroked(Line(1, 2, 3, 4)));
  for (int round = 0; round < 2; ++round) {
    const ContentGenerator::Attempt attempt(content);
    PathObject longPath = Stroked(PathPoints(1000, {5, 6, PointType::kMove, false}));
    longPath.attributes.lineWidth = 9;
    content.Write(longPath);
    EXPECT_GT(sink.taken.size(), 4000U);
  }
  EXPECT_EQ(sink.taken, "");
  content.Write(Stroked(Line(5, 6, 7, 8)));
  EXPECT_EQ(content.Finish(), kHead + "1 2 m 3 4 l S\n5 6 m 7 8 l S\nQ\n");
}

}  // namespace
}  // namespace hdi

// Reading the objects of a DXF through dxflib: layers, line types, blocks, variables and the entities that
// dxflib reads completely.
//
// dxflib is lenient where a broken file has to be reported, and knows no lines; so it never sees the file. It
// is given one checked object at a time, as text, and answers by calling back.
#pragma once

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cstdint>
#include <istream>
#include <locale>
#include <memory>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "host/hdiplot/dxf/drawing.h"
#include "host/hdiplot/dxf/dxf_object.h"
#include "host/hdiplot/dxf/name_decoder.h"
#include "host/hdiplot/dxf/ocs.h"

namespace hdiplot {

// dxflib reads numbers by the global C++ locale, which is the classic one as long as an adapter lives.
class DxflibAdapter : private DL_CreationAdapter {
 public:
  // The decoder has to outlive the adapter.
  explicit DxflibAdapter(const NameDecoder& names);
  ~DxflibAdapter() override;
  DxflibAdapter(const DxflibAdapter&) = delete;
  DxflibAdapter& operator=(const DxflibAdapter&) = delete;

  // All of these throw DxfFault for an object that makes no sense.

  // Whether entities of that type are read by ReadShape.
  static bool ReadsShape(std::string_view type);
  // The entity's shape, its plane resolved.
  Shape ReadShape(const DxfObject& entity);

  struct NamedLayer {
    std::string name;
    Layer layer;
  };
  NamedLayer ReadLayer(const DxfObject& entry);

  struct NamedLineType {
    std::string name;  // upper case
    LineType lineType;
  };
  // Nothing for the entries that stand for "by layer" and "by block".
  std::optional<NamedLineType> ReadLineType(const DxfObject& entry);

  struct BlockHead {
    std::string name;  // upper case
    Vec2 base;
    unsigned flags = 0;  // group 70
  };
  BlockHead ReadBlock(const DxfObject& block);

  struct Variable {
    std::string text;
    double real = 0;
    int integer = 0;
  };
  Variable ReadVariable(const DxfObject& variable);

 private:
  class ObjectBuffer : public std::streambuf {
   public:
    void Hold(std::string& text) { setg(text.data(), text.data(), text.data() + text.size()); }
  };

  // Hands the object to dxflib, which calls back before this returns.
  void Feed(const DxfObject& object);
  void AppendGroup(int code, std::string_view value);
  void AppendGroup(const Group& group);
  // A true count, before what it counts, as dxflib wants it.
  void AppendCount(int countCode, int countedCode);

  void addPoint(const DL_PointData& data) override;
  void addLine(const DL_LineData& data) override;
  void addArc(const DL_ArcData& data) override;
  void addCircle(const DL_CircleData& data) override;
  void addEllipse(const DL_EllipseData& data) override;
  void addInsert(const DL_InsertData& data) override;
  void addSolid(const DL_SolidData& data) override;
  void addTrace(const DL_TraceData& data) override;
  void add3dFace(const DL_3dFaceData& data) override;
  void addSpline(const DL_SplineData& data) override;
  void addControlPoint(const DL_ControlPointData& data) override;
  void addFitPoint(const DL_FitPointData& data) override;
  void addKnot(const DL_KnotData& data) override;
  void addLeader(const DL_LeaderData& data) override;
  void addLeaderVertex(const DL_LeaderVertexData& data) override;
  void addLayer(const DL_LayerData& data) override;
  void addLinetype(const DL_LinetypeData& data) override;
  void addLinetypeDash(double length) override;
  void addBlock(const DL_BlockData& data) override;
  void setVariableString(const std::string& key, const std::string& value, int code) override;
  void setVariableInt(const std::string& key, int value, int code) override;
  void setVariableDouble(const std::string& key, double value, int code) override;

  void CheckRadius(double radius) const;
  std::vector<Vec2> Corners(const DL_TraceData& data, const Ocs& plane) const;
  Shape FinishedSpline() const;
  Shape FinishedLeader() const;

  const NameDecoder& names_;
  std::locale callersLocale_;  // the global one when the adapter was made
  DL_Dxf dxflib_;
  ObjectBuffer buffer_;
  std::istream stream_;
  std::string text_;

  // What the callbacks of the object in hand have brought.
  const DxfObject* object_ = nullptr;
  Ocs plane_;
  std::optional<Shape> shape_;
  std::vector<Vec2> leader_;
  SplineEntity spline_;
  bool leaderIsCurved_ = false;
  NamedLayer layer_;
  std::optional<NamedLineType> lineType_;
  std::vector<double> dashes_;
  BlockHead block_;
  Variable variable_;
};

}  // namespace hdiplot

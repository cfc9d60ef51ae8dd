#include "DriveUnitParts.h"

#include <BRepAlgoAPI_Common.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeRevol.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <ShapeUpgrade_UnifySameDomain.hxx>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <vector>

namespace drive_unit {
namespace {

const gp_Ax1 kXAxis(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0));

TopoDS_Shape Box(const gp_Pnt& low, const gp_Pnt& high) {
  return BRepPrimAPI_MakeBox(low, high).Shape();
}

TopoDS_Shape CylinderX(double radius, double from, double to, double z = 0) {
  return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(from, 0, z), gp_Dir(1, 0, 0)), radius, to - from).Shape();
}

TopoDS_Shape CylinderZ(double radius, double from, double to, double x = 0, double y = 0) {
  return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(x, y, from), gp_Dir(0, 0, 1)), radius, to - from).Shape();
}

TopoDS_Shape ConeZ(double lowRadius, double highRadius, double from, double to) {
  return BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(0, 0, from), gp_Dir(0, 0, 1)), lowRadius, highRadius, to - from).Shape();
}

TopoDS_Shape TurnedAboutX(const TopoDS_Shape& shape, double degrees) {
  gp_Trsf turn;
  turn.SetRotation(kXAxis, degrees * std::numbers::pi / 180);
  return BRepBuilderAPI_Transform(shape, turn, true).Shape();
}

/// Merged faces: a drawing must not show where the primitives met.
TopoDS_Shape Unified(const TopoDS_Shape& shape) {
  ShapeUpgrade_UnifySameDomain unify(shape, true, true, false);
  unify.Build();
  return unify.Shape();
}

TopoDS_Shape Fused(TopoDS_Shape base, std::initializer_list<TopoDS_Shape> others) {
  for (const TopoDS_Shape& other : others) base = BRepAlgoAPI_Fuse(base, other).Shape();
  return Unified(base);
}

TopoDS_Shape WithHoles(TopoDS_Shape base, const std::vector<TopoDS_Shape>& holes) {
  for (const TopoDS_Shape& hole : holes) base = BRepAlgoAPI_Cut(base, hole).Shape();
  return base;
}

TopoDS_Face Polygon(const std::vector<gp_Pnt>& points) {
  BRepBuilderAPI_MakePolygon polygon;
  for (const gp_Pnt& point : points) polygon.Add(point);
  polygon.Close();
  return BRepBuilderAPI_MakeFace(polygon.Wire()).Face();
}

/// Profile points (x, radius) turned round the X axis.
TopoDS_Shape Turned(std::initializer_list<std::pair<double, double>> profile) {
  std::vector<gp_Pnt> points;
  for (const auto& [x, radius] : profile) points.emplace_back(x, 0, radius);
  return BRepPrimAPI_MakeRevol(Polygon(points), kXAxis).Shape();
}

/// A hexagon prism with the corners of its upper side turned down.
TopoDS_Shape Hexagon(double acrossFlats, double height) {
  const double radius = acrossFlats / std::numbers::sqrt3;
  std::vector<gp_Pnt> corners;
  for (int i = 0; i < 6; ++i) {
    const double angle = i * std::numbers::pi / 3;
    corners.emplace_back(radius * std::cos(angle), radius * std::sin(angle), 0);
  }
  const TopoDS_Shape prism = BRepPrimAPI_MakePrism(Polygon(corners), gp_Vec(0, 0, height)).Shape();
  const double slope = std::numbers::sqrt3;
  const double topRadius = 0.475 * acrossFlats;
  return BRepAlgoAPI_Common(prism, ConeZ(topRadius + slope * height, topRadius, 0, height)).Shape();
}

/// A threaded end as drawings simplify it: a cylinder with a chamfer.
TopoDS_Shape Shank(double diameter, double from, double to) {
  const double radius = diameter / 2;
  const double chamfer = 0.12 * diameter;
  return Fused(CylinderZ(radius, from + chamfer, to), {ConeZ(radius - chamfer, radius, from, from + chamfer)});
}

TopoDS_Shape KeyWithLength(double length, double width, double height) {
  const double end = length / 2 - width / 2;
  return Fused(Box(gp_Pnt(-end, -width / 2, 0), gp_Pnt(end, width / 2, height)),
               {CylinderZ(width / 2, 0, height, -end), CylinderZ(width / 2, 0, height, end)});
}

TopoDS_Shape Moved(const TopoDS_Shape& shape, double x, double y, double z) {
  gp_Trsf move;
  move.SetTranslation(gp_Vec(x, y, z));
  return BRepBuilderAPI_Transform(shape, move, true).Shape();
}

}  // namespace

TopoDS_Shape MountingPlate() {
  std::vector<TopoDS_Shape> holes;
  for (const double side : {-1.0, 1.0}) {
    for (const double x : {-40.0, 130.0}) {
      holes.push_back(CylinderZ(6.5, -kPlateThickness, 0, x, side * kBearingBoltY));
    }
    for (const double x : {-kMotorBoltX, kMotorBoltX}) {
      holes.push_back(CylinderZ(4.5, -kPlateThickness, 0, -275 + x, side * kMotorBoltY));
    }
  }
  return WithHoles(Box(gp_Pnt(-370, -110, -kPlateThickness), gp_Pnt(200, 110, 0)), holes);
}

TopoDS_Shape SideRail() {
  const TopoDS_Shape outside = Box(gp_Pnt(-360, -40, -kRailHeight), gp_Pnt(190, 0, 0));
  return WithHoles(outside, {Box(gp_Pnt(-360, -40, -kRailHeight + 8), gp_Pnt(190, -7, -8))});
}

TopoDS_Shape CrossMember() {
  const TopoDS_Shape tube = Box(gp_Pnt(-25, -60, -50), gp_Pnt(25, 60, 0));
  return WithHoles(tube, {Box(gp_Pnt(-20, -60, -45), gp_Pnt(20, 60, -5))});
}

TopoDS_Shape FootPlate() {
  return WithHoles(Box(gp_Pnt(-40, -80, -12), gp_Pnt(40, 40, 0)), {CylinderZ(8, -12, 0, 0, -55)});
}

TopoDS_Shape Gusset() {
  const TopoDS_Face outline = Polygon({{0, 0, 0}, {0, -30, 0}, {0, -30, 8}, {0, -8, 64}, {0, 0, 64}});
  return Moved(BRepPrimAPI_MakePrism(outline, gp_Vec(8, 0, 0)).Shape(), -4, 0, 0);
}

TopoDS_Shape BearingHousing() {
  const TopoDS_Shape body =
      Fused(Box(gp_Pnt(-22, -82, 0), gp_Pnt(22, 82, kBearingFootHeight)),
            {Box(gp_Pnt(-17, -44, 0), gp_Pnt(17, 44, kAxisHeight)), CylinderX(44, -17, 17, kAxisHeight)});
  return WithHoles(body, {CylinderX(35, -20, 20, kAxisHeight), CylinderZ(6.5, 0, kBearingFootHeight, 0, -kBearingBoltY),
                          CylinderZ(6.5, 0, kBearingFootHeight, 0, kBearingBoltY)});
}

TopoDS_Shape BearingInsert() {
  return Turned({{-12, 35}, {-12, 24}, {-24, 24}, {-24, 15}, {24, 15}, {24, 24}, {12, 24}, {12, 35}});
}

TopoDS_Shape GreaseNipple() {
  const TopoDS_Shape head = BRepPrimAPI_MakeSphere(gp_Pnt(0, 0, 12), 4).Shape();
  return Fused(Hexagon(11, 5), {CylinderZ(2.6, 0, 12), head});
}

TopoDS_Shape DriveShaft() {
  const TopoDS_Shape shaft = Turned({{0, 0},
                                     {0, 11},
                                     {1.5, 12.5},
                                     {50, 12.5},
                                     {50, 15},
                                     {310, 15},
                                     {310, 12.5},
                                     {361, 12.5},
                                     {361, 11.5},
                                     {363, 11.5},
                                     {363, 12.5},
                                     {368.5, 12.5},
                                     {370, 11},
                                     {370, 0}});
  return WithHoles(shaft, {Moved(KeyWithLength(36, 8, 10), 336, 0, 8.5)});
}

TopoDS_Shape ParallelKey() {
  return KeyWithLength(36, 8, 7);
}

TopoDS_Shape BeltPulley() {
  const TopoDS_Shape wheel = Turned({{-25, 12.5}, {25, 12.5}, {25, 26},  {8, 26},  {8, 58},  {23, 58}, {23, 78},
                                     {20, 78},    {14, 64},   {9, 64},   {3, 78},  {-3, 78}, {-9, 64}, {-14, 64},
                                     {-20, 78},   {-23, 78},  {-23, 58}, {-8, 58}, {-8, 26}, {-25, 26}});
  std::vector<TopoDS_Shape> holes{Box(gp_Pnt(-25, -4, 0), gp_Pnt(25, 4, 15.8))};
  for (int i = 0; i < 6; ++i) holes.push_back(TurnedAboutX(CylinderX(11, -10, 10, 42), 60.0 * i + 30));
  return WithHoles(wheel, holes);
}

TopoDS_Shape RetainingRing() {
  const TopoDS_Shape ring = Turned({{-1, 11.5}, {1, 11.5}, {1, 16}, {-1, 16}});
  const TopoDS_Shape ears = Fused(ring, {Box(gp_Pnt(-1, -8, 12), gp_Pnt(1, 8, 20))});
  return WithHoles(ears, {Box(gp_Pnt(-2, -2.5, 8), gp_Pnt(2, 2.5, 21)), CylinderX(11.5, -2, 2),
                          Moved(CylinderX(1.4, -2, 2), 0, -5.2, 17), Moved(CylinderX(1.4, -2, 2), 0, 5.2, 17)});
}

TopoDS_Shape CouplingHub() {
  TopoDS_Shape hub = Turned({{0, 12.5}, {0, 40}, {16, 40}, {16, 26}, {40, 26}, {40, 12.5}});
  for (int i = 0; i < 3; ++i) {
    const TopoDS_Shape ring = Turned({{-18, 20}, {4, 20}, {4, 38}, {-18, 38}});
    const TopoDS_Face wedge = Polygon({{-18, 0, 0}, {-18, -25, 50}, {-18, 25, 50}});
    const TopoDS_Shape sector = BRepPrimAPI_MakePrism(wedge, gp_Vec(22, 0, 0)).Shape();
    hub = BRepAlgoAPI_Fuse(hub, TurnedAboutX(BRepAlgoAPI_Common(ring, sector).Shape(), 120.0 * i)).Shape();
  }
  return hub;
}

TopoDS_Shape CouplingSpider() {
  TopoDS_Shape spider = Turned({{-8, 10}, {8, 10}, {8, 18}, {-8, 18}});
  for (int i = 0; i < 6; ++i) {
    const TopoDS_Shape arm = Box(gp_Pnt(-8, -6, 14), gp_Pnt(8, 6, 39));
    spider = BRepAlgoAPI_Fuse(spider, TurnedAboutX(arm, 60.0 * i)).Shape();
  }
  return Unified(WithHoles(spider, {CylinderX(10, -9, 9)}));
}

TopoDS_Shape MotorHousing() {
  TopoDS_Shape body = Turned({{-70, 0},
                              {-70, 54},
                              {58, 54},
                              {58, 58},
                              {70, 58},
                              {76, 30},
                              {76, 18},
                              {82, 18},
                              {82, 12.5},
                              {124, 12.5},
                              {124, 0}});
  for (int i = 0; i < 24; ++i) {
    const TopoDS_Shape fin = Box(gp_Pnt(-66, -1.5, 50), gp_Pnt(58, 1.5, 62));
    body = BRepAlgoAPI_Fuse(body, TurnedAboutX(fin, 15.0 * i + 7.5)).Shape();
  }
  const TopoDS_Shape raised = Moved(body, 0, 0, kAxisHeight);
  const TopoDS_Shape feet = Box(gp_Pnt(-55, -80, 0), gp_Pnt(55, 80, kMotorFootHeight));
  const TopoDS_Shape column = Box(gp_Pnt(-55, -46, 0), gp_Pnt(55, 46, 45));
  const TopoDS_Shape pad = Box(gp_Pnt(-30, -26, kAxisHeight + 40), gp_Pnt(30, 26, kAxisHeight + 66));
  std::vector<TopoDS_Shape> holes;
  for (const double x : {-kMotorBoltX, kMotorBoltX}) {
    for (const double y : {-kMotorBoltY, kMotorBoltY}) holes.push_back(CylinderZ(4.5, 0, kMotorFootHeight, x, y));
  }
  return WithHoles(Fused(raised, {feet, column, pad}), holes);
}

TopoDS_Shape FanCover() {
  const TopoDS_Shape cover = Turned({{0, 62}, {0, 65}, {-42, 65}, {-52, 52}, {-52, 0}, {-49, 0}, {-49, 51}, {-41, 62}});
  std::vector<TopoDS_Shape> holes;
  for (int i = 0; i < 12; ++i) {
    holes.push_back(TurnedAboutX(Box(gp_Pnt(-54, -3, 18), gp_Pnt(-46, 3, 46)), 30.0 * i));
  }
  return WithHoles(cover, holes);
}

TopoDS_Shape TerminalBox() {
  const TopoDS_Shape box =
      Fused(Box(gp_Pnt(-32, -28, 0), gp_Pnt(32, 28, 26)),
            {Box(gp_Pnt(-34, -30, 26), gp_Pnt(34, 30, 32)),
             BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(0, -44, 13), gp_Dir(0, 1, 0)), 9, 20).Shape()});
  return WithHoles(box, {BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(0, -44, 13), gp_Dir(0, 1, 0)), 6, 12).Shape()});
}

TopoDS_Shape StudBolt(const Screw& screw) {
  const TopoDS_Shape lower = Shank(screw.diameter, -screw.length / 2, 0);
  gp_Trsf mirror;
  mirror.SetRotation(kXAxis, std::numbers::pi);
  return Fused(lower, {BRepBuilderAPI_Transform(lower, mirror, true).Shape()});
}

TopoDS_Shape HexBolt(const Screw& screw) {
  return Fused(Hexagon(screw.acrossFlats, screw.headHeight), {Shank(screw.diameter, -screw.length, 0)});
}

TopoDS_Shape HexNut(const Screw& screw) {
  const double height = 0.85 * screw.diameter;
  return WithHoles(Hexagon(screw.acrossFlats, height), {CylinderZ(screw.diameter / 2, 0, height)});
}

TopoDS_Shape Washer(const Screw& screw) {
  const double thickness = 0.2 * screw.diameter;
  return WithHoles(CylinderZ(screw.diameter, 0, thickness), {CylinderZ(0.54 * screw.diameter, 0, thickness)});
}

}  // namespace drive_unit

#pragma once
// The parts of the example drive unit as solids in their own coordinates; millimetres. Shafts lie along X, bolts stand
// along Z with the bearing surface of the head or nut at Z = 0.

#include <TopoDS_Shape.hxx>

namespace drive_unit {

struct Screw {
  double diameter;
  double length;
  double acrossFlats;
  double headHeight;
};

inline constexpr double kPlateThickness = 16;
inline constexpr double kRailHeight = 80;
inline constexpr double kAxisHeight = 75;    ///< Of the shaft above the mounting plate.
inline constexpr double kBearingBoltY = 60;  ///< Bolts of a bearing block, either side of the axis.
inline constexpr double kMotorBoltX = 42;    ///< Bolts of the motor's feet round the motor's middle.
inline constexpr double kMotorBoltY = 66;
inline constexpr double kBearingFootHeight = 20;
inline constexpr double kMotorFootHeight = 12;

TopoDS_Shape MountingPlate();  ///< Top at Z = 0, holes for bearings and motor.
TopoDS_Shape SideRail();       ///< Channel along X, open towards -Y, top at Z = 0.
TopoDS_Shape CrossMember();    ///< Along Y, top at Z = 0.
TopoDS_Shape FootPlate();      ///< Top at Z = 0.
TopoDS_Shape Gusset();         ///< Triangle in the YZ plane, corner at the origin, pointing to -Y and up.

TopoDS_Shape BearingHousing();  ///< Bottom at Z = 0, bore along X at kAxisHeight.
TopoDS_Shape BearingInsert();   ///< Round the X axis.
TopoDS_Shape GreaseNipple();    ///< Up from Z = 0.

TopoDS_Shape DriveShaft();  ///< From X = 0 to X = 370, keyway on top at the far end.
TopoDS_Shape ParallelKey();
TopoDS_Shape BeltPulley();
TopoDS_Shape RetainingRing();

TopoDS_Shape CouplingHub();  ///< Jaws towards -X.
TopoDS_Shape CouplingSpider();

TopoDS_Shape MotorHousing();  ///< Middle of the feet at X = 0, bottom at Z = 0, shaft end towards +X.
TopoDS_Shape FanCover();      ///< Round the X axis, closed towards -X.
TopoDS_Shape TerminalBox();   ///< Bottom at Z = 0.

TopoDS_Shape StudBolt(const Screw& screw);
TopoDS_Shape HexBolt(const Screw& screw);
TopoDS_Shape HexNut(const Screw& screw);
TopoDS_Shape Washer(const Screw& screw);

}  // namespace drive_unit

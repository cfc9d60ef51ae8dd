#include <dg/LengthUnit.h>

#include <cmath>

namespace dg {

namespace {

constexpr double kMillimetersPerInch = 25.4;
constexpr double kPointsPerInch = 72;

double GetMillimeters(LengthUnit::Unit unit) {
  switch (unit) {
    case LengthUnit::MILLIMETER:
      return 1;
    case LengthUnit::CENTIMETER:
      return 10;
    case LengthUnit::METER:
      return 1000;
    case LengthUnit::INCH:
      return kMillimetersPerInch;
    case LengthUnit::POINT:
      return kMillimetersPerInch / kPointsPerInch;
  }
  return 1;
}

}  // namespace

double LengthUnit::Convert(Unit from, Unit to, double value, int dimension) {
  return from == to ? value : value * std::pow(GetMillimeters(from) / GetMillimeters(to), dimension);
}

}  // namespace dg

#include <dg/DMat44.h>

#include <array>
#include <cmath>
#include <utility>

namespace dg {

constinit const DMat44 DMat44::IDENTITY;

namespace {

/// Row of the matrix to be inverted, followed by the row that becomes the inverse.
using Row = std::array<double, 8>;
using Rows = std::array<Row, 4>;

bool MovePivotUp(Rows& rows, int column) {
  int best = column;
  for (int row = column + 1; row < 4; ++row) {
    if (std::fabs(rows[row][column]) > std::fabs(rows[best][column])) best = row;
  }
  std::swap(rows[column], rows[best]);
  const double pivot = rows[column][column];
  return pivot != 0 && std::isfinite(pivot);
}

void Eliminate(Rows& rows, int column) {
  const double pivot = rows[column][column];
  for (double& value : rows[column]) value /= pivot;
  for (int row = 0; row < 4; ++row) {
    const double factor = rows[row][column];
    if (row == column || factor == 0) continue;
    for (int i = 0; i < 8; ++i) rows[row][i] -= factor * rows[column][i];
  }
}

}  // namespace

bool DMat44::Invert() {
  Rows rows{};
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) rows[row][column] = m[row][column];
    rows[row][4 + row] = 1;
  }
  for (int column = 0; column < 4; ++column) {
    if (!MovePivotUp(rows, column)) return false;
    Eliminate(rows, column);
  }
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) m[row][column] = rows[row][4 + column];
  }
  return true;
}

DPoint3D operator*(const DPoint3D& point, const DMat44& matrix) {
  std::array<double, 4> image{};
  for (int column = 0; column < 4; ++column) {
    image[column] = point.x * matrix.m[0][column] + point.y * matrix.m[1][column] + point.z * matrix.m[2][column] +
                    matrix.m[3][column];
  }
  const double w = image[3] == 0 ? 1 : image[3];
  return {image[0] / w, image[1] / w, image[2] / w};
}

DVec3 operator*(const DVec3& vector, const DMat44& matrix) {
  std::array<double, 3> image{};
  for (int column = 0; column < 3; ++column) {
    image[column] = vector.x * matrix.m[0][column] + vector.y * matrix.m[1][column] + vector.z * matrix.m[2][column];
  }
  return {image[0], image[1], image[2]};
}

DMat44 operator*(const DMat44& left, const DMat44& right) {
  DMat44 product;
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      double sum = 0;
      for (int i = 0; i < 4; ++i) sum += left.m[row][i] * right.m[i][column];
      product.m[row][column] = sum;
    }
  }
  return product;
}

}  // namespace dg

#include <dg/Location.h>

#include <cmath>

namespace dg {

constinit const Location Location::IDENTITY;

Location::Location(const FMat33& mat, const DPoint3D& pos) : mat_(mat), pos_(pos) {}

void Location::SetPos(const DPoint3D& pos) {
  pos_ = pos;
}

DPoint3D Location::GetPos() const {
  return pos_;
}

void Location::SetMat(const FMat33& mat) {
  mat_ = mat;
}

FMat33 Location::GetMat() const {
  return mat_;
}

double Location::GetScale() const {
  const double* row = mat_.m[0];
  return std::sqrt(row[0] * row[0] + row[1] * row[1] + row[2] * row[2]);
}

DMat44 Location::GetXform() const {
  DMat44 result;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) result.m[row][column] = mat_.m[row][column];
    result.m[3][row] = pos_[row];
  }
  return result;
}

}  // namespace dg

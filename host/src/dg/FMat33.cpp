#include <dg/FMat33.h>

namespace dg {

constinit const FMat33 FMat33::IDENTITY;

FMat33 FMat33::Scale(double factor) {
  FMat33 result;
  for (int i = 0; i < 3; ++i) result.m[i][i] = factor;
  return result;
}

}  // namespace dg

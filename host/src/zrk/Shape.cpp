#include <zrk/Shape.h>

namespace zrk {

Shape::Shape(const std::string& name) : name_(name) {}

Shape::~Shape() = default;

const std::string& Shape::GetName() const {
  return name_;
}

std::string Shape::GetObjectName() const {
  return name_;
}

}  // namespace zrk

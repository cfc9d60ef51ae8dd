#include <zrk/Property.h>

namespace zrk {

Property::Property(const du::Symbol& name, const du::Symbol& value) : name_(name), value_(value) {}

Property::~Property() = default;

du::Symbol Property::GetName() const {
  return name_;
}

du::Symbol Property::GetValue() const {
  return value_;
}

}  // namespace zrk

#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/Object.h>

namespace zrk {

class Property;

/// One occurrence in a structure: a design-side Instance or a structure-side illustration::SbomInstance.
class ZR_HOST_API BaseInstance : public Object {
public:
  ~BaseInstance() override;

  /// Id by which callouts refer to this instance; unique among the instances of one structure.
  [[nodiscard]] virtual du::Symbol GetId() const = 0;
  /// Steps to the root; 0 is the root itself.
  [[nodiscard]] virtual unsigned GetDepth() const = 0;
  [[nodiscard]] virtual bool HasChildren() const = 0;
  /// The property of that group and name, or null. An empty group means the part's default property group. A property
  /// of exactly that shape source is preferred to one without; an empty shape source accepts any.
  [[nodiscard]] virtual du::SmartPtr<Property> GetProperty(const du::Symbol& group, const du::Symbol& name,
                                                           const du::Symbol& shapeSource = du::Symbol::EMPTY) const = 0;
};

}  // namespace zrk

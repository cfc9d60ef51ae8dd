#pragma once

#include <du/Export.h>

namespace dom {

class ManagedObject;

/// Knows managed objects without owning them: a record never keeps an object alive.
class ZR_HOST_API ObjectManager {
public:
  virtual ~ObjectManager();

  virtual void Manage(ManagedObject& object) = 0;
  /// Called by the object's destructor at the latest; a stranger changes nothing.
  virtual void Forget(ManagedObject& object) = 0;
};

}  // namespace dom

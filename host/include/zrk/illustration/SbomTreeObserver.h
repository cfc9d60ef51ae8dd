#pragma once

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/BaseTreeObserver.h>

namespace zrk::illustration {

class SbomInstance;

/// Hears the changes of an SbomTree. Every change lies between OnBeginUpdate and OnEndUpdate.
class ZR_HOST_API SbomTreeObserver : public BaseTreeObserver {
public:
  ~SbomTreeObserver() override;

  virtual void OnBeginUpdate();
  virtual void OnEndUpdate();
  /// The tree is going; nothing follows.
  virtual void OnDestroy();
  virtual void OnAddInstance(const du::SmartPtr<SbomInstance>& instance);
  /// Sent for the top of a removed part of the structure only.
  virtual void OnRemoveInstance(const du::SmartPtr<SbomInstance>& instance);
  virtual void OnAddProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group,
                             const du::Symbol& name);
  virtual void OnRemoveProperty(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group,
                                const du::Symbol& name);
  virtual void OnPropertyChanged(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group,
                                 const du::Symbol& name);
  virtual void OnPropertyGroupChanged(const du::SmartPtr<SbomInstance>& instance, const du::Symbol& group);
};

}  // namespace zrk::illustration

#pragma once

#include <set>

#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/Observer.h>

namespace zrk::illustration {

class SbomInstance;

/// Hears the changes of an ItemsList; every reaction is empty here.
class ZR_HOST_API ItemsListObserver : public Observer {
public:
  ~ItemsListObserver() override;

  virtual void OnItemAdded(unsigned itemId);
  virtual void OnItemRemoved(unsigned itemId);
  /// `added` and `removed` are the instances that joined and left the item; both are empty when only what the item
  /// shows changed.
  virtual void OnItemContentChanged(unsigned itemId, const std::set<du::SmartPtr<SbomInstance>>& added,
                                    const std::set<du::SmartPtr<SbomInstance>>& removed);
  virtual void OnItemIndicated(unsigned itemId, bool indicated);
  /// The last row went with a clear; sent after the removals.
  virtual void OnListCleared();
};

}  // namespace zrk::illustration

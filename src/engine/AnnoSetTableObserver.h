#pragma once
// Watches the annotation-set table; turns all table changes of one update into one label regeneration.

#include <zrk/AnnoSetTableObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the table; exists in the authoring application only.
class AnnoSetTableObserver final : public zrk::AnnoSetTableObserver {
public:
  explicit AnnoSetTableObserver(Callouts* engine) : engine_(engine) {}

  void ClearEngine() { engine_ = nullptr; }

  void OnBeginChange() override;
  void OnEndChange() override;
  void OnTableChanged() override;

private:
  Callouts* engine_;
  bool changed_ = false;
};

}  // namespace zrcallouts

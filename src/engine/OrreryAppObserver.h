#pragma once
// Watches the authoring application; each change of its structure regenerates the labels at once.

#include <zrkapp/illustration/OrreryAppObserver.h>

namespace zrcallouts {

class Callouts;

/// Owned by the engine and the application; exists in the authoring application only.
class OrreryAppObserver final : public zrkapp::illustration::OrreryAppObserver {
public:
  explicit OrreryAppObserver(Callouts* engine) : engine_(engine) {}

  void ClearEngine() { engine_ = nullptr; }

  void OnStructureOpened() override { Regenerate(); }
  void OnStructureClosed() override { Regenerate(); }
  void OnStructureReplaced() override { Regenerate(); }
  void OnStructureUpdated() override { Regenerate(); }
  void OnStructurePropertiesChanged() override { Regenerate(); }

private:
  void Regenerate();

  Callouts* engine_;
};

}  // namespace zrcallouts

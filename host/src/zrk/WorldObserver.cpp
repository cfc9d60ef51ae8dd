#include <zrk/WorldObserver.h>

#include <zrk/Scene.h>

namespace zrk {

WorldObserver::~WorldObserver() = default;

void WorldObserver::OnAnnoSetTableChanged() {}

void WorldObserver::OnLanguageChanged() {}

void WorldObserver::OnSceneAdded(const du::SmartPtr<Scene>&) {}

void WorldObserver::OnWorldDestroy() {}

}  // namespace zrk

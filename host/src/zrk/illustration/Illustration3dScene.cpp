#include <zrk/illustration/Illustration3dScene.h>

#include <zrk/illustration/SbomTree.h>

namespace zrk::illustration {

Illustration3dScene::Illustration3dScene() = default;

Illustration3dScene::~Illustration3dScene() = default;

du::SmartPtr<SbomTree> Illustration3dScene::GetSbomTree() const {
  const dp::MutexGuard guard(settingsMutex_);
  return tree_;
}

bool Illustration3dScene::GetMissingAttr() const {
  const dp::MutexGuard guard(settingsMutex_);
  return missingAttr_;
}

std::string Illustration3dScene::GetMissingAttrInput() const {
  const dp::MutexGuard guard(settingsMutex_);
  return missingAttrInput_;
}

bool Illustration3dScene::GetDrawWhenHidden() const {
  const dp::MutexGuard guard(settingsMutex_);
  return drawWhenHidden_;
}

void Illustration3dScene::SetSbomTree(const du::SmartPtr<SbomTree>& tree) {
  du::SmartPtr<SbomTree> previous = tree;
  const dp::MutexGuard guard(settingsMutex_);
  tree_.Swap(previous);
}

void Illustration3dScene::SetMissingAttr(bool on, const std::string& input) {
  const dp::MutexGuard guard(settingsMutex_);
  missingAttr_ = on;
  missingAttrInput_ = input;
}

void Illustration3dScene::SetDrawWhenHidden(bool on) {
  const dp::MutexGuard guard(settingsMutex_);
  drawWhenHidden_ = on;
}

}  // namespace zrk::illustration

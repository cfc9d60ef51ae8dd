#pragma once

#include <string>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/ShapeScene.h>

namespace zrk::illustration {

class SbomTree;

/// A 3D scene of an illustration with its structure and its label settings. Thread-safe; setters notify nobody.
class ZR_HOST_API Illustration3dScene : public ShapeScene {
public:
  Illustration3dScene();
  ~Illustration3dScene() override;

  /// Null when the scene has no structure of its own.
  [[nodiscard]] du::SmartPtr<SbomTree> GetSbomTree() const;
  /// Whether labels show GetMissingAttrInput for a property that a part lacks.
  [[nodiscard]] bool GetMissingAttr() const;
  [[nodiscard]] std::string GetMissingAttrInput() const;
  /// Whether callouts are drawn as usual where geometry hides them.
  [[nodiscard]] bool GetDrawWhenHidden() const;

  void SetSbomTree(const du::SmartPtr<SbomTree>& tree);
  void SetMissingAttr(bool on, const std::string& input);
  void SetDrawWhenHidden(bool on);

private:
  mutable dp::Mutex settingsMutex_;
  du::SmartPtr<SbomTree> tree_ ZR_GUARDED_BY(settingsMutex_);
  bool missingAttr_ ZR_GUARDED_BY(settingsMutex_) = false;
  std::string missingAttrInput_ ZR_GUARDED_BY(settingsMutex_);
  bool drawWhenHidden_ ZR_GUARDED_BY(settingsMutex_) = false;
};

}  // namespace zrk::illustration

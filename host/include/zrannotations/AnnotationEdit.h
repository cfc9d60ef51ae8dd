#pragma once

#include <string>
#include <vector>

#include <du/Export.h>
#include <du/SmartPtr.h>

namespace zrk {
class Operation;
namespace illustration {
class Illustration3dScene;
class SbomInstance;
}  // namespace illustration
}  // namespace zrk

namespace zrannotations {

class Callout;
class CombinedCallout;
class Inset;
class SymbolAnnotation;

/// What a user does to the annotations of a scene. Each edit notifies as the changes it consists of do, and is made of
/// undoable steps of the operation, or final with a null operation; whoever made the operation records it. Null or
/// false, and nothing changed, when what the edit is about is not in the scene. One thread at a time edits a scene.
class ZR_HOST_API AnnotationEdit {
public:
  AnnotationEdit() = delete;

  /// Adds an inset on the instance: its bounds are the box around the instance's shapes, its subset scene holds copies
  /// of their shape instances, which SceneEdit keeps like the originals, its caption is visible. Null for an instance
  /// without shapes.
  static du::SmartPtr<Inset> AddInset(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                                      const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                      const std::string& caption, const du::SmartPtr<zrk::Operation>& operation);
  static bool RemoveInset(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                          const du::SmartPtr<Inset>& inset, const du::SmartPtr<zrk::Operation>& operation);

  /// Puts a 3D symbol on the part, in the middle of its box and a quarter of its size, under the first free component
  /// id "symbol-1", "symbol-2" and so on: first its shape instance, then its annotation. Null for a part without shape.
  static du::SmartPtr<SymbolAnnotation> AddSymbol(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                                                  const du::SmartPtr<zrk::illustration::SbomInstance>& part,
                                                  const du::SmartPtr<zrk::Operation>& operation);
  /// Deletes the symbol's annotation with its dependents, then removes its shape instances.
  static bool RemoveSymbol(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                           const du::SmartPtr<SymbolAnnotation>& symbol, const du::SmartPtr<zrk::Operation>& operation);
  /// The 3D symbols on the part in the order of the annotation set.
  [[nodiscard]] static std::vector<du::SmartPtr<SymbolAnnotation>> GetSymbols(
      const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
      const du::SmartPtr<zrk::illustration::SbomInstance>& part);

  /// Replaces the callouts by one combined callout that has them as members, in that order, and stands where the first
  /// one stood. Null unless there are two or more different single callouts, all in the scene and the first one with a
  /// template.
  static du::SmartPtr<CombinedCallout> JoinCallouts(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                                                    const std::vector<du::SmartPtr<Callout>>& callouts,
                                                    const du::SmartPtr<zrk::Operation>& operation);
  /// Deletes the callout with its dependents.
  static bool DeleteCallout(const du::SmartPtr<zrk::illustration::Illustration3dScene>& scene,
                            const du::SmartPtr<Callout>& callout, const du::SmartPtr<zrk::Operation>& operation);
};

}  // namespace zrannotations

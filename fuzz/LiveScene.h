#pragma once
// The small host that random calls work on: a scene with its engine, a foreign scene beside it, and a sheet.

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <zrannotations/Inset.h>
#include <zrannotations/SymbolAnnotation.h>
#include <zritemlist/ItemList.h>
#include <zrk/Kernel.h>
#include <zrk/Operation.h>
#include <zrk/World.h>
#include <zrk/illustration/Illustration3dView.h>
#include <zrk/illustration2d/Callout2D.h>
#include <zrk/illustration2d/Scene2D.h>
#include <zrk/illustration2d/View2D.h>

#include "support/HeldPicks.h"
#include "support/RegistryInvariants.h"
#include "support/StructureBuilder.h"
#include "support/TemplateBuilder.h"

namespace zrfuzz {

using zrtest::CalloutPtr;
using zrtest::EnginePtr;
using zrtest::Part;
using zrtest::PickPtr;
using zrtest::TemplatePtr;
using OperationPtr = du::SmartPtr<zrk::Operation>;
using InsetPtr = du::SmartPtr<zrannotations::Inset>;
using Sheet = zrk::illustration2d::Scene2D;

/// Makes the host and ends it with the object; one at a time in a process. Tasks wait until RunTasks. Chosen things are
/// taken modulo their number, so that every byte chooses something; nothing is chosen from an empty list. [host-thread]
struct LiveScene {
  LiveScene();
  ~LiveScene();
  LiveScene(const LiveScene&) = delete;
  LiveScene& operator=(const LiveScene&) = delete;

  [[nodiscard]] const Part& PartAt(unsigned choice) const { return parts[choice % parts.size()]; }
  [[nodiscard]] const TemplatePtr& TemplateAt(unsigned choice) const { return templates[choice % templates.size()]; }
  [[nodiscard]] CalloutPtr CalloutAt(unsigned choice) const;  ///< Null when there is none.
  [[nodiscard]] InsetPtr InsetAt(unsigned choice) const;      ///< Null when there is none.
  [[nodiscard]] du::SmartPtr<zrannotations::SymbolAnnotation> SymbolAt(unsigned choice) const;  ///< The same.
  [[nodiscard]] unsigned ItemAt(unsigned choice) const;  ///< 0 when there is none.
  [[nodiscard]] std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> Notes() const;
  [[nodiscard]] zrtest::WatchedScene Watched() const { return {scene, tree, items, engine}; }
  [[nodiscard]] zrtest::WatchedScene WatchedElsewhere() const;

  /// Makes an edit as one operation, recorded when it has a step.
  void Edit(const std::string& name, const std::function<void(const OperationPtr& operation)>& edit);
  void ClearHistory();
  void RunTasks();
  /// What was asked since the last call stands in `picks`.
  void CollectPicks();
  /// The engine ends; what it asked can still be answered.
  void DestroyEngine();
  /// Also ends the history.
  void MakeEngine();
  /// From now on nobody promises how the items that there are now are marked.
  void ForgetMarks();

  zrk::Kernel kernel;
  du::SmartPtr<zrk::World> world;
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene;
  du::SmartPtr<zrk::illustration::Illustration3dView> view;
  du::SmartPtr<zrk::illustration::SbomTree> tree;
  du::SmartPtr<zritemlist::ItemList> itemList;
  du::SmartPtr<zrk::illustration::ItemsList> items;
  EnginePtr engine;
  std::vector<Part> parts;
  std::vector<TemplatePtr> templates;
  du::SmartPtr<zrtest::HeldPicks> pickService;
  std::deque<PickPtr> picks;       ///< Open ones of the engine.
  std::deque<PickPtr> stalePicks;  ///< Open ones of engines that are gone.
  std::set<unsigned> unsureMarks;
  bool isPredictable = true;  ///< Not when marks or leaders were not followed once.
  bool exactHistory = true;   ///< Whether undo and redo restore everything.

  du::SmartPtr<zrk::illustration::Illustration3dScene> foreignScene;
  du::SmartPtr<zrk::illustration::ItemsList> foreignItems;
  Part foreignPart;
  CalloutPtr foreignCallout;
  InsetPtr foreignInset;
  CalloutPtr looseCallout;  ///< In no scene.

  du::SmartPtr<Sheet> sheet;
  du::SmartPtr<zrk::illustration2d::View2D> sheetView;

private:
  void MakeScene();
  void MakeParts();
  void MakeTemplates();
  void MakeForeignScene();
  void ConnectItemList();
};

}  // namespace zrfuzz

#pragma once
// One model in the host: scene, structure, item list, engine, and what can be done with them step by step.

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <du/SmartPtr.h>

#include "commands/HostStructure.h"
#include "commands/Options.h"
#include "commands/RowPlan.h"
#include "commands/TemplateFile.h"
#include "drawing/TextMeasure.h"
#include "visibility/VisibleRegions.h"
#include "zrcallouts/Align.h"

namespace zrannotations {
class Callout;
class CalloutLeader;
}  // namespace zrannotations
namespace zrcallouts {
class Callouts;
}
namespace zritemlist {
class ItemList;
}
namespace zrk {
class Operation;
namespace illustration {
class Illustration3dView;
}
}  // namespace zrk

namespace zrfigure {

/// A leader as it stands. Positions in world millimetres.
struct LeaderState {
  int occurrence = -1;  ///< What it is anchored on; -1 when that is gone.
  Vec3 anchor;
  std::vector<Vec3> bends;  ///< From anchor to label.
  bool hidden = false;
  bool visible = true;    ///< Whether what it is anchored on is shown.
  bool occluded = false;  ///< Whether geometry hides its end: drawn dashed.
};

/// A callout as it stands.
struct CalloutState {
  unsigned id = 0;
  unsigned item = 0;  ///< Id of its item; 0 for none.
  std::string text;   ///< Without markdown.
  Vec3 label;         ///< Centre of the label, world millimetres.
  std::vector<LeaderState> leaders;
};

/// A row of the item list as it stands.
struct ItemState {
  unsigned id = 0;
  std::string number;
  unsigned quantity = 0;
  std::string tag;
  std::vector<int> occurrences;  ///< Ascending.
};

/// How long the parts of a run took.
struct RunSeconds {
  double generate = 0;  ///< Up to the first label that was measured.
  double layout = 0;    ///< From there on: placing and showing.
};

/// Owns everything the host holds for one model. A HostProcess must be there before and after it, with the component
/// loaded. All operations on the thread that made it. [host-thread]
class HostSession {
public:
  /// \param text measures labels during runs; must outlive the session, and nobody else may use it during a run.
  /// \param direction of the views to come; shapes' boxes are made for it.
  HostSession(const OccurrenceTree& occurrences, const ViewDirection& direction, const TextMeasure& text);
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  /// False when the component made no engine; nothing else may be called then.
  [[nodiscard]] bool HasEngine() const;

  /// Template of the next run, in a language that it may have a pattern for.
  void SetTemplate(const TemplateDefinition& definition, const std::string& language);
  void SetMode(CalloutMode mode);
  /// Camera, window and the rectangle of the page that labels may use, in pixels of the view.
  void SetView(const View& view, const Box2& room);
  /// What is seen in that view; picks are answered from it.
  void SetVisibleRegions(std::vector<VisibleRegion> regions);
  /// The same from the whole picture of the session's view. If the camera has turned since the last one, anchors follow
  /// what can be seen now: see LeaderState::occluded.
  void SetPicture(const View& view, IdBuffer ids);

  /// Makes rows in the given order, as an operation that is undone and redone together with the next run. Rows that
  /// exist are left alone. With `hierarchical` the rows' paths number the items from now on.
  void PrepareRows(const std::vector<PlannedRow>& rows, bool hierarchical);

  /// Creates callouts for the occurrences on the task pool and waits for the end.
  RunSeconds Generate(const std::vector<int>& selected, bool showProgress);

  /// Renumbers the items along the order; see zrfigure::Renumber(). Steps of the last run, undone and redone with it.
  void RenumberItems(const std::vector<unsigned>& order);

  /// A callout's id and where its label's centre shall be, world millimetres.
  using LabelMove = std::pair<unsigned, Vec3>;
  /// Moves labels, as steps of the last run. Their leaders become straight. Unknown ids are ignored.
  void MoveLabels(const std::vector<LabelMove>& moves);

  /// Lines up the labels of all callouts, as an operation of its own. Their leaders become straight. \return false,
  /// with nothing moved and the reason in `error`, when the axis points at the viewer and for fewer than two callouts.
  [[nodiscard]] bool AlignLabels(zrcallouts::Align_Mode mode, bool distribute, std::string& error);

  /// Takes the last operation back, or makes it again. False when there is none.
  bool Undo();
  bool Redo();

  /// In the order in which they came into the scene.
  [[nodiscard]] std::vector<CalloutState> GetCallouts() const;
  /// In the order of the list.
  [[nodiscard]] std::vector<ItemState> GetItems() const;

  /// The host's side of the session, for edits of the scene.
  [[nodiscard]] const du::SmartPtr<zrk::illustration::Illustration3dScene>& GetScene() const { return scene_; }
  [[nodiscard]] const du::SmartPtr<zrk::illustration::Illustration3dView>& GetView() const { return view_; }
  [[nodiscard]] const du::SmartPtr<zritemlist::ItemList>& GetItemList() const { return itemList_; }
  [[nodiscard]] const du::SmartPtr<zrcallouts::Callouts>& GetEngine() const { return engine_; }
  [[nodiscard]] const HostStructure& GetStructure() const { return structure_; }

private:
  class LabelSizes;

  [[nodiscard]] CalloutState Describe(const zrannotations::Callout& callout) const;
  [[nodiscard]] LeaderState Describe(const zrannotations::CalloutLeader& leader) const;
  void AddRow(const PlannedRow& row, bool hierarchical, const du::SmartPtr<zrk::Operation>& operation);

  const OccurrenceTree& occurrences_;
  du::SmartPtr<zrk::illustration::Illustration3dScene> scene_;
  du::SmartPtr<zrk::illustration::Illustration3dView> view_;
  du::SmartPtr<zritemlist::ItemList> itemList_;
  HostStructure structure_;
  std::unique_ptr<LabelSizes> labelSizes_;
  du::SmartPtr<zrcallouts::Callouts> engine_;
  std::set<du::SmartPtr<zrk::Operation>> rowOperations_;  ///< Those of PrepareRows.
  du::SmartPtr<zrk::Operation> runOperation_;             ///< Of the last run that created something.
};

}  // namespace zrfigure

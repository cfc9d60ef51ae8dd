#pragma once
// The callouts engine of one 3D scene: registry of callouts, their labels, and the reactions to everything the host
// reports. Made by ZRDllCreateComponent, bound by Initialize, ended by Destroy; held by counted references only.

#include <zrk/illustration/Callouts.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <dg/Color.h>
#include <dp/Mutex.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>

#include "zrcallouts/Export.h"

namespace zrk {
class Annotation;
class Instance;
class Operation;
class Property;
class Scene;
class ShapeInstance;
class ShapeScene;
class ShapeView;
namespace illustration {
class LabelContent;
class SbomInstance;
class TAnnotation;
}  // namespace illustration
namespace illustration2d {
class Callout2D;
class Scene2D;
}  // namespace illustration2d
}  // namespace zrk
namespace zrannotations {
class Callout;
class CombinedCallout;
class Inset;
}  // namespace zrannotations
namespace zritemlist {
class ItemList;
}

namespace zrcallouts {

class AnchorPicks;
class AnnoSetTableObserver;
class CalloutGenerator;
class EngineLink;
class GenerationScope;
class InsetObserver;
class ItemIndex;
class ItemsListObserver;
class OrreryAppObserver;
class TreeObserver;
class WorldObserver;

/// Keeps the registration, text and leaders of a scene's callouts in step with the scene.
///
/// The engine's read-write lock comes from its host base, is re-entrant, and guards every field; an engine without a
/// lock object runs unlocked. No operation throws, apart from std::bad_alloc of ordinary allocations. Host objects that
/// are missing make the step that needs them a no-op. Every walk over callouts goes in address order, over a copy
/// wherever the walk may change the set.
class ZR_CALLOUTS_API Callouts : public zrk::illustration::Callouts {
public:
  using CalloutSet = std::set<du::SmartPtr<zrannotations::Callout>>;
  using Contents = std::vector<du::SmartPtr<zrk::illustration::LabelContent>>;

  /// An engine without a scene; the host calls Initialize next.
  Callouts();
  /// An engine bound to `scene`. [host-thread]
  explicit Callouts(const du::SmartPtr<zrk::ShapeScene>& scene);
  ~Callouts() override;

  // Life cycle. [host-thread]

  /// Binds the engine: takes the scene's item list and registers the items-list, world, application, tree and table
  /// observers, in that order. Whatever the host lacks is left out.
  void Initialize(const du::SmartPtr<zrk::ShapeScene>& scene) override;
  /// Takes the background colours of view 0.
  void InitializeShapeViewObserver() override;
  /// Unbinds the engine under its write lock; insets and templates are released later, on the task pool.
  void Destroy() override;

  // Settings: read and write lock; a setter only stores.

  [[nodiscard]] bool GetCombineForSamePart() const;
  void SetCombineForSamePart(bool on);
  [[nodiscard]] bool GetDrawOneForSamePart() const;
  void SetDrawOneForSamePart(bool on);
  [[nodiscard]] bool GetForce2DArrowheads() const;
  void SetForce2DArrowheads(bool on);
  /// Anchor picks that were asked for and not answered yet.
  [[nodiscard]] std::uint32_t GetPickRequestCount() const;
  /// The template of new callouts; may be empty.
  [[nodiscard]] du::SmartPtr<zrk::illustration::TAnnotation> GetTemplate() const;
  void SetTemplate(du::SmartPtr<zrk::illustration::TAnnotation> callouttemplate);
  /// The figure's item list; may be empty. Takes no lock.
  [[nodiscard]] du::SmartPtr<zritemlist::ItemList> GetItemsList() const;
  /// Does nothing: the engine reads preferences where it needs them.
  void PreferencesChanged();

  // Scene notifications. Delivered on the thread that made the change, after the change.

  void OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) override;
  void OnShapeInstanceVisibility(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, bool visible) override;
  void OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) override;
  void OnShapeInstanceRemove(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance) override;
  void OnAddAnnotation(const du::SmartPtr<zrk::Annotation>& annotation) override;
  void OnRemoveAnnotation(const du::SmartPtr<zrk::Annotation>& annotation) override;
  /// When its geometry changed, leaders of a callout in an inset show as far as they end inside it. Takes no lock: it
  /// may arrive from inside a walk that holds the read lock.
  void OnAnnotationModified(const du::SmartPtr<zrk::Annotation>& annotation, bool geometryOnly) override;
  void OnAnnotationDeleted(const du::SmartPtr<zrk::Annotation>& annotation,
                           const du::SmartPtr<zrk::Operation>& operation) override;
  void OnHandleTimeoutEvent(const du::SmartPtr<zrk::ShapeView>& view, dg::Camera3D& lastCamera) override;
  void OnBackgroundColor(const du::SmartPtr<zrk::ShapeView>& view) override;
  void OnPaletteColorChanged() override;
  void OnWindowSize() override;

  /// Recomputes the anchor of every leader of `callout` on `shapeInstance` and tells the callout that it changed.
  void UpdateLeaderAnchor(const du::SmartPtr<zrannotations::Callout>& callout,
                          const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);

  // View appearance and indication.

  /// Stores the three background colours of any view. Takes no lock.
  void SetBackgroundColor(const du::SmartPtr<zrk::ShapeView>& view);
  /// Marks the callout's item as indicated, or clears the mark when no registered callout shows the item any more.
  void SetIndicated(const du::SmartPtr<zrannotations::Callout>& callout, bool indicated);

  // Registry.

  /// Files the callout under the id of every leader: the assembly's id, or the shape's where there is none. Write lock.
  void AddToMap(const du::SmartPtr<zrannotations::Callout>& callout);
  /// Enters the callout into the observed set (write lock), then observes its template with no lock held.
  void AddToSet(const du::SmartPtr<zrannotations::Callout>& callout);
  /// Whether a callout filed under `id` shows exactly `text`.
  [[nodiscard]] bool Exists(const std::string& id, const std::string& text) const;
  /// Whether a generated callout may join: refused is a second callout of one item on one part in one inset.
  [[nodiscard]] bool IsAllowed(const du::SmartPtr<zrannotations::Callout>& callout) const;

  // Labels.

  /// Resolves a template's content into label text, for 3D (`withCallout`) and 2D callouts. Clears `label` first. Takes
  /// no lock; `callout` and `itemList` may be empty.
  static void GenerateLabelString(const du::SmartPtr<zrannotations::Callout>& callout,
                                  const du::SmartPtr<zrk::Scene>& scene, Contents contents, bool markdownContent,
                                  std::string& label, const du::SmartPtr<zritemlist::ItemList>& itemList, bool hasItem,
                                  std::uint32_t itemId, bool withCallout);
  /// The label of a 3D callout of this engine. Read lock for the whole call.
  void GenerateLabelString(const du::SmartPtr<zrannotations::Callout>& callout, Contents contents, bool markdownContent,
                           std::string& label) override;
  /// The label of a 2D callout of `scene`. Takes no engine lock.
  void GenerateLabelStringFor2DCallout(const du::SmartPtr<zrk::Scene>& scene, Contents contents, bool markdownContent,
                                       std::string& label, bool hasItem, std::uint32_t itemId) override;

  /// Builds and stores the label; the text is written only when it differs. True when the text was written or the
  /// callout is a legacy one that keeps its dynamic text.
  bool SetCalloutText(const du::SmartPtr<zrannotations::Callout>& callout);
  /// Rebuilds the label when its template depends on data; `includeSystem` counts item tokens as data. Read lock.
  bool RegenerateCalloutLabel(const du::SmartPtr<zrannotations::Callout>& callout, bool includeSystem);
  /// Rebuilds every label that depends on data and marks view 0 dirty when one changed. Read lock.
  void RegenerateCalloutLabels();
  /// Whether a callout added now gets its label generated: not while the application publishes in batch.
  [[nodiscard]] bool RegenerateCalloutLabelOnAdd() const;
  /// Puts the catalogue's predefined text into the callout.
  void SetPredefinedText(const du::SmartPtr<zrannotations::Callout>& callout);
  /// Whether the callout's template yields a text for it.
  [[nodiscard]] bool HasTemplateText(const du::SmartPtr<zrannotations::Callout>& callout);
  /// The template as a pattern with numbered placeholders for its properties. False (pattern untouched) without
  /// template; otherwise true when the pattern holds a literal or stands for a template without text content.
  bool GetTemplateLocalizableString(const du::SmartPtr<zrannotations::Callout>& callout, du::Symbol& pattern) const;
  /// Turns a (translated) pattern back into a content list, appended to `localized`; the reverse of the above.
  void LocalizeTemplateText(const du::Symbol& pattern, const Contents& templateContents, Contents& localized) const;
  /// Shows the texts of the current language in every callout and inset that has translations. Read lock.
  void OnLanguageChanged();
  /// Brings the callout's item number in line with its changed template; true when something changed.
  bool CheckForTypeUpdate(du::SmartPtr<zrannotations::Callout>& callout);

  // Item list.

  /// Rebuilds the labels of the callouts that carry the item. The instance sets are not used: leaders of item groups
  /// have an update of their own.
  void OnItemContentChanged(std::uint32_t itemId, std::set<du::SmartPtr<zrk::illustration::SbomInstance>> added,
                            std::set<du::SmartPtr<zrk::illustration::SbomInstance>> removed);
  /// Makes the leaders of the item's callouts match its group of instances, as one step of `operation` (none when
  /// empty). With either setting for same parts on, an added instance gets a leader; a removed one loses its leader in
  /// any case, and a callout that loses its last leader is deleted. By instance, and idempotent. Does nothing during an
  /// automatic run and while the host undoes or redoes. Write lock.
  void UpdateItemGroupCalloutLeaders(std::uint32_t itemId,
                                     const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& added,
                                     const std::set<du::SmartPtr<zrk::illustration::SbomInstance>>& removed,
                                     const du::SmartPtr<zrk::Operation>& operation);
  /// Deletes the callouts that carry the item; a combined callout loses only that member. Write lock.
  void OnItemRemoved(std::uint32_t itemId, const du::SmartPtr<zrk::Operation>& operation);
  /// Deletes every callout that carries an item number. Write lock.
  void OnListCleared(const du::SmartPtr<zrk::Operation>& operation);
  /// Appends the callouts of each id, id by id; a callout that carries two of the ids is appended twice. Read lock an
  /// id.
  void GetItemIdCallouts(const std::vector<std::uint32_t>& itemIds,
                         std::vector<du::SmartPtr<zrannotations::Callout>>& callouts) const;
  void GetItemIdCallouts(std::uint32_t itemId, std::vector<du::SmartPtr<zrannotations::Callout>>& callouts) const;
  /// Inserts the item numbers that the callouts carry. The spelling is part of the interface.
  void GetItemdIds(std::set<std::uint32_t>& itemIds) const;
  /// The callouts filed under the instance's id; empty for an empty instance. Read lock.
  void GetCalloutSetForSbomInstance(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                    CalloutSet& callouts) override;

  /// Puts the callouts into item order by exchanging pairs, flat or hierarchical as the item list numbers. Callouts
  /// without an item number keep their places. Hierarchical order is not a plain comparison of paths: a longer path
  /// goes behind a shorter one wherever they agree at a level, and a smaller position does not settle a pair.
  void Sort(std::vector<du::SmartPtr<zrannotations::Callout>>& callouts) const;

  // 2D callouts and fonts.

  /// Rebuilds the text of a 2D callout of `scene`; true when it was replaced. An empty label replaces nothing.
  static bool UpdateCallout2DContent(const du::SmartPtr<zrk::illustration2d::Callout2D>& callout,
                                     const du::SmartPtr<zrk::illustration2d::Scene2D>& scene);
  /// The font faces that the engine's callouts and insets use; with `customOnly` those of custom ones. Read lock.
  [[nodiscard]] std::set<std::string> GetCalloutsAndInsetsFonts(bool customOnly) const;

  // Anchors and hidden parts.

  /// Asks view 0 for each leader's part whose anchor is not calculated yet: what it shows of it, and at the anchor's
  /// pixel. The answers may come at once or later and from any thread. Nothing after Destroy. No lock may be held.
  void RequestAnchorPick(const du::SmartPtr<zrannotations::Callout>& callout);
  /// Takes the answers to RequestAnchorPick: anchors go to the deepest visible point of their part. Where a shown
  /// leader's part cannot be seen and a hidden leader's can, the two exchange their hidden flags. Read lock.
  /// [any-thread]
  void OnReceivePick(const AnchorPicks& picks);
  /// Re-evaluates which callouts geometry hides, by asking for each drawn leader of the main view. While the scene
  /// draws hidden callouts as usual, marks of an earlier evaluation are taken away instead. A view other than view 0
  /// changes nothing: a leader has one anchor, and it is placed for view 0. No lock may be held.
  void OnDrawWhenHidden(const du::SmartPtr<zrk::ShapeView>& view);
  /// Takes the answers to OnDrawWhenHidden: an anchor stays where it is while that point is good, else it moves to the
  /// deepest visible point of its part; a leader whose part cannot be seen is marked as occluded. Answers to an earlier
  /// evaluation, or for a leader that has changed since, are passed over. Read lock. [any-thread]
  void OnReceiveAnchorVisiblePick(const AnchorPicks& picks);
  /// An inset has new bounds, is shown or hidden: its callouts show as far as they end inside it.
  void OnInsetChanged(const du::SmartPtr<zrannotations::Inset>& inset);

protected:
  /// Takes every observer off what it observes, in a fixed order. Write lock; idempotent.
  void UnregisterObservers() override;

private:
  friend class CalloutGenerator;  // takes back what a run that failed has registered
  friend class EngineLink;
  friend class GenerationScope;
  friend class UpdateItemGroupLeadersOperationStep;

  using InsetTable = std::map<du::SmartPtr<zrannotations::Inset>, CalloutSet>;

  class Refiling;
  struct GroupChange;

  void AttachItemsListObserver(const du::SmartPtr<zrk::ShapeScene>& scene);
  void AttachWorldObserver();
  void AttachApplicationObserver();
  void AttachTreeObserver(const du::SmartPtr<zrk::ShapeScene>& scene);
  void AttachAnnoSetTableObserver();

  void OnAddSymbolAnnotation(const du::SmartPtr<zrk::Annotation>& annotation);
  void OnAddInset(const du::SmartPtr<zrannotations::Inset>& inset);
  void OnAddCallout(const du::SmartPtr<zrannotations::Callout>& callout);
  void AdmitArrivedCallout(const du::SmartPtr<zrannotations::Callout>& callout);
  void LocalizeArrivedCallout(const du::SmartPtr<zrannotations::Callout>& callout, bool notes);
  void RegisterArrivedCallout(const du::SmartPtr<zrannotations::Callout>& callout, unsigned leaderCount);
  void OnRemoveInset(const du::SmartPtr<zrannotations::Inset>& inset);
  void OnRemoveCallout(const du::SmartPtr<zrannotations::Callout>& callout);
  void OnLanguageChanged(const du::SmartPtr<zrk::Annotation>& annotation);

  void Unregister(const du::SmartPtr<zrannotations::Callout>& callout);
  void RemoveFromMap(const du::SmartPtr<zrannotations::Callout>& callout);
  void RemoveLeaderFromMap(const du::SmartPtr<zrannotations::Callout>& callout, unsigned leader);
  void _RemoveLeaderFromMap(const du::SmartPtr<zrannotations::Callout>& callout, unsigned leader);

  [[nodiscard]] CalloutSet CopyOfCallouts() const;
  [[nodiscard]] std::vector<du::SmartPtr<zrannotations::Callout>> CopyOfCarriers(std::uint32_t itemId) const;
  [[nodiscard]] bool HasCarrier(std::uint32_t itemId) const;
  [[nodiscard]] du::SmartPtr<zritemlist::ItemList> HeldItemList() const;
  [[nodiscard]] CalloutSet CopyOfCalloutsAt(const std::string& id) const;
  [[nodiscard]] bool IsRegistered(const du::SmartPtr<zrannotations::Callout>& callout) const;
  [[nodiscard]] bool IsDestroyed() const;
  bool UpdateLeadersOf(const du::SmartPtr<zrannotations::Callout>& callout, GroupChange& change);
  bool UpdateMembersOf(const du::SmartPtr<zrannotations::CombinedCallout>& combined, GroupChange& change);
  bool ChangeLeaders(const du::SmartPtr<zrannotations::Callout>& callout, GroupChange& change);
  [[nodiscard]] bool LosesEveryLeader(const zrannotations::Callout& callout, const GroupChange& change) const;
  void BeginGeneration();
  void EndGeneration();
  std::string CombinedLabel(const du::SmartPtr<zrannotations::CombinedCallout>& combined);
  std::string LabelFromTemplate(const du::SmartPtr<zrannotations::Callout>& callout);
  void MarkViewDirty() const;
  [[nodiscard]] bool DrawsHiddenAsUsual() const;
  void RequestSparePicks(const du::SmartPtr<zrannotations::Callout>& callout);

  std::atomic<std::uint32_t> pickRequestCount_{0};  // changed by way of link_, without the lock
  bool combineForSamePart_ = false;
  bool drawOneForSamePart_ = false;
  bool force2DArrowheads_ = false;
  dg::Color firstBackground_{0, 0, 0, 1};
  dg::Color secondBackground_{0, 0, 0, 1};
  dg::Color thirdBackground_{0, 0, 0, 1};
  du::SmartPtr<zrk::illustration::TAnnotation> template_;
  du::SmartPtr<zritemlist::ItemList> itemList_;
  du::SmartPtr<ItemsListObserver> itemsListObserver_;
  du::SmartPtr<WorldObserver> worldObserver_;
  CalloutSet callouts_;
  std::map<std::string, CalloutSet> idMap_;
  std::map<du::SmartPtr<zrk::Instance>, du::SmartPtr<zrk::Annotation>> symbolAnnotations_;
  InsetTable insetTable_;
  std::map<du::SmartPtr<zrannotations::Inset>, du::SmartPtr<InsetObserver>> insetObservers_;
  du::SmartPtr<OrreryAppObserver> applicationObserver_;
  du::SmartPtr<TreeObserver> treeObserver_;
  du::SmartPtr<AnnoSetTableObserver> annoSetTableObserver_;
  std::uint32_t generations_ = 0;             // automatic runs and item additions of generators under way
  std::atomic<std::uint64_t> evaluation_{0};  // of hidden parts; answers to an earlier one no longer count
  mutable dp::Mutex answerMutex_;  // one answer at a time; taken inside the engine lock, nothing is called with it held
  const std::unique_ptr<ItemIndex> itemIndex_;  // of callouts_, which changes along with it
  du::SmartPtr<EngineLink> link_;               // what template observers hold instead of the engine; cut by Destroy
};

}  // namespace zrcallouts

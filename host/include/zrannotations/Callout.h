#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <dg/DBox.h>
#include <dg/DPoint2D.h>
#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrannotations/Annotation.h>
#include <zrannotations/CalloutLabelPlacement.h>
#include <zrannotations/CalloutLeader.h>

namespace dg {
class Pipeline;
}
namespace zrcontext {
class Context2D;
}
namespace zrk {
class Instance;
class ShapeView;
namespace illustration {
class CalloutTemplateObserver;
class TAnnotation;
}  // namespace illustration
}  // namespace zrk

namespace zrannotations {

class CombinedCallout;
struct CalloutSnapshot;

/// A label with leader lines to parts, 3D symbols or assemblies. Positions of leaders count all leaders, hidden ones
/// included, in the order in which they were connected. State is guarded by a lock of the callout's own that is never
/// held while calling out. Modifications tell the listeners of the callout's scene. [any-thread]
class ZR_HOST_API Callout : public zrk::Annotation {
public:
  using SymbolMap = std::map<du::SmartPtr<zrk::Instance>, du::SmartPtr<zrk::Annotation>>;
  using InsetTable = std::map<du::SmartPtr<Inset>, std::set<du::SmartPtr<Callout>>>;
  using ShapeSet = CalloutLeader::ShapeSet;
  /// Turns a pattern with placeholders ("{0}") into the text to show; false leaves the pattern as it is.
  using PatternResolver =
      std::function<bool(const du::SmartPtr<Callout>& callout, const du::Symbol& pattern, std::string& text)>;
  /// What a callout's text consists of; the same numbers for 2D callouts.
  enum Type : unsigned { ItemListType = 0, TextType = 1, PropertyType = 2 };

  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* memory) noexcept;

  Callout();
  ~Callout() override;
  [[nodiscard]] unsigned GetAnnotationType() const override;

  // Creation and definition

  /// Defines the callout by the template, with a first leader on the shape; without a shape it has no leader, without
  /// both it stays uninitialised.
  void Initialize(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate,
                  const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// The same with a first leader on an assembly and its shapes in the scene.
  void Initialize(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate,
                  const du::SmartPtr<zrk::ShapeScene>& scene,
                  const du::SmartPtr<zrk::illustration::SbomInstance>& assembly);
  [[nodiscard]] bool IsInitialized() const;
  /// One of Type, by what the definition requires at present.
  [[nodiscard]] unsigned GetType() const;
  /// The template the callout was made from, also after its use was released; null when there is none.
  [[nodiscard]] du::SmartPtr<zrk::illustration::TAnnotation> GetDefinition() const;
  /// Replaces the definition; an observer and the use of the template move along.
  void UpdateDefinition(const du::SmartPtr<zrk::illustration::TAnnotation>& definition);
  /// Gives the use of the template back; harmless twice.
  void ReleaseCalloutTemplate();
  /// Observes the definition from now on, in place of an earlier observer, and takes up the use of the template again.
  void RegisterTemplateObserver(const du::SmartPtr<zrk::illustration::CalloutTemplateObserver>& observer);
  /// Drops the observer; never waits for a notification under way.
  void UnregisterTemplateObserver();
  [[nodiscard]] bool HasTemplateObserver() const;
  /// Has a definition and is not custom.
  [[nodiscard]] bool UsesTemplate() const;
  [[nodiscard]] bool IsUsingTemplate() const;
  /// A custom callout has left its template's ways.
  [[nodiscard]] bool IsCustomCallout() const;
  void SetCustom(bool custom);
  [[nodiscard]] bool IsKit() const;
  void SetKit(bool kit);

  // Text and localisation

  /// The stored text; with `plain` without markdown.
  [[nodiscard]] du::Symbol GetText(bool plain) const;
  /// Stores the text. `fromLocalizable` false: an enabled localisable string takes it as its source. True: the string
  /// stays as it is, and a pattern with placeholders is resolved before it is stored.
  void SetText(const du::Symbol& text, bool fromLocalizable);
  [[nodiscard]] unsigned GetSetTextCount() const;
  /// The stored text as written, markdown included.
  [[nodiscard]] std::string GetMarkupText() const;
  /// As the definition is, unless SetIsMarkdown says otherwise.
  [[nodiscard]] bool IsMarkdown() const;
  void SetIsMarkdown(bool markdown);
  /// True when the callout comes from an old document and keeps its own text instead of `label`.
  [[nodiscard]] bool CheckDynamicTextForLegacyCallout(const std::string& label) const;
  void SetLegacyDynamicText(bool legacy);
  /// The handle itself, to be changed by its owner thread only.
  [[nodiscard]] du::LocalizableString& GetLocalizableString();
  /// Makes a new record with the present text as source, unless an enabled one has that source already. `notes`: the
  /// record's key is "NoteContent".
  void SetupLocalizationIfNecessary(bool notes);
  /// Text callouts and property callouts, not item numbers.
  [[nodiscard]] bool IsLabelLocalizable() const;
  [[nodiscard]] bool IsReferencedInAnimation() const;
  void SetReferencedInAnimation(bool referenced);
  /// The callout's own font, else that of its definition's first content.
  [[nodiscard]] std::string GetFontFace() const;
  void SetFontFace(const std::string& fontFace);
  /// Process-wide; an empty function leaves patterns unresolved.
  static void SetPatternResolver(PatternResolver resolver);

  // Item number

  /// False, with `itemId` untouched, when there is none.
  [[nodiscard]] virtual bool GetItemId(std::uint32_t& itemId) const;
  [[nodiscard]] virtual bool HasItemId() const;
  [[nodiscard]] virtual bool CarriesItemId(std::uint32_t itemId) const;
  /// 0 = none.
  void SetItemId(std::uint32_t itemId);
  void ClearItemId();

  // Leaders by position; a position without leader yields null, empty or 0

  /// All leaders, or without those that are hidden or point at nothing in a scene. Visibility plays no part.
  [[nodiscard]] virtual unsigned GetLeaderLineCount(bool includeHidden) const;
  [[nodiscard]] std::string GetAssemblyInstanceIdAtPos(unsigned position) const;
  [[nodiscard]] std::string GetShapeInstanceIdAtPos(unsigned position) const;
  [[nodiscard]] du::SmartPtr<zrk::ShapeInstance> GetShapeInstanceAtPos(unsigned position) const;
  [[nodiscard]] du::SmartPtr<zrk::illustration::SbomInstance> GetSbomInstanceAtPos(unsigned position) const;
  [[nodiscard]] du::SmartPtr<Inset> GetInsetAtPos(unsigned position) const;
  void SetInsetAtPos(const du::SmartPtr<Inset>& inset, unsigned position);
  void SetSymbolIdAtPos(unsigned symbolId, unsigned position);
  [[nodiscard]] unsigned GetSymbolIdAtPos(unsigned position) const;
  /// Location of the leader's target in model space, IDENTITY without a leader; `flag` is ignored.
  [[nodiscard]] dg::Location GetInstanceLocationAtPos(unsigned position, bool flag) const;
  [[nodiscard]] std::vector<du::SmartPtr<CalloutLeader>> GetLeaders() const;
  /// True when the callout has drawn leaders and geometry hides the ends of all of them: the callout is drawn dimmed.
  [[nodiscard]] bool IsDimmed() const;

  // Making leaders

  /// Centre of the shape's box in model space, a provisional anchor; false, with `point` untouched, without a shape.
  bool CalculateAnchor(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance, dg::DPoint3D& point) const;
  /// The leader belongs to no callout until ConnectLeader.
  [[nodiscard]] du::SmartPtr<CalloutLeader> CreateCalloutLeader(const dg::DPoint3D& point,
                                                                const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// Centre of the box around all the shapes, without rotation and with scale 1.
  [[nodiscard]] dg::Location CalculateAssemblyRoughLocation(const ShapeSet& shapeInstances) const;
  /// Centre of that shape's box which lies nearest to the middle of all; false without shapes.
  bool CalculateAssemblyAnchor(const ShapeSet& shapeInstances, dg::DPoint3D& point) const;
  [[nodiscard]] du::SmartPtr<CalloutLeader> CreateCalloutLeader(
      const dg::DPoint3D& point, const dg::Location& location,
      const du::SmartPtr<zrk::illustration::SbomInstance>& assembly, const ShapeSet& shapeInstances);
  /// Appends the leader; null and a leader that is connected already change nothing.
  void ConnectLeader(const du::SmartPtr<CalloutLeader>& leader);
  /// Takes the leader out again; nothing when it is not connected.
  void DisconnectLeader(const du::SmartPtr<CalloutLeader>& leader);
  /// Connects a leader that only knows its ids, as a loaded document does.
  void AddUnresolvedLeader(const std::string& shapeId, const std::string& assemblyId);

  // Following the scene

  /// Resolves the leaders by id, gives leaders on 3D symbols the id of their symbol annotation, and enters the callout
  /// under every inset that shows a leader of it, making the entry when it is missing.
  void UpdateWithCalloutInfo(const SymbolMap& symbols, InsetTable& insets);
  /// Resolves the leaders only.
  void UpdateWithCalloutInfo();
  void OnShapeInstanceCreate(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// Moves anchors of leaders on the shape. The label travels with the frame of leader 0; a label in state 1 moves by
  /// as much as the anchor of leader 0.
  void OnShapeInstanceLocation(const du::SmartPtr<zrk::ShapeInstance>& shapeInstance);
  /// Shows or hides the leaders that point at the part, symbol or assembly of that id.
  void SetVisible(const std::string& id, bool visible);
  /// Leaders of the inset are not drawn while their anchor is outside its bounds. Null changes no leader.
  void SetVisibleWithinInsetBounds(const du::SmartPtr<Inset>& inset);
  [[nodiscard]] unsigned GetVisibleWithinInsetBoundsCount() const;
  /// Does not keep the scene alive.
  void AttachSubsetScene(const du::SmartPtr<zrk::Scene>& scene, const std::string& name);
  [[nodiscard]] du::SmartPtr<zrk::Scene> GetSubsetScene() const;
  [[nodiscard]] std::string GetSubsetSceneName() const;
  /// Gives the callout a z-order above every other one.
  void BringToFront();
  [[nodiscard]] std::uint64_t GetZOrder() const;
  void RefreshColors();
  [[nodiscard]] unsigned GetRefreshColorsCount() const;
  /// Marks view 0 of the scene dirty and tells the scene's listeners.
  void NotifyCalloutChanged();
  [[nodiscard]] unsigned GetNotifyCalloutChangedCount() const;

  // Label placement; the label's position is the centre of the label

  /// In the label's own frame.
  [[nodiscard]] dg::DPoint3D GetPosition() const;
  [[nodiscard]] virtual dg::Location GetLabelLocation() const;
  void SetLabelPosition(const dg::DPoint3D& position);
  /// In model space.
  [[nodiscard]] dg::DPoint3D GetMarkupLabelPosition() const;
  /// The frame the label's position is in: position and scale of leader 0's target, or IDENTITY in state 1.
  [[nodiscard]] dg::Location GetLabelFrame() const;
  /// The label's box in pixels, by LabelMeasure; depth is that of its position. `context` and `flags` are ignored.
  [[nodiscard]] dg::DBox GetMarkupPixelBBox(dg::Pipeline& pipeline, zrcontext::Context2D* context, int flags) const;
  [[nodiscard]] bool IsLabelRelativeToScreen() const;
  /// Pixels (and depth) of a screen-relative label; its projected position otherwise. Origin without a view.
  [[nodiscard]] dg::DPoint3D GetLabelRelativeScreenPosition(const du::SmartPtr<zrk::ShapeView>& view) const;
  /// Fractions of the window's width and height.
  [[nodiscard]] dg::DPoint2D GetRelativeScreenPosition() const;
  void SetRelativeScreenPosition(const dg::DPoint2D& relative);
  /// Pins the label to the place on the screen where its model position is seen now; nothing without a view.
  void SetLabelScreenSpaceMode(const du::SmartPtr<zrk::ShapeView>& view);
  void ClearLabelScreenSpaceMode();
  /// 0 = follows leader 0's target, 1 = free in model space.
  [[nodiscard]] int GetLabelPlacementState() const;
  /// The label stays where it is in model space.
  void SetLabelPlacementState(int state);

  // Compound and snapshots

  [[nodiscard]] virtual bool IsCompoundCallout() const;
  /// The combined callout that this one is a member of; null for a callout of its own.
  [[nodiscard]] du::SmartPtr<CombinedCallout> GetParent() const;
  [[nodiscard]] virtual CalloutSnapshot TakeSnapshot() const;
  /// Puts the aspects back whose CalloutSnapshot bits are set in `aspects`, and notifies once.
  virtual void RestoreSnapshot(const CalloutSnapshot& snapshot, std::int32_t aspects);

  using LeaderVector = std::vector<du::SmartPtr<CalloutLeader>>;
  /// Replaces all leaders, in position order.
  void SetLeaders(const LeaderVector& leaders);

protected:
  using ParentLink = std::shared_ptr<zrk::BackLink<CombinedCallout>>;
  friend class CombinedCallout;

  /// Every leader that follows the scene through this callout: its own, then those of members.
  [[nodiscard]] virtual LeaderVector GetFollowingLeaders() const;
  void SetParentLink(const ParentLink& link);
  [[nodiscard]] SceneLink GetSceneLink() const override;

private:
  struct Flags {
    bool initialized = false;
    bool custom = false;
    bool kit = false;
    bool legacyDynamicText = false;
    bool referencedInAnimation = false;
  };
  struct Counters {
    unsigned setText = 0;
    unsigned refreshColors = 0;
    unsigned withinInsetBounds = 0;
    unsigned notifyChanged = 0;
  };

  using Template = du::SmartPtr<zrk::illustration::TAnnotation>;

  void Define(const Template& callouttemplate);
  void PlaceDefaultLabel(const dg::DBox& target);
  void UseTemplate(bool use);
  void ExchangeObserver(du::SmartPtr<zrk::illustration::CalloutTemplateObserver> observer);
  [[nodiscard]] du::SmartPtr<CalloutLeader> GetLeaderAtPos(unsigned position) const;
  [[nodiscard]] CalloutLabelPlacement GetPlacement() const;
  [[nodiscard]] du::Symbol ResolvePattern(const du::Symbol& text);
  void RestoreText(const CalloutSnapshot& snapshot);
  void RestoreLeaders(const CalloutSnapshot& snapshot);

  // First what every label is asked for, close together: a walk over many callouts waits for memory above all.
  mutable dp::Mutex mutex_;
  std::atomic<std::uint32_t> itemId_{0};
  std::optional<bool> markdown_ ZR_GUARDED_BY(mutex_);
  Flags flags_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<zrk::illustration::TAnnotation> definition_ ZR_GUARDED_BY(mutex_);
  LeaderVector leaders_ ZR_GUARDED_BY(mutex_);
  CalloutLabelPlacement label_ ZR_GUARDED_BY(mutex_);
  Counters counters_ ZR_GUARDED_BY(mutex_);
  bool usingTemplate_ ZR_GUARDED_BY(mutex_) = false;
  du::SmartPtr<zrk::illustration::CalloutTemplateObserver> templateObserver_ ZR_GUARDED_BY(mutex_);
  du::Symbol text_ ZR_GUARDED_BY(mutex_);
  du::LocalizableString localizableString_;
  std::string fontFace_ ZR_GUARDED_BY(mutex_);
  SceneLink subsetScene_ ZR_GUARDED_BY(mutex_);
  std::string subsetSceneName_ ZR_GUARDED_BY(mutex_);
  std::uint64_t zOrder_ ZR_GUARDED_BY(mutex_) = 0;
  ParentLink parent_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrannotations

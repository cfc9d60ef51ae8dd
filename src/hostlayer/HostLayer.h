#pragma once
// What the component asks of its host under names that another host may spell differently. Porting to another host
// means changing this folder. Every function accepts empty pointers and then answers empty, false or nothing.

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <dg/DBox2D.h>
#include <dg/DPoint3D.h>
#include <dg/Location.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrannotations/CalloutLabelPlacement.h>
#include <zrk/illustration/ItemsList.h>

namespace zrk {
class BaseInstance;
class Instance;
class Operation;
class PickEvent;
class Property;
class ShapeInstance;
class ShapeScene;
class ShapeView;
namespace illustration {
class SbomInstance;
class SbomInstanceSelectionItem;
class TAnnotation;
}  // namespace illustration
namespace illustration2d {
class Callout2D;
}
}  // namespace zrk
namespace zrannotations {
class Callout;
class CalloutLeader;
class Inset;
class SymbolAnnotation;
}  // namespace zrannotations

namespace zrcallouts::hostlayer {

using CalloutPtr = du::SmartPtr<zrannotations::Callout>;
using LeaderPtr = du::SmartPtr<zrannotations::CalloutLeader>;
using InsetPtr = du::SmartPtr<zrannotations::Inset>;
using SbomInstancePtr = du::SmartPtr<zrk::illustration::SbomInstance>;

// Item numbers of a callout.
[[nodiscard]] std::optional<std::uint32_t> ItemIdOf(const CalloutPtr& callout);
[[nodiscard]] bool CarriesAnyItem(const CalloutPtr& callout);
[[nodiscard]] bool CarriesItem(const CalloutPtr& callout, std::uint32_t itemId);
void DropItemId(const CalloutPtr& callout);
/// Appends the callouts whose own item number changed since `position`, 0 at first, which moves on. They may be gone
/// already and are good for comparing only. False when the host cannot tell: any number may have changed. The members
/// of compound callouts change without notice.
[[nodiscard]] bool ReadItemChanges(std::uint64_t& position, std::vector<const zrannotations::Callout*>& changed);

// Other states that the host keeps for a callout.
[[nodiscard]] dg::Location LabelLocation(const CalloutPtr& callout);
[[nodiscard]] bool IsCompound(const CalloutPtr& callout);
[[nodiscard]] bool UsesTemplate(const CalloutPtr& callout);
[[nodiscard]] bool IsLabelLocalizable(const CalloutPtr& callout);
/// Whether the label keeps its position in model space instead of following its first leader's instance.
[[nodiscard]] bool IsLabelFreeInModelSpace(const CalloutPtr& callout);
[[nodiscard]] bool IsLabelRelativeToScreen(const CalloutPtr& callout);
/// The stored relative position of a screen-relative label, at depth 0.
[[nodiscard]] dg::DPoint3D RelativeScreenPosition(const CalloutPtr& callout);
/// The label's whole placement: the step of a move that is given it undoes the move exactly.
[[nodiscard]] zrannotations::CalloutLabelPlacement LabelPlacementOf(const CalloutPtr& callout);
/// What a callout's operation step restores when leaders changed: of a combined callout the members and the text too.
[[nodiscard]] std::int32_t LeaderAspectsOf(const CalloutPtr& callout);

// Templates.
[[nodiscard]] bool IsItemTagTemplate(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate);
void SetReferenceResolution(const du::SmartPtr<zrk::illustration::TAnnotation>& callouttemplate, double value);

[[nodiscard]] bool IsItemTemplate(const zrk::illustration::TAnnotation& callouttemplate);

// Instances and their properties.
[[nodiscard]] std::string IdOf(const du::SmartPtr<zrk::BaseInstance>& instance);
[[nodiscard]] bool IsWeld(const SbomInstancePtr& instance);
[[nodiscard]] bool IsWeldMember(const SbomInstancePtr& instance);
[[nodiscard]] SbomInstancePtr SbomInstanceOf(const du::SmartPtr<zrk::illustration::SbomInstanceSelectionItem>& item);
/// The property of group and name that belongs to the shape source, or to no source in particular.
[[nodiscard]] du::SmartPtr<zrk::Property> FindProperty(const SbomInstancePtr& instance, const du::Symbol& group,
                                                       const du::Symbol& name, const du::Symbol& shapeSource);
[[nodiscard]] du::Symbol ValueOf(const du::SmartPtr<zrk::Property>& property);

// Views.
/// The printable page in pixels; empty when the view shows none.
[[nodiscard]] dg::DBox2D PageRectangleOf(const du::SmartPtr<zrk::ShapeView>& view);
/// The same with the scale of the page preview; `scale` keeps its value without a page.
[[nodiscard]] dg::DBox2D PageRectangleOf(const du::SmartPtr<zrk::ShapeView>& view, double& scale);
/// The whole drawing area of the view in pixels.
[[nodiscard]] dg::DBox2D WindowRectangleOf(const du::SmartPtr<zrk::ShapeView>& view);
/// Hands the event to whoever draws the view; the answer may come before this returns. No lock may be held.
void RequestPick(const du::SmartPtr<zrk::ShapeView>& view, const du::SmartPtr<zrk::PickEvent>& event);

// How leaders are drawn.
/// Whether the leader's end is marked as hidden by geometry.
[[nodiscard]] bool IsOccluded(const LeaderPtr& leader);
/// Marks the end, or takes the mark away; true when that changed anything.
bool SetOccluded(const LeaderPtr& leader, bool occluded);

// Insets.
[[nodiscard]] bool InsetAccepts(const InsetPtr& inset, const CalloutPtr& callout);
[[nodiscard]] bool IsTemplateReleased(const InsetPtr& inset);
[[nodiscard]] du::SmartPtr<zrk::ShapeScene> SubsetSceneOf(const InsetPtr& inset);
void TellInsetItsCallouts(const InsetPtr& inset, const std::set<CalloutPtr>& callouts);

[[nodiscard]] bool IsCustom(const InsetPtr& inset);

// 2D callouts and the item list's numbering.
[[nodiscard]] bool CarriesItem(const du::SmartPtr<zrk::illustration2d::Callout2D>& callout);
/// How the host writes the path of a 2D annotation of that id.
[[nodiscard]] du::Symbol IdPathOf(const du::Symbol& id);
[[nodiscard]] bool NumbersHierarchically(const zrk::illustration::ItemsList::Numbering& numbering);

// 3D symbols.
/// The registry's key of a 3D symbol: a slash and the id of its component instance.
[[nodiscard]] std::string SymbolKeyOf(const du::SmartPtr<zrannotations::SymbolAnnotation>& symbol);
[[nodiscard]] std::string SymbolKeyOf(const du::SmartPtr<zrk::Instance>& symbol);

// Undo.
/// Whether this thread is just undoing or redoing in the scene: reactions then leave alone what the steps restore.
[[nodiscard]] bool IsReplaying(const du::SmartPtr<zrk::ShapeScene>& scene);
/// The operation that the change belongs to which this thread is told of; empty outside any.
[[nodiscard]] du::SmartPtr<zrk::Operation> CurrentOperation();

/// The notes flag of the open file's localisation settings; false without a world, file or settings.
[[nodiscard]] bool NotesAreLocalized();

}  // namespace zrcallouts::hostlayer

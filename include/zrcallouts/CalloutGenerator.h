#pragma once
// Creates callouts for selected structure instances, by category, inside one undoable operation. One generator object
// serves one run and is dropped afterwards; it is held by counted references and owned by whoever runs it.

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrk/ObjectWithRWLock.h>

#include "zrcallouts/Export.h"

namespace zrk {
class AsyncEvent;
class ComponentNode;
class Instance;
class Operation;
class Property;
class ReadWriteLock;
class ShapeInstance;
class ShapeScene;
class View;
namespace illustration {
class SbomInstance;
class SbomInstanceSelectionItem;
class TAnnotation;
}  // namespace illustration
}  // namespace zrk
namespace zrannotations {
class Callout;
}
namespace zritemlist {
class ItemList;
}

namespace zrcallouts {

class AnnotationVisitor;
class Callouts;
struct LeaderTarget;

/// The automatic creation of callouts, and the operations around it.
///
/// A run makes one pass per category. What a category is depends on the engine's template: a template that needs the
/// item list has the item numbers as categories, one that needs part properties the values of its first property, any
/// other ("plain") one the components, followed by the process-plan keys of parts that carry one. All generators share
/// one read-write lock, which guards them as host objects. When memory runs out, an operation takes back the callouts
/// that it made, and the steps of an operation of its own; those of a caller's are the caller's to undo.
class ZR_CALLOUTS_API CalloutGenerator : public zrk::ObjectWithRWLock {
public:
  using CalloutVector = std::vector<du::SmartPtr<zrannotations::Callout>>;
  using CalloutSet = std::set<du::SmartPtr<zrannotations::Callout>>;
  using InstanceSet = std::set<du::SmartPtr<zrk::illustration::SbomInstance>>;
  using Selection = std::vector<du::SmartPtr<zrk::illustration::SbomInstanceSelectionItem>>;

  explicit CalloutGenerator(du::SmartPtr<Callouts> engine);
  ~CalloutGenerator() override;

  [[nodiscard]] const zrk::ClassType& GetClassType() const override;

  /// Starts an automatic run on the world's task pool and returns at once. `selection` is moved out of the caller's
  /// vector. `event` may be empty; otherwise it gets progress in percent and one Complete(), on the pool's thread, or
  /// on this one when the pool took no task. [any-thread]
  static void CreateCallouts(const du::SmartPtr<Callouts>& engine, Selection&& selection,
                             const du::SmartPtr<zrk::AsyncEvent>& event);
  /// The automatic run itself, on this thread: creates, texts, registers, lays out and shows the callouts in one
  /// operation that it records. Nothing is recorded when the selection yields no category. [pool-thread]
  void AddOnSelected(const Selection& selection, const du::SmartPtr<zrk::AsyncEvent>& event);

  /// Every callout that this generator made and the engine allowed.
  [[nodiscard]] const CalloutSet& GetCreatedCallouts() const { return created_; }

  // Item list, thin. `operation` may be empty.

  unsigned AddToItemList(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, bool flag, std::string text,
                         du::SmartPtr<zrk::Operation>& operation);
  void RemoveFromItemList(unsigned itemId, du::SmartPtr<zrk::Operation>& operation);
  void GetItemLabel(unsigned itemId, std::string& label, bool& flag);
  bool GetMatchingItem(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, unsigned& itemId);
  /// Takes the callouts of removed items away, undoably, and marks the view dirty when `itemIds` holds any.
  void RemoveFromItemIds(const std::vector<unsigned>& itemIds, const du::SmartPtr<zrk::Operation>& operation);
  /// Makes callouts for every instance of the given items with the template of the given id. Shows them in `operation`,
  /// or in one of its own that it records.
  void AddOnItemIds(const std::vector<unsigned>& itemIds, const std::string& templateId,
                    const du::SmartPtr<zrk::Operation>& operation);

  // Finishing.

  /// Finishes callouts made elsewhere: symbol ids, item numbers, registration, showing. Makes and records an operation
  /// of its own when `operation` is empty, and hands it out there.
  void AddCallouts(const CalloutVector& callouts, du::SmartPtr<zrk::Operation>& operation);
  /// Shows the created callouts in `operation`.
  void ShowCreatedCallouts(const du::SmartPtr<zrk::Operation>& operation);
  /// Makes and shows callouts for 3D symbols, one a shape, in an operation of its own that it records.
  void AddOnSymbols(const std::vector<du::SmartPtr<zrk::Instance>>& instances);
  /// Gives the selected parts item numbers, inside `operation`. Makes no callouts.
  void AddOnCopySteps(const Selection& selection, du::SmartPtr<zrannotations::Callout>& callout,
                      const du::SmartPtr<zrk::Operation>& operation);
  /// Creates callouts by item number whatever the template says. The caller shows them and records the operation, which
  /// is made here and handed out when `operation` is empty.
  void CreateManuallyOnSelected(const Selection& selection, du::SmartPtr<zrk::Operation>& operation);

protected:
  void InitializeSelected(const Selection& selection, const du::SmartPtr<zrk::Operation>& operation);
  bool InitCategoryIterators();
  bool NextCategory();
  bool CompletedCategoryIterators();

  bool UseParent(const du::SmartPtr<zrk::illustration::SbomInstance>& instance);
  void AddSbomInstanceToRun(const du::SmartPtr<zrk::illustration::SbomInstance>& instance, InstanceSet& runSet);
  void AddOnSelectedCategory(const InstanceSet& runSet);
  void AddOnSelectedCategory(const InstanceSet& runSet, CalloutVector& made);
  du::SmartPtr<zrk::Instance> FindValidInstance(const std::set<du::SmartPtr<zrk::Instance>>& instances,
                                                const std::set<du::SmartPtr<zrk::Instance>>& others, bool flag);

  unsigned ComputeNumberOfVariants(const Selection& selection, const du::SmartPtr<zrk::Operation>& operation);
  void IncrementNumberOfVariants(const du::SmartPtr<zrk::illustration::SbomInstance>& instance,
                                 const du::SmartPtr<zrk::Operation>& operation);
  [[nodiscard]] unsigned GetVariantsCount() const { return variantsCount_; }

  void FinalizeCallouts(const CalloutVector& callouts);
  void ShowCallouts(const CalloutSet& callouts, const du::SmartPtr<zrk::Operation>& operation);
  void ShowCallouts(const CalloutVector& callouts, const du::SmartPtr<zrk::Operation>& operation);
  void PerformLayout();

private:
  using SbomInstancePtr = du::SmartPtr<zrk::illustration::SbomInstance>;
  using SelectionItemPtr = du::SmartPtr<zrk::illustration::SbomInstanceSelectionItem>;
  using EngineeringSet = std::set<du::SmartPtr<zrk::Instance>>;

  // What an instance contributes to the passes, found once a run: the instance to enter and its category of the mode.
  struct Candidate {
    SbomInstancePtr instance;
    const zrk::ComponentNode* component = nullptr;  // plain
    du::Symbol text;                                // property value, or process-plan key in a plain run
    std::uint32_t itemId = 0;                       // item list
  };
  using Candidates = std::vector<Candidate>;

  // The instances of every category of a run's mode.
  struct RunSets {
    std::map<const zrk::ComponentNode*, InstanceSet> ofComponent;
    std::map<du::Symbol, InstanceSet> ofText;
    std::map<std::uint32_t, InstanceSet> ofItem;
    InstanceSet none;  // of a category that no instance belongs to
  };

  class PassProgress;

  static du::SmartPtr<zrk::ReadWriteLock> GetRWLock();

  [[nodiscard]] std::uint32_t CurrentItemId() const;
  [[nodiscard]] bool HasItem(const SbomInstancePtr& instance, unsigned& itemId) const;
  [[nodiscard]] bool IsItemized(unsigned itemId) const;
  [[nodiscard]] SbomInstancePtr RunInstanceOf(const SelectionItemPtr& item);
  [[nodiscard]] EngineeringSet EngineeringInstancesOf(const SbomInstancePtr& instance,
                                                      std::vector<SbomInstancePtr>& children) const;
  [[nodiscard]] InstanceSet ItemListCandidates(const SbomInstancePtr& instance,
                                               const EngineeringSet& engineering) const;
  [[nodiscard]] du::SmartPtr<zrk::Property> CategoryPropertyOf(const SbomInstancePtr& instance) const;
  const Candidates& CandidatesOf(const SbomInstancePtr& instance);
  void CollectCandidates(const SbomInstancePtr& instance, Candidates& candidates) const;
  void SortInto(RunSets& runSets, const Candidates& candidates) const;
  [[nodiscard]] RunSets RunSetsOf(const Selection& selection);
  [[nodiscard]] const InstanceSet& CurrentRunSet(const RunSets& runSets) const;
  void CountItems(const SbomInstancePtr& instance, const EngineeringSet& engineering,
                  const du::SmartPtr<zrk::Operation>& operation);

  bool InitializeByItem(const Selection& selection, const du::SmartPtr<zrk::Operation>& operation);
  template <class Body>
  bool ForEachPass(const Selection& selection, PassProgress progress, const Body& body);

  [[nodiscard]] du::SmartPtr<zrannotations::Callout> MakeCallout(const LeaderTarget& target) const;
  void AssignSymbolId(const du::SmartPtr<zrannotations::Callout>& callout, const AnnotationVisitor& symbols) const;
  void AssignItemNumber(const du::SmartPtr<zrannotations::Callout>& callout,
                        const du::SmartPtr<zrk::Operation>& operation);
  [[nodiscard]] CalloutVector MakeSymbolCallouts(const std::vector<du::SmartPtr<zrk::Instance>>& instances,
                                                 const du::SmartPtr<zrk::ShapeScene>& scene) const;
  [[nodiscard]] du::SmartPtr<zrk::illustration::TAnnotation> ChooseTemplate(const std::string& templateId);
  void UpdateDefinitions(const std::vector<unsigned>& itemIds,
                         const du::SmartPtr<zrk::illustration::TAnnotation>& definition,
                         const du::SmartPtr<zrk::Operation>& operation);
  [[nodiscard]] du::SmartPtr<zrk::Operation> NewOperation() const;
  void TakeBack(const du::SmartPtr<zrk::Operation>& ownOperation);

  du::SmartPtr<Callouts> engine_;
  CalloutSet created_;
  std::map<SbomInstancePtr, Candidates> candidates_;
  du::SmartPtr<zrk::View> view_;
  du::SmartPtr<zrk::ShapeScene> scene_;
  du::SmartPtr<zritemlist::ItemList> itemList_;
  std::uint32_t variantsCount_ = 0;
  std::set<du::SmartPtr<zrk::ComponentNode>> plainCategories_;
  std::map<du::Symbol, unsigned> propertyCategories_;  // value: how many instances were counted for the key
  std::set<std::uint32_t> itemCategories_;
  std::set<du::SmartPtr<zrk::ComponentNode>>::const_iterator plainCurrent_;
  std::map<du::Symbol, unsigned>::const_iterator propertyCurrent_;
  std::set<std::uint32_t>::const_iterator itemCurrent_;
  bool needsProperty_ = false;
  bool plain_ = false;
  bool needsItemList_ = false;
  std::vector<du::Symbol> propertyGroups_;
  std::vector<du::Symbol> propertyNames_;
  bool addToItemList_ = false;
};

}  // namespace zrcallouts

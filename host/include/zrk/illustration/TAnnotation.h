#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <dp/Mutex.h>
#include <du/Export.h>
#include <du/SmartPtr.h>
#include <zrk/ObserverList.h>
#include <zrk/illustration/CollectionItem.h>
#include <zrk/illustration/TextAlignment.h>

namespace zrk {
class Operation;
}

namespace zrk::illustration {

class CalloutTemplateObserver;
class LabelContent;
class PenHolder;

/// A callout template: what a label says and how it looks. Thread-safe; observers are told after the change with no
/// lock held.
class ZR_HOST_API TAnnotation : public CollectionItem {
public:
  using Contents = std::vector<du::SmartPtr<LabelContent>>;

  /// A template without text content.
  TAnnotation();
  /// A private copy: name, id, settings, pens and copies of the contents; neither observers nor users.
  TAnnotation(const TAnnotation& other);
  TAnnotation& operator=(const TAnnotation&) = delete;
  ~TAnnotation() override;

  /// The label pieces in order; false and an empty vector when the template has no text content.
  bool GetTextContent(Contents& contents) const;
  [[nodiscard]] bool IsMarkdown() const;
  void SetIsMarkdown(bool on);
  /// Whether a piece shows the item's number, quantity or tag, unless SetRequires says otherwise.
  [[nodiscard]] bool RequiresItemList() const;
  /// Whether a piece shows a property of the part, unless SetRequires says otherwise.
  [[nodiscard]] bool RequiresPropertyVisitor() const;
  [[nodiscard]] std::string GetId() const;
  void SetId(const std::string& id);
  /// Null when the template has none.
  [[nodiscard]] du::SmartPtr<PenHolder> GetLeaderPen() const;
  void SetLeaderPen(const du::SmartPtr<PenHolder>& pen);
  /// Null when the label has no border.
  [[nodiscard]] du::SmartPtr<PenHolder> GetLabelBorderPen() const;
  void SetLabelBorderPen(const du::SmartPtr<PenHolder>& pen);
  [[nodiscard]] TextAlignment GetTextAlignment() const;
  void SetTextAlignment(TextAlignment alignment);
  [[nodiscard]] bool ExcludesItemTagTest() const;
  void SetExcludesItemTagTest(bool on);
  [[nodiscard]] bool IsItemTemplate() const;
  void SetIsItemTemplate(bool on);
  /// Dots per inch that sizes in the template refer to; 0 when none was set.
  [[nodiscard]] double GetReferenceResolution() const;
  void SetReferenceResolution(double value);
  /// Overrides what the contents say the template requires.
  void SetRequires(bool itemList, bool propertyVisitor);

  /// Replaces the label pieces and notifies OnTemplateModified; a step of the operation when one is given.
  void SetTextContent(const Contents& contents, bool hasContent, const du::SmartPtr<Operation>& operation = nullptr);
  /// Takes over everything but the id from another template and notifies OnTemplateReplaced; a step of the operation
  /// when one is given. The contents are copies.
  void ReplaceBy(const TAnnotation& other, const du::SmartPtr<Operation>& operation = nullptr);
  /// Tells the observers that want thumbnails.
  void NotifyThumbnailsLoaded();

  void RegisterObserver(const du::SmartPtr<CalloutTemplateObserver>& observer);
  /// Never waits for a notification under way.
  void UnregisterObserver(const du::SmartPtr<CalloutTemplateObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;
  /// Counts a callout that uses the template; each use ends with one RemoveUser.
  void AddUser();
  void RemoveUser();
  [[nodiscard]] std::size_t GetUserCount() const;

private:
  friend class TemplateOperationStep;
  enum class Change { Replaced, Modified };
  struct Requirements {
    bool itemList;
    bool propertyVisitor;
  };
  struct State {
    std::string name;
    Contents contents;
    bool hasContent = false;
    bool markdown = false;
    du::SmartPtr<PenHolder> leaderPen;
    du::SmartPtr<PenHolder> labelBorderPen;
    TextAlignment alignment = TextAlignment::Left;
    bool excludesItemTagTest = false;
    bool itemTemplate = false;
    double referenceResolution = 0.0;
    std::optional<Requirements> required;
  };

  /// A copy of the present state with contents of its own.
  [[nodiscard]] State Snapshot() const;
  void Apply(const State& state, Change change);
  void ApplyInOperation(const State& state, Change change, const du::SmartPtr<Operation>& operation);
  [[nodiscard]] Requirements GetRequirements() const;
  void Notify(Change change);

  mutable dp::Mutex mutex_;
  State state_ ZR_GUARDED_BY(mutex_);
  std::string id_ ZR_GUARDED_BY(mutex_);
  std::size_t userCount_ ZR_GUARDED_BY(mutex_) = 0;
  ObserverList<CalloutTemplateObserver> observers_;
};

}  // namespace zrk::illustration

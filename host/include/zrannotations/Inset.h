#pragma once

#include <set>

#include <dg/DBox.h>
#include <dp/Mutex.h>
#include <dp/ThreadSafety.h>
#include <du/Export.h>
#include <du/LocalizableString.h>
#include <du/SmartPtr.h>
#include <du/Symbol.h>
#include <zrannotations/InsetBase.h>
#include <zrk/ObserverList.h>

namespace zrk {
class Markup;
class Observer;
class ShapeScene;
}  // namespace zrk

namespace zrannotations {

class Callout;
class InsetObserver;

/// A detail view drawn beside the main view, with a caption and callouts of its own. [any-thread]
class ZR_HOST_API Inset : public InsetBase {
public:
  Inset();
  ~Inset() override;

  /// Gives the use of the inset template back and forgets the shown callouts; harmless twice. Entering an annotation
  /// set takes the use up again.
  void ReleaseInsetTemplate();
  [[nodiscard]] bool IsReleased() const;
  void RegisterTemplateObserver(const du::SmartPtr<zrk::Observer>& observer);
  /// Drops the template observer; harmless without one.
  void UnregisterTemplateObserver();
  [[nodiscard]] bool HasTemplateObserver() const;

  void RegisterObserver(const du::SmartPtr<InsetObserver>& observer);
  void UnregisterObserver(const du::SmartPtr<InsetObserver>& observer);
  [[nodiscard]] std::size_t GetObserverCount() const;

  /// Null when the inset has no caption.
  [[nodiscard]] du::SmartPtr<zrk::Markup> GetInsetCaption() const;
  void SetInsetCaption(const du::SmartPtr<zrk::Markup>& caption);
  /// Makes a new record with the present caption as source, unless an enabled one has that source already.
  void SetupLocalizationIfNecessary();
  /// The caption's localisable string.
  [[nodiscard]] du::LocalizableString& GetLocalizableString();
  [[nodiscard]] du::Symbol GetCaptionText() const;
  /// Stores the caption; unless it was taken from the localisable string, an enabled string takes it as its source.
  /// Tells the observers. `first` is only stored.
  void SetCaptionText(const du::Symbol& text, bool first, bool fromLocalizable);

  /// Takes the callouts the inset now shows; called with the engine's write lock held, so it calls nobody.
  virtual void OnCalloutsChanged(const std::set<du::SmartPtr<Callout>>& callouts);
  /// The set of the last OnCalloutsChanged.
  [[nodiscard]] std::set<du::SmartPtr<Callout>> GetShownCallouts() const;
  /// Whether a leader of the callout ends inside the inset; an inset without bounds accepts every callout.
  [[nodiscard]] virtual bool AcceptsCallout(const du::SmartPtr<Callout>& callout) const;
  /// The scene the inset draws; null when it draws the main scene.
  [[nodiscard]] du::SmartPtr<zrk::ShapeScene> GetSubsetScene() const;
  /// Kept alive by the inset.
  void SetSubsetScene(const du::SmartPtr<zrk::ShapeScene>& scene);

  /// In model space; empty = without bounds.
  [[nodiscard]] dg::DBox GetBounds() const;
  void SetBounds(const dg::DBox& bounds);
  /// True for every point while there are no bounds.
  [[nodiscard]] bool ContainsPoint(const dg::DPoint3D& point) const;
  [[nodiscard]] bool IsVisible() const;
  void SetVisible(bool visible);

protected:
  void OnEnteredSet() override;

private:
  mutable dp::Mutex mutex_;
  zrk::ObserverList<InsetObserver> observers_;
  bool released_ ZR_GUARDED_BY(mutex_) = false;
  bool visible_ ZR_GUARDED_BY(mutex_) = true;
  du::SmartPtr<zrk::Observer> templateObserver_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<zrk::Markup> caption_ ZR_GUARDED_BY(mutex_);
  du::Symbol captionText_ ZR_GUARDED_BY(mutex_);
  du::LocalizableString localizableString_;
  std::set<du::SmartPtr<Callout>> shownCallouts_ ZR_GUARDED_BY(mutex_);
  du::SmartPtr<zrk::ShapeScene> subsetScene_ ZR_GUARDED_BY(mutex_);
  dg::DBox bounds_ ZR_GUARDED_BY(mutex_);
};

}  // namespace zrannotations

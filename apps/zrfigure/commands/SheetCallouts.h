#pragma once
// The callouts of a picture as 2D callouts of a page.

#include <string>
#include <vector>

#include <du/SmartPtr.h>

#include "commands/HostSession.h"
#include "commands/Picture.h"
#include "drawing/Figure.h"

namespace zrk::illustration2d {
class Callout2D;
class Scene2D;
class View2D;
}  // namespace zrk::illustration2d

namespace zrfigure {

/// Why a template cannot label 2D callouts; empty when it can. They know their item, but no part to take a property
/// from.
[[nodiscard]] std::string ReasonAgainstSheet(const TemplateDefinition& definition);

/// A page with a 2D callout for each callout of a session, on the session's item list. Positions in millimetres from
/// the page's upper left corner, y down. Ends with its session. [host-thread]
class SheetCallouts {
public:
  /// Makes the callouts where the session's stand, after the session's template. The session must outlive it. Callouts
  /// that the host refuses are left out. The page's grid follows the picture's axes.
  SheetCallouts(const HostSession& session, const Picture& picture, const Page& page, const TextMeasure& text);
  ~SheetCallouts();
  SheetCallouts(const SheetCallouts&) = delete;
  SheetCallouts& operator=(const SheetCallouts&) = delete;

  /// Lines up all labels. \return false, with nothing moved and the reason in `error`, as HostSession::AlignLabels().
  [[nodiscard]] bool Align(zrcallouts::Align_Mode mode, bool distribute, std::string& error);

  /// Makes the labels anew from the item list.
  void UpdateContents();

  /// The callouts as they stand on the page now, in the session's order, as if they stood in the picture's space.
  [[nodiscard]] std::vector<CalloutState> GetCallouts() const;

private:
  struct Entry {
    du::SmartPtr<zrk::illustration2d::Callout2D> callout;
    CalloutState state;  ///< Of the session's callout.
  };

  void Add(const CalloutState& state, const HostSession& session, const TextMeasure& text);

  View view_;
  du::SmartPtr<zrk::illustration2d::Scene2D> scene_;
  du::SmartPtr<zrk::illustration2d::View2D> sheet_;
  std::vector<Entry> entries_;
};

}  // namespace zrfigure

#pragma once
// The page of a figure as a 2D scene with notes on it.

#include <string>
#include <vector>

#include <du/SmartPtr.h>

#include "drawing/Figure.h"
#include "drawing/TextMeasure.h"

namespace zrcallouts {
class Callouts;
}
namespace zrk {
class Operation;
class Scene;
namespace illustration2d {
class Callout2D;
class Scene2D;
}  // namespace illustration2d
}  // namespace zrk

namespace zrfigure {

/// A note as it stands.
struct NoteState {
  unsigned number = 0;  ///< 1, 2, 3 and so on, in order.
  std::string text;
  Point2 at;          ///< Centre; millimetres from the page's top left corner.
  unsigned item = 0;  ///< Id of the item whose values it shows; 0 for none.
};

/// Notes are 2D callouts whose text may show values of an item. [host-thread]
class Sheet {
public:
  /// \param modelScene its item list is the sheet's too.
  Sheet(const du::SmartPtr<zrk::Scene>& modelScene, const Page& page);
  ~Sheet();
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;

  /// Puts a note on the sheet, as a step of the operation. In the pattern `{item}`, `{quantity}` and `{tag}` stand for
  /// values of the item. False, and nothing changed, when the host refuses.
  [[nodiscard]] bool AddNote(const std::string& pattern, Point2 at, unsigned item,
                             const du::SmartPtr<zrk::Operation>& operation);
  /// Builds the texts of all notes anew; nothing else does when values change. \return how many changed.
  std::size_t Update();

  [[nodiscard]] std::vector<NoteState> Notes() const;
  /// The notes as bare text without leaders, for drawing.
  [[nodiscard]] std::vector<Balloon> Balloons(const TextMeasure& text) const;

private:
  [[nodiscard]] std::vector<du::SmartPtr<zrk::illustration2d::Callout2D>> Callouts() const;

  du::SmartPtr<zrk::illustration2d::Scene2D> scene_;
};

}  // namespace zrfigure

// Commands about the view the callouts are seen in.

#include <dg/Color.h>
#include <zrk/illustration/Illustration3dView.h>

#include "script/CommandTable.h"
#include "script/CommandWords.h"
#include "script/Workspace.h"

namespace zrfigure {
namespace {

float ShareOf(const std::string& word, const char* what) {
  const double share = NumberOf(word, what);
  if (share < 0 || share > 1) throw CommandError{std::string(what) + " '" + word + "' is not between 0 and 1"};
  return static_cast<float>(share);
}

Answer SetBackground(Workspace& workspace, const Words& words) {
  const dg::Color color{ShareOf(words[1], "red"), ShareOf(words[2], "green"), ShareOf(words[3], "blue"), 1};
  workspace.Session().GetView()->SetBackgroundColors(color, color, color);
  return {};
}

Answer ResizeWindow(Workspace& workspace, const Words& words) {
  constexpr unsigned kLargest = 32768;
  const unsigned width = CountOf(words[1], "width");
  const unsigned height = CountOf(words[2], "height");
  if (width == 0 || height == 0 || width > kLargest || height > kLargest) {
    throw CommandError{"a window has 1 to " + std::to_string(kLargest) + " pixels a side"};
  }
  workspace.Session().GetView()->SetWindowSize(static_cast<int>(width), static_cast<int>(height));
  return {};
}

Answer LookFrom(Workspace& workspace, const Words& words) {
  std::string error;
  const auto direction = ParseViewDirection(words[1], error);
  if (!direction) throw CommandError{error};
  workspace.Current().LookFrom(*direction);
  return {};
}

Answer ExpireTimer(Workspace& workspace, const Words& /*words*/) {
  workspace.Session().GetView()->FireTimeout();
  return {};
}

}  // namespace

std::vector<Command> ViewCommands() {
  return {
      {"background", "RED GREEN BLUE", "Colour behind the model, shares from 0 to 1", 3, 3, SetBackground},
      {"resize", "WIDTH HEIGHT", "Size of the window in pixels", 2, 2, ResizeWindow},
      {"view", "VIEW", "Look from iso, front, ... or AZIMUTH,ELEVATION", 1, 1, LookFrom},
      {"timeout", "", "Let the view's timer expire", 0, 0, ExpireTimer},
  };
}

}  // namespace zrfigure

#pragma once

#include <vector>

#include <dg/DPoint3D.h>
#include <du/SmartPtr.h>

namespace zrannotations {
class Callout;
class CalloutLeader;
}  // namespace zrannotations

namespace zrk {

class Scene;

/// What a change of shape instances does to the callouts that follow them: labels' positions and leaders' visibility
/// before and after. Made before the change and told when it is over; it keeps only what differs. A step that repeats
/// or takes back the change lets the callouts follow again and then puts the stored values in place, since following is
/// computed and would not always come back to the same numbers.
class CalloutFollowing {
public:
  /// A null scene has no callouts.
  explicit CalloutFollowing(const du::SmartPtr<Scene>& scene);
  ~CalloutFollowing();

  /// Compares with what is now. Call it once.
  void Finish();
  void RestoreBefore() const;
  void RestoreAfter() const;

private:
  struct Label {
    du::SmartPtr<zrannotations::Callout> callout;
    dg::DPoint3D before;
    dg::DPoint3D after;
  };
  struct Visibility {
    du::SmartPtr<zrannotations::CalloutLeader> leader;
    bool before;
    bool after;
  };
  void Add(const du::SmartPtr<zrannotations::Callout>& callout);

  std::vector<Label> labels_;
  std::vector<Visibility> visibilities_;
};

}  // namespace zrk

#pragma once
// What holds of an engine between any two calls of its host. Shared by tests and fuzzing.

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <zrk/illustration/TAnnotation.h>

#include "support/WatchedScene.h"

namespace zrtest {

/// Compares the engine with what its scene implies, field by field. Of the thread that uses the scene.
class RegistryInvariants {
public:
  struct Expected {
    std::set<unsigned> unsureMarks;  ///< Items whose indication nobody promises.
    std::size_t openPicks = 0;       ///< Asked for by this engine, neither answered nor dropped.
    std::vector<du::SmartPtr<zrk::illustration::TAnnotation>> templates;  ///< Used by callouts of this engine only.
  };

  explicit RegistryInvariants(WatchedScene watched);

  /// One line a thing that does not hold; empty when all is well.
  [[nodiscard]] std::vector<std::string> Broken(const Expected& expected);

private:
  using CalloutSet = std::set<CalloutPtr>;
  using Filing = std::map<std::string, CalloutSet>;

  [[nodiscard]] bool IsDestroyed() const { return !watched_.engine->GetScene(); }
  [[nodiscard]] Filing ImpliedFiling() const;
  [[nodiscard]] CalloutSet CarriersOf(unsigned item) const;
  void Require(bool holds, const std::string& otherwise);
  /// What the engine keeps, and what the scene implies that it should.
  void RequireEqual(const CalloutSet& kept, const CalloutSet& implied, const std::string& keptAs,
                    const std::string& impliedBy);
  void CheckObserved();
  void CheckFiling();
  void CheckInsets();
  void CheckSymbols();
  void CheckItems(const std::set<unsigned>& unsureMarks);
  void CheckTemplates(const Expected& expected);
  void CheckCounters(const Expected& expected);

  const WatchedScene watched_;
  std::vector<CalloutPtr> shown_;  ///< In the scene at this time; of a destroyed engine, none.
  std::vector<std::string> broken_;
};

}  // namespace zrtest

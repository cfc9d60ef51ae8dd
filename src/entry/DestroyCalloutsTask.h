#pragma once
// Finishes the teardown of an engine in the background: lets go of the insets and templates its callouts used.

#include <map>
#include <set>

#include <du/SmartPtr.h>
#include <du/Task.h>
#include <zrannotations/Callout.h>
#include <zrannotations/Inset.h>

namespace zrcallouts {

/// Owns what Callouts::Destroy moved out of the engine. Runs once on the world's task pool. [pool-thread]
class DestroyCalloutsTask final : public du::Task {
public:
  using CalloutSet = std::set<du::SmartPtr<zrannotations::Callout>>;
  using InsetTable = std::map<du::SmartPtr<zrannotations::Inset>, CalloutSet>;

  /// Takes the contents of both containers and leaves them empty.
  void Take(InsetTable& insetTable, CalloutSet& callouts);

  void Run() override;

private:
  InsetTable insetTable_;
  CalloutSet callouts_;
};

}  // namespace zrcallouts

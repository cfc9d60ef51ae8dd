// The ways into the library: its entry points by name.
#include <dlfcn.h>

#include <zrcallouts/Functions.h>
#include <zrk/MemoryPool.h>
#include <zrk/illustration/CalloutEngineMgr.h>

#include "support/SceneFixture.h"

namespace {

using EntryPoint = zrk::illustration::CalloutEngineMgr::EntryPoint;
using Out = du::SmartPtr<du::RefCounted>;

EntryPoint CreateComponent() {
  return reinterpret_cast<EntryPoint>(dlsym(RTLD_DEFAULT, "ZRDllCreateComponent"));
}

/// Counts how often it was deleted.
class Probe final : public virtual du::RefCounted {
public:
  explicit Probe(int& deletions) : deletions_(deletions) {}
  ~Probe() override { ++deletions_; }

private:
  int& deletions_;
};

using EntryPointsTest = zrtest::SceneFixture;

TEST_F(EntryPointsTest, OtherNamesAreRefusedAndLeaveOutAlone) {
  const struct {
    std::string action, kind, component;
  } others[] = {
      {"Create", "callouts", "calloutengine"},
      {"created", "callouts", "calloutengine"},
      {std::string("creat\0", 6), "callouts", "calloutengine"},
      {"create", "callout", "calloutengine"},
      {"create", "callouts", "calloutengine "},
      {"create", "callouts", "calloutenginf"},
      {"", "", ""},
  };
  int deletions = 0;
  const Out held(new Probe(deletions));
  for (const auto& [action, kind, component] : others) {
    Out out = held;
    EXPECT_FALSE(CreateComponent()(action, kind, component, out)) << action << kind << component;
    EXPECT_EQ(out, held);
  }
  EXPECT_EQ(deletions, 0);
}

TEST_F(EntryPointsTest, MakesAnUnboundEngineOrNoneForWantOfMemoryAndReleasesWhatOutHeldOnce) {
  for (const bool memory : {true, false}) {
    int deletions = 0;
    Out out(new Probe(deletions));
    zrk::MemoryPool::FailNext(memory ? 0 : 1);
    EXPECT_TRUE(CreateComponent()("create", "callouts", "calloutengine", out));
    EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), memory ? 0u : 1u);
    EXPECT_EQ(deletions, 1);
    const auto engine = du::DynamicCast<zrcallouts::Callouts>(out);
    ASSERT_EQ(static_cast<bool>(out), memory);
    ASSERT_EQ(static_cast<bool>(engine), memory);
    EXPECT_FALSE(engine && (engine->GetScene() || engine->GetItemsList() || engine->GetTemplate()));
  }
}

TEST_F(EntryPointsTest, AnEngineWithoutLockObjectStillWorks) {
  Out out;
  zrk::ObjectWithRWLock::SupplyLocks(false);
  ASSERT_TRUE(CreateComponent()("create", "callouts", "calloutengine", out));
  zrk::ObjectWithRWLock::SupplyLocks(true);
  const auto engine = du::DynamicCast<zrcallouts::Callouts>(out);
  ASSERT_TRUE(engine);
  ASSERT_EQ(engine->GetReadWriteLock(), nullptr);
  const auto other = AddScene(false);
  engine->Initialize(other);
  engine->SetDrawOneForSamePart(true);
  EXPECT_TRUE(engine->GetDrawOneForSamePart());
  engine->RegenerateCalloutLabels();
  engine->Destroy();
}

TEST_F(EntryPointsTest, InitAndTerminateAreOneFunction) {
  void* const init = dlsym(RTLD_DEFAULT, "ZRDllInit");
  EXPECT_NE(init, nullptr);
  EXPECT_EQ(init, dlsym(RTLD_DEFAULT, "ZRDllTerminate"));
}

}  // namespace

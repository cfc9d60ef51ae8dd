// The ways into the library: its entry points by name and the engine of a scene.
#include <dlfcn.h>

#include <zrcallouts/Functions.h>
#include <zrk/MakeObject.h>
#include <zrk/MemoryPool.h>
#include <zrk/illustration/CalloutEngineMgr.h>

#include "support/SceneFixture.h"

namespace {

using zrtest::EnginePtr;
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

class EntryPointsTest : public zrtest::SceneFixture {
protected:
  void TearDown() override { zrk::MemoryPool::FailNext(0); }
};

struct NameCase {
  const char* name;
  std::string action;
  std::string kind;
  std::string component;
};

class EntryPointNamesTest : public EntryPointsTest, public ::testing::WithParamInterface<NameCase> {};

TEST_P(EntryPointNamesTest, OtherNamesAreRefusedAndLeaveOutAlone) {
  int deletions = 0;
  const Out held(new Probe(deletions));
  Out out = held;
  EXPECT_FALSE(CreateComponent()(GetParam().action, GetParam().kind, GetParam().component, out));
  EXPECT_EQ(out, held);
  EXPECT_EQ(deletions, 0);
}

INSTANTIATE_TEST_SUITE_P(Names, EntryPointNamesTest,
                         ::testing::Values(NameCase{"CapitalLetter", "Create", "callouts", "calloutengine"},
                                           NameCase{"LongerAction", "created", "callouts", "calloutengine"},
                                           NameCase{"ShorterKind", "create", "callout", "calloutengine"},
                                           NameCase{"TrailingBlank", "create", "callouts", "calloutengine "},
                                           NameCase{"LastLetter", "create", "callouts", "calloutenginf"},
                                           NameCase{"ZeroByte", std::string("creat\0", 6), "callouts", "calloutengine"},
                                           NameCase{"NothingAtAll", "", "", ""}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(EntryPointsTest, MakesAnEngineAndReleasesWhatOutHeldOnce) {
  int deletions = 0;
  Out out(new Probe(deletions));
  ASSERT_TRUE(CreateComponent()("create", "callouts", "calloutengine", out));
  EXPECT_EQ(deletions, 1);
  const auto engine = du::DynamicCast<zrcallouts::Callouts>(out);
  ASSERT_TRUE(engine);
  EXPECT_FALSE(engine->GetScene());
  EXPECT_FALSE(engine->GetItemsList());
  EXPECT_FALSE(engine->GetTemplate());
}

TEST_F(EntryPointsTest, AnswersTrueWithOutEmptiedWhenThePoolGivesNothing) {
  int deletions = 0;
  Out out(new Probe(deletions));
  zrk::MemoryPool::FailNext(1);
  EXPECT_TRUE(CreateComponent()("create", "callouts", "calloutengine", out));
  EXPECT_EQ(zrk::MemoryPool::GetInjectedCount(), 1u);
  EXPECT_FALSE(out);
  EXPECT_EQ(deletions, 1);
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

TEST_F(EntryPointsTest, EachSceneHasItsOwnEngine) {
  const auto second = AddScene(true);
  const auto bare = AddScene(false);
  EXPECT_TRUE(engine_);
  EXPECT_TRUE(EngineOf(second));
  EXPECT_NE(EngineOf(second), engine_);
  EXPECT_EQ(EngineOf(scene_), engine_);
  EXPECT_FALSE(EngineOf(bare));
  EXPECT_FALSE(EngineOf(nullptr));
}

}  // namespace

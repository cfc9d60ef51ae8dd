// The ways into the library: its entry points by name, the engine of a scene, and what the library exports.
#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdio>

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

/// Defined dynamic symbols of the library, demangled.
std::vector<std::string> ExportedSymbols(const std::string& library) {
  std::vector<std::string> symbols;
  FILE* const pipe = popen(("nm -D --defined-only -C '" + library + "' 2>/dev/null").c_str(), "r");
  if (!pipe) return symbols;
  std::array<char, 4096> line{};
  while (std::fgets(line.data(), line.size(), pipe)) {
    std::string symbol(line.data());
    symbol.erase(symbol.find_last_not_of('\n') + 1);
    const auto name = symbol.find(' ', symbol.find(' ') + 1);
    if (name != std::string::npos) symbols.push_back(symbol.substr(name + 1));
  }
  pclose(pipe);
  return symbols;
}

TEST_F(EntryPointsTest, ExportsItsInterfaceAndNothingElse) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers export symbols of their own";
#endif
  const auto symbols = ExportedSymbols(ComponentPath());
  if (symbols.empty()) GTEST_SKIP() << "no nm here";
  const std::array<std::string, 3> entryPoints = {"ZRDllInit", "ZRDllTerminate", "ZRDllCreateComponent"};
  for (const auto& entryPoint : entryPoints) {
    EXPECT_EQ(std::count(symbols.begin(), symbols.end(), entryPoint), 1) << entryPoint;
  }
  const std::array<std::string, 6> scopes = {"zrcallouts::Callouts::",
                                             "zrcallouts::CalloutGenerator::",
                                             "zrcallouts::Align",

                                             "zrcallouts::CalloutsDrawWhenHiddenOperationStep",
                                             "zrcallouts::GetCalloutsEngineForScene",
                                             "zrcallouts::CreateNewCallout2D"};
  const std::array<std::string, 5> metadata = {"typeinfo for ", "typeinfo name for ", "vtable for ", "VTT for ",
                                               "virtual thunk to "};
  for (std::string symbol : symbols) {
    if (std::count(entryPoints.begin(), entryPoints.end(), symbol) != 0) continue;
    bool isMetadata = false;
    for (const auto& prefix : metadata) {
      if (symbol.rfind(prefix, 0) != 0) continue;
      symbol = symbol.substr(prefix.size()) + "::";
      isMetadata = true;
    }
    const bool known = std::any_of(scopes.begin(), scopes.end(),
                                   [&](const std::string& scope) { return symbol.rfind(scope, 0) == 0; });
    EXPECT_TRUE(known) << (isMetadata ? "metadata of " : "") << symbol;
  }
}

}  // namespace

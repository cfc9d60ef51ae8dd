#include <du/SmartPtr.h>

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using du::SmartPtr;

struct Node : virtual du::RefCounted {
  explicit Node(bool willing = true) : agrees(willing) {}
  Node(const Node& other) = default;
  ~Node() override {
    if (watched) seenByDestructor = watched->Get();
  }
  bool ZeroReferenceCountHook() const override { return agrees; }

  SmartPtr<Node>* watched = nullptr;
  static inline Node* seenByDestructor = nullptr;
  bool agrees;
};

class SmartPtrTest : public testing::Test {
protected:
  ~SmartPtrTest() override { EXPECT_EQ(du::RefCounted::GetLiveObjectCount(), liveBefore_); }

private:
  const long liveBefore_ = du::RefCounted::GetLiveObjectCount();
};

TEST_F(SmartPtrTest, CountsEveryHolder) {
  auto* node = new Node;
  EXPECT_EQ(node->GetReferenceCount(), 0U);
  SmartPtr<Node> first(node);
  SmartPtr<Node> second = first;
  SmartPtr<du::RefCounted> base = second;
  EXPECT_EQ(node->GetReferenceCount(), 3U);
  const SmartPtr<Node> moved = std::move(second);
  EXPECT_FALSE(second);
  EXPECT_EQ(node->GetReferenceCount(), 3U);
  base = SmartPtr<Node>::Adopt(SmartPtr<Node>(moved).Detach());
  EXPECT_EQ(node->GetReferenceCount(), 3U) << "a moving up-cast and a reference handed over count nothing";
  base.Reset();
  first.Swap(second);
  EXPECT_EQ(node->GetReferenceCount(), 2U);
}

TEST_F(SmartPtrTest, HasItsNewValueBeforeTheOldObjectEndsAndMayBeAssignedToItself) {
  SmartPtr<Node> pointer(new Node);
  const SmartPtr<Node>& alias = pointer;
  pointer = alias;
  pointer = pointer.Get();
  EXPECT_EQ(pointer->GetReferenceCount(), 1U);
  const SmartPtr<Node> next(new Node);
  pointer->watched = &pointer;
  pointer = next;
  EXPECT_EQ(Node::seenByDestructor, next.Get());
}

TEST_F(SmartPtrTest, LeavesTheObjectToItsManagerWhenTheHookRefuses) {
  auto* node = new Node(false);
  SmartPtr<Node>(node).Reset();
  EXPECT_EQ(node->GetReferenceCount(), 0U);
  EXPECT_FALSE(node->TryAddReference());
  EXPECT_EQ(SmartPtr<Node>(node)->GetReferenceCount(), 1U);
  delete node;
}

TEST_F(SmartPtrTest, CopiedObjectStartsWithoutReferences) {
  const SmartPtr<Node> original(new Node);
  const SmartPtr<Node> copy(new Node(*original));
  EXPECT_EQ(copy->GetReferenceCount(), 1U);
  *copy = *original;
  EXPECT_EQ(copy->GetReferenceCount(), 1U);
}

TEST_F(SmartPtrTest, TryAddReferenceNeverRevivesUnderContention) {
  for (int round = 0; round < 200; ++round) {
    auto* node = new Node(false);
    node->AddReference();
    std::thread dropping([node] { node->RemoveReference(); });
    const bool taken = node->TryAddReference();
    dropping.join();
    EXPECT_EQ(node->GetReferenceCount(), taken ? 1U : 0U);
    delete node;
  }
}

}  // namespace

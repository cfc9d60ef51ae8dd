#include <du/SmartPtr.h>

#include <thread>

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

TEST(SmartPtrTest, HasItsNewValueBeforeTheOldObjectEndsAndMayBeAssignedToItself) {
  SmartPtr<Node> pointer(new Node);
  const SmartPtr<Node>& alias = pointer;
  pointer = alias;
  pointer = pointer.Get();
  EXPECT_EQ(pointer->GetReferenceCount(), 1U);
  const SmartPtr<Node> next(new Node(*pointer));
  EXPECT_EQ(next->GetReferenceCount(), 1U) << "a copied object starts without references";
  *next = *pointer;
  EXPECT_EQ(next->GetReferenceCount(), 1U);
  pointer->watched = &pointer;
  pointer = next;
  EXPECT_EQ(Node::seenByDestructor, next.Get());
}

TEST(SmartPtrTest, TryAddReferenceNeverRevivesWhatWasLeftToItsManager) {
  for (int round = 0; round < 200; ++round) {
    auto* node = new Node(false);
    node->AddReference();
    std::thread dropping([node] { node->RemoveReference(); });
    const bool taken = node->TryAddReference();
    dropping.join();
    EXPECT_EQ(node->GetReferenceCount(), taken ? 1U : 0U);
    EXPECT_EQ(node->TryAddReference(), taken);
    delete node;
  }
}

}  // namespace

// Node hierarchies: AddChild's refusals, the search orders of FindChild and
// KZylScene::FindNodeByName, and node attributes.

#include <gtest/gtest.h>

#include "kit/zylsdk.h"

namespace {

using namespace zylsdk;

class HierarchyTest : public ::testing::Test {
 protected:
  KZylNode* NewNode(const char* name) { return KZylNode::Create(&manager, name); }
  KZylNode* AddNew(KZylNode* parent, const char* name) {
    KZylNode* node = NewNode(name);
    EXPECT_TRUE(parent->AddChild(node));
    return node;
  }
  KZylSdkManager manager;
};

TEST_F(HierarchyTest, AddChildRefusesANullChild) {
  KZylNode* parent = NewNode("parent");
  EXPECT_FALSE(parent->AddChild(nullptr));
  EXPECT_FALSE(parent->GetLastErrorString().IsEmpty());
  EXPECT_EQ(parent->GetChildCount(), 0);
}

// An error belongs to the object that met it: not to another object, not even to one made later
// in the room of a destroyed one.
TEST_F(HierarchyTest, AnErrorStaysWithItsObject) {
  KZylNode* failed = NewNode("failed");
  KZylNode* other = NewNode("other");
  EXPECT_FALSE(failed->AddChild(nullptr));
  const KString message = failed->GetLastErrorString();
  EXPECT_FALSE(message.IsEmpty());
  EXPECT_TRUE(other->GetLastErrorString().IsEmpty());
  EXPECT_EQ(other->GetLastErrorID(), 0);
  EXPECT_EQ(static_cast<const KZylNode*>(failed)->GetError().GetLastErrorString(), message);

  // Destroyed and made again, many times, so that new nodes take the room of failed ones.
  for (int i = 0; i < 8; ++i) {
    failed->Destroy();
    failed = NewNode("again");
    EXPECT_TRUE(failed->GetLastErrorString().IsEmpty()) << i;
    EXPECT_FALSE(failed->AddChild(nullptr));
  }
  EXPECT_EQ(failed->GetLastErrorString(), message);
}

TEST_F(HierarchyTest, AddChildRefusesAChildThatHasAParent) {
  KZylNode* first = NewNode("first");
  KZylNode* second = NewNode("second");
  KZylNode* child = AddNew(first, "child");
  EXPECT_FALSE(second->AddChild(child));
  EXPECT_FALSE(second->GetLastErrorString().IsEmpty());
  EXPECT_EQ(child->GetParent(), first);
  EXPECT_EQ(second->GetChildCount(), 0);
  // Added twice to the same parent is refused as well.
  EXPECT_FALSE(first->AddChild(child));
  EXPECT_EQ(first->GetChildCount(), 1);
}

TEST_F(HierarchyTest, AddChildRefusesItselfAndItsAncestors) {
  KZylNode* top = NewNode("top");
  KZylNode* middle = AddNew(top, "middle");
  KZylNode* bottom = AddNew(middle, "bottom");
  EXPECT_FALSE(bottom->AddChild(bottom));
  EXPECT_FALSE(bottom->GetLastErrorString().IsEmpty());
  EXPECT_FALSE(bottom->AddChild(top));
  EXPECT_EQ(top->GetParent(), nullptr);
  EXPECT_EQ(bottom->GetChildCount(), 0);
  // After a detach the former parent can be added below.
  EXPECT_TRUE(middle->RemoveChild(bottom));
  EXPECT_FALSE(middle->RemoveChild(bottom));
  EXPECT_TRUE(bottom->AddChild(top));
  EXPECT_EQ(top->GetParent(), bottom);
}

TEST_F(HierarchyTest, ChildrenKeepTheirOrderAndCountRecursively) {
  KZylNode* root = NewNode("root");
  KZylNode* a = AddNew(root, "a");
  KZylNode* b = AddNew(root, "b");
  AddNew(a, "a1");
  AddNew(a, "a2");
  EXPECT_EQ(root->GetChildCount(), 2);
  EXPECT_EQ(root->GetChildCount(true), 4);
  EXPECT_EQ(root->GetChild(0), a);
  EXPECT_EQ(root->GetChild(1), b);
  EXPECT_EQ(root->GetChild(2), nullptr);
  EXPECT_EQ(root->GetChild(-1), nullptr);
}


// A node that never had a child, and one whose children all left or were destroyed, answer
// every question about children as empty.
TEST_F(HierarchyTest, ALeafAnswersEveryChildQueryEmpty) {
  KZylNode* leaf = NewNode("leaf");
  KZylNode* stranger = NewNode("stranger");
  EXPECT_EQ(leaf->GetChildCount(), 0);
  EXPECT_EQ(leaf->GetChildCount(true), 0);
  EXPECT_EQ(leaf->GetChild(0), nullptr);
  EXPECT_EQ(leaf->FindChild("stranger", true), nullptr);
  EXPECT_FALSE(leaf->RemoveChild(stranger));

  KZylNode* parent = NewNode("parent");
  KZylNode* gone = AddNew(parent, "gone");
  KZylNode* left = AddNew(parent, "left");
  gone->Destroy();
  EXPECT_EQ(parent->GetChildCount(), 1);
  EXPECT_TRUE(parent->RemoveChild(left));
  EXPECT_FALSE(parent->RemoveChild(left));
  EXPECT_EQ(parent->GetChildCount(true), 0);
  EXPECT_EQ(parent->FindChild("left"), nullptr);
  EXPECT_TRUE(leaf->AddChild(left));
  EXPECT_EQ(leaf->GetChild(0), left);
}
TEST_F(HierarchyTest, FindChildLooksAtDirectChildrenBeforeSubtrees) {
  // root: [a: [b: [deep "x"]], c: [shallow "x"]]
  KZylNode* root = NewNode("root");
  KZylNode* a = AddNew(root, "a");
  KZylNode* b = AddNew(a, "b");
  KZylNode* deep = AddNew(b, "x");
  KZylNode* c = AddNew(root, "c");
  AddNew(c, "x");
  // No direct child of root is "x"; a's subtree comes before c's, however deep.
  EXPECT_EQ(root->FindChild("x"), deep);
  EXPECT_EQ(root->FindChild("x", false), nullptr);
  EXPECT_EQ(root->FindChild("c", false), c);
  EXPECT_EQ(root->FindChild("b", true, true), b);
  EXPECT_EQ(root->FindChild("root"), nullptr);  // the node itself is not its child
  EXPECT_EQ(root->FindChild("nothing"), nullptr);
}

TEST_F(HierarchyTest, FindChildSearchesEachSubtreeLevelByLevelFromItsTop) {
  // root: [a: [b: [deep "x"], direct "x"]]: a's direct children come before b's subtree.
  KZylNode* root = NewNode("root");
  KZylNode* a = AddNew(root, "a");
  KZylNode* b = AddNew(a, "b");
  AddNew(b, "x");
  KZylNode* direct = AddNew(a, "x");
  EXPECT_EQ(root->FindChild("x"), direct);
}

TEST_F(HierarchyTest, FindNodeByNameIsDepthFirstPreOrder) {
  // root: [a: [deep "x"], shallow "x"]: pre-order meets the deep one first.
  KZylScene* scene = KZylScene::Create(&manager, "scene");
  KZylNode* a = AddNew(scene->GetRootNode(), "a");
  KZylNode* deep = AddNew(a, "x");
  KZylNode* shallow = AddNew(scene->GetRootNode(), "x");
  EXPECT_EQ(scene->FindNodeByName("x"), deep);
  EXPECT_EQ(scene->GetRootNode()->FindChild("x"), shallow);
  EXPECT_EQ(scene->FindNodeByName("RootNode"), scene->GetRootNode());
  EXPECT_EQ(scene->FindNodeByName("missing"), nullptr);
  std::vector<KZylNode*> nodes = scene->GetNodes();
  ASSERT_EQ(nodes.size(), 3u);
  EXPECT_EQ(nodes[0], a);
  EXPECT_EQ(nodes[1], deep);
  EXPECT_EQ(nodes[2], shallow);
}

TEST_F(HierarchyTest, NodesKnowTheirScene) {
  KZylScene* scene = KZylScene::Create(&manager, "scene");
  KZylNode* a = AddNew(scene->GetRootNode(), "a");
  KZylNode* b = AddNew(a, "b");
  KZylNode* loose = NewNode("loose");
  EXPECT_EQ(b->GetScene(), scene);
  EXPECT_EQ(loose->GetScene(), nullptr);
}

TEST_F(HierarchyTest, SetNodeAttributeReplacesAndDetachesTheOldOne) {
  KZylNode* node = NewNode("n");
  KZylNull* first = KZylNull::Create(&manager, "first");
  KZylMarker* second = KZylMarker::Create(&manager, "second");
  EXPECT_TRUE(node->SetNodeAttribute(first));
  EXPECT_EQ(first->GetNode(), node);
  EXPECT_TRUE(node->SetNodeAttribute(second));
  EXPECT_EQ(node->GetNodeAttribute(), second);
  EXPECT_EQ(first->GetNodeCount(), 0);
  EXPECT_EQ(second->GetNode(0), node);
  EXPECT_EQ(second->GetAttributeType(), KZylNodeAttribute::eMarker);
  EXPECT_EQ(first->GetAttributeType(), KZylNodeAttribute::eNull);
  EXPECT_EQ(node->GetGeometry(), nullptr);
  // The detached attribute is still the manager's.
  EXPECT_TRUE(manager.Holds(first, first->GetUniqueID()));
}

TEST_F(HierarchyTest, AnAttributeSharedByNodesKeepsThemInTheOrderTheyTookIt) {
  KZylNull* shared = KZylNull::Create(&manager, "shared");
  KZylNull* other = KZylNull::Create(&manager, "other");
  KZylNode* nodes[4] = {NewNode("a"), NewNode("b"), NewNode("c"), NewNode("d")};
  for (KZylNode* node : nodes) node->SetNodeAttribute(shared);
  ASSERT_EQ(shared->GetNodeCount(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(shared->GetNode(i), nodes[i]);
  EXPECT_EQ(shared->GetNode(4), nullptr);
  EXPECT_EQ(shared->GetNode(-1), nullptr);
  // The first to take it leaves, then one in the middle, then one destroyed.
  nodes[0]->SetNodeAttribute(other);
  nodes[2]->SetNodeAttribute(other);
  ASSERT_EQ(shared->GetNodeCount(), 2);
  EXPECT_EQ(shared->GetNode(0), nodes[1]);
  EXPECT_EQ(shared->GetNode(1), nodes[3]);
  nodes[1]->Destroy();
  ASSERT_EQ(shared->GetNodeCount(), 1);
  EXPECT_EQ(shared->GetNode(0), nodes[3]);
  ASSERT_EQ(other->GetNodeCount(), 2);
  EXPECT_EQ(other->GetNode(0), nodes[0]);
  EXPECT_EQ(other->GetNode(1), nodes[2]);
  nodes[3]->SetNodeAttribute(nullptr);
  EXPECT_EQ(shared->GetNodeCount(), 0);
  EXPECT_EQ(shared->GetNode(0), nullptr);
}

TEST_F(HierarchyTest, GeometryCountFollowsTheHierarchy) {
  KZylScene* scene = KZylScene::Create(&manager, "scene");
  KZylNode* a = AddNew(scene->GetRootNode(), "a");
  KZylNode* b = AddNew(a, "b");
  KZylNode* c = AddNew(scene->GetRootNode(), "c");
  KZylMesh* first = KZylMesh::Create(&manager, "first");
  KZylMesh* second = KZylMesh::Create(&manager, "second");
  c->SetNodeAttribute(first);
  b->SetNodeAttribute(second);
  ASSERT_EQ(scene->GetGeometryCount(), 2);
  EXPECT_EQ(scene->GetGeometry(0), second);  // b comes before c depth first
  EXPECT_EQ(scene->GetGeometry(1), first);
  EXPECT_EQ(scene->GetGeometry(2), nullptr);
  a->RemoveChild(b);
  ASSERT_EQ(scene->GetGeometryCount(), 1);
  EXPECT_EQ(scene->GetGeometry(0), first);
}

}  // namespace

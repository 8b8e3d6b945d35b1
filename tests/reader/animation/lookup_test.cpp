// The indexes of the animation import give the same answers as the searches they replace:
// elements by id below an animation, and nodes by name below the root.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/animation/element_ids.h"
#include "reader/animation/target_index.h"
#include "reader/dom/dom.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

class LookupTest : public zyltest::ReaderTest {};

void CollectAnimations(DaeElement* element, std::vector<DaeElement*>& out) {
  if (DAE_IsElement(element, "animation")) out.push_back(element);
  for (DaeElement* child = firstChildElement(element); child; child = nextSiblingElement(child))
    CollectAnimations(child, out);
}

TEST_F(LookupTest, ElementsByIdAnswerLikeTheSearchBelowEachAnimation) {
  // Ids repeated at several depths, an empty id, and an id on the animations themselves.
  DaeElement* top = Parse(
      "<animation id=\"a\"><source id=\"s\"/><animation id=\"b\"><source id=\"s\"/><sampler id=\"p\"/>"
      "<animation id=\"c\"><source id=\"p\"/><source id=\"\"/></animation></animation>"
      "<sampler id=\"p\"/><animation id=\"d\"><x><y id=\"s\"/></x></animation><source id=\"a\"/></animation>");
  const AnimationElementIds ids(top);
  std::vector<DaeElement*> scopes;
  CollectAnimations(top, scopes);
  ASSERT_EQ(scopes.size(), 4u);
  int found = 0;
  for (DaeElement* scope : scopes) {
    for (const char* id : {"a", "b", "c", "d", "s", "p", "", "none"}) {
      EXPECT_EQ(ids.Find(scope, id), findChildById(scope, id)) << DAE_GetProperty(scope, "id").Buffer() << " " << id;
      found += ids.Find(scope, id) ? 1 : 0;
    }
  }
  EXPECT_GT(found, 8);
  // An element outside the animation's tree is searched directly.
  DaeElement* other = Parse("<animation><source id=\"s\"/></animation>");
  EXPECT_EQ(ids.Find(other, "s"), firstChildElement(other));
}

TEST_F(LookupTest, NodesByNameAnswerLikeFindChild) {
  // Names repeated at several depths: a name met among a node's children before a deeper one.
  KZylNode* root = scene->GetRootNode();
  auto add = [this](KZylNode* parent, const char* name) {
    KZylNode* node = KZylNode::Create(&manager, name);
    parent->AddChild(node);
    return node;
  };
  KZylNode* a = add(root, "a");
  KZylNode* a1 = add(a, "dup");
  add(add(a1, "deep"), "twice");
  add(a, "twice");
  KZylNode* b = add(root, "b");
  add(b, "deep");
  add(b, "dup");
  add(root, "dup");
  add(add(add(b, "c"), "e"), "last");

  const AnimationTargetIndex index(root, nullptr);
  EXPECT_TRUE(index.Covers(root));
  for (const char* name : {"a", "b", "c", "e", "dup", "deep", "twice", "last", "none", ""})
    EXPECT_EQ(index.FindNode(name), root->FindChild(name, true, false)) << name;
  EXPECT_EQ(index.FindNode("dup"), root->GetChild(2));
}

}  // namespace

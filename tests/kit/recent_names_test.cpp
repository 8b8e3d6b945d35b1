// The memory of the names looked up last: a name is found only as itself, and a slot holds the
// last name remembered there.

#include <gtest/gtest.h>

#include <string>

#include "kit/recent_names.h"

namespace {

using namespace zylsdk;

TEST(RecentNames, FindsANameOnlyAsItselfAndForgetsItWhenItsSlotIsTaken) {
  RecentNames<const int> recent;
  const int first = 1;
  const int second = 2;
  const int empty = 3;
  EXPECT_EQ(recent.Find("Diffuse"), nullptr);
  EXPECT_EQ(recent.Find(""), nullptr);
  recent.Remember("Diffuse", &first);
  EXPECT_EQ(recent.Find(std::string("Diff") + "use"), &first);
  // Same length and end characters: the same slot, but not the same name.
  EXPECT_EQ(recent.Find("Dxxxxxe"), nullptr);
  recent.Remember("Dxxxxxe", &second);
  EXPECT_EQ(recent.Find("Dxxxxxe"), &second);
  EXPECT_EQ(recent.Find("Diffuse"), nullptr);
  recent.Remember("", &empty);
  EXPECT_EQ(recent.Find(""), &empty);
}

}  // namespace

// Splitting animation channel targets into id, path and member.

#include <gtest/gtest.h>

#include <string>

#include "reader/collada_import.h"

namespace {

using zylsdk::KString;
using zylsdk::KZylReaderCollada;

struct Split {
  std::string id;
  std::string path;
  std::string member;
};

// The parts of `target`; id starts as "untouched" to show when the split leaves it alone.
Split SplitTarget(const char* target) {
  KString id("untouched"), path("old path"), member("old member");
  KZylReaderCollada::SplitReferenceTarget(target, id, path, member);
  return {id.Std(), path.Std(), member.Std()};
}

void ExpectSplit(const char* target, const std::string& id, const std::string& path, const std::string& member) {
  Split split = SplitTarget(target);
  EXPECT_EQ(split.id, id) << target;
  EXPECT_EQ(split.path, path) << target;
  EXPECT_EQ(split.member, member) << target;
}

TEST(SplitReferenceTarget, IdPathAndMember) {
  ExpectSplit("node1/translate.X", "node1", "node1/translate", "X");
  ExpectSplit("node1/rotateX.ANGLE", "node1", "node1/rotateX", "ANGLE");
}

TEST(SplitReferenceTarget, WithoutMember) {
  ExpectSplit("node1/translate", "node1", "node1/translate", "");
}

TEST(SplitReferenceTarget, TheDotIsSearchedAfterTheSlash) {
  ExpectSplit("a.b/c.d", "a.b", "a.b/c", "d");
  ExpectSplit("a.b/c", "a.b", "a.b/c", "");
}

TEST(SplitReferenceTarget, ParenthesesWithoutSlashGiveAnIndexAndLeaveTheId) {
  ExpectSplit("morph(2)", "untouched", "morph", "2");
  ExpectSplit("morph(12)", "untouched", "morph", "12");
  // A dot before the parenthesis ends the path, and the member, as long as the index, is then
  // read from just after the dot (kept as it is).
  ExpectSplit("morph.weights(3)", "untouched", "morph", "w");
}

TEST(SplitReferenceTarget, ParenthesesAfterASlashAreNotRecognised) {
  ExpectSplit("node1/matrix(3)(2)", "node1", "node1/matrix(3)(2)", "");
}

TEST(SplitReferenceTarget, OnlyTheFirstSlashSeparatesTheId) {
  ExpectSplit("a/b/c.X", "a", "a/b/c", "X");
  ExpectSplit("a/b.c/d.e", "a", "a/b", "c/d.e");
}

TEST(SplitReferenceTarget, DotWithoutSlashOrParenthesesKeepsTheWholeTargetAsPath) {
  ExpectSplit("light1.color", "untouched", "light1.color", "");
}

TEST(SplitReferenceTarget, EdgeCases) {
  ExpectSplit("node1/translate.", "node1", "node1/translate", "");
  ExpectSplit("/translate.X", "", "/translate", "X");
  ExpectSplit("node1/", "node1", "node1/", "");
  ExpectSplit("morph(", "untouched", "morph", "");
  ExpectSplit("morph()", "untouched", "morph", "");
  ExpectSplit("(5)", "untouched", "", "5");
}

}  // namespace

// KString: searching, clamped substrings, ASCII-only case operations, replacement and
// appending integers.

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "kit/kstring.h"

namespace {

using zylsdk::KString;

TEST(KString, FindCharacterAndTextFromAStart) {
  KString text("a.b.c");
  EXPECT_EQ(text.Find('.'), 1);
  EXPECT_EQ(text.Find('.', 2), 3);
  EXPECT_EQ(text.Find('.', 4), -1);
  EXPECT_EQ(text.Find('x'), -1);
  EXPECT_EQ(text.Find("b.c"), 2);
  EXPECT_EQ(text.Find(".c", 4), -1);
  EXPECT_EQ(text.Find(static_cast<const char*>(nullptr)), -1);
}

TEST(KString, FindClampsItsStart) {
  KString text("abcabc");
  EXPECT_EQ(text.Find('a', -5), 0);
  EXPECT_EQ(text.Find('a', 100), -1);
  EXPECT_EQ(text.Find("bc", -1), 1);
  EXPECT_EQ(text.Find("bc", 1000), -1);
}

TEST(KString, ReverseFindGivesTheLastOccurrence) {
  EXPECT_EQ(KString("a:b:c").ReverseFind(':'), 3);
  EXPECT_EQ(KString("abc").ReverseFind(':'), -1);
}

TEST(KString, LeftClampsItsCount) {
  KString text("hello");
  EXPECT_EQ(text.Left(2), "he");
  EXPECT_EQ(text.Left(0), "");
  EXPECT_EQ(text.Left(-3), "");
  EXPECT_EQ(text.Left(99), "hello");
}

TEST(KString, MidClampsStartAndCount) {
  KString text("hello");
  EXPECT_EQ(text.Mid(1, 3), "ell");
  EXPECT_EQ(text.Mid(3, 99), "lo");
  EXPECT_EQ(text.Mid(-4, 2), "he");
  EXPECT_EQ(text.Mid(5, 1), "");
  EXPECT_EQ(text.Mid(77, 1), "");
  EXPECT_EQ(text.Mid(1, 0), "");
  EXPECT_EQ(text.Mid(1, -1), "");
  EXPECT_EQ(text.Mid(2), "llo");
  EXPECT_EQ(text.Mid(-1), "hello");
  EXPECT_EQ(text.Mid(50), "");
}

TEST(KString, RightClampsItsCount) {
  KString text("hello");
  EXPECT_EQ(text.Right(3), "llo");
  EXPECT_EQ(text.Right(0), "");
  EXPECT_EQ(text.Right(-2), "");
  EXPECT_EQ(text.Right(10), "hello");
}

TEST(KString, UpperChangesOnlyAsciiLetters) {
  // "é" in UTF-8 is C3 A9; its upper case "É" would be C3 89, which Upper must not produce.
  KString text("abc-xyz_09 \xc3\xa9z");
  EXPECT_EQ(text.Upper().Std(), "ABC-XYZ_09 \xc3\xa9Z");
  EXPECT_EQ(text.Std(), "abc-xyz_09 \xc3\xa9z");  // the original is untouched
}

TEST(KString, CompareNoCaseFoldsOnlyAsciiLetters) {
  EXPECT_EQ(KString("Phong").CompareNoCase("PHONG"), 0);
  EXPECT_EQ(KString("lambert").CompareNoCase("LamBert"), 0);
  EXPECT_LT(KString("abc").CompareNoCase("ABD"), 0);
  EXPECT_GT(KString("abd").CompareNoCase("ABC"), 0);
  EXPECT_GT(KString("abc").CompareNoCase("AB"), 0);
  EXPECT_LT(KString("ab").CompareNoCase("ABC"), 0);
  EXPECT_EQ(KString("").CompareNoCase(""), 0);
  EXPECT_EQ(KString("").CompareNoCase(nullptr), 0);
  EXPECT_GT(KString("a").CompareNoCase(nullptr), 0);
  // Non-ASCII letters differ in case: é and É are different.
  EXPECT_NE(KString("\xc3\xa9").CompareNoCase("\xc3\x89"), 0);
  // Only letters fold: '[' and '{' (and '@' and '`') differ by the case bit but are not letters.
  EXPECT_NE(KString("[").CompareNoCase("{"), 0);
  EXPECT_NE(KString("@").CompareNoCase("`"), 0);
}

TEST(KString, FindAndReplaceReplacesTheFirstOccurrenceFromAStart) {
  KString text("a-b-c");
  EXPECT_TRUE(text.FindAndReplace("-", "+"));
  EXPECT_EQ(text, "a+b-c");
  EXPECT_TRUE(text.FindAndReplace("-", "::", 2));
  EXPECT_EQ(text, "a+b::c");
  EXPECT_FALSE(text.FindAndReplace("-", "x"));
  EXPECT_EQ(text, "a+b::c");
  EXPECT_FALSE(text.FindAndReplace("a", "x", 1));
  EXPECT_FALSE(text.FindAndReplace("", "x"));
  EXPECT_FALSE(text.FindAndReplace(nullptr, "x"));
  EXPECT_TRUE(text.FindAndReplace("::", nullptr));
  EXPECT_EQ(text, "a+bc");
}

TEST(KString, FindAndReplaceCanGrowAndShrink) {
  KString path("file:///C|/maps/wood.tga");
  EXPECT_TRUE(path.FindAndReplace("|", ":"));
  EXPECT_EQ(path, "file:///C:/maps/wood.tga");
  EXPECT_TRUE(path.FindAndReplace("file:///", ""));
  EXPECT_EQ(path, "C:/maps/wood.tga");
}

TEST(KString, PlusIntegerAppendsDecimalDigits) {
  EXPECT_EQ(KString("node") + 1, "node1");
  EXPECT_EQ(KString("n") + 0, "n0");
  EXPECT_EQ(KString("n") + -42, "n-42");
  EXPECT_EQ(KString("") + INT_MAX, "2147483647");
  EXPECT_EQ(KString("") + INT_MIN, "-2147483648");
  EXPECT_EQ(KString("x") + static_cast<int64_t>(1) * 10000000000, "x10000000000");
  EXPECT_EQ(KString("u") + UINT64_MAX, "u18446744073709551615");
  KString text("a");
  text += 12;
  EXPECT_EQ(text, "a12");
}

TEST(KString, PlusCharacterAppendsTheCharacter) {
  EXPECT_EQ(KString("a") + 'b', "ab");
  EXPECT_EQ(KString("1") + "." + KString("4"), "1.4");
  EXPECT_EQ("<" + KString("x") + ">", "<x>");
}

TEST(KString, KeepsBytesAndCompares) {
  KString utf8("\xe6\x97\xa5\xe6\x9c\xac");
  EXPECT_EQ(utf8.GetLen(), 6);
  EXPECT_EQ(KString(utf8.Buffer(), 3).Std(), "\xe6\x97\xa5");
  EXPECT_TRUE(KString().IsEmpty());
  EXPECT_EQ(KString(static_cast<const char*>(nullptr)), "");
  EXPECT_TRUE(KString("a") < KString("b"));
  EXPECT_TRUE(KString("a") != KString("A"));
  EXPECT_TRUE(KString("a") == "a");
  EXPECT_TRUE(KString("") == nullptr);
}

}  // namespace

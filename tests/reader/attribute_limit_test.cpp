// A document with an element of more attributes than the read option allows is refused with
// the reader's own message, before the parser spends its time on the element.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/documents.h"

namespace zyltest {
namespace {

// A node of `count` attributes, its id among them.
std::string DocumentWithAttributes(size_t count) {
  std::string node = "<node id=\"n\"";
  for (size_t i = 1; i < count; ++i) node += " a" + std::to_string(i) + "=\"1\"";
  return Collada("<library_visual_scenes><visual_scene id=\"vs\">" + node +
                 "/></visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene>");
}

zyldae::ReadSettings WithLimit(int maxAttributes) {
  zyldae::ReadSettings settings;
  settings.integerOptions = {{"MAX ATTRIBUTES PER ELEMENT", maxAttributes}};
  return settings;
}

TEST(AttributeLimit, AnElementPastTheDefaultLimitIsRefused) {
  const zyldae::ReadResult read = ReadText(DocumentWithAttributes(1001));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (std::vector<std::string>{
                                "ERROR: an element has more than 1000 attributes (read option MAX ATTRIBUTES PER ELEMENT)",
                                "ERROR: Unable to parse xml/dae file\n"}));
}

TEST(AttributeLimit, AnElementAtTheLimitReads) { EXPECT_TRUE(ReadText(DocumentWithAttributes(1000)).ok); }

TEST(AttributeLimit, TheReadOptionRaisesOrLowersTheLimit) {
  EXPECT_TRUE(ReadText(DocumentWithAttributes(1500), WithLimit(2000)).ok);
  const zyldae::ReadResult lowered = ReadText(DocumentWithAttributes(3), WithLimit(2));
  EXPECT_FALSE(lowered.ok);
  ASSERT_FALSE(lowered.notifications.empty());
  EXPECT_EQ(Messages(lowered).front(), "ERROR: an element has more than 2 attributes (read option MAX ATTRIBUTES PER ELEMENT)");
}

TEST(AttributeLimit, AnUnknownReadOptionFailsTheRead) {
  zyldae::ReadSettings settings;
  settings.integerOptions = {{"MAX ATTRIBUTE", 5}};
  const zyldae::ReadResult read = ReadText(DocumentWithAttributes(1), settings);
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(Messages(read), (std::vector<std::string>{"ERROR: unknown integer read option: MAX ATTRIBUTE"}));
}

}  // namespace
}  // namespace zyltest

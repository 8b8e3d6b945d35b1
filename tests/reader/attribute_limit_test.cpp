// A document with an element of more attributes than the read option allows is refused with
// the reader's own message, before the parser spends its time on the element.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reader/collada_import.h"
#include "tests/support/documents.h"

namespace {

using namespace zylsdk;
using zyltest::TempFile;

// A node of `count` attributes, its id among them.
std::string DocumentWithAttributes(size_t count) {
  std::string node = "<node id=\"n\"";
  for (size_t i = 1; i < count; ++i) node += " a" + std::to_string(i) + "=\"1\"";
  return "<?xml version=\"1.0\"?>\n<COLLADA xmlns=\"http://www.collada.org/2005/11/COLLADASchema\" version=\"1.4.1\">"
         "<asset/><library_visual_scenes><visual_scene id=\"vs\">" +
         node + "/></visual_scene></library_visual_scenes><scene><instance_visual_scene url=\"#vs\"/></scene></COLLADA>";
}

struct Read {
  bool ok = false;
  std::vector<std::string> notifications;
};

// Reads `document`; a positive `maxAttributes` is set as the read option first.
Read ReadWithLimit(const std::string& document, int maxAttributes = 0) {
  TempFile file(document);
  KZylSdkManager manager;
  KZylReaderCollada reader(manager);
  Read read;
  if (!reader.FileOpen(file.Path().c_str())) return read;
  KZylStreamOptions* options = reader.GetReadOptions();
  if (maxAttributes > 0) options->GetOption("MAX ATTRIBUTES PER ELEMENT").Set(maxAttributes);
  read.ok = reader.Read(*KZylScene::Create(&manager, ""), options);
  for (const auto& detail : manager.GetUserNotification()->GetDetails()) read.notifications.push_back(detail.text.Std());
  return read;
}

TEST(AttributeLimit, AnElementPastTheDefaultLimitIsRefused) {
  const Read read = ReadWithLimit(DocumentWithAttributes(1001));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(read.notifications,
            (std::vector<std::string>{
                "ERROR: an element has more than 1000 attributes (read option MAX ATTRIBUTES PER ELEMENT)",
                "ERROR: Unable to parse xml/dae file\n"}));
}

TEST(AttributeLimit, AnElementAtTheLimitReads) {
  EXPECT_TRUE(ReadWithLimit(DocumentWithAttributes(1000)).ok);
}

TEST(AttributeLimit, TheReadOptionRaisesOrLowersTheLimit) {
  EXPECT_TRUE(ReadWithLimit(DocumentWithAttributes(1500), 2000).ok);
  const Read lowered = ReadWithLimit(DocumentWithAttributes(3), 2);
  EXPECT_FALSE(lowered.ok);
  ASSERT_FALSE(lowered.notifications.empty());
  EXPECT_EQ(lowered.notifications.front(), "ERROR: an element has more than 2 attributes (read option MAX ATTRIBUTES PER ELEMENT)");
}

}  // namespace

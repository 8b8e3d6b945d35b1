// Warnings and errors: their prefixes and detail code, the warn-once keys of the reader, and a
// manager without user notification.

#include "reader/collada_import.h"
#include "tests/reader/reader_file_test.h"

namespace {

using namespace zylsdk;
using zyltest::Collada;

class DiagnosticsTest : public zyltest::ReaderFileTest {};

TEST_F(DiagnosticsTest, WarningsAndErrorsCarryTheirPrefixAndCodeSix) {
  reader->AddNotificationWarning("something odd");
  reader->AddNotificationError("something wrong\n");
  reader->AddNotificationWarning("");
  const auto& details = manager.GetUserNotification()->GetDetails();
  ASSERT_EQ(details.size(), 3u);
  EXPECT_EQ(details[0].code, 6);
  EXPECT_EQ(details[0].text, "Warning: something odd");  // no line end added
  EXPECT_EQ(details[1].code, 6);
  EXPECT_EQ(details[1].text, "ERROR: something wrong\n");
  EXPECT_EQ(details[2].text, "Warning: ");
}

TEST_F(DiagnosticsTest, MessagesDoNotChangeTheStatus) {
  ASSERT_TRUE(reader->ImportLibrary(*scene, Parse("<library_animations/>")));
  ASSERT_TRUE(reader->GetStatus());
  reader->AddNotificationError("an error is only a message");
  EXPECT_TRUE(reader->GetStatus());
}

TEST_F(DiagnosticsTest, WithoutUserNotificationNothingIsSaid) {
  manager.SetUserNotification(nullptr);
  reader->AddNotificationWarning("unheard");
  reader->AddNotificationError("unheard");
  EXPECT_TRUE(reader->WarnOnce("key", "unheard"));
  EXPECT_FALSE(reader->WarnOnce("key", "unheard"));
  // A failed read still fails, and still records its error.
  EXPECT_FALSE(OpenAndRead("not xml"));
  EXPECT_EQ(reader->GetLastErrorString(), "Unable to parse xml/dae file\n");
  EXPECT_EQ(manager.GetUserNotification(), nullptr);
}

TEST_F(DiagnosticsTest, WarnOnceRemembersItsKeyExactly) {
  EXPECT_FALSE(reader->IsReported("boundingbox"));
  EXPECT_TRUE(reader->WarnOnce("boundingbox", "Bounding boxes are not supported"));
  EXPECT_TRUE(reader->IsReported("boundingbox"));
  EXPECT_FALSE(reader->WarnOnce("boundingbox", "Bounding boxes are not supported"));
  EXPECT_FALSE(reader->WarnOnce("boundingbox", "another text under the same key"));
  EXPECT_TRUE(reader->WarnOnce("BoundingBox", "keys are case-sensitive"));
  EXPECT_EQ(Messages(), (std::vector<std::string>{"Warning: Bounding boxes are not supported",
                                                  "Warning: keys are case-sensitive"}));
  reader->MarkReported("silenced");
  EXPECT_FALSE(reader->WarnOnce("silenced", "never shown"));
  EXPECT_EQ(Messages().size(), 2u);
}

TEST_F(DiagnosticsTest, ThreePhysicsLibrariesWarnOnce) {
  ASSERT_TRUE(OpenAndRead(Collada("<library type=\"PHYSICS\"/><library type=\"PHYSICS\"/><library type=\"PHYSICS\"/>")));
  EXPECT_EQ(CountMessage("Warning: library type not supported: PHYSICS"), 1);
  EXPECT_EQ(CountMessage("Warning: structure library is deprecated in Collada 1.4."), 1);
  EXPECT_EQ(Messages().size(), 2u);
}

}  // namespace
